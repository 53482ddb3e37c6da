#ifndef VORLANE_TESTS_SUPPORT_FILES_H
#define VORLANE_TESTS_SUPPORT_FILES_H

#include "gtest/gtest.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
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

} // namespace VorlaneTest

#endif
