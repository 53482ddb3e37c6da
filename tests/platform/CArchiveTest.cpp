// The bytes of every field of an archive, in both directions and for many sizes of the buffer.

#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"
#include "tests/support/TemporaryFile.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using VorlaneTest::TemporaryFile;

namespace {

using Bytes = std::vector<unsigned char>;

Bytes Joined(std::vector<Bytes> const& parts)
{
    Bytes all;
    for (Bytes const& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Bytes Stored(std::function<void(CArchive&)> const& store)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    store(archive);
    archive.Close();
    return file.Bytes();
}

struct Loading
{
    explicit Loading(Bytes bytes) : m_file(std::move(bytes)), m_archive(&m_file, CArchive::load) {}

    CArchive& Archive() { return m_archive; }

    CMemFile m_file;
    CArchive m_archive;
};

/// The cause of the CArchiveException that `operation` raises, which names `fileName`; 0 for none.
template <typename Operation>
int CauseOf(Operation operation, std::string const& fileName = "")
{
    try {
        operation();
    } catch (CArchiveException const& exception) {
        EXPECT_EQ(exception.m_strFileName, fileName.c_str());
        return exception.m_cause;
    }
    return 0;
}

struct Field
{
    char const* name;
    Bytes bytes;
    std::function<void(CArchive&)> store;
    std::function<void(CArchive&)> expectLoaded;
};

/// A field that stores `stored` as `bytes`, which load as `loaded`.
template <typename Value>
Field Row(char const* name, Value stored, Bytes bytes, Value loaded)
{
    return {name, std::move(bytes), [stored](CArchive& archive) { archive << stored; },
            [name, loaded](CArchive& archive) {
                Value value{};
                archive >> value;
                EXPECT_EQ(value, loaded) << name;
            }};
}

std::vector<Field> const& Fields()
{
    static std::vector<Field> const fields = {
        Row<bool>("true", true, {1}, true),
        Row<bool>("false", false, {0}, false),
        Row<char>("char", '\xE9', {0xE9}, '\xE9'),
        Row<signed char>("signed char", -1, {0xFF}, -1),
        Row<unsigned char>("unsigned char", 200, {200}, 200),
        Row<short>("short", -2, {0xFE, 0xFF}, -2),
        Row<unsigned short>("unsigned short", 0x1234, {0x34, 0x12}, 0x1234),
        Row<int>("int", -0x7FFFFFFF, {1, 0, 0, 0x80}, -0x7FFFFFFF),
        Row<unsigned int>("unsigned int", 0x89ABCDEF, {0xEF, 0xCD, 0xAB, 0x89}, 0x89ABCDEF),
        Row<long>("long", -2, {0xFE, 0xFF, 0xFF, 0xFF}, -2),
        Row<long>("long past 32 bits", 0x180000001, {1, 0, 0, 0x80}, -0x7FFFFFFF),
        Row<unsigned long>("unsigned long", 0xF00000001, {1, 0, 0, 0}, 1),
        Row<long long>("long long", -2, {0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, -2),
        Row<unsigned long long>("unsigned long long", 0x0102030405060708, {8, 7, 6, 5, 4, 3, 2, 1},
                                0x0102030405060708),
        Row<float>("float", 1.5f, {0, 0, 0xC0, 0x3F}, 1.5f),
        Row<double>("double", -2.5, {0, 0, 0, 0, 0, 0, 4, 0xC0}, -2.5),
        Row<CString>("text", "a\xE9", {2, 'a', 0xE9}, "a\xE9"),
        Row<CString>("empty text", "", {0}, ""),
    };
    return fields;
}

} // namespace

TEST(CArchiveTest, FieldsHaveTheirBytesWhateverTheBuffer)
{
    std::vector<Bytes> parts;
    for (Field const& field : Fields()) {
        parts.push_back(field.bytes);
    }
    Bytes const expected = Joined(parts);
    for (int const bufferSize : {-1, 0, 1, 2, 3, 7, 8, 9, 10, 64, 1 << 20}) {
        SCOPED_TRACE(bufferSize);
        CMemFile file;
        CArchive storing(&file, CArchive::store, bufferSize);
        for (Field const& field : Fields()) {
            field.store(storing);
        }
        storing.Close();
        EXPECT_EQ(file.Bytes(), expected);
        file.SeekToBegin();
        CArchive loading(&file, CArchive::load, bufferSize);
        for (Field const& field : Fields()) {
            field.expectLoaded(loading);
        }
        EXPECT_EQ(loading.GetRemaining(), 0u);
    }
}

TEST(CArchiveTest, CountsTakeTwoOrSixBytes)
{
    struct Row
    {
        unsigned long count;
        Bytes bytes;
        unsigned long loaded;
    };
    Row const rows[] = {
        {0, {0, 0}, 0},
        {65534, {0xFE, 0xFF}, 65534},
        {65535, {0xFF, 0xFF, 0xFF, 0xFF, 0, 0}, 65535},
        {0xFFFFFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 0xFFFFFFFF},
        {0x100000005, {5, 0}, 5},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.count);
        EXPECT_EQ(Stored([&](CArchive& archive) { archive.WriteCount(row.count); }), row.bytes);
        Loading load(row.bytes);
        EXPECT_EQ(load.Archive().ReadCount(), row.loaded);
    }
    EXPECT_EQ(Loading({0xFF, 0xFF, 7, 0, 0, 0}).Archive().ReadCount(), 7u); // longer than need be
}

TEST(CArchiveTest, TextPrefixesHaveEveryWidth)
{
    struct Row
    {
        unsigned int length;
        Bytes bytes;
    };
    Row const rows[] = {
        {0, {0}},
        {254, {254}},
        {255, {0xFF, 0xFF, 0}},
        {65533, {0xFF, 0xFD, 0xFF}},
        {65534, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0, 0}},
        {4294967294, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}},
        {4294967295, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.length);
        Bytes const wide = Joined({{0xFF, 0xFE, 0xFF}, row.bytes});
        EXPECT_EQ(Stored([&](CArchive& archive) { AfxWriteStringLength(archive, row.length, 0); }),
                  row.bytes);
        EXPECT_EQ(Stored([&](CArchive& archive) { AfxWriteStringLength(archive, row.length, 1); }), wide);
        int size = 0;
        EXPECT_EQ(AfxReadStringLength(Loading(row.bytes).Archive(), size), row.length);
        EXPECT_EQ(size, 1);
        EXPECT_EQ(AfxReadStringLength(Loading(wide).Archive(), size), row.length);
        EXPECT_EQ(size, 2);
    }
    int size = 0;
    EXPECT_EQ(AfxReadStringLength(Loading({0xFF, 3, 0}).Archive(), size), 3u); // longer than need be
    EXPECT_EQ(AfxReadStringLength(Loading({0xFF, 0xFE, 0xFF, 0xFF, 0xFE, 0xFF}).Archive(), size), 65534u);
}

