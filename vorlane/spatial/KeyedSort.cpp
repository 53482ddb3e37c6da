#include "vorlane/spatial/KeyedSortInternal.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Vorlane {

void SortByKey(std::vector<Keyed>& items)
{
    constexpr std::size_t small = 256;
    if (items.size() <= small) {
        std::sort(items.begin(), items.end());
        return;
    }
    std::uint32_t lowest = GetKey(items.front());
    std::uint32_t highest = lowest;
    for (Keyed const item : items) {
        lowest = std::min(lowest, GetKey(item));
        highest = std::max(highest, GetKey(item));
    }
    int bits = 0;
    while (bits != 32 && (highest - lowest) >> bits != 0) {
        ++bits;
    }

    // From the lowest digit on, in as few passes as possible with digits that the processor's cache can take.
    constexpr int mostDigitBits = 10;
    int const passes = (bits + mostDigitBits - 1) / mostDigitBits;
    int const digitBits = passes == 0 ? 0 : (bits + passes - 1) / passes;
    std::vector<Keyed> sorted(passes == 0 ? 0 : items.size());
    for (int shift = 0; shift < bits; shift += digitBits) {
        auto const digit = [=](Keyed item) {
            return (GetKey(item) - lowest) >> shift & ((1u << digitBits) - 1);
        };
        std::array<std::uint32_t, std::size_t(1) << mostDigitBits> position = {};
        for (Keyed const item : items) {
            ++position[digit(item)];
        }
        std::uint32_t next = 0;
        for (std::uint32_t& entry : position) {
            std::uint32_t const count = entry;
            entry = next;
            next += count;
        }
        for (Keyed const item : items) {
            sorted[position[digit(item)]++] = item;
        }
        items.swap(sorted);
    }
}

} // namespace Vorlane
