#include "vorlane/numerics/RMSBestFitToolsInternal.h"

#include "vorlane/numerics/EigenSolverInternal.h"

#include <algorithm>
#include <cstring>

using Spatia::Matrix3x3;
using Spatia::Matrix4x4;
using Spatia::Point3d;

namespace Vorlane::RMSBestFitTools {

namespace {

using PointArray = Orrin::LegacyArray<Point3d>;

/// The eigenvectors, as columns, and the eigenvalues of a small matrix, with the bits of QuadraticMatrix but
/// on the stack and in no order. A matrix that is not symmetric gives the identity and zeros.
template <int dimension>
struct Eigensystem
{
    double elements[dimension][dimension];
    double* rows[dimension];
    double values[dimension] = {};
    bool isComplete; ///< whether the iteration came to its end

    template <typename Matrix>
    explicit Eigensystem(Matrix const& matrix)
    {
        for (int row = 0; row < dimension; ++row) {
            rows[row] = elements[row];
            for (int column = 0; column < dimension; ++column) {
                elements[row][column] = matrix(row, column);
            }
        }
        if (EigenSolver::IsSymmetric(rows, dimension)) {
            isComplete = EigenSolver::SolveSymmetric(rows, dimension, values);
        } else {
            isComplete = true;
            for (int row = 0; row < dimension; ++row) {
                std::fill_n(elements[row], dimension, 0.0);
                elements[row][row] = 1.0;
            }
        }
    }
};

template <int dimension, typename Matrix>
void GetEigensystem(Matrix const& matrix, double* vectors, double* values)
{
    Eigensystem<dimension> system(matrix);
    if (system.isComplete) {
        EigenSolver::SortColumns(system.rows, dimension, system.values, QuadraticMatrix::Descending);
    }
    std::copy_n(system.values, dimension, values);
    for (int row = 0; row < dimension; ++row) {
        for (int column = 0; column < dimension; ++column) {
            vectors[row * dimension + column] = system.elements[column][row];
        }
    }
}

Matrix3x3 RotationOf(double const* quaternion)
{
    double m[9];
    QuaternionToMatrix(quaternion, m);
    return Matrix3x3(m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8]);
}

/// Whether the sets can be superposed at all.
bool ArePaired(PointArray const& first, PointArray const& second)
{
    return first.size() == second.size() && first.size() != 0;
}

/// Two numbers that are computed with side by side; compilers take one instruction for both.
struct Two
{
    double lanes[2];
};

Two operator+(Two left, Two right)
{
    return {left.lanes[0] + right.lanes[0], left.lanes[1] + right.lanes[1]};
}

Two operator-(Two left, Two right)
{
    return {left.lanes[0] - right.lanes[0], left.lanes[1] - right.lanes[1]};
}

Two operator*(Two left, Two right)
{
    return {left.lanes[0] * right.lanes[0], left.lanes[1] * right.lanes[1]};
}

/// The coordinates of two points.
struct TwoPoints
{
    Two x, y, z;
};

/// Two points, each less `center`.
TwoPoints CenterTwo(Point3d const* points, Point3d const& center)
{
    return {{points[0].x - center.x, points[1].x - center.x},
            {points[0].y - center.y, points[1].y - center.y},
            {points[0].z - center.z, points[1].z - center.z}};
}

/// The elements of the upper triangle of Horn's matrix.
constexpr int termCount = 10;

/// What the centred points p and q add to the upper triangle of Horn's matrix, row after row.
template <typename Point, typename Number>
void GetTerms(Point const& p, Point const& q, Number* terms)
{
    Number const xx = p.x * q.x, xy = p.x * q.y, xz = p.x * q.z;
    Number const yx = p.y * q.x, yy = p.y * q.y, yz = p.y * q.z;
    Number const zx = p.z * q.x, zy = p.z * q.y, zz = p.z * q.z;
    terms[0] = xx + yy + zz;
    terms[1] = yz - zy;
    terms[2] = zx - xz;
    terms[3] = xy - yx;
    terms[4] = xx - yy - zz;
    terms[5] = xy + yx;
    terms[6] = zx + xz;
    terms[7] = yy - xx - zz;
    terms[8] = yz + zy;
    terms[9] = zz - xx - yy;
}

/// Sums the terms of all pairs in their order. Those of two pairs are formed side by side, and two terms are
/// summed side by side, the first pair's before the second's.
void SumTerms(Point3d const* a, Point3d const* b, long count, Point3d const& c1, Point3d const& c2,
              double* sums)
{
    Two twoSums[termCount / 2] = {};
    for (long i = 0; i + 1 < count; i += 2) {
        Two terms[termCount];
        GetTerms(CenterTwo(a + i, c1), CenterTwo(b + i, c2), terms);
        for (int k = 0; k < termCount / 2; ++k) {
            Two const upper = terms[2 * k];
            Two const lower = terms[2 * k + 1];
            twoSums[k] = twoSums[k] + Two{upper.lanes[0], lower.lanes[0]};
            twoSums[k] = twoSums[k] + Two{upper.lanes[1], lower.lanes[1]};
        }
    }
    std::memcpy(sums, twoSums, sizeof twoSums);
    if (count % 2 != 0) {
        double terms[termCount];
        GetTerms(a[count - 1] - c1, b[count - 1] - c2, terms);
        for (int k = 0; k < termCount; ++k) {
            sums[k] += terms[k];
        }
    }
}

/// Builds Horn's matrix of two paired sets around their centroids, which are found on the way. Each element
/// of the matrix sums its own term over the pairs in their order.
void BuildQuaternionMatrix(PointArray const& first, PointArray const& second, Point3d& firstCentroid,
                           Point3d& secondCentroid, Matrix4x4& matrix)
{
    Point3d const* const a = first.GetData();
    Point3d const* const b = second.GetData();
    long const count = first.GetSize();
    // A sum waits for its own last addition: side by side the two centroids take the time of one. What the
    // loops work on is local, or compilers would fear that the outputs lie among the points.
    Point3d c1 = Point3d::origin;
    Point3d c2 = Point3d::origin;
    for (long i = 0; i < count; ++i) {
        c1 = c1 + a[i];
        c2 = c2 + b[i];
    }
    c1 /= static_cast<double>(count);
    c2 /= static_cast<double>(count);
    firstCentroid = c1;
    secondCentroid = c2;

    double sums[termCount];
    SumTerms(a, b, count, c1, c2, sums);
    double const* sum = sums;
    for (int row = 0; row < 4; ++row) {
        for (int column = row; column < 4; ++column) {
            matrix(row, column) = matrix(column, row) = *sum++;
        }
    }
}

} // namespace

