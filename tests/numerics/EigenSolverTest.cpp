#include "vorlane/numerics/EigenSolverInternal.h"

#include "gtest/gtest.h"

#include "tests/support/Seed.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <numeric>
#include <sstream>
#include <utility>
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

/// tred2 loop by loop as published. The library walks through the same sums in another order.
void ReduceAsPublished(double** a, int n, double* d, double* e)
{
    for (int i = n - 1; i > 0; --i) {
        double h = 0, scale = 0;
        for (int k = 0; k < i && i > 1; ++k) {
            scale += std::fabs(a[i][k]);
        }
        e[i] = a[i][i - 1];
        if (scale != 0) {
            for (int k = 0; k < i; ++k) {
                a[i][k] /= scale;
                h += a[i][k] * a[i][k];
            }
            double f = a[i][i - 1];
            double g = f > 0 ? -std::sqrt(h) : std::sqrt(h);
            e[i] = scale * g;
            h -= f * g;
            a[i][i - 1] = f - g;
            f = 0;
            for (int j = 0; j < i; ++j) {
                a[j][i] = a[i][j] / h;
                g = 0;
                for (int k = 0; k < i; ++k) {
                    g += (k <= j ? a[j][k] : a[k][j]) * a[i][k];
                }
                e[j] = g / h;
                f += e[j] * a[i][j];
            }
            double const hh = f / (h + h);
            for (int j = 0; j < i; ++j) {
                f = a[i][j];
                g = e[j] -= hh * f;
                for (int k = 0; k <= j; ++k) {
                    a[j][k] -= f * e[k] + g * a[i][k];
                }
            }
        }
        d[i] = h;
    }
    d[0] = e[0] = 0;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; d[i] != 0 && j < i; ++j) {
            double g = 0;
            for (int k = 0; k < i; ++k) {
                g += a[i][k] * a[k][j];
            }
            for (int k = 0; k < i; ++k) {
                a[k][j] -= g * a[k][i];
            }
        }
        d[i] = std::exchange(a[i][i], 1.0);
        for (int j = 0; j < i; ++j) {
            a[i][j] = a[j][i] = 0;
        }
    }
}

/// imtql2 likewise, without its sort; e[i] links rows i and i + 1.
bool IterateAsPublished(double* d, double* e, int n, double** z)
{
    for (int l = 0, sweeps = 0; l < n; ++l, sweeps = 0) {
        for (;;) {
            int m = l;
            double dd = 0;
            while (m < n - 1 && (dd = std::fabs(d[m]) + std::fabs(d[m + 1]), std::fabs(e[m]) + dd != dd)) {
                ++m;
            }
            if (m == l) {
                break;
            }
            if (sweeps++ == 30) {
                return false;
            }
            double g = (d[l + 1] - d[l]) / (e[l] + e[l]);
            double r = std::sqrt(g * g + 1);
            g = d[m] - d[l] + e[l] / (g + std::copysign(r, g < 0 ? -1 : 1));
            double s = 1, c = 1, p = 0;
            for (int i = m - 1; i >= l; --i) {
                double const f = s * e[i], b = c * e[i];
                bool const isSteep = std::fabs(f) >= std::fabs(g);
                double const tangent = isSteep ? g / f : f / g;
                r = std::sqrt(tangent * tangent + 1);
                e[i + 1] = (isSteep ? f : g) * r;
                (isSteep ? s : c) = 1 / r;
                (isSteep ? c : s) = tangent * (1 / r);
                g = d[i + 1] - p;
                r = (d[i] - g) * s + 2 * c * b;
                p = s * r;
                d[i + 1] = g + p;
                g = c * r - b;
                for (int k = 0; k < n; ++k) {
                    double const upper = z[k][i + 1];
                    z[k][i + 1] = s * z[k][i] + c * upper;
                    z[k][i] = c * z[k][i] - s * upper;
                }
            }
            d[l] -= p;
            e[l] = g;
            e[m] = 0;
        }
    }
    return true;
}

