#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/CrossReference.h"
#include "vorlane/coordination/GeometryCatalogueInternal.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;

namespace {

/// Every geometry from 1 up: its ligands, then all its names.
char const* const geometries[] = {
    "2 linear l2",
    "2 angular a2 a2t4",
    "2 a2tp3",
    "2 a2sp4",
    "3 trigonalPlanar tp3",
    "3 trigonalPyramidal tpy3 tpy3t4",
    "3 tpy3tbpy5",
    "3 tpy3oc6",
    "3 tShaped ts3",
    "4 tetrahedral t4",
    "4 squarePlanar square sp4",
    "4 squarePyramidal spy4",
    "4 trigonalPlanarPyramidal tpy4",
    "4 seeSaw ss4 ss4oc6",
    "4 ss4tbpy5",
    "5 trigonalBipyramidal tbpy5",
    "5 squarePlanarPyramidal spy5",
    "6 octahedral oc6",
    "6 trigonalPrismatic tpr6",
    "6 trigonalAntiprismatic tapr6",
    "6 trigonalAntiprismaticStretched",
    "6 pentagonalPlanarPyramidal ppy6",
    "7 pentagonalBipyramidal pbpy7",
    "7 octahedralFaceMonocapped ocf7",
    "7 trigonalPrismaticSquareFaceMonocapped tprs7",
    "8 cubic cu8",
    "8 squareAntiprismatic sapr8",
    "8 dodecahedral dd8",
    "8 hexagonalBipyramidal hbpy8",
    "9 heptagonalBipyramidal hbpy9",
};

} // namespace

TEST(GeometryCatalogueTest, EveryNameInAnyCaseGivesItsGeometry)
{
    int number = 0;
    int names = 0;
    for (char const* geometry : geometries) {
        ++number;
        std::istringstream row(geometry);
        int ligands = 0;
        row >> ligands;
        EXPECT_EQ(GetCoordinationNumber(static_cast<CoordinationGeometryType>(number)), ligands) << geometry;
        for (std::string name; row >> name; ++names) {
            std::string upper = name;
            std::transform(upper.begin(), upper.end(), upper.begin(),
                           [](unsigned char c) { return std::toupper(c); });
            for (std::string const& form : {name, upper}) {
                CString const text(form.c_str());
                EXPECT_EQ(StringToCoordinationGeometry(text), number) << form;
                EXPECT_STREQ(static_cast<char const*>(text), form.c_str());
            }
            for (std::string const& near : {" " + name, name + " ", name.substr(1), name + "x"}) {
                EXPECT_EQ(StringToCoordinationGeometry(CString(near.c_str())), unknownGeometry) << near;
            }
        }
    }
    EXPECT_EQ(number, 30);
    EXPECT_EQ(GetCoordinationGeometryTable().GetCount(), names);
    EXPECT_EQ(StringToCoordinationGeometry(CString()), unknownGeometry);
    for (int none : {0, 31, -1, 1 << 30}) {
        EXPECT_EQ(GetCoordinationNumber(static_cast<CoordinationGeometryType>(none)), 0) << none;
    }
}

TEST(GeometryCatalogueTest, TheFirstUseMayBeInSeveralThreadsAtOnce)
{
    std::vector<int> found(8);
    std::vector<std::thread> threads;
    for (int& result : found) {
        threads.emplace_back([&result] { result = StringToCoordinationGeometry(CString("HBPY9")); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, std::vector<int>(8, heptagonalBipyramidal));
}

TEST(CrossReferenceTest, KeepsTheLastValueOfEachKey)
{
    CrossReference<int, CString> numerals;
    CString value("as it was");
    EXPECT_FALSE(numerals.Lookup(4, value));
    EXPECT_EQ(numerals.GetCount(), 0);
    // 4 and 4 + 16 * 17 share a bucket, 4 and 5 even a hash.
    for (int key : {4, 4 + 16 * 17, 5, 4}) {
        numerals.SetAt(key, CString(key == 5 ? "V" : "IV"));
    }
    EXPECT_EQ(numerals.GetCount(), 3);
    EXPECT_FALSE(numerals.Lookup(6, value));
    EXPECT_STREQ(value, "as it was");
    EXPECT_TRUE(numerals.Lookup(5, value));
    EXPECT_STREQ(value, "V");
    numerals.SetAt(5, CString("five"));
    EXPECT_TRUE(numerals.Lookup(5, value));
    EXPECT_STREQ(value, "five");
    EXPECT_EQ(numerals.GetCount(), 3);

    CrossReference<CString, CoordinationGeometryType> names(1);
    names.SetAt("Linear", linear);
    CoordinationGeometryType type = unknownGeometry;
    EXPECT_FALSE(names.Lookup("linear", type));
    EXPECT_TRUE(names.Lookup("Linear", type));
    EXPECT_EQ(type, linear);
}
