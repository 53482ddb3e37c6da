#include "examples/shared/Ribbon.h"

#include "examples/shared/Svg.h"

#include "vorlane/curves/Spline.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Examples {
namespace {

using PointArray = Orrin::LegacyArray<Point3d>;

constexpr double pageWidth = 900.0;
constexpr double pageHeight = 640.0;
constexpr double margin = 28.0;
constexpr double ribbonWidth = 2.4;   // angstrom
constexpr double tangentLength = 3.8; // angstrom, the step from C-alpha to C-alpha
constexpr double longestStep = 5.0;   // angstrom; a wider gap is a break of the chain
constexpr int pointsPerSegment = 9;

/// A stretch of the ribbon between two neighbouring curve points.
struct Piece
{
    Point3d corners[4];
    double part; ///< of the way along the chain
};

/// The direction across the ribbon at chain point `i` of `count`: along the bisector of the bend. A neighbour
/// that points the other way is turned, so that the ribbon does not flip over at every step of a strand.
std::vector<Point3d> GetAcross(Point3d const* chain, int count)
{
    std::vector<Point3d> across(static_cast<std::size_t>(count));
    for (int i = 1; i + 1 < count; ++i) {
        Point3d const normal = (chain[i] - chain[i - 1]).Cross(chain[i + 1] - chain[i]);
        Point3d direction = Unit(normal);
        Point3d const& previous = across[static_cast<std::size_t>(i - 1)];
        if (Dot(direction, previous) < 0.0) {
            direction = -1.0 * direction;
        }
        across[static_cast<std::size_t>(i)] = direction.Length() > 0.5 ? direction : previous;
    }
    if (count > 2) {
        across.front() = across[1];
        across.back() = across[across.size() - 2];
    }
    return across;
}

/// Appends the ribbon through the chain points from `begin` to `end`.
void AppendRibbon(PointArray const& chain, int begin, int end, std::vector<Piece>& pieces)
{
    int const count = end - begin;
    PointArray stretch;
    for (int i = begin; i != end; ++i) {
        stretch.push_back(chain[i]);
    }
    PointArray curve;
    Vorlane::Spline const spline(Vorlane::Spline::Hermite);
    int const size =
        spline.GetHermiteSpline(stretch, count, curve, nullptr, nullptr, 0, pointsPerSegment, tangentLength);
    std::vector<Point3d> const across = GetAcross(stretch.GetData(), count);
    int const steps = pointsPerSegment - 1;
    auto const getEdge = [&](int n, double side) {
        int const segment = std::min(n / steps, count - 2);
        double const part = static_cast<double>(n - segment * steps) / steps;
        Point3d const& from = across[static_cast<std::size_t>(segment)];
        Point3d const& to = across[static_cast<std::size_t>(segment + 1)];
        return curve[n] + 0.5 * side * ribbonWidth * Unit((1.0 - part) * from + part * to);
    };
    for (int n = 0; n + 1 < size; ++n) {
        double const part =
            (begin + static_cast<double>(n) / steps) / static_cast<double>(chain.GetSize() - 1);
        pieces.push_back({{getEdge(n, -1), getEdge(n, 1), getEdge(n + 1, 1), getEdge(n + 1, -1)}, part});
    }
}

std::vector<Piece> MakeRibbon(PointArray const& chain)
{
    std::vector<Piece> pieces;
    int const count = static_cast<int>(chain.GetSize());
    for (int begin = 0; begin < count;) {
        int end = begin + 1;
        while (end < count && (chain[end] - chain[end - 1]).Length() <= longestStep) {
            ++end;
        }
        if (end - begin >= 2) {
            AppendRibbon(chain, begin, end, pieces);
        }
        begin = end;
    }
    return pieces;
}

/// Blue, green, yellow, red along the chain.
Colour GetColour(double part)
{
    constexpr Colour stops[] = {{52, 92, 196}, {46, 160, 140}, {226, 190, 70}, {206, 62, 52}};
    double const position = 3.0 * std::clamp(part, 0.0, 1.0);
    int const stop = std::min(static_cast<int>(position), 2);
    return Mix(stops[stop], stops[stop + 1], position - stop);
}

} // namespace

std::string DrawRibbon(Orrin::LegacyArray<Point3d> const& chain, std::string const& idPrefix, bool asFile)
{
    std::vector<Piece> pieces = MakeRibbon(chain);
    if (pieces.empty()) {
        return {};
    }
    auto const getDepth = [](Piece const& piece) {
        return piece.corners[0].z + piece.corners[2].z;
    };
    std::stable_sort(pieces.begin(), pieces.end(),
                     [&](Piece const& a, Piece const& b) { return getDepth(a) < getDepth(b); });
    Point3d low = pieces.front().corners[0];
    Point3d high = low;
    for (Piece const& piece : pieces) {
        for (Point3d const& corner : piece.corners) {
            low = {std::min(low.x, corner.x), std::min(low.y, corner.y), std::min(low.z, corner.z)};
            high = {std::max(high.x, corner.x), std::max(high.y, corner.y), std::max(high.z, corner.z)};
        }
    }
    double const scale = std::min((pageWidth - 2 * margin) / std::max(high.x - low.x, 1.0),
                                  (pageHeight - 2 * margin) / std::max(high.y - low.y, 1.0));
    Svg svg(pageWidth, pageHeight, idPrefix);
    for (Piece const& piece : pieces) {
        std::vector<Place> corners;
        for (Point3d const& corner : piece.corners) {
            corners.emplace_back(pageWidth / 2 + scale * (corner.x - (low.x + high.x) / 2),
                                 pageHeight / 2 - scale * (corner.y - (low.y + high.y) / 2));
        }
        Point3d const normal =
            Unit((piece.corners[1] - piece.corners[0]).Cross(piece.corners[3] - piece.corners[0]));
        // Lit from the upper left before the page, on both sides; what lies far back fades.
        Point3d const light = Unit({-0.4, 0.5, 0.77});
        double const lit = 0.35 + 0.65 * std::abs(Dot(normal, light));
        double const depth = (high.z - piece.corners[0].z) / std::max(high.z - low.z, 1.0);
        Colour const dark = Mix({16, 20, 30}, GetColour(piece.part), lit);
        std::string const paint = Hex(Mix(dark, {150, 158, 170}, 0.45 * std::clamp(depth, 0.0, 1.0)));
        svg.Polygon(corners, "fill=\"" + paint + "\" stroke=\"" + paint + "\" stroke-width=\"0.6\"");
    }
    return svg.Finish(asFile);
}

} // namespace Examples
