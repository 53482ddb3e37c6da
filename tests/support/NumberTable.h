#ifndef VORLANE_TESTS_SUPPORT_NUMBERTABLE_H
#define VORLANE_TESTS_SUPPORT_NUMBERTABLE_H

#include "gtest/gtest.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace VorlaneTest {

/// The numbers of a text file, `columns` to a line; what follows a # is a comment. A file without rows, and a
/// row of another length, fail the test.
inline std::vector<std::vector<double>> ReadNumbers(std::string const& path, std::size_t columns)
{
    std::ifstream file(path);
    std::vector<std::vector<double>> rows;
    for (std::string line; std::getline(file, line);) {
        line.erase(std::min(line.find('#'), line.size()));
        std::istringstream text(line);
        std::vector<double> const row((std::istream_iterator<double>(text)), {});
        if (line.find_first_not_of(' ') != std::string::npos) {
            EXPECT_TRUE(text.eof() && row.size() == columns) << path << ": " << line;
            rows.push_back(row);
        }
    }
    EXPECT_FALSE(rows.empty()) << path;
    return rows;
}

} // namespace VorlaneTest

#endif
