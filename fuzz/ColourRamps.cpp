// The bins of colour maps, ramps, edited spectra and their registry, colours of many values, and the orders
// of spectra and parameters, each beside a plain model. The first byte of the input chooses among them.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "platform/lumora/ColorMap.h"
#include "tests/colour/ColourTesting.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "vorlane/colour/NamedColorArrays.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <vector>

using namespace VorlaneTest;
using Lumora::ColorMap;
using VorlaneFuzz::Require;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

class Input : public VorlaneFuzz::Input
{
public:
    using VorlaneFuzz::Input::Input;

    int Below(int count) { return Byte() % count; }
    std::uint32_t Word()
    {
        std::uint32_t word = 0;
        for (int shift = 0; shift < 32; shift += 8) {
            word |= static_cast<std::uint32_t>(Byte()) << shift;
        }
        return word;
    }
    /// A decimal number.
    double Real()
    {
        double const digits = static_cast<std::int32_t>(Word());
        return digits * std::pow(10, static_cast<signed char>(Byte()) % 20);
    }
    /// One character of `all` for each of up to `longest` bytes.
    std::string Text(std::string const& all, int longest)
    {
        std::string text;
        for (int left = Below(longest + 1); left > 0; --left) {
            text += all[static_cast<std::size_t>(Below(static_cast<int>(all.size())))];
        }
        return text;
    }
};

/// The bin of a value, by the single and by the batch call, where the colours are the indexes of the bins.
int BinOf(ColorMap const& map, double value)
{
    Color color;
    map.ColorsAtValues(&value, 1, &color);
    Require(color == map.ColorAtValue(value));
    return static_cast<int>(color.GetPacked());
}

/// Values at the edges, beside them and between them, and a walk over the edges.
void TryBins(Input& input)
{
    int const size = 1 + input.Below(200);
    double const begin = input.Real();
    double const end = begin + input.Real();
    ColorMap map(size);
    for (int index = 0; index < size; ++index) {
        map.SetColorAtIndex(index, static_cast<std::uint32_t>(index));
    }
    map.SetBeginEnd(begin, end);
    auto const edge = [&](int index) {
        return begin + (end - begin) * index / size;
    };
    auto const isReached = [&](double value, double at) {
        return begin < end ? at <= value : value <= at;
    };
    auto const binOf = [&](double value) {
        if (begin == end || isReached(begin, value)) {
            return 0;
        }
        if (isReached(value, end)) {
            return size - 1;
        }
        int bin = 0;
        for (int index = 1; index < size; ++index) {
            bin += isReached(value, edge(index));
        }
        return bin;
    };
    while (!input.HasEnded()) {
        double const at = edge(input.Below(size + 1));
        double const anywhere = begin + (end - begin) * (input.Byte() / 160.0 - 0.3);
        for (double const value :
             {std::nextafter(at, -infinite), at, std::nextafter(at, infinite), anywhere}) {
            Require(BinOf(map, value) == binOf(value));
        }
    }
}

/// Whether each component is the nearest to the mix of two colours, halves up.
bool IsMix(Color color, std::uint32_t from, std::uint32_t to, int step, int steps)
{
    bool isMix = true;
    for (int shift = 0; shift < 32; shift += 8) {
        int const first = from >> shift & 0xFF;
        int const last = to >> shift & 0xFF;
        int const component = color.GetPacked() >> shift & 0xFF;
        int const sum = first * (steps - step) + last * step;
        isMix = isMix && (2 * component - 1) * steps <= 2 * sum && 2 * sum < (2 * component + 1) * steps;
    }
    return isMix;
}

