// A hundred thousand short texts, the labels of atoms, one after the other.

#include "ExpressionPeers.h"

#include <benchmark/benchmark.h>

#include <random>

namespace {

constexpr int labelCount = 100000;

std::vector<std::string> MakeLabels()
{
    char const* const elements[] = {"C", "H", "N", "O", "Fe", "Cl", "S", "P", "Zn", "Br"};
    std::mt19937 engine(11);
    std::vector<std::string> labels;
    for (int i = 0; i < labelCount; ++i) {
        std::string label = elements[engine() % std::size(elements)];
        if (engine() % 10 != 0)
            label += std::to_string(engine() % 200);
        if (engine() % 3 == 0)
            label += static_cast<char>('A' + engine() % 4);
        if (engine() % 5 == 0)
            label += '\'';
        labels.push_back(label);
    }
    return labels;
}

struct Case
{
    char const* name;
    char const* expression;
    bool full;
};

constexpr Case cases[] = {
    {"full", "[A-Z][a-z]?[0-9]+[A-Z]?'?", true},
    {"search", "[A-Z][a-z]?[0-9]+[A-Z]?'?", false},
    {"groups", "([A-Z][a-z]?)([0-9]+)([A-Z]?)'?", true},
};

template <typename Peer>
int CountMatches(Peer& peer, bool full, std::vector<Peers::Text> const& labels)
{
    int count = 0;
    for (Peers::Text const& label : labels)
        count += full ? peer.FullMatch(label) : peer.Search(label);
    return count;
}

template <typename Peer>
void MatchLabels(benchmark::State& state, Case const& which, std::vector<Peers::Text> const& labels)
{
    Peer peer(which.expression);
    Peers::Vorlane own(which.expression);
    if (CountMatches(peer, which.full, labels) != CountMatches(own, which.full, labels)) {
        state.SkipWithError("the number of matches differs");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(CountMatches(peer, which.full, labels));
    state.SetItemsProcessed(state.iterations() * labelCount);
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> const characters = MakeLabels();
    std::vector<Peers::Text> const labels(characters.begin(), characters.end());
    for (Case const& which : cases) {
        Peers::ForEach([&](auto* peer) {
            using Peer = std::remove_pointer_t<decltype(peer)>;
            std::string const name =
                std::string("ExpressionLabels/") + which.name + "/" + Peer::name + "/100000";
            benchmark::RegisterBenchmark(name.c_str(), [&](benchmark::State& state) {
                MatchLabels<Peer>(state, which, labels);
            })->Unit(benchmark::kMicrosecond);
        });
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
