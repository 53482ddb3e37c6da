#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/CrossReference.h"
#include "vorlane/coordination/GeometryCatalogueInternal.h"

#include "gtest/gtest.h"

#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;

// Every geometry from 1 up: its ligands, then all its names.
char const* const geometries =
    "2 linear l2;2 angular a2 a2t4;2 a2tp3;2 a2sp4;3 trigonalPlanar tp3;3 trigonalPyramidal tpy3 tpy3t4;"
    "3 tpy3tbpy5;3 tpy3oc6;3 tShaped ts3;4 tetrahedral t4;4 squarePlanar square sp4;4 squarePyramidal spy4;"
    "4 trigonalPlanarPyramidal tpy4;4 seeSaw ss4 ss4oc6;4 ss4tbpy5;5 trigonalBipyramidal tbpy5;"
    "5 squarePlanarPyramidal spy5;6 octahedral oc6;6 trigonalPrismatic tpr6;6 trigonalAntiprismatic tapr6;"
    "6 trigonalAntiprismaticStretched;6 pentagonalPlanarPyramidal ppy6;7 pentagonalBipyramidal pbpy7;"
    "7 octahedralFaceMonocapped ocf7;7 trigonalPrismaticSquareFaceMonocapped tprs7;8 cubic cu8;"
    "8 squareAntiprismatic sapr8;8 dodecahedral dd8;8 hexagonalBipyramidal hbpy8;9 heptagonalBipyramidal "
    "hbpy9";

TEST(GeometryCatalogueTest, EveryNameInAnyCaseGivesItsGeometry)
{
    // The first use may be in several threads at once.
    std::vector<int> found(8);
    std::vector<std::thread> threads;
    for (int& result : found) {
        threads.emplace_back([&result] { result = StringToCoordinationGeometry("HBPY9"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, std::vector<int>(8, heptagonalBipyramidal));

    int number = 0;
    int names = 0;
    std::istringstream rows(geometries);
    for (std::string text; std::getline(rows, text, ';');) {
        ++number;
        std::istringstream row(text);
        int ligands = 0;
        row >> ligands;
        EXPECT_EQ(GetCoordinationNumber(static_cast<CoordinationGeometryType>(number)), ligands) << text;
        for (std::string name; row >> name; ++names) {
            std::string upper = name;
            for (char& letter : upper) {
                letter = static_cast<char>(letter >= 'a' ? letter & ~0x20 : letter);
            }
            EXPECT_EQ(StringToCoordinationGeometry(name.c_str()), number) << name;
            EXPECT_EQ(StringToCoordinationGeometry(upper.c_str()), number) << upper;
            for (std::string const& near : {" " + name, name + " ", name.substr(1), name + "x"}) {
                EXPECT_EQ(StringToCoordinationGeometry(near.c_str()), unknownGeometry) << near;
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

TEST(CrossReferenceTest, KeepsTheLastValueOfEachKey)
{
    CrossReference<int, CString> numerals(1);
    CString value("as it was");
    for (int key : {4, 5, 4}) {
        EXPECT_FALSE(numerals.Lookup(6, value));
        numerals.SetAt(key, key == 5 ? "V" : numerals.GetCount() == 0 ? "four" : "IV");
    }
    EXPECT_STREQ(value, "as it was");
    EXPECT_TRUE(numerals.Lookup(4, value));
    EXPECT_STREQ(value, "IV");
    EXPECT_EQ(numerals.GetCount(), 2);
}
