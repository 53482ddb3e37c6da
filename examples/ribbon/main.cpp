// Draws a chain of points, such as the C-alpha atoms of a protein, as a flat ribbon in one SVG picture.

#include "examples/shared/PageProgram.h"
#include "examples/shared/Ribbon.h"
#include "examples/shared/Vectors.h"

#include <fstream>
#include <iostream>
#include <limits>
#include <string>

namespace {

using namespace Examples;
using PointArray = Orrin::LegacyArray<Point3d>;

char const* const help = R"(usage: ribbon CHAIN.xyz [FILE]

Threads a Hermite curve through the points of a chain, in angstrom, and draws
it as a ribbon that twists with the chain, from blue at its start to red at its
end. The chain breaks where two points are more than 5 angstrom apart.

The picture goes to FILE, or to the standard output if none is named.
)";

/// The points of an XYZ file; none if it cannot be read.
PointArray ReadChain(std::string const& path)
{
    std::ifstream file(path);
    long count = 0;
    file >> count;
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    PointArray chain;
    std::string element;
    for (Point3d point; chain.GetSize() < count && file >> element >> point.x >> point.y >> point.z;) {
        chain.push_back(point);
    }
    if (chain.GetSize() != count) {
        chain.clear();
    }
    return chain;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3 || std::string(argv[1]) == "--help") {
        (argc == 2 ? std::cout : std::cerr) << help;
        return argc == 2 ? 0 : 2;
    }
    std::string const picture = DrawRibbon(ReadChain(argv[1]), "ribbon", true);
    if (picture.empty()) {
        std::cerr << "ribbon: " << argv[1] << " holds no chain\n";
        return 1;
    }
    return WritePicture("ribbon", argc == 2 ? "" : argv[2], picture);
}
