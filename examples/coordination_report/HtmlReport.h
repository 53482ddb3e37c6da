#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_HTMLREPORT_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_HTMLREPORT_H

#include "examples/coordination_report/TextReport.h"

#include <string>
#include <vector>

namespace CoordinationReport {

/// One page with all pictures and tables.
///
/// \param chains    what is drawn as ribbons.
/// \param failures  what could not be reported, a line each.
std::string HtmlPage(std::vector<FileReport> const& reports, std::vector<Structure> const& chains,
                     std::vector<std::string> const& failures);

/// The chain through all atoms of a file as a ribbon; empty if no two neighbours are near enough.
std::string DrawChain(Structure const& chain, std::string const& idPrefix, bool asFile);

} // namespace CoordinationReport

#endif
