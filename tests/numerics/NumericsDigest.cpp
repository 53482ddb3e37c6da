// Prints digests of what the numerics compute from fixed input. Builds by other compilers and at other levels
// of optimisation must print the same: CompareDigests.cmake makes them and compares.

#include "vorlane/numerics/NumericUtils.h"
#include "vorlane/numerics/QuadraticMatrix.h"
#include "vorlane/numerics/RMSBestFitTools.h"
#include "vorlane/numerics/RandomInternal.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#ifdef VORLANE_DIGEST_STANDS_ALONE
// Without the file that fixes the order of the load-time objects.
Vorlane::RandomInteger Vorlane::defaultGenerator;
#endif

namespace {

/// Fowler, Noll, Vo 1a over the bits of doubles.
class Digest
{
public:
    void Add(double value)
    {
        unsigned char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        for (unsigned char const byte : bytes) {
            m_state = (m_state ^ byte) * 1099511628211u;
        }
    }

    void Add(Spatia::Point3d const& point)
    {
        Add(point.x);
        Add(point.y);
        Add(point.z);
    }

    void Print(char const* name) const { std::printf("%s %016llx\n", name, m_state); }

private:
    unsigned long long m_state = 14695981039346656037u;
};

std::mt19937_64 engine(1);

/// A number from -1 to 1, the same everywhere; one in eight is a simple fraction.
double Number()
{
    std::uint64_t const bits = engine();
    double const fraction = static_cast<double>(bits >> 11) * 0x1p-52 - 1.0;
    return bits % 8 == 0 ? static_cast<double>(static_cast<int>(fraction * 4.0)) / 4.0 : fraction;
}

void DigestEigenpairs()
{
    Digest digest;
    for (int n : {1, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 6, 7, 8, 11, 16, 23, 40, 70}) {
        for (int round = 0; round < 10; ++round) {
            Vorlane::QuadraticMatrix matrix(n), vectors;
            std::vector<double> values(static_cast<std::size_t>(n));
            for (int i = 0; i < n; ++i) {
                for (int j = 0; j <= i; ++j) {
                    matrix(i, j) = matrix(j, i) = Number();
                }
            }
            digest.Add(matrix.GetEigenvectorsAndEigenvalues(vectors, values.data()));
            for (int i = 0; i < n * n; ++i) {
                digest.Add(vectors(i / n, i % n));
            }
            for (double const value : values) {
                digest.Add(value);
            }
        }
    }
    digest.Print("eigenpairs");
}

void DigestBestFits()
{
    Digest digest;
    for (int count : {2, 3, 4, 8, 9, 33, 100, 1001}) {
        Orrin::LegacyArray<Spatia::Point3d> first, second;
        for (int i = 0; i < count; ++i) {
            Spatia::Point3d point; // filled by statements, as the order of arguments is open
            point.x = Number();
            point.y = Number();
            point.z = Number() * 0x1p-8;
            first.push_back(point);
            second.push_back(Spatia::Point3d(Number(), 3.0 - point.x, point.y * 1.1));
        }
        Spatia::Point3d centroid, normal;
        Vorlane::RMSBestFitTools::FindPlane(first, centroid, normal);
        digest.Add(centroid);
        digest.Add(normal);
        digest.Add(Vorlane::RMSBestFitTools::FindAndApplyTransformation(first, second, first));
        for (Spatia::Point3d const& point : first) {
            digest.Add(point);
        }
    }
    digest.Print("best fits");
}

void DigestRandom()
{
    Digest digest;
    Vorlane::RandomInteger generator(20260101);
    Vorlane::UniformRandomSequence uniform(generator, -0.1, 0.7);
    Vorlane::NormalRandomSequence normal(generator, 0.3, 1.9);
    for (int i = 0; i < 20000; ++i) {
        digest.Add(uniform());
        digest.Add(normal());
        digest.Add(Vorlane::Randomize(Spatia::Point3d(0.1, 0.2, 0.3), uniform));
        digest.Add(Vorlane::NumericUtils::RoundToInteger(1e3 * uniform()));
    }
    digest.Print("random numbers");
}

} // namespace

int main()
{
    DigestEigenpairs();
    DigestBestFits();
    DigestRandom();
    return 0;
}
