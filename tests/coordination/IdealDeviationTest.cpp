#include "vorlane/coordination/CoordinationGeometry.h"

#include "gtest/gtest.h"

#include "tests/support/Seed.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using Spatia::Point3d;
using PointArray = Orrin::LegacyArray<Point3d>;
using Labelling = std::vector<std::size_t>; ///< the ligand, counted from 0, on each site

namespace {

CoordinationGeometryType const measured[] = {
    trigonalPyramidal,
    tShaped,
    tetrahedral,
    squarePlanar,
    trigonalPlanarPyramidal,
    seeSaw,
    ss4tbpy5,
    octahedral,
    trigonalBipyramidal,
    squarePlanarPyramidal,
    trigonalPrismatic,
    trigonalAntiprismatic,
};

/// The ideal sites without the metal.
std::vector<Point3d> IdealLigands(CoordinationGeometryType type)
{
    PointArray points;
    if (type == ss4tbpy5) {
        double const pi = std::acos(-1.0);
        SS4GeometryConstraint const equatorial(2.0 * pi / 3.0);
        GetCoordinates(seeSaw, points, &equatorial);
    } else {
        GetCoordinates(type, points, nullptr);
    }
    return {points.begin() + 1, points.end()};
}

double Cosine(Point3d const& a, Point3d const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The measure of one labelling, straight from its definition.
double Cost(std::vector<Point3d> const& ideal, PointArray const& ligands, Labelling const& ligandOnSite)
{
    double cost = 0.0;
    for (std::size_t s = 0; s < ideal.size(); ++s) {
        for (std::size_t t = 0; t < s; ++t) {
            double const difference = Cosine(ligands[static_cast<long>(ligandOnSite[s])],
                                             ligands[static_cast<long>(ligandOnSite[t])]) -
                                      Cosine(ideal[s], ideal[t]);
            cost += difference * difference;
        }
    }
    return cost;
}

double BruteForce(std::vector<Point3d> const& ideal, PointArray const& ligands)
{
    Labelling labelling(ideal.size());
    std::iota(labelling.begin(), labelling.end(), 0u);
    double best = std::numeric_limits<double>::infinity();
    do {
        best = std::min(best, Cost(ideal, ligands, labelling));
    } while (std::next_permutation(labelling.begin(), labelling.end()));
    return best;
}

/// What an assignment says, brought to one meaning; empty if it is no permutation.
Labelling Read(IntArray const& assignment, CoordinationGeometryType type)
{
    std::size_t const size = static_cast<std::size_t>(assignment.GetSize());
    Labelling labelling(size, size);
    for (std::size_t k = 0; k < size; ++k) {
        std::size_t const other = static_cast<std::size_t>(assignment.GetAt(static_cast<int>(k)) - 1);
        if (other >= size) {
            return {};
        }
        if (type == trigonalPrismatic || type == trigonalAntiprismatic) {
            labelling[other] = k;
        } else {
            labelling[k] = other;
        }
    }
    std::vector<bool> seen(size + 1);
    for (std::size_t ligand : labelling) {
        seen[ligand] = true;
    }
    return std::count(seen.begin(), seen.end() - 1, true) == static_cast<long>(size) ? labelling
                                                                                     : Labelling();
}

PointArray Points(std::vector<Point3d> const& points)
{
    PointArray array;
    for (Point3d const& point : points) {
        array.push_back(point);
    }
    return array;
}

/// The deviation, after a look at its row: the row must give it under its meaning.
double CheckedDeviation(std::vector<Point3d> const& ideal, PointArray const& ligands,
                        CoordinationGeometryType type)
{
    IntArray assignment(2, 0);
    double const deviation = DeviationFromIdealCoordinationGeometry(ligands, type, assignment);
    Labelling const labelling = Read(assignment, type);
    EXPECT_EQ(labelling.size(), ideal.size());
    if (labelling.size() == ideal.size()) {
        EXPECT_NEAR(Cost(ideal, ligands, labelling), deviation, 1e-12);
    }
    EXPECT_EQ(DeviationFromIdealCoordinationGeometry(ligands, type), deviation);
    EXPECT_GE(deviation, 0.0);
    return deviation;
}

std::vector<int> Entries(IntArray const& array)
{
    return {array.GetData(), array.GetData() + array.GetSize()};
}

} // namespace

TEST(IdealDeviationTest, IdealSitesInAnyOrderFitPerfectly)
{
    for (CoordinationGeometryType type : measured) {
        SCOPED_TRACE(type);
        std::vector<Point3d> const ideal = IdealLigands(type);
        Labelling order(ideal.size());
        std::iota(order.begin(), order.end(), 0u);
        do {
            PointArray ligands;
            for (std::size_t site : order) {
                ligands.push_back(ideal[site]);
            }
            ASSERT_LE(CheckedDeviation(ideal, ligands, type), 1e-12) << testing::PrintToString(order);
        } while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST(IdealDeviationTest, RandomEnvironmentsGiveTheMinimumOverAllPermutations)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (CoordinationGeometryType type : measured) {
        SCOPED_TRACE(type);
        std::vector<Point3d> const ideal = IdealLigands(type);
        for (int round = 0; round < 100; ++round) {
            PointArray ligands;
            while (ligands.size() < ideal.size()) {
                Point3d point(engine.Real(-1, 1), engine.Real(-1, 1), engine.Real(-1, 1));
                if (point.Length() > 0.1) {
                    ligands.push_back(point.Normalize());
                }
            }
            ASSERT_NEAR(CheckedDeviation(ideal, ligands, type), BruteForce(ideal, ligands), 1e-12);
        }
    }
}

TEST(IdealDeviationTest, AmongEqualCostsTheFirstRowStands)
{
    double const h = std::sqrt(3.0) / 2.0;
    PointArray const star = Points({{1, 0, 0}, {-0.5, h, 0}, {-0.5, -h, 0}});
    PointArray const tee = Points({{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}});
    PointArray const square = Points({{1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {-1, 0, 0}});
    PointArray const nothing = Points(std::vector<Point3d>(6));
    struct Row
    {
        PointArray const& ligands;
        CoordinationGeometryType type;
        double deviation;
        std::vector<int> assignment;
    };
    Row const rows[] = {
        {star, tShaped, 0.75, {1, 2, 3}},
        {tee, tShaped, 0.0, {1, 3, 2}},
        {star, trigonalPyramidal, 1.0 / 12.0, {1, 2, 3}},
        {nothing, octahedral, 3.0, {1, 2, 3, 4, 5, 6}},
        {nothing, trigonalPrismatic, 3.0, {1, 2, 3, 4, 5, 6}},
    };
    for (Row const& row : rows) {
        IntArray assignment;
        EXPECT_NEAR(DeviationFromIdealCoordinationGeometry(row.ligands, row.type, assignment), row.deviation,
                    1e-15);
        EXPECT_EQ(Entries(assignment), row.assignment);
    }
    // The square's second labelling has ligands 1 and 4 on the sites 1 and 3.
    IntArray assignment;
    EXPECT_EQ(DeviationFromIdealCoordinationGeometry(square, squarePlanar, assignment), 0.0);
    EXPECT_EQ(assignment[0] + assignment[2], 5);
    EXPECT_EQ(assignment[0] * assignment[2], 4);
}

TEST(IdealDeviationTest, WithoutAMeasureOrTheRightNumberOfPointsTheAnswerIsMinusOne)
{
    for (int number = -1; number <= 31; ++number) {
        auto const type = static_cast<CoordinationGeometryType>(number);
        bool const hasMeasure = std::count(std::begin(measured), std::end(measured), type) != 0;
        for (std::size_t points = 0; points <= 10; ++points) {
            if (hasMeasure && static_cast<int>(points) == GetCoordinationNumber(type)) {
                continue;
            }
            IntArray assignment(2, 1);
            assignment[1] = 42;
            EXPECT_EQ(DeviationFromIdealCoordinationGeometry(Points(std::vector<Point3d>(points, {1, 0, 0})),
                                                             type, assignment),
                      -1.0)
                << number << " with " << points;
            EXPECT_EQ(Entries(assignment), (std::vector<int>{0, 42}));
        }
    }
}

TEST(IdealDeviationTest, VectorsThatAreNotFiniteStillGiveAValidRow)
{
    double const infinity = std::numeric_limits<double>::infinity();
    for (CoordinationGeometryType type : measured) {
        for (double value :
             {infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e200, 1e150, 1e-320}) {
            std::vector<Point3d> ligands = IdealLigands(type);
            ligands[1].y = value;
            IntArray assignment;
            EXPECT_FALSE(DeviationFromIdealCoordinationGeometry(Points(ligands), type, assignment) < 0.0)
                << type;
            EXPECT_EQ(Read(assignment, type).size(), ligands.size()) << type << ' ' << value;
        }
    }
}
