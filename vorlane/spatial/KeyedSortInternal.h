#ifndef VORLANE_SPATIAL_KEYEDSORTINTERNAL_H
#define VORLANE_SPATIAL_KEYEDSORTINTERNAL_H

#include <cstdint>
#include <vector>

namespace Vorlane {

/// A key above the number of what it belongs to.
using Keyed = std::uint64_t;

constexpr Keyed MakeKeyed(std::uint32_t key, std::uint32_t number)
{
    return Keyed(key) << 32 | number;
}
constexpr std::uint32_t GetKey(Keyed keyed)
{
    return static_cast<std::uint32_t>(keyed >> 32);
}
constexpr std::uint32_t GetNumber(Keyed keyed)
{
    return static_cast<std::uint32_t>(keyed);
}

/// Sorts by key; what has the same key must come in the order of its numbers, and stays so. Takes time in
/// proportion to the size, and as much memory again.
void SortByKey(std::vector<Keyed>& items);

} // namespace Vorlane

#endif
