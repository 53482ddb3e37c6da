#include "vorlane/numerics/RMSBestFitToolsInternal.h"

#include "tests/support/PointArrays.h"

#include <limits>

using Spatia::Matrix3x3;
using Spatia::Matrix4x4;
using Spatia::Point3d;
using namespace Vorlane;
using namespace VorlaneTest;
using namespace Vorlane::RMSBestFitTools;

namespace {

double const notANumber = std::numeric_limits<double>::quiet_NaN();

PointArray Moved(PointArray const& points, Matrix3x3 const& rotation, Point3d const& translation)
{
    PointArray moved;
    for (Point3d const& point : points) {
        moved.push_back(point * rotation + translation);
    }
    return moved;
}

/// `first` on `second` by another method: turns about x, y and z in cycles, each by the best angle, until
/// none is left.
PointArray Superposed(PointArray first, PointArray const& second)
{
    Point3d const from = FindCentroid(first), to = FindCentroid(second);
    for (Point3d& point : first) {
        point -= from;
    }
    double Point3d::*const axes[] = {&Point3d::x, &Point3d::y, &Point3d::z};
    double largest = 1;
    for (int turn = 0; turn < 3000 && (turn % 3 != 0 || largest > 1e-15); ++turn) {
        auto const u = axes[turn % 3], v = axes[(turn + 1) % 3];
        double cosine = 0, sine = 0;
        for (long i = 0; i < first.GetSize(); ++i) {
            Point3d const target = second[i] - to;
            cosine += first[i].*u * target.*u + first[i].*v * target.*v;
            sine += first[i].*u * target.*v - first[i].*v * target.*u;
        }
        double const angle = std::atan2(sine, cosine);
        largest = turn % 3 == 0 ? std::fabs(angle) : std::fmax(largest, std::fabs(angle));
        for (Point3d& point : first) {
            double const x = point.*u, y = point.*v;
            point.*u = x * std::cos(angle) - y * std::sin(angle);
            point.*v = x * std::sin(angle) + y * std::cos(angle);
        }
    }
    return Moved(first, Matrix3x3(Matrix3x3::IdentityMatrix), to);
}

} // namespace

TEST(RMSBestFitToolsTest, FindsPlanesOfFewPoints)
{
    double const infinity = std::numeric_limits<double>::infinity();
    struct Row
    {
        PointArray points;
        Point3d centroid;
    } const rows[] = {
        {ToArray({}), {0, 0, 0}},
        {ToArray({{1, 2, 3}}), {1, 2, 3}},
        {ToArray({{4, 5, 6}, {4, 5, 6}}), {4, 5, 6}},
        {ToArray({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}), {0.5, 0.5, 0}},
        {ToArray({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}), {1.5, 0, 0}},
        {ToArray({{1, 0, notANumber}, {3, 0, 0}}), {2, 0, notANumber}},
        {ToArray({{infinity, 1, 0}, {3, 3, 0}}), {infinity, 2, 0}},
    };
    for (Row const& row : rows) {
        Point3d centroid(9, 9, 9), normal(9, 9, 9);
        FindPlane(row.points, centroid, normal);
        EXPECT_EQ(centroid.x, row.centroid.x);
        EXPECT_EQ(centroid.y, row.centroid.y);
        EXPECT_TRUE(centroid.z == row.centroid.z || (std::isnan(centroid.z) && std::isnan(row.centroid.z)));
        EXPECT_NEAR(std::fabs(normal.z), 1, 1e-15);
        EXPECT_NEAR(normal.Length(), 1, 1e-15);
    }
    PointArray line = ToArray({{1, 1, 1}, {3, 2, 5}});
    FindPlane(line, line[0], line[1]); // the outputs may be points
    ExpectNear(line[0], Point3d(2, 1.5, 3), 1e-15);
    EXPECT_NEAR(line[1].x * 2 + line[1].y + line[1].z * 4, 0, 1e-15);
    EXPECT_NEAR(line[1].Length(), 1, 1e-15);
}

