// A change of a spectrum and what follows from it: the row computed anew, and the map of a ColorMapParameters
// built anew after a change of a parameter, its spectrum looked up by name.
//
// Cases of SetColor: one defined position (`flat`), every eighth (`sparse`), every second (`alternate`, the
// most ramps that a row can have) and all of them (`full`). The hand-written peer interpolates a row of
// packed colours between the same positions in floating point.

#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/CustomColorSpectrum.h"

#include "benchmark/benchmark.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int size = 128;

Orrin::Color StopColor(int position)
{
    return static_cast<std::uint32_t>(position) * 0x01030507u;
}

/// The hand-written peer: a row of packed colours with flags.
struct Row
{
    std::vector<std::uint32_t> packed = std::vector<std::uint32_t>(size);
    std::vector<char> isDefined = std::vector<char>(size);

    [[gnu::noinline]] void Set(int index, std::uint32_t color)
    {
        packed[static_cast<std::size_t>(index)] = color;
        isDefined[static_cast<std::size_t>(index)] = 1;
        int before = -1;
        for (int position = 0; position < size; ++position) {
            if (isDefined[static_cast<std::size_t>(position)]) {
                Fill(before, position);
                before = position;
            }
        }
        for (int position = before + 1; position < size; ++position) {
            packed[static_cast<std::size_t>(position)] = packed[static_cast<std::size_t>(before)];
        }
    }

    void Fill(int before, int after)
    {
        std::uint32_t const to = packed[static_cast<std::size_t>(after)];
        std::uint32_t const from = before < 0 ? to : packed[static_cast<std::size_t>(before)];
        float const step = 1.0f / static_cast<float>(after - before);
        for (int position = before + 1; position < after; ++position) {
            float const share = static_cast<float>(position - before) * step;
            std::uint32_t mixed = 0;
            for (int shift = 0; shift < 32; shift += 8) {
                float const first = static_cast<float>(from >> shift & 0xFFu);
                float const second = static_cast<float>(to >> shift & 0xFFu);
                mixed |= static_cast<std::uint32_t>(first + (second - first) * share + 0.5f) << shift;
            }
            packed[static_cast<std::size_t>(position)] = mixed;
        }
    }
};

/// Whether two colours are the same but for the rounding of single precision.
bool AreClose(Orrin::Color const& one, Orrin::Color const& other)
{
    return std::abs(one.GetRed() - other.GetRed()) <= 1 && std::abs(one.GetGreen() - other.GetGreen()) <= 1 &&
           std::abs(one.GetBlue() - other.GetBlue()) <= 1 && std::abs(one.GetAlpha() - other.GetAlpha()) <= 1;
}

void RegisterSetColor(char const* shape, int distance)
{
    Vorlane::CustomColorSpectrum spectrum("edited", size, true);
    Row row;
    for (int position = 0; position < size; position += distance) {
        spectrum.SetColor(position, StopColor(position));
        row.Set(position, StopColor(position).GetPacked());
    }
    bool agree = true;
    for (int position = 0; position < size; ++position) {
        Orrin::Color color;
        spectrum.GetColor(position, color);
        agree = agree && AreClose(color, row.packed[static_cast<std::size_t>(position)]);
    }
    std::string const name = "SpectrumEdit/setcolor-" + std::string(shape) + "/";
    benchmark::RegisterBenchmark((name + "Vorlane/128").c_str(), [=](benchmark::State& state) mutable {
        if (!agree) {
            state.SkipWithError("the colours differ");
            return;
        }
        for (auto _ : state) {
            spectrum.SetColor(0, StopColor(1));
            benchmark::ClobberMemory();
        }
    });
    benchmark::RegisterBenchmark((name + "HandWritten/128").c_str(), [=](benchmark::State& state) mutable {
        for (auto _ : state) {
            row.Set(0, StopColor(1).GetPacked());
            benchmark::ClobberMemory();
        }
    });
}

void Rebuild(benchmark::State& state)
{
    Vorlane::ColorMapParameters parameters("Rainbow 1", true, 0.0, 1.0, size);
    if (parameters.CalculateColor(0.0) != Orrin::Color::Red() ||
        parameters.CalculateColor(1.0) != Orrin::Color::Cyan()) {
        state.SkipWithError("the colours differ");
        return;
    }
    double minimum = 0.0;
    for (auto _ : state) {
        minimum -= 1.0;
        parameters.SetMinimum(minimum);
        benchmark::DoNotOptimize(parameters.CalculateColor(0.5));
    }
}

} // namespace

int main(int argc, char** argv)
{
    RegisterSetColor("flat", size);
    RegisterSetColor("sparse", 8);
    RegisterSetColor("alternate", 2);
    RegisterSetColor("full", 1);
    benchmark::RegisterBenchmark("SpectrumEdit/rebuild/Vorlane/128", Rebuild);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
