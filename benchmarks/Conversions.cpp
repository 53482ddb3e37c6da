// A million words into numbers, each converted as a whole.
//   coordinates   "-12.345678", as in structure files
//   shortest      the fewest digits that give back a random double, 15 to 17 of them with an exponent
//   long          30 digits
//   integers      up to ten digits

#include "vorlane/text/StringUtils.h"

#include "benchmark/benchmark.h"

#ifdef VORLANE_HAVE_FAST_FLOAT
#include "fast_float/fast_float.h"
#endif

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace {

constexpr int wordCount = 1000000;

/// The words one behind the other, each with a terminator.
using Words = std::string;

template <typename Write>
Words MakeWords(Write write)
{
    std::mt19937_64 engine(1);
    Words words;
    for (int i = 0; i < wordCount; ++i) {
        words += write(engine);
        words += '\0';
    }
    return words;
}

std::string Print(char const* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string Coordinate(std::mt19937_64& engine)
{
    return Print("%.6f", std::uniform_real_distribution<double>(-100, 100)(engine));
}

std::string Shortest(std::mt19937_64& engine)
{
    double value = 0;
    do {
        std::uint64_t const bits = engine();
        std::memcpy(&value, &bits, sizeof value);
    } while (!std::isnormal(value));
    char text[64];
    return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string Long(std::mt19937_64& engine)
{
    return Print("%.28e", std::uniform_real_distribution<double>(-100, 100)(engine));
}

std::string Integer(std::mt19937_64& engine)
{
    return std::to_string(static_cast<std::int32_t>(engine()) >> engine() % 32);
}

/// Whether the whole word is a number.
template <typename Value>
using Convert = bool (*)(char const* word, char const* end, Value& value);

template <typename Value>
bool ConvertVorlane(char const* word, char const*, Value& value)
{
    if constexpr (std::is_integral_v<Value>) {
        return Vorlane::StringUtils::StringToInteger(word, value);
    } else {
        return Vorlane::StringUtils::StringToReal(word, value);
    }
}

template <typename Value>
bool ConvertFromChars(char const* word, char const* end, Value& value)
{
    auto const [behind, error] = std::from_chars(word, end, value);
    return error == std::errc() && behind == end;
}

#ifdef VORLANE_HAVE_FAST_FLOAT
bool ConvertFastFloat(char const* word, char const* end, double& value)
{
    auto const [behind, error] = fast_float::from_chars(word, end, value);
    return error == std::errc() && behind == end;
}
#endif

template <typename Value>
bool ConvertCLibrary(char const* word, char const* end, Value& value)
{
    char* behind = nullptr;
    errno = 0;
    if constexpr (std::is_integral_v<Value>) {
        value = std::strtol(word, &behind, 10);
    } else {
        value = std::strtod(word, &behind);
    }
    return errno == 0 && behind == end;
}

template <typename Value>
void Measure(benchmark::State& state, Words const& words, Convert<Value> convert)
{
    char const* const last = words.data() + words.size();
    for (char const* word = words.data(); word != last; word += std::strlen(word) + 1) {
        Value value = 0;
        Value expected = 0;
        char const* const end = word + std::strlen(word);
        if (!convert(word, end, value) || !ConvertCLibrary(word, end, expected) || value != expected) {
            state.SkipWithError(word);
            return;
        }
    }
    for (auto _ : state) {
        for (char const* word = words.data(); word != last;) {
            char const* const end = word + std::strlen(word);
            Value value = 0;
            convert(word, end, value);
            benchmark::DoNotOptimize(value);
            word = end + 1;
        }
    }
    state.SetItemsProcessed(state.iterations() * wordCount);
}

template <typename Value>
void Register(std::string const& name, Words const& words, Convert<Value> convert)
{
    benchmark::RegisterBenchmark((name + "/1000000").c_str(), [&words, convert](benchmark::State& state) {
        Measure(state, words, convert);
    })->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    struct
    {
        char const* name;
        Words words;
    } const kinds[] = {
        {"coordinates", MakeWords(Coordinate)}, {"shortest", MakeWords(Shortest)}, {"long", MakeWords(Long)}};
    for (auto const& kind : kinds) {
        std::string const name = std::string("StringToReal/") + kind.name + '/';
        Register<double>(name + "Vorlane", kind.words, ConvertVorlane);
        Register<double>(name + "from_chars", kind.words, ConvertFromChars);
#ifdef VORLANE_HAVE_FAST_FLOAT
        Register<double>(name + "fast_float", kind.words, ConvertFastFloat);
#endif
        Register<double>(name + "strtod", kind.words, ConvertCLibrary);
    }
    Words const integers = MakeWords(Integer);
    Register<long>("StringToInteger/integers/Vorlane", integers, ConvertVorlane);
    Register<long>("StringToInteger/integers/from_chars", integers, ConvertFromChars);
    Register<long>("StringToInteger/integers/strtol", integers, ConvertCLibrary);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
