#include "vorlane/spatial/PairSearchInternal.h"

#include <algorithm>
#include <cstring>

namespace Vorlane {

namespace {

/// Copies go in blocks of this many numbers, past the end of what is wanted: the loops are short and even.
constexpr std::size_t copyBlock = 4;

/// A cell whose own points times candidates are at most this many is handled in one go.
constexpr std::size_t smallCell = PairAppender::capacity;

/// With more points to a cell than this, on average, the cells are handled in the order of the results.
constexpr std::size_t crowded = 8;

void CopyBlocks(double const* source, double* target, std::size_t count)
{
    for (std::size_t n = 0; n < count; n += copyBlock) {
        std::memcpy(target + n, source + n, copyBlock * sizeof(double));
    }
}

struct Ordered
{
    std::uint64_t order;
    int item;
};

/// Sorts by `order`, byte by byte from the lowest, leaving out the bytes that are the same everywhere.
void SortByOrder(std::vector<Ordered>& items)
{
    std::vector<Ordered> sorted(items.size());
    for (int shift = 0; shift != 64 && !items.empty(); shift += 8) {
        auto const digit = [shift](Ordered const& item) {
            return (item.order >> shift) & 255u;
        };
        std::array<std::size_t, 256> position = {};
        for (Ordered const& item : items) {
            ++position[digit(item)];
        }
        if (position[digit(items.front())] == items.size()) {
            continue;
        }
        std::size_t next = 0;
        for (std::size_t& entry : position) {
            std::size_t const count = entry;
            entry = next;
            next += count;
        }
        for (Ordered const& item : items) {
            sorted[position[digit(item)]++] = item;
        }
        items.swap(sorted);
    }
}

} // namespace

PairSearch::PairSearch(VoxelStore const& voxels, double cutoffSquared) : m_cutoffSquared(cutoffSquared)
{
    CopyPoints(voxels);
}

void PairSearch::AppendPairs(unsigned int hashSize, IntArray& first, IntArray& second)
{
    std::vector<int> const order = GetCellsInOrder(hashSize);
    if (m_pointCount > m_cells.size() * crowded) {
        PairAppender pairs(first, second);
        AppendInOrder(order, pairs);
        pairs.Flush();
    } else {
        AppendBySweep(order, first, second);
    }
}

void PairSearch::AppendInOrder(std::vector<int> const& order, PairAppender& pairs)
{
    NeighborSweep sweep(m_cells);
    std::vector<Neighbors> neighbors(m_cells.size());
    std::generate(neighbors.begin(), neighbors.end(), [&] { return sweep.Next(); });
    for (int const cell : order) {
        std::size_t const number = static_cast<std::size_t>(cell);
        AppendPairsOf(m_cells[number], neighbors[number], pairs);
    }
}

/// With few pairs to a cell, what costs is to fetch cells from all over memory. So this finds the pairs cell
/// after cell as they lie, and puts them in order afterwards.
void PairSearch::AppendBySweep(std::vector<int> const& order, IntArray& first, IntArray& second)
{
    IntArray foundFirst;
    IntArray foundSecond;
    std::vector<int> begin = {0};
    begin.reserve(m_cells.size() + 1);
    {
        NeighborSweep sweep(m_cells);
        PairAppender pairs(foundFirst, foundSecond);
        for (Cell const& cell : m_cells) {
            AppendPairsOf(cell, sweep.Next(), pairs);
            begin.push_back(pairs.GetCount());
        }
        pairs.Flush();
    }
    if (begin.back() == 0) {
        return;
    }
    BlockAppender firstEnd(first);
    BlockAppender secondEnd(second);
    firstEnd.Reserve(begin.back());
    secondEnd.Reserve(begin.back());
    for (int const number : order) {
        int const from = begin[static_cast<std::size_t>(number)];
        int const count = begin[static_cast<std::size_t>(number) + 1] - from;
        firstEnd.Append(foundFirst.GetData() + from, count);
        secondEnd.Append(foundSecond.GetData() + from, count);
    }
}

void PairSearch::AppendPairsOf(Cell const& cell, Neighbors const& neighbors, PairAppender& pairs)
{
    GatherCandidates(cell, neighbors);
    if (static_cast<std::size_t>(cell.count) <= smallCell / m_candidateCount) {
        AppendPairsOfSmall(cell, pairs);
    } else {
        AppendPairsOfLarge(cell, pairs);
    }
}

void PairSearch::CopyPoints(VoxelStore const& voxels)
{
    std::vector<VoxelStore::Voxel> found;
    std::vector<Ordered> byKey;
    found.reserve(voxels.GetVoxelCount());
    byKey.reserve(voxels.GetVoxelCount());
    std::size_t pointCount = 0;
    voxels.ForEachVoxel([&](VoxelStore::Voxel const& voxel) {
        byKey.push_back({static_cast<std::uint32_t>(voxel.key), static_cast<int>(found.size())});
        found.push_back(voxel);
        pointCount += static_cast<std::size_t>(voxel.count);
    });
    SortByOrder(byKey);

    m_cells.reserve(found.size());
    m_pointCount = pointCount;
    m_points.reset(new double[4 * pointCount + copyBlock]);
    std::fill_n(m_points.get() + 4 * pointCount, copyBlock, 0.0);
    std::size_t begin = 0;
    std::size_t largest = 0;
    for (Ordered const& entry : byKey) {
        VoxelStore::Voxel const& voxel = found[static_cast<std::size_t>(entry.item)];
        std::size_t const count = static_cast<std::size_t>(voxel.count);
        m_cells.push_back({voxel.key, voxel.count, begin, voxel.firstLine});
        begin += count;
        largest = std::max(largest, count);
    }
    for (Cell const& cell : m_cells) {
        std::size_t const count = static_cast<std::size_t>(cell.count);
        double* target = m_points.get() + 4 * cell.begin;
        std::size_t copied = 0;
        voxels.ForEachLine(cell.firstLine, cell.count, [&](VoxelStore::Line const& line) {
            for (std::size_t lane = 0; lane != VoxelStore::lanes && copied != count;
                 ++lane, ++copied, ++target) {
                target[0] = line.x[lane];
                target[count] = line.y[lane];
                target[2 * count] = line.z[lane];
                target[3 * count] = line.index[lane];
            }
        });
    }

    std::size_t const capacity = std::min(pointCount, largest * (halfVoxelOffsets.size() + 1)) + copyBlock;
    for (std::vector<double>* buffer : {&m_x, &m_y, &m_z, &m_indices}) {
        buffer->resize(capacity);
    }
    m_groups.resize(capacity + 2 * copyBlock);
    m_near.resize(smallCell + copyBlock);
    m_nearEnd.resize(std::min(largest, smallCell));
}

PairSearch::Neighbors PairSearch::NeighborSweep::Next()
{
    int const key = m_cells[m_next++].key;
    int const i = key / (voxelsPerAxis * voxelsPerAxis);
    int const j = key / voxelsPerAxis % voxelsPerAxis;
    int const k = key % voxelsPerAxis;
    bool const isInterior = IsInterior(i, j, k);
    Neighbors neighbors;
    for (std::size_t n = 0; n != halfVoxelOffsets.size(); ++n) {
        VoxelOffset const& offset = halfVoxelOffsets[n];
        std::int64_t const wanted = std::int64_t(key) + MakeVoxelKey(offset.dx, offset.dy, offset.dz);
        std::size_t cursor = m_cursors[n];
        while (cursor != m_cells.size() && m_cells[cursor].key < wanted) {
            ++cursor;
        }
        m_cursors[n] = cursor;
        bool const isVoxel = (isInterior || IsInGrid(i, j, k, offset)) && cursor != m_cells.size() &&
                             m_cells[cursor].key == wanted;
        neighbors[n] = isVoxel ? static_cast<int>(cursor) : none;
    }
    return neighbors;
}

std::vector<int> PairSearch::GetCellsInOrder(unsigned int hashSize) const
{
    std::vector<Ordered> ordered;
    ordered.reserve(m_cells.size());
    for (Cell const& cell : m_cells) {
        std::uint64_t const bucket = (static_cast<std::uint32_t>(cell.key) >> 4) % hashSize;
        ordered.push_back(
            {bucket << 32 | static_cast<std::uint32_t>(~cell.firstLine), static_cast<int>(ordered.size())});
    }
    SortByOrder(ordered);
    std::vector<int> cells;
    cells.reserve(ordered.size());
    for (Ordered const& entry : ordered) {
        cells.push_back(entry.item);
    }
    return cells;
}

/// Fills the candidate buffer for `cell`.
void PairSearch::GatherCandidates(Cell const& cell, Neighbors const& neighbors)
{
    m_candidateCount = 0;
    m_groupBegin[0] = 0;
    Gather(cell);
    for (std::size_t n = 0; n != neighbors.size(); ++n) {
        m_groupBegin[n + 1] = m_candidateCount;
        if (neighbors[n] != none) {
            Gather(m_cells[static_cast<std::size_t>(neighbors[n])]);
        }
    }
    m_groupBegin.back() = m_candidateCount;
}

void PairSearch::Gather(Cell const& cell)
{
    std::size_t const count = static_cast<std::size_t>(cell.count);
    double const* const source = m_points.get() + 4 * cell.begin;
    CopyBlocks(source, m_x.data() + m_candidateCount, count);
    CopyBlocks(source + count, m_y.data() + m_candidateCount, count);
    CopyBlocks(source + 2 * count, m_z.data() + m_candidateCount, count);
    CopyBlocks(source + 3 * count, m_indices.data() + m_candidateCount, count);
    m_candidateCount += count;
}

/// Writes the candidates from `begin` to `end` that are near candidate `p` to `near`, which has room for all
/// of them, and gives their number. The squared distances have the bits of Point3d::Distance2.
std::size_t PairSearch::FindNear(std::size_t p, std::size_t begin, std::size_t end, int* near) const
{
    constexpr std::size_t block = 32;
    double const x = m_x[p];
    double const y = m_y[p];
    double const z = m_z[p];
    double const limit = m_cutoffSquared;
    std::size_t count = 0;
    while (begin < end) {
        // Up to a whole number of steps of four; the buffers go on behind the candidates.
        std::size_t const size = std::min(block, end - begin);
        double const* const xs = m_x.data() + begin;
        double const* const ys = m_y.data() + begin;
        double const* const zs = m_z.data() + begin;
        double squares[block];
        for (std::size_t n = 0; n < size; n += 4) {
            for (std::size_t lane = n; lane != n + 4; ++lane) {
                double const dx = x - xs[lane];
                double const dy = y - ys[lane];
                double const dz = z - zs[lane];
                squares[lane] = dx * dx + dy * dy + dz * dz;
            }
        }
        // Whether a point is near is hard to predict: write each one, and count those that are.
        for (std::size_t n = 0; n != size; ++n) {
            near[count] = static_cast<int>(begin + n);
            count += squares[n] < limit ? 1 : 0;
        }
        begin += size;
    }
    return count;
}

/// Finds the near candidates of each own point, and brings the pairs from that order into that of the groups.
void PairSearch::AppendPairsOfSmall(Cell const& cell, PairAppender& pairs)
{
    std::size_t const own = static_cast<std::size_t>(cell.count);
    for (std::size_t g = 0; g + 1 != m_groupBegin.size(); ++g) {
        for (std::size_t c = m_groupBegin[g]; c < m_groupBegin[g + 1]; c += 2 * copyBlock) {
            std::fill_n(m_groups.data() + c, 2 * copyBlock, static_cast<unsigned char>(g));
        }
    }
    std::size_t count = 0;
    for (std::size_t p = 0; p != own; ++p) {
        count += FindNear(p, p + 1, m_candidateCount, m_near.data() + count);
        m_nearEnd[p] = count;
    }

    std::array<int, halfVoxelOffsets.size() + 1> position = {};
    for (std::size_t n = 0; n != count; ++n) {
        ++position[m_groups[static_cast<std::size_t>(m_near[n])]];
    }
    int next = 0;
    for (int& entry : position) {
        int const size = entry;
        entry = next;
        next += size;
    }
    pairs.MakeRoom(next);
    int* const first = pairs.GetFirst();
    int* const second = pairs.GetSecond();
    std::size_t n = 0;
    for (std::size_t p = 0; p != own; ++p) {
        int const index = static_cast<int>(m_indices[p]);
        for (; n != m_nearEnd[p]; ++n) {
            std::size_t const candidate = static_cast<std::size_t>(m_near[n]);
            int const target = position[m_groups[candidate]]++;
            first[target] = index;
            second[target] = static_cast<int>(m_indices[candidate]);
        }
    }
    pairs.Advance(next);
}

/// Finds the pairs in their order, group by group.
void PairSearch::AppendPairsOfLarge(Cell const& cell, PairAppender& pairs)
{
    constexpr std::size_t block = 1024;
    int near[block];
    for (std::size_t g = 0; g + 1 != m_groupBegin.size(); ++g) {
        for (std::size_t p = 0; p != static_cast<std::size_t>(cell.count); ++p) {
            int const index = static_cast<int>(m_indices[p]);
            std::size_t begin = std::max(m_groupBegin[g], g == 0 ? p + 1 : 0);
            while (begin < m_groupBegin[g + 1]) {
                std::size_t const end = std::min(m_groupBegin[g + 1], begin + block);
                int const count = static_cast<int>(FindNear(p, begin, end, near));
                pairs.MakeRoom(count);
                std::fill_n(pairs.GetFirst(), count, index);
                std::transform(near, near + count, pairs.GetSecond(), [this](int c) {
                    return static_cast<int>(m_indices[static_cast<std::size_t>(c)]);
                });
                pairs.Advance(count);
                begin = end;
            }
        }
    }
}

} // namespace Vorlane
