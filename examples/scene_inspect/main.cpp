// Reads an archive by a list of object kinds, prints every field with its offset and bytes, and says where
// and why the file stops fitting. An archive names no types, so the reader must know what is in it: the list
// is that knowledge.

#include "examples/scene_inspect/Inspector.h"
#include "examples/scene_inspect/Layouts.h"

#include "vorlane/VorlaneCore.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace SceneInspect;

namespace {

constexpr char const* usage =
    R"(Usage: scene_inspect FILE --as LIST [--schema NUMBER] [--entries COUNT]
       scene_inspect --kinds

Prints every field of an archive with its offset, its bytes and its value.

  --as LIST         what the archive holds, in order: kinds with commas between them, each with *COUNT if it
                    stands there more than once, such as attributes,sphere*6,mesh
  --schema NUMBER   the schema number that the archive was written with (24); -1 is the number of an archive
                    that nobody set
  --entries COUNT   how many entries of a list to print, before the last one (3)
  --kinds           the kinds that there are

Exit status: 0 if the list fits the file to its last byte, 1 if it does not, 2 for a wrong call or a file that
cannot be read.
)";

/// What a command line that makes no sense gets.
class WrongCall : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Request
{
    std::string file;
    std::string list;
    std::uint32_t schema = 24;
    std::size_t entries = 3;
};

long ParseNumber(std::string const& text, std::string const& what)
{
    int number = 0;
    if (!Vorlane::StringUtils::StringToInteger(CString(text.c_str()), number)) {
        throw WrongCall(what + " takes a number, not '" + text + "'");
    }
    return number;
}

Request ParseCommandLine(std::vector<std::string> const& arguments)
{
    Request request;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string const& argument = arguments[i];
        bool const isOption = argument.compare(0, 2, "--") == 0;
        if (!isOption) {
            if (!request.file.empty()) {
                throw WrongCall("two files: '" + request.file + "' and '" + argument + "'");
            }
            request.file = argument;
            continue;
        }
        if (i + 1 == arguments.size()) {
            throw WrongCall(argument + " takes an argument");
        }
        std::string const& value = arguments[++i];
        if (argument == "--as") {
            request.list = value;
        } else if (argument == "--schema") {
            request.schema = static_cast<std::uint32_t>(ParseNumber(value, argument));
        } else if (argument == "--entries") {
            request.entries = static_cast<std::size_t>(std::max(0L, ParseNumber(value, argument)));
        } else {
            throw WrongCall("there is no option " + argument);
        }
    }
    if (request.file.empty() || request.list.empty()) {
        throw WrongCall("FILE and --as LIST are needed");
    }
    return request;
}

/// The kinds of a list, each as often as it stands in the archive: {"sphere[0]", kind}, ...
std::vector<std::pair<std::string, Kind>> ParseList(std::string const& list)
{
    std::vector<std::pair<std::string, Kind>> objects;
    for (std::size_t begin = 0; begin <= list.size();) {
        std::size_t const end = std::min(list.find(',', begin), list.size());
        std::string name = list.substr(begin, end - begin);
        begin = end + 1;
        long count = 1;
        std::size_t const star = name.find('*');
        if (star != std::string::npos) {
            count = ParseNumber(name.substr(star + 1), name);
            name.erase(star);
        }
        auto const kind = Kinds().find(name);
        if (kind == Kinds().end()) {
            throw WrongCall("there is no kind '" + name + "'; --kinds lists them");
        }
        for (long i = 0; i < count; ++i) {
            objects.emplace_back(star == std::string::npos ? name : name + "[" + std::to_string(i) + "]",
                                 kind->second);
        }
    }
    return objects;
}

std::vector<unsigned char> ReadBytes(std::string const& path)
{
    CFile file(path.c_str(), CFile::modeRead);
    std::vector<unsigned char> bytes(file.GetRemaining());
    std::size_t done = 0;
    for (unsigned int taken = 1; taken != 0 && done < bytes.size(); done += taken) {
        std::size_t const block = std::min<std::size_t>(bytes.size() - done, 1u << 30);
        taken = file.Read(bytes.data() + done, static_cast<unsigned int>(block));
    }
    bytes.resize(done);
    return bytes;
}

/// \returns whether the list fits the file to its last byte.
bool Inspect(Request const& request)
{
    std::vector<std::pair<std::string, Kind>> const objects = ParseList(request.list);
    std::vector<unsigned char> const bytes = ReadBytes(request.file);
    std::cout << request.file << ": " << bytes.size() << " bytes, schema number " << request.schema << '\n';
    Inspector inspector(bytes, request.schema, request.entries, std::cout);
    for (auto const& [path, kind] : objects) {
        std::size_t const begin = inspector.GetOffset();
        try {
            inspector.Walk(path, kind.layout);
        } catch (Misfit const& misfit) {
            std::cout.flush();
            std::cerr << "The file stops fitting at " << misfit.what() << ".\n";
            return false;
        }
        std::size_t const size = inspector.GetOffset() - begin;
        std::size_t sizeOfLibrary = 0;
        try {
            sizeOfLibrary = BytesOfLibrary(kind, bytes, begin, request.schema);
        } catch (std::exception const& refusal) {
            std::cout.flush();
            std::cerr << "The library refuses " << path << " at offset " << begin << ": " << refusal.what()
                      << ".\n";
            return false;
        }
        if (size != sizeOfLibrary) {
            throw std::logic_error(path + " takes " + std::to_string(size) + " bytes here and " +
                                   std::to_string(sizeOfLibrary) + " in the library");
        }
    }
    std::size_t const left = bytes.size() - inspector.GetOffset();
    if (left != 0) {
        std::cout.flush();
        std::cerr << "The list ends at offset " << inspector.GetOffset() << ", but the file has " << left
                  << " bytes more.\n";
    }
    return left == 0;
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> const arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 1 && arguments[0] == "--kinds") {
            for (auto const& kind : Kinds()) {
                std::cout << kind.first << '\n';
            }
            return 0;
        }
        if (arguments.size() == 1 && arguments[0] == "--help") {
            std::cout << usage;
            return 0;
        }
        return Inspect(ParseCommandLine(arguments)) ? 0 : 1;
    } catch (WrongCall const& wrongCall) {
        std::cerr << "scene_inspect: " << wrongCall.what() << '\n' << usage;
    } catch (std::exception const& exception) {
        std::cerr << "scene_inspect: " << exception.what() << '\n';
    }
    return 2;
}