TEST(RMSBestFitToolsTest, SuperposesRealChainsAsAnotherMethodDoes)
{
    std::vector<PointArray> chains;
    for (std::string const name : {"1orc_ca", "1yeb_ca", "1c1n_ca", "1guy_ca_with_break"}) {
        chains.push_back(ReadChain(name));
        ASSERT_GE(chains.back().GetSize(), 64);
        chains.back().SetSize(60, -1);
    }
    for (PointArray const& first : chains) {
        for (PointArray const& second : chains) {
            for (double const side : {1.0, -1.0}) { // mirrored, the best rotation is wanted all the same
                PointArray const target =
                    Moved(second, Matrix3x3(1, 0, 0, 0, 1, 0, 0, 0, side), Point3d::zero);
                PointArray moved(first);
                EXPECT_TRUE(FindAndApplyTransformation(first, target, moved));
                ExpectNear(moved, Superposed(first, target), 1e-9);
            }
        }
    }
}

TEST(RMSBestFitToolsTest, AnswersForDegenerateSets)
{
    PointArray const one = ToArray({{1, 2, 3}}), three = ToArray({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    PointArray points = ToArray({{5, 5, 5}}), none;
    EXPECT_FALSE(FindAndApplyTransformation(three, ToArray({{1, 1, 1}, {2, 2, 2}}), points));
    EXPECT_FALSE(FindAndApplyTransformation(none, none, points));
    EXPECT_FALSE(FindAndApplyTransformation(three, three, none));
    ExpectNear(points[0], Point3d(5, 5, 5), 0);
    EXPECT_TRUE(FindAndApplyTransformation(one, ToArray({{4, 6, 8}}), points));
    ExpectNear(points[0], Point3d(8, 9, 10), 0);
    EXPECT_TRUE(
        FindAndApplyTransformation(three, ToArray({{0, 0, 0}, {1, notANumber, 0}, {0, 1, 0}}), points));
    EXPECT_TRUE(std::isnan(points[0].y));

    Matrix3x3 rotations[4];
    Point3d translations[4];
    double eigenvalues[4] = {9, 9, 9, 9};
    EXPECT_TRUE(FindTransformation(one, ToArray({{4, 6, 8}}), rotations[0], translations[0]));
    ExpectNear(translations[0], Point3d(3, 4, 5), 0);
    EXPECT_FALSE(FindTransformation(one, three, rotations[0], translations[0]));
    ExpectNear(Point3d(1, 2, 3) * rotations[0] + translations[0], Point3d(1, 2, 3), 0);
    EXPECT_FALSE(FindAllTransformations(none, none, rotations, translations, eigenvalues));
    ExpectNear(Point3d(1, 2, 3) * rotations[3] + translations[3], Point3d(1, 2, 3), 0);
    EXPECT_EQ(eigenvalues[3], 0);
}

TEST(RMSBestFitToolsTest, AsymmetricMatricesHaveTheAxesAsEigenvectors)
{
    Matrix4x4 matrix;
    matrix(1, 2) = 3;
    double vectors[16], values[4];
    GetEigensystem4x4(matrix, vectors, values);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(vectors[i], i % 5 == 0 ? 1 : 0);
        EXPECT_EQ(values[i / 4], 0);
    }
    EXPECT_FALSE(BuildQuaternionMatrix(PointArray(), PointArray(), matrix));
    EXPECT_EQ(matrix(1, 2), 0);
    PointArray const corner = ToArray({{0, 0, 0}, {3, 0, 0}, {0, 3, 0}});
    EXPECT_TRUE(BuildQuaternionMatrix(corner, corner, matrix));
    EXPECT_EQ(matrix(0, 0), 12);
    EXPECT_EQ(matrix(1, 2), matrix(2, 1));
    EXPECT_EQ(matrix(1, 2), -6);
}
