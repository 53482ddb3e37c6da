#include "vorlane/numerics/QuadraticMatrix.h"

#include "gtest/gtest.h"

#include "tests/support/AllocationFailure.h"

#include <cstddef>
#include <limits>
#include <sstream>
#include <string>

using Vorlane::QuadraticMatrix;

namespace {

std::string Printed(QuadraticMatrix const& matrix)
{
    std::ostringstream stream;
    stream << matrix;
    return stream.str();
}

/// Elements 1, 2, 3 and so on, row after row.
QuadraticMatrix Counted(int dimension)
{
    QuadraticMatrix matrix(dimension);
    for (int i = 0; i < dimension * dimension; ++i) {
        matrix(i / dimension, i % dimension) = i + 1;
    }
    return matrix;
}

} // namespace

TEST(QuadraticMatrixTest, EmptyMatrixHasNoStorage)
{
    for (int dimension : {0, -3, std::numeric_limits<int>::min()}) {
        QuadraticMatrix const original(dimension);
        QuadraticMatrix copy(original);
        copy.Transpose();
        EXPECT_EQ(copy.Dimension(), 0);
        EXPECT_EQ(static_cast<double**>(copy), nullptr);
        EXPECT_FALSE(copy.IsSymmetric());
        EXPECT_EQ(Printed(copy), "Dimension = 0\n");
    }
}

TEST(QuadraticMatrixTest, TakesItsElementsFromSpatia)
{
    Spatia::Matrix4x4 four;
    four(1, 2) = 5;
    four(3, 0) = 7;
    EXPECT_EQ(Printed(QuadraticMatrix(Spatia::Matrix3x3(1, 2, 3, 4, 5, 6, 7, 8, 9))), Printed(Counted(3)));
    EXPECT_EQ(Printed(QuadraticMatrix(four)),
              "Dimension = 4\nRow #1\n0 0 0 0\nRow #2\n0 0 5 0\nRow #3\n0 0 0 0\nRow #4\n7 0 0 0\n");
}

TEST(QuadraticMatrixTest, AssignmentKeepsStorageOfTheSameDimension)
{
    QuadraticMatrix target = Counted(3);
    double const* const row = target[1];
    target = *&target;
    EXPECT_EQ(Printed(target), Printed(Counted(3)));
    target = QuadraticMatrix(3);
    EXPECT_EQ(target[1], row);
    EXPECT_EQ(Printed(target), Printed(QuadraticMatrix(3)));
    for (int dimension : {4, 1, 0}) {
        QuadraticMatrix const source = Counted(dimension);
        target = source;
        EXPECT_EQ(Printed(target), Printed(source));
        EXPECT_TRUE(dimension == 0 || target[0] != source[0]);
    }
}

TEST(QuadraticMatrixTest, KeepsItsValueWhenMemoryRunsOut)
{
    QuadraticMatrix target;
    QuadraticMatrix const source = Counted(20);
    double values[20];
    auto const expectKept = [&] {
        EXPECT_EQ(Printed(target), Printed(Counted(2)));
    };
    // The elements, then the row table; what was had before the failure is given back.
    EXPECT_EQ(VorlaneTest::ForEachFailedAllocation([&] { target = Counted(2); }, [&] { target = source; },
                                                   expectKept),
              2);
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation(
                  [] {}, [&] { QuadraticMatrix(20).GetEigenvectorsAndEigenvalues(target, values); }, [] {}),
              1);
    // Neither 46341 times 46341 nor 2^31 times 2^31 may wrap around.
    VorlaneTest::AllocationLimit const limit(std::size_t{1} << 30);
    for (int dimension : {46341, 65536, std::numeric_limits<int>::max()}) {
        EXPECT_THROW(QuadraticMatrix{dimension}, CMemoryException) << dimension;
    }
}

TEST(QuadraticMatrixTest, TransposesInPlace)
{
    QuadraticMatrix matrix = Counted(3);
    matrix.Transpose();
    EXPECT_EQ(Printed(matrix), "Dimension = 3\nRow #1\n1 4 7\nRow #2\n2 5 8\nRow #3\n3 6 9\n");
}

TEST(QuadraticMatrixTest, SymmetryIsExactAndIgnoresTheDiagonal)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    struct Row
    {
        double diagonal, upper, lower;
        bool isSymmetric;
    } const rows[] = {{0, 0, 0, true},          {nan, 2, 2, true},  {0, 0.0, -0.0, true},
                      {0, 1, 1 + 1e-15, false}, {0, nan, 1, false}, {0, nan, nan, false}};
    for (Row const& row : rows) {
        QuadraticMatrix matrix(3);
        matrix(1, 1) = row.diagonal;
        matrix(0, 2) = row.upper;
        matrix(2, 0) = row.lower;
        EXPECT_EQ(matrix.IsSymmetric(), row.isSymmetric) << row.upper << ' ' << row.lower;
    }
}
