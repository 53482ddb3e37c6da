// Deviations from ideal geometries beside a search through all labellings, and trigonal pyramids by their
// angles.
//
// A letter from `a` chooses one of the measured geometries, and three bytes each its ligands; ones of rank
// 248 and above stand for numbers far from 1. Any other letter takes the two bytes behind it, and a third if
// there is one, for the angles of a pyramid, which is flat without the third.

#include "fuzz/DeviationChecks.h"
#include "fuzz/Input.h"
#include "vorlane/coordination/IdealCoordinatesInternal.h"

#include <limits>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using Spatia::Point3d;
using VorlaneFuzz::Dot;
using VorlaneFuzz::Input;
using VorlaneFuzz::PointArray;
using VorlaneFuzz::Require;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double farFromOne[] = {
    infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e200, -1e200, 1e150, 1e-320, 0.0};

double ReadCoordinate(Input& input)
{
    int const byte = input.Byte();
    return byte < 248 ? (byte - 'P') / 16.0 : farFromOne[byte - 248];
}

void CheckLigands(CoordinationGeometryType type, Input& input)
{
    PointArray ligands;
    for (int n = GetCoordinationNumber(type); n > 0; --n) {
        Point3d ligand;
        for (double* coordinate : {&ligand.x, &ligand.y, &ligand.z}) {
            *coordinate = ReadCoordinate(input);
        }
        double const length = ligand.Length();
        ligands.push_back(length > 0.0 && length < 100.0 ? ligand.Normalize() : ligand);
    }
    VorlaneFuzz::CheckDeviation(ligands, type);
}

/// An angle in degrees.
int ReadAngle(Input& input)
{
    return 6 + input.Byte() % 172;
}

void CheckPyramid(Input& input)
{
    constexpr double degree = 0.017453292519943295;
    int const a = ReadAngle(input), b = ReadAngle(input);
    int const c = input.HasEnded() ? std::min(360 - a - b, 177) : ReadAngle(input);
    if (a == b + c || b == a + c || c == a + b || c < 6) {
        return; // three directions in a plane, and rounding decides; or a flat pyramid that is none
    }
    Point3d sites[3];
    bool const isPossible = a < b + c && b < a + c && c < a + b && a + b + c <= 360;
    Require(PlaceTrigonalPyramid(a * degree, b * degree, c * degree, sites[0], sites[1], sites[2]) ==
            isPossible);
    if (isPossible) {
        Require(std::fabs(Dot(sites[0], sites[1]) - std::cos(a * degree)) <= 1e-7);
        Require(std::fabs(Dot(sites[0], sites[2]) - std::cos(b * degree)) <= 1e-7);
        Require(std::fabs(Dot(sites[1], sites[2]) - std::cos(c * degree)) <= 1e-7);
        Require(sites[1].x == sites[0].x && sites[2].x == sites[0].x);
        Require(std::fabs(sites[0].Length() - 1.0) <= 1e-7);
        Require(std::fabs(sites[0].y) <= 1e-7 && sites[0].z > 0.0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    auto const choice = static_cast<std::size_t>(input.Byte() - 'a');
    if (choice < std::size(VorlaneFuzz::measuredGeometries)) {
        CheckLigands(VorlaneFuzz::measuredGeometries[choice], input);
    } else {
        CheckPyramid(input);
    }
    return 0;
}
