#include "vorlane/colour/ColorMapParameters.h"

#include "vorlane/colour/NamedColorArrays.h"

#include <algorithm>
#include <cstdint>

namespace Vorlane {

namespace {

constexpr int defaultBinCount = 32;

/// Whether one of two numbers comes first; a NaN ties with every number.
bool DiffersInOrder(double left, double right)
{
    return left < right || left > right;
}

} // namespace

ColorMapParameters::ColorMapParameters()
    : ColorMapParameters("Red-White-Blue", false, 0.0, 1.0, defaultBinCount)
{}

ColorMapParameters::ColorMapParameters(CString const& spectrumName, bool clip, double minimum, double maximum,
                                       BoolArray const& transferFunction)
    : m_spectrumName(spectrumName), m_clip(clip), m_minimum(minimum), m_maximum(maximum),
      m_transferFunction(transferFunction)
{}

ColorMapParameters::ColorMapParameters(CString const& spectrumName, bool clip, double minimum, double maximum,
                                       int binCount)
    : m_spectrumName(spectrumName), m_clip(clip), m_minimum(minimum), m_maximum(maximum)
{
    m_transferFunction.SetSize(std::max(binCount, 0));
    std::fill_n(m_transferFunction.GetData(), m_transferFunction.GetSize(), true);
}

ColorMapParameters::ColorMapParameters(ColorMapParameters const& other) = default;

void ColorMapParameters::operator=(ColorMapParameters const& other)
{
    if (this == &other) {
        return;
    }
    m_mapState = MapState::dirty; // and so it stays if the memory ends on the way
    m_transferFunction = other.m_transferFunction;
    m_colorMap = other.m_colorMap;
    m_spectrumName = other.m_spectrumName;
    m_clip = other.m_clip;
    m_minimum = other.m_minimum;
    m_maximum = other.m_maximum;
    m_mapState = other.m_mapState;
}

ColorMapParameters::~ColorMapParameters() = default;

Orrin::Color ColorMapParameters::CalculateColor(double value)
{
    if (m_mapState != MapState::open) {
        if (m_mapState != MapState::clipped) {
            return CalculateColorInSteps(value); // apart, so that nothing is saved for it in the usual case
        }
        if (IsOutside(value)) {
            return s_offColor;
        }
    }
    return m_colorMap.RegularColorAtValue(value);
}

Orrin::Color ColorMapParameters::CalculateColorInSteps(double value)
{
    if (m_mapState == MapState::dirty) {
        BuildColorMap();
    }
    return m_clip && IsOutside(value) ? s_offColor : m_colorMap.ColorAtValue(value);
}

void ColorMapParameters::CalculateColors(double const* values, int count, Orrin::Color* colors)
{
    if (count < 1) {
        return;
    }
    if (m_mapState == MapState::dirty) {
        BuildColorMap();
    }
    if (!m_clip) {
        m_colorMap.ColorsAtValues(values, count, colors);
        return;
    }
    // Block by block, so that what the map has written is still at hand where it is clipped.
    constexpr int blockSize = 1024;
    std::uint32_t const off = s_offColor.GetPacked();
    for (int done = 0; done < count; done += std::min(blockSize, count - done)) {
        int const end = done + std::min(blockSize, count - done);
        m_colorMap.ColorsAtValues(values + done, end - done, colors + done);
        for (int i = done; i < end; ++i) {
            bool const isClipped = (values[i] < m_minimum) | (values[i] > m_maximum);
            colors[i].SetPacked(isClipped ? off : colors[i].GetPacked());
        }
    }
}

void ColorMapParameters::BuildColorMap()
{
    int const binCount = m_transferFunction.GetSize();
    m_colorMap.Resize(binCount);
    m_colorMap.SetBeginEnd(m_minimum, m_maximum);
    m_colorMap.Ramp(NamedColorArray(m_spectrumName), true);
    for (int bin = 0; bin < binCount; ++bin) {
        if (!m_transferFunction[bin]) {
            m_colorMap.SetColorAtIndex(bin, s_offColor);
        }
    }
    m_mapState = !m_colorMap.IsRegular() ? MapState::irregular : m_clip ? MapState::clipped : MapState::open;
}

void ColorMapParameters::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar << m_spectrumName << m_clip << m_minimum << m_maximum;
        int const binCount = m_transferFunction.GetSize();
        ar << std::int32_t{binCount};
        for (int bin = 0; bin < binCount; ++bin) {
            ar << m_transferFunction[bin];
        }
        return;
    }
    m_mapState = MapState::dirty;
    ar >> m_spectrumName >> m_clip >> m_minimum >> m_maximum;
    m_transferFunction.RemoveAll();
    std::int32_t binCount = 0;
    ar >> binCount;
    for (int bin = 0; bin < binCount; ++bin) {
        bool isOn = false;
        ar >> isOn;
        m_transferFunction.Add(isOn);
    }
}

void ColorMapParameters::SetSpectrumName(CString const& name)
{
    m_spectrumName = name;
    m_mapState = MapState::dirty;
}

CString ColorMapParameters::GetSpectrumName() const
{
    return m_spectrumName;
}

void ColorMapParameters::SetClip(bool clip)
{
    m_clip = clip;
    m_mapState = MapState::dirty;
}

bool ColorMapParameters::GetClip() const
{
    return m_clip;
}

void ColorMapParameters::SetMinimum(double minimum)
{
    m_minimum = minimum;
    m_mapState = MapState::dirty;
}

double ColorMapParameters::GetMinimum() const
{
    return m_minimum;
}

void ColorMapParameters::SetMaximum(double maximum)
{
    m_maximum = maximum;
    m_mapState = MapState::dirty;
}

double ColorMapParameters::GetMaximum() const
{
    return m_maximum;
}

void ColorMapParameters::SetTransferFunction(BoolArray const& transferFunction)
{
    m_mapState = MapState::dirty;
    m_transferFunction = transferFunction;
}

void ColorMapParameters::GetTransferFunction(BoolArray& transferFunction) const
{
    transferFunction = m_transferFunction;
}

bool ColorMapParameters::operator<(ColorMapParameters const& other) const
{
    int const names = m_spectrumName.CompareNoCase(other.m_spectrumName);
    if (names != 0) {
        return names < 0;
    }
    if (m_clip != other.m_clip) {
        return other.m_clip;
    }
    if (DiffersInOrder(m_minimum, other.m_minimum)) {
        return m_minimum < other.m_minimum;
    }
    if (DiffersInOrder(m_maximum, other.m_maximum)) {
        return m_maximum < other.m_maximum;
    }
    int const binCount = m_transferFunction.GetSize();
    if (binCount != other.m_transferFunction.GetSize()) {
        return binCount < other.m_transferFunction.GetSize();
    }
    for (int bin = 0; bin < binCount; ++bin) {
        if (m_transferFunction[bin] != other.m_transferFunction[bin]) {
            return other.m_transferFunction[bin];
        }
    }
    return false;
}

bool ColorMapParameters::operator==(ColorMapParameters const& other) const
{
    if (this == &other) {
        return true;
    }
    // The numbers apart, since a NaN ties in the order and equals nothing.
    return m_minimum == other.m_minimum && m_maximum == other.m_maximum && !(*this < other) &&
           !(other < *this);
}

} // namespace Vorlane
