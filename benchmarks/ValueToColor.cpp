// A number becomes a colour: ColorMapParameters beside a hand-written table, one call a value and in a batch.
//
// Cases are named by the way (call or batch), by whether values outside the range are clipped, and by the
// number of bins. Of the random values, 29 in 100 lie outside the range. The hand-written forms do no more
// than they must: bins by one multiplication, whatever that does to a value on an edge, and no look-up by
// name.

#include "vorlane/colour/ColorMapParameters.h"

#include "benchmark/benchmark.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int valueCount = 10'000'000;

std::vector<double> const& Values()
{
    static std::vector<double> const values = [] {
        std::mt19937_64 engine(1);
        std::uniform_real_distribution<double> distribution(-0.145 / 0.71, 1.0 + 0.145 / 0.71);
        std::vector<double> drawn(valueCount);
        for (double& value : drawn) {
            value = distribution(engine);
        }
        return drawn;
    }();
    return values;
}

Vorlane::ColorMapParameters MakeParameters(bool clip, int binCount)
{
    return Vorlane::ColorMapParameters("Rainbow 1", clip, 0.0, 1.0, binCount);
}

/// The hand-written peer: a table of packed colours.
struct Table
{
    bool clip;
    double minimum;
    double maximum;
    double binsPerUnit;
    double firstBin; ///< 0; as a constant it would become a branch
    double lastBin;
    std::uint32_t off;
    std::vector<std::uint32_t> packed;
};

Table MakeTable(bool clip, int binCount)
{
    Vorlane::ColorMapParameters parameters = MakeParameters(clip, binCount);
    Table table{clip, 0.0, 1.0, double(binCount), 0.0, double(binCount - 1), 0xFF000000u, {}};
    for (int bin = 0; bin < binCount; ++bin) {
        table.packed.push_back(parameters.CalculateColor((bin + 0.5) / binCount).GetPacked());
    }
    return table;
}

inline std::uint32_t LookUp(Table const& table, double value)
{
    double position = (value - table.minimum) * table.binsPerUnit;
    position = position > table.firstBin ? position : table.firstBin;
    position = position < table.lastBin ? position : table.lastBin;
    return table.packed[static_cast<std::size_t>(static_cast<int>(position))];
}

inline bool IsClipped(Table const& table, double value)
{
    return table.clip && (value < table.minimum || value > table.maximum);
}

[[gnu::noinline]] Orrin::Color CallTable(Table const& table, double value)
{
    return IsClipped(table, value) ? table.off : LookUp(table, value);
}

[[gnu::noinline]] void LoopOverTable(Table const& table, double const* values, int count,
                                     Orrin::Color* colors)
{
    if (!table.clip) {
        for (int i = 0; i < count; ++i) {
            colors[i].SetPacked(LookUp(table, values[i]));
        }
        return;
    }
    for (int i = 0; i < count; ++i) {
        std::uint32_t const packed = LookUp(table, values[i]);
        bool const isClipped = (values[i] < table.minimum) | (values[i] > table.maximum);
        colors[i].SetPacked(isClipped ? table.off : packed);
    }
}

bool Agree(bool clip, int binCount)
{
    Vorlane::ColorMapParameters parameters = MakeParameters(clip, binCount);
    Table const table = MakeTable(clip, binCount);
    std::vector<double> const& values = Values();
    std::vector<Orrin::Color> batch(values.size());
    std::vector<Orrin::Color> byHand(values.size());
    parameters.CalculateColors(values.data(), valueCount, batch.data());
    LoopOverTable(table, values.data(), valueCount, byHand.data());
    for (std::size_t i = 0; i < values.size(); ++i) {
        Orrin::Color const expected = CallTable(table, values[i]);
        if (parameters.CalculateColor(values[i]) != expected || batch[i] != expected ||
            byHand[i] != expected) {
            return false;
        }
    }
    return true;
}

template <typename Colour>
void TimeCalls(benchmark::State& state, Colour const& colourOf)
{
    for (auto _ : state) {
        std::uint32_t sum = 0;
        for (double const value : Values()) {
            sum += colourOf(value).GetPacked();
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * valueCount);
}

template <typename Fill>
void TimeBatches(benchmark::State& state, Fill const& fill)
{
    std::vector<Orrin::Color> colors(valueCount);
    for (auto _ : state) {
        fill(colors.data());
        benchmark::DoNotOptimize(colors.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * valueCount);
}

void Register(bool clip, int binCount)
{
    std::string const rest = std::string(clip ? "-clip-" : "-open-") + std::to_string(binCount);
    std::string const size = "/" + std::to_string(valueCount);
    auto const add = [&](char const* way, char const* peer, auto time) {
        std::string const name = "ValueToColor/" + (way + rest) + "/" + peer + size;
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            if (!Agree(clip, binCount)) {
                state.SkipWithError("the colours differ");
                return;
            }
            time(state);
        })->Unit(benchmark::kMillisecond);
    };
    add("call", "Vorlane", [=](benchmark::State& state) {
        Vorlane::ColorMapParameters parameters = MakeParameters(clip, binCount);
        // As an application calls that was handed the object: by its virtual function.
        Vorlane::ColorMapParameters* handed = &parameters;
        benchmark::DoNotOptimize(handed);
        TimeCalls(state, [handed](double value) { return handed->CalculateColor(value); });
    });
    add("call", "HandWritten", [=](benchmark::State& state) {
        Table const table = MakeTable(clip, binCount);
        TimeCalls(state, [&](double value) { return CallTable(table, value); });
    });
    add("batch", "Vorlane", [=](benchmark::State& state) {
        Vorlane::ColorMapParameters parameters = MakeParameters(clip, binCount);
        TimeBatches(state, [&](Orrin::Color* colors) {
            parameters.CalculateColors(Values().data(), valueCount, colors);
        });
    });
    add("batch", "HandWritten", [=](benchmark::State& state) {
        Table const table = MakeTable(clip, binCount);
        TimeBatches(state,
                    [&](Orrin::Color* colors) { LoopOverTable(table, Values().data(), valueCount, colors); });
    });
}

} // namespace

int main(int argc, char** argv)
{
    for (bool const clip : {true, false}) {
        for (int const binCount : {32, 128}) {
            Register(clip, binCount);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
