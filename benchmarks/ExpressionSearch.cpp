// All matches of eight expressions in a megabyte of licences.

#include "ExpressionPeers.h"

#include <benchmark/benchmark.h>

#include <random>

namespace {

constexpr std::size_t textLength = 1000000;

/// The licences that a Debian system carries, or, where there are none, sentences made of their words.
std::string MakeText()
{
    std::string text;
    for (char const* name : {"GPL-3", "GPL-2", "GPL-1", "LGPL-2", "LGPL-2.1", "LGPL-3", "GFDL-1.2",
                             "GFDL-1.3", "Apache-2.0", "Artistic", "BSD", "MPL-1.1", "MPL-2.0", "CC0-1.0"}) {
        std::ifstream file(std::string("/usr/share/common-licenses/") + name, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        text += content.str();
    }
    if (text.empty()) {
        char const* const words[] = {"the",         "software", "\"program\"", "is",           "furnished",
                                     "under",       "copyleft", "1.25",        "and",          "each",
                                     "of",          "rights",   "patent",      "licence",      "that",
                                     "distributed", "with",     "publishing",  "version 2.0,", "bx\n"};
        std::mt19937 engine(7);
        while (text.size() < textLength / 3)
            text += words[engine() % std::size(words)] + std::string(" ");
    }
    std::string const once = text;
    while (text.size() < textLength)
        text += once;
    text.resize(textLength);
    text.replace(textLength / 3, 12, "counterclaim");
    text.replace(textLength - 100, 12, "counterclaim");
    for (std::size_t at = 1000; at < textLength; at += textLength / 17)
        text.replace(at, 3, "abc");
    return text;
}

struct Case
{
    char const* name;
    char const* expression;
};

constexpr Case cases[] = {
    {"literal_hits", "counterclaim"}, {"literal_none", "Zwitterion"},
    {"suffix", "[a-z]+shing"},        {"alternation", "(copyleft|trademark|patent|royalty|lawsuit)"},
    {"nested", "(a|b|c|d|e)+x"},      {"number", "[-+]?[0-9]+\\.[0-9]+"},
    {"line_abc", "[^\n]*abc"},        {"quoted", "\"[^\"]*\""},
};

template <typename Peer>
void SearchAll(benchmark::State& state, Case const& which, std::string const& characters)
{
    Peers::Text const text(characters);
    Peer peer(which.expression);
    std::size_t const expected = Peers::Vorlane(which.expression).CountAll(text);
    if (peer.CountAll(text) != expected) {
        state.SkipWithError("the number of matches differs");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(peer.CountAll(text));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * characters.size()));
    state.counters["matches"] = static_cast<double>(expected);
}

} // namespace

int main(int argc, char** argv)
{
    std::string const text = MakeText();
    for (Case const& which : cases) {
        Peers::ForEach([&](auto* peer) {
            using Peer = std::remove_pointer_t<decltype(peer)>;
            std::string const name =
                std::string("ExpressionSearch/") + which.name + "/" + Peer::name + "/1000000";
            benchmark::RegisterBenchmark(name.c_str(), [&](benchmark::State& state) {
                SearchAll<Peer>(state, which, text);
            })->Unit(benchmark::kMicrosecond);
        });
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
