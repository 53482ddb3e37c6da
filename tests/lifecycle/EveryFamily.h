#ifndef VORLANE_TESTS_LIFECYCLE_EVERYFAMILY_H
#define VORLANE_TESTS_LIFECYCLE_EVERYFAMILY_H

#include "vorlane/VorlaneCore.h"

#include <string>

namespace VorlaneTest {

/// What was not as expected.
struct Failures
{
    void operator()(bool holds, char const* what)
    {
        text += holds ? std::string() : what + std::string("; ");
    }

    std::string text;
};

/// Uses objects of every family that shares no state, as any number of threads may at once.
inline void UseEveryFamily(Failures& expect)
{
    using namespace Vorlane;
    using namespace CoordinationGeometry;
    for (int type = 0; type <= 31; ++type) {
        Orrin::LegacyArray<Spatia::Point3d> sites;
        GetCoordinates(static_cast<CoordinationGeometryType>(type), sites, nullptr);
        GetCoordinationAngle(static_cast<CoordinationGeometryType>(type), 1, 2);
    }
    Orrin::LegacyArray<Spatia::Point3d> sites;
    expect(GetCoordinates(StringToCoordinationGeometry("Octahedral"), sites, nullptr) == 7, "ideal sites");
    Orrin::LegacyArray<Spatia::Point3d> ligands;
    for (long i = 1; i < sites.GetSize(); ++i) {
        ligands.push_back(sites[i]);
    }
    expect(DeviationFromIdealCoordinationGeometry(ligands, octahedral) < 1e-12, "deviation");

    QuadraticMatrix matrix(2);
    matrix(0, 1) = matrix(1, 0) = 1;
    QuadraticMatrix vectors;
    double values[2];
    expect(matrix.GetEigenvectorsAndEigenvalues(vectors, values), "eigenpairs");
    expect(Rational(4, 2).GetNumerator() == 2, "rationals");
    RandomInteger generator(1);
    UniformRandomSequence sequence(generator, 0.0, 10.0);
    expect(sequence() != sequence(), "random numbers");

    Orrin::LegacyArray<Spatia::Point3d> points;
    NeighborList neighbours(1.5, 101);
    for (int i = 0; i < 50; ++i) {
        points.push_back(Spatia::Point3d(i, 0, 0));
        neighbours.Add(points[i]);
    }
    IntArray first, second;
    expect(neighbours.GetPairs(first, second) == 49, "pairs");

    CustomColorSpectrum spectrum("mine", 16, true);
    spectrum.SetColor(3, Orrin::Color::Red());
    spectrum.SetColor(12, Orrin::Color::Blue());
    Orrin::Color color;
    expect(!spectrum.GetColor(7, color) && spectrum.GetColor(3, color) && color == Orrin::Color::Red(),
           "spectrum");

    int number = 0;
    expect(RomanNumerals::RomanNumeralToInteger(CString("MCMXCIV"), number) && number == 1994, "numerals");
    double real = 0;
    expect(StringUtils::StringToReal("2.5", real) && real == 2.5, "numbers in text");
    RegExpression expression("([a-z]+)([0-9]+)", false);
    expect(expression.Match("--abc123--", false) && expression.GetSubstring(2) == "123", "expressions");

    CMemFile file;
    CArchive storing(&file, CArchive::store);
    storing.m_nObjectSchema = 24;
    Lumora::SpherePrimitive sphere;
    sphere.size = 2.5f;
    Serialize(storing, sphere);
    SerializePoint3dArray(storing, points);
    storing.Close();
    file.SeekToBegin();
    CArchive loading(&file, CArchive::load);
    loading.m_nObjectSchema = 24;
    sphere.size = 0;
    Serialize(loading, sphere);
    Orrin::LegacyArray<Spatia::Point3d> loaded;
    SerializePoint3dArray(loading, loaded);
    expect(sphere.size == 2.5f && loaded.GetSize() == 50 && loaded[49].x == 49, "archive");
}

} // namespace VorlaneTest

#endif
