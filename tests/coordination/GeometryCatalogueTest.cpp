#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/CrossReference.h"
#include "vorlane/coordination/GeometryCatalogueInternal.h"

#include "tests/support/CaseTable.h"

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using namespace VorlaneTest;

TEST(GeometryCatalogueTest, EveryNameInAnyCaseGivesItsGeometry)
{
    int number = 0;
    std::size_t names = 0;
    for (Case const& row : ReadCases("coordination/polyhedra.txt", "geometries")) {
        ++number;
        EXPECT_EQ(row.at("geometry"), std::to_string(number));
        EXPECT_EQ(GetCoordinationNumber(static_cast<CoordinationGeometryType>(number)),
                  NumberIn(row, "ligands"));
        for (std::string const& name : Split(row.at("names"), ' ')) {
            ++names;
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
