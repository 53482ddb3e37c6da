#ifndef VORLANE_COORDINATION_CROSSREFERENCE_H
#define VORLANE_COORDINATION_CROSSREFERENCE_H

/// \file
/// The one-way map of the library's own look-up tables.

#include "vorlane/foundation/FrameworkSurface.h"

namespace Vorlane {

/// A map from key to value with keys and values passed by value: `SetAt(key, value)`, `Lookup(key, value&)`
/// and `GetCount()` of the framework's map. It stays at the map's 17 buckets however many entries it gets.
///
/// An empty map holds no memory; the first entry takes the buckets and a block of nodes. Nothing here locks.
template <typename K, typename V>
class CrossReference : public CMap<K, K, V, V>
{
public:
    /// An empty map that takes memory for `blockSize` entries at a time.
    explicit CrossReference(int blockSize = 10) : CMap<K, K, V, V>(blockSize) {}

    ~CrossReference() override = default;
};

} // namespace Vorlane

#endif
