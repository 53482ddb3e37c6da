#ifndef VORLANE_EXAMPLES_SCENE_INSPECT_INSPECTOR_H
#define VORLANE_EXAMPLES_SCENE_INSPECT_INSPECTOR_H

/// \file
/// Walks the bytes of an archive by a list of object kinds and prints every field.

#include "examples/scene_inspect/Layouts.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

namespace SceneInspect {

/// Says where and why a file stops fitting.
class Misfit : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

class Inspector
{
public:
    /// Entries of a list past `shownEntries` are walked but not printed, except the last.
    Inspector(std::vector<unsigned char> const& bytes, std::uint32_t schema, std::size_t shownEntries,
              std::ostream& out);

    /// Prints the fields of one object from the present offset on.
    ///
    /// \throws Misfit if the bytes don't fit.
    void Walk(std::string const& path, std::string const& layout);

    std::size_t GetOffset() const { return m_offset; }

private:
    void WalkFields(std::string const& path, Layout const& layout);
    void WalkField(std::string const& path, FieldRow const& field);
    void WalkList(std::string const& path, FieldRow const& field);
    void WalkForm(std::string const& path, std::string const& form);
    void WalkText(std::string const& path);
    std::uint64_t ReadNumber(std::string const& path, std::size_t width);
    std::int64_t WalkCount(std::string const& path, std::string const& form);
    void Print(std::string const& path, std::string const& form, std::size_t begin, std::string const& value);

    std::vector<unsigned char> const& m_bytes;
    std::uint32_t m_schema;
    std::size_t m_shownEntries;
    std::ostream& m_out;
    std::size_t m_offset = 0;
    bool m_isQuiet = false;
};

} // namespace SceneInspect

#endif
