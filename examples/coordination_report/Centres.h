#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_CENTRES_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_CENTRES_H

#include "examples/coordination_report/CommandLine.h"
#include "examples/coordination_report/Structure.h"

#include <cstddef>
#include <string>
#include <vector>

namespace CoordinationReport {

struct Ligand
{
    std::size_t atom;
    double distance; ///< from the centre, in angstrom
};

struct Centre
{
    std::size_t atom;
    std::vector<Ligand> ligands; ///< the nearest first, among equals in the order of the file
    std::size_t alike = 0;       ///< how many others of its kind are not reported
};

/// The centres to report, and what is to be said about the choice.
struct CentreChoice
{
    std::vector<Centre> centres;
    std::vector<std::string> remarks;
};

/// The centres of a structure by the rules of the options.
///
/// \throws BadFile  if the centre that the options name is not in the structure.
CentreChoice FindCentres(Structure const& structure, Options const& options);

} // namespace CoordinationReport

#endif
