// A module that uses every family of the library, and expects to find each in the state of a fresh load.

#include "vorlane/VorlaneCore.h"

#include <sstream>
#include <string>
#include <vector>

using namespace Vorlane;

namespace {

std::string failures;
int exitCalls = 0;

void Expect(bool holds, char const* what)
{
    if (!holds) {
        failures += what;
        failures += "; ";
    }
}

void CountExit()
{
    ++exitCalls;
}

void UseChemistry()
{
    using namespace CoordinationGeometry;
    Orrin::LegacyArray<Spatia::Point3d> sites;
    CoordinationGeometryType const type = StringToCoordinationGeometry("Octahedral");
    Expect(GetCoordinates(type, sites, nullptr) == 7, "ideal sites");
    Orrin::LegacyArray<Spatia::Point3d> ligands;
    for (long i = 1; i < sites.GetSize(); ++i) {
        ligands.push_back(sites[i]);
    }
    Expect(DeviationFromIdealCoordinationGeometry(ligands, type) < 1e-12, "deviation");
}

void UseNumerics()
{
    Expect(RandomInteger::GetDefaultSeed() == 1, "fresh default seed");
    UniformRandomSequence sequence(0.0, 1.0);
    sequence();
    Expect(RandomInteger::GetDefaultSeed() != 1, "the default sequence moves on");
    QuadraticMatrix matrix(2);
    matrix(0, 1) = matrix(1, 0) = 1;
    QuadraticMatrix vectors;
    double values[2];
    Expect(matrix.GetEigenvectorsAndEigenvalues(vectors, values), "eigenpairs");
    Expect(Rational(4, 2).GetNumerator() == 2, "rationals");
}

void UseCurvesAndSpace()
{
    Orrin::LegacyArray<Spatia::Point3d> points;
    NeighborList neighbours(1.5, 101);
    for (int i = 0; i < 4; ++i) {
        points.push_back(Spatia::Point3d(i, 0, 0));
        neighbours.Add(points[i]);
    }
    Orrin::LegacyArray<Spatia::Point3d> curve;
    Spline spline(Spline::Cardinal);
    spline.GetCubicSpline(points, curve);
    Expect(curve.GetSize() == 6, "spline");
    IntArray first, second;
    Expect(neighbours.GetPairs(first, second) == 3, "pairs");
}

void UseColour()
{
    ColorSpectrumRegistry registry;
    std::vector<CString> names;
    registry.GetColorSpectrumNames(names);
    Expect(names.size() == 12, "fresh registry");
    registry.UnRegisterColorSpectrum("Red-Blue");
    ColorMapParameters parameters;
    Expect(parameters.CalculateColor(0.0) == Orrin::Color::Red(), "value to colour");
}

void UseText()
{
    UniqueString const word("word");
    Expect(word.String() == "word" && word.StringPtr() == UniqueString("word").StringPtr(), "interning");
    int value = 0;
    Expect(RomanNumerals::RomanNumeralToInteger(CString("MCMXCIV"), value) && value == 1994, "numerals");
    RegExpression expression("(a+)b", false);
    Expect(expression.Match("xaab", false) && expression.GetSubstring(1) == "aa", "expressions");
}

void UsePersistence()
{
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        Lumora::SpherePrimitive sphere;
        sphere.size = 2.5f;
        Serialize(archive, sphere);
        archive.Close();
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    archive.m_nObjectSchema = 24;
    Lumora::SpherePrimitive sphere;
    bool isShort = false;
    try {
        Serialize(archive, sphere);
    } catch (CArchiveException const& exception) {
        isShort = exception.m_cause == CArchiveException::endOfFile;
    }
    // Stored with points as doubles, read with points as floats: too long, not too short.
    Expect(!isShort, "archive");
}

ExitFunctionList atUnload;

} // namespace

/// An empty text if all went as expected.
extern "C" __attribute__((visibility("default"))) char const* UseEveryFamily()
{
    failures.clear();
    atUnload.AddFunction(CountExit);
    UseChemistry();
    UseNumerics();
    UseCurvesAndSpace();
    UseColour();
    UseText();
    UsePersistence();
    return failures.c_str();
}
