#ifndef VORLANE_EXAMPLES_SHARED_PAGEPROGRAM_H
#define VORLANE_EXAMPLES_SHARED_PAGEPROGRAM_H

#include <string>

namespace Examples {

/// Writes a picture to a file, or to the standard output if `file` is empty, and says on the standard error
/// what went wrong. Gives the exit status of the program called `program`: 0, or 1 for a file that cannot be
/// written.
int WritePicture(char const* program, std::string const& file, std::string const& picture);

/// The whole of a program that draws one page: its one argument is the file, none means the standard output,
/// --help prints `help`. Gives the exit status: 2 for other arguments, else that of WritePicture.
int RunPageProgram(int argc, char** argv, char const* program, char const* help, std::string (*draw)());

} // namespace Examples

#endif
