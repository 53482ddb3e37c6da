#include "fuzz/DeviationChecks.h"
#include "tests/support/PointArrays.h"

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using namespace VorlaneTest;
using VorlaneFuzz::measuredGeometries;

namespace {

std::vector<int> Entries(IntArray const& array)
{
    return {array.GetData(), array.GetData() + array.GetSize()};
}

} // namespace

TEST(IdealDeviationTest, AnyOrderOfTheIdealSitesIsIdeal)
{
    for (CoordinationGeometryType type : measuredGeometries) {
        PointArray const ideal = VorlaneFuzz::IdealLigands(type);
        VorlaneFuzz::Labelling order(ideal.size());
        std::iota(order.begin(), order.end(), 0);
        do {
            PointArray ligands;
            for (int const site : order) {
                ligands.push_back(ideal[site]);
            }
            ASSERT_LE(VorlaneFuzz::CheckDeviation(ligands, type), 1e-12)
                << type << testing::PrintToString(order);
        } while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST(IdealDeviationTest, AmongEqualCostsTheFirstRowStands)
{
    double const h = std::sqrt(3.0) / 2.0;
    Points const star = {{1, 0, 0}, {-0.5, h, 0}, {-0.5, -h, 0}};
    Points const nothing(6);
    struct Row
    {
        Points ligands;
        CoordinationGeometryType type;
        double deviation;
        std::vector<int> assignment;
    };
    Row const rows[] = {
        {star, tShaped, 0.75, {1, 2, 3}},
        {star, trigonalPyramidal, 1.0 / 12.0, {1, 2, 3}},
        {{{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}}, tShaped, 0.0, {1, 3, 2}},
        // One of the labellings with ligands 1 and 4 on the sites 1 and 3.
        {{{1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {-1, 0, 0}}, squarePlanar, 0.0, {1, 2, 4, 3}},
        {nothing, octahedral, 3.0, {1, 2, 3, 4, 5, 6}},
        {nothing, trigonalPrismatic, 3.0, {1, 2, 3, 4, 5, 6}},
    };
    for (Row const& row : rows) {
        IntArray assignment;
        double const deviation =
            DeviationFromIdealCoordinationGeometry(ToArray(row.ligands), row.type, assignment);
        EXPECT_NEAR(deviation, row.deviation, 1e-15);
        EXPECT_EQ(Entries(assignment), row.assignment);
    }
}

TEST(IdealDeviationTest, WithoutAMeasureOrTheRightNumberOfPointsTheAnswerIsMinusOne)
{
    for (int number = -1; number <= 31; ++number) {
        auto const type = static_cast<CoordinationGeometryType>(number);
        auto const end = std::end(measuredGeometries);
        bool const hasMeasure = std::find(std::begin(measuredGeometries), end, type) != end;
        for (int count = 0; count <= 10; ++count) {
            if (!hasMeasure || count != GetCoordinationNumber(type)) {
                IntArray assignment(2, 1);
                assignment[1] = 42;
                PointArray points;
                points.resize(static_cast<unsigned int>(count), Spatia::Point3d(1, 0, 0));
                EXPECT_EQ(DeviationFromIdealCoordinationGeometry(points, type, assignment), -1.0)
                    << number << count;
                EXPECT_EQ(Entries(assignment), (std::vector<int>{0, 42}));
            }
        }
    }
}
