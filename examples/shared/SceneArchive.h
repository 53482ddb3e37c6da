#ifndef VORLANE_EXAMPLES_SHARED_SCENEARCHIVE_H
#define VORLANE_EXAMPLES_SHARED_SCENEARCHIVE_H

/// \file
/// Scenes as graphics primitives, and as archives of them.
///
/// An archive of scenes has the schema number 24 and holds one scene after the other. The objects of a scene:
///
/// - one GraphicsAttributes: background, one light; the first three rows of `attrMatrix` are the view: right,
///   up, towards the viewer
/// - a SpherePrimitive for each ball: centre, colour, radius
/// - a CylinderPrimitive for each bond: both ends, each with the colour of its half, radius
/// - one TriangleMeshPrimitive: the faces, each a fan around the first of its corners; the vertex colours are
///   translucent
/// - a Text3DPrimitive for each ball: its label
///
/// An archive names no types, so the reader must know the shape of each scene.

#include "examples/shared/Scene.h"

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/persistence/PrimitiveSerializers.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Examples {

/// The number of objects in a scene that vary.
struct SceneShape
{
    std::size_t balls = 0;
    std::size_t bonds = 0;
};

/// A scene as the archive holds it.
struct SceneObjects
{
    SceneObjects() = default;

    /// Objects of this shape, to be loaded.
    explicit SceneObjects(SceneShape const& shape);

    /// The objects of a scene and its view.
    SceneObjects(Scene const& scene, View const& view);

    SceneShape Shape() const { return {spheres.size(), cylinders.size()}; }

    /// The scene to draw, with coordinates as they were stored: floats.
    Scene ToScene() const;

    /// The view that the attributes hold.
    View ToView() const;

    /// Stores or loads the objects in their order.
    void Serialize(CArchive& archive);

    Lumora::GraphicsAttributes attributes;
    std::vector<Lumora::SpherePrimitive> spheres;
    std::vector<Lumora::CylinderPrimitive> cylinders;
    Lumora::TriangleMeshPrimitive polyhedron;
    std::vector<Lumora::Text3DPrimitive> labels;
};

/// "attributes,sphere*7,cylinder*6,mesh,text3d*7,...": what an archive of such scenes holds, as scene_inspect
/// takes it.
std::string KindsOf(std::vector<SceneShape> const& shapes);

/// Writes the scenes to a file and closes the archive, not the file.
///
/// \throws CFileException where the file takes no more.
void StoreScenes(CFile& file, std::vector<SceneObjects>& scenes);

/// Reads scenes of these shapes from the place where the file stands.
///
/// \throws CFileException where the file cannot be read, CArchiveException where it ends too early, and
///         std::runtime_error where it goes on behind the last scene.
std::vector<SceneObjects> LoadScenes(CFile& file, std::vector<SceneShape> const& shapes);

} // namespace Examples

#endif
