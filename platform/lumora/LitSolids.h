#ifndef VORLANE_PLATFORM_LUMORA_LITSOLIDS_H
#define VORLANE_PLATFORM_LUMORA_LITSOLIDS_H

/// \file
/// Lit primitives of fixed size: sphere, ellipsoid, cylinder, cone, triangle, tetrahedron and plane.

#include "platform/Export.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/lumora/Vertex.h"
#include "platform/spatia/Matrix4x4.h"
#include "platform/spatia/Point3d.h"

namespace Lumora {

/// A sphere around a vertex.
class VORLANE_PLATFORM_EXPORT SpherePrimitive : public LitPrimitive
{
public:
    /// The centre with its colour.
    Vertex GetVertex() const { return m_vertex; }
    void SetVertex(Vertex const& vertex) { m_vertex = vertex; }

    /// The size, in the unit of the coordinates.
    float size = 0.0f;

private:
    Vertex m_vertex;
};

/// An ellipsoid around a vertex.
class VORLANE_PLATFORM_EXPORT EllipsoidPrimitive : public LitPrimitive
{
public:
    /// The centre with its colour.
    Vertex GetVertex() const { return m_vertex; }
    void SetVertex(Vertex const& vertex) { m_vertex = vertex; }

    /// The axes and the frame in which they lie.
    Spatia::Point3d axes;
    Spatia::Matrix4x4 frame;

private:
    Vertex m_vertex;
};

/// A cylinder between two vertices.
class VORLANE_PLATFORM_EXPORT CylinderPrimitive : public LitPrimitive
{
public:
    /// Both ends with their colours.
    virtual void GetVertices(Vertex& first, Vertex& second);
    virtual void SetVertices(Vertex const& first, Vertex const& second);

    /// The same for a constant cylinder, also where a derived class replaces the first.
    void GetVertices(Vertex& first, Vertex& second) const;

    /// The size, in the unit of the coordinates.
    float size = 0.0f;

private:
    Vertex m_first;
    Vertex m_second;
};

/// A cone between two ends.
class VORLANE_PLATFORM_EXPORT ConePrimitive : public LitPrimitive, public Colored
{
public:
    /// The ends of the axis and the size.
    Spatia::Point3d firstEnd;
    Spatia::Point3d secondEnd;
    float size = 0.0f;
};

/// A triangle in one colour.
class VORLANE_PLATFORM_EXPORT TrianglePrimitive : public LitPrimitive, public Colored
{
public:
    /// The corners, and a vector that belongs to the face; nothing computes it from them.
    Spatia::Point3d corner1;
    Spatia::Point3d corner2;
    Spatia::Point3d corner3;
    Spatia::Point3d faceVector;
};

/// A tetrahedron in one colour. Corners and faces are numbered from 0 to 3; face i lies opposite corner i.
class VORLANE_PLATFORM_EXPORT TetrahedronPrimitive : public LitPrimitive, public Colored
{
public:
    /// All four corners at the origin.
    TetrahedronPrimitive() = default;

    /// Computes centroids and normals from the corners.
    TetrahedronPrimitive(Spatia::Point3d const& corner0, Spatia::Point3d const& corner1,
                         Spatia::Point3d const& corner2, Spatia::Point3d const& corner3);

    TetrahedronPrimitive(TetrahedronPrimitive const&) = default;

    /// Takes the corners, the face data and the colour. The words of the base classes and the hidden faces of
    /// this tetrahedron stay.
    TetrahedronPrimitive& operator=(TetrahedronPrimitive const& other);

    ~TetrahedronPrimitive() override;

    /// Sets the arguments to the corners.
    void GetTetrahedronVertices(Spatia::Point3d& corner0, Spatia::Point3d& corner1, Spatia::Point3d& corner2,
                                Spatia::Point3d& corner3) const;

    /// The mean of the three corners of `face`.
    ///
    /// \throws CInvalidArgException if `face` is outside 0 to 3; so do the three functions below.
    Spatia::Point3d const& GetFaceCentroid(int face) const;

    /// The normal of `face`, of length 1, pointing away from the corner opposite. A face without area has the
    /// zero normal; in a flat tetrahedron either side may be chosen.
    Spatia::Point3d const& GetFaceNormal(int face) const;

    /// Whether `face` is left out when the solid is drawn.
    bool GetHiddenFace(int face) const;
    void SetHiddenFace(int face, bool hidden);

private:
    Spatia::Point3d m_corners[4];
    Spatia::Point3d m_centroids[4];
    Spatia::Point3d m_normals[4];
    bool m_hiddenFaces[4] = {};
};

/// A plane given by two points.
class VORLANE_PLATFORM_EXPORT Plane
{
public:
    /// Sets both points; an argument may be one of them.
    void Set(Spatia::Point3d const& theFirst, Spatia::Point3d const& theSecond)
    {
        Spatia::Point3d const keptSecond = theSecond;
        first = theFirst;
        second = keptSecond;
    }

    /// The points that give the plane.
    Spatia::Point3d first;
    Spatia::Point3d second;
};

/// A plane in one colour.
class VORLANE_PLATFORM_EXPORT PlanePrimitive : public LitPrimitive, public Colored
{
public:
    /// The two points that give the plane.
    Plane const& GetPlane() const { return m_plane; }
    void SetPlane(Plane const& plane) { m_plane = plane; }

private:
    Plane m_plane;
};

} // namespace Lumora

#endif
