// Draws a chain of points, such as the C-alpha atoms of a protein, as a flat ribbon in one SVG picture.

#include "examples/shared/Svg.h"
#include "examples/shared/Vectors.h"

#include "vorlane/curves/Spline.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace Examples;
using PointArray = Orrin::LegacyArray<Point3d>;

constexpr double pageWidth = 900.0;
constexpr double pageHeight = 640.0;
constexpr double margin = 28.0;
constexpr double ribbonWidth = 2.4;   // angstrom
constexpr double tangentLength = 3.8; // angstrom, the step from C-alpha to C-alpha
constexpr double longestStep = 5.0;   // angstrom; a wider gap is a break of the chain
constexpr int pointsPerSegment = 9;

char const* const help = R"(usage: ribbon CHAIN.xyz [FILE]

Threads a Hermite curve through the points of a chain, in angstrom, and draws
it as a ribbon that twists with the chain, from blue at its start to red at its
end. The chain breaks where two points are more than 5 angstrom apart.

The picture goes to FILE, or to the standard output if none is named.
)";

/// The points of an XYZ file; none if it cannot be read.
PointArray ReadChain(std::string const& path)
{
    std::ifstream file(path);
    long count = 0;
    file >> count;
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    PointArray chain;
    std::string element;
    for (Point3d point; chain.GetSize() < count && file >> element >> point.x >> point.y >> point.z;) {
        chain.push_back(point);
    }
    if (chain.GetSize() != count) {
        chain.clear();
    }
    return chain;
}

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

/// The picture, seen along z, the furthest pieces first.
std::string Draw(std::vector<Piece>& pieces)
{
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
    Svg svg(pageWidth, pageHeight, "ribbon");
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
    return svg.Finish(true);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3 || std::string(argv[1]) == "--help") {
        (argc == 2 ? std::cout : std::cerr) << help;
        return argc == 2 ? 0 : 2;
    }
    std::vector<Piece> pieces = MakeRibbon(ReadChain(argv[1]));
    if (pieces.empty()) {
        std::cerr << "ribbon: " << argv[1] << " holds no chain\n";
        return 1;
    }
    std::string const picture = Draw(pieces);
    if (argc == 2) {
        std::cout << picture;
        return 0;
    }
    std::ofstream file(argv[2], std::ios::binary);
    file << picture;
    file.close();
    if (!file) {
        std::cerr << "ribbon: cannot write " << argv[2] << "\n";
        return 1;
    }
    return 0;
}
