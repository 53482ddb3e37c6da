#include "vorlane/numerics/RMSBestFitToolsInternal.h"

#include "vorlane/numerics/EigenSolverInternal.h"
#include "vorlane/numerics/WideRegistersInternal.h"

#include <algorithm>

#ifdef VORLANE_HAVE_WIDE
#include <immintrin.h>
#endif

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

/// The elements of the upper triangle of Horn's matrix.
constexpr int termCount = 10;

/// Adds what the centred points p and q bring to the upper triangle of Horn's matrix, row after row.
void AddTerms(Point3d const& p, Point3d const& q, double* sums)
{
    double const xx = p.x * q.x, xy = p.x * q.y, xz = p.x * q.z;
    double const yx = p.y * q.x, yy = p.y * q.y, yz = p.y * q.z;
    double const zx = p.z * q.x, zy = p.z * q.y, zz = p.z * q.z;
    sums[0] += xx + yy + zz;
    sums[1] += yz - zy;
    sums[2] += zx - xz;
    sums[3] += xy - yx;
    sums[4] += xx - yy - zz;
    sums[5] += xy + yx;
    sums[6] += zx + xz;
    sums[7] += yy - xx - zz;
    sums[8] += yz + zy;
    sums[9] += zz - xx - yy;
}

/// Sums the terms of all pairs around the centroids c1 and c2 in their order.
void SumTerms(Point3d const* a, Point3d const* b, long count, Point3d c1, Point3d c2, double* sums)
{
    double local[termCount] = {}; // which lie not among the points, as compilers would fear of others
    for (long i = 0; i < count; ++i) {
        AddTerms(a[i] - c1, b[i] - c2, local);
    }
    std::copy_n(local, termCount, sums);
}

#ifdef VORLANE_HAVE_WIDE

/// The two numbers from each place on.
VORLANE_WIDE __m256d LoadTwice(double const* first, double const* second)
{
    return _mm256_loadu2_m128d(second, first);
}

VORLANE_WIDE __m256d RepeatTwo(double first, double second)
{
    return _mm256_setr_pd(first, second, first, second);
}

VORLANE_WIDE __m256d Swap(__m256d twice)
{
    return _mm256_permute_pd(twice, 5);
}

/// The same sums, in registers of two numbers of one pair and the same two of the next. The digits of a name
/// are the places of its terms among the sums. A difference beside a sum takes one instruction.
VORLANE_WIDE void SumTermsWide(Point3d const* a, Point3d const* b, long count, Point3d c1, Point3d c2,
                               double* sums)
{
    __m256d const c1xy = RepeatTwo(c1.x, c1.y);
    __m256d const c1yz = RepeatTwo(c1.y, c1.z);
    __m256d const c2xy = RepeatTwo(c2.x, c2.y);
    __m256d const c2yz = RepeatTwo(c2.y, c2.z);
    __m256d sums1286 = _mm256_setzero_pd();
    __m256d sums3590 = _mm256_setzero_pd();
    __m128d sums47 = _mm_setzero_pd();
    for (long i = 0; i + 1 < count; i += 2) {
        __m256d const pxy = _mm256_sub_pd(LoadTwice(&a[i].x, &a[i + 1].x), c1xy);
        __m256d const pyz = _mm256_sub_pd(LoadTwice(&a[i].y, &a[i + 1].y), c1yz);
        __m256d const pzx = _mm256_shuffle_pd(pyz, pxy, 5);
        __m256d const qxy = _mm256_sub_pd(LoadTwice(&b[i].x, &b[i + 1].x), c2xy);
        __m256d const qyz = _mm256_sub_pd(LoadTwice(&b[i].y, &b[i + 1].y), c2yz);
        __m256d const qzx = _mm256_shuffle_pd(qyz, qxy, 5);

        __m256d const yzZx = _mm256_mul_pd(pyz, qzx);
        __m256d const zyXz = _mm256_mul_pd(pzx, qyz);
        __m256d const terms12 = _mm256_sub_pd(yzZx, zyXz);
        __m256d const terms86 = _mm256_add_pd(yzZx, zyXz);
        __m256d const xyYx = _mm256_mul_pd(pxy, Swap(qxy));
        __m256d const terms35 = _mm256_addsub_pd(xyYx, Swap(xyYx));
        __m256d const xxYy = _mm256_mul_pd(pxy, qxy);
        __m256d const yyZz = _mm256_mul_pd(pyz, qyz);
        __m256d const zzXx = _mm256_mul_pd(pzx, qzx);
        __m256d const terms90 = _mm256_addsub_pd(_mm256_addsub_pd(zzXx, xxYy), yyZz);
        __m256d const terms47 = _mm256_sub_pd(_mm256_sub_pd(xxYy, Swap(xxYy)), _mm256_movedup_pd(zzXx));

        sums1286 = _mm256_add_pd(sums1286, _mm256_permute2f128_pd(terms12, terms86, 0x20));
        sums1286 = _mm256_add_pd(sums1286, _mm256_permute2f128_pd(terms12, terms86, 0x31));
        sums3590 = _mm256_add_pd(sums3590, _mm256_permute2f128_pd(terms35, terms90, 0x20));
        sums3590 = _mm256_add_pd(sums3590, _mm256_permute2f128_pd(terms35, terms90, 0x31));
        sums47 = _mm_add_pd(sums47, _mm256_castpd256_pd128(terms47));
        sums47 = _mm_add_pd(sums47, _mm256_extractf128_pd(terms47, 1));
    }
    double lanes[termCount];
    _mm256_storeu_pd(lanes, sums1286);
    _mm256_storeu_pd(lanes + 4, sums3590);
    _mm_storeu_pd(lanes + 8, sums47);
    constexpr int places[termCount] = {1, 2, 8, 6, 3, 5, 9, 0, 4, 7};
    for (int lane = 0; lane < termCount; ++lane) {
        sums[places[lane]] = lanes[lane];
    }
    if (count % 2 != 0) {
        AddTerms(a[count - 1] - c1, b[count - 1] - c2, sums);
    }
}

#else

constexpr auto SumTermsWide = SumTerms;

#endif

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
    (HasWideRegisters() ? SumTermsWide : SumTerms)(a, b, count, c1, c2, sums);
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
