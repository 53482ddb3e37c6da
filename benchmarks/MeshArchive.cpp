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
constexpr int bufferSize = 65536;

/// A file over memory that is there already, so that no row pays for its growth.
class BlockFile : public CFile
{
public:
    explicit BlockFile(std::size_t capacity) : m_bytes(capacity, 1) {}
    BlockFile(BlockFile const& other) : CFile(), m_bytes(other.m_bytes), m_size(other.m_size) {}

    unsigned int Read(void* bytes, unsigned int count) override
    {
        std::size_t const taken = std::min<std::size_t>(count, m_size - m_position);
        std::memcpy(bytes, m_bytes.data() + m_position, taken);
        m_position += taken;
        return static_cast<unsigned int>(taken);
    }
    void Write(void const* bytes, unsigned int count) override
    {
        if (count > m_bytes.size() - m_position) {
            std::abort();
        }
        std::memcpy(m_bytes.data() + m_position, bytes, count);
        m_position += count;
        m_size = std::max(m_size, m_position);
    }
    void Flush() override {}
    void Close() override {}
    void SeekToBegin() override { m_position = 0; }
    std::uint64_t GetLength() const override { return m_size; }
    std::uint64_t GetRemaining() const override { return m_size - m_position; }

    char* Data() { return reinterpret_cast<char*>(m_bytes.data()); }
    std::size_t Size() const { return m_size; }
    std::size_t Capacity() const { return m_bytes.size(); }
    void SetSize(std::size_t size) { m_size = size; }
    bool operator==(BlockFile const& other) const
    {
        return m_size == other.m_size && std::memcmp(m_bytes.data(), other.m_bytes.data(), m_size) == 0;
    }

private:
    std::vector<unsigned char> m_bytes;
    std::size_t m_size = 0;
    std::size_t m_position = 0;
};

/// The same memory as a stream buffer, for the peers.
class BlockStream : public std::streambuf
{
public:
    explicit BlockStream(BlockFile& file)
    {
        setp(file.Data(), file.Data() + file.Capacity());
        setg(file.Data(), file.Data(), file.Data() + file.Size());
    }
    std::size_t Written() const { return static_cast<std::size_t>(pptr() - pbase()); }
};

