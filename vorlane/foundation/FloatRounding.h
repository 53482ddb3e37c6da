#ifndef VORLANE_FOUNDATION_FLOATROUNDING_H
#define VORLANE_FOUNDATION_FLOATROUNDING_H

#include <cmath>
#include <limits>

namespace Vorlane {

/// The float nearest to `value`; infinite where that is the nearest. The conversion of the language is
/// undefined beyond the largest float, so it is asked only up to there.
inline float RoundedToFloat(double value)
{
    constexpr float largest = std::numeric_limits<float>::max();
    // Half a step above the largest float.
    constexpr double firstInfinite = 0x1.ffffffp127;
    if (std::fabs(value) > largest) {
        return std::copysign(std::fabs(value) < firstInfinite ? largest
                                                              : std::numeric_limits<float>::infinity(),
                             value < 0.0 ? -1.0f : 1.0f);
    }
    return static_cast<float>(value);
}

} // namespace Vorlane

#endif
