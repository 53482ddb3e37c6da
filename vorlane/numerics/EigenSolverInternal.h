#ifndef VORLANE_NUMERICS_EIGENSOLVERINTERNAL_H
#define VORLANE_NUMERICS_EIGENSOLVERINTERNAL_H

/// \file
/// The eigen solver on bare row tables, for callers that keep small matrices on the stack.

#include "vorlane/numerics/QuadraticMatrix.h"

namespace Vorlane::EigenSolver {

/// Whether each element equals its mirror image exactly; the diagonal is not looked at.
bool IsSymmetric(double const* const* rows, int dimension);

/// Exchanges rows and columns in place.
void Transpose(double** rows, int dimension);

/// Replaces the symmetric matrix `rows` by its eigenvectors: column k belongs to `eigenvalues[k]`. They are
/// not sorted. False if some eigenvalue takes more than 30 sweeps; both outputs then hold what the iteration
/// left.
bool SolveSymmetric(double** rows, int dimension, double* eigenvalues);

/// Sorts `values`, equal ones keeping their order, and moves the columns of `rows` with them.
void SortColumns(double** rows, int dimension, double* values, QuadraticMatrix::EigenvalueSortOrder order);

/// Sorts `values`, equal ones keeping their order, and exchanges the elements of the rows with them.
void SortRows(double** rows, int dimension, double* values, QuadraticMatrix::EigenvalueSortOrder order);

/// Whether the columns `first` to `first + count - 1` of `vectors` are eigenvectors of `matrix`: for column
/// v, the k-th of them, with λ = `eigenvalues[k]`, no element of A·v − λ·v exceeds |λ|·`tolerance` times the
/// largest absolute element of its row of A. A NaN exceeds nothing.
bool AreColumnEigenvectors(double const* const* matrix, int dimension, double const* const* vectors,
                           double const* eigenvalues, int first, int count, double tolerance);

/// The same test for one vector whose elements stand in a row: A·v is formed all the same.
bool IsRowEigenvector(double const* const* matrix, int dimension, double const* vector, double eigenvalue,
                      double tolerance);

} // namespace Vorlane::EigenSolver

#endif
