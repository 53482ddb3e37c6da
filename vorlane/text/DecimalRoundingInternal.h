#ifndef VORLANE_TEXT_DECIMALROUNDINGINTERNAL_H
#define VORLANE_TEXT_DECIMALROUNDINGINTERNAL_H

#include <cstdint>

namespace Vorlane::NumberScanning {

/// Gives `value` the double nearest to digits * 10^power, for digits above 0. False, and `value` stays, where
/// the number is not among the normal doubles or at their borders, and in the rare case that it lies in the
/// midst of two doubles, or too close to it for 128 bits of the power to decide.
bool RoundDecimalProduct(std::uint64_t digits, std::int64_t power, double& value);

} // namespace Vorlane::NumberScanning

#endif
