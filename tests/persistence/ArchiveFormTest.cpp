#include "vorlane/persistence/ArchiveForm.h"
#include "tests/support/ArchivedBytes.h"

#include "gtest/gtest.h"

#include <tuple>
#include <utility>
#include <vector>

using namespace VorlaneTest;
using namespace Spatia;
using Vorlane::operator<<;
using Vorlane::operator>>;

TEST(ArchiveFormTest, OperatorsFollowTheModeOfTheArchive)
{
    using Values = std::tuple<Point2d, Point3d, Matrix3x3, Matrix4x4>;
    auto const insertAndExtract = [](CArchive& ar, Values& inserted, Values& extracted) {
        std::apply([&](auto&... values) { (ar << ... << values); }, inserted);
        std::apply([&](auto&... values) { (ar >> ... >> values); }, extracted);
    };
    Values values(Point2d{1, 2}, Point3d(3, 4, 5), Matrix3x3(), Matrix4x4());
    std::get<Matrix3x3>(values)(1, 2) = 6;
    std::get<Matrix4x4>(values)(2, 3) = 7;
    Values inserted, extracted;
    Bytes const bytes = StoredBytes(24, [&](CArchive& ar) { insertAndExtract(ar, values, values); });
    EXPECT_EQ(LoadBytes(24, bytes, [&](CArchive& ar) { insertAndExtract(ar, inserted, extracted); }), 0);
    EXPECT_EQ(bytes.size(), 2u * (16 + 12 + 72 + 128));
    EXPECT_EQ(StoredBytes(24, [&](CArchive& ar) { insertAndExtract(ar, inserted, extracted); }), bytes);
}

TEST(ArchiveFormTest, LongArraysComeThroughWithoutAKnownLength)
{
    struct Pipe : CMemFile
    {
        using CMemFile::CMemFile;
        std::uint64_t GetRemaining() const override { return 0; } // it vouches for nothing
    };
    for (auto const& [size, countBytes] :
         {std::pair(65534, 2u), std::pair(65535, 6u), std::pair(1000000, 6u)}) {
        Orrin::LegacyArray<Point3d> stored, loaded;
        stored.SetSize(size, -1);
        stored[size / 2] = stored[size - 1] = Point3d(1, 2, 3);
        auto const store = [](auto& points) {
            return StoredBytes(6, [&](CArchive& ar) { Vorlane::SerializePoint3dArray(ar, points); });
        };
        Bytes const bytes = store(stored);
        EXPECT_EQ(bytes.size(), countBytes + static_cast<std::size_t>(size) * 24);
        EXPECT_EQ(bytes[0], countBytes == 2 ? 0xFE : 0xFF);
        EXPECT_EQ(bytes.back(), 0x40);
        Pipe file(bytes);
        CArchive ar(&file, CArchive::load);
        ar.m_nObjectSchema = 6;
        Vorlane::SerializePoint3dArray(ar, loaded);
        EXPECT_TRUE(store(loaded) == bytes) << size;
    }
}
