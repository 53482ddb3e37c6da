#include "examples/shared/Scene.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace Examples {
namespace {

double const pi = std::acos(-1.0);

/// The viewer's distance in parts of the extent: near enough that depth shows, far enough that nothing
/// bulges.
constexpr double viewerDistance = 5.0;

/// A place relative to the middle of the frame, y upwards, in parts of the extent, and how much nearer it
/// makes things look.
struct Projected
{
    double x;
    double y;
    double depth; ///< towards the viewer
    double scale;
};

Projected Project(View const& view, Point3d const& point)
{
    double const depth = Dot(point, view.towards) / view.extent;
    double const scale = viewerDistance / (viewerDistance - depth);
    return {Dot(point, view.right) / view.extent * scale, Dot(point, view.up) / view.extent * scale, depth,
            scale};
}

View LookFrom(Point3d const& upright, double azimuth, double elevation, double extent)
{
    Point3d const helper = std::abs(upright.x) < 0.8 ? Point3d(1, 0, 0) : Point3d(0, 1, 0);
    Point3d const first = Unit(helper - Dot(helper, upright) * upright);
    Point3d const second = upright.Cross(first);
    Point3d const level = std::cos(azimuth) * first + std::sin(azimuth) * second;
    View view;
    view.towards = std::cos(elevation) * level + std::sin(elevation) * upright;
    view.up = std::cos(elevation) * upright - std::sin(elevation) * level;
    view.right = view.up.Cross(view.towards);
    view.extent = extent;
    return view;
}

double SmallestSeparation(View const& view, std::vector<Ball> const& balls)
{
    double smallest = 2.0;
    for (std::size_t i = 0; i < balls.size(); ++i) {
        Projected const first = Project(view, balls[i].centre);
        for (std::size_t j = 0; j < i; ++j) {
            Projected const second = Project(view, balls[j].centre);
            smallest = std::min(smallest, std::hypot(first.x - second.x, first.y - second.y));
        }
    }
    return smallest;
}

double ExtentOf(Scene const& scene)
{
    double extent = 0.0;
    for (Ball const& ball : scene.balls) {
        extent = std::max(extent, ball.centre.Length());
    }
    for (Face const& face : scene.faces) {
        for (Point3d const& corner : face.corners) {
            extent = std::max(extent, corner.Length());
        }
    }
    return extent > 0.0 ? extent : 1.0;
}

/// The parts of the extent that go into the frame's half, so that a ball at the edge stays inside.
constexpr double filling = 0.70;

class Drawer
{
public:
    Drawer(Svg& svg, View const& view, Frame const& frame) : m_svg(svg), m_view(view), m_frame(frame)
    {
        m_unit = 0.5 * std::min(frame.width, frame.height) * filling;
        // Balls that are seen side by side do not touch, unless they would become too small to carry a label.
        m_ballRadius =
            std::clamp(0.44 * view.separation * m_unit, 10.0, 0.1 * std::min(frame.width, frame.height));
    }

    void Draw(Scene const& scene)
    {
        for (Face const& face : scene.faces) {
            Add(face);
        }
        for (Bond const& bond : scene.bonds) {
            // From the surface of one ball to that of the other, with what perspective hides of it.
            Point3d const inside = 0.8 * m_ballRadius / m_unit * m_view.extent * Unit(bond.to - bond.from);
            Point3d const middle = 0.5 * (bond.from + bond.to);
            Add(bond.from + inside, middle, bond.fromColour);
            Add(middle, bond.to - inside, bond.toColour);
        }
        for (Ball const& ball : scene.balls) {
            Add(ball);
        }
        std::stable_sort(m_items.begin(), m_items.end(),
                         [](Item const& a, Item const& b) { return a.depth < b.depth; });
        for (Item const& item : m_items) {
            item.draw();
        }
        for (Ball const& ball : scene.balls) {
            DrawLabel(ball);
        }
    }

private:
    struct Item
    {
        double depth;
        std::function<void()> draw;
    };

    Place OnPaper(Projected const& p) const
    {
        return {m_frame.left + m_frame.width / 2 + p.x * m_unit,
                m_frame.top + m_frame.height / 2 - p.y * m_unit};
    }

