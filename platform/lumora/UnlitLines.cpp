#include "platform/lumora/UnlitLines.h"

using Spatia::Matrix4x4;
using Spatia::Point3d;

namespace Lumora {

namespace {

Point3d Moved(Point3d const& point, Matrix4x4 const& matrix)
{
    auto const component = [&](int column) {
        return point.x * matrix(0, column) + point.y * matrix(1, column) + point.z * matrix(2, column) +
               matrix(3, column);
    };
    Point3d moved(component(0), component(1), component(2));
    double const scale = component(3);
    if (scale != 0.0) {
        moved /= scale;
    }
    return moved;
}

} // namespace

void LinePrimitive::Transform(Matrix4x4 const& matrix)
{
    firstVertex.point = Moved(firstVertex.point, matrix);
    secondVertex.point = Moved(secondVertex.point, matrix);
}

void UnlitLinePrimitive::SetPoints(Orrin::LegacyArray<Spatia::Point2d> const& points)
{
    m_points = points;
}

} // namespace Lumora
