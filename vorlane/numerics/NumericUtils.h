#ifndef VORLANE_NUMERICS_NUMERICUTILS_H
#define VORLANE_NUMERICS_NUMERICUTILS_H

/// \file
/// Rounding to whole numbers.

#include "vorlane/Export.h"

/// Functions of single numbers.
namespace Vorlane::NumericUtils {

/// `value` rounded to a whole number, a tie to the even neighbour: 0.5 gives 0, 1.5 gives 2, -2.5 gives -2.
/// What is negative stays negative, so that -0.3 gives -0.0. From 2 to the power of 52 upwards, where doubles
/// have no fraction, odd numbers come back as an even neighbour. NaN and infinities come back as they are.
VORLANE_EXPORT double RoundToInteger(double value);

} // namespace Vorlane::NumericUtils

#endif
