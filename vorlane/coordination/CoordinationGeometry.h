#ifndef VORLANE_COORDINATION_COORDINATIONGEOMETRY_H
#define VORLANE_COORDINATION_COORDINATIONGEOMETRY_H

/// \file
/// The coordination geometries of metal centres: their names, their ideal polyhedra, and how far a measured
/// environment lies from an ideal one.
///
/// Ideal sites and ligands are numbered from 1. Angles are radians. All functions may be called from several
/// threads at once, each with its own arguments; none of them reports a failure other than by its result, and
/// only CMemoryException leaves them.

#include "vorlane/Export.h"
#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/foundation/ValueTypes.h"

namespace Vorlane {

/// The geometries. The numbers are part of the interface. A geometry carries its long name if it has one,
/// else its short code: letters for the shape, digits for the ligands, and for a shape cut from a larger
/// polyhedron the code of that polyhedron ("a2tp3" is the angle of two sites of the trigonal plane "tp3").
enum CoordinationGeometryType : int
{
    unknownGeometry = 0,          ///< no geometry: the result of a failed look-up
    linear = 1,                   ///< two ligands, opposite
    angular = 2,                  ///< at the angle of the tetrahedron
    a2tp3 = 3,                    ///< angular, at the angle of the trigonal plane
    a2sp4 = 4,                    ///< angular, at the angle of the square plane
    trigonalPlanar = 5,           ///< three ligands at 120 degrees
    trigonalPyramidal = 6,        ///< at the angles of the tetrahedron
    tpy3tbpy5 = 7,                ///< trigonal pyramid cut from the trigonal bipyramid
    tpy3oc6 = 8,                  ///< trigonal pyramid cut from the octahedron
    tShaped = 9,                  ///< three ligands: three corners of the square plane
    tetrahedral = 10,             ///< four ligands
    squarePlanar = 11,            ///< four ligands, the metal in their midst
    squarePyramidal = 12,         ///< four ligands: the base of a square pyramid with the metal above it
    trigonalPlanarPyramidal = 13, ///< four ligands: a trigonal pyramid with the metal in its base
    seeSaw = 14,                  ///< cut from the octahedron
    ss4tbpy5 = 15,                ///< see-saw cut from the trigonal bipyramid
    trigonalBipyramidal = 16,     ///< five ligands
    squarePlanarPyramidal = 17,   ///< five ligands: a square pyramid with the metal in its base
    octahedral = 18,              ///< six ligands
    trigonalPrismatic = 19,       ///< six ligands
    trigonalAntiprismatic = 20,   ///< the octahedron, seen along a three-fold axis
    trigonalAntiprismaticStretched = 21, ///< six ligands, drawn out along the three-fold axis
    pentagonalPlanarPyramidal = 22,      ///< six ligands: a pentagonal pyramid with the metal in its base
    pentagonalBipyramidal = 23,          ///< seven ligands
    octahedralFaceMonocapped = 24,       ///< seven ligands: the octahedron with one face capped
    trigonalPrismaticSquareFaceMonocapped = 25, ///< seven ligands: the prism with one square capped
    cubic = 26,                                 ///< eight ligands
    squareAntiprismatic = 27,                   ///< eight ligands
    dodecahedral = 28,                          ///< eight ligands: a dodecahedron of triangles
    hexagonalBipyramidal = 29,                  ///< eight ligands
    heptagonalBipyramidal = 30                  ///< has a name and nine ligands, but no ideal sites
};

/// What the geometries are, and how far a measured environment lies from one.
namespace CoordinationGeometry {

/// The number of ligands of a geometry, 2 to 9; 0 for `unknownGeometry` and any number that is no geometry.
VORLANE_EXPORT int GetCoordinationNumber(CoordinationGeometryType type);

/// The geometry of a name, long ("octahedral") or short ("oc6"), or `unknownGeometry` if there is none. Case
/// does not count, anything else does: a name with a blank around it is unknown.
VORLANE_EXPORT CoordinationGeometryType StringToCoordinationGeometry(CString const& name);

/// Angles that the caller sets instead of the catalogue's, for the geometries that leave some open. This base
/// class constrains nothing, which GetCoordinates takes as angles of 0.
class VORLANE_EXPORT GeometryConstraint
{
public:
    virtual ~GeometryConstraint();

