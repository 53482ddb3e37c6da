// Ten million fields of mixed kinds, stored and loaded one by one, to memory and to a file in the page cache:
// the archive, a loop written by hand over a buffer of the same size, and two peers that serialize field by
// field.

#include "vorlane/foundation/FrameworkSurface.h"

#include "benchmark/benchmark.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <streambuf>
#include <string>
#include <unistd.h>
#include <vector>

#ifdef VORLANE_HAVE_CEREAL
#include <cereal/archives/binary.hpp>
#endif
#ifdef VORLANE_HAVE_BOOST_SERIALIZATION
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#endif

namespace {

constexpr int fieldsOfRecord = 5;
constexpr int bytesOfRecord = 19;

// The buffers of all rows. The system takes large blocks at less cost.
constexpr unsigned int memoryBuffer = 65536;
constexpr unsigned int fileBuffer = 1048576;

struct Record
{
    int number;
    double position;
    bool flag;
    unsigned short index;
    float weight;

    bool operator==(Record const& other) const
    {
        return number == other.number && position == other.position && flag == other.flag &&
               index == other.index && weight == other.weight;
    }
};

std::vector<Record> MakeRecords(std::int64_t fieldCount)
{
    std::vector<Record> records(static_cast<std::size_t>(fieldCount / fieldsOfRecord));
    int i = 0;
    for (Record& record : records) {
        record = {i, 0.5 * i, i % 3 == 0, static_cast<unsigned short>(i),
                  0.25f * static_cast<float>(i % 1000)};
        ++i;
    }
    return records;
}

/// The loop that one would write by hand: a buffer, one test for each field, memcpy.
template <unsigned int bufferSize>
class ByHand
{
public:
    explicit ByHand(CFile& file) : m_file(file), m_buffer(new unsigned char[bufferSize]) {}

    template <typename Value>
    void Put(Value value)
    {
        if (bufferSize - m_next < sizeof(Value)) {
            Flush();
        }
        std::memcpy(m_buffer.get() + m_next, &value, sizeof(Value));
        m_next += static_cast<unsigned int>(sizeof(Value));
    }
    void Flush()
    {
        m_file.Write(m_buffer.get(), m_next);
        m_next = 0;
    }

    template <typename Value>
    void Take(Value& value)
    {
        if (m_end - m_next < sizeof(Value)) {
            Fill();
        }
        std::memcpy(&value, m_buffer.get() + m_next, sizeof(Value));
        m_next += static_cast<unsigned int>(sizeof(Value));
    }

private:
    void Fill()
    {
        unsigned int const rest = m_end - m_next;
        std::memmove(m_buffer.get(), m_buffer.get() + m_next, rest);
        m_next = 0;
        m_end = rest + m_file.Read(m_buffer.get() + rest, bufferSize - rest);
    }

    CFile& m_file;
    std::unique_ptr<unsigned char[]> m_buffer;
    unsigned int m_next = 0;
    unsigned int m_end = 0;
};

template <unsigned int bufferSize>
struct Vorlane
{
    static void Store(std::vector<Record> const& records, CFile& file)
    {
        CArchive archive(&file, CArchive::store, bufferSize);
        for (Record const& record : records) {
            archive << record.number << record.position << record.flag << record.index << record.weight;
        }
        archive.Close();
    }
    static void Load(std::vector<Record>& records, CFile& file)
    {
        CArchive archive(&file, CArchive::load, bufferSize);
        for (Record& record : records) {
            archive >> record.number >> record.position >> record.flag >> record.index >> record.weight;
        }
    }
};

template <unsigned int bufferSize>
struct Hand
{
    static void Store(std::vector<Record> const& records, CFile& file)
    {
        ByHand<bufferSize> writer(file);
        for (Record const& record : records) {
            writer.Put(record.number);
            writer.Put(record.position);
            writer.Put(static_cast<unsigned char>(record.flag));
            writer.Put(record.index);
            writer.Put(record.weight);
        }
        writer.Flush();
    }
    static void Load(std::vector<Record>& records, CFile& file)
    {
        ByHand<bufferSize> reader(file);
        for (Record& record : records) {
            unsigned char flag = 0;
            reader.Take(record.number);
            reader.Take(record.position);
            reader.Take(flag);
            reader.Take(record.index);
            reader.Take(record.weight);
            record.flag = flag != 0;
        }
    }
};

/// Memory as a stream, of a size known beforehand, which spares the peers their growth.
class MemoryStream : public std::streambuf
{
public:
    explicit MemoryStream(std::vector<char>& bytes)
    {
        setp(bytes.data(), bytes.data() + bytes.size());
        setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
    }
};

template <typename Output, typename Input>
struct Peer
{
    static void Store(std::vector<Record> const& records, std::ostream& stream)
    {
        Output archive(stream);
        for (Record const& record : records) {
            archive& record.number& record.position& record.flag& record.index& record.weight;
        }
    }
    static void Load(std::vector<Record>& records, std::istream& stream)
    {
        Input archive(stream);
        for (Record& record : records) {
            archive& record.number& record.position& record.flag& record.index& record.weight;
        }
    }
};

std::string FilePath()
{
    return std::filesystem::temp_directory_path() / ("vorlane_fields_" + std::to_string(getpid()));
}

/// Times `store` or, after one store, `load`; both work on one medium. `isFile` is told to have a path.
template <typename StoreAll, typename LoadAll>
void Run(benchmark::State& state, bool isStoring, StoreAll store, LoadAll load)
{
    std::vector<Record> const records = MakeRecords(state.range(0));
    std::vector<Record> loaded(records.size());
    store(records);
    load(loaded);
    if (loaded != records) {
        state.SkipWithError("wrong records");
    }
    for (auto _ : state) {
        if (isStoring) {
            store(records);
        } else {
            load(loaded);
        }
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * records.size()) * bytesOfRecord);
}

