#ifndef VORLANE_PLATFORM_LUMORA_COLORMAP_H
#define VORLANE_PLATFORM_LUMORA_COLORMAP_H

/// \file
/// A row of coloured bins over a range of numbers. A value type without locks; one map is used by one thread
/// at a time, or read by several.

#include "platform/Export.h"
#include "platform/orrin/Color.h"
#include "platform/orrin/ColorArray.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Lumora {

/// Gives each number the colour of the bin into which it falls.
///
/// The n bins have equal width and run from the begin of the range to its end, which may be the smaller
/// number. Bin i starts at the edge begin + (end - begin) * i / n, computed in double in that order, and
/// reaches up to the edge of bin i + 1, which belongs to that bin. From this follows for every number:
///
/// | value | bin |
/// |---|---|
/// | the begin | 0 |
/// | an edge | the bin that starts there |
/// | the end | the last |
/// | outside the range, an infinity too | the nearer end bin |
/// | NaN | 0 |
///
/// An empty range, whose ends are equal or of which one is a NaN, puts every value into bin 0. Of an infinite
/// range the edges are the limits: all finite numbers lie in bin 0 if only the end is infinite, in the last
/// bin if only the begin is, and if both are, the edges before the middle lie at the begin, a middle one at
/// 0, and those after it at the end. Where the range holds fewer numbers than bins, some bins are empty.
class VORLANE_PLATFORM_EXPORT ColorMap
{
public:
    /// No bins over the range 0 to 1.
    ColorMap() = default;

    /// `size` bins, opaque black, over the range 0 to 1; a negative size counts as 0.
    explicit ColorMap(int size);

    /// Copies hold bins, colours and range.
    ///
    /// \throws CMemoryException if the memory cannot be had; an assignment then leaves the map as it was.
    ColorMap(ColorMap const& other);
    ColorMap& operator=(ColorMap const& other);
    ~ColorMap() = default;

    /// The number of bins.
    int GetSize() const { return static_cast<int>(m_colors.size()); }

    /// Gives the map `size` bins, a negative size counting as 0. Bins keep their colours by index; new ones
    /// are opaque black. Linear in the size.
    ///
    /// \throws CMemoryException if the memory cannot be had; the map is then as it was.
    void Resize(int size);

    /// Sets the range that the bins span. Linear in the size.
    void SetBeginEnd(double begin, double end);

    /// The range as it was set.
    double GetBegin() const { return m_begin; }
    double GetEnd() const { return m_end; }

    /// Colours all bins from `colors`.
    ///
    /// With `interpolate`, the colours stand at equal distances, the first on bin 0 and the last on the last
    /// bin, and a bin between two of them gets their linear mix in each of red, green, blue and alpha,
    /// rounded to the nearest integer, halves up. A map of one bin gets the first colour.
    ///
    /// Without it, the colours share the map in steps of equal length, and a bin gets the colour of the step
    /// in which its middle lies, the later one if it lies between two.
    ///
    /// No colours give opaque black. Linear in the number of bins and colours.
    void Ramp(Orrin::ColorArray const& colors, bool interpolate);

    /// The colour of one bin; opaque black for an index outside 0 to the size minus 1.
    Orrin::Color ColorAtIndex(int index) const
    {
        return IsValidIndex(index) ? m_colors[static_cast<std::size_t>(index)].Before() : Orrin::Color();
    }

    /// Sets the colour of one bin; an index outside 0 to the size minus 1 is ignored.
    void SetColorAtIndex(int index, Orrin::Color color)
    {
        if (IsValidIndex(index)) {
            SetPacked(static_cast<std::size_t>(index), color.GetPacked());
        }
    }

    /// The colour of the bin of `value`; opaque black if there are no bins. Constant time; logarithmic in the
    /// size on ranges that are infinite, wider than all finite numbers, or hold few numbers for their bins.
    Orrin::Color ColorAtValue(double value) const
    {
        return m_isRegular ? RegularColorAtValue(value) : ColorByHalving(value);
    }

    /// Whether arithmetic finds the bins of all values: there are bins, and the range is finite, not wider
    /// than all finite numbers, and holds many numbers for each bin.
    bool IsRegular() const { return m_isRegular; }

    /// ColorAtValue of a regular map, without asking whether it is one.
    Orrin::Color RegularColorAtValue(double value) const
    {
        auto const bin = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(BinBeforeNearestEdge(value)));
        Sides const& sides = m_colors[bin];
        std::uint32_t const isPast = Oriented(value) >= m_ends[bin];
        return sides.past ^ (sides.change & (isPast - 1));
    }

    /// Sets the first `count` of `colors` to what ColorAtValue gives for each of `values`; a count below 1
    /// does nothing. Faster than one call for each.
    void ColorsAtValues(double const* values, int count, Orrin::Color* colors) const;

private:
    /// The colours on both sides of an edge, so that one look at the table will do.
    struct Sides
    {
        std::uint32_t past;   ///< the colour of the bin that starts at the edge
        std::uint32_t change; ///< the bits in which the one that ends there differs

        std::uint32_t Before() const { return past ^ change; }
    };

    bool IsValidIndex(int index) const { return index >= 0 && index < GetSize(); }
    void PlaceEdges();

    /// Sets the colour of bin `index` at both ends of it.
    void SetPacked(std::size_t index, std::uint32_t packed);

    /// Values with the sign turned if the range runs downwards, so that oriented ones always run upwards.
    double Oriented(double value) const { return value * m_orientation; }

    /// The index of the bin at whose end the edge nearest to a value lies; that of a NaN is 0.
    double BinBeforeNearestEdge(double value) const
    {
        double const position = (value - m_middleOfFirstBin) * m_binsPerUnit;
        double const atLeastFirst = position > m_firstBin ? position : m_firstBin; // also for NaN
        return atLeastFirst < m_lastButOneBin ? atLeastFirst : m_lastButOneBin;
    }

    Orrin::Color ColorByHalving(double value) const;

    /// Where each bin ends: the smallest oriented value past it; NaN, which no value reaches, for the last
    /// bin.
    std::vector<double> m_ends;
    std::vector<Sides> m_colors; ///< at the ends of the bins
    double m_begin = 0.0;
    double m_end = 1.0;
    double m_orientation = 1.0; ///< -1 if the range runs downwards
    double m_middleOfFirstBin = 0.0;
    double m_binsPerUnit = 0.0; ///< negative if the range runs downwards
    /// The bounds of an index: 0 and the size minus 2. With a constant for the first, compilers make a branch
    /// of the comparison, which values on both sides of the bound mispredict.
    double m_firstBin = 0.0;
    double m_lastButOneBin = 0.0;
    bool m_isRegular = false; ///< there are bins, and rounding takes no edge nearer to another one
};

} // namespace Lumora

#endif
