// Runs a fuzz target without a fuzzer: over the seeds of its corpus, and over random changes of them.
//
//   TARGETReplay CORPUS [CHANGED]
//
// CORPUS is a folder, CHANGED the number of changed inputs (none if it is missing). The environment variable
// VORLANE_TEST_SEED chooses other changes. What the target requires and does not find ends the run with exit
// code 1, and the input is left in the current folder as TARGETReplay.finding.

#include "tests/support/Seed.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

using Inputs = std::vector<std::string>;

Inputs ReadCorpus(std::filesystem::path const& folder)
{
    Inputs inputs;
    for (std::filesystem::directory_entry const& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return inputs;
}

/// One of the inputs after one to eight changes: bytes set, cut out, repeated, or taken over from another.
std::string Change(Inputs const& inputs, VorlaneTest::SeededEngine& engine)
{
    auto const any = [&](std::size_t count) {
        return static_cast<std::size_t>(engine() % count);
    };
    std::string input = inputs[any(inputs.size())];
    for (std::size_t changes = 1 + any(8); changes != 0; --changes) {
        std::string const& other = inputs[any(inputs.size())];
        std::size_t const place = any(input.size() + 1);
        std::size_t const count = 1 + any(any(4) == 0 ? 64 : 4);
        switch (any(4)) {
        case 0:
            input.replace(place, 1, 1, static_cast<char>(engine()));
            break;
        case 1:
            input.erase(place, count);
            break;
        case 2:
            input.insert(place, std::string(input, place, count));
            break;
        default:
            input.insert(place, std::string(other, any(other.size() + 1), count));
        }
    }
    return input;
}

bool Try(std::string const& input, std::string const& program)
{
    try {
        LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(input.data()), input.size());
        return true;
    } catch (std::exception const& exception) {
        std::string const name = std::filesystem::path(program).filename().string() + ".finding";
        std::ofstream(name, std::ios::binary) << input;
        std::fprintf(stderr, "%s: %s\n", name.c_str(), exception.what());
        return false;
    }
}

} // namespace

int main(int argc, char** argv)
{
    Inputs const corpus = ReadCorpus(argc > 1 ? argv[1] : ".");
    if (corpus.empty()) {
        std::fprintf(stderr, "the corpus is empty\n");
        return 1;
    }
    for (std::string const& input : corpus) {
        if (!Try(input, argv[0])) {
            return 1;
        }
    }
    VorlaneTest::SeededEngine engine;
    long const changed = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 0;
    for (long n = 0; n != changed; ++n) {
        if (!Try(Change(corpus, engine), argv[0])) {
            std::fprintf(stderr, "%s\n", engine.Describe().c_str());
            return 1;
        }
    }
    std::printf("%zu seeds and %ld changed inputs, %s\n", corpus.size(), changed, engine.Describe().c_str());
    return 0;
}
