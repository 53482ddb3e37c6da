#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_HTMLREPORT_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_HTMLREPORT_H

#include "examples/coordination_report/TextReport.h"

#include <string>
#include <vector>

namespace CoordinationReport {

/// One page with all pictures and tables.
///
/// \param failures  what could not be reported, a line each.
std::string HtmlPage(std::vector<FileReport> const& reports, std::vector<std::string> const& failures);

} // namespace CoordinationReport

#endif
