#include "vorlane/coordination/CoordinationGeometry.h"

#include <array>
#include <cstddef>
#include <utility>

// The measure is the sum, over all pairs of sites (s, t), of (c(s, t) - ideal(s, t))², where c(s, t) is the
// cosine of the two ligands that a labelling puts on the sites. Multiplied out it is Q + K + L: Q, the sum of
// all squared cosines, is common to all labellings; K, the sum of the squared ideal cosines, belongs to the
// geometry; and only L = -2 Σ ideal(s, t) c(s, t) changes with the labelling. Labellings that differ by a
// symmetry of the polyhedron have the same L, so one of each class stands in a table, and no search is left.

namespace Vorlane {
namespace CoordinationGeometry {
namespace {

constexpr int maximumLigands = 6;
constexpr int maximumPairs = maximumLigands * (maximumLigands - 1) / 2;

/// The place of the pair of two different ligands, or sites, counted from 0: (1,0), (2,0), (2,1), (3,0), ...
constexpr std::size_t PairIndex(int first, int second)
{
    int const high = first > second ? first : second;
    int const low = first > second ? second : first;
    return static_cast<std::size_t>(high * (high - 1) / 2 + low);
}

using PairCosines = std::array<double, maximumPairs>;

/// The dot products of every two points, in the order of PairIndex.
template <int LIGANDS>
void ComputePairCosines(Spatia::Point3d const* points, PairCosines& cosines)
{
    std::size_t pair = 0;
    for (int i = 1; i < LIGANDS; ++i) {
        for (int j = 0; j < i; ++j) {
            cosines[pair++] =
                points[i].x * points[j].x + points[i].y * points[j].y + points[i].z * points[j].z;
        }
    }
}

/// What digit number k of a row says.
enum RowMeaning
{
    ligandOnSite, ///< which ligand sits on site k
    siteOfLigand  ///< on which site ligand k sits
};

/// Two sites, numbered from 1.
struct SitePair
{
    int first;
    int second;
};

/// A part of L: a factor times the sum of the cosines on some pairs of sites.
struct LinearTerm
{
    double factor;
    int pairCount;
    SitePair pairs[6];
};

/// A geometry's measure. Rows are labellings written as digits, numbered from 1.
template <std::size_t TERMS, std::size_t CANDIDATES>
struct Measure
{
    int ligands;
    RowMeaning meaning;
    double constant; ///< K
    std::array<LinearTerm, TERMS> terms;
    std::array<char const*, CANDIDATES> rows;
};

constexpr double third = 1.0 / 3.0;
constexpr double twoThirds = 2.0 / 3.0;
constexpr double fourThirds = 4.0 / 3.0;

constexpr Measure<1, 1> trigonalPyramid = {
    3, ligandOnSite, third, {{{twoThirds, 3, {{1, 2}, {1, 3}, {2, 3}}}}}, {"123"}};

constexpr Measure<1, 3> tShape = {3, ligandOnSite, 1.0, {{{2.0, 1, {{1, 2}}}}}, {"123", "132", "231"}};

constexpr Measure<1, 1> tetrahedron = {4,
                                       ligandOnSite,
                                       twoThirds,
                                       {{{twoThirds, 6, {{1, 2}, {1, 3}, {2, 3}, {1, 4}, {2, 4}, {3, 4}}}}},
                                       {"1234"}};

constexpr Measure<1, 3> squarePlane = {
    4, ligandOnSite, 2.0, {{{2.0, 2, {{1, 3}, {2, 4}}}}}, {"1234", "1243", "1423"}};

constexpr Measure<1, 4> trigonalPlanePyramid = {
    4, ligandOnSite, 0.75, {{{1.0, 3, {{2, 3}, {2, 4}, {3, 4}}}}}, {"1234", "2134", "3124", "4123"}};

/// The see-saw with this ideal cosine between its two equatorial sites.
constexpr Measure<2, 6> SeeSaw(double equatorial)
{
    return {4,
            ligandOnSite,
            1.0 + equatorial * equatorial,
            {{{2.0, 1, {{1, 2}}}, {-2.0 * equatorial, 1, {{3, 4}}}}},
            {"1234", "1324", "1423", "2314", "2413", "3412"}};
}
constexpr Measure<2, 6> seeSawOfOctahedron = SeeSaw(0.0);
constexpr Measure<2, 6> seeSawOfBipyramid = SeeSaw(-0.5);

constexpr Measure<4, 10> trigonalBipyramid = {
    5,
    ligandOnSite,
    1.75,
    {{{2.0, 1, {{1, 2}}}, {1.0, 1, {{3, 4}}}, {1.0, 1, {{3, 5}}}, {1.0, 1, {{4, 5}}}}},
    {"12345", "13245", "14235", "15234", "23145", "24135", "25134", "34125", "35124", "45123"}};

constexpr Measure<1, 15> squarePyramid = {5,
                                          ligandOnSite,
                                          2.0,
                                          {{{2.0, 2, {{2, 4}, {3, 5}}}}},
                                          {"12345", "12354", "12435", "21345", "21354", "21435", "31245",
                                           "31254", "31425", "41235", "41253", "41325", "51234", "51243",
                                           "51324"}};

constexpr Measure<1, 15> octahedron = {6,
                                       ligandOnSite,
                                       3.0,
                                       {{{2.0, 3, {{1, 2}, {3, 5}, {4, 6}}}}},
                                       {"123456", "123465", "123546", "132456", "132465", "132546", "142356",
                                        "142365", "152346", "162345", "152364", "162354", "142536", "152436",
                                        "162435"}};

// The rows of the prism and of the antiprism are the lexicographically first of each class of labellings, in
// ascending order: 720 labellings and 12 symmetries give 60 classes, 48 symmetries give 15.

constexpr Measure<2, 60> trigonalPrism = {
    6,
    siteOfLigand,
    3.0,
    {{{-twoThirds, 3, {{1, 4}, {2, 5}, {3, 6}}},
      {fourThirds, 6, {{1, 5}, {1, 6}, {2, 4}, {2, 6}, {3, 4}, {3, 5}}}}},
    {"123456", "123465", "123546", "123564", "123645", "123654", "124356", "124365", "124536", "124563",
     "124635", "124653", "125346", "125364", "125436", "125463", "125634", "125643", "126345", "126354",
     "126435", "126453", "126534", "126543", "142356", "142365", "142536", "142563", "142635", "142653",
     "145236", "145263", "145326", "145362", "145623", "145632", "152346", "152364", "152436", "152463",
     "152634", "152643", "153246", "153264", "153426", "153462", "153624", "153642", "154236", "154263",
     "154326", "154362", "154623", "154632", "156234", "156243", "156324", "156342", "156423", "156432"}};

constexpr Measure<1, 15> trigonalAntiprism = {6,
                                              siteOfLigand,
                                              3.0,
                                              {{{2.0, 3, {{1, 4}, {2, 5}, {3, 6}}}}},
                                              {"123456", "123465", "123546", "123564", "123645", "123654",
                                               "124356", "124365", "124536", "125346", "125364", "125436",
                                               "142356", "142365", "142536"}};

/// The ligand that a row puts on a site; sites and ligands counted from 0.
constexpr int LigandOnSite(char const* row, RowMeaning meaning, int ligands, int site)
{
    if (meaning == ligandOnSite) {
        return row[site] - '1';
    }
    int ligand = 0;
    while (ligand < ligands && row[ligand] - '1' != site) {
        ++ligand;
    }
    return ligand;
}

template <auto const& measure>
constexpr std::size_t PairsOfAllTerms()
{
    std::size_t count = 0;
    for (LinearTerm const& term : measure.terms) {
        count += static_cast<std::size_t>(term.pairCount);
    }
    return count;
}

template <auto const& measure>
constexpr auto PairsOfCandidates()
{
    std::array<std::array<std::size_t, PairsOfAllTerms<measure>()>, measure.rows.size()> table{};
    for (std::size_t candidate = 0; candidate < measure.rows.size(); ++candidate) {
        std::size_t place = 0;
        for (LinearTerm const& term : measure.terms) {
            for (int k = 0; k < term.pairCount; ++k) {
                char const* const row = measure.rows[candidate];
                int const first =
                    LigandOnSite(row, measure.meaning, measure.ligands, term.pairs[k].first - 1);
                int const second =
                    LigandOnSite(row, measure.meaning, measure.ligands, term.pairs[k].second - 1);
                table[candidate][place++] = PairIndex(first, second);
            }
        }
    }
    return table;
}

/// For each candidate, the pair cosines that its L adds up, term after term, as places in the list of pairs.
template <auto const& measure>
constexpr auto pairsOfCandidates = PairsOfCandidates<measure>();

struct BestLabelling
{
    double deviation;
    char const* row;
};

/// The cosines of a candidate from place FIRST on, added up. All places are constants when this is compiled,
/// so that what is left is additions.
template <auto const& measure, std::size_t CANDIDATE, std::size_t FIRST, std::size_t... K>
double SumOfCosines(PairCosines const& cosines, std::index_sequence<K...>)
{
    return (... + cosines[pairsOfCandidates<measure>[CANDIDATE][FIRST + K]]);
}

/// The terms of L of a candidate from TERM on, whose pairs begin at place FIRST, added to `before` in order.
template <auto const& measure, std::size_t CANDIDATE, std::size_t TERM = 0, std::size_t FIRST = 0>
double LinearPart(PairCosines const& cosines, [[maybe_unused]] double before = 0.0)
{
    if constexpr (TERM == measure.terms.size()) {
        return before;
    } else {
        constexpr std::size_t count = static_cast<std::size_t>(measure.terms[TERM].pairCount);
        double const term = measure.terms[TERM].factor * SumOfCosines<measure, CANDIDATE, FIRST>(
                                                             cosines, std::make_index_sequence<count>());
        return LinearPart<measure, CANDIDATE, TERM + 1, FIRST + count>(cosines,
                                                                       TERM == 0 ? term : before + term);
    }
}

template <auto const& measure, std::size_t... CANDIDATE>
std::array<double, sizeof...(CANDIDATE)> CostsOfCandidates(PairCosines const& cosines, double common,
                                                           std::index_sequence<CANDIDATE...>)
{
    return {common + LinearPart<measure, CANDIDATE>(cosines)...};
}

template <auto const& measure>
BestLabelling FindBestLabelling(Spatia::Point3d const* points)
{
    constexpr std::size_t candidates = measure.rows.size();
    PairCosines cosines;
    ComputePairCosines<measure.ligands>(points, cosines);
    double common = 0.0;
    for (std::size_t pair = 0; pair < PairIndex(measure.ligands, 0); ++pair) {
        common += cosines[pair] * cosines[pair];
    }
    common += measure.constant;
    auto const costs = CostsOfCandidates<measure>(cosines, common, std::make_index_sequence<candidates>());

    // Among equal costs the first stays; so does the first row of all if its cost is NaN.
    std::size_t best = 0;
    double bestCost = costs[0];
    for (std::size_t candidate = 1; candidate < candidates; ++candidate) {
        if (costs[candidate] < bestCost) {
            bestCost = costs[candidate];
            best = candidate;
        }
    }
    // A perfect fit may come out as a rounding below 0.
    return {bestCost < 0.0 ? 0.0 : bestCost, measure.rows[best]};
}

struct Evaluator
{
    CoordinationGeometryType type;
    BestLabelling (*evaluate)(Spatia::Point3d const*);
};

constexpr Evaluator evaluators[] = {
    {trigonalPyramidal, FindBestLabelling<trigonalPyramid>},
    {tShaped, FindBestLabelling<tShape>},
    {tetrahedral, FindBestLabelling<tetrahedron>},
    {squarePlanar, FindBestLabelling<squarePlane>},
    {trigonalPlanarPyramidal, FindBestLabelling<trigonalPlanePyramid>},
    {seeSaw, FindBestLabelling<seeSawOfOctahedron>},
    {ss4tbpy5, FindBestLabelling<seeSawOfBipyramid>},
    {trigonalBipyramidal, FindBestLabelling<trigonalBipyramid>},
    {squarePlanarPyramidal, FindBestLabelling<squarePyramid>},
    {octahedral, FindBestLabelling<octahedron>},
    {trigonalPrismatic, FindBestLabelling<trigonalPrism>},
    {trigonalAntiprismatic, FindBestLabelling<trigonalAntiprism>},
};

/// The best labelling of a geometry with a measure; its row is null for any other geometry and for a wrong
/// number of points.
BestLabelling FindBestLabelling(Orrin::LegacyArray<Spatia::Point3d> const& coordinates,
                                CoordinationGeometryType type)
{
    for (Evaluator const& evaluator : evaluators) {
        if (evaluator.type == type && coordinates.GetSize() == GetCoordinationNumber(type)) {
            return evaluator.evaluate(coordinates.GetData());
        }
    }
    return {-1.0, nullptr};
}

} // namespace

double DeviationFromIdealCoordinationGeometry(Orrin::LegacyArray<Spatia::Point3d> const& coordinates,
                                              CoordinationGeometryType type, IntArray& assignment)
{
    BestLabelling const best = FindBestLabelling(coordinates, type);
    if (best.row == nullptr) {
        return best.deviation;
    }
    int const ligands = GetCoordinationNumber(type);
    if (assignment.GetSize() != ligands) {
        assignment.RemoveAll();
        assignment.SetSize(ligands, -1);
    }
    for (int k = 0; k < ligands; ++k) {
        assignment[k] = best.row[k] - '0';
    }
    return best.deviation;
}

double DeviationFromIdealCoordinationGeometry(Orrin::LegacyArray<Spatia::Point3d> const& coordinates,
                                              CoordinationGeometryType type)
{
    return FindBestLabelling(coordinates, type).deviation;
}

} // namespace CoordinationGeometry
} // namespace Vorlane
