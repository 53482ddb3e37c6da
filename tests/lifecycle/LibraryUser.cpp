// A module that uses every family of the library, and expects to find the library in the state of a fresh
// load.

#include "tests/lifecycle/EveryFamily.h"

#include <string>
#include <vector>

using namespace Vorlane;

namespace {

VorlaneTest::Failures expect;

void UseWhatIsShared()
{
    expect(RandomInteger::GetDefaultSeed() == 1, "fresh default seed");
    UniformRandomSequence sequence(0.0, 1.0);
    sequence();
    expect(RandomInteger::GetDefaultSeed() != 1, "the default sequence moves on");
    ColorSpectrumRegistry registry;
    std::vector<CString> names;
    registry.GetColorSpectrumNames(names);
    expect(names.size() == 12, "fresh registry");
    registry.UnRegisterColorSpectrum("Red-Blue");
    ColorMapParameters parameters;
    expect(parameters.CalculateColor(0.0) == Orrin::Color::Red(), "value to colour");
    UniqueString const word("word");
    Orrin::LegacyArray<Spatia::Point3d> points, curve;
    for (int i = 0; i < 5; ++i) {
        points.push_back(Spatia::Point3d(i, 0, 0));
    }
    Spline(Spline::Cardinal).GetCubicSpline(points, curve);
    expect(curve.GetSize() > 5, "spline");
    expect(word.String() == "word" && word.StringPtr() == UniqueString("word").StringPtr(), "interning");
}

ExitFunctionList atUnload;

} // namespace

/// An empty text if all went as expected.
extern "C" __attribute__((visibility("default"))) char const* UseFreshLibrary()
{
    VorlaneTest::UseEveryFamily(expect);
    UseWhatIsShared();
    atUnload.AddFunction([] { expect.text.clear(); });
    return expect.text.c_str();
}
