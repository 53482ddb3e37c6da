#include "vorlane/coordination/CoordinationGeometry.h"

#include "tests/support/PointArrays.h"
#include "tests/support/Seed.h"

#include <algorithm>
#include <limits>
#include <numeric>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using namespace VorlaneTest;
using Spatia::Point3d;
using Labelling = std::vector<std::size_t>; ///< the ligand, counted from 0, on each site

namespace {

CoordinationGeometryType const measured[] = {trigonalPyramidal,
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
                                             trigonalAntiprismatic};

/// The ideal sites without the metal.
Points IdealLigands(CoordinationGeometryType type)
{
    PointArray points;
    SS4GeometryConstraint const equatorial(2.0 * std::acos(-1.0) / 3.0);
    GetCoordinates(type == ss4tbpy5 ? seeSaw : type, points, type == ss4tbpy5 ? &equatorial : nullptr);
    return {points.begin() + 1, points.end()};
}

double Cosine(Point3d const& a, Point3d const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Labelling Identity(std::size_t size)
{
    Labelling labelling(size);
    std::iota(labelling.begin(), labelling.end(), 0u);
    return labelling;
}

/// The measure of one labelling, straight from its definition.
double Cost(Points const& ideal, Points const& ligands, Labelling const& ligandOnSite)
{
    double cost = 0.0;
    for (std::size_t s = 0; s < ideal.size(); ++s) {
        for (std::size_t t = 0; t < s; ++t) {
            double const measuredCosine = Cosine(ligands[ligandOnSite[s]], ligands[ligandOnSite[t]]);
            cost += std::pow(measuredCosine - Cosine(ideal[s], ideal[t]), 2);
        }
    }
    return cost;
}

double BruteForce(Points const& ideal, Points const& ligands)
{
    Labelling labelling = Identity(ideal.size());
    double best = Cost(ideal, ligands, labelling);
    while (std::next_permutation(labelling.begin(), labelling.end())) {
        best = std::min(best, Cost(ideal, ligands, labelling));
    }
    return best;
}

/// What an assignment says, brought to one meaning; empty if it is no permutation.
Labelling Read(IntArray const& assignment, CoordinationGeometryType type)
{
    std::size_t const size = static_cast<std::size_t>(assignment.GetSize());
    Labelling labelling(size);
    Labelling seen;
    for (std::size_t k = 0; k < size; ++k) {
        std::size_t const other = static_cast<std::size_t>(assignment.GetAt(static_cast<int>(k)) - 1);
        seen.push_back(other);
        bool const siteOfLigand = type == trigonalPrismatic || type == trigonalAntiprismatic;
        labelling[siteOfLigand ? std::min(other, size - 1) : k] = siteOfLigand ? k : other;
    }
    std::sort(seen.begin(), seen.end());
    return seen == Identity(size) ? labelling : Labelling();
}

/// The deviation, after a look at its row: the row must give it under its meaning.
double CheckedDeviation(Points const& ideal, Points const& ligands, CoordinationGeometryType type)
{
    IntArray assignment(2, 0);
    double const deviation = DeviationFromIdealCoordinationGeometry(ToArray(ligands), type, assignment);
    Labelling const labelling = Read(assignment, type);
    EXPECT_EQ(labelling.size(), ideal.size());
    EXPECT_NEAR(labelling.empty() ? -1.0 : Cost(ideal, ligands, labelling), deviation, 1e-12);
    EXPECT_EQ(DeviationFromIdealCoordinationGeometry(ToArray(ligands), type), deviation);
    EXPECT_GE(deviation, 0.0);
    return deviation;
}

std::vector<int> Entries(IntArray const& array)
{
    return {array.GetData(), array.GetData() + array.GetSize()};
}

} // namespace

TEST(IdealDeviationTest, FindsTheMinimumOverAllPermutations)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (CoordinationGeometryType type : measured) {
        SCOPED_TRACE(type);
        Points const ideal = IdealLigands(type);
        Labelling order = Identity(ideal.size());
        do {
            Points ligands;
            for (std::size_t const site : order) {
                ligands.push_back(ideal[site]);
            }
            ASSERT_LE(CheckedDeviation(ideal, ligands, type), 1e-12) << testing::PrintToString(order);
        } while (std::next_permutation(order.begin(), order.end()));
        for (int round = 0; round < 100; ++round) {
            Points ligands(ideal.size());
            for (Point3d& ligand : ligands) {
                ligand = Point3d(engine.Real(-1, 1), engine.Real(-1, 1), engine.Real(-1, 1)).Normalize();
            }
            ASSERT_NEAR(CheckedDeviation(ideal, ligands, type), BruteForce(ideal, ligands), 1e-12);
        }
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
        bool const hasMeasure = std::count(std::begin(measured), std::end(measured), type) != 0;
        for (int count = 0; count <= 10; ++count) {
            if (!hasMeasure || count != GetCoordinationNumber(type)) {
                IntArray assignment(2, 1);
                assignment[1] = 42;
                PointArray points;
                points.resize(static_cast<unsigned int>(count), Point3d(1, 0, 0));
                EXPECT_EQ(DeviationFromIdealCoordinationGeometry(points, type, assignment), -1.0)
                    << number << count;
                EXPECT_EQ(Entries(assignment), (std::vector<int>{0, 42}));
            }
        }
    }
}

TEST(IdealDeviationTest, VectorsThatAreNotFiniteStillGiveAValidRow)
{
    double const infinity = std::numeric_limits<double>::infinity();
    for (CoordinationGeometryType type : measured) {
        for (double value :
             {infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e200, 1e150, 1e-320}) {
            Points ligands = IdealLigands(type);
            ligands[1].y = value;
            IntArray assignment;
            EXPECT_FALSE(DeviationFromIdealCoordinationGeometry(ToArray(ligands), type, assignment) < 0.0)
                << type;
            EXPECT_EQ(Read(assignment, type).size(), ligands.size()) << type << ' ' << value;
        }
    }
}
