#ifndef VORLANE_EXAMPLES_SHARED_SVG_H
#define VORLANE_EXAMPLES_SHARED_SVG_H

#include <string>
#include <utility>
#include <vector>

namespace Examples {

/// Red, green and blue, 0 to 255.
struct Colour
{
    int red;
    int green;
    int blue;
};

/// The colour on the way from one to another, 0 to 1.
Colour Mix(Colour const& from, Colour const& to, double part);

/// "#rrggbb".
std::string Hex(Colour const& colour);

/// A number with a few decimals, a point as the decimal mark, whatever the locale.
std::string Decimal(double value, int decimals);

/// The text with what means something to XML replaced; control characters and bytes that are no UTF-8 become
/// '?'.
std::string Escape(std::string const& text);

/// A place on the drawing, in its units, y downwards.
using Place = std::pair<double, double>;

/// The elements of a drawing, one after another. Colours of paper and ink are classes, so that a drawing
/// follows the light or dark mode of its viewer.
class Svg
{
public:
    /// \param idPrefix  keeps gradients apart where several drawings stand on one page.
    Svg(double width, double height, std::string idPrefix);

    void Polygon(std::vector<Place> const& corners, std::string const& attributes);
    void Circle(Place const& centre, double radius, std::string const& attributes);
    void Line(Place const& from, Place const& to, std::string const& attributes);
    void Rectangle(Place const& corner, double width, double height, std::string const& attributes);

    /// \param anchor  "start", "middle" or "end".
    void Text(Place const& place, double size, std::string const& anchor, std::string const& attributes,
              std::string const& text);

    /// The paint of a lit ball of this colour, for a fill.
    std::string Ball(Colour const& colour);

    /// The drawing as an element, to stand in a page or, with `asFile`, alone.
    std::string Finish(bool asFile) const;

private:
    double m_width;
    double m_height;
    std::string m_idPrefix;
    std::vector<std::string> m_balls; ///< the colours that have a gradient
    std::string m_definitions;
    std::string m_body;
};

} // namespace Examples

#endif
