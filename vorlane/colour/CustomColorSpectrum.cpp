#include "vorlane/colour/CustomColorSpectrum.h"

#include "platform/lumora/ColorMap.h"
#include "vorlane/colour/NamedColorArrays.h"

#include <algorithm>
#include <cstdint>

namespace Vorlane {

namespace {

using Orrin::Color;

/// A built-in ramp: its name, its size, and the colours of its positions.
struct Ramp
{
    char const* name;
    int size;
    Color (*stops[4])();
};

constexpr Ramp blackWhite{"Black-White", 2, {Color::Black, Color::White}};
constexpr Ramp whiteBlack{"White-Black", 2, {Color::White, Color::Black}};
constexpr Ramp redBlue{"Red-Blue", 2, {Color::Red, Color::Blue}};
constexpr Ramp blueRed{"Blue-Red", 2, {Color::Blue, Color::Red}};
constexpr Ramp redWhiteBlue{"Red-White-Blue", 3, {Color::Red, Color::White, Color::Blue}};
constexpr Ramp blueWhiteRed{"Blue-White-Red", 3, {Color::Blue, Color::White, Color::Red}};
constexpr Ramp redGreenBlue{"Red-Green-Blue", 3, {Color::Red, Color::Green, Color::Blue}};
constexpr Ramp blueGreenRed{"Blue-Green-Red", 3, {Color::Blue, Color::Green, Color::Red}};
constexpr Ramp rainbow1{"Rainbow 1", 4, {Color::Red, Color::Yellow, Color::Green, Color::Cyan}};
constexpr Ramp rainbow1Reversed{
    "Rainbow 1 Reversed", 4, {Color::Cyan, Color::Green, Color::Yellow, Color::Red}};
constexpr Ramp rainbow2{"Rainbow 2", 4, {Color::Red, Color::Magenta, Color::Blue, Color::Cyan}};
constexpr Ramp rainbow2Reversed{
    "Rainbow 2 Reversed", 4, {Color::Cyan, Color::Blue, Color::Magenta, Color::Red}};

CustomColorSpectrum MakeSpectrum(Ramp const& ramp)
{
    CustomColorSpectrum spectrum(ramp.name, ramp.size, false);
    for (int index = 0; index < ramp.size; ++index) {
        spectrum.SetColor(index, ramp.stops[index]());
    }
    return spectrum;
}

/// A position from which, and towards which, colours are interpolated.
struct Stop
{
    int position;
    Color color;
};

} // namespace

CustomColorSpectrum::CustomColorSpectrum() : CustomColorSpectrum(s_defaultName, GetDefaultMinimumSize(), true)
{}

CustomColorSpectrum::CustomColorSpectrum(CString const& name, int size, bool editable)
    : ColorArray(name, std::clamp(size, GetDefaultMinimumSize(), GetDefaultMaximumSize()), 1),
      m_editable(editable)
{
    AfxWithMemoryException([&] { m_colorDefined.resize(ColorArray::size(), false); });
}

CustomColorSpectrum::CustomColorSpectrum(CustomColorSpectrum const& other)
    : ColorArray(other), m_editable(other.m_editable),
      m_colorDefined(AfxWithMemoryException([&] { return std::vector<bool>(other.m_colorDefined); }))
{}

void CustomColorSpectrum::operator=(CustomColorSpectrum const& other)
{
    if (this == &other) {
        return;
    }
    AfxWithMemoryException([&] {
        std::vector<bool> colorDefined = other.m_colorDefined;
        ColorArray::operator=(other);
        m_colorDefined.swap(colorDefined);
    });
    m_editable = other.m_editable;
}

CustomColorSpectrum::~CustomColorSpectrum() = default;

void CustomColorSpectrum::Serialize(CArchive& ar)
{
    SerializeColorArray(ar, *this);
    if (ar.IsStoring()) {
        int const flagCount = static_cast<int>(GetSize());
        ar << std::int32_t{flagCount};
        for (int index = 0; index < flagCount; ++index) {
            ar << IsDefined(index);
        }
        return;
    }
    std::int32_t flagCount = 0;
    ar >> flagCount;
    for (int index = 0; index < flagCount; ++index) {
        bool defined = false;
        ar >> defined;
        SetDefined(index, defined);
    }
}

void CustomColorSpectrum::SetColor(int index, Color const& color)
{
    if (IsValidIndex(index)) {
        SetDefined(index, true);
        SetAt(index, color);
        Recalculate();
    }
}

bool CustomColorSpectrum::GetColor(int index, Color& color) const
{
    if (!IsValidIndex(index)) {
        return false;
    }
    color = GetAt(index);
    return IsDefined(index);
}

void CustomColorSpectrum::UndefineColor(int index)
{
    if (IsValidIndex(index)) {
        SetDefined(index, false);
        Recalculate();
    }
}

Orrin::ColorArray CustomColorSpectrum::GetColorArray() const
{
    return *this;
}

bool CustomColorSpectrum::operator<(CustomColorSpectrum const& other) const
{
    int const names = CompareNameNoCase(other);
    if (names != 0) {
        return names < 0;
    }
    if (GetSize() != other.GetSize()) {
        return GetSize() < other.GetSize();
    }
    if (m_editable != other.m_editable) {
        return other.m_editable;
    }
    for (int index = 0; index < GetSize(); ++index) {
        if (IsDefined(index) != other.IsDefined(index)) {
            return other.IsDefined(index);
        }
    }
    return false;
}

bool CustomColorSpectrum::operator==(CustomColorSpectrum const& other) const
{
    return this == &other || (!(*this < other) && !(other < *this));
}

bool CustomColorSpectrum::IsValidIndex(int index) const
{
    return index >= 0 && index < GetSize();
}

bool CustomColorSpectrum::IsDefined(int index) const
{
    std::size_t const position = static_cast<std::size_t>(index);
    return position < m_colorDefined.size() && m_colorDefined[position];
}

void CustomColorSpectrum::SetDefined(int index, bool defined)
{
    std::size_t const position = static_cast<std::size_t>(index);
    if (position >= m_colorDefined.size()) {
        AfxWithMemoryException([&] { m_colorDefined.resize(position + 1, false); });
    }
    m_colorDefined[position] = defined;
}

int CustomColorSpectrum::CompareNameNoCase(CustomColorSpectrum const& other) const
{
    return CString(GetName().c_str()).CompareNoCase(other.GetName().c_str());
}

void CustomColorSpectrum::Recalculate()
{
    int const last = static_cast<int>(GetSize()) - 1;
    std::vector<Stop> stops;
    AfxWithMemoryException([&] { stops.reserve(ColorArray::size() + 1); });
    if (!IsDefined(0)) {
        stops.push_back({0, Color::Black()});
    }
    for (int position = 0; position <= last; ++position) {
        if (IsDefined(position)) {
            stops.push_back({position, GetAt(position)});
        }
    }
    if (!IsDefined(0) && stops.size() > 1) {
        stops[0].color = stops[1].color;
    }
    if (!IsDefined(last)) {
        stops.push_back({last, stops.back().color});
    }

    ColorArray ends(2, 1);
    Lumora::ColorMap ramp;
    for (std::size_t next = 1; next < stops.size(); ++next) {
        Stop const& from = stops[next - 1];
        Stop const& to = stops[next];
        if (to.position - from.position == 1 && IsDefined(from.position) && IsDefined(to.position)) {
            continue; // nothing to compute
        }
        ends.SetAt(0, from.color);
        ends.SetAt(1, to.color);
        ramp.Resize(to.position - from.position + 1);
        ramp.SetBeginEnd(0.0, 1.0);
        ramp.Ramp(ends, true);
        for (int position = from.position; position <= to.position; ++position) {
            if (!IsDefined(position)) {
                SetAt(position, ramp.ColorAtIndex(position - from.position));
            }
        }
    }
}

CustomColorSpectrum CustomColorSpectrum::BlackWhite()
{
    return MakeSpectrum(blackWhite);
}

CustomColorSpectrum CustomColorSpectrum::WhiteBlack()
{
    return MakeSpectrum(whiteBlack);
}

CustomColorSpectrum CustomColorSpectrum::RedBlue()
{
    return MakeSpectrum(redBlue);
}

CustomColorSpectrum CustomColorSpectrum::BlueRed()
{
    return MakeSpectrum(blueRed);
}

CustomColorSpectrum CustomColorSpectrum::RedWhiteBlue()
{
    return MakeSpectrum(redWhiteBlue);
}

CustomColorSpectrum CustomColorSpectrum::BlueWhiteRed()
{
    return MakeSpectrum(blueWhiteRed);
}

CustomColorSpectrum CustomColorSpectrum::RedGreenBlue()
{
    return MakeSpectrum(redGreenBlue);
}

CustomColorSpectrum CustomColorSpectrum::BlueGreenRed()
{
    return MakeSpectrum(blueGreenRed);
}

CustomColorSpectrum CustomColorSpectrum::Rainbow1()
{
    return MakeSpectrum(rainbow1);
}

CustomColorSpectrum CustomColorSpectrum::Rainbow1Reversed()
{
    return MakeSpectrum(rainbow1Reversed);
}

CustomColorSpectrum CustomColorSpectrum::Rainbow2()
{
    return MakeSpectrum(rainbow2);
}

CustomColorSpectrum CustomColorSpectrum::Rainbow2Reversed()
{
    return MakeSpectrum(rainbow2Reversed);
}

} // namespace Vorlane
