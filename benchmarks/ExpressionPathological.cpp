// Expressions that send a backtracking engine through exponentially many ways. The standard library's engine
// is left out: it recurses once a character and takes seconds for thirty of them. Our texts end at their
// first zero byte, so RE2 is also given texts whose end it has to find.

#include "ExpressionPeers.h"

#include <benchmark/benchmark.h>

namespace {

struct Case
{
    char const* name;
    char const* expression;
    char repeated;
    char const* end;
    bool matches;
};

constexpr Case cases[] = {
    {"plus_plus", "(a+)+b", 'a', "", false},           {"plus_plus_match", "(a+)+b", 'a', "b", true},
    {"plus_plus_spoiled", "(a+)+b", 'a', "cb", false}, {"overlap", "(a|aa)+$", 'a', "", true},
    {"overlap_spoiled", "(a|aa)+$", 'a', "b", false},  {"twice", "(x+x+)+y", 'x', "", false},
    {"twice_match", "(x+x+)+y", 'x', "y", true},       {"twice_spoiled", "(x+x+)+y", 'x', "zy", false},
};

template <typename Peer>
void Search(benchmark::State& state, Case const& which, std::size_t length)
{
    std::string const characters = std::string(length, which.repeated) + which.end;
    Peers::Text const text(characters);
    Peer peer(which.expression);
    try {
        if (peer.Search(text) != which.matches) {
            state.SkipWithError("the match differs");
            return;
        }
    } catch (std::exception const&) {
        state.SkipWithError("gives up");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(peer.Search(text));
}

template <typename Peer>
void Register(Case const& which, std::size_t length)
{
    std::string const name =
        std::string("ExpressionPathological/") + which.name + "/" + Peer::name + "/" + std::to_string(length);
    benchmark::RegisterBenchmark(name.c_str(), [&which, length](benchmark::State& state) {
        Search<Peer>(state, which, length);
    })->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char** argv)
{
    for (Case const& which : cases) {
        for (std::size_t const length : {std::size_t(10000), std::size_t(100000)}) {
            Peers::ForEach([&](auto* peer) {
                using Peer = std::remove_pointer_t<decltype(peer)>;
                if (!std::is_same_v<Peer, Peers::Standard>)
                    Register<Peer>(which, length);
            });
#ifdef VORLANE_HAVE_RE2
            Register<Peers::Re2<false>>(which, length);
#endif
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
