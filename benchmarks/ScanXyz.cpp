// Ten megabytes of XYZ records, an element and three coordinates a line, into text and numbers.
//   text     the whole file is one text in memory
//   stream   the file is read line by line from a stream

#include "vorlane/text/StringUtils.h"

#include "benchmark/benchmark.h"

#ifdef VORLANE_HAVE_FAST_FLOAT
#include "fast_float/fast_float.h"
#endif

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

using Vorlane::StringUtils;

namespace {

constexpr std::size_t fileSize = 10000000;

std::string const& File()
{
    static std::string const file = [] {
        char const* const elements[] = {"H", "C", "N", "O", "Cl", "Zn", "Mn"};
        std::mt19937 engine(1);
        std::uniform_real_distribution<double> coordinate(-100, 100);
        std::string text;
        while (text.size() < fileSize) {
            char line[100];
            std::snprintf(line, sizeof line, "%-2s %12.6f %12.6f %12.6f\n", elements[engine() % 7],
                          coordinate(engine), coordinate(engine), coordinate(engine));
            text += line;
        }
        return text;
    }();
    return file;
}

/// What is checked: the number of lines, the lengths of the elements, the sum of all coordinates.
struct Totals
{
    int lines = 0;
    std::size_t letters = 0;
    double sum = 0;

    void Add(std::size_t length, double x, double y, double z)
    {
        ++lines;
        letters += length;
        sum += x;
        sum += y;
        sum += z;
    }
};

Totals ParseText()
{
    CString text(File().data(), static_cast<int>(File().size()));
    Totals totals;
    for (CString element = StringUtils::Parse(text); !element.IsEmpty(); element = StringUtils::Parse(text)) {
        double position[3] = {};
        for (double& value : position) {
            StringUtils::StringToReal(StringUtils::Parse(text), value);
        }
        totals.Add(static_cast<std::size_t>(element.GetLength()), position[0], position[1], position[2]);
    }
    return totals;
}

Totals ParseLines()
{
    std::istringstream stream(File());
    Totals totals;
    for (CString line = StringUtils::ExtractLine(stream); !line.IsEmpty();
         line = StringUtils::ExtractLine(stream)) {
        CString const element = StringUtils::Parse(line);
        double position[3] = {};
        for (double& value : position) {
            StringUtils::StringToReal(StringUtils::Parse(line), value);
        }
        totals.Add(static_cast<std::size_t>(element.GetLength()), position[0], position[1], position[2]);
    }
    return totals;
}

/// Calls `read` with the begin of each line and the line feed behind it.
template <typename ReadLine>
Totals EachLineOfText(ReadLine read)
{
    Totals totals;
    char const* const last = File().data() + File().size();
    for (char const* line = File().data(); line != last;) {
        auto const* const end =
            static_cast<char const*>(std::memchr(line, '\n', static_cast<std::size_t>(last - line)));
        read(line, end, totals);
        line = end + 1;
    }
    return totals;
}

template <typename ReadLine>
Totals EachLineOfStream(ReadLine read)
{
    Totals totals;
    std::istringstream stream(File());
    for (std::string line; std::getline(stream, line);) {
        read(line.data(), line.data() + line.size(), totals);
    }
    return totals;
}

/// The element, then three numbers by `convert`, which gives the position behind the number.
template <typename Convert>
void ReadRecord(char const* line, char const* end, Totals& totals, Convert convert)
{
    char const* position = line;
    while (*position != ' ') {
        ++position;
    }
    std::string const element(line, position);
    double values[3] = {};
    for (double& value : values) {
        while (*position == ' ') {
            ++position;
        }
        position = convert(position, end, value);
    }
    totals.Add(element.size(), values[0], values[1], values[2]);
}

void ReadFromChars(char const* line, char const* end, Totals& totals)
{
    ReadRecord(line, end, totals, [](char const* first, char const* last, double& value) {
        return std::from_chars(first, last, value).ptr;
    });
}

#ifdef VORLANE_HAVE_FAST_FLOAT
void ReadFastFloat(char const* line, char const* end, Totals& totals)
{
    ReadRecord(line, end, totals, [](char const* first, char const* last, double& value) {
        return fast_float::from_chars(first, last, value).ptr;
    });
}
#endif

void ReadStrtod(char const* line, char const* end, Totals& totals)
{
    ReadRecord(line, end, totals, [](char const* first, char const*, double& value) {
        char* behind = nullptr;
        value = std::strtod(first, &behind);
        return static_cast<char const*>(behind);
    });
}

void ReadSscanf(char const* line, char const* end, Totals& totals)
{
    // A copy of the line, since sscanf takes the length of the whole text that it gets.
    std::string const copy(line, end);
    char element[8];
    double x = 0;
    double y = 0;
    double z = 0;
    std::sscanf(copy.c_str(), "%7s %lf %lf %lf", element, &x, &y, &z);
    totals.Add(std::strlen(element), x, y, z);
}

Totals ReadIstream()
{
    Totals totals;
    std::istringstream stream(File());
    std::string element;
    for (double x = 0, y = 0, z = 0; stream >> element >> x >> y >> z;) {
        totals.Add(element.size(), x, y, z);
    }
    return totals;
}

void Measure(benchmark::State& state, std::function<Totals()> const& read)
{
    static Totals const expected = EachLineOfText(ReadStrtod);
    Totals const totals = read();
    if (totals.lines != expected.lines || totals.letters != expected.letters || totals.sum != expected.sum) {
        state.SkipWithError("wrong answer");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(read());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(File().size()));
}

void Register(std::string const& name, std::function<Totals()> const& read)
{
    benchmark::RegisterBenchmark(("ScanXyz/" + name + "/10000000").c_str(), Measure, read)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    Register("text/Vorlane", ParseText);
    Register("text/from_chars", [] { return EachLineOfText(ReadFromChars); });
#ifdef VORLANE_HAVE_FAST_FLOAT
    Register("text/fast_float", [] { return EachLineOfText(ReadFastFloat); });
#endif
    Register("text/strtod", [] { return EachLineOfText(ReadStrtod); });
    Register("text/sscanf", [] { return EachLineOfText(ReadSscanf); });
    Register("stream/Vorlane", ParseLines);
    Register("stream/from_chars", [] { return EachLineOfStream(ReadFromChars); });
    Register("stream/sscanf", [] { return EachLineOfStream(ReadSscanf); });
    Register("stream/istream", ReadIstream);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
