#include "platform/lumora/ColorMap.h"

#include "platform/framework/AfxExceptions.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Lumora {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The places where the bins of a range that is not empty begin.
class BinEdges
{
public:
    BinEdges(double begin, double end, int binCount)
        : m_begin(begin), m_end(end), m_binCount(binCount),
          m_low(begin < end ? std::nextafter(begin, end) : end),
          m_high(begin < end ? end : std::nextafter(begin, end)),
          m_factor(std::max(std::abs(begin), std::abs(end)) > huge ? reducing : 1.0)
    {}

    /// Where bin `index` begins, for an index from 1 to the number of bins minus 1. However the arithmetic
    /// rounds, the begin of the range lies before it and the end does not.
    double At(int index) const { return std::min(std::max(Unbounded(index), m_low), m_high); }

private:
    // Above the one number, the products below could overflow; multiplied by the other, they don't. No edge
    // of such a range depends on what small numbers lose by it.
    static constexpr double huge = 0x1p960;
    static constexpr double reducing = 0x1p-64;

    double Unbounded(int index) const
    {
        if (std::isinf(m_begin) && std::isinf(m_end)) {
            double const pastMiddle = 2.0 * index - m_binCount;
            return pastMiddle < 0 ? m_begin : pastMiddle > 0 ? m_end : 0.0;
        }
        if (std::isinf(m_begin) || std::isinf(m_end)) {
            return std::isinf(m_begin) ? m_begin : m_end;
        }
        double const begin = m_begin * m_factor;
        double const width = m_end * m_factor - begin;
        return (begin + width * index / m_binCount) / m_factor;
    }

    double m_begin;
    double m_end;
    int m_binCount;
    double m_low;
    double m_high;
    double m_factor;
};

/// The mix of two packed colours that lies `step` of `steps` steps after the first.
std::uint32_t Mix(std::uint32_t from, std::uint32_t to, double step, double steps)
{
    std::uint32_t mixed = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        std::uint32_t const first = (from >> shift) & 0xFFu;
        std::uint32_t const second = (to >> shift) & 0xFFu;
        if (first == second) { // as alpha mostly is
            mixed |= first << shift;
            continue;
        }
        // The weighted sum is a whole number below 2^39, so the quotient is never rounded across a half.
        double const component = (first * (steps - step) + second * step) / steps;
        mixed |= static_cast<std::uint32_t>(component + 0.5) << shift;
    }
    return mixed;
}

} // namespace

ColorMap::ColorMap(int size)
{
    Resize(size);
}

ColorMap::ColorMap(ColorMap const& other)
    : m_bins(AfxWithMemoryException([&] { return std::vector<Bin>(other.m_bins); })), m_begin(other.m_begin),
      m_end(other.m_end), m_binsPerUnit(other.m_binsPerUnit), m_lastBin(other.m_lastBin)
{}

ColorMap& ColorMap::operator=(ColorMap const& other)
{
    AfxWithMemoryException([&] { m_bins = other.m_bins; });
    m_begin = other.m_begin;
    m_end = other.m_end;
    m_binsPerUnit = other.m_binsPerUnit;
    m_lastBin = other.m_lastBin;
    return *this;
}

void ColorMap::Resize(int size)
{
    size = std::max(size, 0);
    if (size == GetSize()) {
        return;
    }
    Bin const black{-infinity, infinity, Orrin::Color::Black().GetPacked()};
    AfxWithMemoryException([&] { m_bins.resize(static_cast<std::size_t>(size), black); });
    PlaceEdges();
}

void ColorMap::SetBeginEnd(double begin, double end)
{
    if (begin == m_begin && end == m_end) {
        return;
    }
    m_begin = begin;
    m_end = end;
    PlaceEdges();
}