void TryRamps(Input& input)
{
    int const size = input.Below(141);
    int const stops = input.Below(10);
    Packed packed;
    Orrin::ColorArray colors(0, 1);
    for (int stop = 0; stop < stops; ++stop) {
        packed.push_back(input.Word());
        colors.push_back(packed.back());
    }
    ColorMap mixed(size);
    mixed.Ramp(Vorlane::RedBlueColorArray(), true); // of which nothing is left
    ColorMap stepped = mixed;
    mixed.Ramp(colors, true);
    stepped.Ramp(colors, false);
    for (int index = 0; index < size; ++index) {
        if (stops == 0) {
            Require(mixed.ColorAtIndex(index) == Color::Black());
            Require(stepped.ColorAtIndex(index) == Color::Black());
            continue;
        }
        int const steps = std::max(size - 1, 1);
        int const place = index * (stops - 1);
        std::size_t const before = static_cast<std::size_t>(place / steps);
        std::size_t const after = std::min(before + 1, packed.size() - 1);
        Require(IsMix(mixed.ColorAtIndex(index), packed[before], packed[after], place % steps, steps));
        std::size_t const atMiddle = static_cast<std::size_t>((2 * index + 1) * stops / (2 * size));
        Require(stepped.ColorAtIndex(index).GetPacked() == packed[atMiddle]);
    }
}

/// Colours set and undefined; each position then has the mix of the nearest defined ones. Copies keep the
/// state of their time.
void TryEditedSpectrum(Input& input)
{
    std::size_t const size = static_cast<std::size_t>(2 + input.Below(127));
    Vorlane::CustomColorSpectrum spectrum("edited", static_cast<int>(size), true);
    Vorlane::CustomColorSpectrum assigned;
    std::vector<Vorlane::CustomColorSpectrum> copies;
    std::vector<Packed> copiedColors;
    Packed set(size, black);
    std::string flags(size, '-');
    while (!input.HasEnded()) {
        if (input.Below(4) == 0) {
            copies.push_back(spectrum);
            copiedColors.push_back(ColorsOf(spectrum.GetColorArray()));
            assigned = copies.back();
        }
        int const index = input.Byte() - 2;
        bool const isInside = index >= 0 && static_cast<std::size_t>(index) < size;
        std::size_t const place = isInside ? static_cast<std::size_t>(index) : 0;
        std::uint32_t const packed = input.Word();
        bool const isSet = packed % 4 != 0;
        if (isSet) {
            spectrum.SetColor(index, packed);
        } else {
            spectrum.UndefineColor(index);
        }
        if (isInside) {
            set[place] = packed;
            flags[place] = isSet ? 'x' : '-';
        }
        Color color(7);
        Require(spectrum.GetColor(index, color) == (isInside && isSet));
        Require(isInside ? !isSet || color == Color(packed) : color == Color(7));
    }
    Require(FlagsOf(spectrum) == flags);
    for (std::size_t i = 0; i < copies.size(); ++i) {
        Require(ColorsOf(copies[i].GetColorArray()) == copiedColors[i]);
    }
    Require(copies.empty() ||
            (assigned == copies.back() && ColorsOf(assigned.GetColorArray()) == copiedColors.back()));
    Orrin::ColorArray const colors = spectrum.GetColorArray();
    for (std::size_t at = 0; at < size; ++at) {
        std::size_t const none = std::string::npos;
        std::size_t const left = flags.rfind('x', at);
        std::size_t const right = flags.find('x', at);
        std::size_t const before = left == none ? right : left;
        std::size_t const after = right == none ? left : right;
        int const step = before < after ? static_cast<int>(at - before) : 0;
        int const steps = before < after ? static_cast<int>(after - before) : 1;
        Require(IsMix(colors[static_cast<long>(at)], before == none ? black : set[before],
                      after == none ? black : set[after], step, steps));
    }
}

/// Many values at once beside single calls, and beside the map alone.
void TryManyValues(Input& input)
{
    double const minimum = input.Real();
    double const maximum = minimum + input.Real();
    int const count = input.Byte() * 9;
    bool const clip = input.Below(2) != 0;
    std::string bins = input.Text("-xx", 100);
    Vorlane::ColorMapParameters parameters = ParametersOf("Rainbow 1", clip, minimum, maximum, bins);
    ColorMap map(static_cast<int>(bins.size()));
    map.SetBeginEnd(minimum, maximum);
    map.Ramp(Vorlane::Rainbow1ColorArray(), true);
    for (std::size_t bin = bins.find('-'); bin != std::string::npos; bin = bins.find('-', bin + 1)) {
        map.SetColorAtIndex(static_cast<int>(bin), Color::Black());
    }
    double const odd[] = {minimum, maximum, infinite, -infinite, infinite - infinite};
    std::vector<double> values;
    for (int n = 0; n <= count; ++n) {
        int const choice = (input.Byte() + n) % 256;
        values.push_back(choice < 5 ? odd[choice] : minimum + (maximum - minimum) * (choice / 160.0 - 0.3));
    }
    std::vector<Color> colors(values.size(), Color(7));
    parameters.CalculateColors(values.data(), count, colors.data());
    Require(colors.back() == Color(7));
    colors.pop_back();
    for (std::size_t i = 0; i < colors.size(); ++i) {
        bool const isClipped = clip && (values[i] < minimum || values[i] > maximum);
        Require(colors[i] == parameters.CalculateColor(values[i]));
        Require(colors[i] == (isClipped ? Color::Black() : map.ColorAtValue(values[i])));
    }
}

