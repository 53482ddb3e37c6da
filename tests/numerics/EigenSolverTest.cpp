#include "vorlane/numerics/EigenSolverInternal.h"

#include "gtest/gtest.h"

#include <cmath>
#include <limits>
#include <vector>

using Vorlane::QuadraticMatrix;

namespace {

double const notANumber = std::numeric_limits<double>::quiet_NaN();

/// The matrix with these elements on and below the diagonal, row after row, and their mirror images above.
QuadraticMatrix Symmetric(std::vector<double> const& lower)
{
    QuadraticMatrix matrix(static_cast<int>(std::sqrt(2.0 * static_cast<double>(lower.size()))));
    auto element = lower.begin();
    for (int row = 0; row < matrix.Dimension(); ++row) {
        for (int column = 0; column <= row; ++column) {
            matrix(row, column) = matrix(column, row) = *element++;
        }
    }
    return matrix;
}

QuadraticMatrix Diagonal(std::vector<double> const& values)
{
    QuadraticMatrix matrix(static_cast<int>(values.size()));
    for (int i = 0; i < matrix.Dimension(); ++i) {
        matrix(i, i) = values[static_cast<std::size_t>(i)];
    }
    return matrix;
}

/// Solves `matrix`, compares the eigenvalues within `tolerance` and gives the eigenvectors.
QuadraticMatrix ExpectEigenvalues(QuadraticMatrix const& matrix, std::vector<double> const& expected,
                                  bool isProven, double tolerance = 1e-14)
{
    QuadraticMatrix vectors;
    std::vector<double> values(expected.size(), notANumber);
    EXPECT_EQ(matrix.GetEigenvectorsAndEigenvalues(vectors, values.data()), isProven) << matrix;
    for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_NEAR(values[k], expected[k], tolerance) << matrix;
    }
    return vectors;
}

} // namespace

TEST(EigenSolverTest, FindsKnownSpectra)
{
    // The second difference has the eigenvalues 2 - 2·cos(kπ/(n + 1)).
    std::vector<double> lower, expected;
    for (int row = 0; row < 40; ++row) {
        for (int column = 0; column <= row; ++column) {
            lower.push_back(row == column ? 2 : row == column + 1 ? -1 : 0);
        }
        expected.push_back(2 - 2 * std::cos((40 - row) * std::acos(-1.0) / 41));
    }
    ExpectEigenvalues(Symmetric(lower), expected, false);

    // J. H. Wilkinson, "The Algebraic Eigenvalue Problem" (1965), W21+; here to 40 digits of precision,
    // rounded.
    lower.clear();
    for (int row = 0; row < 21; ++row) {
        for (int column = 0; column <= row; ++column) {
            lower.push_back(row == column ? std::abs(10 - row) : row == column + 1);
        }
    }
    ExpectEigenvalues(Symmetric(lower),
                      {10.746194182903393, 10.746194182903322, 9.2106786473613321,  9.2106786473049186,
                       8.0389411228290232, 8.0389411158142733, 7.0039522095286757,  7.0039517986163750,
                       6.0002340315841670, 6.0002175222570981, 5.0002444250019130,  4.9997824777429019,
                       4.0043540234408567, 3.9960482013836250, 3.0430992925788237,  2.9610588841857267,
                       2.1302092193625060, 1.7893213526950814, 0.94753436752929328, 0.25380581709667817,
                       -1.1254415221199842},
                      true);
    // The Hilbert matrix of 6 rows, likewise.
    ExpectEigenvalues(Symmetric({1.0,     1.0 / 2, 1.0 / 3, 1.0 / 3, 1.0 / 4, 1.0 / 5, 1.0 / 4,
                                 1.0 / 5, 1.0 / 6, 1.0 / 7, 1.0 / 5, 1.0 / 6, 1.0 / 7, 1.0 / 8,
                                 1.0 / 9, 1.0 / 6, 1.0 / 7, 1.0 / 8, 1.0 / 9, 0.1,     1.0 / 11}),
                      {1.6188998589243391, 0.24236087057520955, 0.016321521319875826, 6.1574835418264525e-4,
                       1.2570757122637029e-5, 1.0827994844811010e-7},
                      false, 1e-15);
}

TEST(EigenSolverTest, AnswersWhetherEveryPairIsProven)
{
    double const half = std::sqrt(0.5);
    EXPECT_EQ(ExpectEigenvalues(Diagonal({-2.5}), {-2.5}, true, 0)(0, 0), 1);
    ExpectEigenvalues(Symmetric({4, 1, 3, 2, 0, 5}), {6.669079, 3.476024, 1.854897}, true, 5e-7);
    // Singular: the eigenvalue near 0 leaves no room for rounding, and the outputs are right all the same.
    QuadraticMatrix const singular = ExpectEigenvalues(Symmetric({1, 1, 1}), {2, 0}, false);
    EXPECT_NEAR(singular(0, 1), -singular(1, 1), 1e-15);
    EXPECT_NEAR(std::fabs(singular(0, 1)), half, 1e-15);
    ExpectEigenvalues(Symmetric({1, 2, 4, 3, 6, 9}), {14, 0, 0}, false, 1e-13);
    ExpectEigenvalues(Diagonal({2, 5, 2, 5, 2}), {5, 5, 2, 2, 2}, true, 0);
}

TEST(EigenSolverTest, RefusesWithUntouchedOutputsAndGivesUpWithIncompleteOnes)
{
    double const infinity = std::numeric_limits<double>::infinity();
    QuadraticMatrix asymmetric = Diagonal({1, 2});
    asymmetric(0, 1) = notANumber;
    for (QuadraticMatrix const& matrix : {QuadraticMatrix(), asymmetric}) {
        QuadraticMatrix vectors = Diagonal({7});
        double value = 8;
        EXPECT_FALSE(matrix.GetEigenvectorsAndEigenvalues(vectors, &value));
        EXPECT_FALSE(Diagonal({1, 2}).GetEigenvectorsAndEigenvalues(vectors, nullptr));
        EXPECT_EQ(vectors.Dimension(), 1);
        EXPECT_EQ(vectors(0, 0), 7);
        EXPECT_EQ(value, 8);
    }
    for (QuadraticMatrix const& matrix : {Diagonal({1, notANumber}), Symmetric({1, infinity, 2})}) {
        QuadraticMatrix vectors;
        double values[2];
        EXPECT_FALSE(matrix.GetEigenvectorsAndEigenvalues(vectors, values));
        EXPECT_EQ(vectors.Dimension(), 2);
    }
}

TEST(EigenSolverTest, TestsVectorsInRowsAndColumnsAlike)
{
    QuadraticMatrix const matrix = Symmetric({2, 1, 2});
    struct Row
    {
        double x, y, value;
        bool isEigenvector;
    } const rows[] = {{1, 1, 3, true},    {1, -1, 1, true},         {1, 1, 3 + 1e-14, true},
                      {1, 1, 3.1, false}, {1, 1.0000001, 3, false}, {notANumber, 1, 3, true},
                      {0, 0, 0, true},    {1e-9, 0, 0, false}};
    for (Row const& row : rows) {
        double const vector[] = {row.x, row.y};
        double const* const columns[] = {&vector[0], &vector[1]};
        EXPECT_EQ(Vorlane::EigenSolver::IsRowEigenvector(matrix, 2, vector, row.value, 1e-14),
                  row.isEigenvector);
        EXPECT_EQ(Vorlane::EigenSolver::AreColumnEigenvectors(matrix, 2, columns, &row.value, 0, 1, 1e-14),
                  row.isEigenvector);
    }
}
