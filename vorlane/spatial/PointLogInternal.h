#ifndef VORLANE_SPATIAL_POINTLOGINTERNAL_H
#define VORLANE_SPATIAL_POINTLOGINTERNAL_H

#include "vorlane/foundation/ValueTypes.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace Vorlane {

/// Points in the order of their addition, in slabs, so that nothing large is copied as the log grows.
class PointLog
{
public:
    std::size_t GetSize() const
    {
        return m_slabs.empty() ? 0 : (m_slabs.size() - 1) * slabSize + m_slabs.back().size();
    }

    Spatia::Point3d const& operator[](std::size_t n) const { return m_slabs[n / slabSize][n % slabSize]; }

    /// Where memory runs out, std::bad_alloc leaves the log as it was.
    void Add(Spatia::Point3d const& point)
    {
        if (m_slabs.empty() || m_slabs.back().size() == slabSize) {
            AddSlab();
        }
        m_slabs.back().push_back(point);
    }

    void Clear() { std::vector<std::vector<Spatia::Point3d>>().swap(m_slabs); }

private:
    static constexpr std::size_t slabSize = 2048;

    void AddSlab()
    {
        std::vector<Spatia::Point3d> slab;
        if (!m_slabs.empty()) {
            slab.reserve(slabSize);
        }
        m_slabs.push_back(std::move(slab));
    }

    std::vector<std::vector<Spatia::Point3d>> m_slabs; ///< full ones, but for the last
};

} // namespace Vorlane

#endif