void FindPlane(PointArray const& points, Point3d& centroid, Point3d& normal)
{
    if (points.size() < 2) {
        centroid = points.size() == 0 ? Point3d::origin : points.GetAt(0);
        normal = Point3d::kVector;
        return;
    }
    double const weight = 1.0 / static_cast<double>(points.GetSize());
    Point3d center = Point3d::origin;
    for (Point3d const& point : points) {
        center.x += point.x * weight;
        center.y += point.y * weight;
        center.z += point.z * weight;
    }

    Matrix3x3 scatter(Matrix3x3::NullMatrix);
    for (Point3d const& point : points) {
        Point3d const d = point - center;
        scatter(0, 0) += d.x * d.x;
        scatter(0, 1) += d.y * d.x;
        scatter(0, 2) += d.z * d.x;
        scatter(1, 1) += d.y * d.y;
        scatter(1, 2) += d.z * d.y;
        scatter(2, 2) += d.z * d.z;
    }
    scatter(1, 0) = scatter(0, 1);
    scatter(2, 0) = scatter(0, 2);
    scatter(2, 1) = scatter(1, 2);

    double vectors[9];
    double values[3];
    GetEigensystem3x3(scatter, vectors, values);
    centroid = center;
    normal = Point3d(vectors[6], vectors[7], vectors[8]);
}

bool FindAndApplyTransformation(PointArray const& first, PointArray const& second, PointArray& points)
{
    if (!ArePaired(first, second) || points.size() == 0) {
        return false;
    }
    if (first.size() == 1) {
        Point3d const shift = second.GetAt(0) - first.GetAt(0);
        for (Point3d& point : points) {
            point = point + shift;
        }
        return true;
    }
    Matrix3x3 rotation;
    Point3d translation;
    FindTransformation(first, second, rotation, translation);
    for (Point3d& point : points) {
        point = point * rotation + translation;
    }
    return true;
}

