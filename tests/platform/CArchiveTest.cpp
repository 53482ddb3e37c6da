// The bytes of every field of an archive, in both directions and for many sizes of the buffer.

#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"
#include "tests/support/Files.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using VorlaneTest::Bytes;
using VorlaneTest::LoadBytes;
using VorlaneTest::StoredBytes;
using VorlaneTest::TemporaryFile;
using VorlaneTest::unsetSchema;

namespace {

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

/// Loads an object that has a Serialize.
template <typename Object>
int LoadObject(Object& object, Bytes bytes)
{
    return LoadBytes(unsetSchema, std::move(bytes), [&](CArchive& archive) { object.Serialize(archive); });
}

template <typename Object>
Bytes StoredObject(Object& object)
{
    return StoredBytes(unsetSchema, [&](CArchive& archive) { object.Serialize(archive); });
}

struct Field
{
    Bytes bytes;
    std::function<void(CArchive&)> store;
    std::function<void(CArchive&)> expectLoaded;
};

template <typename Value>
Field Row(Value stored, Bytes bytes, Value loaded)
{
    return {std::move(bytes), [stored](CArchive& archive) { archive << stored; },
            [loaded](CArchive& archive) {
                Value value{};
                archive >> value;
                EXPECT_EQ(value, loaded);
            }};
}

Field Count(unsigned long stored, Bytes bytes, unsigned long loaded)
{
    return {std::move(bytes), [stored](CArchive& archive) { archive.WriteCount(stored); },
            [loaded](CArchive& archive) {
                EXPECT_EQ(archive.ReadCount(), loaded);
            }};
}

Field Prefix(unsigned int length, int characterSize, Bytes bytes)
{
    return {std::move(bytes),
            [=](CArchive& archive) { AfxWriteStringLength(archive, length, characterSize - 1); },
            [=](CArchive& archive) {
                int size = 0;
                EXPECT_EQ(AfxReadStringLength(archive, size), length);
                EXPECT_EQ(size, characterSize);
            }};
}

std::vector<Field> const& Fields()
{
    static std::vector<Field> const fields = {
        Row<bool>(true, {1}, true),
        Row<bool>(false, {0}, false),
        Row<char>('\xE9', {0xE9}, '\xE9'),
        Row<signed char>(-1, {0xFF}, -1),
        Row<unsigned char>(200, {200}, 200),
        Row<short>(-2, {0xFE, 0xFF}, -2),
        Row<unsigned short>(0x1234, {0x34, 0x12}, 0x1234),
        Row<int>(-0x7FFFFFFF, {1, 0, 0, 0x80}, -0x7FFFFFFF),
        Row<unsigned int>(0x89ABCDEF, {0xEF, 0xCD, 0xAB, 0x89}, 0x89ABCDEF),
        Row<long>(-2, {0xFE, 0xFF, 0xFF, 0xFF}, -2),
        Row<long>(0x180000001, {1, 0, 0, 0x80}, -0x7FFFFFFF),
        Row<unsigned long>(0xF80000001, {1, 0, 0, 0x80}, 0x80000001),
        Row<long long>(-2, {0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, -2),
        Row<unsigned long long>(0x0102030405060708, {8, 7, 6, 5, 4, 3, 2, 1}, 0x0102030405060708),
        Row<float>(1.5f, {0, 0, 0xC0, 0x3F}, 1.5f),
        Row<double>(-2.5, {0, 0, 0, 0, 0, 0, 4, 0xC0}, -2.5),
        Row<CString>("a\xE9", {2, 'a', 0xE9}, "a\xE9"),
        Row<CString>("", {0}, ""),
        Count(0, {0, 0}, 0),
        Count(65534, {0xFE, 0xFF}, 65534),
        Count(65535, {0xFF, 0xFF, 0xFF, 0xFF, 0, 0}, 65535),
        Count(0xFFFFFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 0xFFFFFFFF),
        Count(0x100000005, {5, 0}, 5),
        Prefix(254, 1, {254}),
        Prefix(255, 1, {0xFF, 0xFF, 0}),
        Prefix(65533, 1, {0xFF, 0xFD, 0xFF}),
        Prefix(65534, 1, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0, 0}),
        Prefix(4294967294, 1, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}),
        Prefix(4294967295, 1, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}),
        Prefix(2, 2, {0xFF, 0xFE, 0xFF, 2}),
        Prefix(65534, 2, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0, 0}),
    };
    return fields;
}

} // namespace

