#include "examples/scene_inspect/Inspector.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ostream>

namespace SceneInspect {

namespace {

/// The width in bytes of a basic form; 0 for anything else.
std::size_t WidthOf(std::string const& form)
{
    struct Width
    {
        char const* form;
        std::size_t bytes;
    };
    for (Width const& width : {Width{"bool", 1}, Width{"int16", 2}, Width{"uint16", 2}, Width{"int32", 4},
                               Width{"flag", 4}, Width{"color", 4}, Width{"float", 4}, Width{"double", 8}}) {
        if (form == width.form) {
            return width.bytes;
        }
    }
    return 0;
}

template <typename Value, typename Bits>
Value FromBits(Bits bits)
{
    static_assert(sizeof(Value) == sizeof(Bits));
    Value value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

std::string Formatted(char const* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof(text), format, value);
    return text;
}

std::string ValueText(std::string const& form, std::uint64_t bits)
{
    if (form == "float") {
        return Formatted("%.9g", static_cast<double>(FromBits<float>(static_cast<std::uint32_t>(bits))));
    }
    if (form == "double") {
        return Formatted("%.17g", FromBits<double>(bits));
    }
    if (form == "color") {
        char text[48];
        std::snprintf(text, sizeof(text), "red %u green %u blue %u alpha %u",
                      static_cast<unsigned>(bits & 0xFF), static_cast<unsigned>(bits >> 8 & 0xFF),
                      static_cast<unsigned>(bits >> 16 & 0xFF), static_cast<unsigned>(bits >> 24 & 0xFF));
        return text;
    }
    if (form == "int16") {
        return std::to_string(static_cast<std::int16_t>(bits));
    }
    if (form == "int32" || form == "flag") {
        return std::to_string(static_cast<std::int32_t>(bits));
    }
    return std::to_string(bits);
}

/// The text with bytes outside printable ASCII as \xNN, cut where it gets long.
std::string Quoted(unsigned char const* text, std::size_t length)
{
    constexpr std::size_t shownCharacters = 60;
    std::string quoted = "\"";
    for (std::size_t i = 0; i < std::min(length, shownCharacters); ++i) {
        if (text[i] >= 0x20 && text[i] < 0x7F && text[i] != '"' && text[i] != '\\') {
            quoted.push_back(static_cast<char>(text[i]));
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\x%02X", text[i]);
            quoted += escaped;
        }
    }
    return quoted + (length > shownCharacters ? "\"..." : "\"");
}

} // namespace

Inspector::Inspector(std::vector<unsigned char> const& bytes, std::uint32_t schema, std::size_t shownEntries,
                     std::ostream& out)
    : m_bytes(bytes), m_schema(schema), m_shownEntries(shownEntries), m_out(out)
{}

void Inspector::Walk(std::string const& path, std::string const& layout)
{
    WalkForm(path, layout);
}

void Inspector::WalkFields(std::string const& path, Layout const& layout)
{
    for (FieldRow const& field : layout) {
        if (field.presence.Holds(m_schema)) {
            WalkField(field.name.empty() ? path : path + "." + field.name, field);
        }
    }
}

void Inspector::WalkField(std::string const& path, FieldRow const& field)
{
    if (field.countForm.empty()) {
        WalkForm(path, field.form);
    } else {
        WalkList(path, field);
    }
}

void Inspector::WalkForm(std::string const& path, std::string const& form)
{
    std::size_t const begin = m_offset;
    if (form == "text") {
        WalkText(path);
    } else if (std::size_t const width = WidthOf(form); width != 0) {
        std::uint64_t const bits = ReadNumber(path, width);
        Print(path, form, begin, ValueText(form, bits));
    } else if (Layout const* const layout = FindLayout(form, m_schema)) {
        WalkFields(path, *layout);
    } else {
        throw std::logic_error("no layout is called " + form);
    }
}

void Inspector::WalkList(std::string const& path, FieldRow const& field)
{
    std::int64_t const count = WalkCount(path + " count", field.countForm);
    for (std::int64_t i = 0; i < count; ++i) {
        std::size_t const before = m_offset;
        bool const wasQuiet = m_isQuiet;
        bool const isShown = i < static_cast<std::int64_t>(m_shownEntries) || i == count - 1;
        if (!isShown && !wasQuiet && i == static_cast<std::int64_t>(m_shownEntries)) {
            m_out << "                   ... " << count - 1 - i << " more of " << path << '\n';
        }
        m_isQuiet = wasQuiet || !isShown;
        WalkForm(path + "[" + std::to_string(i) + "]", field.form);
        m_isQuiet = wasQuiet;
        // Entries that take no bytes at this schema number all look alike, however many a count announces.
        if (m_offset == before) {
            break;
        }
    }
}

std::int64_t Inspector::WalkCount(std::string const& path, std::string const& form)
{
    std::size_t const begin = m_offset;
    std::int64_t count = 0;
    if (form == "count") {
        count = static_cast<std::int64_t>(ReadNumber(path, 2));
        if (count == 0xFFFF) {
            count = static_cast<std::int64_t>(ReadNumber(path, 4));
        }
    } else {
        count = static_cast<std::int32_t>(ReadNumber(path, 4));
    }
    if (form == "length" && count < 0) {
        throw Misfit("offset " + std::to_string(begin) + ": " + path + " is " + std::to_string(count));
    }
    Print(path, form == "length" ? "int32" : form, begin, std::to_string(count));
    return count;
}

void Inspector::WalkText(std::string const& path)
{
    std::size_t const begin = m_offset;
    std::uint64_t characterSize = 1;
    std::uint64_t length = ReadNumber(path, 1);
    if (length == 0xFF) {
        length = ReadNumber(path, 2);
        if (length == 0xFFFE) {
            characterSize = 2;
            length = ReadNumber(path, 1);
            length = length == 0xFF ? ReadNumber(path, 2) : length;
        }
        length = length == 0xFFFF ? ReadNumber(path, 4) : length;
        length = length == 0xFFFFFFFF ? ReadNumber(path, 8) : length;
    }
    std::size_t const left = m_bytes.size() - m_offset;
    if (length > left / characterSize) {
        throw Misfit("offset " + std::to_string(m_offset) + ": " + path + " is a text of " +
                     std::to_string(length) + " characters of " + std::to_string(characterSize) +
                     " byte(s), but the file has " + std::to_string(left) + " bytes left");
    }
    std::size_t const size = static_cast<std::size_t>(length * characterSize);
    std::string const value = Quoted(m_bytes.data() + m_offset, size);
    m_offset += size;
    Print(path, characterSize == 1 ? "text" : "wide text", begin, value);
}

std::uint64_t Inspector::ReadNumber(std::string const& path, std::size_t width)
{
    std::size_t const left = m_bytes.size() - m_offset;
    if (left < width) {
        throw Misfit("offset " + std::to_string(m_offset) + ": " + path + " needs " + std::to_string(width) +
                     " byte(s), but the file has " + std::to_string(left) + " left");
    }
    std::uint64_t number = 0;
    for (std::size_t i = width; i-- > 0;) {
        number = number << 8 | m_bytes[m_offset + i];
    }
    m_offset += width;
    return number;
}

void Inspector::Print(std::string const& path, std::string const& form, std::size_t begin,
                      std::string const& value)
{
    if (m_isQuiet) {
        return;
    }
    constexpr std::size_t shownBytes = 8;
    std::string bytes;
    for (std::size_t i = begin; i < std::min(m_offset, begin + shownBytes); ++i) {
        char hex[4];
        std::snprintf(hex, sizeof(hex), "%02X ", m_bytes[i]);
        bytes += hex;
    }
    if (m_offset > begin + shownBytes) {
        bytes += "..";
    }
    char line[64];
    std::snprintf(line, sizeof(line), "%8zu  %-26s  %-9s ", begin, bytes.c_str(), form.c_str());
    m_out << line << path << " = " << value << '\n';
}

} // namespace SceneInspect
