// Making an expression, and making it and matching one label with it, for expressions that are used once.

#include "ExpressionPeers.h"

#include <benchmark/benchmark.h>

namespace {

constexpr char const* expression = "([A-Z][a-z]?)([0-9]+)([A-Z]?)'?";

/// A text on which every engine sees at once that nothing matches, so that little more than the making is
/// timed.
constexpr char const* foreignText = "-";

template <typename Peer>
void Make(benchmark::State& state, char const* characters, bool matches)
{
    std::string const kept(characters);
    Peers::Text const text(kept);
    if (Peer(expression).Search(text) != matches) {
        state.SkipWithError("the match differs");
        return;
    }
    for (auto _ : state) {
        Peer peer(expression);
        benchmark::DoNotOptimize(peer.Search(text));
    }
}

} // namespace

int main(int argc, char** argv)
{
    Peers::ForEach([&](auto* peer) {
        using Peer = std::remove_pointer_t<decltype(peer)>;
        std::string const name = std::string("/") + Peer::name + "/1";
        benchmark::RegisterBenchmark(("ExpressionCompile/compile" + name).c_str(),
                                     [](benchmark::State& state) { Make<Peer>(state, foreignText, false); });
        benchmark::RegisterBenchmark(("ExpressionCompile/compile_and_match" + name).c_str(),
                                     [](benchmark::State& state) { Make<Peer>(state, "Fe12A", true); });
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