TEST(CArchiveTest, FieldsHaveTheirBytesWhateverTheBuffer)
{
    Bytes expected;
    for (Field const& field : Fields()) {
        expected.insert(expected.end(), field.bytes.begin(), field.bytes.end());
    }
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

TEST(CArchiveTest, AnEarlyEndLeavesTheValueAlone)
{
    for (Field const& field : Fields()) {
        for (Bytes bytes = field.bytes; !bytes.empty();) {
            bytes.pop_back();
            EXPECT_EQ(LoadBytes(unsetSchema, bytes, field.expectLoaded), +CArchiveException::endOfFile)
                << testing::PrintToString(field.bytes);
        }
    }
    CMemFile file({1, 2, 3, 4, 5, 6, 7});
    CArchive archive(&file, CArchive::load);
    double number = 1.25;
    EXPECT_EQ(CauseOf([&] { archive >> number; }), +CArchiveException::endOfFile);
    EXPECT_EQ(number, 1.25);
}

TEST(CArchiveTest, TextsLoadFromEveryForm)
{
    struct Row
    {
        Bytes bytes;
        std::string text;
        int cause;
    };
    Row const rows[] = {
        {{3, 'a', 0, 'b'}, std::string("a\0b", 3), 0},
        {{0xFF, 2, 0, 'a', 'b'}, "ab", 0}, // a prefix longer than need be
        {{0xFF, 0xFE, 0xFF, 2, 0xE9, 0, 0x00, 0x01}, "\xE9?", 0},
        {{0xFF, 0xFE, 0xFF, 0}, "", 0},
        {{3, 'a', 'b'}, "old", CArchiveException::endOfFile},
        {{0xFF, 0xFE, 0xFF, 2, 'a', 0, 'b'}, "old", CArchiveException::endOfFile},
    };
    for (Row const& row : rows) {
        CString text("old");
        EXPECT_EQ(LoadBytes(unsetSchema, row.bytes, [&](CArchive& archive) { archive >> text; }), row.cause);
        EXPECT_EQ(std::string(text, static_cast<std::size_t>(text.GetLength())), row.text);
    }
    for (std::size_t const length : {254u, 255u, 65533u, 65534u, 300000u}) {
        CString const text(std::string(length, '\xE9').c_str());
        CString loaded;
        Bytes const bytes = StoredBytes(unsetSchema, [&](CArchive& archive) { archive << text; });
        EXPECT_EQ(LoadBytes(unsetSchema, bytes, [&](CArchive& archive) { archive >> loaded; }), 0);
        EXPECT_EQ(loaded, text) << length;
    }
    Bytes wide = {0xFF, 0xFE, 0xFF, 0xFF, 0x10, 0x27}; // 10000 characters, several blocks
    wide.resize(6 + 20000, 'x');
    CString text;
    EXPECT_EQ(LoadBytes(unsetSchema, wide, [&](CArchive& archive) { archive >> text; }), 0);
    EXPECT_EQ(text.GetLength(), 10000);
}

TEST(CArchiveTest, AnnouncedSizesTakeNoMemoryAhead)
{
    VorlaneTest::AllocationLimit const limit(64 << 20);
    CString text("old");
    auto const loadText = [&](CArchive& archive) {
        archive >> text;
    };
    Bytes const narrow = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}; // 2147483647 characters
    Bytes const wide = VorlaneTest::Joined({{0xFF, 0xFE, 0xFF}, narrow});
    EXPECT_EQ(LoadBytes(unsetSchema, narrow, loadText), +CArchiveException::endOfFile);
    EXPECT_EQ(LoadBytes(unsetSchema, wide, loadText), +CArchiveException::endOfFile);
    EXPECT_THROW(LoadBytes(unsetSchema, {0xFF, 0xFF, 0xFF, 0, 0, 0, 0x80}, loadText), CMemoryException);
    EXPECT_THROW(LoadBytes(unsetSchema, Bytes(15, 0xFF), loadText), CMemoryException);
    EXPECT_EQ(text, "old");
    Bytes const many = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 1, 0, 0, 0};
    CArray<int, int> ints;
    CStringArray texts;
    CMap<CString, char const*, int, int> map;
    EXPECT_EQ(LoadObject(ints, many), +CArchiveException::endOfFile);
    EXPECT_EQ(ints[0], 1);
    EXPECT_EQ(LoadObject(texts, many), +CArchiveException::endOfFile);
    EXPECT_EQ(LoadObject(map, Bytes(6, 0xFF)), +CArchiveException::endOfFile);
    EXPECT_THROW(LoadObject(ints, {0xFF, 0xFF, 0, 0, 0, 0x80}), CInvalidArgException);
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
    Pipe file(StoredObject(array));
    CArchive archive(&file, CArchive::load);
    CArray<int, int> loaded;
    loaded.Serialize(archive);
    ASSERT_EQ(loaded.GetSize(), 10000000);
    EXPECT_EQ(loaded[9999999], 2);
}

