// Words of 3 to 10 letters, each made a handle.
//   words   ten million, drawn from a number of distinct ones
//   new     so many distinct ones, each met for the first time; see the items per second

#include "vorlane/text/UniqueString.h"

#include "benchmark/benchmark.h"

#ifdef VORLANE_HAVE_ABSL
#include "absl/container/flat_hash_set.h"
#endif

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t wordCount = 10000000;

/// Adds words to `words` until there are `distinct`.
void MakeWords(std::size_t distinct, char firstLetter, std::unordered_set<std::string>& words)
{
    std::mt19937 engine(static_cast<unsigned int>(distinct));
    while (words.size() < distinct) {
        std::string word(3 + engine() % 8, '\0');
        for (char& letter : word) {
            letter = static_cast<char>('a' + engine() % 26);
        }
        if (firstLetter != '\0') {
            word[0] = firstLetter;
        }
        words.insert(word);
    }
}

/// The words one behind the other, each with a terminator, as a reader of records would meet them.
std::string const& Stream(std::size_t distinct)
{
    static std::string stream;
    static std::size_t made = 0;
    if (made != distinct) {
        std::unordered_set<std::string> words;
        MakeWords(distinct, '\0', words);
        std::vector<std::string> const choices(words.begin(), words.end());
        std::mt19937 engine(static_cast<unsigned int>(distinct) + 1);
        stream.clear();
        for (std::size_t i = 0; i < wordCount; ++i) {
            // Every word at least once.
            stream += choices[i < distinct ? i : engine() % distinct];
            stream += '\0';
        }
        made = distinct;
    }
    return stream;
}

/// Gives `intern` each word; the sum of what it gives keeps the work from being left out.
template <typename Intern>
std::uintptr_t ForEachWord(std::string const& stream, Intern intern)
{
    std::uintptr_t sum = 0;
    char const* const last = stream.data() + stream.size();
    for (char const* word = stream.data(); word != last;) {
        std::string_view const view(word);
        sum += reinterpret_cast<std::uintptr_t>(intern(view));
        word += view.size() + 1;
    }
    return sum;
}

std::size_t InternVorlane(std::string const& stream)
{
    // The table lives as long as the process, so all rounds but the first find every word.
    benchmark::DoNotOptimize(ForEachWord(
        stream, [](std::string_view word) { return Vorlane::UniqueString(word.data()).StringPtr(); }));
    return 0;
}

std::size_t InternUnorderedSet(std::string const& stream)
{
    static std::unordered_set<std::string> table;
    static std::string const* made = nullptr;
    static std::size_t size = 0;
    if (made != &stream || size != stream.size()) {
        table.clear();
        made = &stream;
        size = stream.size();
    }
    std::string key;
    benchmark::DoNotOptimize(ForEachWord(stream, [&](std::string_view word) {
        key.assign(word);
        auto const found = table.find(key);
        return found != table.end() ? &*found : &*table.insert(key).first;
    }));
    return table.size();
}

#ifdef VORLANE_HAVE_ABSL
std::size_t InternFlatHashSet(std::string const& stream)
{
    static absl::flat_hash_set<std::string> table;
    static std::size_t size = 0;
    if (size != stream.size()) {
        table.clear();
        size = stream.size();
    }
    benchmark::DoNotOptimize(ForEachWord(stream, [&](std::string_view word) {
        absl::string_view const key(word.data(), word.size());
        return &*table.lazy_emplace(key, [&](auto const& construct) { construct(word); });
    }));
    return table.size();
}
#endif

void Measure(benchmark::State& state, std::size_t (*intern)(std::string const&))
{
    auto const distinct = static_cast<std::size_t>(state.range(0));
    std::string const& stream = Stream(distinct);
    std::size_t const size = intern(stream);
    if (size != 0 && size != distinct) {
        state.SkipWithError("wrong number of distinct words");
        return;
    }
    for (auto _ : state) {
        intern(stream);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(wordCount));
}

/// One round over words that no table has seen; the process's table has no second first time.
void MeasureNew(benchmark::State& state, std::size_t (*intern)(std::string const&))
{
    auto const distinct = static_cast<std::size_t>(state.range(0));
    std::unordered_set<std::string> words;
    // A capital for each number of words keeps them apart from all others.
    MakeWords(distinct, distinct < wordCount / 100 ? 'A' : 'B', words);
    std::string stream;
    for (std::string const& word : words) {
        stream += word;
        stream += '\0';
    }
    for (auto _ : state) {
        intern(stream);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(distinct));
}

void RegisterNew(std::string const& peer, std::size_t (*intern)(std::string const&), int distinct)
{
    benchmark::RegisterBenchmark(("Interning/new/" + peer).c_str(), MeasureNew, intern)
        ->Arg(distinct)
        ->Iterations(1)
        ->Unit(benchmark::kMicrosecond);
}

void Register(std::string const& peer, std::size_t (*intern)(std::string const&))
{
    benchmark::RegisterBenchmark(("Interning/words/" + peer).c_str(), Measure, intern)
        ->Arg(100)
        ->Arg(10000)
        ->Arg(1000000)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    // Our table never forgets, while the peers begin each row with an empty one: the thousand new words come
    // first, the million last, and no row in between finds more than a few words too many.
    std::pair<char const*, std::size_t (*)(std::string const&)> const peers[] = {
        {"Vorlane", InternVorlane},
        {"unordered_set", InternUnorderedSet},
#ifdef VORLANE_HAVE_ABSL
        {"flat_hash_set", InternFlatHashSet},
#endif
    };
    for (auto const& [peer, intern] : peers) {
        RegisterNew(peer, intern, 1000);
    }
    for (auto const& [peer, intern] : peers) {
        Register(peer, intern);
    }
    for (auto const& [peer, intern] : peers) {
        RegisterNew(peer, intern, 1000000);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
