#ifndef VORLANE_FUZZ_EIGENPAIRCHECKS_H
#define VORLANE_FUZZ_EIGENPAIRCHECKS_H

#include "fuzz/Require.h"
#include "vorlane/numerics/EigenSolverInternal.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace VorlaneFuzz {

/// A·v = λ·v, and whether the symmetric matrix says that each pair is proven; vectors of length 1 and at
/// right angles; the largest eigenvalue first. One of low rank may have eigenvalues that take too many
/// sweeps. The outputs may replace the matrix.
inline void CheckEigenpairs(Vorlane::QuadraticMatrix const& matrix, bool isRandom)
{
    int const size = matrix.Dimension();
    auto const count = static_cast<std::size_t>(size);
    Vorlane::QuadraticMatrix vectors, solved(matrix);
    std::vector<double> values(count + 1), unsorted(count + 1);
    bool const isProven = matrix.GetEigenvectorsAndEigenvalues(vectors, values.data());
    if (size == 0 || !Vorlane::EigenSolver::SolveSymmetric(solved, size, unsorted.data())) {
        Require(!isProven && !isRandom);
        return;
    }
    Require(std::is_sorted(values.rbegin() + 1, values.rend()));
    Vorlane::QuadraticMatrix rows(vectors), itself(matrix);
    rows.Transpose();
    Require(itself.GetEigenvectorsAndEigenvalues(itself, unsorted.data()) == isProven && unsorted == values);
    double squares = 0;
    bool areAllProven = true;
    for (int k = 0; k < size; ++k) {
        double const value = values[static_cast<std::size_t>(k)];
        areAllProven =
            areAllProven && Vorlane::EigenSolver::IsRowEigenvector(matrix, size, rows[k], value, 1e-14);
        squares += std::inner_product(matrix[k], matrix[k] + size, matrix[k], 0.0);
    }
    Require(isProven == areAllProven);
    for (int k = 0; k < size; ++k) {
        double const value = values[static_cast<std::size_t>(k)];
        for (int i = 0; i < size; ++i) {
            Require(itself(i, k) == vectors(i, k));
            double const image = std::inner_product(rows[k], rows[k] + size, matrix[i], 0.0);
            Require(std::fabs(image - value * rows(k, i)) <= 1e-12 * std::sqrt(squares));
            double const product = std::inner_product(rows[k], rows[k] + size, rows[i], 0.0);
            Require(std::fabs(product - (i == k ? 1 : 0)) <= 1e-12);
        }
    }
}

} // namespace VorlaneFuzz

#endif
