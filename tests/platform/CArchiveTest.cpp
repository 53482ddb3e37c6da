// The bytes of every field of an archive, in both directions and for many sizes of the buffer.

#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"
#include "tests/support/CaseTable.h"
#include "tests/support/Files.h"

#include "gtest/gtest.h"

#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

using namespace VorlaneTest;

namespace {

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

template <typename Value>
Value ValueOf(std::string const& text)
{
    if constexpr (std::is_same_v<Value, CString>) {
        return text.c_str();
    } else if constexpr (std::is_floating_point_v<Value>) {
        return static_cast<Value>(std::stod(text));
    } else {
        return static_cast<Value>(std::stoull(text, nullptr, 0));
    }
}

/// Stores the value, or loads one and compares it.
template <typename Value>
void TransferValue(CArchive& archive, std::string const& text)
{
    Value value = ValueOf<Value>(text);
    if (archive.IsStoring()) {
        archive << value;
    } else {
        value = Value();
        archive >> value;
    }
    EXPECT_EQ(value, ValueOf<Value>(text));
}

void TransferCount(CArchive& archive, std::string const& text)
{
    unsigned long const count = ValueOf<unsigned long>(text);
    if (archive.IsStoring()) {
        archive.WriteCount(count);
    } else {
        EXPECT_EQ(archive.ReadCount(), count);
    }
}

template <int characterSize>
void TransferLength(CArchive& archive, std::string const& text)
{
    unsigned int const length = ValueOf<unsigned int>(text);
    int size = characterSize;
    if (archive.IsStoring()) {
        AfxWriteStringLength(archive, length, size - 1);
    } else {
        size = 0;
        EXPECT_EQ(AfxReadStringLength(archive, size), length);
    }
    EXPECT_EQ(size, characterSize);
}

std::map<std::string, void (*)(CArchive&, std::string const&)> const transfers = {
    {"bool", TransferValue<bool>},
    {"char", TransferValue<char>},
    {"signed-char", TransferValue<signed char>},
    {"unsigned-char", TransferValue<unsigned char>},
    {"short", TransferValue<short>},
    {"unsigned-short", TransferValue<unsigned short>},
    {"int", TransferValue<int>},
    {"unsigned-int", TransferValue<unsigned int>},
    {"long", TransferValue<long>},
    {"unsigned-long", TransferValue<unsigned long>},
    {"long-long", TransferValue<long long>},
    {"unsigned-long-long", TransferValue<unsigned long long>},
    {"float", TransferValue<float>},
    {"double", TransferValue<double>},
    {"text", TransferValue<CString>},
    {"count", TransferCount},
    {"narrow-length", TransferLength<1>},
    {"wide-length", TransferLength<2>}};

Bytes BytesOf(std::string const& hexadecimal)
{
    Bytes bytes;
    for (std::string const& byte : Split(hexadecimal, ' ')) {
        bytes.push_back(static_cast<unsigned char>(std::stoi(byte, nullptr, 16)));
    }
    return bytes;
}

} // namespace

TEST(CArchiveTest, FieldsHaveTheirBytesWhateverTheBuffer)
{
    std::vector<Case> const fields = ReadCases("platform/archives.txt", "fields");
    for (int const bufferSize : {-1, 0, 1, 2, 3, 7, 8, 9, 10, 64, 1 << 20}) {
        SCOPED_TRACE(bufferSize);
        CMemFile file;
        CArchive storing(&file, CArchive::store, bufferSize);
        Bytes expected;
        for (Case const& field : fields) {
            transfers.at(field.at("kind"))(storing, field.at("stored"));
            expected = Joined({expected, BytesOf(field.at("bytes"))});
        }
        storing.Close();
        EXPECT_EQ(file.Bytes(), expected);
        file.SeekToBegin();
        CArchive loading(&file, CArchive::load, bufferSize);
        for (Case const& field : fields) {
            SCOPED_TRACE(field.at("where"));
            transfers.at(field.at("kind"))(loading, field.at("loaded"));
        }
        EXPECT_EQ(loading.GetRemaining(), 0u);
    }
}

TEST(CArchiveTest, AnEarlyEndLeavesTheValueAlone)
{
    for (Case const& field : ReadCases("platform/archives.txt", "fields")) {
        auto const load = [&](CArchive& archive) {
            transfers.at(field.at("kind"))(archive, field.at("loaded"));
        };
        for (Bytes bytes = BytesOf(field.at("bytes")); !bytes.empty();) {
            bytes.pop_back();
            EXPECT_EQ(LoadBytes(unsetSchema, bytes, load), +CArchiveException::endOfFile)
                << field.at("where");
        }
    }
    double number = 1.25;
    EXPECT_EQ(LoadBytes(unsetSchema, Bytes(7), [&](CArchive& archive) { archive >> number; }),
              +CArchiveException::endOfFile);
    EXPECT_EQ(number, 1.25);
}

