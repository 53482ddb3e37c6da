#include "platform/lumora/ColorMap.h"

#include "platform/framework/AfxExceptions.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Lumora {

namespace {

/// An edge that no value reaches.
constexpr double noEdge = std::numeric_limits<double>::quiet_NaN();

/// The places where the bins of a range that runs upwards begin. Of an empty range they are NaN.
class BinEdges
{
public:
    BinEdges(double begin, double end, int binCount)
        : m_begin(begin), m_end(end), m_binCount(binCount), m_low(std::nextafter(begin, end)),
          m_factor(std::max(std::abs(begin), std::abs(end)) > huge ? reducing : 1.0)
    {}

    /// Where bin `index` begins, for an index from 1 to the number of bins minus 1. However the arithmetic
    /// rounds, the begin of the range lies before it and the end does not.
    double At(int index) const
    {
        return m_begin < m_end ? std::min(std::max(Unbounded(index), m_low), m_end) : noEdge;
    }

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
{
    *this = other;
}

ColorMap& ColorMap::operator=(ColorMap const& other)
{
    AfxWithMemoryException([&] {
        std::vector<double> ends = other.m_ends;
        m_colors = other.m_colors;
        m_ends.swap(ends);
    });
    m_begin = other.m_begin;
    m_end = other.m_end;
    m_orientation = other.m_orientation;
    m_middleOfFirstBin = other.m_middleOfFirstBin;
    m_binsPerUnit = other.m_binsPerUnit;
    m_lastButOneBin = other.m_lastButOneBin;
    m_isRegular = other.m_isRegular;
    return *this;
}

void ColorMap::Resize(int size)
{
    size = std::max(size, 0);
    if (size == GetSize()) {
        return;
    }
    std::uint32_t const black = Orrin::Color::Black().GetPacked();
    std::size_t const oldSize = m_colors.size();
    std::size_t const newSize = static_cast<std::size_t>(size);
    AfxWithMemoryException([&] {
        m_ends.reserve(newSize);
        m_colors.resize(newSize, Sides{black, 0});
    });
    m_ends.resize(newSize);
    if (oldSize < newSize) {
        SetPacked(oldSize, black);
    }
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

void ColorMap::SetPacked(std::size_t index, std::uint32_t packed)
{
    m_colors[index].change = m_colors[index].past ^ packed;
    if (index > 0) {
        Sides& sides = m_colors[index - 1];
        sides.change = sides.Before() ^ packed;
        sides.past = packed;
    }
}

void ColorMap::PlaceEdges()
{
    int const size = GetSize();
    m_isRegular = size > 0;
    if (size == 0) {
        return;
    }
    m_orientation = m_begin > m_end ? -1.0 : 1.0;
    double const begin = Oriented(m_begin);
    double const width = Oriented(m_end) - begin;
    m_middleOfFirstBin = Oriented(begin + width / size / 2);
    m_binsPerUnit = Oriented(size / width);
    m_lastButOneBin = std::max(size - 2, 0);
    BinEdges const edges(begin, Oriented(m_end), size);
    for (int index = 1; index < size; ++index) {
        double const edge = edges.At(index);
        m_ends[static_cast<std::size_t>(index) - 1] = edge;
        // Rounded arithmetic keeps the order of values. So if each edge is the nearest to itself, a value
        // between two edges is near to one of them.
        double const before = BinBeforeNearestEdge(Oriented(edge));
        m_isRegular = m_isRegular && before >= index - 1 && before < index;
    }
    m_ends.back() = noEdge;
}

void ColorMap::Ramp(Orrin::ColorArray const& colors, bool interpolate)
{
    long const colorCount = colors.GetSize();
    if (colorCount == 0) {
        for (std::size_t index = 0; index < m_colors.size(); ++index) {
            SetPacked(index, Orrin::Color::Black().GetPacked());
        }
        return;
    }
    if (!interpolate) {
        std::uint64_t const count = static_cast<std::uint64_t>(colorCount);
        for (std::size_t index = 0; index < m_colors.size(); ++index) {
            std::uint64_t const step = (2 * index + 1) * count / (2 * m_colors.size());
            SetPacked(index, colors.GetAt(static_cast<long>(step)).GetPacked());
        }
        return;
    }
    // Bin i lies i * (colorCount - 1) / parts colours from the first: `color` whole ones and `rest` parts.
    std::int64_t const parts = std::max(GetSize() - 1, 1);
    std::int64_t color = 0;
    std::int64_t rest = 0;
    for (std::size_t index = 0; index < m_colors.size(); ++index) {
        std::uint32_t packed = colors.GetAt(static_cast<long>(color)).GetPacked();
        if (rest != 0) {
            std::uint32_t const next = colors.GetAt(static_cast<long>(color) + 1).GetPacked();
            packed = Mix(packed, next, static_cast<double>(rest), static_cast<double>(parts));
        }
        SetPacked(index, packed);
        rest += colorCount - 1;
        color += rest / parts;
        rest %= parts;
    }
}

void ColorMap::ColorsAtValues(double const* values, int count, Orrin::Color* colors) const
{
    if (!m_isRegular) {
        for (int i = 0; i < count; ++i) {
            colors[i] = ColorByHalving(values[i]);
        }
        return;
    }
    // Block by block: the arithmetic in a loop that the compiler can vectorise; then the table. The blocks
    // are small, so that the stores of one are still under way during the arithmetic of the next.
    constexpr int blockSize = 16;
    int before[blockSize];
    for (int done = 0; done < count; done += std::min(blockSize, count - done)) {
        int const inBlock = std::min(blockSize, count - done);
        double const* const blockValues = values + done;
        for (int i = 0; i < inBlock; ++i) {
            before[i] = static_cast<int>(BinBeforeNearestEdge(blockValues[i]));
        }
        for (int i = 0; i < inBlock; ++i) {
            auto const bin = static_cast<std::size_t>(before[i]);
            std::uint32_t const isPast = Oriented(blockValues[i]) >= m_ends[bin];
            Sides const& sides = m_colors[bin];
            colors[done + i].SetPacked(sides.past ^ (sides.change & (isPast - 1)));
        }
    }
}

/// ColorAtValue where arithmetic may fail or there are no bins.
Orrin::Color ColorMap::ColorByHalving(double value) const
{
    if (m_colors.empty()) {
        return Orrin::Color();
    }
    double const oriented = Oriented(value);
    auto const end =
        std::partition_point(m_ends.begin(), m_ends.end() - 1, [&](double edge) { return oriented >= edge; });
    return m_colors[static_cast<std::size_t>(end - m_ends.begin())].Before();
}

} // namespace Lumora