bool FindTransformation(PointArray const& first, PointArray const& second, Matrix3x3& rotation,
                        Point3d& translation)
{
    rotation = Matrix3x3(Matrix3x3::IdentityMatrix);
    translation = Point3d::zero;
    if (!ArePaired(first, second)) {
        return false;
    }
    if (first.size() == 1) {
        translation = second.GetAt(0) - first.GetAt(0);
        return true;
    }
    Matrix4x4 matrix;
    Point3d firstCentroid;
    Point3d secondCentroid;
    BuildQuaternionMatrix(first, second, firstCentroid, secondCentroid, matrix);
    FindRotation(matrix, rotation);
    translation = secondCentroid - firstCentroid * rotation;
    return true;
}

bool FindAllTransformations(PointArray const& first, PointArray const& second, Matrix3x3* rotations,
                            Point3d* translations, double* eigenvalues)
{
    std::fill_n(rotations, 4, Matrix3x3(Matrix3x3::IdentityMatrix));
    std::fill_n(translations, 4, Point3d::zero);
    std::fill_n(eigenvalues, 4, 0.0);
    if (!ArePaired(first, second)) {
        return false;
    }
    Matrix4x4 matrix;
    Point3d firstCentroid;
    Point3d secondCentroid;
    BuildQuaternionMatrix(first, second, firstCentroid, secondCentroid, matrix);
    FindAllRotations(matrix, eigenvalues, rotations);
    for (int k = 0; k < 4; ++k) {
        translations[k] = secondCentroid - firstCentroid * rotations[k];
    }
    return true;
}

Point3d FindCentroid(PointArray const& points)
{
    Point3d sum = Point3d::origin;
    for (Point3d const& point : points) {
        sum = sum + point;
    }
    if (points.size() != 0) {
        sum /= static_cast<double>(points.GetSize());
    }
    return sum;
}

bool BuildQuaternionMatrix(PointArray const& first, PointArray const& second, Matrix4x4& matrix)
{
    matrix = Matrix4x4(Matrix4x4::NullMatrix);
    if (!ArePaired(first, second)) {
        return false;
    }
    Point3d firstCentroid;
    Point3d secondCentroid;
    BuildQuaternionMatrix(first, second, firstCentroid, secondCentroid, matrix);
    return true;
}

void GetEigensystem3x3(Matrix3x3 const& matrix, double* vectors, double* values)
{
    GetEigensystem<3>(matrix, vectors, values);
}

void GetEigensystem4x4(Matrix4x4 const& matrix, double* vectors, double* values)
{
    GetEigensystem<4>(matrix, vectors, values);
}

void FindRotation(Matrix4x4 const& matrix, Matrix3x3& rotation)
{
    // The first of the largest is the one that sorting would bring to the front.
    Eigensystem<4> const system(matrix);
    auto const best =
        system.isComplete ? std::max_element(system.values, system.values + 4) - system.values : 0;
    double const quaternion[] = {system.elements[0][best], system.elements[1][best], system.elements[2][best],
                                 system.elements[3][best]};
    rotation = RotationOf(quaternion);
}

void FindAllRotations(Matrix4x4 const& matrix, double* values, Matrix3x3* rotations)
{
    double vectors[16];
    GetEigensystem4x4(matrix, vectors, values);
    for (int k = 0; k < 4; ++k) {
        rotations[k] = RotationOf(vectors + 4 * k);
    }
}

void QuaternionToMatrix(double const* quaternion, double* elements)
{
    double const q0 = quaternion[0];
    double const q1 = quaternion[1];
    double const q2 = quaternion[2];
    double const q3 = quaternion[3];
    elements[0] = q0 * q0 + q1 * q1 - q2 * q2 - q3 * q3;
    elements[1] = 2.0 * (q1 * q2 + q0 * q3);
    elements[2] = 2.0 * (q1 * q3 - q0 * q2);
    elements[3] = 2.0 * (q1 * q2 - q0 * q3);
    elements[4] = q0 * q0 - q1 * q1 + q2 * q2 - q3 * q3;
    elements[5] = 2.0 * (q2 * q3 + q0 * q1);
    elements[6] = 2.0 * (q1 * q3 + q0 * q2);
    elements[7] = 2.0 * (q2 * q3 - q0 * q1);
    elements[8] = q0 * q0 - q1 * q1 - q2 * q2 + q3 * q3;
}

} // namespace Vorlane::RMSBestFitTools
