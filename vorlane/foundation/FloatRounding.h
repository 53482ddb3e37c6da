#ifndef VORLANE_FOUNDATION_FLOATROUNDING_H
#define VORLANE_FOUNDATION_FLOATROUNDING_H

/// \file
/// From double to float, for every double.

#include <cmath>
#include <limits>

namespace Vorlane {

/// RoundedToFloat for what is not within the range of floats: NaN stays NaN. It stands apart, and is marked
/// as rare, so that loops over ordinary numbers carry one comparison and no more.
[[gnu::cold, gnu::noinline]] inline float RoundedToFloatBeyondRange(double value)
{
    if (std::isnan(value)) {
        return static_cast<float>(value);
    }
    // Half a step above the largest float.
    constexpr double firstInfinite = 0x1.ffffffp127;
    float const magnitude = std::fabs(value) < firstInfinite ? std::numeric_limits<float>::max()
                                                             : std::numeric_limits<float>::infinity();
    return value < 0.0 ? -magnitude : magnitude;
}

/// The float nearest to `value`; infinite where that is the nearest. The conversion of the language is
/// undefined beyond the largest float, so it is asked only up to there.
inline float RoundedToFloat(double value)
{
    constexpr double largest = std::numeric_limits<float>::max();
    return std::fabs(value) <= largest ? static_cast<float>(value) : RoundedToFloatBeyondRange(value);
}

} // namespace Vorlane

#endif
