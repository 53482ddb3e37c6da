#include "vorlane/numerics/NumericUtils.h"

namespace Vorlane::NumericUtils {

double RoundToInteger(double value)
{
    // Beside 2^52 a double has no room for a fraction: the addition rounds it off, to nearest even.
    constexpr double fractionless = 4503599627370496.0;
    bool const isNegative = value < 0.0;
    double const magnitude = isNegative ? -value : value;
    double const rounded = (magnitude + fractionless) - fractionless;
    return isNegative ? -rounded : rounded;
}

} // namespace Vorlane::NumericUtils