TEST(CArchiveTest, TextsGoAsTheirBytesAndWideOnesAreNarrowed)
{
    for (int const length : {0, 1, 254, 255, 65533, 65534, 300000}) {
        std::string const bytes(static_cast<std::size_t>(length), '\xE9');
        CString const text(bytes.data(), length);
        CString loaded("old");
        Loading load(Stored([&](CArchive& archive) { archive << text; }));
        load.Archive() >> loaded;
        EXPECT_EQ(loaded, text) << length;
    }
    struct Row
    {
        Bytes bytes;
        std::string text;
    };
    Row const rows[] = {
        {{3, 'a', 0, 'b'}, std::string("a\0b", 3)},
        {{0xFF, 0xFE, 0xFF, 2, 0xE9, 0, 0x00, 0x01}, "\xE9?"},
        {{0xFF, 0xFE, 0xFF, 0}, ""},
        {{0xFF, 2, 0, 'a', 'b'}, "ab"},
    };
    for (Row const& row : rows) {
        CString text("old");
        Loading load(row.bytes);
        load.Archive() >> text;
        EXPECT_EQ(std::string(text, static_cast<std::size_t>(text.GetLength())), row.text);
        EXPECT_EQ(load.Archive().GetRemaining(), 0u);
    }
    Bytes wide = {0xFF, 0xFE, 0xFF, 0xFF, 0x10, 0x27}; // 10000 characters, several blocks
    wide.resize(6 + 20000, 'x');
    CString text;
    Loading(wide).Archive() >> text;
    EXPECT_EQ(text.GetLength(), 10000);
    EXPECT_EQ(text[9999], '?');
}

