#include "examples/shared/PageProgram.h"

#include <fstream>
#include <iostream>

namespace Examples {

int WritePicture(char const* program, std::string const& file, std::string const& picture)
{
    if (file.empty()) {
        std::cout << picture;
        return std::cout.flush() ? 0 : 1;
    }
    std::ofstream stream(file, std::ios::binary);
    stream << picture;
    stream.close();
    if (!stream) {
        std::cerr << program << ": cannot write " << file << "\n";
        return 1;
    }
    return 0;
}

int RunPageProgram(int argc, char** argv, char const* program, char const* help, std::string (*draw)())
{
    std::string const argument = argc > 1 ? argv[1] : "";
    if (argument == "--help" || argument == "-h") {
        std::cout << help;
        return 0;
    }
    if (argc > 2 || (argument.size() > 1 && argument[0] == '-')) {
        std::cerr << program << ": unknown argument " << (argc > 2 ? argv[2] : argument) << "\n" << help;
        return 2;
    }
    return WritePicture(program, argument, draw());
}

} // namespace Examples
