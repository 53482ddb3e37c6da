#ifndef VORLANE_NUMERICS_QUADRATICMATRIX_H
#define VORLANE_NUMERICS_QUADRATICMATRIX_H

/// \file
/// A square matrix of doubles whose size is chosen at run time, and the eigenvalues and eigenvectors of a
/// real symmetric one. There is no shared state: distinct objects may be used on distinct threads.

#include "vorlane/Export.h"
#include "vorlane/foundation/ValueTypes.h"

#include <iosfwd>

namespace Vorlane {

/// An n by n matrix of doubles with storage of its own, row after row in one block. Rows and columns count
/// from 0.
///
/// It is made to hand a symmetric matrix to the eigen solver and to take the eigenvectors back, and has no
/// arithmetic of its own. Whatever takes memory raises CMemoryException if there is none.
class VORLANE_EXPORT QuadraticMatrix
{
public:
    /// The order in which eigenvalues are sorted. Whatever is not `Ascending` counts as descending.
    enum EigenvalueSortOrder : int
    {
        Ascending = 1, ///< the smallest first
        Descending = 2 ///< the largest first
    };

    /// The empty matrix: dimension 0, no storage, nothing allocated.
    QuadraticMatrix() = default;

    /// `dimension` rows and columns of zeros; a `dimension` of 0 or less gives the empty matrix.
    explicit QuadraticMatrix(int dimension);

    /// Dimension 3 and the elements of `matrix`.
    QuadraticMatrix(Spatia::Matrix3x3 const& matrix);

    /// Dimension 4 and the elements of `matrix`.
    QuadraticMatrix(Spatia::Matrix4x4 const& matrix);

    /// A copy with storage of its own.
    QuadraticMatrix(QuadraticMatrix const& other);

    ~QuadraticMatrix();

    /// Copies elements and dimension. Between matrices of one dimension nothing is allocated and the row
    /// pointers stay valid; otherwise the storage is replaced, and a failed allocation leaves this matrix as
    /// it was.
    QuadraticMatrix& operator=(QuadraticMatrix const& other);

    /// The element at `row` and `column`, each from 0 to the dimension minus 1; they are not tested.
    double const& operator()(int row, int column) const { return m_rows[row][column]; }
    double& operator()(int row, int column) { return m_rows[row][column]; }

    /// The table of row pointers, for access by `[row][column]`; null for the empty matrix.
    operator double const* const*() const { return m_rows; }
    operator double**() { return m_rows; }

    /// The number of rows, which is the number of columns.
    int Dimension() const { return m_dimension; }

    /// Whether each element equals its mirror image exactly. The diagonal is not looked at; 0.0 equals -0.0,
    /// and a NaN off the diagonal equals nothing. The empty matrix is not symmetric.
    bool IsSymmetric() const;

    /// Exchanges rows and columns in place.
    void Transpose();

    /// Writes "Dimension = n", then "Row #r" and a line with the elements of each row, r from 1. The stream's
    /// precision and flags apply.
    void Print(std::ostream& stream) const;

    /// Finds all eigenvalues and eigenvectors of this real symmetric matrix by Householder reduction to
    /// tridiagonal form and the QL algorithm with implicit shifts, and proves every pair against the matrix.
    ///
    /// \param eigenvectors gets this matrix's dimension; its column k is the eigenvector, of length 1 and
    ///        either sign, of `eigenvalues[k]`. This matrix itself is not changed, unless it is given here.
    /// \param eigenvalues room for `Dimension()` values, filled in descending order; equal ones keep the
    ///        order in which the iteration found them.
    /// \return false, with both outputs untouched, if the matrix is empty or not symmetric or `eigenvalues`
    ///         is null; false, with both outputs incomplete and unsorted, if some eigenvalue takes more than
    ///         30 sweeps, as most matrices with NaN or infinite elements do; false, with both outputs
    ///         complete and sorted, if for some pair an element of A·v − λ·v exceeds 1e-14·|λ| times the
    ///         largest absolute element of that row of A (NaN exceeds nothing). This bound has no floor, so
    ///         that a singular matrix, with an eigenvalue near 0, usually answers false with outputs as good
    ///         as any.
    ///
    /// The result is the same bits from every build. Time grows with the cube of the dimension, memory is the
    /// output and a few words for each row.
    ///
    /// Sources: R. S. Martin, C. Reinsch and J. H. Wilkinson, "Householder's tridiagonalization of a
    /// symmetric matrix" (1968), procedure tred2; A. Dubrulle, R. S. Martin and J. H. Wilkinson, "The
    /// implicit QL algorithm" (1968), procedure imtql2; both also in J. H. Wilkinson and C. Reinsch, "Linear
    /// Algebra" (1971).
    bool GetEigenvectorsAndEigenvalues(QuadraticMatrix& eigenvectors, double* eigenvalues) const;

private:
    void Allocate(int dimension);

    bool IsColumnEigenvector(int index, QuadraticMatrix const& vectors, double eigenvalue,
                             double tolerance) const;
    bool IsRowEigenvector(int index, QuadraticMatrix const& vectors, double eigenvalue,
                          double tolerance) const;
    void SortColumns(double* values, EigenvalueSortOrder order);
    void SortRows(double* values, EigenvalueSortOrder order);

    double* m_elements = nullptr;
    double** m_rows = nullptr;
    int m_dimension = 0;
};

/// Prints `matrix` with QuadraticMatrix::Print.
VORLANE_EXPORT std::ostream& operator<<(std::ostream& stream, QuadraticMatrix const& matrix);

} // namespace Vorlane

#endif
