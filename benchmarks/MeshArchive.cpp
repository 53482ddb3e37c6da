// A mesh of a million vertices and two million triangles to an archive and back, beside two serializers that
// take it element by element, a loop written by hand over a buffer of the same size, and one copy of all the
// bytes.

#include "vorlane/persistence/PrimitiveSerializers.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#ifdef VORLANE_HAVE_CEREAL
#include <cereal/archives/binary.hpp>
#endif
#ifdef VORLANE_HAVE_BOOST_SERIALIZATION
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#endif

using namespace Lumora;
using Spatia::Point3d;

namespace {

constexpr int vertexCount = 1000000;
constexpr int triangleCount = 2 * vertexCount;
constexpr std::uint32_t schema = 24;

// The buffers of all rows. The system takes large blocks at less cost.
constexpr int memoryBuffer = 65536;
constexpr int fileBuffer = 1048576;

constexpr std::size_t headBytes = 4096; // more than a peer writes before the mesh

std::string const& Path()
{
    static std::string const path = [] {
        char const* const folder = std::getenv("TMPDIR");
        return std::string(folder != nullptr ? folder : "/tmp") + "/vorlane_mesh_archive.bin";
    }();
    return path;
}

/// Memory as a stream, for the peers. Like the CMemFile of the other rows, it is as long as needed
/// beforehand, so that no row pays for its growth.
class MemoryStream : public std::streambuf
{
public:
    explicit MemoryStream(std::vector<char>& bytes)
    {
        setp(bytes.data(), bytes.data() + bytes.size());
        setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
    }
};

/// A file as a stream, for the peers, with a buffer of the same size as in the other rows.
class FileStream : public std::filebuf
{
public:
    explicit FileStream(std::ios::openmode mode) : m_buffer(fileBuffer)
    {
        pubsetbuf(m_buffer.data(), fileBuffer);
        open(Path(), mode | std::ios::binary);
    }
    ~FileStream() override { close(); }

private:
    std::vector<char> m_buffer;
};

/// The buffer that somebody would write by hand: one test for each value.
class HandWriter
{
public:
    HandWriter(CFile& file, int bufferSize) : m_file(file), m_buffer(static_cast<std::size_t>(bufferSize)) {}
    template <typename Value>
    void operator()(Value value)
    {
        if (m_used + sizeof(value) > m_buffer.size()) {
            Flush();
        }
        std::memcpy(m_buffer.data() + m_used, &value, sizeof(value));
        m_used += sizeof(value);
    }
    void Flush()
    {
        m_file.Write(m_buffer.data(), static_cast<unsigned int>(m_used));
        m_used = 0;
    }

private:
    CFile& m_file;
    std::vector<unsigned char> m_buffer;
    std::size_t m_used = 0;
};

class HandReader
{
public:
    HandReader(CFile& file, int bufferSize) : m_file(file), m_buffer(static_cast<std::size_t>(bufferSize)) {}
    template <typename Value>
    void operator()(Value& value)
    {
        if (m_end - m_next < sizeof(value)) {
            Refill();
        }
        std::memcpy(&value, m_buffer.data() + m_next, sizeof(value));
        m_next += sizeof(value);
    }

private:
    void Refill()
    {
        std::memmove(m_buffer.data(), m_buffer.data() + m_next, m_end - m_next);
        m_end -= m_next;
        m_next = 0;
        m_end += m_file.Read(m_buffer.data() + m_end, static_cast<unsigned int>(m_buffer.size() - m_end));
    }

