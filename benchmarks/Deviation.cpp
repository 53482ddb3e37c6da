// The deviation of a measured environment, beside the search over all labellings of its ligands.

#include "vorlane/coordination/CoordinationGeometry.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using Spatia::Point3d;
using PointArray = Orrin::LegacyArray<Point3d>;

namespace {

constexpr std::size_t environments = 64;

using CosineTable = std::array<std::array<double, 6>, 6>;

CosineTable Cosines(Point3d const* points)
{
    CosineTable cosines{};
    for (std::size_t i = 0; i < 6; ++i) {
        for (std::size_t j = 0; j < 6; ++j) {
            cosines[i][j] = points[i].x * points[j].x + points[i].y * points[j].y + points[i].z * points[j].z;
        }
    }
    return cosines;
}

/// All 720 labellings, listed once.
std::array<std::array<unsigned char, 6>, 720> AllLabellings()
{
    std::array<std::array<unsigned char, 6>, 720> labellings{};
    std::array<unsigned char, 6> labelling{};
    std::iota(labelling.begin(), labelling.end(), static_cast<unsigned char>(0));
    for (auto& entry : labellings) {
        entry = labelling;
        std::next_permutation(labelling.begin(), labelling.end());
    }
    return labellings;
}

double BruteForce(PointArray const& ligands, CosineTable const& ideal)
{
    static auto const labellings = AllLabellings();
    CosineTable const measured = Cosines(ligands.GetData());
    double best = 1e300;
    for (auto const& labelling : labellings) {
        double cost = 0.0;
        for (std::size_t s = 1; s < 6; ++s) {
            for (std::size_t t = 0; t < s; ++t) {
                double const difference = measured[labelling[s]][labelling[t]] - ideal[s][t];
                cost += difference * difference;
            }
        }
        best = std::min(best, cost);
    }
    return best;
}

/// Six ideal sites, each moved by up to 0.2, in any order.
std::array<PointArray, environments> Environments(PointArray const& sites)
{
    std::mt19937_64 engine(1);
    std::uniform_real_distribution<double> shift(-0.2, 0.2);
    std::array<PointArray, environments> result;
    for (PointArray& ligands : result) {
        for (int site = 1; site <= 6; ++site) {
            Point3d const moved(sites[site].x + shift(engine), sites[site].y + shift(engine),
                                sites[site].z + shift(engine));
            ligands.push_back(Point3d(moved).Normalize());
        }
        std::shuffle(ligands.begin(), ligands.end(), engine);
    }
    return result;
}

template <typename Measure>
void Run(benchmark::State& state, CoordinationGeometryType type, Measure measure)
{
    PointArray sites;
    GetCoordinates(type, sites);
    CosineTable const ideal = Cosines(sites.GetData() + 1);
    auto const measured = Environments(sites);
    for (PointArray const& ligands : measured) {
        if (std::abs(DeviationFromIdealCoordinationGeometry(ligands, type) - BruteForce(ligands, ideal)) >
            1e-12) {
            state.SkipWithError("the two deviations differ");
            return;
        }
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(measure(measured[next], ideal));
        next = (next + 1) % environments;
    }
}

void Register(char const* name, CoordinationGeometryType type)
{
    std::string const prefix = std::string("Deviation/") + name;
    benchmark::RegisterBenchmark((prefix + "/Vorlane/6").c_str(), [type](benchmark::State& state) {
        IntArray assignment;
        Run(state, type, [&](PointArray const& ligands, CosineTable const&) {
            return DeviationFromIdealCoordinationGeometry(ligands, type, assignment);
        });
    });
    benchmark::RegisterBenchmark((prefix + "/AllLabellings/6").c_str(),
                                 [type](benchmark::State& state) { Run(state, type, BruteForce); });
}

} // namespace

int main(int argc, char** argv)
{
    Register("octahedron", octahedral);
    Register("trigonalPrism", trigonalPrismatic);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
