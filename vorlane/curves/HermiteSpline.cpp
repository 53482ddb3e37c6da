#include "vorlane/curves/Spline.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Vorlane {

using Orrin::LegacyArray;
using Spatia::Point3d;

namespace {

constexpr double cosine11 = 0.9816;      ///< of 11 degrees; weight of the direction in a tilted tangent
constexpr double sine11 = 0.1908;        ///< of 11 degrees; weight of the binormal
constexpr double endTangentShare = 0.3;  ///< part of the neighbour's tangent that a free end takes off
constexpr double closenessToOne = 0.001; ///< a parameter this close to 1 counts as 1 in the weight of t0

/// What a Hermite segment's ends and tangents count for at one parameter.
struct HermiteWeights
{
    double p0;
    double p1;
    double t0;
    double t1;

    HermiteWeights() = default;

    /// `t0Parameter` stands for `u` in the linear term of `t0`.
    HermiteWeights(double u, double t0Parameter)
    {
        double const u2 = u * u;
        double const u3 = u2 * u;
        p0 = 1.0 + (2.0 * u3 - 3.0 * u2);
        p1 = 3.0 * u2 - 2.0 * u3;
        t0 = t0Parameter + (u3 - 2.0 * u2);
        t1 = u3 - u2;
    }
};

struct HermiteSegment
{
    Point3d p0;
    Point3d p1;
    Point3d t0;
    Point3d t1;

    Point3d At(HermiteWeights const& weights) const
    {
        double const x = weights.p0 * p0.x + weights.p1 * p1.x + weights.t0 * t0.x + weights.t1 * t1.x;
        double const y = weights.p0 * p0.y + weights.p1 * p1.y + weights.t0 * t0.y + weights.t1 * t1.y;
        double const z = weights.p0 * p0.z + weights.p1 * p1.z + weights.t0 * t0.z + weights.t1 * t1.z;
        return Point3d(x, y, z);
    }
};

/// The weights of a stretch of a segment's points. They are the same for all segments, and a table of this
/// size stays in the cache however many points a segment has.
class WeightTable
{
public:
    static constexpr int capacity = 256;

    /// The weights of the points from `first` on of a segment of `count` points.
    WeightTable(int first, int count) : m_size(std::min(capacity, count - first))
    {
        int const intervals = std::max(count - 1, 1);
        for (int i = 0; i != m_size; ++i) {
            double const u = static_cast<double>(first + i) / intervals;
            m_weights[i] = HermiteWeights(u, std::abs(u - 1.0) < closenessToOne ? 1.0 : u);
        }
    }

    int GetSize() const { return m_size; }

    /// The segment comes as a copy, which no store into the curve can change.
    void Write(HermiteSegment segment, Point3d* curve, int count) const
    {
        for (int i = 0; i != count; ++i) {
            HermiteWeights const weights = m_weights[i];
            curve[i] = segment.At(weights);
        }
    }

private:
    int m_size;
    HermiteWeights m_weights[capacity];
};

/// The points of a chain, and the Hermite tangents at them.
class Chain
{
public:
    Chain(Point3d* points, int count, double tangentLength)
        : m_points(points), m_count(count), m_tangentLength(tangentLength)
    {}

    /// Fixes the tangents at the ends from the points ahead of and behind the chain, null for none.
    void SetEnds(Point3d const* before, Point3d const* after)
    {
        int const last = m_count - 1;
        Point3d const inward = m_count > 2 ? CentralDifference(1) : Point3d::zero;
        Point3d const start = before != nullptr ? m_points[0] - *before
                                                : (m_points[1] - m_points[0]) - endTangentShare * inward;
        // In a chain of two points the end sees the direction of the start.
        Point3d const outward = m_count > 2 ? CentralDifference(last - 1) : start;
        Point3d const end = after != nullptr
                                ? *after - m_points[last]
                                : (m_points[last] - m_points[last - 1]) - endTangentShare * outward;
        m_start = Tilted(start, m_count > 2 ? Binormal(1) : Point3d::zero);
        m_end = Tilted(end, m_count > 2 ? Binormal(last - 1) : Point3d::zero);
    }

    /// Moves the interior points halfway to the middle of their neighbours, `cycles` times.
    void Smooth(int cycles)
    {
        for (int cycle = 0; cycle < cycles; ++cycle) {
            Point3d previous = m_points[0];
            for (int i = 1; i < m_count - 1; ++i) {
                Point3d const present = m_points[i];
                m_points[i] = 0.5 * (present + 0.5 * (previous + m_points[i + 1]));
                previous = present;
            }
        }
    }

