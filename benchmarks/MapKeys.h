#ifndef VORLANE_BENCHMARKS_MAPKEYS_H
#define VORLANE_BENCHMARKS_MAPKEYS_H

// The keys of the map benchmarks, and one way to fill and ask both maps.

#include "vorlane/foundation/FrameworkSurface.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <unordered_map>
#include <vector>

namespace MapKeys {

using FrameworkMap = CMap<int, int, int, int>; // 17 buckets
using StandardMap = std::unordered_map<int, int>;

enum class Case
{
    sequential,
    strided,
    random
};

/// Distinct keys, in the order of insertion.
inline std::vector<int> Make(Case order, int count)
{
    std::vector<int> keys(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        // 2654435761 is odd, so that distinct i give distinct products modulo 2 to the power of 32.
        std::uint32_t const scattered = static_cast<std::uint32_t>(i) * 2654435761u;
        keys[static_cast<std::size_t>(i)] = order == Case::sequential ? i
                                            : order == Case::strided  ? i * 1024
                                                                      : static_cast<int>(scattered);
    }
    return keys;
}

inline void Set(FrameworkMap& map, int key, int value)
{
    map.SetAt(key, value);
}

inline void Set(StandardMap& map, int key, int value)
{
    map[key] = value;
}

inline int Get(FrameworkMap const& map, int key)
{
    int value = -1;
    map.Lookup(key, value);
    return value;
}

inline int Get(StandardMap const& map, int key)
{
    auto const found = map.find(key);
    return found != map.end() ? found->second : -1;
}

template <typename Map>
void Fill(Map& map, std::vector<int> const& keys)
{
    int value = 0;
    for (int const key : keys) {
        Set(map, key, value++);
    }
}

/// Whether each key has the value that Fill gave it.
template <typename Map>
bool IsFilled(Map const& map, std::vector<int> const& keys)
{
    int value = 0;
    return std::all_of(keys.begin(), keys.end(), [&](int key) { return Get(map, key) == value++; });
}

} // namespace MapKeys

#endif
