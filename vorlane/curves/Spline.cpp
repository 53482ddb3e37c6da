#include "vorlane/curves/Spline.h"

#include "vorlane/foundation/FrameworkSurface.h"

#include <algorithm>
#include <cstdint>

namespace Vorlane {

using Orrin::LegacyArray;
using Spatia::Point3d;

// The basis cache of all objects. Its array of parameters is built among the load-time objects of the
// library.
double Spline::m_matrix[4][4] = {};
Spline::SplineType Spline::m_oldType = Spline::Beta;
bool Spline::m_recalcMatrix = true;

namespace {

/// One coordinate of one curve segment, a cubic in u.
struct SegmentCubic
{
    double coefficients[4];

    SegmentCubic(double const (&basis)[4][4], double a, double b, double c, double d)
    {
        for (int k = 0; k != 4; ++k) {
            coefficients[k] = basis[k][0] * a + basis[k][1] * b + basis[k][2] * c + basis[k][3] * d;
        }
    }

    double At(double u) const
    {
        return ((coefficients[0] * u + coefficients[1]) * u + coefficients[2]) * u + coefficients[3];
    }
};

/// Writes the points at the parameters `alpha` of the segment between `points[1]` and `points[2]`.
void WriteSegment(double const (&basis)[4][4], Point3d const* points, double const* alpha, int count,
                  Point3d* curve)
{
    SegmentCubic const x(basis, points[0].x, points[1].x, points[2].x, points[3].x);
    SegmentCubic const y(basis, points[0].y, points[1].y, points[2].y, points[3].y);
    SegmentCubic const z(basis, points[0].z, points[1].z, points[2].z, points[3].z);
    for (int j = 0; j != count; ++j) {
        double const u = alpha[j];
        curve[j] = Point3d(x.At(u), y.At(u), z.At(u));
    }
}

void Scale(double (&matrix)[4][4], double factor)
{
    for (auto& row : matrix) {
        for (double& element : row) {
            element *= factor;
        }
    }
}

void Assign(double (&matrix)[4][4], double const (&values)[4][4])
{
    std::copy(&values[0][0], &values[0][0] + 16, &matrix[0][0]);
}

} // namespace

Spline::Spline(SplineType type) : m_type(type)
{
    if (type != m_oldType) {
        m_recalcMatrix = true;
    }
    m_oldType = type;
    if (type == Cardinal) {
        m_tension = 0.5;
    }
}

void Spline::SetTension(double tension)
{
    m_tension = tension;
    m_recalcMatrix = true;
}

void Spline::SetBias(double bias)
{
    m_bias = bias;
    m_recalcMatrix = true;
}

void Spline::SetGranularity(int granularity)
{
    m_granularity = granularity;
    m_recalcMatrix = true;
}

int Spline::GetCubicSpline(LegacyArray<Point3d> const& points, LegacyArray<Point3d>& curve) const
{
    int const granularity = m_granularity;
    if (granularity < 1) {
        curve.clear();
        return 1;
    }
    if (&points == &curve) {
        LegacyArray<Point3d> const copy(points);
        return GetCubicSpline(copy, curve);
    }

    std::int64_t const pointCount = points.GetSize();
    curve.SetSize((pointCount + 2) * granularity, -1);
    if (m_recalcMatrix) {
        if (m_type == Hermite) {
            return 1;
        }
        RebuildCache();
    }

    Point3d const* const control = points.GetData();
    Point3d* const output = curve.GetData();
    int const cached = std::min(granularity, m_alpha.GetSize());
    std::int64_t written = 0;
    for (std::int64_t first = 0; first + 3 < pointCount; ++first) {
        WriteSegment(m_matrix, control + first, m_alpha.GetData(), cached, output + written);
        if (cached < granularity) {
            // The table holds the parameters of a coarser object: the index test of the array refuses the
            // next.
            m_alpha.GetAt(cached);
        }
        written += granularity;
    }
    curve.SetSize(written, -1);
    return 1;
}

void Spline::RebuildCache() const
{
    switch (m_type) {
    case Beta:
        GetBetaMatrix();
        break;
    case Cardinal:
        GetCardinalMatrix();
        break;
    case Bspline:
        GetBsplineMatrix();
        break;
    case Hermite:
        break;
    }
    m_alpha.SetSize(m_granularity, -1);
    double* const alpha = m_alpha.GetData();
    for (int i = 0; i != m_granularity; ++i) {
        alpha[i] = static_cast<double>(i) / m_granularity;
    }
    m_recalcMatrix = false;
}

void Spline::GetBetaMatrix() const
{
    double const t = m_tension;
    double const b = m_bias;
    double const b2 = b * b;
    double const b3 = b2 * b;
    double const d = 2.0 + 4.0 * b + 4.0 * b2 + 2.0 * b3 + t;
    Assign(m_matrix, {
                         {-2.0 * b3, 2.0 * (b3 + t + b2 + b), -2.0 * (b2 + t + b + 1.0), 2.0},
                         {6.0 * b3, -3.0 * (2.0 * b3 + t + 2.0 * b2), 3.0 * (2.0 * b2 + t), 0.0},
                         {-6.0 * b3, 6.0 * (b3 - b), 6.0 * b, 0.0},
                         {2.0 * b3, t + 4.0 * (b2 + b), 2.0, 0.0},
                     });
    Scale(m_matrix, 1.0 / d);
}

void Spline::GetCardinalMatrix() const
{
    double const t = m_tension;
    Assign(m_matrix, {
                         {-t, 2.0 - t, t - 2.0, t},
                         {2.0 * t, t - 3.0, 3.0 - 2.0 * t, -t},
                         {-t, 0.0, t, 0.0},
                         {0.0, 1.0, 0.0, 0.0},
                     });
}

void Spline::GetBsplineMatrix() const
{
    double const t = m_tension;
    Assign(m_matrix, {
                         {-t, 12.0 - 9.0 * t, 9.0 * t - 12.0, t},
                         {3.0 * t, 12.0 * t - 18.0, 18.0 - 15.0 * t, 0.0},
                         {-3.0 * t, 0.0, 3.0 * t, 0.0},
                         {t, 6.0 - 2.0 * t, t, 0.0},
                     });
    Scale(m_matrix, 0.16666666666666666);
}

double Spline::Matrix(double a, double b, double c, double d, double u) const
{
    return SegmentCubic(m_matrix, a, b, c, d).At(u);
}

} // namespace Vorlane
