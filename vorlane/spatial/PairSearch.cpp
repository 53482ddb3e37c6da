#include "vorlane/spatial/PairSearchInternal.h"

#include <algorithm>
#include <cstring>

namespace Vorlane {

namespace {

/// Copies go in blocks of this many numbers, past the end of what is wanted: the loops are short and even.
constexpr std::size_t copyBlock = 4;
static_assert(copyBlock <= VoxelIndex::padding);

/// A cell whose own points times candidates are at most this many is handled in one go.
constexpr std::size_t smallCell = 8192;

/// With more points to a cell than this, on average, the cells are handled in the order of the results.
constexpr std::size_t crowded = 8;

} // namespace

PairSearch::PairSearch(VoxelIndex const& index, double cutoffSquared)
    : m_index(index), m_cutoffSquared(cutoffSquared), m_found(m_foundFirst, m_foundSecond)
{
    std::size_t largest = 0;
    for (std::size_t cell = 0; cell != index.GetCellCount(); ++cell) {
        largest = std::max(largest, index.GetCell(cell).count);
    }
    std::size_t const capacity =
        std::min(index.GetPointCount(), largest * (halfVoxelOffsets.size() + 1)) + 2 * copyBlock;
    for (std::vector<double>* buffer : {&m_x, &m_y, &m_z, &m_indices}) {
        buffer->resize(capacity);
    }
    m_groups.resize(capacity + 2 * copyBlock);
    m_near.resize(smallCell + copyBlock);
    m_nearEnd.resize(std::min(largest, smallCell));
}

void PairSearch::AppendPairs(unsigned int hashSize, IntArray& first, IntArray& second)
{
    bool const isCrowded = m_index.GetPointCount() > m_index.GetCellCount() * crowded;
    PairAppender pairs(first, second);
    std::vector<Keyed> const runs = GetRuns(hashSize);
    std::vector<Keyed> cells;
    std::size_t done = 0;
    for (auto run = runs.begin(); run != runs.end();) {
        cells.clear();
        for (std::uint32_t const bucket = GetKey(*run); run != runs.end() && GetKey(*run) == bucket; ++run) {
            AppendCells(GetNumber(*run), cells);
        }
        if (isCrowded) {
            AppendInOrder(cells, pairs);
        } else {
            AppendBySweep(cells, pairs);
        }
        done += cells.size();
        pairs.ExpectShare(static_cast<double>(done) / static_cast<double>(m_index.GetCellCount()));
    }
}

/// The first cell of each run, in the order of the buckets.
std::vector<Keyed> PairSearch::GetRuns(unsigned int hashSize) const
{
    std::vector<Keyed> runs;
    for (std::size_t cell = 0; cell != m_index.GetCellCount(); ++cell) {
        if (cell == 0 || GetRun(cell) != GetRun(cell - 1)) {
            runs.push_back(MakeKeyed(GetRun(cell) % hashSize, static_cast<std::uint32_t>(cell)));
        }
    }
    SortByKey(runs);
    return runs;
}

/// Appends the cells of the run that begins with the cell of this number, with keys that put the newest
/// first.
void PairSearch::AppendCells(std::size_t number, std::vector<Keyed>& cells) const
{
    std::uint32_t const run = GetRun(number);
    for (; number != m_index.GetCellCount() && GetRun(number) == run; ++number) {
        std::uint32_t const oldestPoint = static_cast<std::uint32_t>(*m_index.GetCell(number).GetIndices());
        cells.push_back(MakeKeyed(~oldestPoint, static_cast<std::uint32_t>(number)));
    }
}

void PairSearch::AppendInOrder(std::vector<Keyed>& cells, PairAppender& pairs)
{
    SortByKey(cells);
    for (Keyed const cell : cells) {
        AppendPairsOf(GetNumber(cell), pairs);
    }
}

/// With few points to a cell, what costs is to fetch cells from all over memory. So this finds the pairs cell
/// after cell as they lie, and puts them in order afterwards.
void PairSearch::AppendBySweep(std::vector<Keyed>& cells, PairAppender& pairs)
{
    m_found.Restart();
    m_foundBegin.clear();
    for (Keyed& cell : cells) {
        std::uint32_t const place = static_cast<std::uint32_t>(m_foundBegin.size());
        m_foundBegin.push_back(m_found.GetCount());
        AppendPairsOf(GetNumber(cell), m_found);
        cell = MakeKeyed(GetKey(cell), place);
    }
    m_foundBegin.push_back(m_found.GetCount());
    SortByKey(cells);
    pairs.Reserve(m_found.GetCount());
    for (Keyed const cell : cells) {
        int const begin = m_foundBegin[GetNumber(cell)];
        int const end = m_foundBegin[GetNumber(cell) + 1];
        pairs.Append(m_foundFirst.GetData() + begin, m_foundSecond.GetData() + begin, end - begin);
    }
}

void PairSearch::AppendPairsOf(std::size_t number, PairAppender& pairs)
{
    GatherCandidates(number);
    std::size_t const own = m_groupBegin[1];
    if (own <= smallCell / m_candidateCount) {
        AppendPairsOfSmall(own, pairs);
    } else {
        AppendPairsOfLarge(own, pairs);
    }
}

/// Finds the cells of a run and around it, which serve all cells of the run.
void PairSearch::FindAround(std::uint32_t run)
{
    if (run == m_run) {
        return;
    }
    m_run = run;
    for (int dx = -1; dx != 2; ++dx) {
        for (int dy = -1; dy != 2; ++dy) {
            m_index.FindCells(run * runSize + MakeVoxelKey(dx, dy, -1), runSize + 2,
                              m_around[dx + 1][dy + 1]);
        }
    }
}

/// Fills the candidate buffer for the cell with this number.
void PairSearch::GatherCandidates(std::size_t number)
{
    FindAround(GetRun(number));
    int const key = m_index.GetKey(number);
    int const i = key / (voxelsPerAxis * voxelsPerAxis);
    int const j = key / voxelsPerAxis % voxelsPerAxis;
    int const k = key % voxelsPerAxis;
    bool const isInterior = IsInterior(i, j, k);
    int const place = key % static_cast<int>(runSize) + 1;
    m_candidateCount = 0;
    m_groupBegin[0] = 0;
    Gather(m_index.GetCell(number));
    for (std::size_t n = 0; n != halfVoxelOffsets.size(); ++n) {
        m_groupBegin[n + 1] = m_candidateCount;
        VoxelOffset const& offset = halfVoxelOffsets[n];
        if (isInterior || IsInGrid(i, j, k, offset)) {
            Gather(m_index.GetCell(m_around[offset.dx + 1][offset.dy + 1][place + offset.dz]));
        }
    }
    m_groupBegin.back() = m_candidateCount;
}

inline void PairSearch::Gather(Cell const& cell)
{
    auto const copy = [&](double const* source, std::vector<double>& target, std::size_t n) {
        std::memcpy(target.data() + m_candidateCount + n, source + n, copyBlock * sizeof(double));
    };
    // The first block without asking, as most cells have no more.
    std::size_t n = 0;
    do {
        copy(cell.GetX(), m_x, n);
        copy(cell.GetY(), m_y, n);
        copy(cell.GetZ(), m_z, n);
        copy(cell.GetIndices(), m_indices, n);
        n += copyBlock;
    } while (n < cell.count);
    m_candidateCount += cell.count;
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
void PairSearch::AppendPairsOfSmall(std::size_t own, PairAppender& pairs)
{
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
    pairs.Reserve(next);
    int* const first = pairs.GetFirstEnd();
    int* const second = pairs.GetSecondEnd();
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
void PairSearch::AppendPairsOfLarge(std::size_t own, PairAppender& pairs)
{
    constexpr std::size_t block = 1024;
    int near[block];
    for (std::size_t g = 0; g + 1 != m_groupBegin.size(); ++g) {
        for (std::size_t p = 0; p != own; ++p) {
            int const index = static_cast<int>(m_indices[p]);
            std::size_t begin = std::max(m_groupBegin[g], g == 0 ? p + 1 : 0);
            while (begin < m_groupBegin[g + 1]) {
                std::size_t const end = std::min(m_groupBegin[g + 1], begin + block);
                int const count = static_cast<int>(FindNear(p, begin, end, near));
                pairs.Reserve(count);
                std::fill_n(pairs.GetFirstEnd(), count, index);
                std::transform(near, near + count, pairs.GetSecondEnd(), [this](int c) {
                    return static_cast<int>(m_indices[static_cast<std::size_t>(c)]);
                });
                pairs.Advance(count);
                begin = end;
            }
        }
    }
}

} // namespace Vorlane
