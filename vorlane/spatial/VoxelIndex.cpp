#include "vorlane/spatial/VoxelIndexInternal.h"

#include <algorithm>

namespace Vorlane {

namespace {

/// The number of runs of equal values that `getValue(n)` has from 0 to `size`.
template <typename GetValue>
std::size_t CountRuns(std::size_t size, GetValue getValue)
{
    std::size_t count = size == 0 ? 0 : 1;
    for (std::size_t n = 1; n < size; ++n) {
        count += getValue(n) != getValue(n - 1) ? 1 : 0;
    }
    return count;
}

} // namespace

VoxelIndex::VoxelIndex(PointLog const& points, int firstIndex, std::vector<Keyed> keys)
{
    SortByKey(keys);
    auto const keyOf = [&](std::size_t n) {
        return Vorlane::GetKey(keys[n]);
    };
    Reserve(CountRuns(keys.size(), keyOf), keys.size());
    for (std::size_t n = 0; n != keys.size(); ++n) {
        if (n == 0 || keyOf(n) != keyOf(n - 1)) {
            m_keys.push_back(static_cast<int>(keyOf(n)));
            m_begins.push_back(static_cast<std::uint32_t>(n));
        }
    }
    Finish();

    // Fetching a point waits for memory. Without a branch that depends on it, many can be fetched at once.
    std::size_t cell = 0;
    for (std::size_t n = 0; n != keys.size(); ++n) {
        cell += n == m_begins[cell + 1] ? 1 : 0;
        std::size_t const begin = m_begins[cell];
        std::size_t const count = m_begins[cell + 1] - begin;
        double* const target = m_points.get() + 3 * begin + n;
        Spatia::Point3d const& point = points[GetNumber(keys[n])];
        target[0] = point.x;
        target[count] = point.y;
        target[2 * count] = point.z;
        target[3 * count] = firstIndex + static_cast<double>(GetNumber(keys[n]));
    }
}

VoxelIndex::VoxelIndex(VoxelIndex const& older, VoxelIndex const& newer)
{
    std::vector<int> keys(older.GetCellCount() + newer.GetCellCount());
    keys.erase(std::set_union(older.m_keys.begin(), older.m_keys.end(), newer.m_keys.begin(),
                              newer.m_keys.end(), keys.begin()),
               keys.end());
    Reserve(keys.size(), older.GetPointCount() + newer.GetPointCount());
    m_keys = keys;
    double* target = m_points.get();
    std::size_t o = 0;
    std::size_t n = 0;
    for (int const key : keys) {
        m_begins.push_back(static_cast<std::uint32_t>((target - m_points.get()) / 4));
        bool const isInOlder = o != older.GetCellCount() && older.m_keys[o] == key;
        bool const isInNewer = n != newer.GetCellCount() && newer.m_keys[n] == key;
        Cell const parts[] = {isInOlder ? older.GetCell(o++) : Cell(),
                              isInNewer ? newer.GetCell(n++) : Cell()};
        for (std::size_t column = 0; column != 4; ++column) {
            for (Cell const& part : parts) {
                target = std::copy_n(part.GetX() + column * part.count, part.count, target);
            }
        }
    }
    Finish();
}

/// Makes room for so many cells and points.
void VoxelIndex::Reserve(std::size_t cellCount, std::size_t pointCount)
{
    m_keys.reserve(cellCount);
    m_begins.reserve(cellCount + 2);
    m_pointCount = pointCount;
    m_points.reset(new double[4 * pointCount + padding]);
    std::fill_n(m_points.get() + 4 * pointCount, padding, 0.0);
}

/// Ends the cells with the empty one, and makes the table of blocks.
void VoxelIndex::Finish()
{
    m_begins.insert(m_begins.end(), 2, static_cast<std::uint32_t>(m_pointCount));
    auto const blockOf = [this](std::size_t cell) {
        return static_cast<std::uint32_t>(m_keys[cell]) / 64;
    };
    std::size_t const blockCount = CountRuns(m_keys.size(), blockOf);
    std::size_t size = 4;
    while (size * 7 < blockCount * 10) {
        size *= 2;
    }
    m_blocks.resize(size);
    for (std::size_t cell = 0; cell != m_keys.size(); ++cell) {
        Block& block = m_blocks[GetEntry(blockOf(cell))];
        if (block.voxels == 0) {
            block.number = blockOf(cell);
            block.firstCell = static_cast<std::uint32_t>(cell);
        }
        block.voxels |= std::uint64_t(1) << (m_keys[cell] & 63);
    }
}

} // namespace Vorlane
