#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_STRUCTURE_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_STRUCTURE_H

#include "examples/shared/Vectors.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace CoordinationReport {

using Spatia::Point3d;

struct Atom
{
    std::string element; ///< its symbol, "Cl"
    Point3d position;    ///< in angstrom
};

/// The atoms of one file.
struct Structure
{
    std::string path;
    std::string comment; ///< the second line of the file
    std::vector<Atom> atoms;

    /// The file's name without its folder.
    std::string FileName() const;

    /// An atom's element and its number in the file, counted from 1: "Cl3".
    std::string NameOf(std::size_t atom) const;
};

/// A file that is no XYZ file; `what()` is "path:line: reason", or "path: reason" where no line is to blame.
class BadFile : public std::runtime_error
{
public:
    BadFile(std::string const& path, std::size_t line, std::string const& reason);
};

/// Reads an XYZ file: the number of atoms, a comment, and a line with symbol, x, y and z for each atom;
/// further columns are skipped, blank lines may follow.
///
/// \throws BadFile
Structure ReadXyz(std::string const& path);

} // namespace CoordinationReport

#endif