template <typename Method>
void RunInMemory(benchmark::State& state, bool isStoring)
{
    CMemFile file;
    Run(
        state, isStoring,
        [&](std::vector<Record> const& records) {
            file.SeekToBegin();
            Method::Store(records, file);
        },
        [&](std::vector<Record>& records) {
            file.SeekToBegin();
            Method::Load(records, file);
        });
}

template <typename Method>
void RunInFile(benchmark::State& state, bool isStoring)
{
    std::string const path = FilePath();
    Run(
        state, isStoring,
        [&](std::vector<Record> const& records) {
            CFile file(path.c_str(), CFile::modeWrite | CFile::modeCreate);
            Method::Store(records, file);
            file.Close();
        },
        [&](std::vector<Record>& records) {
            CFile file(path.c_str(), CFile::modeRead);
            Method::Load(records, file);
        });
    std::remove(path.c_str());
}

template <typename Method>
void RunPeerInMemory(benchmark::State& state, bool isStoring)
{
    std::vector<char> bytes(static_cast<std::size_t>(state.range(0)) * bytesOfRecord / fieldsOfRecord + 1000);
    Run(
        state, isStoring,
        [&](std::vector<Record> const& records) {
            MemoryStream memory(bytes);
            std::ostream stream(&memory);
            Method::Store(records, stream);
        },
        [&](std::vector<Record>& records) {
            MemoryStream memory(bytes);
            std::istream stream(&memory);
            Method::Load(records, stream);
        });
}

template <typename Method>
void RunPeerInFile(benchmark::State& state, bool isStoring)
{
    std::string const path = FilePath();
    std::vector<char> buffer(fileBuffer);
    Run(
        state, isStoring,
        [&](std::vector<Record> const& records) {
            std::ofstream stream;
            stream.rdbuf()->pubsetbuf(buffer.data(), fileBuffer);
            stream.open(path, std::ios::binary);
            Method::Store(records, stream);
        },
        [&](std::vector<Record>& records) {
            std::ifstream stream;
            stream.rdbuf()->pubsetbuf(buffer.data(), fileBuffer);
            stream.open(path, std::ios::binary);
            Method::Load(records, stream);
        });
    std::remove(path.c_str());
}

void Register(std::string const& peer, void (*inMemory)(benchmark::State&, bool),
              void (*inFile)(benchmark::State&, bool))
{
    constexpr int fields = 10000000;
    for (bool const isStoring : {true, false}) {
        std::string const verb = isStoring ? "store" : "load";
        benchmark::RegisterBenchmark(("ArchiveFields/" + verb + "Memory/" + peer).c_str(), inMemory,
                                     isStoring)
            ->Arg(fields);
        benchmark::RegisterBenchmark(("ArchiveFields/" + verb + "File/" + peer).c_str(), inFile, isStoring)
            ->Arg(fields);
    }
}

} // namespace

int main(int argc, char** argv)
{
    Register("Vorlane", RunInMemory<Vorlane<memoryBuffer>>, RunInFile<Vorlane<fileBuffer>>);
    Register("by_hand", RunInMemory<Hand<memoryBuffer>>, RunInFile<Hand<fileBuffer>>);
#ifdef VORLANE_HAVE_CEREAL
    using Cereal = Peer<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>;
    Register("cereal", RunPeerInMemory<Cereal>, RunPeerInFile<Cereal>);
#endif
#ifdef VORLANE_HAVE_BOOST_SERIALIZATION
    using Boost = Peer<boost::archive::binary_oarchive, boost::archive::binary_iarchive>;
    Register("boost", RunPeerInMemory<Boost>, RunPeerInFile<Boost>);
#endif
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