    CFile& m_file;
    std::vector<unsigned char> m_buffer;
    std::size_t m_next = 0;
    std::size_t m_end = 0;
};

/// The fields of a mesh, in the order of the archive, given to `put` one by one.
template <typename Put>
void PutMesh(TriangleMeshPrimitive const& mesh, Put&& put)
{
    auto const putPoint = [&](Point3d const& point) {
        put(static_cast<float>(point.x));
        put(static_cast<float>(point.y));
        put(static_cast<float>(point.z));
    };
    put(mesh.headerWord);
    put(mesh.litWord1);
    put(mesh.litWord2);
    put(std::int32_t(mesh.GetNumTriangles()));
    for (int i = 0; i < mesh.GetNumTriangles(); ++i) {
        TriangleIndex const& triangle = mesh.GetTriangleAt(i);
        put(triangle.first);
        put(triangle.second);
        put(triangle.third);
    }
    put(std::int32_t(mesh.GetNumVertices()));
    for (int i = 0; i < mesh.GetNumVertices(); ++i) {
        VertexNormal const& vertex = mesh.GetVertexAt(i);
        put(vertex.GetColor().GetPacked());
        putPoint(vertex.point);
        putPoint(vertex.normal);
    }
    put(std::int32_t(mesh.meshFlag1));
    put(std::int32_t(mesh.meshFlag2));
    put(mesh.backSideColor.GetPacked());
}

template <typename Get>
void GetMesh(TriangleMeshPrimitive& mesh, Get&& get)
{
    auto const getPoint = [&](Point3d& point) {
        float x = 0, y = 0, z = 0;
        get(x);
        get(y);
        get(z);
        point = Point3d(x, y, z);
    };
    auto const getWord = [&] {
        std::int32_t word = 0;
        get(word);
        return word;
    };
    mesh.headerWord = getWord();
    mesh.litWord1 = getWord();
    mesh.litWord2 = getWord();
    std::vector<TriangleIndex> triangles;
    std::int32_t const triangleTotal = getWord();
    triangles.reserve(static_cast<std::size_t>(triangleTotal));
    for (std::int32_t i = 0; i < triangleTotal; ++i) {
        TriangleIndex triangle;
        get(triangle.first);
        get(triangle.second);
        get(triangle.third);
        triangles.push_back(triangle);
    }
    std::vector<VertexNormal> vertices;
    std::int32_t const vertexTotal = getWord();
    vertices.reserve(static_cast<std::size_t>(vertexTotal));
    for (std::int32_t i = 0; i < vertexTotal; ++i) {
        VertexNormal vertex;
        std::uint32_t packed = 0;
        get(packed);
        vertex.SetColor(Orrin::Color(packed));
        getPoint(vertex.point);
        getPoint(vertex.normal);
        vertices.push_back(vertex);
    }
    mesh.Set(std::move(vertices), std::move(triangles));
    mesh.meshFlag1 = getWord() != 0;
    mesh.meshFlag2 = getWord() != 0;
    mesh.backSideColor.SetPacked(static_cast<std::uint32_t>(getWord()));
}

TriangleMeshPrimitive const& Mesh()
{
    static TriangleMeshPrimitive const mesh = [] {
        std::vector<VertexNormal> vertices;
        std::vector<TriangleIndex> triangles;
        for (int i = 0; i < vertexCount; ++i) {
            vertices.emplace_back(Point3d(i * 0.001, 1.5, -i * 0.25), Point3d::kVector,
                                  Orrin::Color(0xFF000000u + static_cast<std::uint32_t>(i)));
        }
        for (int i = 0; i < triangleCount; ++i) {
            triangles.emplace_back(i / 2, (i + 1) % vertexCount, (i * 7) % vertexCount);
        }
        TriangleMeshPrimitive built;
        built.Set(std::move(vertices), std::move(triangles));
        return built;
    }();
    return mesh;
}

void StoreByArchive(TriangleMeshPrimitive const& mesh, CFile& file, int bufferSize)
{
    CArchive ar(&file, CArchive::store, bufferSize);
    ar.m_nObjectSchema = schema;
    Vorlane::Serialize(ar, const_cast<TriangleMeshPrimitive&>(mesh)); // a store does not change it
    ar.Close();
}

void LoadByArchive(TriangleMeshPrimitive& mesh, CFile& file, int bufferSize)
{
    CArchive ar(&file, CArchive::load, bufferSize);
    ar.m_nObjectSchema = schema;
    Vorlane::Serialize(ar, mesh);
}

void StoreByHand(TriangleMeshPrimitive const& mesh, CFile& file, int bufferSize)
{
    HandWriter writer(file, bufferSize);
    PutMesh(mesh, writer);
    writer.Flush();
}

void LoadByHand(TriangleMeshPrimitive& mesh, CFile& file, int bufferSize)
{
    HandReader reader(file, bufferSize);
    GetMesh(mesh, reader);
}

#ifdef VORLANE_HAVE_CEREAL
void StoreByCereal(TriangleMeshPrimitive const& mesh, std::streambuf& buffer)
{
    std::ostream stream(&buffer);
    cereal::BinaryOutputArchive archive(stream);
    PutMesh(mesh, [&](auto value) { archive(value); });
}
void LoadByCereal(TriangleMeshPrimitive& mesh, std::streambuf& buffer)
{
    std::istream stream(&buffer);
    cereal::BinaryInputArchive archive(stream);
    GetMesh(mesh, [&](auto& value) { archive(value); });
}
#endif

#ifdef VORLANE_HAVE_BOOST_SERIALIZATION
void StoreByBoost(TriangleMeshPrimitive const& mesh, std::streambuf& buffer)
{
    boost::archive::binary_oarchive archive(buffer);
    PutMesh(mesh, [&](auto const& value) { archive << value; });
}
void LoadByBoost(TriangleMeshPrimitive& mesh, std::streambuf& buffer)
{
    boost::archive::binary_iarchive archive(buffer);
    GetMesh(mesh, [&](auto& value) { archive >> value; });
}
#endif

std::size_t MeshBytes()
{
    return 3 * 4 + 4 + triangleCount * std::size_t{12} + 4 + vertexCount * std::size_t{28} + 3 * 4;
}

/// The bytes of a mesh in the archive.
std::vector<unsigned char> Stored(TriangleMeshPrimitive const& mesh)
{
    CMemFile file;
    StoreByArchive(mesh, file, memoryBuffer);
    return file.Bytes();
}

std::vector<unsigned char> const& Image()
{
    static std::vector<unsigned char> const image = Stored(Mesh());
    return image;
}

template <typename Operation>
void Time(benchmark::State& state, std::size_t bytes, Operation operation)
{
    for (auto _ : state) {
        operation();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

/// A serializer over CFile: the archive and the loop by hand.
struct FilePeer
{
    char const* name;
    void (*store)(TriangleMeshPrimitive const&, CFile&, int bufferSize);
    void (*load)(TriangleMeshPrimitive&, CFile&, int bufferSize);
};

/// A serializer over stream buffers.
struct StreamPeer
{
    char const* name;
    void (*store)(TriangleMeshPrimitive const&, std::streambuf&);
    void (*load)(TriangleMeshPrimitive&, std::streambuf&);
};

constexpr FilePeer filePeers[] = {
    {"Vorlane", StoreByArchive, LoadByArchive},
    {"ByHand", StoreByHand, LoadByHand},
};

std::vector<StreamPeer> const streamPeers = {
#ifdef VORLANE_HAVE_CEREAL
    {"cereal", StoreByCereal, LoadByCereal},
#endif
#ifdef VORLANE_HAVE_BOOST_SERIALIZATION
    {"Boost", StoreByBoost, LoadByBoost},
#endif
};

void StoreMemory(benchmark::State& state, FilePeer const& peer)
{
    CMemFile file(std::vector<unsigned char>(MeshBytes(), 1));
    peer.store(Mesh(), file, memoryBuffer);
    if (file.Bytes() != Image()) {
        state.SkipWithError("other bytes");
    }
    Time(state, MeshBytes(), [&] {
        file.SeekToBegin();
        peer.store(Mesh(), file, memoryBuffer);
    });
}

void LoadMemory(benchmark::State& state, FilePeer const& peer)
{
    CMemFile file(Image());
    auto const load = [&] {
        TriangleMeshPrimitive mesh;
        file.SeekToBegin();
        peer.load(mesh, file, memoryBuffer);
        return mesh;
    };
    if (Stored(load()) != Image()) {
        state.SkipWithError("another mesh");
    }
    Time(state, MeshBytes(), [&] { benchmark::DoNotOptimize(load().GetNumVertices()); });
}

void StoreFile(benchmark::State& state, FilePeer const& peer)
{
    Time(state, MeshBytes(), [&] {
        CFile file(Path().c_str(), CFile::modeWrite | CFile::modeCreate);
        peer.store(Mesh(), file, fileBuffer);
        file.Close();
    });
}

void LoadFile(benchmark::State& state, FilePeer const& peer)
{
    {
        CFile file(Path().c_str(), CFile::modeWrite | CFile::modeCreate);
        StoreByArchive(Mesh(), file, fileBuffer);
    }
    Time(state, MeshBytes(), [&] {
        TriangleMeshPrimitive mesh;
        CFile file(Path().c_str(), CFile::modeRead);
        peer.load(mesh, file, fileBuffer);
        benchmark::DoNotOptimize(mesh.GetNumVertices());
    });
    std::remove(Path().c_str());
}

void StoreMemory(benchmark::State& state, StreamPeer const& peer)
{
    std::vector<char> bytes(MeshBytes() + headBytes, 1);
    Time(state, MeshBytes(), [&] {
        MemoryStream stream(bytes);
        peer.store(Mesh(), stream);
    });
}

void LoadMemory(benchmark::State& state, StreamPeer const& peer)
{
    std::vector<char> bytes(MeshBytes() + headBytes, 1);
    {
        MemoryStream stream(bytes);
        peer.store(Mesh(), stream);
    }
    auto const load = [&] {
        TriangleMeshPrimitive mesh;
        MemoryStream stream(bytes);
        peer.load(mesh, stream);
        return mesh;
    };
    if (Stored(load()) != Image()) {
        state.SkipWithError("another mesh");
    }
    Time(state, MeshBytes(), [&] { benchmark::DoNotOptimize(load().GetNumVertices()); });
}

void StoreFile(benchmark::State& state, StreamPeer const& peer)
{
    Time(state, MeshBytes(), [&] {
        FileStream file(std::ios::out | std::ios::trunc);
        peer.store(Mesh(), file);
    });
}

void LoadFile(benchmark::State& state, StreamPeer const& peer)
{
    {
        FileStream file(std::ios::out | std::ios::trunc);
        peer.store(Mesh(), file);
    }
    Time(state, MeshBytes(), [&] {
        TriangleMeshPrimitive mesh;
        FileStream file(std::ios::in);
        peer.load(mesh, file);
        benchmark::DoNotOptimize(mesh.GetNumVertices());
    });
    std::remove(Path().c_str());
}

void CopyMemory(benchmark::State& state)
{
    std::vector<char> target(MeshBytes(), 1);
    Time(state, MeshBytes(), [&] {
        std::memcpy(target.data(), Image().data(), MeshBytes());
        benchmark::ClobberMemory();
    });
}

void CopyToFile(benchmark::State& state)
{
    Time(state, MeshBytes(), [&] {
        CFile file(Path().c_str(), CFile::modeWrite | CFile::modeCreate);
        file.Write(Image().data(), static_cast<unsigned int>(MeshBytes()));
        file.Close();
    });
    std::remove(Path().c_str());
}

template <typename Peer>
void RegisterMesh(Peer const& peer)
{
    auto const add = [&](char const* operation, void (*run)(benchmark::State&, Peer const&)) {
        std::string const name = std::string(operation) + "/" + peer.name + "/" + std::to_string(vertexCount);
        benchmark::RegisterBenchmark(name.c_str(), [run, peer](benchmark::State& state) {
            run(state, peer);
        })->Unit(benchmark::kMillisecond);
    };
    add("MeshStore/memory", StoreMemory);
    add("MeshLoad/memory", LoadMemory);
    add("MeshStore/file", StoreFile);
    add("MeshLoad/file", LoadFile);
}

} // namespace

int main(int argc, char** argv)
{
    // Without this each load would pay for a hundred megabytes of new pages, and all rows would look alike.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    Image(); // made here, and not in the first row that asks for it
    for (FilePeer const& peer : filePeers) {
        RegisterMesh(peer);
    }
    for (StreamPeer const& peer : streamPeers) {
        RegisterMesh(peer);
    }
    benchmark::RegisterBenchmark("MeshStore/memory/memcpy/1000000", CopyMemory)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MeshStore/file/OneWrite/1000000", CopyToFile)
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
