// The bytes of every field of an archive, in both directions and for many sizes of the buffer.

#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <functional>
#include <limits>
#include <string>
#include <vector>

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
