#ifndef VORLANE_EXAMPLES_SHARED_SCENE_H
#define VORLANE_EXAMPLES_SHARED_SCENE_H

#include "examples/shared/Svg.h"
#include "examples/shared/Vectors.h"

#include <string>
#include <vector>

namespace Examples {

/// A labelled ball. All balls of a scene are drawn at one size, which the view gives.
struct Ball
{
    Point3d centre;
    Colour colour;
    std::string label;
};

struct Bond
{
    Point3d from;
    Point3d to;
    Colour fromColour;
    Colour toColour;
};

/// A translucent polygon.
struct Face
{
    std::vector<Point3d> corners;
    Colour colour;
    double opacity = 0.26;
};

/// Shapes around the origin.
struct Scene
{
    std::vector<Ball> balls;
    std::vector<Bond> bonds;
    std::vector<Face> faces;
};

/// Where the viewer stands and what of the drawing the scene may fill.
struct View
{
    Point3d right;
    Point3d up;
    Point3d towards;       ///< from the scene to the viewer
    double extent = 1.0;   ///< the largest distance of a shape from the origin
    double separation = 0; ///< the smallest distance of two balls as they are seen, in parts of the extent
};

/// A rectangle of the drawing.
struct Frame
{
    double left;
    double top;
    double width;
    double height;
};

/// The view from a little above, with a direction upwards, from the side on which the balls hide one another
/// least.
View ChooseView(Scene const& scene, Point3d const& upright);

/// The view along axes that are known, of length 1 and at right angles.
View LookAlong(Scene const& scene, Point3d const& right, Point3d const& up, Point3d const& towards);

/// Draws the scene in perspective, the furthest shapes first.
void DrawScene(Svg& svg, Scene const& scene, View const& view, Frame const& frame);

} // namespace Examples

#endif
