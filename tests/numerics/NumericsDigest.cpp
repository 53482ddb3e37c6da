// Digests of what the numerics compute from fixed input. As a part of the tests this compares them with
// digests.txt; as a program, which CompareDigests.cmake has other compilers build, it prints them.

#include "vorlane/numerics/NumericUtils.h"
#include "vorlane/numerics/QuadraticMatrix.h"
#include "vorlane/numerics/RMSBestFitToolsInternal.h"
#include "vorlane/numerics/RandomInternal.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#ifdef VORLANE_DIGEST_STANDS_ALONE
// Without the file that fixes the order of the load-time objects.
Vorlane::RandomInteger Vorlane::defaultGenerator;
#endif

namespace {

std::mt19937_64 engine(1);
std::uint64_t digest = 0;
std::string digests;

/// Takes the bits of a number into the digest, after Fowler, Noll, Vo 1a; NaN counts as zero.
void Add(double value)
{
    std::uint64_t bits = 0;
    if (value == value) {
        std::memcpy(&bits, &value, sizeof bits);
    }
    digest = (digest ^ bits) * 1099511628211u;
}

void Add(Spatia::Point3d const& point)
{
    Add(point.x);
    Add(point.y);
    Add(point.z);
}

void Close(char const* name, int size)
{
    char line[64];
    std::snprintf(line, sizeof line, "%s %d %016llx\n", name, size, static_cast<unsigned long long>(digest));
    digests += line;
    digest = 0;
}

/// A number from -1 to 1, the same everywhere; one in eight is a simple fraction.
double Number()
{
    std::uint64_t const bits = engine();
    double const fraction = static_cast<double>(bits >> 11) * 0x1p-52 - 1.0;
    return bits % 8 == 0 ? static_cast<double>(static_cast<int>(fraction * 4.0)) / 4.0 : fraction;
}

/// Full, of rank 1, with elements whose squares underflow, and sparse matrices in turn; zeros of either sign
/// mirror each other.
void DigestEigenpairs(int n, int rounds)
{
    for (int round = 0; round < rounds; ++round) {
        Vorlane::QuadraticMatrix matrix(n), vectors;
        std::vector<double> values(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) {
            double const factor = Number();
            for (int j = 0; j <= i; ++j) {
                double const number = Number();
                double const elements[] = {number, j == i ? factor : matrix(j, j) * factor,
                                           j % 3 == 0 ? number * 0x1p-530 : number,
                                           static_cast<double>(static_cast<int>(number * 1.6))};
                matrix(i, j) = elements[round % 4];
                matrix(j, i) = matrix(i, j) == 0.0 && j < i ? -0.0 : matrix(i, j);
            }
        }
        Add(matrix.GetEigenvectorsAndEigenvalues(vectors, values.data()));
        for (int i = 0; i < n; ++i) {
            Add(values[static_cast<std::size_t>(i)]);
            for (int j = 0; j < n; ++j) {
                Add(vectors(i, j));
            }
        }
    }
    Close("eigenpairs", n);
}

void DigestBestFits(int count)
{
    Orrin::LegacyArray<Spatia::Point3d> first, second;
    for (int i = 0; i < count; ++i) {
        double const x = Number(), y = Number(), z = Number(), u = Number();
        first.push_back(Spatia::Point3d(x, y, z * 0x1p-8));
        second.push_back(Spatia::Point3d(u, 3.0 - x, y * 1.1));
    }
    Spatia::Point3d centroid, normal, translations[4];
    Vorlane::RMSBestFitTools::FindPlane(first, centroid, normal);
    Add(centroid);
    Add(normal);
    Spatia::Matrix3x3 rotations[4];
    double eigenvalues[4];
    Vorlane::RMSBestFitTools::FindAllTransformations(first, second, rotations, translations, eigenvalues);
    for (int k = 0; k < 4; ++k) {
        Add(eigenvalues[k]);
        Add(translations[k]);
        for (int i = 0; i < 9; ++i) {
            Add(rotations[k](i / 3, i % 3));
        }
    }
    Vorlane::RMSBestFitTools::FindAndApplyTransformation(first, second, first);
    for (Spatia::Point3d const& point : first) {
        Add(point);
    }
    Close("fits", count);
}

void DigestRandom(int seed)
{
    Vorlane::RandomInteger generator(static_cast<unsigned long>(seed));
    Vorlane::UniformRandomSequence uniform(generator, -0.1, 0.7);
    for (int i = 0; i < 100000; ++i) {
        Add(uniform());
        Add(Vorlane::Randomize(Spatia::Point3d(0.1, 0.2, 0.3), uniform));
        Add(Vorlane::NumericUtils::RoundToInteger(1e3 * uniform()));
    }
    Close("uniform", seed);
}

std::string const& ComputeDigests()
{
    for (int const n : {1, 2, 3, 4, 5, 6, 7, 8}) {
        DigestEigenpairs(n, 80);
    }
    for (int const n : {11, 16, 17, 23, 40, 66, 131}) {
        DigestEigenpairs(n, 4);
    }
    for (int const count : {2, 3, 4, 8, 9, 33, 100, 1001}) {
        DigestBestFits(count);
    }
    for (int const seed : {0, 1, 20260101}) {
        DigestRandom(seed);
    }
    return digests;
}

} // namespace

#ifdef VORLANE_DIGEST_PROGRAM

int main()
{
    ComputeDigests();
    // Not in digests.txt: logarithms differ by a bit from one standard library to another.
    Vorlane::RandomInteger generator(20260101);
    Vorlane::NormalRandomSequence normal(generator, 0.3, 1.9);
    for (int i = 0; i < 100000; ++i) {
        Add(normal());
    }
    Close("normal", 20260101);
    std::fputs(digests.c_str(), stdout);
    return 0;
}

#else

#include "tests/support/Files.h"

// digests.txt comes from a program of its own, written from the published procedures: R. S. Martin, C.
// Reinsch, J. H. Wilkinson, tred2; A. Dubrulle, R. S. Martin, J. H. Wilkinson, imtql2; B. K. P. Horn,
// "Closed-form solution of absolute orientation using unit quaternions" (1987).
TEST(NumericsDigestTest, GivesTheBitsOfThePublishedProcedures)
{
    EXPECT_EQ(ComputeDigests(), VorlaneTest::ReadFile(VORLANE_SOURCE_DIR "/tests/numerics/digests.txt"));
}

#endif
