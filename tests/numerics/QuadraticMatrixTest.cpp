#include "vorlane/numerics/QuadraticMatrix.h"

#include "gtest/gtest.h"

#include "tests/support/AllocationFailure.h"

#include <cstddef>
#include <limits>

using Vorlane::QuadraticMatrix;

TEST(QuadraticMatrixTest, NegativeDimensionsMeanTheEmptyMatrix)
{
    for (int dimension : {-3, std::numeric_limits<int>::min()}) {
        QuadraticMatrix matrix(dimension);
        EXPECT_EQ(matrix.Dimension(), 0);
        EXPECT_EQ(static_cast<double**>(matrix), nullptr);
    }
}

TEST(QuadraticMatrixTest, TakesItsElementsFromSpatia)
{
    QuadraticMatrix const three(Spatia::Matrix3x3(0, 1, 2, 3, 4, 5, 6, 7, 8));
    Spatia::Matrix4x4 source;
    for (int i = 0; i < 16; ++i) {
        source(i / 4, i % 4) = i;
    }
    QuadraticMatrix const four(source);
    EXPECT_EQ(three.Dimension(), 3);
    EXPECT_EQ(four.Dimension(), 4);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(four(i / 4, i % 4), i);
        EXPECT_EQ(three(i % 9 / 3, i % 3), i % 9);
    }
}

TEST(QuadraticMatrixTest, KeepsItsValueWhenMemoryRunsOut)
{
    QuadraticMatrix const before(Spatia::Matrix3x3(0, 1, 2, 3, 4, 5, 6, 7, 8)), source(20);
    QuadraticMatrix target;
    double values[20];
    // The elements, then the row table; what was had before the failure is given back.
    EXPECT_EQ(VorlaneTest::ForEachFailedAllocation([&] { target = before; }, [&] { target = source; },
                                                   [&] {
                                                       EXPECT_EQ(target.Dimension(), 3);
                                                       EXPECT_EQ(target(2, 1), 7);
                                                   }),
              2);
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation(
                  [] {}, [&] { source.GetEigenvectorsAndEigenvalues(target, values); }, [] {}),
              1);
    // Neither 46341 times 46341 nor 2^31 times 2^31 may wrap around.
    VorlaneTest::AllocationLimit const limit(std::size_t{1} << 30);
    for (int dimension : {46341, 65536, std::numeric_limits<int>::max()}) {
        EXPECT_THROW(QuadraticMatrix{dimension}, CMemoryException) << dimension;
    }
}

TEST(QuadraticMatrixTest, SymmetryIsExactAndIgnoresTheDiagonal)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    struct Row
    {
        double diagonal, upper, lower;
        bool isSymmetric;
    } const rows[] = {{nan, 2, 2, true},
                      {0, 0.0, -0.0, true},
                      {0, 1, 1 + 1e-15, false},
                      {0, nan, 1, false},
                      {0, nan, nan, false}};
    for (Row const& row : rows) {
        QuadraticMatrix matrix(3);
        matrix(1, 1) = row.diagonal;
        matrix(0, 2) = row.upper;
        matrix(2, 0) = row.lower;
        EXPECT_EQ(matrix.IsSymmetric(), row.isSymmetric) << row.upper << ' ' << row.lower;
    }
}