TEST(CArchiveTest, TextsLoadFromEveryForm)
{
    CString text;
    auto const load = [&](CArchive& archive) {
        archive >> text;
    };
    for (Case const& row : ReadCases("platform/archives.txt", "texts")) {
        std::string const& bytes = row.at("bytes");
        text = "old";
        EXPECT_EQ(LoadBytes(unsetSchema, Bytes(bytes.begin(), bytes.end()), load), std::stoi(row.at("cause")))
            << row.at("where");
        EXPECT_EQ(std::string(text, static_cast<std::size_t>(text.GetLength())), row.at("text"))
            << row.at("where");
    }
    CString const longText(std::string(300000, '\xE9').c_str());
    Bytes const bytes = StoredBytes(unsetSchema, [&](CArchive& archive) { archive << longText; });
    EXPECT_EQ(LoadBytes(unsetSchema, bytes, load), 0);
    EXPECT_EQ(text, longText);
}

TEST(CArchiveTest, AnnouncedSizesTakeNoMemoryAhead)
{
    AllocationLimit const limit(64 << 20);
    CString text("old");
    auto const loadText = [&](CArchive& archive) {
        archive >> text;
    };
    Bytes const narrow = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}; // 2147483647 characters
    Bytes const wide = Joined({{0xFF, 0xFE, 0xFF}, narrow});
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
    CFile file(temporary.path.c_str(), CFile::modeReadWrite | CFile::modeCreate);
    CArchive storing(&file, CArchive::store);
    CArchive loading(&file, CArchive::load);
    auto const causeOf = [&](auto const& operation) {
        return CauseOf<CArchiveException>(operation, temporary.path);
    };
    int number = 5;
    EXPECT_EQ(causeOf([&] { storing >> number; }), +CArchiveException::writeOnly);
    EXPECT_EQ(causeOf([&] { storing.Read(&number, 0); }), +CArchiveException::writeOnly);
    EXPECT_EQ(causeOf([&] { storing.ReadInPlace(1); }), +CArchiveException::writeOnly);
    EXPECT_EQ(causeOf([&] { loading.WriteInPlace(1); }), +CArchiveException::readOnly);
    EXPECT_EQ(causeOf([&] { loading << number; }), +CArchiveException::readOnly);
    EXPECT_EQ(causeOf([&] { loading.Write(&number, 0); }), +CArchiveException::readOnly);
    EXPECT_EQ(causeOf([&] { loading >> number; }), +CArchiveException::endOfFile);
    EXPECT_EQ(number, 5);
    {
        AllocationFailure const noMemoryToTellWhy(0);
        EXPECT_THROW(loading >> number, CMemoryException);
    }
    EXPECT_EQ(storing.m_nObjectSchema, 0xFFFFFFFFu);
    storing.Write("\2\0ab", 4);
    storing.Close();
    // A closed archive names no file, and neither does a text or a block of elements that ends early.
    EXPECT_EQ(CauseOf<CArchiveException>([&] { storing << number; }), +CArchiveException::generic);
    CString text;
    CArray<int, int> array;
    file.SeekToBegin();
    EXPECT_EQ(CauseOf<CArchiveException>([&] { array.Serialize(loading); }), +CArchiveException::endOfFile);
    file.SeekToBegin();
    loading.ReadCount();
    EXPECT_EQ(CauseOf<CArchiveException>([&] { loading >> text; }), +CArchiveException::endOfFile);
    EXPECT_THROW(CArchive(nullptr, CArchive::load), CInvalidArgException);
    EXPECT_THROW(CArchive(&file, 2), CInvalidArgException);
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
    for (char const* const expected : {"1", "2"}) {
        CArchive archive(&file, CArchive::load);
        TransferValue<int>(archive, expected);
    }
}

TEST(CArchiveTest, ADerivedFileSeesEveryByte)
{
    // A plain CMemFile gives blocks larger than the buffer out of its own memory.
    struct Derived : CMemFile
    {
        using CMemFile::CMemFile;
    };
    Derived derived(Bytes(100));
    CMemFile plain(Bytes(100));
    EXPECT_EQ(CArchive(&derived, CArchive::load, 16).ReadInPlace(100), nullptr);
    EXPECT_NE(CArchive(&plain, CArchive::load, 16).ReadInPlace(100), nullptr);
    EXPECT_EQ(CArchive(&derived, CArchive::store, 16).WriteInPlace(100), nullptr);
    EXPECT_NE(CArchive(&plain, CArchive::store, 16).WriteInPlace(100), nullptr);
}