TEST(CArchiveTest, AnEarlyEndLeavesTheValueAlone)
{
    for (Field const& field : Fields()) {
        for (std::size_t length = 0; length < field.bytes.size(); ++length) {
            SCOPED_TRACE(testing::Message() << field.name << " of " << length << " bytes");
            Loading load(
                Bytes(field.bytes.begin(), field.bytes.begin() + static_cast<std::ptrdiff_t>(length)));
            EXPECT_EQ(CauseOf([&] { field.expectLoaded(load.Archive()); }), +CArchiveException::endOfFile);
        }
    }
    double number = 1.25;
    Loading half({1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(CauseOf([&] { half.Archive() >> number; }), +CArchiveException::endOfFile);
    EXPECT_EQ(number, 1.25);
    CString text("old");
    for (Bytes const& bytes : {Bytes{3, 'a', 'b'}, Bytes{0xFF, 0xFE, 0xFF, 2, 'a', 0, 'b'}}) {
        EXPECT_EQ(CauseOf([&] { Loading(bytes).Archive() >> text; }), +CArchiveException::endOfFile);
        EXPECT_EQ(text, "old");
    }
}

TEST(CArchiveTest, AnnouncedSizesTakeNoMemoryAhead)
{
    VorlaneTest::AllocationLimit const limit(64 << 20);
    CString text("old");
    Bytes const announced = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}; // 2147483647 characters
    EXPECT_EQ(CauseOf([&] { Loading(announced).Archive() >> text; }), +CArchiveException::endOfFile);
    EXPECT_EQ(CauseOf([&] {
                  Loading(Joined({{0xFF, 0xFE, 0xFF}, announced})).Archive() >> text;
              }),
              +CArchiveException::endOfFile);
    for (Bytes const& tooLong : {Bytes{0xFF, 0xFF, 0xFF, 0, 0, 0, 0x80}, Bytes(15, 0xFF)}) {
        EXPECT_THROW(Loading(tooLong).Archive() >> text, CMemoryException);
    }
    EXPECT_EQ(text, "old");
    CArray<int, int> array;
    Bytes const manyInts = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 1, 0, 0, 0};
    EXPECT_EQ(CauseOf([&] { array.Serialize(Loading(manyInts).Archive()); }), +CArchiveException::endOfFile);
    EXPECT_EQ(array[0], 1);
    CStringArray texts;
    EXPECT_EQ(CauseOf([&] { texts.Serialize(Loading(manyInts).Archive()); }), +CArchiveException::endOfFile);
    EXPECT_THROW(array.Serialize(Loading({0xFF, 0xFF, 0, 0, 0, 0x80}).Archive()), CInvalidArgException);
    CMap<CString, char const*, int, int> map;
    EXPECT_EQ(CauseOf([&] { map.Serialize(Loading(Bytes(6, 0xFF)).Archive()); }),
              +CArchiveException::endOfFile);
}

TEST(CArchiveTest, LongArraysComeThroughWithoutAKnownLength)
{
    // 40 MB, past the size that is believed at once, from a file that vouches for nothing.
    struct Pipe : CMemFile
    {
        using CMemFile::CMemFile;
        std::uint64_t GetRemaining() const override { return 0; }
    };
    CArray<int, int> array;
    array.SetAtGrow(9999999, 2);
    Pipe file(Stored([&](CArchive& archive) { array.Serialize(archive); }));
    CArchive archive(&file, CArchive::load);
    CArray<int, int> loaded;
    loaded.Serialize(archive);
    ASSERT_EQ(loaded.GetSize(), 10000000);
    EXPECT_EQ(loaded[9999999], 2);
}

TEST(CArchiveTest, ElementsGoAsOneBlockAfterTheirCount)
{
    CArray<int, int> ints;
    ints.Add(1);
    ints.Add(-2);
    EXPECT_EQ(Stored([&](CArchive& archive) { ints.Serialize(archive); }),
              (Bytes{2, 0, 1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF}));
    CArray<int, int> loaded;
    loaded.SetSize(1, -1);
    EXPECT_EQ(CauseOf([&] {
                  loaded.Serialize(Loading({4, 0, 7, 0, 0, 0, 9, 9}).Archive());
              }),
              +CArchiveException::endOfFile);
    ASSERT_EQ(loaded.GetSize(), 4); // the new size, with the elements read so far
    EXPECT_EQ(loaded[0], 7);
    EXPECT_EQ(loaded[3], 0);
    loaded.Serialize(Loading({0, 0}).Archive());
    EXPECT_EQ(loaded.GetData(), nullptr);
    CArray<bool, bool> truths;
    truths.Serialize(Loading({3, 0, 0, 1, 0x80}).Archive());
    EXPECT_EQ(Stored([&](CArchive& archive) { truths.Serialize(archive); }), (Bytes{3, 0, 0, 1, 1}));
    EXPECT_THROW(SerializeElements<int>(Loading({1}).Archive(), nullptr, 1), CInvalidArgException);
    CArray<std::vector<int>, std::vector<int> const&> noForm;
    noForm.SetSize(1, -1);
    EXPECT_THROW(Stored([&](CArchive& archive) { noForm.Serialize(archive); }), CInvalidArgException);
}

