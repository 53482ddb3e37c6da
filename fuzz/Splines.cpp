// Cubic curves of several objects that take turns, beside a plain account of the basis that they share and of
// the weights that its formulas give to four neighbouring points.
//
// The input is a list of operations, each a letter, the digit of an object and an argument: `n` makes the
// object anew with a type, `a` assigns it another one, `t` sets its tension, `b` its bias, `g` its
// granularity; any other letter draws the curve through so many points, in place if it is a capital.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "vorlane/curves/Spline.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

using Spatia::Point3d;
using Vorlane::Spline;
using VorlaneFuzz::Input;
using VorlaneFuzz::Require;

namespace {

using PointArray = Orrin::LegacyArray<Point3d>;

/// What decides a curve.
struct Parameters
{
    int type = Spline::Cardinal;
    double tension = 0.5;
    double bias = 0.0;
    int granularity = 6;
};

/// The weights of four neighbouring points at u: the cardinal spline; the B-spline, mixed with the straight
/// line by the tension; the beta-spline by its two shape parameters.
std::array<double, 4> Weights(Parameters const& p, double u)
{
    double const t = p.tension, b = p.bias, v = 1.0 - u;
    double const hermite = u * u * (3.0 - 2.0 * u); // from 0 to 1, level at both ends
    if (p.type == Spline::Cardinal) {
        return {-t * u * v * v, 1.0 - hermite + t * u * u * v, hermite + t * u * v * v, -t * u * u * v};
    }
    if (p.type == Spline::Bspline) {
        double const first = v * v * v / 6.0, last = u * u * u / 6.0;
        double const third = (1.0 + 3.0 * u + 3.0 * u * u - 3.0 * u * u * u) / 6.0;
        double const rest = 1.0 - t; // what the tension takes off goes to the two in the middle
        return {t * first, t * (1.0 - first - third - last) + rest * (1.0 - hermite),
                t * third + rest * hermite, t * last};
    }
    double const d = 2.0 + 4.0 * b + 4.0 * b * b + 2.0 * b * b * b + t;
    double const first = 2.0 * b * b * b * v * v * v / d, last = 2.0 * u * u * u / d;
    double const third =
        (2.0 * (b * b * u * u * (3.0 - u) + b * u * (3.0 - u * u)) + 2.0 * (1.0 - u * u * u) + t * hermite) /
        d;
    return {first, 1.0 - first - third - last, third, last};
}

/// Several objects, and an account of them and of the basis that they share.
class Session
{
public:
    Session()
    {
        // Whatever ran before, this leaves the basis of these parameters.
        for (Spline& spline : m_splines) {
            spline.SetGranularity(6);
        }
        PointArray curve;
        m_splines[0].GetCubicSpline(curve, curve);
    }

    void Step(Input& input)
    {
        int const letter = input.Byte();
        std::size_t const object = static_cast<std::size_t>(input.Byte()) % m_splines.size();
        int const argument = (input.Byte() + 256 - '0') % 256;
        Spline& spline = m_splines[object];
        Parameters& parameters = m_parameters[object];
        double const number = argument / 16.0;
        switch (letter) {
        case 'n': {
            int const type = argument % 5;
            spline = Spline(static_cast<Spline::SplineType>(type));
            m_isRebuildDue = m_isRebuildDue || type != m_latestType;
            m_latestType = type;
            parameters = {type, type == Spline::Cardinal ? 0.5 : 1.0, 0.0, 6};
            break;
        }
        case 'a':
            spline = m_splines[static_cast<std::size_t>(argument) % m_splines.size()];
            parameters = m_parameters[static_cast<std::size_t>(argument) % m_splines.size()];
            break;
        case 't':
            spline.SetTension(number);
            parameters.tension = number;
            m_isRebuildDue = true;
            break;
        case 'b':
            spline.SetBias(number);
            parameters.bias = number;
            m_isRebuildDue = true;
            break;
        case 'g':
            spline.SetGranularity(argument % 9 - 1);
            parameters.granularity = argument % 9 - 1;
            m_isRebuildDue = true;
            break;
        default:
            Draw(spline, parameters, argument % 8, std::isupper(letter) != 0);
        }
        Require(spline.GetGranularity() == parameters.granularity);
    }

private:
    void Draw(Spline const& spline, Parameters const& parameters, int pointCount, bool isInPlace)
    {
        PointArray points, other;
        for (int n = 0; n < pointCount; ++n) {
            points.push_back(Point3d(n * n % 5 - 2.5, n, 7.0 - n * n));
        }
        other.push_back(Point3d(8, 8, 8));
        PointArray const control(points);
        PointArray& curve = isInPlace ? points : other;
        PointArray const before(curve);
        int const granularity = parameters.granularity, groups = std::max(pointCount - 3, 0);
        bool isRefused = false;
        try {
            Require(spline.GetCubicSpline(points, curve) == 1);
        } catch (CInvalidArgException const&) {
            isRefused = true;
        }
        if (granularity < 1) {
            Require(!isRefused && curve.GetSize() == 0);
            return;
        }
        bool const isPending = m_isRebuildDue && parameters.type == Spline::Hermite;
        if (m_isRebuildDue && !isPending) {
            if (parameters.type < Spline::Hermite) {
                m_basis = parameters;
            }
            m_basis.granularity = granularity; // which types without a basis set too
            m_isRebuildDue = false;
        }
        Require(isRefused == (!isPending && groups > 0 && granularity > m_basis.granularity));
        Require(curve.GetSize() == (isPending || isRefused ? pointCount + 2 : groups) * granularity);
        int const drawn = isPending ? 0 : isRefused ? m_basis.granularity : groups * granularity;
        for (int n = 0; n < drawn; ++n) {
            double const u = static_cast<double>(n % granularity) / m_basis.granularity;
            std::array<double, 4> const weights = Weights(m_basis, u);
            Point3d expected;
            for (int k = 0; k < 4; ++k) {
                expected = expected + weights[static_cast<std::size_t>(k)] * control[n / granularity + k];
            }
            Require((curve[n] - expected).Length() <= 1e-11);
        }
        for (long n = drawn; n < curve.GetSize(); ++n) {
            Point3d const expected = n < before.GetSize() ? before[n] : Point3d();
            Require(curve[n].Distance2(expected) == 0.0);
        }
    }

    std::array<Spline, 3> m_splines = {Spline(Spline::Cardinal), Spline(Spline::Cardinal),
                                       Spline(Spline::Cardinal)};
    std::array<Parameters, 3> m_parameters;
    Parameters m_basis; ///< of the latest rebuild
    int m_latestType = Spline::Cardinal;
    bool m_isRebuildDue = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, std::min<std::size_t>(size, 300));
    Session session;
    while (!input.HasEnded()) {
        session.Step(input);
    }
    return 0;
}