/// Compares the library's unsorted result for `matrix` with that of the published loops, bit by bit.
void ExpectPublishedBits(QuadraticMatrix const& matrix)
{
    int const n = matrix.Dimension();
    std::size_t const bytes = static_cast<std::size_t>(n) * sizeof(double);
    QuadraticMatrix vectors(matrix), expectedVectors(matrix);
    std::vector<double> values(static_cast<std::size_t>(n)), expectedValues(values), e(values);
    ReduceAsPublished(expectedVectors, n, expectedValues.data(), e.data());
    e.erase(e.begin());
    e.push_back(0);
    ASSERT_EQ(Vorlane::EigenSolver::SolveSymmetric(vectors, n, values.data()),
              IterateAsPublished(expectedValues.data(), e.data(), n, expectedVectors));
    ASSERT_EQ(std::memcmp(values.data(), expectedValues.data(), bytes), 0) << matrix;
    ASSERT_EQ(std::memcmp(vectors[0], expectedVectors[0], bytes * static_cast<std::size_t>(n)), 0) << matrix;
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

TEST(EigenSolverTest, GivesTheBitsOfThePublishedLoops)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int n : {1, 2, 3, 3, 3, 4, 4, 4, 5, 8, 13, 16, 17, 31, 66, 131}) {
        for (bool isSparse : {false, true}) {
            std::vector<double> lower(static_cast<std::size_t>(n * (n + 1) / 2));
            for (double& element : lower) {
                element = isSparse ? engine.Integer(-1, 1) * 0.5 * engine.Integer(0, 1) : engine.Real(-9, 9);
            }
            QuadraticMatrix matrix = Symmetric(lower);
            matrix(0, n - 1) += 0.0; // mirror images that differ in the sign of zero
            ExpectPublishedBits(matrix);
        }
    }
    ExpectPublishedBits(Symmetric({1e-160, 1e-160, 1e-160, 1e-170, 1e-160, 1e160})); // squares underflow
}

TEST(EigenSolverTest, SolvesRandomMatrices)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int n = 1; n <= 60; ++n) {
        std::vector<double> lower(static_cast<std::size_t>(n * (n + 1) / 2));
        for (double& element : lower) {
            element = engine.Real(-1, 1);
        }
        QuadraticMatrix const matrix = Symmetric(lower);
        QuadraticMatrix vectors;
        std::vector<double> values(static_cast<std::size_t>(n));
        matrix.GetEigenvectorsAndEigenvalues(vectors, values.data());
        for (int k = 0; k < n; ++k) {
            double const value = values[static_cast<std::size_t>(k)];
            ASSERT_GE(k == 0 ? value : values[static_cast<std::size_t>(k) - 1], value);
            for (int row = 0; row < n; ++row) {
                double residual = -value * vectors(row, k);
                double product = row == k ? -1 : 0;
                for (int j = 0; j < n; ++j) {
                    residual += matrix(row, j) * vectors(j, k);
                    product += vectors(j, row) * vectors(j, k);
                }
                ASSERT_LT(std::fabs(residual), 1e-12 * n) << n;
                ASSERT_LT(std::fabs(product), 1e-12) << n;
            }
        }
    }
}

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
    QuadraticMatrix const swap = ExpectEigenvalues(Symmetric({0, 1, 0}), {1, -1}, true);
    EXPECT_NEAR(std::fabs(swap(0, 0) + swap(1, 0)), 2 * half, 1e-15);
    ExpectEigenvalues(Symmetric({4, 1, 3, 2, 0, 5}), {6.669079, 3.476024, 1.854897}, true, 5e-7);
    // Singular: the eigenvalue near 0 leaves no room for rounding, and the outputs are right all the same.
    QuadraticMatrix const singular = ExpectEigenvalues(Symmetric({1, 1, 1}), {2, 0}, false);
    EXPECT_NEAR(singular(0, 1), -singular(1, 1), 1e-15);
    EXPECT_NEAR(std::fabs(singular(0, 1)), half, 1e-15);
    ExpectEigenvalues(Symmetric({1, 2, 4, 3, 6, 9}), {14, 0, 0}, false, 1e-13);
}