    /// The angle in radians that is wanted between two sites, or 0. The pair is matched in this order.
    virtual double GetAngleConstraint(int site1, int site2) const;
};

/// The angle of the shape `angular`.
class VORLANE_EXPORT A2GeometryConstraint : public GeometryConstraint
{
public:
    /// The angle between the sites 1 and 2; stored as it is.
    explicit A2GeometryConstraint(double angle);

    double GetAngleConstraint(int site1, int site2) const override;

private:
    double m_angle;
};

/// The angles of the shape `trigonalPyramidal`.
class VORLANE_EXPORT TPY3GeometryConstraint : public GeometryConstraint
{
public:
    /// The angles between the sites 1 and 2, 1 and 3, 2 and 3; stored as they are.
    TPY3GeometryConstraint(double angle12, double angle13, double angle23);

    double GetAngleConstraint(int site1, int site2) const override;

private:
    double m_angle12;
    double m_angle13;
    double m_angle23;
};

/// The equatorial angle of the shape `seeSaw`.
class VORLANE_EXPORT SS4GeometryConstraint : public GeometryConstraint
{
public:
    /// The angle between the sites 3 and 4; stored as it is.
    explicit SS4GeometryConstraint(double angle);

    double GetAngleConstraint(int site1, int site2) const override;

private:
    double m_angle;
};

/// Fills `coordinates` with the metal at index 0, at the origin, and the ideal sites from index 1, at
/// distance 1 (1.149 for `trigonalAntiprismaticStretched`).
///
/// A constraint is taken by `angular`, `trigonalPyramidal` and `seeSaw` alone; only the angles it answers
/// with count, not its class. A trigonal pyramid with three angles that add up to a full turn is flat.
///
/// \returns the number of points, which is one more than that of ligands; or 0, with `coordinates` empty,
///          for a geometry without ideal sites, a constraint on any other geometry, and angles that no three
///          vectors have (each must lie strictly between 0 and pi; NaN is none).
VORLANE_EXPORT int GetCoordinates(CoordinationGeometryType type,
                                  Orrin::LegacyArray<Spatia::Point3d>& coordinates,
                                  GeometryConstraint const* constraint = nullptr);

/// The angle between two different sites of the catalogue's shape, in radians, up to pi; 0 if the geometry
/// has no such sites or the two are one.
VORLANE_EXPORT double GetCoordinationAngle(CoordinationGeometryType type, int site1, int site2);

/// How far a measured environment lies from an ideal geometry: the sum over all pairs of ligands of the
/// squared difference between the measured and the ideal cosine of their angle, for the best of all ways to
/// put the ligands on the sites. The order of the ligands has no influence on it.
///
/// `coordinates` holds one point for each ligand and none for the metal: the unit vector from the metal to
/// the ligand. Nothing is normalised or tested; other vectors give a number without meaning, which is NaN if
/// theirs are not finite.
///
/// `assignment` gets the best labelling, one entry for each ligand, numbered from 1: entry s says which
/// ligand sits on site s. For `trigonalPrismatic` and `trigonalAntiprismatic` it is the other way round:
/// entry l says on which site ligand l sits.
///
/// \returns the deviation, 0 or more; or -1, with `assignment` as it was, if the number of points is not the
///          geometry's number of ligands or the geometry has no measure. Twelve have one:
///          `trigonalPyramidal`, `tShaped`, `tetrahedral`, `squarePlanar`, `trigonalPlanarPyramidal`,
///          `seeSaw`, `ss4tbpy5`, `trigonalBipyramidal`, `squarePlanarPyramidal`, `octahedral`,
///          `trigonalPrismatic` and `trigonalAntiprismatic`.
VORLANE_EXPORT double
DeviationFromIdealCoordinationGeometry(Orrin::LegacyArray<Spatia::Point3d> const& coordinates,
                                       CoordinationGeometryType type, IntArray& assignment);

/// The deviation alone.
VORLANE_EXPORT double
DeviationFromIdealCoordinationGeometry(Orrin::LegacyArray<Spatia::Point3d> const& coordinates,
                                       CoordinationGeometryType type);

} // namespace CoordinationGeometry
} // namespace Vorlane

#endif
