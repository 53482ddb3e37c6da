#ifndef VORLANE_NUMERICS_RMSBESTFITTOOLSINTERNAL_H
#define VORLANE_NUMERICS_RMSBESTFITTOOLSINTERNAL_H

/// \file
/// The steps of the best fits. A quaternion is four doubles, the scalar part first; rotations act on row
/// vectors.

#include "vorlane/numerics/RMSBestFitTools.h"

namespace Vorlane::RMSBestFitTools {

/// The mean of `points`, summed in their order; zero if there are none.
Spatia::Point3d FindCentroid(Orrin::LegacyArray<Spatia::Point3d> const& points);

/// Builds Horn's matrix, whose eigenvector of the largest eigenvalue is the quaternion of the best rotation.
/// False, with a matrix of zeros, if the sets differ in size or are empty.
bool BuildQuaternionMatrix(Orrin::LegacyArray<Spatia::Point3d> const& first,
                           Orrin::LegacyArray<Spatia::Point3d> const& second, Spatia::Matrix4x4& matrix);

/// The eigenvectors as the rows of `vectors` (9 or 16 doubles) and the eigenvalues (3 or 4), in descending
/// order. No pair is proven: singular matrices are the common case here. A matrix that is not symmetric, as
/// NaN coordinates make it, gives the identity and zeros.
void GetEigensystem3x3(Spatia::Matrix3x3 const& matrix, double* vectors, double* values);
void GetEigensystem4x4(Spatia::Matrix4x4 const& matrix, double* vectors, double* values);

/// The rotation of a quaternion, which is not normalised, as nine doubles row after row.
void QuaternionToMatrix(double const* quaternion, double* elements);

/// The best rotation of the matrix from BuildQuaternionMatrix.
void FindRotation(Spatia::Matrix4x4 const& matrix, Spatia::Matrix3x3& rotation);

/// The four eigenvalues, descending, and the rotations of their eigenvectors.
void FindAllRotations(Spatia::Matrix4x4 const& matrix, double* values, Spatia::Matrix3x3* rotations);

/// The motion that FindAndApplyTransformation applies; the identity together with false.
bool FindTransformation(Orrin::LegacyArray<Spatia::Point3d> const& first,
                        Orrin::LegacyArray<Spatia::Point3d> const& second, Spatia::Matrix3x3& rotation,
                        Spatia::Point3d& translation);

/// The motions of all four eigenvectors, the best first, with their eigenvalues; identities and zeros
/// together with false. Each output has room for four.
bool FindAllTransformations(Orrin::LegacyArray<Spatia::Point3d> const& first,
                            Orrin::LegacyArray<Spatia::Point3d> const& second, Spatia::Matrix3x3* rotations,
                            Spatia::Point3d* translations, double* eigenvalues);

} // namespace Vorlane::RMSBestFitTools

#endif
