#include "examples/shared/Svg.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Examples {
namespace {

std::string Number(double value)
{
    std::string text = Decimal(value, 2);
    while (text.back() == '0') {
        text.pop_back();
    }
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string Attribute(char const* name, double value)
{
    return std::string(" ") + name + "=\"" + Number(value) + "\"";
}

/// The length of the UTF-8 sequence that begins at a byte; 0 if none does.
std::size_t SequenceLength(std::string const& text, std::size_t start)
{
    auto const byte = [&](std::size_t index) {
        return static_cast<unsigned char>(text[index]);
    };
    unsigned char const lead = byte(start);
    std::size_t const length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (start + length > text.size()) {
        return 0;
    }
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(start + k) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

} // namespace

Colour Mix(Colour const& from, Colour const& to, double part)
{
    auto const mixed = [part](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * part));
    };
    return {mixed(from.red, to.red), mixed(from.green, to.green), mixed(from.blue, to.blue)};
}

std::string Hex(Colour const& colour)
{
    char const* const digits = "0123456789abcdef";
    std::string text = "#";
    for (int part : {colour.red, colour.green, colour.blue}) {
        int const shown = std::clamp(part, 0, 255);
        text += digits[shown / 16];
        text += digits[shown % 16];
    }
    return text;
}

std::string Decimal(double value, int decimals)
{
    if (!std::isfinite(value)) {
        return "0";
    }
    std::array<char, 400> buffer;
    auto const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals)
            .ptr;
    return {buffer.data(), end};
}

std::string Escape(std::string const& text)
{
    std::string escaped;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t const length = SequenceLength(text, i);
        char const c = text[i];
        if (length == 0 || (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') || c == 0x7F) {
            escaped += '?';
        } else if (c == '&') {
            escaped += "&amp;";
        } else if (c == '<') {
            escaped += "&lt;";
        } else if (c == '>') {
            escaped += "&gt;";
        } else if (c == '"') {
            escaped += "&quot;";
        } else {
            escaped.append(text, i, length);
        }
        i += length == 0 ? 1 : length;
    }
    return escaped;
}

Svg::Svg(double width, double height, std::string idPrefix)
    : m_width(width), m_height(height), m_idPrefix(std::move(idPrefix))
{}

void Svg::Polygon(std::vector<Place> const& corners, std::string const& attributes)
{
    m_body += "<polygon points=\"";
    for (Place const& corner : corners) {
        m_body += Number(corner.first) + "," + Number(corner.second) + " ";
    }
    m_body += "\" " + attributes + "/>\n";
}

void Svg::Circle(Place const& centre, double radius, std::string const& attributes)
{
    m_body += "<circle" + Attribute("cx", centre.first) + Attribute("cy", centre.second) +
              Attribute("r", radius) + " " + attributes + "/>\n";
}

void Svg::Line(Place const& from, Place const& to, std::string const& attributes)
{
    m_body += "<line" + Attribute("x1", from.first) + Attribute("y1", from.second) +
              Attribute("x2", to.first) + Attribute("y2", to.second) + " " + attributes + "/>\n";
}

void Svg::Rectangle(Place const& corner, double width, double height, std::string const& attributes)
{
    m_body += "<rect" + Attribute("x", corner.first) + Attribute("y", corner.second) +
              Attribute("width", width) + Attribute("height", height) + " " + attributes + "/>\n";
}

void Svg::Text(Place const& place, double size, std::string const& anchor, std::string const& attributes,
               std::string const& text)
{
    m_body += "<text" + Attribute("x", place.first) + Attribute("y", place.second) +
              Attribute("font-size", size) + " text-anchor=\"" + anchor + "\" " + attributes + ">" +
              Escape(text) + "</text>\n";
}

std::string Svg::Ball(Colour const& colour)
{
    std::string const hex = Hex(colour);
    std::string const id = m_idPrefix + "-" + hex.substr(1);
    if (std::find(m_balls.begin(), m_balls.end(), hex) == m_balls.end()) {
        m_balls.push_back(hex);
        m_definitions += "<radialGradient id=\"" + id + "\" cx=\"0.36\" cy=\"0.32\" r=\"0.72\">" +
                         "<stop offset=\"0\" stop-color=\"" + Hex(Mix(colour, {255, 255, 255}, 0.75)) +
                         "\"/>" + "<stop offset=\"0.45\" stop-color=\"" + hex + "\"/>" +
                         "<stop offset=\"1\" stop-color=\"" + Hex(Mix(colour, {0, 0, 0}, 0.45)) +
                         "\"/></radialGradient>\n";
    }
    return "url(#" + id + ")";
}

std::string Svg::Finish(bool asFile) const
{
    std::string text = asFile ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" : "";
    text += "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + Number(m_width) + " " +
            Number(m_height) + "\"" + Attribute("width", m_width) + Attribute("height", m_height) +
            " font-family=\"Helvetica, Arial, sans-serif\">\n";
    text += "<style>.paper{fill:#ffffff}.ink{fill:#1f2733}.faint{fill:#6b7686}.rule{stroke:#c9d1dc}"
            ".track{fill:#e8ecf2}"
            "@media (prefers-color-scheme:dark){.paper{fill:#1b2028}.ink{fill:#e6eaf0}.faint{fill:#97a3b4}"
            ".rule{stroke:#3a4452}.track{fill:#2a323d}}</style>\n";
    text += "<defs>\n" + m_definitions + "</defs>\n";
    text += "<rect class=\"paper\"" + Attribute("width", m_width) + Attribute("height", m_height) + "/>\n";
    return text + m_body + "</svg>\n";
}

} // namespace Examples