/// The buffer that somebody would write by hand: one test for each value.
class HandWriter
{
public:
    explicit HandWriter(CFile& file) : m_file(file), m_buffer(bufferSize) {}
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
    explicit HandReader(CFile& file) : m_file(file), m_buffer(bufferSize) {}
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

void StoreByArchive(TriangleMeshPrimitive const& mesh, CFile& file)
{
    CArchive ar(&file, CArchive::store, bufferSize);
    ar.m_nObjectSchema = schema;
    Vorlane::Serialize(ar, const_cast<TriangleMeshPrimitive&>(mesh)); // a store does not change it
    ar.Close();
}

void LoadByArchive(TriangleMeshPrimitive& mesh, CFile& file)
{
    CArchive ar(&file, CArchive::load, bufferSize);
    ar.m_nObjectSchema = schema;
    Vorlane::Serialize(ar, mesh);
}

void StoreByHand(TriangleMeshPrimitive const& mesh, CFile& file)
{
    HandWriter writer(file);
    PutMesh(mesh, writer);
    writer.Flush();
}

void LoadByHand(TriangleMeshPrimitive& mesh, CFile& file)
{
    HandReader reader(file);
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

BlockFile const& Image()
{
    static BlockFile image(MeshBytes());
    if (image.Size() == 0) {
        StoreByArchive(Mesh(), image);
    }
    return image;
}

std::string const& Path()
{
    static std::string const path = [] {
        char const* const folder = std::getenv("TMPDIR");
        return std::string(folder != nullptr ? folder : "/tmp") + "/vorlane_mesh_archive.bin";
    }();
    return path;
}

/// Whether `mesh` stores to the bytes of the image.
bool IsTheMesh(TriangleMeshPrimitive const& mesh)
{
    BlockFile file(MeshBytes() + 4096);
    StoreByArchive(mesh, file);
    return file == Image();
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
    void (*store)(TriangleMeshPrimitive const&, CFile&);
    void (*load)(TriangleMeshPrimitive&, CFile&);
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
    BlockFile file(MeshBytes() + 4096);
    peer.store(Mesh(), file);
    if (!(file == Image())) {
        state.SkipWithError("other bytes");
    }
    Time(state, MeshBytes(), [&] {
        file.SeekToBegin();
        peer.store(Mesh(), file);
    });
}

void LoadMemory(benchmark::State& state, FilePeer const& peer)
{
    BlockFile file(Image());
    auto const load = [&] {
        TriangleMeshPrimitive mesh;
        file.SeekToBegin();
        peer.load(mesh, file);
        return mesh;
    };
    if (!IsTheMesh(load())) {
        state.SkipWithError("another mesh");
    }
    Time(state, MeshBytes(), [&] { benchmark::DoNotOptimize(load().GetNumVertices()); });
}

void StoreFile(benchmark::State& state, FilePeer const& peer)
{
    Time(state, MeshBytes(), [&] {
        CFile file(Path().c_str(), CFile::modeWrite | CFile::modeCreate);
        peer.store(Mesh(), file);
        file.Close();
    });
}

void LoadFile(benchmark::State& state, FilePeer const& peer)
{
    {
        CFile file(Path().c_str(), CFile::modeWrite | CFile::modeCreate);
        StoreByArchive(Mesh(), file);
    }
    Time(state, MeshBytes(), [&] {
        TriangleMeshPrimitive mesh;
        CFile file(Path().c_str(), CFile::modeRead);
        peer.load(mesh, file);
        benchmark::DoNotOptimize(mesh.GetNumVertices());
    });
    std::remove(Path().c_str());
}

void StoreMemory(benchmark::State& state, StreamPeer const& peer)
{
    BlockFile file(MeshBytes() + 4096);
    Time(state, MeshBytes(), [&] {
        BlockStream stream(file);
        peer.store(Mesh(), stream);
    });
}

void LoadMemory(benchmark::State& state, StreamPeer const& peer)
{
    BlockFile file(MeshBytes() + 4096);
    {
        BlockStream stream(file);
        peer.store(Mesh(), stream);
        file.SetSize(stream.Written());
    }
    auto const load = [&] {
        TriangleMeshPrimitive mesh;
        BlockStream stream(file);
        peer.load(mesh, stream);
        return mesh;
    };
    if (!IsTheMesh(load())) {
        state.SkipWithError("another mesh");
    }
    Time(state, MeshBytes(), [&] { benchmark::DoNotOptimize(load().GetNumVertices()); });
}

void StoreFile(benchmark::State& state, StreamPeer const& peer)
{
    Time(state, MeshBytes(), [&] {
        std::filebuf file;
        file.open(Path(), std::ios::out | std::ios::binary | std::ios::trunc);
        peer.store(Mesh(), file);
    });
}

void LoadFile(benchmark::State& state, StreamPeer const& peer)
{
    {
        std::filebuf file;
        file.open(Path(), std::ios::out | std::ios::binary | std::ios::trunc);
        peer.store(Mesh(), file);
    }
    Time(state, MeshBytes(), [&] {
        TriangleMeshPrimitive mesh;
        std::filebuf file;
        file.open(Path(), std::ios::in | std::ios::binary);
        peer.load(mesh, file);
        benchmark::DoNotOptimize(mesh.GetNumVertices());
    });
    std::remove(Path().c_str());
}

void CopyMemory(benchmark::State& state)
{
    BlockFile source(Image());
    std::vector<char> target(source.Size(), 1);
    Time(state, MeshBytes(), [&] {
        std::memcpy(target.data(), source.Data(), source.Size());
        benchmark::ClobberMemory();
    });
}

void CopyToFile(benchmark::State& state)
{
    BlockFile source(Image());
    Time(state, MeshBytes(), [&] {
        CFile file(Path().c_str(), CFile::modeWrite | CFile::modeCreate);
        file.Write(source.Data(), static_cast<unsigned int>(source.Size()));
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
