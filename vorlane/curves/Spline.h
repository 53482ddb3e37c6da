#ifndef VORLANE_CURVES_SPLINE_H
#define VORLANE_CURVES_SPLINE_H

/// \file
/// Curves through or along a sequence of points in space, as dense polylines: the lines and ribbons of a
/// viewer.

#include "vorlane/Export.h"
#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/foundation/ValueTypes.h"

namespace Vorlane {

/// Turns control points into a polyline: uniform cubic curves over three bases, and Hermite curves with
/// tilted tangents through a chain.
///
/// **The basis cache.** All objects of the process share one basis matrix and one table of curve parameters.
/// The cache has no key: it is rebuilt only after a setter of any object, or after a constructor whose type
/// is not that of the constructor before. Until then GetCubicSpline goes on with the matrix and the table of
/// the object that was rebuilt last, whatever its own type, tension and bias are. Set a parameter before each
/// curve when several objects take turns. Copying and assignment owe no rebuild either.
///
/// Constructors, setters and GetCubicSpline of all objects touch the cache without a lock and must not run at
/// the same time. HermiteSingle and GetHermiteSpline touch no shared state.
class VORLANE_EXPORT Spline
{
public:
    /// The basis of GetCubicSpline. GetHermiteSpline makes the same curve whatever the type.
    enum SplineType : int
    {
        Beta = 0,     ///< with tension and bias
        Cardinal = 1, ///< through the control points, with tension
        Bspline = 2,  ///< the uniform B-spline
        Hermite = 3   ///< none: GetCubicSpline then follows whatever basis is cached
    };

    /// A curve of 6 points per segment, bias 0.0 and tension 1.0; `Cardinal` has tension 0.5. If `type` is
    /// not that of the constructor that ran before, for any object, the cache is rebuilt at the next use.
    explicit Spline(SplineType type);

    /// These copy the four parameters and leave the cache alone.
    Spline(Spline const& other) = default;
    Spline& operator=(Spline const& other) = default;

    /// Each setter stores its value and has the cache rebuilt at the next use, by whichever object that is.
    void SetTension(double tension);
    void SetBias(double bias); ///< only the beta-spline basis uses it
    void SetGranularity(int granularity);

    /// The number of curve points per segment.
    int GetGranularity() const { return m_granularity; }

    /// Fills `curve` with the uniform cubic curve along the n control points: for each four neighbouring
    /// points P[s-1] to P[s+2], the curve from u = 0 up to, but not including, u = 1, in steps of
    /// 1/granularity. With granularity g that makes (n - 3) g points. The curve reaches neither the first nor
    /// the last control point; fewer than four control points give an empty curve. `curve` may be the object
    /// `points`.
    ///
    /// - A `Hermite` object leaves a pending rebuild pending, and `curve` then has (n + 2) g entries, the new
    ///   ones (0, 0, 0). With no rebuild pending it follows the cached matrix.
    /// - A type outside the enumeration follows the cached matrix.
    /// - A granularity below 1 gives an empty curve and leaves the cache as it is.
    ///
    /// The bases are those of B. A. Barsky, "The Beta-spline: A Local Representation Based on Shape
    /// Parameters and Fundamental Geometric Measures" (1981), of the cardinal spline of E. Catmull and R.
    /// Rom, "A Class of Local Interpolating Splines" (1974), and of the uniform B-spline.
    ///
    /// \returns 1
    /// \throws CInvalidArgException if there are four points or more and the granularity exceeds that of
    ///         the last rebuild; `curve` has (n + 2) g entries then.
    /// \throws std::length_error if (n + 2) g does not fit in a signed 32-bit number; nothing has changed
    ///         then.
    int GetCubicSpline(Orrin::LegacyArray<Spatia::Point3d> const& points,
                       Orrin::LegacyArray<Spatia::Point3d>& curve) const;

    /// Fills `curve` with a smooth polyline that runs through the leading `pointCount` points of `points` (at
    /// least 2), in segments of `pointsPerSegment` points, both ends included (at least 2). Entry
    /// (pointsPerSegment - 1) i is exactly chain point i.
    ///
    /// The tangents have the length `tangentLength`. With `smoothingCycles` 0 each is the central difference,
    /// turned by 11 degrees away from the binormal; a straight stretch has no binormal and no such turn. A
    /// positive `smoothingCycles` first smooths the interior points in place, that many times, with the
    /// weights 1/4, 1/2, 1/4; then, and for a negative number without the smoothing, tangents are plain
    /// central differences. `before` and `after`, unless null, are points ahead of and behind the chain that
    /// fix the directions at its ends, with the turn; ends without them follow the first and the last
    /// stretch.
    ///
    /// `curve` gets (pointsPerSegment + 1) m entries, where m is the size of `points`. Those behind the
    /// result keep their values, and are (0, 0, 0) if they are new. `before` and `after` may point into
    /// `curve` or `points`. `curve` may be the object `points`: the polyline then takes the place of the
    /// chain. Takes no memory but that of `curve`, save in this last case.
    ///
    /// \returns the number of curve points, (pointCount - 1)(pointsPerSegment - 1) + 1; or 0, and then
    ///          `points` and `curve` are as they were, if `pointCount` is below 2 or above the size of
    ///          `points`, or `pointsPerSegment` is below 2.
    /// \throws std::length_error if the size of `curve` does not fit in a signed 32-bit number; nothing has
    ///         changed then.
    int GetHermiteSpline(Orrin::LegacyArray<Spatia::Point3d>& points, int pointCount,
                         Orrin::LegacyArray<Spatia::Point3d>& curve, Spatia::Point3d* before,
                         Spatia::Point3d* after, int smoothingCycles, int pointsPerSegment,
                         double tangentLength) const;

    /// The point at `u` (0 to 1) of the Hermite segment from `p0` with tangent `t0` to `p1` with tangent
    /// `t1`.
    static Spatia::Point3d HermiteSingle(Spatia::Point3d const& p0, Spatia::Point3d const& p1,
                                         Spatia::Point3d const& t0, Spatia::Point3d const& t1, double& u);

protected:
    /// Each of these puts its basis, made from the tension and the bias of this object, into the cache.
    void GetBetaMatrix() const;
    void GetCardinalMatrix() const;
    void GetBsplineMatrix() const;

    /// One coordinate of the cubic curve at `u`, from that coordinate of four neighbouring control points and
    /// the cached matrix.
    double Matrix(double a, double b, double c, double d, double u) const;

    /// Writes `count` points of the Hermite segment from `p0` to `p1`, both included, into the entries of
    /// `curve` from `start` on, which must exist. A count of 1 writes `p0`, one below 1 nothing.
    void Hermite1to4(Spatia::Point3d const& p0, Spatia::Point3d const& p1, Spatia::Point3d const& t0,
                     Spatia::Point3d const& t1, Orrin::LegacyArray<Spatia::Point3d>& curve, int start,
                     int count) const;

private:
    void RebuildCache() const;

    SplineType m_type;
    int m_granularity = 6;
    double m_tension = 1.0;
    double m_bias = 0.0;

    static double m_matrix[4][4];
    static DoubleArray m_alpha;
    static SplineType m_oldType;
    static bool m_recalcMatrix;
};

} // namespace Vorlane

#endif
