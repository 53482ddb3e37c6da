#ifndef VORLANE_SPATIAL_VOXELGRIDINTERNAL_H
#define VORLANE_SPATIAL_VOXELGRIDINTERNAL_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace Vorlane {

/// The largest number of voxels on an axis whose cube, and so every key, fits a signed 32-bit number: the
/// cube root of 2^31 - 1, truncated.
constexpr int voxelsPerAxis = 1290;

struct VoxelOffset
{
    int dx;
    int dy;
    int dz;
};

// The order of these tables is the order of the results.
constexpr std::array<VoxelOffset, 27> allVoxelOffsets = {{
    {0, 0, 0},   {-1, 0, 0},   {1, 0, 0},   //
    {0, 1, 0},   {-1, 1, 0},   {1, 1, 0},   //
    {0, -1, 0},  {-1, -1, 0},  {1, -1, 0},  //
    {0, 1, -1},  {-1, 1, -1},  {1, 1, -1},  //
    {0, 0, -1},  {-1, 0, -1},  {1, 0, -1},  //
    {0, -1, -1}, {-1, -1, -1}, {1, -1, -1}, //
    {0, 1, 1},   {-1, 1, 1},   {1, 1, 1},   //
    {0, 0, 1},   {-1, 0, 1},   {1, 0, 1},   //
    {0, -1, 1},  {-1, -1, 1},  {1, -1, 1},  //
}};

// One of each two opposite offsets, so that two neighbouring voxels meet from one side only.
constexpr std::array<VoxelOffset, 13> halfVoxelOffsets = {{
    {1, 0, 0}, //
    {-1, -1, 0},
    {0, -1, 0},
    {1, -1, 0}, //
    {-1, 1, 1},
    {0, 1, 1},
    {1, 1, 1}, //
    {-1, 0, 1},
    {0, 0, 1},
    {1, 0, 1}, //
    {-1, -1, 1},
    {0, -1, 1},
    {1, -1, 1}, //
}};

/// A number below 27 for each offset, by dx, then dy, then dz.
constexpr std::size_t GetPlace(VoxelOffset const& offset)
{
    return static_cast<std::size_t>((offset.dx + 1) * 9 + (offset.dy + 1) * 3 + offset.dz + 1);
}

/// The key of the voxel (i, j, k); also, with wrap-around, the difference of keys that belongs to an offset.
constexpr std::uint32_t MakeVoxelKey(int i, int j, int k)
{
    constexpr std::uint32_t perAxis = voxelsPerAxis;
    auto const place = [](int coordinate) {
        return static_cast<std::uint32_t>(coordinate);
    };
    return (place(i) * perAxis + place(j)) * perAxis + place(k);
}

/// Whether the voxel at `offset` from the voxel (i, j, k) lies in the grid.
constexpr bool IsInGrid(int i, int j, int k, VoxelOffset const& offset)
{
    auto const isInside = [](int coordinate) {
        return coordinate >= 0 && coordinate < voxelsPerAxis;
    };
    return isInside(i + offset.dx) && isInside(j + offset.dy) && isInside(k + offset.dz);
}

/// Whether all neighbours of the voxel (i, j, k) lie in the grid.
constexpr bool IsInterior(int i, int j, int k)
{
    auto const isInterior = [](int coordinate) {
        return coordinate > 0 && coordinate < voxelsPerAxis - 1;
    };
    return isInterior(i) && isInterior(j) && isInterior(k);
}

} // namespace Vorlane

#endif
