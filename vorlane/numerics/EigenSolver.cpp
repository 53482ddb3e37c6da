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

// The functions below take the dimension as `int` or as a constant: for the matrices of the best fits, of 3
// and 4 rows, the compiler unrolls them.
template <int value>
using Constant = std::integral_constant<int, value>;

/// Adds factors[0] · rows[0], factors[1] · rows[1] and so on to `sums`, one after the other, in `columns`
/// columns from `firstColumn` on.
void AddRows(double* sums, double const* const* rows, int firstColumn, int columns, double const* factors,
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

/// One step of the reduction: reflects row `i` of the leading block of `i + 1` rows onto its last
/// off-diagonal element, e[i], and transforms the block above with it. Leaves the vector of the reflection in
/// row `i`, divided by the result in column `i`, and gives half its squared length, or 0 if there was nothing
/// to reflect.
double ReflectRow(double** a, int i, double* e)
{
    double* const u = a[i];
    double scale = 0.0;
    if (i > 1) {
        for (int k = 0; k < i; ++k) {
            scale += std::fabs(u[k]);
        }
    }
    if (scale == 0.0) {
        e[i] = u[i - 1];
        return 0.0;
    }

    double h = 0.0;
    for (int k = 0; k < i; ++k) {
        u[k] /= scale;
        h += u[k] * u[k];
    }
    double const last = u[i - 1];
    double const g = last > 0.0 ? -std::sqrt(h) : std::sqrt(h);
    e[i] = scale * g;
    h -= last * g;
    u[i - 1] = last - g;

    std::fill_n(e, i, 0.0);
    AddRows(e, a, 0, i, u, i);
    double f = 0.0;
    for (int j = 0; j < i; ++j) {
        a[j][i] = u[j] / h;
        e[j] /= h;
        f += e[j] * u[j];
    }
    double const hh = f / (h + h);
    for (int j = 0; j < i; ++j) {
        e[j] -= hh * u[j];
    }
    // Mirror images get the same two products and the same sum, so that the block stays exactly symmetric.
    for (int j = 0; j < i; ++j) {
        double* const row = a[j];
        double const uj = u[j];
        double const ej = e[j];
        for (int k = 0; k < i; ++k) {
            row[k] -= uj * e[k] + ej * u[k];
        }
    }
    return h;
}

/// Applies reflection `i`, kept in row and column `i`, to the leading block of `i` rows, which holds the
/// product of the reflections before it.
void AccumulateReflection(double** a, int i)
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
template <typename Dimension>
void ReduceToTridiagonal(double** a, Dimension n, double* d, double* e)
{
    // Zeros of different sign count as symmetric. The lower triangle is the one to work on.
    for (int i = 1; i < n; ++i) {
        for (int j = 0; j < i; ++j) {
            a[j][i] = a[i][j];
        }
    }
    for (int i = n - 1; i >= 1; --i) {
        d[i] = ReflectRow(a, i, e);
    }
    d[0] = 0.0;
    e[0] = 0.0;
    for (int i = 0; i < n; ++i) {
        if (d[i] != 0.0) {
            AccumulateReflection(a, i);
        }
        d[i] = a[i][i];
        a[i][i] = 1.0;
        for (int j = 0; j < i; ++j) {
            a[i][j] = 0.0;
            a[j][i] = 0.0;
        }
    }
}

/// The first row from `l` on whose subdiagonal element is negligible beside its diagonal neighbours.
template <typename Dimension>
int FindSplit(double const* d, double const* e, int l, Dimension n)
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
    for (int k = 0; k < n; ++k) {
        double const f = upper[k];
        upper[k] = s * lower[k] + c * f;
        lower[k] = c * lower[k] - s * f;
    }
}

/// One sweep with an implicit shift over the rows `l` to `m` of the tridiagonal form; row j of `z` is the
/// vector that belongs to d[j].
template <typename Dimension>
void SweepImplicitly(double* d, double* e, int l, int m, double** z, Dimension n)
{
    double g = (d[l + 1] - d[l]) / (e[l] + e[l]);
    double r = std::sqrt(1.0 + g * g);
    g = d[m] - d[l] + e[l] / (g + (g < 0.0 ? -r : r));
    double s = 1.0;
    double c = 1.0;
    double p = 0.0;
    for (int i = m - 1; i >= l; --i) {
        // The rotation that takes (g, f) to one axis, by the quotient that is at most 1; without a branch,
        // since nothing would predict it.
        double const f = s * e[i];
        double const b = c * e[i];
        bool const isSteep = std::fabs(f) >= std::fabs(g);
        double const longSide = isSteep ? f : g;
        double const quotient = (isSteep ? g : f) / longSide;
        r = std::sqrt(1.0 + quotient * quotient);
        e[i + 1] = longSide * r;
        double const longPart = 1.0 / r;
        double const shortPart = quotient * longPart;
        s = isSteep ? longPart : shortPart;
        c = isSteep ? shortPart : longPart;
        g = d[i + 1] - p;
        r = (d[i] - g) * s + 2.0 * c * b;
        p = s * r;
        d[i + 1] = g + p;
        g = c * r - b;
        RotatePair(z[i], z[i + 1], n, c, s);
    }
    d[l] -= p;
    e[l] = g;
    e[m] = 0.0;
}

/// Sweeps until the subdiagonal element below row `l` is negligible; d[l] is then an eigenvalue. False if
/// that takes too many sweeps. If both sides of a rotation are 0 it becomes NaN, and that ends here too.
template <typename Dimension>
bool IsolateEigenvalue(double* d, double* e, int l, double** z, Dimension n)
{
    int m = FindSplit(d, e, l, n);
    for (int sweeps = 0; m != l; ++sweeps) {
        if (sweeps == maximumSweeps) {
            return false;
        }
        SweepImplicitly(d, e, l, m, z, n);
        m = FindSplit(d, e, l, n);
    }
    return true;
}

/// Finds the eigenvalues of the tridiagonal form and leaves them, unsorted, in `d`; `z` enters as the matrix
/// of the reduction and leaves with the eigenvector of d[k] in column k. Gives 0, or -1 if the limit of
/// sweeps was reached.
template <typename Dimension>
int DiagonalizeTridiagonal(double* d, double* e, Dimension n, double** z)
{
    for (int i = 1; i < n; ++i) {
        e[i - 1] = e[i];
    }
    e[n - 1] = 0.0;
    EigenSolver::Transpose(z, n);
    int l = 0;
    while (l < n && IsolateEigenvalue(d, e, l, z, n)) {
        ++l;
    }
    EigenSolver::Transpose(z, n);
    return l == n ? 0 : -1;
}

template <typename Dimension>
bool Solve(double** rows, Dimension n, double* eigenvalues)
{
    Scratch<double> subdiagonal(n);
    ReduceToTridiagonal(rows, n, eigenvalues, subdiagonal);
    return DiagonalizeTridiagonal(eigenvalues, subdiagonal, n, rows) == 0;
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
    for (int row = 1; row < dimension; ++row) {
        for (int column = 0; column < row; ++column) {
            std::swap(rows[row][column], rows[column][row]);
        }
    }
}

bool SolveSymmetric(double** rows, int dimension, double* eigenvalues)
{
    switch (dimension) {
    case 3:
        return Solve(rows, Constant<3>(), eigenvalues);
    case 4:
        return Solve(rows, Constant<4>(), eigenvalues);
    default:
        return Solve(rows, dimension, eigenvalues);
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
