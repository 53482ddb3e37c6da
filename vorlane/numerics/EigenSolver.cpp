// Eigenvalues and eigenvectors of real symmetric matrices: Householder reduction to tridiagonal form, then
// the QL algorithm with implicit shifts, both with the transformations accumulated, then a sort and a proof
// of each pair.
//
//   R. S. Martin, C. Reinsch, J. H. Wilkinson, "Householder's tridiagonalization of a symmetric matrix",
//   Numerische Mathematik 11 (1968), procedure tred2. A. Dubrulle, R. S. Martin, J. H. Wilkinson, "The
//   implicit QL algorithm", Numerische Mathematik 12 (1968), procedure imtql2. Both also in J. H. Wilkinson,
//   C. Reinsch, "Handbook for Automatic Computation II: Linear Algebra" (1971).
//
// Each element goes through the operations of those procedures in their order, so that the outcome, that of
// the proof included, is the same bits everywhere. What is free is the order among elements that do not
// depend on each other. The loops use it to walk along rows: sums over a column are formed for all columns at
// once, the matrix is kept full instead of triangular during the reduction, and its transpose is rotated by
// rows during the iteration.

#include "vorlane/numerics/EigenSolverInternal.h"

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/numerics/WideRegistersInternal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace Vorlane {

namespace {

constexpr int maximumSweeps = 30;

// A bound for the proof that is relative to the eigenvalue and to the row, in units of the last place
// about 45.
constexpr double residualTolerance = 1e-14;

// How many columns are summed at once: few enough for the first-level cache, enough to fill the processor's
// pipes.
constexpr int panelWidth = 64;

/// Working storage of one call, without the heap for small matrices.
template <typename T>
class Scratch
{
public:
    explicit Scratch(int size)
    {
        if (size > inlineSize) {
            AfxWithMemoryException([&] { m_heap.reset(new T[static_cast<std::size_t>(size)]); });
        }
    }

    operator T*() { return m_heap ? m_heap.get() : m_inline; }

private:
    static constexpr int inlineSize = 16;

    std::unique_ptr<T[]> m_heap;
    T m_inline[inlineSize];
};

// The functions below take numbers of rows as `int` or as constants, and matrices as tables of rows or as
// arrays. With constants and arrays, as the matrices of the best fits have them, the compiler unrolls every
// loop and keeps the tridiagonal form in registers: what is left is the time of the divisions and roots, each
// of which waits for the one before.
template <int value>
using Constant = std::integral_constant<int, value>;

template <int left, int right>
constexpr Constant<left - right> operator-(Constant<left>, Constant<right>)
{
    return {};
}

template <int left, int right>
constexpr Constant<left + right> operator+(Constant<left>, Constant<right>)
{
    return {};
}

constexpr Constant<0> zero;
constexpr Constant<1> one;

/// Calls step(i) for i from `first` to `last`, both included. Constants give constants.
template <typename Step>
void CountUp(int first, int last, Step const& step)
{
    for (int i = first; i <= last; ++i) {
        step(i);
    }
}

template <int first, int last, typename Step>
void CountUp(Constant<first>, Constant<last>, Step const& step)
{
    if constexpr (first <= last) {
        step(Constant<first>());
        CountUp(Constant<first + 1>(), Constant<last>(), step);
    }
}

/// The same from `first` down to `last`.
template <typename Step>
void CountDown(int first, int last, Step const& step)
{
    for (int i = first; i >= last; --i) {
        step(i);
    }
}

template <int first, int last, typename Step>
void CountDown(Constant<first>, Constant<last>, Step const& step)
{
    if constexpr (first >= last) {
        step(Constant<first>());
        CountDown(Constant<first - 1>(), Constant<last>(), step);
    }
}

/// Calls step(value) with `value` as a constant where the bounds are: it lies from `first` to `last`.
template <typename Step>
void AsConstant(int value, int /*first*/, int /*last*/, Step const& step)
{
    step(value);
}

template <int first, int last, typename Step>
void AsConstant(int value, Constant<first>, Constant<last>, Step const& step)
{
    if constexpr (first <= last) {
        if (value == last) {
            step(Constant<last>());
        } else {
            AsConstant(value, Constant<first>(), Constant<last - 1>(), step);
        }
    }
}

/// Adds factors[0] · rows[0], factors[1] · rows[1] and so on to `sums`, one after the other, in `columns`
/// columns from `firstColumn` on.
template <typename Rows>
void AddRows(double* sums, Rows const& rows, int firstColumn, int columns, double const* factors,
             int rowCount)
{
    int r = 0;
    for (; r + 4 <= rowCount; r += 4) {
        double const* const row0 = rows[r] + firstColumn;
        double const* const row1 = rows[r + 1] + firstColumn;
        double const* const row2 = rows[r + 2] + firstColumn;
        double const* const row3 = rows[r + 3] + firstColumn;
        double const factor0 = factors[r];
        double const factor1 = factors[r + 1];
        double const factor2 = factors[r + 2];
        double const factor3 = factors[r + 3];
        for (int c = 0; c < columns; ++c) {
            sums[c] = sums[c] + factor0 * row0[c] + factor1 * row1[c] + factor2 * row2[c] + factor3 * row3[c];
        }
    }
    for (; r < rowCount; ++r) {
        double const* const row = rows[r] + firstColumn;
        double const factor = factors[r];
        for (int c = 0; c < columns; ++c) {
            sums[c] += factor * row[c];
        }
    }
}

/// The same from column 0 on in a matrix of the best fits.
template <typename Rows, int columns, int rowCount>
void AddRows(double* sums, Rows const& rows, Constant<0>, Constant<columns>, double const* factors,
             Constant<rowCount>)
{
    CountUp(zero, Constant<rowCount>() - one, [&](auto r) {
        CountUp(zero, Constant<columns>() - one, [&](auto c) { sums[c] += factors[r] * rows[r][c]; });
    });
}

/// One step of the reduction: reflects row `i` of the leading block of `i + 1` rows onto its last
/// off-diagonal element, e[i], and transforms the block above with it. Leaves the vector of the reflection in
/// row `i`, divided by the result in column `i`, and gives half its squared length, or 0 if there was nothing
/// to reflect.
template <typename Rows, typename Index>
double ReflectRow(Rows& a, Index i, double* e)
{
    double* const u = a[i];
    double scale = 0.0;
    if (i > 1) {
        CountUp(zero, i - one, [&](auto k) { scale += std::fabs(u[k]); });
    }
    if (scale == 0.0) {
        e[i] = u[i - 1];
        return 0.0;
    }

    double h = 0.0;
    CountUp(zero, i - one, [&](auto k) {
        u[k] /= scale;
        h += u[k] * u[k];
    });
    double const last = u[i - 1];
    double const g = last > 0.0 ? -std::sqrt(h) : std::sqrt(h);
    e[i] = scale * g;
    h -= last * g;
    u[i - 1] = last - g;

    std::fill_n(e, static_cast<int>(i), 0.0);
    AddRows(e, a, zero, i, u, i);
    double f = 0.0;
    CountUp(zero, i - one, [&](auto j) {
        a[j][i] = u[j] / h;
        e[j] /= h;
        f += e[j] * u[j];
    });
    double const hh = f / (h + h);
    CountUp(zero, i - one, [&](auto j) { e[j] -= hh * u[j]; });
    // Mirror images get the same two products and the same sum, so that the block stays exactly symmetric.
    CountUp(zero, i - one, [&](auto j) {
        auto& row = a[j];
        double const uj = u[j];
        double const ej = e[j];
        CountUp(zero, i - one, [&](auto k) { row[k] -= uj * e[k] + ej * u[k]; });
    });
    return h;
}

/// Applies reflection `i`, kept in row and column `i`, to the leading block of `i` rows, which holds the
/// product of the reflections before it.
template <typename Rows, typename Index>
void AccumulateReflection(Rows& a, Index i)
{
    for (int first = 0; first < i; first += panelWidth) {
        int const columns = std::min(panelWidth, i - first);
        double sums[panelWidth];
        std::fill_n(sums, columns, 0.0);
        AddRows(sums, a, first, columns, a[i], i);
        for (int k = 0; k < i; ++k) {
            double* const row = a[k] + first;
            double const factor = a[k][i];
            for (int c = 0; c < columns; ++c) {
                row[c] -= sums[c] * factor;
            }
        }
    }
}

/// Reduces the symmetric matrix `a` to tridiagonal form with the diagonal `d` and the subdiagonal `e`, where
/// e[i] links rows i - 1 and i and e[0] is 0. `a` becomes the orthogonal matrix of the reduction.
template <typename Rows, typename Dimension>
void ReduceToTridiagonal(Rows& a, Dimension n, double* d, double* e)
{
    // Zeros of different sign count as symmetric. The lower triangle is the one to work on.
    for (int i = 1; i < n; ++i) {
        for (int j = 0; j < i; ++j) {
            a[j][i] = a[i][j];
        }
    }
    CountDown(n - one, one, [&](auto i) { d[i] = ReflectRow(a, i, e); });
    d[0] = 0.0;
    e[0] = 0.0;
    CountUp(zero, n - one, [&](auto i) {
        if (d[i] != 0.0) {
            AccumulateReflection(a, i);
        }
        d[i] = a[i][i];
        a[i][i] = 1.0;
        for (int j = 0; j < i; ++j) {
            a[i][j] = 0.0;
            a[j][i] = 0.0;
        }
    });
}

/// The first row from `l` on whose subdiagonal element is negligible beside its diagonal neighbours.
template <typename Index, typename Dimension>
int FindSplit(double const* d, double const* e, Index l, Dimension n)
{
    for (int m = l; m < n - 1; ++m) {
        double const dd = std::fabs(d[m]) + std::fabs(d[m + 1]);
        if (std::fabs(e[m]) + dd == dd) {
            return m;
        }
    }
    return n - 1;
}

/// Turns the vectors `lower` and `upper` in their plane.
template <typename Dimension>
void RotatePair(double* lower, double* upper, Dimension n, double c, double s)
{
    CountUp(zero, n - one, [&](auto k) {
        double const f = upper[k];
        upper[k] = s * lower[k] + c * f;
        lower[k] = c * lower[k] - s * f;
    });
}

/// One sweep with an implicit shift over the rows `l` to `m` of the tridiagonal form; row j of `z` is the
/// vector that belongs to d[j].
template <typename First, typename Last, typename Rows, typename Dimension>
void SweepImplicitly(double* d, double* e, First l, Last m, Rows& z, Dimension n)
{
    double g = (d[l + 1] - d[l]) / (e[l] + e[l]);
    double r = std::sqrt(1.0 + g * g);
    g = d[m] - d[l] + e[l] / (g + (g < 0.0 ? -r : r));
    double s = 1.0;
    double c = 1.0;
    double p = 0.0;
    CountDown(m - one, l, [&](auto i) {
        // The rotation that takes (g, f) to one axis, by the quotient that is at most 1. A branch: a choice
        // among values would lengthen the chain from one rotation to the next.
        double const f = s * e[i];
        double const b = c * e[i];
        if (std::fabs(f) >= std::fabs(g)) {
            c = g / f;
            r = std::sqrt(1.0 + c * c);
            e[i + 1] = f * r;
            s = 1.0 / r;
            c *= s;
        } else {
            s = f / g;
            r = std::sqrt(1.0 + s * s);
            e[i + 1] = g * r;
            c = 1.0 / r;
            s *= c;
        }
        g = d[i + 1] - p;
        r = (d[i] - g) * s + 2.0 * c * b;
        p = s * r;
        d[i + 1] = g + p;
        g = c * r - b;
        RotatePair(z[i], z[i + 1], n, c, s);
    });
    d[l] -= p;
    e[l] = g;
    e[m] = 0.0;
}

/// Sweeps until the subdiagonal element below row `l` is negligible; d[l] is then an eigenvalue. False if
/// that takes too many sweeps. If both sides of a rotation are 0 it becomes NaN, and that ends here too.
template <typename Index, typename Rows, typename Dimension>
bool IsolateEigenvalue(double* d, double* e, Index l, Rows& z, Dimension n)
{
    int split = FindSplit(d, e, l, n);
    for (int sweeps = 0; split != l; ++sweeps) {
        if (sweeps == maximumSweeps) {
            return false;
        }
        AsConstant(split, l + one, n - one, [&](auto m) { SweepImplicitly(d, e, l, m, z, n); });
        split = FindSplit(d, e, l, n);
    }
    return true;
}

/// Exchanges rows and columns.
template <typename Rows, typename Dimension>
void TransposeRows(Rows& rows, Dimension n)
{
    for (int row = 1; row < n; ++row) {
        for (int column = 0; column < row; ++column) {
            std::swap(rows[row][column], rows[column][row]);
        }
    }
}

/// Finds the eigenvalues of the tridiagonal form and leaves them, unsorted, in `d`; `z` enters as the matrix
/// of the reduction and leaves with the eigenvector of d[k] in column k. Gives 0, or -1 if the limit of
/// sweeps was reached.
template <typename Rows, typename Dimension>
int DiagonalizeTridiagonal(double* d, double* e, Dimension n, Rows& z)
{
    for (int i = 1; i < n; ++i) {
        e[i - 1] = e[i];
    }
    e[n - 1] = 0.0;
    TransposeRows(z, n);
    bool isDone = true;
    CountUp(zero, n - one, [&](auto l) { isDone = isDone && IsolateEigenvalue(d, e, l, z, n); });
    TransposeRows(z, n);
    return isDone ? 0 : -1;
}

bool Solve(double** rows, int n, double* eigenvalues)
{
    Scratch<double> subdiagonal(n);
    ReduceToTridiagonal(rows, n, eigenvalues, subdiagonal);
    return DiagonalizeTridiagonal(eigenvalues, subdiagonal, n, rows) == 0;
}

/// The same on arrays of its own.
template <int dimension>
bool Solve(double** rows, Constant<dimension> n, double* eigenvalues)
{
    double z[dimension][dimension];
    double d[dimension];
    double e[dimension];
    for (int i = 0; i < dimension; ++i) {
        std::copy_n(rows[i], dimension, z[i]);
    }
    ReduceToTridiagonal(z, n, d, e);
    bool const isDone = DiagonalizeTridiagonal(d, e, n, z) == 0;
    for (int i = 0; i < dimension; ++i) {
        std::copy_n(z[i], dimension, rows[i]);
    }
    std::copy_n(d, dimension, eigenvalues);
    return isDone;
}

struct IndexedEigenvalue
{
    double value;
    int index;
};

/// Sorts `values` stably and calls exchange(j, k) for the exchanges that bring the vectors into the same
/// order.
template <typename Exchange>
void SortPairs(int n, double* values, QuadraticMatrix::EigenvalueSortOrder order, Exchange&& exchange)
{
    auto const precedes = [order](double left, double right) {
        return order == QuadraticMatrix::Ascending ? left < right : left > right;
    };
    // By insertion: its square cost is nothing beside the cubic cost of the vectors, and a NaN, which
    // precedes nothing and follows nothing, does it no harm.
    Scratch<IndexedEigenvalue> records(n);
    for (int j = 0; j < n; ++j) {
        int place = j;
        for (; place > 0 && precedes(values[j], records[place - 1].value); --place) {
            records[place] = records[place - 1];
        }
        records[place] = {values[j], j};
    }

    Scratch<int> source(n); // the vector that belongs at a place
    Scratch<int> target(n); // the place to which a vector belongs
    for (int j = 0; j < n; ++j) {
        values[j] = records[j].value;
        source[j] = records[j].index;
        target[source[j]] = j;
    }
    for (int j = 0; j < n; ++j) {
        if (target[j] != j) {
            int const k = source[j];
            exchange(j, k);
            target[k] = target[j];
            source[target[j]] = k;
            target[j] = j;
            source[j] = j;
        }
    }
}

} // namespace

namespace EigenSolver {

bool IsSymmetric(double const* const* rows, int dimension)
{
    for (int row = 1; row < dimension; ++row) {
        for (int column = 0; column < row; ++column) {
            if (!(rows[column][row] == rows[row][column])) {
                return false;
            }
        }
    }
    return dimension >= 1;
}

void Transpose(double** rows, int dimension)
{
    TransposeRows(rows, dimension);
}

bool SolveSymmetric(double** rows, int dimension, double* eigenvalues)
{
    switch (dimension) {
    case 3:
        return Solve(rows, Constant<3>(), eigenvalues);
    case 4:
        return Solve(rows, Constant<4>(), eigenvalues);
    default:
        return RunInWidestRegisters([&] { return Solve(rows, dimension, eigenvalues); });
    }
}

void SortColumns(double** rows, int dimension, double* values, QuadraticMatrix::EigenvalueSortOrder order)
{
    SortPairs(dimension, values, order, [&](int left, int right) {
        for (int row = 0; row < dimension; ++row) {
            std::swap(rows[row][left], rows[row][right]);
        }
    });
}

void SortRows(double** rows, int dimension, double* values, QuadraticMatrix::EigenvalueSortOrder order)
{
    SortPairs(dimension, values, order, [&](int upper, int lower) {
        std::swap_ranges(rows[upper], rows[upper] + dimension, rows[lower]);
    });
}

bool AreColumnEigenvectors(double const* const* matrix, int dimension, double const* const* vectors,
                           double const* eigenvalues, int first, int count, double tolerance)
{
    return RunInWidestRegisters([&] {
        for (int done = 0; done < count; done += panelWidth) {
            int const columns = std::min(panelWidth, count - done);
            for (int i = 0; i < dimension; ++i) {
                double sums[panelWidth];
                std::fill_n(sums, columns, 0.0);
                AddRows(sums, vectors, first + done, columns, matrix[i], dimension);
                double largest = 0.0;
                for (int j = 0; j < dimension; ++j) {
                    largest = std::max(largest, std::fabs(matrix[i][j]));
                }
                for (int c = 0; c < columns; ++c) {
                    double const eigenvalue = eigenvalues[done + c];
                    double const bound = largest * (std::fabs(eigenvalue) * tolerance);
                    if (std::fabs(sums[c] - eigenvalue * vectors[i][first + done + c]) > bound) {
                        return false;
                    }
                }
            }
        }
        return true;
    });
}

bool IsRowEigenvector(double const* const* matrix, int dimension, double const* vector, double eigenvalue,
                      double tolerance)
{
    for (int i = 0; i < dimension; ++i) {
        double sum = 0.0;
        double largest = 0.0;
        for (int j = 0; j < dimension; ++j) {
            sum += matrix[i][j] * vector[j];
            largest = std::max(largest, std::fabs(matrix[i][j]));
        }
        if (std::fabs(sum - eigenvalue * vector[i]) > largest * (std::fabs(eigenvalue) * tolerance)) {
            return false;
        }
    }
    return true;
}

} // namespace EigenSolver

bool QuadraticMatrix::GetEigenvectorsAndEigenvalues(QuadraticMatrix& eigenvectors, double* eigenvalues) const
{
    if (!IsSymmetric() || eigenvalues == nullptr) {
        return false;
    }
    if (&eigenvectors == this) {
        QuadraticMatrix const matrix(*this);
        return matrix.GetEigenvectorsAndEigenvalues(eigenvectors, eigenvalues);
    }
    eigenvectors = *this;
    if (!EigenSolver::SolveSymmetric(eigenvectors, m_dimension, eigenvalues)) {
        return false;
    }
    eigenvectors.SortColumns(eigenvalues, Descending);
    return EigenSolver::AreColumnEigenvectors(m_rows, m_dimension, eigenvectors.m_rows, eigenvalues, 0,
                                              m_dimension, residualTolerance);
}

bool QuadraticMatrix::IsColumnEigenvector(int index, QuadraticMatrix const& vectors, double eigenvalue,
                                          double tolerance) const
{
    return vectors.m_dimension == m_dimension && index >= 0 && index < m_dimension &&
           EigenSolver::AreColumnEigenvectors(m_rows, m_dimension, vectors.m_rows, &eigenvalue, index, 1,
                                              tolerance);
}

bool QuadraticMatrix::IsRowEigenvector(int index, QuadraticMatrix const& vectors, double eigenvalue,
                                       double tolerance) const
{
    return vectors.m_dimension == m_dimension && index >= 0 && index < m_dimension &&
           EigenSolver::IsRowEigenvector(m_rows, m_dimension, vectors.m_rows[index], eigenvalue, tolerance);
}

void QuadraticMatrix::SortColumns(double* values, EigenvalueSortOrder order)
{
    EigenSolver::SortColumns(m_rows, m_dimension, values, order);
}

void QuadraticMatrix::SortRows(double* values, EigenvalueSortOrder order)
{
    EigenSolver::SortRows(m_rows, m_dimension, values, order);
}

} // namespace Vorlane
