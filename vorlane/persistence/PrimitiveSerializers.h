#ifndef VORLANE_PERSISTENCE_PRIMITIVESERIALIZERS_H
#define VORLANE_PERSISTENCE_PRIMITIVESERIALIZERS_H

/// \file
/// The archive form of the graphics primitives: one overload of Serialize for each class. The layout of each
/// is a table in docs/archive-format.md.
///
/// An overload stores its object into a storing archive and loads it from a loading one; a store does not
/// change the object. An archive does not say what comes next: the caller must make the same calls, in the
/// same order and with the same classes, as the writer did. A derived class has the fields of its base in
/// front.
///
/// The schema number is the archive's `m_nObjectSchema`. A store writes the newest layout whatever the number
/// is, but for the width of Point3d, the dashes of LineArrayPrimitive and the layout of Text3DPrimitive; so
/// some stores cannot be loaded at low numbers or at 0xFFFFFFFF. Set 24 for an archive that is to be written.
///
/// A load tests no value. Where it fails, the fields read so far are loaded and the others are as they were,
/// unless an overload says otherwise. All raise
/// - CArchiveException with the cause `endOfFile` where the archive ends before the object does,
/// - std::length_error "vector<T> too long" for a negative number of entries, lights apart,
/// - CMemoryException if memory cannot be had.
///
/// The time is in proportion to the bytes moved, and so is the memory: a count that the archive cannot back
/// takes about 16 MB at most before it ends in `endOfFile`. An archive is used from one thread at a time.

#include "platform/lumora/GraphicsAttributes.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/lumora/LitSolids.h"
#include "platform/lumora/TextPrimitives.h"
#include "platform/lumora/TriangleMeshPrimitive.h"
#include "platform/lumora/UnlitLines.h"
#include "platform/lumora/UnlitPoints.h"
#include "platform/lumora/UnlitShapes.h"
#include "platform/lumora/Vertex.h"
#include "platform/lumora/VolumePrimitive.h"
#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

namespace Vorlane {

/// A loaded colour with an alpha of 0 becomes opaque, at every schema number; also within VertexNormal and
/// wherever a primitive holds a vertex.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::Vertex& vertex);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::VertexNormal& vertex);

/// The word that every primitive but PlanePrimitive starts with.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::GraphicsPrimitive& primitive);

/// `litWord2` is loaded at schema numbers from 7 to 0x7FFFFFFF.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::LitPrimitive& primitive);

/// Nothing of their own depends on the schema number.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::SpherePrimitive& sphere);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::EllipsoidPrimitive& ellipsoid);

/// The two vertices are set together, once both are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::CylinderPrimitive& cylinder);

/// The ends, the colour and the size are assigned once all are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::ConePrimitive& cone);

/// The colour is stored with each corner and loaded from the first.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TrianglePrimitive& triangle);

/// The geometry is replaced once all of it is read, with the colour of the first corner. Centroids and
/// normals are stored, and computed from the corners on loading.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TetrahedronPrimitive& tetrahedron);

/// The words of the base classes are not in the archive. The plane and the colour are set once both are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::PlanePrimitive& plane);

/// The vertex is assigned once it is read whole.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::UnlitPointPrimitive& point);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::DotPrimitive& dot);

/// The archive holds the second flag before the first.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::IconPrimitive& icon);

/// Both vertices and both words are assigned once all are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::LinePrimitive& line);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::DashedLinePrimitive& line);

/// The points, the colour and the width are set once all are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::UnlitLinePrimitive& line);

/// A load first erases the lines; those read before a failure stay. The dashes are in the archive from schema
/// number 13 on, in both directions.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::LineArrayPrimitive& lines);

/// Nothing of their own depends on the schema number.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::ArcPrimitive& arc);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::UnlitTrianglePrimitive& triangle);

/// Nothing of their own depends on the schema number.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::UnlitShapePrimitive& shape);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::RectanglePrimitive& rectangle);

/// The three points are set once all are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TriangleShapePrimitive& triangle);

/// Below schema number 11 both directions have an older layout. Below 10 a load takes the face of the font as
/// a number: 1 for Arial, 2 for Times New Roman, 3 for Courier New, any other for the default font's.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::Text3DPrimitive& text);

/// Below schema number 10 a load takes the face of the font as a number, as for Text3DPrimitive.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TextStringPrimitive& text);
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TextBoxPrimitive& box);

/// The two locations are set once both are read.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TextCalloutPrimitive& callout);

/// Three indexes of 4 bytes each, at every schema number.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TriangleIndex& triangle);

/// The geometry is replaced once all triangles and vertices are read. `meshFlag1` is loaded at schema numbers
/// from 7 to 0x7FFFFFFF, `meshFlag2` and the back side's colour at those from 21 to 0x7FFFFFFF.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::TriangleMeshPrimitive& mesh);

/// A load drops the attached volume, which is not in the archive, before it reads anything past the base.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::VolumePrimitive& volume);

/// Loaded at schema numbers from 7 to 0x7FFFFFFF; at others a load reads nothing.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::LightSource& light);

/// Six properties, at every schema number.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::MaterialProperty& material);

/// A load takes the fields that archives of its schema number have: the background colour always, most from 7
/// on, the flag from 16, the material from 18, the mode from 23. Lights past the capacity are read and
/// dropped, and a negative number of them reads none. At schema numbers from 0x80000000 up the lights within
/// the stored count become default ones.
VORLANE_EXPORT void Serialize(CArchive& ar, Lumora::GraphicsAttributes& attributes);

} // namespace Vorlane

#endif
