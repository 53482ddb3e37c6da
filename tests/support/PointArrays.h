#ifndef VORLANE_TESTS_SUPPORT_POINTARRAYS_H
#define VORLANE_TESTS_SUPPORT_POINTARRAYS_H

#include "vorlane/foundation/ValueTypes.h"

#include "gtest/gtest.h"

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

namespace VorlaneTest {

using Points = std::vector<Spatia::Point3d>;
using PointArray = Orrin::LegacyArray<Spatia::Point3d>;

inline PointArray ToArray(Points const& points)
{
    PointArray array;
    for (Spatia::Point3d const& point : points) {
        array.push_back(point);
    }
    return array;
}

/// The points of a chain of the example data.
inline PointArray ReadChain(std::string const& name)
{
    std::ifstream file(VORLANE_SOURCE_DIR "/examples/data/chains/" + name + ".xyz");
    long count = 0;
    std::string text;
    file >> count >> std::ws;
    std::getline(file, text);
    PointArray points;
    for (Spatia::Point3d point; file >> text >> point.x >> point.y >> point.z;) {
        points.push_back(point);
    }
    EXPECT_TRUE(count > 0 && points.GetSize() == count) << name;
    return points;
}

/// Each coordinate within `tolerance`; a NaN is near nothing.
inline void ExpectNear(Spatia::Point3d const& point, Spatia::Point3d const& expected, double tolerance)
{
    EXPECT_NEAR(point.x, expected.x, tolerance);
    EXPECT_NEAR(point.y, expected.y, tolerance);
    EXPECT_NEAR(point.z, expected.z, tolerance);
}

inline void ExpectNear(PointArray const& points, PointArray const& expected, double tolerance)
{
    ASSERT_EQ(points.GetSize(), expected.GetSize());
    for (long n = 0; n < points.GetSize(); ++n) {
        SCOPED_TRACE(n);
        ExpectNear(points[n], expected[n], tolerance);
    }
}

} // namespace VorlaneTest

#endif
