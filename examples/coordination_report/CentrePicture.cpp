#include "examples/coordination_report/CentrePicture.h"

#include "examples/coordination_report/DeviationColours.h"
#include "examples/coordination_report/Elements.h"
#include "examples/shared/ConvexHull.h"
#include "examples/shared/GeometryNames.h"
#include "examples/shared/Scene.h"
#include "examples/shared/Svg.h"

#include <algorithm>
#include <string>
#include <vector>

namespace CoordinationReport {
namespace {

using namespace Examples;

constexpr double width = 640.0;
constexpr double sceneSize = 320.0;
constexpr double titleHeight = 44.0;
constexpr double chartLeft = 348.0;
constexpr double barWidth = 196.0;
constexpr double rowHeight = 34.0;
/// More ligands than a coordination sphere has make no polyhedron worth drawing, and a slow one.
constexpr std::size_t mostCorners = 24;
constexpr Colour unmeasuredColour = {126, 136, 150};

Scene BallsAndBonds(Structure const& structure, Centre const& centre)
{
    Scene scene;
    Atom const& metal = structure.atoms[centre.atom];
    scene.balls.push_back({Point3d(), ColourOf(metal.element), structure.NameOf(centre.atom)});
    for (Ligand const& ligand : centre.ligands) {
        Atom const& atom = structure.atoms[ligand.atom];
        Point3d const place = atom.position - metal.position;
        scene.bonds.push_back({Point3d(), place, ColourOf(metal.element), ColourOf(atom.element)});
        scene.balls.push_back({place, ColourOf(atom.element), structure.NameOf(ligand.atom)});
    }
    return scene;
}

double MeanDistance(Centre const& centre)
{
    double sum = 0.0;
    for (Ligand const& ligand : centre.ligands) {
        sum += ligand.distance;
    }
    return sum / static_cast<double>(std::max<std::size_t>(centre.ligands.size(), 1));
}

/// The direction that a geometry's pictures show upwards, turned along with the sites: it is written in terms
/// of the ideal sites, and follows them as they were aligned.
Point3d AlignedUpright(Candidate const& candidate)
{
    using namespace Vorlane;
    std::vector<Point3d> const& sites = candidate.sites;
    switch (candidate.type) {
    case trigonalPyramidal:
        return -1.0 * (sites[0] + sites[1] + sites[2]);
    case tShaped:
        return -1.0 * sites[2];
    case squarePlanar:
        return sites[0].Cross(sites[1]);
    case trigonalPrismatic:
    case trigonalAntiprismatic:
        return sites[0] + sites[1] + sites[2];
    default:
        return sites[0]; // an apex or the end of an axis
    }
}

/// The direction to show upwards of a metal, which comes first, with its ligands: across the largest face
/// with four corners or more, as a cube is drawn; else the nearest ligand, but a row of two lies level.
Point3d UprightOfLigands(std::vector<Point3d> const& places)
{
    if (places.size() <= 3) {
        return places.size() < 2 ? Point3d() : places[1].Cross(Point3d(0.31, 0.87, 0.38));
    }
    Point3d upright = places[1];
    double largest = 0.0;
    for (std::vector<Point3d> const& face : ConvexHullFaces(places)) {
        Point3d area;
        for (std::size_t k = 2; k < face.size(); ++k) {
            area = area + (face[k - 1] - face[0]).Cross(face[k] - face[0]);
        }
        if (face.size() >= 4 && area.Length() > 1.001 * largest) {
            largest = area.Length();
            upright = area;
        }
    }
    return upright;
}

/// Adds the polyhedron: the ideal one of the best geometry, else that of the ligands themselves. Gives the
/// direction that is to point upwards.
Point3d AddPolyhedron(Scene& scene, Structure const& structure, Centre const& centre, Ranking const& ranking)
{
    std::vector<Point3d> corners = {Point3d()};
    Point3d upright;
    Colour colour = unmeasuredColour;
    if (!ranking.candidates.empty()) {
        Candidate const& best = ranking.candidates.front();
        colour = DeviationColour(best.deviation);
        for (Point3d const& site : best.sites) {
            corners.push_back(MeanDistance(centre) * site);
        }
        upright = AlignedUpright(best);
    } else if (centre.ligands.size() <= mostCorners) {
        for (Ligand const& ligand : centre.ligands) {
            corners.push_back(structure.atoms[ligand.atom].position - structure.atoms[centre.atom].position);
        }
        upright = UprightOfLigands(corners);
    }
    for (std::vector<Point3d> const& face : ConvexHullFaces(corners)) {
        scene.faces.push_back({face, colour});
    }
    return upright;
}

void DrawChart(Svg& svg, Ranking const& ranking, double top)
{
    svg.Text({chartLeft, top + 14}, 12.5, "start", "class=\"faint\"",
             ranking.candidates.empty() ? "No geometry of this number has a deviation." : "Deviation from");
    double largest = 0.0;
    for (Candidate const& candidate : ranking.candidates) {
        largest = std::max(largest, candidate.deviation);
    }
    double y = top + 26;
    for (std::size_t k = 0; k < ranking.candidates.size(); ++k) {
        Candidate const& candidate = ranking.candidates[k];
        bool const best = k == 0;
        svg.Text({chartLeft, y + 12}, 13, "start",
                 best ? "class=\"ink\" font-weight=\"bold\"" : "class=\"ink\"", candidate.title);
        double const length = largest > 0.0 ? barWidth * candidate.deviation / largest : 0.0;
        svg.Rectangle({chartLeft, y + 17}, barWidth, 9, "rx=\"3\" class=\"track\"");
        svg.Rectangle({chartLeft, y + 17}, std::max(length, 2.5), 9,
                      "rx=\"2\" fill=\"" + Hex(DeviationColour(candidate.deviation)) + "\"");
        svg.Text({chartLeft + barWidth + 10, y + 26}, 12.5, "start",
                 best ? "class=\"ink\" font-weight=\"bold\"" : "class=\"ink\"",
                 Decimal(candidate.deviation, 6));
        y += rowHeight;
    }
    if (!ranking.unmeasured.empty()) {
        svg.Text({chartLeft, y + 14}, 11.5, "start", "class=\"faint\"", "Without a deviation:");
        for (std::string const& title : ranking.unmeasured) {
            y += 15;
            svg.Text({chartLeft + 10, y + 14}, 11.5, "start", "class=\"faint\"", title);
        }
    }
}

} // namespace

SceneObjects SceneOf(Structure const& structure, Centre const& centre, Ranking const& ranking)
{
    Scene scene = BallsAndBonds(structure, centre);
    Point3d const upright = AddPolyhedron(scene, structure, centre, ranking);
    return {scene, ChooseView(scene, upright)};
}

std::string DrawCentre(Structure const& structure, RankedCentre const& ranked, std::string const& idPrefix,
                       bool asFile)
{
    double const top = asFile ? titleHeight : 0.0;
    Svg svg(width, top + sceneSize, idPrefix);
    if (asFile) {
        svg.Text({20, 29}, 17, "start", "class=\"ink\" font-weight=\"bold\"",
                 structure.NameOf(ranked.centre.atom) + " in " + structure.FileName());
        svg.Text({width - 20, 29}, 13, "end", "class=\"faint\"",
                 "coordination number " + std::to_string(ranked.centre.ligands.size()));
    }
    DrawScene(svg, ranked.scene.ToScene(), ranked.scene.ToView(), {8, top, sceneSize, sceneSize});
    DrawChart(svg, ranked.ranking, top + 24);
    if (asFile && !ranked.ranking.candidates.empty()) {
        DrawDeviationLegend(svg, {chartLeft, top + sceneSize - 36}, barWidth);
    }
    return svg.Finish(asFile);
}

} // namespace CoordinationReport
