// An outside program that knows the library from its install alone.

#include "vorlane/VorlaneCore.h"

#include <cstdio>

int main()
{
    using namespace Vorlane;
    CoordinationGeometryType const type = CoordinationGeometry::StringToCoordinationGeometry("octahedral");
    std::printf("octahedral has %d ligands, version %s\n", CoordinationGeometry::GetCoordinationNumber(type),
                VORLANE_VERSION);
    return 0;
}