    void Add(Face const& face)
    {
        std::vector<Place> corners;
        double depth = 0.0;
        for (Point3d const& corner : face.corners) {
            Projected const p = Project(m_view, corner);
            corners.push_back(OnPaper(p));
            depth += p.depth / static_cast<double>(face.corners.size());
        }
        // The light comes from the viewer's upper left; faces that turn away from it are darker.
        Point3d const normal =
            Unit((face.corners[1] - face.corners[0]).Cross(face.corners[2] - face.corners[0]));
        double const lit = std::abs(Dot(normal, Unit(m_view.towards + 0.6 * m_view.up - 0.5 * m_view.right)));
        std::string const colour = Hex(Mix(Mix(face.colour, {20, 30, 50}, 0.35), face.colour, lit));
        m_items.push_back({depth, [this, corners, colour, opacity = Decimal(face.opacity, 2),
                                   edge = Hex(Mix(face.colour, {20, 30, 50}, 0.25))] {
                               m_svg.Polygon(corners, "fill=\"" + colour + "\" fill-opacity=\"" + opacity +
                                                          "\" stroke=\"" + edge +
                                                          "\" stroke-opacity=\"0.75\" stroke-width=\"1.1\" "
                                                          "stroke-linejoin=\"round\"");
                           }});
    }

    void Add(Point3d const& from, Point3d const& to, Colour const& colour)
    {
        Projected const a = Project(m_view, from);
        Projected const b = Project(m_view, to);
        Place const first = OnPaper(a);
        Place const second = OnPaper(b);
        double const length = std::hypot(second.first - first.first, second.second - first.second);
        if (length < 1e-6) {
            return;
        }
        double const acrossX = -(second.second - first.second) / length;
        double const acrossY = (second.first - first.first) / length;
        auto const strip = [=](double width) {
            double const w = m_ballRadius * width;
            return std::vector<Place>{
                {first.first + acrossX * w * a.scale, first.second + acrossY * w * a.scale},
                {second.first + acrossX * w * b.scale, second.second + acrossY * w * b.scale},
                {second.first - acrossX * w * b.scale, second.second - acrossY * w * b.scale},
                {first.first - acrossX * w * a.scale, first.second - acrossY * w * a.scale}};
        };
        m_items.push_back(
            {(a.depth + b.depth) / 2 - 0.02, [this, strip, colour] {
                 m_svg.Polygon(strip(0.20), "fill=\"" + Hex(Mix(colour, {0, 0, 0}, 0.35)) + "\"");
                 m_svg.Polygon(strip(0.13), "fill=\"" + Hex(colour) + "\"");
                 m_svg.Polygon(strip(0.05), "fill=\"" + Hex(Mix(colour, {255, 255, 255}, 0.5)) + "\"");
             }});
    }

    void Add(Ball const& ball)
    {
        Projected const p = Project(m_view, ball.centre);
        m_items.push_back({p.depth + 0.05, [this, p, ball] {
                               m_svg.Circle(OnPaper(p), m_ballRadius * p.scale,
                                            "fill=\"" + m_svg.Ball(ball.colour) + "\"");
                           }});
    }

    /// Labels come last, so that no face or bond goes through them.
    void DrawLabel(Ball const& ball)
    {
        Projected const p = Project(m_view, ball.centre);
        Place const place = OnPaper(p);
        double const radius = m_ballRadius * p.scale;
        double const letters = static_cast<double>(std::max<std::size_t>(ball.label.size(), 2));
        double const size = std::min(0.8 * radius, 3.0 * radius / letters);
        int const light = ball.colour.red * 3 + ball.colour.green * 6 + ball.colour.blue;
        m_svg.Text({place.first, place.second + 0.36 * size}, size, "middle",
                   std::string("font-weight=\"bold\" fill=\"") + (light > 1200 ? "#10151d" : "#ffffff") +
                       "\"",
                   ball.label);
    }

    Svg& m_svg;
    View const& m_view;
    Frame m_frame;
    double m_unit;
    double m_ballRadius;
    std::vector<Item> m_items;
};

} // namespace

View ChooseView(Scene const& scene, Point3d const& upright)
{
    double const extent = ExtentOf(scene);
    Point3d const up = upright.Length() > 0.0 ? Unit(upright) : Point3d(0, 0, 1);
    View best;
    best.separation = -1.0;
    for (int elevation : {20, 14, 26, 32}) {
        for (int azimuth = 0; azimuth < 360; azimuth += 4) {
            View view = LookFrom(up, azimuth * pi / 180.0, elevation * pi / 180.0, extent);
            view.separation = SmallestSeparation(view, scene.balls);
            // A view that is hardly better is not worth leaving an earlier one for.
            if (view.separation > best.separation + 0.01) {
                best = view;
            }
        }
    }
    return best;
}

View LookAlong(Scene const& scene, Point3d const& right, Point3d const& up, Point3d const& towards)
{
    View view{right, up, towards, ExtentOf(scene), 0.0};
    view.separation = SmallestSeparation(view, scene.balls);
    return view;
}

void DrawScene(Svg& svg, Scene const& scene, View const& view, Frame const& frame)
{
    Drawer(svg, view, frame).Draw(scene);
}

} // namespace Examples