TEST(CArchiveTest, MapsGoInTheirOrder)
{
    CMap<int, int, CString, char const*> map;
    map[16] = "b";
    map[0] = "a";
    map[1] = "c";
    Bytes const bytes = {3, 0, 1, 0, 0, 0, 1, 'c', 0, 0, 0, 0, 1, 'a', 16, 0, 0, 0, 1, 'b'};
    EXPECT_EQ(Stored([&](CArchive& archive) { map.Serialize(archive); }), bytes);
    CMap<int, int, CString, char const*> loaded;
    loaded[5] = "stays";
    loaded.Serialize(Loading(bytes).Archive());
    EXPECT_EQ(loaded.GetCount(), 4);
    EXPECT_EQ(loaded[1], "c");
    CMapStringToPtr addresses;
    addresses["x"] = reinterpret_cast<void*>(std::uintptr_t{0x12345678});
    EXPECT_EQ(Stored([&](CArchive& archive) { addresses.Serialize(archive); }),
              (Bytes{1, 0, 1, 'x', 0x78, 0x56, 0x34, 0x12}));
    addresses["x"] = reinterpret_cast<void*>(std::uintptr_t{0x1FFFFFFFF});
    EXPECT_THROW(Stored([&](CArchive& archive) { addresses.Serialize(archive); }), CInvalidArgException);
}

TEST(CArchiveTest, TheWrongModeIsRefusedWithTheFilesName)
{
    TemporaryFile const temporary("mode");
    CFile file(temporary.path.c_str(), CFile::modeReadWrite | CFile::modeCreate);
    CArchive storing(&file, CArchive::store);
    int number = 5;
    EXPECT_EQ(CauseOf([&] { storing >> number; }, temporary.path), +CArchiveException::writeOnly);
    EXPECT_EQ(CauseOf([&] { (void)storing.Read(&number, 0); }, temporary.path),
              +CArchiveException::writeOnly);
    CArchive loading(&file, CArchive::load);
    EXPECT_EQ(CauseOf([&] { loading << number; }, temporary.path), +CArchiveException::readOnly);
    EXPECT_EQ(CauseOf([&] { loading.Write(&number, 0); }, temporary.path), +CArchiveException::readOnly);
    EXPECT_EQ(CauseOf([&] { loading >> number; }, temporary.path), +CArchiveException::endOfFile);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(storing.m_nObjectSchema, 0xFFFFFFFFu);
    storing.Close();
    EXPECT_EQ(CauseOf([&] { storing << number; }), +CArchiveException::generic);
    EXPECT_THROW(CArchive(nullptr, CArchive::load), CInvalidArgException);
    EXPECT_THROW(CArchive(&file, 2), CInvalidArgException);
}

TEST(CArchiveTest, BlocksOfAnySizeMixWithFields)
{
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    Bytes block(5000);
    std::generate(block.begin(), block.end(), [&] { return static_cast<unsigned char>(random()); });
    std::vector<unsigned int> sizes(200);
    std::generate(sizes.begin(), sizes.end(), [&] {
        return static_cast<unsigned int>(random.Integer(0, random.Integer(0, 1) == 0 ? 20 : 5000));
    });
    CMemFile file;
    CArchive storing(&file, CArchive::store, 1000);
    for (unsigned int const size : sizes) {
        storing.Write(block.data(), size);
        storing << size;
    }
    storing.Close();
    file.SeekToBegin();
    CArchive loading(&file, CArchive::load, 777);
    for (unsigned int const size : sizes) {
        Bytes taken(size);
        unsigned int told = 0;
        ASSERT_EQ(loading.Read(taken.data(), size), size);
        ASSERT_TRUE(std::equal(taken.begin(), taken.end(), block.begin()));
        loading >> told;
        ASSERT_EQ(told, size);
    }
    EXPECT_EQ(loading.Read(block.data(), 5000), 0u);
}

TEST(CArchiveTest, ArchivesMayFollowEachOtherInAFile)
{
    CMemFile file;
    for (int const number : {1, 2}) {
        CArchive archive(&file, CArchive::store);
        archive << number;
    }
    {
        CArchive dropped(&file, CArchive::store);
        dropped << 3;
        dropped.Abort();
    }
    EXPECT_EQ(file.GetLength(), 8u);
    file.SeekToBegin();
    for (int const expected : {1, 2}) {
        CArchive archive(&file, CArchive::load);
        int number = 0;
        archive >> number;
        EXPECT_EQ(number, expected);
    }
}