TEST(EigenSolverTest, KeepsTheAxesOfDiagonalMatrices)
{
    struct Row
    {
        std::vector<double> diagonal, sorted;
        std::vector<int> axes;
    } const rows[] = {{{1, 3, 2}, {3, 2, 1}, {1, 2, 0}},
                      {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 1, 2, 3}},
                      {{2, 5, 2, 5, 2}, {5, 5, 2, 2, 2}, {1, 3, 0, 2, 4}}};
    for (Row const& row : rows) {
        QuadraticMatrix const vectors = ExpectEigenvalues(Diagonal(row.diagonal), row.sorted, true, 0);
        for (int k = 0; k < vectors.Dimension(); ++k) {
            for (int i = 0; i < vectors.Dimension(); ++i) {
                EXPECT_EQ(vectors(i, k), i == row.axes[static_cast<std::size_t>(k)] ? 1 : 0);
            }
        }
    }
}

TEST(EigenSolverTest, RefusesWithUntouchedOutputs)
{
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
}

TEST(EigenSolverTest, GivesUpAfterThirtySweeps)
{
    double const infinity = std::numeric_limits<double>::infinity();
    for (QuadraticMatrix const& matrix : {Diagonal({1, notANumber}), Symmetric({1, infinity, 2})}) {
        QuadraticMatrix vectors;
        double values[2];
        EXPECT_FALSE(matrix.GetEigenvectorsAndEigenvalues(vectors, values));
        EXPECT_EQ(vectors.Dimension(), 2);
    }
}

TEST(EigenSolverTest, ReplacesTheMatrixItselfIfAsked)
{
    QuadraticMatrix matrix = Diagonal({1, 3});
    double values[2];
    EXPECT_TRUE(matrix.GetEigenvectorsAndEigenvalues(matrix, values));
    EXPECT_EQ(matrix(0, 1), 1);
}

TEST(EigenSolverTest, SortsVectorsWithTheirValues)
{
    using Values = std::vector<double>;
    struct Row
    {
        int order;
        Values values, sorted;
        std::vector<int> places;
    } const rows[] = {{1, {3, 1, 2}, {1, 2, 3}, {1, 2, 0}},
                      {2, {3, 1, 2}, {3, 2, 1}, {0, 2, 1}},
                      {7, {1, 2, 2, 1, 3}, {3, 2, 2, 1, 1}, {4, 1, 2, 0, 3}},
                      {1, {4, 3, 2, 1}, {1, 2, 3, 4}, {3, 2, 1, 0}}};
    for (Row const& row : rows) {
        int const n = static_cast<int>(row.values.size());
        auto const order = static_cast<QuadraticMatrix::EigenvalueSortOrder>(row.order);
        QuadraticMatrix columns(n);
        std::iota(columns[0], columns[0] + n * n, 0.0);
        QuadraticMatrix rowsOf(columns);
        rowsOf.Transpose();
        Values columnValues(row.values), rowValues(row.values);
        Vorlane::EigenSolver::SortColumns(columns, n, columnValues.data(), order);
        Vorlane::EigenSolver::SortRows(rowsOf, n, rowValues.data(), order);
        EXPECT_EQ(columnValues, row.sorted);
        EXPECT_EQ(rowValues, row.sorted);
        for (int i = 0; i < n * n; ++i) {
            int const expected = i / n * n + row.places[static_cast<std::size_t>(i % n)];
            EXPECT_EQ(columns(i / n, i % n), expected);
            EXPECT_EQ(rowsOf(i % n, i / n), expected);
        }
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
