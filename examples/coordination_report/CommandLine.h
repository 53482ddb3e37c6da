#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_COMMANDLINE_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_COMMANDLINE_H

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CoordinationReport {

struct Options
{
    std::vector<std::string> files;    ///< folders stand for the .xyz files in them
    std::optional<std::string> centre; ///< "Cu", "24" or "Cu24"
    std::optional<double> cutoff;      ///< in angstrom
    bool allCentres = false;
    bool allContacts = false;
    bool tsv = false;
    std::optional<std::string> svgFolder;
    std::optional<std::string> htmlFile;
    std::optional<std::string> sceneFile;
    std::vector<std::string> chains; ///< files to be drawn as ribbons
    bool help = false;
};

/// A command line that cannot be followed.
class BadUsage : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The full text of --help.
char const* HelpText();

/// \throws BadUsage
Options ReadCommandLine(std::vector<std::string> const& arguments);

} // namespace CoordinationReport

#endif
