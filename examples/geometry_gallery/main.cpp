// Draws the ideal polyhedra of the catalogue as one SVG page, with their names, codes and angles.

#include "examples/shared/ConvexHull.h"
#include "examples/shared/GeometryNames.h"
#include "examples/shared/PageProgram.h"
#include "examples/shared/Scene.h"
#include "examples/shared/Svg.h"

#include "vorlane/coordination/CoordinationGeometry.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace Examples;

constexpr int columns = 4;
constexpr double cellWidth = 290.0;
constexpr double cellHeight = 268.0;
constexpr double headerHeight = 64.0;
constexpr Colour metalColour = {88, 112, 150};
constexpr Colour siteColour = {214, 120, 72};
constexpr Colour faceColour = {70, 140, 170};

char const* const help = R"(usage: geometry_gallery [FILE]

Draws the ideal polyhedra of the geometry catalogue, with the numbers of their
sites, as one SVG page. Below each stand its name, its short code and the
different angles between two of its sites, in degrees. Geometries without
ideal sites of their own are left out.

The page goes to FILE, or to the standard output if none is named.
)";

/// "90°, 180°": the different angles between two sites.
std::string Angles(Vorlane::CoordinationGeometryType type, int sites)
{
    std::vector<double> angles;
    for (int second = 2; second <= sites; ++second) {
        for (int first = 1; first < second; ++first) {
            double const degrees = Vorlane::CoordinationGeometry::GetCoordinationAngle(type, first, second) *
                                   180.0 / std::acos(-1.0);
            if (std::none_of(angles.begin(), angles.end(),
                             [=](double a) { return std::abs(a - degrees) < 0.05; })) {
                angles.push_back(degrees);
            }
        }
    }
    std::sort(angles.begin(), angles.end());
    std::string text;
    for (double angle : angles) {
        std::string number = Decimal(angle, 1);
        if (number.size() > 2 && number.substr(number.size() - 2) == ".0") {
            number.resize(number.size() - 2);
        }
        text += (text.empty() ? "" : ", ") + number + "\u00b0";
    }
    return text;
}

Scene SceneOf(Orrin::LegacyArray<Spatia::Point3d> const& points)
{
    Scene scene;
    std::vector<Point3d> corners(points.begin(), points.end());
    for (std::vector<Point3d> const& face : ConvexHullFaces(corners)) {
        scene.faces.push_back({face, faceColour});
    }
    scene.balls.push_back({points[0], metalColour, "M"});
    for (int site = 1; site < points.GetSize(); ++site) {
        scene.bonds.push_back({points[0], points[site], metalColour, siteColour});
        scene.balls.push_back({points[site], siteColour, std::to_string(site)});
    }
    return scene;
}

std::string Gallery()
{
    struct Cell
    {
        GeometryName const* name;
        Orrin::LegacyArray<Spatia::Point3d> points;
    };
    std::vector<Cell> cells;
    for (GeometryName const& name : GeometryNames()) {
        Cell cell{&name, {}};
        if (Vorlane::CoordinationGeometry::GetCoordinates(name.type, cell.points) > 0) {
            cells.push_back(cell);
        }
    }
    int const rows = (static_cast<int>(cells.size()) + columns - 1) / columns;
    Svg svg(columns * cellWidth, headerHeight + rows * cellHeight, "gallery");
    svg.Text({24, 32}, 22, "start", "class=\"ink\" font-weight=\"bold\"", "Ideal coordination geometries");
    svg.Text(
        {24, 52}, 12.5, "start", "class=\"faint\"",
        "M is the metal; the numbers are those of the sites; below each name its code and the angles between "
        "two sites");
    int place = 0;
    for (Cell const& cell : cells) {
        double const left = (place % columns) * cellWidth;
        double const top = headerHeight + (place / columns) * cellHeight;
        ++place;
        Scene const scene = SceneOf(cell.points);
        DrawScene(svg, scene, ChooseView(scene, cell.name->upright), {left + 11, top, cellWidth - 22, 210});
        double const middle = left + cellWidth / 2;
        std::string const& title = cell.name->Title();
        double const size = std::min(14.0, 1.72 * (cellWidth - 8) / static_cast<double>(title.size()));
        svg.Text({middle, top + 222}, size, "middle", "class=\"ink\" font-weight=\"bold\"", title);
        std::string const code = cell.name->code.empty() ? "no short code" : cell.name->code;
        svg.Text({middle, top + 238}, 12, "middle", "class=\"faint\"",
                 std::to_string(static_cast<int>(cell.name->type)) + " \u00b7 " + code);
        svg.Text({middle, top + 254}, 11, "middle", "class=\"faint\"",
                 Angles(cell.name->type, static_cast<int>(cell.points.GetSize()) - 1));
    }
    return svg.Finish(true);
}

} // namespace

int main(int argc, char** argv)
{
    return Examples::RunPageProgram(argc, argv, "geometry_gallery", help, Gallery);
}
