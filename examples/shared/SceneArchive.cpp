#include "examples/shared/SceneArchive.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace Examples {
namespace {

using namespace Lumora;

constexpr std::uint32_t schemaNumber = 24;
constexpr float ballRadius = 0.35F;     // angstrom
constexpr float cylinderRadius = 0.08F; // angstrom
constexpr int labelSize = 10;
constexpr double opaque = 255.0;

Orrin::Color Packed(Colour const& colour, double opacity = 1.0)
{
    auto const byte = [](double value) {
        return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, opaque)));
    };
    return Orrin::Color(byte(colour.red) | byte(colour.green) << 8 | byte(colour.blue) << 16 |
                        byte(opaque * opacity) << 24);
}

Colour Unpacked(Orrin::Color const& color)
{
    return {color.GetRed(), color.GetGreen(), color.GetBlue()};
}

/// Corners are not shared between faces, so that each face is flat and can be told from its neighbours.
TriangleMeshPrimitive MeshOf(std::vector<Face> const& faces)
{
    std::vector<VertexNormal> vertices;
    std::vector<TriangleIndex> triangles;
    for (Face const& face : faces) {
        int const first = static_cast<int>(vertices.size());
        Point3d const normal =
            Unit((face.corners[1] - face.corners[0]).Cross(face.corners[2] - face.corners[0]));
        for (Point3d const& corner : face.corners) {
            vertices.emplace_back(corner, normal, Packed(face.colour, face.opacity));
        }
        for (int k = 2; k < static_cast<int>(face.corners.size()); ++k) {
            triangles.emplace_back(first, first + k - 1, first + k);
        }
    }
    TriangleMeshPrimitive mesh;
    mesh.Set(std::move(vertices), std::move(triangles));
    return mesh;
}

/// The fans of a mesh as polygons.
std::vector<Face> FacesOf(TriangleMeshPrimitive const& mesh)
{
    std::vector<Face> faces;
    int fan = -1;
    for (int k = 0; k < mesh.GetNumTriangles(); ++k) {
        TriangleIndex const& triangle = mesh.GetTriangleAt(k);
        if (triangle.first != fan) {
            fan = triangle.first;
            Orrin::Color const color = mesh.GetVertexAt(fan).GetColor();
            faces.push_back({{mesh.GetVertexAt(fan).point, mesh.GetVertexAt(triangle.second).point},
                             Unpacked(color),
                             color.GetAlpha() / opaque});
        }
        faces.back().corners.push_back(mesh.GetVertexAt(triangle.third).point);
    }
    return faces;
}

GraphicsAttributes AttributesOf(View const& view)
{
    GraphicsAttributes attributes;
    attributes.SetBkColor(Orrin::Color::White());
    LightSource light;
    light.SetColor(Orrin::Color::White());
    light.point = Unit(view.towards + 0.6 * view.up - 0.5 * view.right);
    light.lightFlag = true;
    attributes.SetLight(0, light);
    Point3d const rows[] = {view.right, view.up, view.towards};
    for (int row = 0; row < 3; ++row) {
        attributes.attrMatrix(row, 0) = rows[row].x;
        attributes.attrMatrix(row, 1) = rows[row].y;
        attributes.attrMatrix(row, 2) = rows[row].z;
    }
    attributes.attrMatrix(3, 3) = 1.0;
    return attributes;
}

std::string Times(char const* kind, std::size_t count)
{
    return count == 0 ? "" : std::string(",") + kind + (count == 1 ? "" : "*" + std::to_string(count));
}

} // namespace

SceneObjects::SceneObjects(SceneShape const& shape)
    : spheres(shape.balls), cylinders(shape.bonds), labels(shape.balls)
{}

SceneObjects::SceneObjects(Scene const& scene, View const& view)
    : attributes(AttributesOf(view)), polyhedron(MeshOf(scene.faces))
{
    for (Ball const& ball : scene.balls) {
        SpherePrimitive sphere;
        sphere.SetVertex({ball.centre, Packed(ball.colour)});
        sphere.size = ballRadius;
        spheres.push_back(sphere);

        Text3DPrimitive label;
        label.vertex = {ball.centre, Orrin::Color::Black()};
        label.SetText({ball.label.begin(), ball.label.end()});
        label.font.SetSize(labelSize);
        labels.push_back(label);
    }
    for (Bond const& bond : scene.bonds) {
        CylinderPrimitive cylinder;
        cylinder.SetVertices({bond.from, Packed(bond.fromColour)}, {bond.to, Packed(bond.toColour)});
        cylinder.size = cylinderRadius;
        cylinders.push_back(cylinder);
    }
}

Scene SceneObjects::ToScene() const
{
    Scene scene;
    for (std::size_t k = 0; k < spheres.size(); ++k) {
        Vertex const vertex = spheres[k].GetVertex();
        std::wstring const label = labels[k].GetText();
        std::string narrow;
        for (wchar_t const letter : label) {
            narrow += static_cast<char>(letter);
        }
        scene.balls.push_back({vertex.point, Unpacked(vertex.GetColor()), narrow});
    }
    for (CylinderPrimitive const& cylinder : cylinders) {
        Vertex from;
        Vertex to;
        cylinder.GetVertices(from, to);
        scene.bonds.push_back({from.point, to.point, Unpacked(from.GetColor()), Unpacked(to.GetColor())});
    }
    scene.faces = FacesOf(polyhedron);
    return scene;
}

View SceneObjects::ToView() const
{
    auto const row = [&](int index) {
        return Point3d(attributes.attrMatrix(index, 0), attributes.attrMatrix(index, 1),
                       attributes.attrMatrix(index, 2));
    };
    return LookAlong(ToScene(), row(0), row(1), row(2));
}

void SceneObjects::Serialize(CArchive& archive)
{
    Vorlane::Serialize(archive, attributes);
    for (SpherePrimitive& sphere : spheres) {
        Vorlane::Serialize(archive, sphere);
    }
    for (CylinderPrimitive& cylinder : cylinders) {
        Vorlane::Serialize(archive, cylinder);
    }
    Vorlane::Serialize(archive, polyhedron);
    for (Text3DPrimitive& label : labels) {
        Vorlane::Serialize(archive, label);
    }
}

std::string KindsOf(std::vector<SceneShape> const& shapes)
{
    std::string kinds;
    for (SceneShape const& shape : shapes) {
        kinds += (kinds.empty() ? "" : ",") + std::string("attributes") + Times("sphere", shape.balls) +
                 Times("cylinder", shape.bonds) + ",mesh" + Times("text3d", shape.balls);
    }
    return kinds;
}

void StoreScenes(CFile& file, std::vector<SceneObjects>& scenes)
{
    CArchive archive(&file, CArchive::store);
    archive.m_nObjectSchema = schemaNumber;
    for (SceneObjects& scene : scenes) {
        scene.Serialize(archive);
    }
    archive.Close();
}

std::vector<SceneObjects> LoadScenes(CFile& file, std::vector<SceneShape> const& shapes)
{
    CArchive archive(&file, CArchive::load);
    archive.m_nObjectSchema = schemaNumber;
    std::vector<SceneObjects> scenes(shapes.begin(), shapes.end());
    for (SceneObjects& scene : scenes) {
        scene.Serialize(archive);
    }
    unsigned char beyond = 0;
    if (archive.Read(&beyond, 1) > 0) {
        throw std::runtime_error("the archive goes on behind its last scene");
    }
    archive.Close();
    return scenes;
}

} // namespace Examples
