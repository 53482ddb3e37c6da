// Vertices, the roots of the primitives and the lit solids.

#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/FieldsInternal.h"
#include "vorlane/persistence/PrimitiveSerializers.h"
#include "vorlane/persistence/SchemaInternal.h"
#include "vorlane/persistence/VertexFieldsInternal.h"

using namespace Lumora;
using Spatia::Matrix4x4;
using Spatia::Point3d;

namespace Vorlane {

void Serialize(CArchive& ar, Vertex& vertex)
{
    Fields::VertexFields(ar, vertex);
}

void Serialize(CArchive& ar, VertexNormal& vertex)
{
    Fields::VertexNormalFields(ar, vertex);
}

void Serialize(CArchive& ar, GraphicsPrimitive& primitive)
{
    Fields::Int32(ar, primitive.headerWord);
}

void Serialize(CArchive& ar, LitPrimitive& primitive)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(primitive));
    Fields::Int32(ar, primitive.litWord1);
    if (StoredOrLoadedFromSigned(ar, 7)) {
        Fields::Int32(ar, primitive.litWord2);
    }
}

void Serialize(CArchive& ar, SpherePrimitive& sphere)
{
    Serialize(ar, static_cast<LitPrimitive&>(sphere));
    Fields::Property<Vertex>(ar, Serialize, sphere, &SpherePrimitive::GetVertex, &SpherePrimitive::SetVertex);
    Fields::Float(ar, sphere.size);
}

void Serialize(CArchive& ar, EllipsoidPrimitive& ellipsoid)
{
    Serialize(ar, static_cast<LitPrimitive&>(ellipsoid));
    Fields::Property<Vertex>(ar, Serialize, ellipsoid, &EllipsoidPrimitive::GetVertex,
                             &EllipsoidPrimitive::SetVertex);
    SerializePoint3d(ar, ellipsoid.axes);
    Fields::Whole(ar, SerializeMatrix4x4, ellipsoid.frame);
}

void Serialize(CArchive& ar, CylinderPrimitive& cylinder)
{
    Serialize(ar, static_cast<LitPrimitive&>(cylinder));
    Vertex first;
    Vertex second;
    cylinder.GetVertices(first, second);
    Serialize(ar, first);
    Serialize(ar, second);
    if (ar.IsLoading()) {
        cylinder.SetVertices(first, second);
    }
    Fields::Float(ar, cylinder.size);
}

void Serialize(CArchive& ar, ConePrimitive& cone)
{
    Serialize(ar, static_cast<LitPrimitive&>(cone));
    Point3d firstEnd = cone.firstEnd;
    Point3d secondEnd = cone.secondEnd;
    Orrin::Color color = cone.GetColor();
    float size = cone.size;
    SerializePoint3d(ar, firstEnd);
    SerializePoint3d(ar, secondEnd);
    SerializeColor(ar, color);
    Fields::Float(ar, size);
    if (ar.IsLoading()) {
        cone.firstEnd = firstEnd;
        cone.secondEnd = secondEnd;
        cone.SetColor(color);
        cone.size = size;
    }
}

void Serialize(CArchive& ar, TrianglePrimitive& triangle)
{
    Serialize(ar, static_cast<LitPrimitive&>(triangle));
    auto const corner = [&](Point3d& point, bool givesColor) {
        Vertex vertex(point, triangle.GetColor());
        Serialize(ar, vertex);
        if (ar.IsLoading()) {
            point = vertex.point;
            if (givesColor) {
                triangle.SetColor(vertex.GetColor());
            }
        }
    };
    corner(triangle.corner1, true);
    corner(triangle.corner2, false);
    corner(triangle.corner3, false);
    SerializePoint3d(ar, triangle.faceVector);
}

void Serialize(CArchive& ar, TetrahedronPrimitive& tetrahedron)
{
    Serialize(ar, static_cast<LitPrimitive&>(tetrahedron));
    Point3d corners[4];
    tetrahedron.GetTetrahedronVertices(corners[0], corners[1], corners[2], corners[3]);
    Orrin::Color color = tetrahedron.GetColor();
    for (int i = 0; i < 4; ++i) {
        Vertex vertex(corners[i], tetrahedron.GetColor());
        Point3d centroid = tetrahedron.GetFaceCentroid(i);
        Point3d normal = tetrahedron.GetFaceNormal(i);
        Serialize(ar, vertex);
        SerializePoint3d(ar, centroid);
        SerializePoint3d(ar, normal);
        corners[i] = vertex.point;
        if (i == 0) {
            color = vertex.GetColor();
        }
    }
    if (ar.IsLoading()) {
        // The constructor computes centroids and normals anew; the assignment keeps the words of the base.
        TetrahedronPrimitive loaded(corners[0], corners[1], corners[2], corners[3]);
        loaded.SetColor(color);
        tetrahedron = loaded;
    }
}

void Serialize(CArchive& ar, PlanePrimitive& plane)
{
    Plane points = plane.GetPlane();
    Orrin::Color color = plane.GetColor();
    SerializePoint3d(ar, points.first);
    SerializePoint3d(ar, points.second);
    SerializeColor(ar, color);
    if (ar.IsLoading()) {
        plane.SetPlane(points);
        plane.SetColor(color);
    }
}

} // namespace Vorlane