TEST(CArchiveTest, ElementsGoAsOneBlockAfterTheirCount)
{
    CArray<int, int> ints;
    Bytes const bytes = {2, 0, 1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(LoadObject(ints, bytes), 0);
    EXPECT_EQ(ints[1], -2);
    EXPECT_EQ(StoredObject(ints), bytes);
    // The new size, with what was read and else what there was or zeros.
    EXPECT_EQ(LoadObject(ints, {3, 0, 7, 0, 0, 0, 9}), +CArchiveException::endOfFile);
    EXPECT_EQ(StoredObject(ints), (Bytes{3, 0, 7, 0, 0, 0, 9, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
    EXPECT_EQ(LoadObject(ints, {0, 0}), 0);
    EXPECT_EQ(ints.GetData(), nullptr);
    CArray<bool, bool> truths;
    EXPECT_EQ(LoadObject(truths, {3, 0, 0, 1, 0x80}), 0);
    EXPECT_EQ(StoredObject(truths), (Bytes{3, 0, 0, 1, 1}));
    struct BrokenFile : CMemFile
    {
        using CMemFile::CMemFile;
        unsigned int Read(void* bytes, unsigned int) override
        {
            unsigned int const taken = CMemFile::Read(bytes, 3);
            return taken > 0 ? taken : throw CFileException(CFileException::hardIO, nullptr, "read");
        }
    } file({12, 0, 9, 8, 7, 6, 5, 4});
    CArchive broken(&file, CArchive::load, 8);
    EXPECT_THROW(truths.Serialize(broken), CFileException);
    EXPECT_EQ(StoredObject(truths), (Bytes{12, 0, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0}));
    int* const none = nullptr;
    EXPECT_THROW(StoredBytes(unsetSchema, [&](CArchive& ar) { SerializeElements(ar, none, 1); }),
                 CInvalidArgException);
    CArray<std::vector<int>, std::vector<int> const&> noForm;
    noForm.SetSize(1, -1);
    EXPECT_THROW(StoredObject(noForm), CInvalidArgException);
}

TEST(CArchiveTest, MapsGoInTheirOrder)
{
    CMap<int, int, CString, char const*> map;
    map[0] = "old";
    Bytes const bytes = {3, 0, 0, 0, 0, 0, 1, 'a', 1, 0, 0, 0, 1, 'c', 16, 0, 0, 0, 1, 'b'};
    EXPECT_EQ(LoadObject(map, bytes), 0);
    EXPECT_EQ(StoredObject(map), (Bytes{3, 0, 1, 0, 0, 0, 1, 'c', 0, 0, 0, 0, 1, 'a', 16, 0, 0, 0, 1, 'b'}));
    CMapStringToPtr addresses;
    addresses["x"] = reinterpret_cast<void*>(std::uintptr_t{0x12345678});
    EXPECT_EQ(StoredObject(addresses), (Bytes{1, 0, 1, 'x', 0x78, 0x56, 0x34, 0x12}));
    addresses["x"] = reinterpret_cast<void*>(std::uintptr_t{0x1FFFFFFFF});
    EXPECT_THROW(StoredObject(addresses), CInvalidArgException);
}

TEST(CArchiveTest, TheWrongModeIsRefusedWithTheFilesName)
{
    TemporaryFile const temporary("mode");
    std::string const& path = temporary.path;
    CFile file(path.c_str(), CFile::modeReadWrite | CFile::modeCreate);
    CArchive storing(&file, CArchive::store);
    CArchive loading(&file, CArchive::load);
    int number = 5;
    EXPECT_EQ(CauseOf([&] { storing >> number; }, path), +CArchiveException::writeOnly);
    EXPECT_EQ(CauseOf([&] { storing.Read(&number, 0); }, path), +CArchiveException::writeOnly);
    EXPECT_EQ(CauseOf([&] { storing.ReadInPlace(1); }, path), +CArchiveException::writeOnly);
    EXPECT_EQ(CauseOf([&] { loading.WriteInPlace(1); }, path), +CArchiveException::readOnly);
    EXPECT_EQ(CauseOf([&] { loading << number; }, path), +CArchiveException::readOnly);
    EXPECT_EQ(CauseOf([&] { loading.Write(&number, 0); }, path), +CArchiveException::readOnly);
    EXPECT_EQ(CauseOf([&] { loading >> number; }, path), +CArchiveException::endOfFile);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(storing.m_nObjectSchema, 0xFFFFFFFFu);
    // A text or a block of elements that ends early names no file.
    CString text;
    CArray<int, int> array;
    storing.Write("\2\0ab", 4);
    storing.Close();
    file.SeekToBegin();
    EXPECT_EQ(CauseOf([&] { array.Serialize(loading); }), +CArchiveException::endOfFile);
    file.SeekToBegin();
    EXPECT_EQ(CauseOf([&] { loading.ReadCount(), loading >> text; }), +CArchiveException::endOfFile);
    EXPECT_EQ(CauseOf([&] { storing << number; }), +CArchiveException::generic);
    EXPECT_THROW(CArchive(nullptr, CArchive::load), CInvalidArgException);
    EXPECT_THROW(CArchive(&file, 2), CInvalidArgException);
}

namespace {

/// Blocks with a number behind each go to `file` and back, by turns in place where that works. Gives the
/// size of the largest with which it did.
unsigned int MoveBlocks(CFile& file)
{
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    unsigned int inPlace = 0;
    CArchive storing(&file, CArchive::store, 1000);
    std::vector<Bytes> blocks(200);
    for (Bytes& block : blocks) {
        block.resize(static_cast<std::size_t>(random.Integer(0, random.Integer(0, 1) == 0 ? 20 : 5000)));
        std::generate(block.begin(), block.end(), [&] { return static_cast<unsigned char>(random()); });
        unsigned int const size = static_cast<unsigned int>(block.size());
        unsigned char* const room = random.Integer(0, 1) == 0 ? storing.WriteInPlace(size) : nullptr;
        if (room != nullptr) {
            std::copy(block.begin(), block.end(), room);
            inPlace = std::max(inPlace, size);
        } else {
            storing.Write(block.data(), size);
        }
        storing << 0x1234;
    }
    storing.Close();
    file.SeekToBegin();
    CArchive loading(&file, CArchive::load, 777);
    for (Bytes const& block : blocks) {
        unsigned int const size = static_cast<unsigned int>(block.size());
        Bytes loaded(size);
        int field = 0;
        if (unsigned char const* const bytes =
                random.Integer(0, 1) == 0 ? loading.ReadInPlace(size) : nullptr) {
            loaded.assign(bytes, bytes + size);
            inPlace = std::max(inPlace, size);
        } else {
            EXPECT_EQ(loading.Read(loaded.data(), size), size);
        }
        loading >> field;
        EXPECT_TRUE(loaded == block && field == 0x1234);
    }
    unsigned char more[1] = {};
    EXPECT_EQ(loading.ReadInPlace(1), nullptr);
    EXPECT_EQ(loading.Read(more, 1), 0u);
    return inPlace;
}

} // namespace

TEST(CArchiveTest, BlocksOfAnySizeMixWithFields)
{
    TemporaryFile const temporary("blocks");
    CFile onDisk(temporary.path.c_str(), CFile::modeReadWrite | CFile::modeCreate);
    CMemFile inMemory;
    EXPECT_LE(MoveBlocks(onDisk), 1000u); // in the archive's buffer
    EXPECT_GT(MoveBlocks(inMemory), 1000u);
}

TEST(CArchiveTest, ArchivesMayFollowEachOtherInAFile)
{
    CMemFile file;
    for (int const number : {1, 2, 3}) {
        CArchive archive(&file, CArchive::store);
        archive << number;
        if (number == 3) {
            archive.Abort();
        }
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

TEST(CArchiveTest, ADerivedFileSeesEveryByte)
{
    struct Watched : CMemFile
    {
        unsigned int Read(void* bytes, unsigned int count) override
        {
            unsigned int const taken = CMemFile::Read(bytes, count);
            seen += taken;
            return taken;
        }
        void Write(void const* bytes, unsigned int count) override
        {
            seen += count;
            CMemFile::Write(bytes, count);
        }
        unsigned int seen = 0;
    };
    // Blocks larger than the buffer, which a plain CMemFile hands out from its own memory.
    char const block[100] = {};
    Watched file;
    EXPECT_EQ(CArchive(&file, CArchive::store, 16).WriteInPlace(sizeof block), nullptr);
    file.Write(block, sizeof block);
    file.SeekToBegin();
    EXPECT_EQ(CArchive(&file, CArchive::load, 16).ReadInPlace(sizeof block), nullptr);
    EXPECT_EQ(file.seen, sizeof block);
    CMemFile plain;
    EXPECT_NE(CArchive(&plain, CArchive::store, 16).WriteInPlace(sizeof block), nullptr);
}
