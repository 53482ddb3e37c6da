#ifndef VORLANE_TESTS_SUPPORT_FILES_H
#define VORLANE_TESTS_SUPPORT_FILES_H

#include "gtest/gtest.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace VorlaneTest {

/// The path of a file that is not there yet, unlike those of other test programs, and that goes with the
/// object.
struct TemporaryFile
{
    explicit TemporaryFile(std::string const& name)
        : path(testing::TempDir() + "vorlane_" + std::to_string(getpid()) + "_" + name)
    {
        std::remove(path.c_str());
    }
    ~TemporaryFile() { std::remove(path.c_str()); }
    TemporaryFile(TemporaryFile const&) = delete;

    std::string const path;
};

/// The bytes of a file; none where it cannot be read.
inline std::string ReadFile(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

struct Outcome
{
    int status;
    std::string out;
    std::string err;
};

/// Runs commands of the shell.
inline Outcome RunCommand(std::string const& command)
{
    TemporaryFile const out("out");
    TemporaryFile const err("err");
    int const result = std::system(("(" + command + ") >'" + out.path + "' 2>'" + err.path + "'").c_str());
    return {WEXITSTATUS(result), ReadFile(out.path), ReadFile(err.path)};
}

} // namespace VorlaneTest

#endif
