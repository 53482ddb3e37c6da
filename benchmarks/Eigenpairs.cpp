// Eigenvalues and eigenvectors of random symmetric matrices.
//
// Vorlane's time includes its proof of every pair, which the peers do not give.

#include "benchmark/benchmark.h"
#include "vorlane/numerics/QuadraticMatrix.h"

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#ifdef VORLANE_HAVE_EIGEN
#include <Eigen/Eigenvalues>
#endif
#ifdef VORLANE_HAVE_LAPACK
extern "C" void dsyev_(char const* job, char const* triangle, int const* n, double* a, int const* stride,
                       double* values, double* work, int const* workSize, int* info);
#endif

namespace {

constexpr int matrixCount = 16;

std::vector<double> RandomSymmetric(int n, int index)
{
    std::mt19937_64 engine(static_cast<unsigned long>(100 * n + index));
    std::uniform_real_distribution<double> element(-1.0, 1.0);
    std::vector<double> elements(static_cast<std::size_t>(n * n));
    for (int row = 0; row < n; ++row) {
        for (int column = 0; column <= row; ++column) {
            double const value = element(engine);
            elements[static_cast<std::size_t>(row * n + column)] = value;
            elements[static_cast<std::size_t>(column * n + row)] = value;
        }
    }
    return elements;
}

/// The largest error of A·v - λ·v, with `vector(row, k)` giving the eigenvectors.
template <typename Vectors, typename Values>
double LargestResidual(std::vector<double> const& a, int n, Vectors const& vector, Values const& value)
{
    double largest = 0.0;
    for (int k = 0; k < n; ++k) {
        for (int row = 0; row < n; ++row) {
            double sum = -value(k) * vector(row, k);
            for (int j = 0; j < n; ++j) {
                sum += a[static_cast<std::size_t>(row * n + j)] * vector(j, k);
            }
            largest = std::max(largest, std::fabs(sum));
        }
    }
    return largest;
}

/// Runs `solve(index)` for matrix after matrix, once `residual(index)` has shown that it solves them.
template <typename Solve, typename Residual>
void TimeSolver(benchmark::State& state, Solve const& solve, Residual const& residual)
{
    for (int index = 0; index < matrixCount; ++index) {
        solve(index);
        if (!(residual(index) < 1e-11)) {
            state.SkipWithError("wrong eigenpairs");
            return;
        }
    }
    int index = 0;
    for (auto _ : state) {
        solve(index);
        benchmark::ClobberMemory();
        index = (index + 1) % matrixCount;
    }
}

std::vector<std::vector<double>> RandomMatrices(int n)
{
    std::vector<std::vector<double>> matrices;
    for (int index = 0; index < matrixCount; ++index) {
        matrices.push_back(RandomSymmetric(n, index));
    }
    return matrices;
}

void TimeVorlane(benchmark::State& state)
{
    int const n = static_cast<int>(state.range(0));
    auto const elements = RandomMatrices(n);
    std::vector<Vorlane::QuadraticMatrix> matrices;
    for (auto const& source : elements) {
        Vorlane::QuadraticMatrix matrix(n);
        std::copy(source.begin(), source.end(), matrix[0]);
        matrices.push_back(matrix);
    }
    Vorlane::QuadraticMatrix vectors(n);
    std::vector<double> values(static_cast<std::size_t>(n));
    TimeSolver(
        state,
        [&](int index) {
            bool const proven = matrices[static_cast<std::size_t>(index)].GetEigenvectorsAndEigenvalues(
                vectors, values.data());
            benchmark::DoNotOptimize(proven);
        },
        [&](int index) {
            return LargestResidual(
                elements[static_cast<std::size_t>(index)], n,
                [&](int row, int column) { return vectors(row, column); },
                [&](int k) { return values[static_cast<std::size_t>(k)]; });
        });
}

#ifdef VORLANE_HAVE_EIGEN
template <typename Matrix, bool direct>
void TimeEigen(benchmark::State& state)
{
    int const n = static_cast<int>(state.range(0));
    auto const elements = RandomMatrices(n);
    std::vector<Matrix, Eigen::aligned_allocator<Matrix>> matrices;
    for (auto const& source : elements) {
        matrices.emplace_back(Eigen::Map<Eigen::MatrixXd const>(source.data(), n, n));
    }
    Eigen::SelfAdjointEigenSolver<Matrix> solver(n);
    TimeSolver(
        state,
        [&](int index) {
            if constexpr (direct) {
                solver.computeDirect(matrices[static_cast<std::size_t>(index)]);
            } else {
                solver.compute(matrices[static_cast<std::size_t>(index)]);
            }
        },
        [&](int index) {
            return LargestResidual(
                elements[static_cast<std::size_t>(index)], n,
                [&](int row, int column) { return solver.eigenvectors()(row, column); },
                [&](int k) { return solver.eigenvalues()(k); });
        });
}
#endif

#ifdef VORLANE_HAVE_LAPACK
void TimeLapack(benchmark::State& state)
{
    int const n = static_cast<int>(state.range(0));
    auto const elements = RandomMatrices(n);
    std::vector<double> vectors;
    std::vector<double> values(static_cast<std::size_t>(n));
    std::vector<double> work(static_cast<std::size_t>(64 * n + 64));
    int const workSize = static_cast<int>(work.size());
    TimeSolver(
        state,
        [&](int index) {
            int info = 0;
            vectors = elements[static_cast<std::size_t>(index)];
            dsyev_("V", "L", &n, vectors.data(), &n, values.data(), work.data(), &workSize, &info);
            benchmark::DoNotOptimize(info);
        },
        [&](int index) {
            return LargestResidual(
                elements[static_cast<std::size_t>(index)], n,
                [&](int row, int column) { return vectors[static_cast<std::size_t>(column * n + row)]; },
                [&](int k) { return values[static_cast<std::size_t>(k)]; });
        });
}
#endif

} // namespace

BENCHMARK(TimeVorlane)->Name("Eigenpairs/random/Vorlane")->Arg(3)->Arg(4)->Arg(16)->Arg(64)->Arg(200);
#ifdef VORLANE_HAVE_EIGEN
BENCHMARK(TimeEigen<Eigen::MatrixXd, false>)
    ->Name("Eigenpairs/random/EigenCompute")
    ->Arg(3)
    ->Arg(4)
    ->Arg(16)
    ->Arg(64)
    ->Arg(200);
BENCHMARK(TimeEigen<Eigen::Matrix3d, true>)->Name("Eigenpairs/random/EigenComputeDirect")->Arg(3);
#endif
#ifdef VORLANE_HAVE_LAPACK
BENCHMARK(TimeLapack)->Name("Eigenpairs/random/LapackDsyev")->Arg(3)->Arg(4)->Arg(16)->Arg(64)->Arg(200);
#endif

BENCHMARK_MAIN();