/// The colours of the spectra by their names, in the order of their bytes.
using Spectra = std::map<std::string, Packed>;

Spectra BuiltInSpectra()
{
    Spectra spectra;
    for (Orrin::ColorArray (*const make)() :
         {Vorlane::BlackWhiteColorArray, Vorlane::WhiteBlackColorArray, Vorlane::RedBlueColorArray,
          Vorlane::BlueRedColorArray, Vorlane::RedWhiteBlueColorArray, Vorlane::BlueWhiteRedColorArray,
          Vorlane::RedGreenBlueColorArray, Vorlane::BlueGreenRedColorArray, Vorlane::Rainbow1ColorArray,
          Vorlane::Rainbow1ReversedColorArray, Vorlane::Rainbow2ColorArray,
          Vorlane::Rainbow2ReversedColorArray}) {
        spectra[make().GetName()] = ColorsOf(make());
    }
    return spectra;
}

void CheckRegistry(Vorlane::ColorSpectrumRegistry& registry, Spectra const& spectra, std::string const& name)
{
    auto const entry = spectra.find(name);
    bool const isThere = entry != spectra.end();
    Vorlane::CustomColorSpectrum copy("old", 2, true);
    Orrin::ColorArray array("old", 1, 1);
    Require(registry.GetColorSpectrum(name.c_str(), copy) == isThere);
    Require(registry.GetColorArray(name.c_str(), array) == isThere);
    Require(array.GetName() == (isThere ? name : "old") && copy.GetColorArray().GetName() == array.GetName());
    Require(!isThere ||
            (ColorsOf(array) == entry->second && ColorsOf(copy.GetColorArray()) == entry->second));
    copy.SetColor(0, Color::Magenta()); // which the registry does not see
    std::vector<CString> names = {"first"};
    std::vector<CString> expected = names;
    registry.GetColorSpectrumNames(names);
    for (auto const& [each, colors] : spectra) {
        expected.push_back(each.c_str());
    }
    Require(names == expected);
}

void UnRegisterAll(Vorlane::ColorSpectrumRegistry& registry, Spectra& spectra)
{
    for (auto const& [name, colors] : spectra) {
        registry.UnRegisterColorSpectrum(name.c_str());
    }
    spectra.clear();
}

/// Spectra come, the first of a name staying, and go; when all are gone, a look-up by name brings the
/// built-in ones back.
void TryRegistry(Input& input)
{
    Vorlane::ColorSpectrumRegistry registry;
    static Spectra const builtIn = BuiltInSpectra();
    Spectra spectra = builtIn;
    while (!input.HasEnded()) {
        int const choice = input.Below(5);
        std::string const name = input.Below(2) != 0 ? std::next(builtIn.begin(), input.Below(12))->first
                                                     : input.Text("aRZ\xE9", 2);
        if (choice < 2) {
            Color const color = input.Word();
            Vorlane::CustomColorSpectrum spectrum = SpectrumOf(name.c_str(), "x-", true, color);
            registry.RegisterColorSpectrum(spectrum);
            spectrum.SetColor(0, Color::Yellow()); // which the registry does not see
            spectra.emplace(name, Packed(2, color.GetPacked()));
        } else if (choice == 2) {
            registry.UnRegisterColorSpectrum(name.c_str());
            spectra.erase(name);
        } else if (choice == 3) {
            UnRegisterAll(registry, spectra);
        } else {
            Orrin::ColorArray const array = Vorlane::NamedColorArray(name.c_str());
            spectra = spectra.empty() ? builtIn : spectra;
            bool const isThere = spectra.count(name) == 1;
            Require(array.GetName() == (isThere ? name : "Red-Green-Blue"));
            Require(ColorsOf(array) == (isThere ? spectra : builtIn).at(array.GetName()));
        }
        CheckRegistry(registry, spectra, name);
    }
    UnRegisterAll(registry, spectra);
    Vorlane::ColorSpectrumRegistry();
}

