#ifndef VORLANE_EXAMPLES_SCENE_INSPECT_LAYOUTS_H
#define VORLANE_EXAMPLES_SCENE_INSPECT_LAYOUTS_H

/// \file
/// The byte layouts of archived objects, as data: a second account of what docs/archive-format.md says in
/// prose and the library says in code. The program reads a file by these rows and then lets the library read
/// it too.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

class CArchive;

namespace SceneInspect {

/// A test of the schema number, such as "s>6" (as a signed number) or "u!=23" (as an unsigned one).
struct Presence
{
    bool isSigned = false;
    std::string comparison; ///< empty: always present
    std::int64_t number = 0;

    bool Holds(std::uint32_t schema) const;
};

/// One field of a layout.
struct FieldRow
{
    std::string name; ///< empty for the fields of a base, which take no name of their own
    std::string countForm;
    std::string form; ///< a basic form, or the name of another layout
    Presence presence;
};

using Layout = std::vector<FieldRow>;

/// The layout called `name` at a schema number; null if there is none of that name.
Layout const* FindLayout(std::string const& name, std::uint32_t schema);

/// Reads one object with the library itself, to see that it takes the same bytes.
using LibraryReader = std::function<void(CArchive&)>;

struct Kind
{
    std::string layout;
    LibraryReader readWithLibrary;
};

/// How many bytes the library takes for the object at an offset. What the library raises passes through.
std::size_t BytesOfLibrary(Kind const& kind, std::vector<unsigned char> const& bytes, std::size_t offset,
                           std::uint32_t schema);

/// The kinds of objects that the command line names, in lower case.
std::map<std::string, Kind> const& Kinds();

} // namespace SceneInspect

#endif
