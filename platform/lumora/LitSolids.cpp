#include "platform/lumora/LitSolids.h"

#include "platform/framework/AfxExceptions.h"

#include <algorithm>
#include <iterator>

using Spatia::Point3d;

namespace Lumora {

namespace {

double Dot(Point3d const& left, Point3d const& right)
{
    return left.x * right.x + left.y * right.y + left.z * right.z;
}

/// The unit normal of the triangle a, b, c on the side away from `opposite`.
Point3d OutwardNormal(Point3d const& a, Point3d const& b, Point3d const& c, Point3d const& opposite)
{
    Point3d normal = (b - a).Cross(c - a);
    if (Dot(normal, opposite - a) > 0.0) {
        normal = -1.0 * normal;
    }
    // The sum turns a zero with a sign into a plain one.
    return normal.Normalize() + Point3d::zero;
}

int CheckedFace(int face)
{
    if (face < 0 || face > 3) {
        AfxThrowIndexException(face, 3);
    }
    return face;
}

} // namespace

void CylinderPrimitive::GetVertices(Vertex& first, Vertex& second)
{
    first = m_first;
    second = m_second;
}

void CylinderPrimitive::GetVertices(Vertex& first, Vertex& second) const
{
    const_cast<CylinderPrimitive&>(*this).GetVertices(first, second); // it only reads
}

void CylinderPrimitive::SetVertices(Vertex const& first, Vertex const& second)
{
    m_first = first;
    m_second = second;
}

TetrahedronPrimitive::TetrahedronPrimitive(Point3d const& corner0, Point3d const& corner1,
                                           Point3d const& corner2, Point3d const& corner3)
    : m_corners{corner0, corner1, corner2, corner3}
{
    for (int face = 0; face < 4; ++face) {
        Point3d const& a = m_corners[(face + 1) % 4];
        Point3d const& b = m_corners[(face + 2) % 4];
        Point3d const& c = m_corners[(face + 3) % 4];
        m_centroids[face] = a + b + c;
        m_centroids[face] /= 3.0;
        m_normals[face] = OutwardNormal(a, b, c, m_corners[face]);
    }
}

TetrahedronPrimitive& TetrahedronPrimitive::operator=(TetrahedronPrimitive const& other)
{
    Colored::operator=(other);
    std::copy(std::begin(other.m_corners), std::end(other.m_corners), m_corners);
    std::copy(std::begin(other.m_centroids), std::end(other.m_centroids), m_centroids);
    std::copy(std::begin(other.m_normals), std::end(other.m_normals), m_normals);
    return *this;
}

TetrahedronPrimitive::~TetrahedronPrimitive() = default;

void TetrahedronPrimitive::GetTetrahedronVertices(Point3d& corner0, Point3d& corner1, Point3d& corner2,
                                                  Point3d& corner3) const
{
    corner0 = m_corners[0];
    corner1 = m_corners[1];
    corner2 = m_corners[2];
    corner3 = m_corners[3];
}

Point3d const& TetrahedronPrimitive::GetFaceCentroid(int face) const
{
    return m_centroids[CheckedFace(face)];
}

Point3d const& TetrahedronPrimitive::GetFaceNormal(int face) const
{
    return m_normals[CheckedFace(face)];
}

bool TetrahedronPrimitive::GetHiddenFace(int face) const
{
    return m_hiddenFaces[CheckedFace(face)];
}

void TetrahedronPrimitive::SetHiddenFace(int face, bool hidden)
{
    m_hiddenFaces[CheckedFace(face)] = hidden;
}

} // namespace Lumora