template <typename Value>
int Compare(Value const& a, Value const& b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

/// The first of several comparisons that decides.
int FirstOf(std::initializer_list<int> comparisons)
{
    auto const decides = [](int comparison) {
        return comparison != 0;
    };
    auto const first = std::find_if(comparisons.begin(), comparisons.end(), decides);
    return first != comparisons.end() ? *first : 0;
}

template <typename Object>
void CheckOrder(Object const& a, Object const& b, int order, bool areEqual)
{
    Require((a < b) == (order < 0) && (b < a) == (order > 0));
    Require((a == b) == areEqual && (a != b) == !areEqual);
}

/// A name whose letters differ by their case, and the name in lower case.
struct Name
{
    explicit Name(Input& input) : name(input.Text("aAbB\xE9@[", 3)), low(name)
    {
        std::replace(low.begin(), low.end(), 'A', 'a');
        std::replace(low.begin(), low.end(), 'B', 'b');
    }

    std::string name;
    std::string low;
};

/// Name, size, mark and flags in turn; colours don't count.
struct SpectrumKeys
{
    explicit SpectrumKeys(Input& input)
        : name(input), flags("--" + input.Text("-x", 3)), isEditable(input.Below(2) != 0)
    {}

    Vorlane::CustomColorSpectrum Make(Color color) const
    {
        return SpectrumOf(name.name.c_str(), flags, isEditable, color);
    }

    Name name;
    std::string flags;
    bool isEditable;
};

void TryOrderOfSpectra(Input& input)
{
    while (!input.HasEnded()) {
        SpectrumKeys const a(input);
        SpectrumKeys const b(input);
        int const order = FirstOf({Compare(a.name.low, b.name.low), Compare(a.flags.size(), b.flags.size()),
                                   Compare(a.isEditable, b.isEditable), Compare(a.flags, b.flags)});
        CheckOrder(a.Make(red), b.Make(blue), order, order == 0);
    }
}

/// Name, clipping, both numbers, and bins, of which fewer come first. A NaN ties, and equals nothing.
struct ParameterKeys
{
    explicit ParameterKeys(Input& input)
        : name(input), clip(input.Below(2) != 0), minimum(numbers[input.Below(6)]),
          maximum(numbers[input.Below(6)]), bins(input.Text("-x", 3))
    {}

    Vorlane::ColorMapParameters Make() const
    {
        return ParametersOf(name.name.c_str(), clip, minimum, maximum, bins);
    }

    static constexpr double numbers[] = {-infinite, -0.0,     0.0,
                                         1.0,       infinite, std::numeric_limits<double>::quiet_NaN()};
    Name name;
    bool clip;
    double minimum;
    double maximum;
    std::string bins;
};

void TryOrderOfParameters(Input& input)
{
    while (!input.HasEnded()) {
        ParameterKeys const a(input);
        ParameterKeys const b(input);
        int const order = FirstOf({Compare(a.name.low, b.name.low), Compare(a.clip, b.clip),
                                   Compare(a.minimum, b.minimum), Compare(a.maximum, b.maximum),
                                   Compare(a.bins.size(), b.bins.size()), Compare(a.bins, b.bins)});
        bool const areEqual = order == 0 && a.minimum == b.minimum && a.maximum == b.maximum;
        Vorlane::ColorMapParameters const left = a.Make();
        Vorlane::ColorMapParameters const right = b.Make();
        CheckOrder(left, right, order, areEqual);
        Require((left > right) == (order > 0));
        CheckOrder(left, left, 0, true);
    }
}

constexpr void (*tries[])(Input&) = {TryBins,       TryRamps,          TryEditedSpectrum,
                                     TryManyValues, TryOrderOfSpectra, TryOrderOfParameters,
                                     TryRegistry};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size)
{
    Input input(bytes, std::min<std::size_t>(size, 256));
    tries[input.Below(static_cast<int>(std::size(tries)))](input);
    return 0;
}