void ColorMap::PlaceEdges()
{
    if (m_bins.empty()) {
        return;
    }
    int const size = GetSize();
    m_lastBin = size - 1;
    m_binsPerUnit = size / (m_end - m_begin);
    if (IsEmptyRange()) {
        for (Bin& bin : m_bins) {
            bin.first = infinity;
            bin.next = infinity;
        }
        m_bins.front().first = -infinity;
        return;
    }
    bool const upwards = m_begin < m_end;
    (upwards ? m_bins.front() : m_bins.back()).first = -infinity;
    (upwards ? m_bins.back() : m_bins.front()).next = infinity;
    BinEdges const edges(m_begin, m_end, size);
    for (int index = 1; index < size; ++index) {
        Bin& before = m_bins[static_cast<std::size_t>(index) - 1];
        Bin& bin = m_bins[static_cast<std::size_t>(index)];
        double const edge = edges.At(index);
        if (upwards) {
            before.next = edge;
            bin.first = edge;
        } else {
            // The edge is the largest number of its bin, and the bin before begins just above it.
            before.first = std::nextafter(edge, infinity);
            bin.next = before.first;
        }
    }
}

void ColorMap::Ramp(Orrin::ColorArray const& colors, bool interpolate)
{
    long const colorCount = colors.GetSize();
    if (colorCount == 0) {
        for (Bin& bin : m_bins) {
            bin.packed = Orrin::Color::Black().GetPacked();
        }
        return;
    }
    if (!interpolate) {
        std::uint64_t const count = static_cast<std::uint64_t>(colorCount);
        for (std::size_t index = 0; index < m_bins.size(); ++index) {
            std::uint64_t const step = (2 * index + 1) * count / (2 * m_bins.size());
            m_bins[index].packed = colors.GetAt(static_cast<long>(step)).GetPacked();
        }
        return;
    }
    // Bin i lies i * (colorCount - 1) / parts colours from the first: `color` whole ones and `rest` parts.
    std::int64_t const parts = std::max(GetSize() - 1, 1);
    std::int64_t color = 0;
    std::int64_t rest = 0;
    for (Bin& bin : m_bins) {
        bin.packed = colors.GetAt(static_cast<long>(color)).GetPacked();
        if (rest != 0) {
            std::uint32_t const next = colors.GetAt(static_cast<long>(color) + 1).GetPacked();
            bin.packed = Mix(bin.packed, next, static_cast<double>(rest), static_cast<double>(parts));
        }
        rest += colorCount - 1;
        color += rest / parts;
        rest %= parts;
    }
}

void ColorMap::ColorsAtValues(double const* values, int count, Orrin::Color* colors) const
{
    if (m_bins.empty()) {
        for (int i = 0; i < count; ++i) {
            colors[i] = Orrin::Color();
        }
        return;
    }
    // Block by block: the guesses in a loop that the compiler can vectorise, without a branch that depends on
    // the values; then the table.
    constexpr int blockSize = 256;
    unsigned int guesses[blockSize];
    for (int done = 0; done < count; done += std::min(blockSize, count - done)) {
        int const inBlock = std::min(blockSize, count - done);
        double const* const blockValues = values + done;
        for (int i = 0; i < inBlock; ++i) {
            guesses[i] = WholePart(GuessBin(blockValues[i]));
        }
        for (int i = 0; i < inBlock; ++i) {
            double const value = blockValues[i];
            Bin const& bin = m_bins[guesses[i]];
            bool const isRight = bin.first <= value && value < bin.next;
            colors[done + i].SetPacked(isRight ? bin.packed : m_bins[FindBin(value)].packed);
        }
    }
}

/// ColorAtValue where the guess fails or there are no bins.
Orrin::Color ColorMap::ColorAtOddValue(double value) const
{
    return m_bins.empty() ? Orrin::Color() : Orrin::Color(m_bins[FindBin(value)].packed);
}

/// The index of the bin of `value`, found by halving. There must be bins.
std::size_t ColorMap::FindBin(double value) const
{
    if (std::isnan(value) || IsEmptyRange()) {
        return 0;
    }
    bool const upwards = m_begin < m_end;
    auto const reaches = [&](Bin const& bin) {
        return upwards ? bin.first <= value : value < bin.next;
    };
    auto const past = std::partition_point(m_bins.begin() + 1, m_bins.end(), reaches);
    return static_cast<std::size_t>(past - m_bins.begin()) - 1;
}

} // namespace Lumora