    /// Changes to tangents without tilt. An end with a point of its own keeps its direction.
    void UsePlainTangents(bool startIsFixed, bool endIsFixed)
    {
        m_plain = true;
        m_start = Plain(startIsFixed ? m_start : m_points[1] - m_points[0]);
        m_end = Plain(endIsFixed ? m_end : m_points[m_count - 1] - m_points[m_count - 2]);
    }

    /// Writes the points from `first` on of every segment, as many as there are weights, into the whole
    /// curve.
    void Write(WeightTable const& weights, int first, int pointsPerSegment, Point3d* curve) const
    {
        // Tangents are made some at a time, so that their roots and divisions overlap.
        constexpr int block = 32;
        Point3d tangents[block + 1];
        // The last point of a segment is the first of the next, so only the last segment writes its own.
        int const inner = std::min(weights.GetSize(), pointsPerSegment - 1 - first);
        int const segmentCount = m_count - 1;
        Point3d* output = curve + first;
        for (int begin = 0; begin < segmentCount; begin += block) {
            int const size = std::min(block, segmentCount - begin);
            for (int n = 0; n <= size; ++n) {
                tangents[n] = Tangent(begin + n);
            }
            for (int n = 0; n != size; ++n) {
                int const i = begin + n;
                weights.Write({m_points[i], m_points[i + 1], tangents[n], tangents[n + 1]}, output,
                              i == segmentCount - 1 ? weights.GetSize() : inner);
                output += pointsPerSegment - 1;
            }
        }
    }

private:
    Point3d Tangent(int i) const
    {
        if (i == 0) {
            return m_start;
        }
        if (i == m_count - 1) {
            return m_end;
        }
        return m_plain ? Plain(CentralDifference(i)) : Tilted(CentralDifference(i), Binormal(i));
    }

    Point3d CentralDifference(int i) const { return m_points[i + 1] - m_points[i - 1]; }

    Point3d Binormal(int i) const
    {
        return (m_points[i] - m_points[i - 1]).Cross(m_points[i + 1] - m_points[i]);
    }

    Point3d Tilted(Point3d direction, Point3d binormal) const
    {
        return m_tangentLength * (cosine11 * direction.Normalize() - sine11 * binormal.Normalize());
    }

    Point3d Plain(Point3d direction) const { return m_tangentLength * direction.Normalize(); }

    Point3d* m_points;
    int m_count;
    double m_tangentLength;
    bool m_plain = false;
    Point3d m_start;
    Point3d m_end;
};

} // namespace

int Spline::GetHermiteSpline(LegacyArray<Point3d>& points, int pointCount, LegacyArray<Point3d>& curve,
                             Point3d* before, Point3d* after, int smoothingCycles, int pointsPerSegment,
                             double tangentLength) const
{
    if (pointCount < 2 || pointCount > points.GetSize() || pointsPerSegment < 2) {
        return 0;
    }
    // Resizing and filling the curve may move or overwrite what the pointers lead to.
    Point3d const beforeCopy = before != nullptr ? *before : Point3d::zero;
    Point3d const afterCopy = after != nullptr ? *after : Point3d::zero;
    LegacyArray<Point3d> pointsCopy;
    bool const curveIsChain = &points == &curve;
    if (curveIsChain) {
        pointsCopy = points;
    }
    curve.SetSize((static_cast<std::int64_t>(pointsPerSegment) + 1) * points.GetSize(), -1);

    Point3d* const chainPoints = curveIsChain ? pointsCopy.GetData() : points.GetData();
    Chain chain(chainPoints, pointCount, tangentLength);
    chain.SetEnds(before != nullptr ? &beforeCopy : nullptr, after != nullptr ? &afterCopy : nullptr);
    if (smoothingCycles != 0) {
        chain.Smooth(smoothingCycles);
        chain.UsePlainTangents(before != nullptr, after != nullptr);
    }

    for (int first = 0; first < pointsPerSegment; first += WeightTable::capacity) {
        chain.Write(WeightTable(first, pointsPerSegment), first, pointsPerSegment, curve.GetData());
    }
    return (pointCount - 1) * (pointsPerSegment - 1) + 1;
}

Point3d Spline::HermiteSingle(Point3d const& p0, Point3d const& p1, Point3d const& t0, Point3d const& t1,
                              double& u)
{
    return HermiteSegment{p0, p1, t0, t1}.At(HermiteWeights(u, u));
}

void Spline::Hermite1to4(Point3d const& p0, Point3d const& p1, Point3d const& t0, Point3d const& t1,
                         LegacyArray<Point3d>& curve, int start, int count) const
{
    HermiteSegment const segment{p0, p1, t0, t1};
    for (std::int64_t first = 0; first < count; first += WeightTable::capacity) {
        WeightTable const weights(static_cast<int>(first), count);
        weights.Write(segment, curve.GetData() + start + first, weights.GetSize());
    }
}

} // namespace Vorlane
