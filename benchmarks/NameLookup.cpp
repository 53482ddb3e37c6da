// The geometry of a name, beside a table of the standard library that takes the name in lower case.

#include "vorlane/coordination/CoordinationGeometry.h"

#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;

namespace {

struct Name
{
    char const* text;
    CoordinationGeometryType type;
};

constexpr Name names[] = {
    {"octahedral", octahedral},
    {"OC6", octahedral},
    {"trigonalBipyramidal", trigonalBipyramidal},
    {"linear", linear},
    {"Tetrahedral", tetrahedral},
    {"trigonalPrismaticSquareFaceMonocapped", trigonalPrismaticSquareFaceMonocapped},
    {"no such geometry", unknownGeometry},
    {"sp4", squarePlanar},
};
constexpr int nameCount = 8;

std::string Lower(std::string text)
{
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return text;
}

void VorlaneLookup(benchmark::State& state)
{
    CString texts[nameCount];
    for (int i = 0; i < nameCount; ++i) {
        texts[i] = names[i].text;
        if (StringToCoordinationGeometry(texts[i]) != names[i].type) {
            state.SkipWithError(names[i].text);
            return;
        }
    }
    int next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(StringToCoordinationGeometry(texts[next]));
        next = (next + 1) % nameCount;
    }
}

void UnorderedMapLookup(benchmark::State& state)
{
    std::unordered_map<std::string, CoordinationGeometryType> table;
    std::string texts[nameCount];
    for (int i = 0; i < nameCount; ++i) {
        texts[i] = names[i].text;
        if (names[i].type != unknownGeometry) {
            table[Lower(texts[i])] = names[i].type;
        }
    }
    while (table.size() < 58) { // as many names as the catalogue has
        table["filler" + std::to_string(table.size())] = linear;
    }
    int next = 0;
    for (auto _ : state) {
        auto const found = table.find(Lower(texts[next]));
        benchmark::DoNotOptimize(found == table.end() ? unknownGeometry : found->second);
        next = (next + 1) % nameCount;
    }
}

BENCHMARK(VorlaneLookup)->Name("NameLookup/mixed/Vorlane/58");
BENCHMARK(UnorderedMapLookup)->Name("NameLookup/mixed/unordered_map/58");

} // namespace

BENCHMARK_MAIN();
