#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_ELEMENTS_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_ELEMENTS_H

#include "examples/shared/Svg.h"

#include <string>

namespace CoordinationReport {

/// What the program knows of an element.
struct Element
{
    char const* symbol;
    double covalentRadius; ///< in angstrom
    bool isMetal;
};

/// The element of a symbol in any case, or null.
Element const* FindElement(std::string const& symbol);

/// The customary colour of an element's atoms in pictures.
Examples::Colour ColourOf(std::string const& symbol);

} // namespace CoordinationReport

#endif
