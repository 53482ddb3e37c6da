// A list of points that grows and is asked for neighbours and pairs in between, beside brute force.
//
// Two bytes choose the cutoff and the hash size. Then come operations, each a letter with its arguments:
// `o` chooses the origin of the places that follow, `s` their spacing, `c` adds a cloud of random points, `l`
// a line of equal steps, `n` asks for neighbours, `g` for all pairs; any other letter adds a single point.

#include "fuzz/Input.h"
#include "fuzz/NeighborChecks.h"

#include <limits>
#include <random>

using Spatia::Point3d;
using VorlaneFuzz::Input;

namespace {

// What keeps brute force quick.
constexpr std::size_t maximumSize = 200; // of the input
constexpr std::size_t maximumPoints = 64;

class Session
{
public:
    explicit Session(Input& input) : m_input(input), m_list{input.OneOf(cutoffs), input.OneOf(hashSizes)} {}

    void Run()
    {
        while (!m_input.HasEnded()) {
            Step();
        }
        m_list.CheckPairs();
    }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();
    static constexpr double cutoffs[] = {1.0, 0.5, 1.7, 4.0, 0.3};
    static constexpr int hashSizes[] = {101, 1, 7, 1000003};
    static constexpr double spacings[] = {0.1, 1.0 / 64, 0.25, 1.0, 7.3, 0.0};
    static constexpr double distances[] = {1.0, 0.5, -0.75, 3.0, none, 0.0};
    static constexpr double noPlaces[] = {none, infinity, -infinity, 1e300};
    static inline Point3d const origins[] = {{},          {-645, -645, -645}, {645, 645, 645}, {-645, 645, 0},
                                             {0, 0, 645}, {-1e4, 0, 2e4},     {1e4, 0, -2e4}};

    void Step()
    {
        switch (m_input.Byte()) {
        case 'o':
            m_origin = m_list.GetCutoff() * m_input.OneOf(origins);
            break;
        case 's':
            m_spacing = m_list.GetCutoff() * m_input.OneOf(spacings);
            break;
        case 'c':
            AddCloud();
            break;
        case 'l':
            AddLine();
            break;
        case 'n':
            CheckNeighbors();
            break;
        case 'g':
            m_list.CheckPairs();
            break;
        default:
            Add(m_origin + Place());
        }
    }

    void Add(Point3d const& point)
    {
        if (m_list.GetPoints().size() < maximumPoints) {
            m_list.Add(point);
        }
    }

    void AddCloud()
    {
        int const count = m_input.Byte(), extent = m_input.Byte();
        std::minstd_rand random(static_cast<unsigned int>(m_list.GetPoints().size()) + 1);
        auto const coordinate = [&] {
            return (static_cast<double>(random()) / std::minstd_rand::max() - 0.5) * extent * m_spacing;
        };
        for (int n = 0; n != count; ++n) {
            double const x = coordinate(), y = coordinate();
            Add(m_origin + Point3d(x, y, coordinate()));
        }
    }

    void AddLine()
    {
        int const count = m_input.Byte();
        Point3d const start = m_origin + Place(), step = Place();
        for (int n = 0; n != count; ++n) {
            Add(start + n * step);
        }
    }

    void CheckNeighbors()
    {
        Point3d const point = m_origin + Place();
        m_list.CheckNeighbors(point, m_list.GetCutoff() * m_input.OneOf(distances));
    }

    Point3d Place()
    {
        double const x = Coordinate(), y = Coordinate();
        return {x, y, Coordinate()};
    }

    /// `P` is the origin. The largest bytes stand for what is no place.
    double Coordinate()
    {
        int const byte = m_input.Byte();
        return byte < 252 ? (byte - 'P') * m_spacing : noPlaces[byte - 252];
    }

    Input& m_input;
    VorlaneFuzz::CheckedList m_list;
    Point3d m_origin;
    double m_spacing = 0.1;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, std::min(size, maximumSize));
    Session(input).Run();
    return 0;
}
