// A square matrix beside a plain list of its elements: storage, text, symmetry, the order of vectors, and the
// eigenpairs of the symmetric matrix that its upper half gives.
//
// Two bytes choose the dimension (`0` is none, `H` is 24) and the kind of matrix: `d` diagonal, `t` of three
// diagonals, `r` random, `R` random with up to 60 rows (`l`); any other letter takes the elements from the
// rest of the input, over and over.

#include "fuzz/EigenpairChecks.h"
#include "fuzz/Input.h"

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using Vorlane::QuadraticMatrix;
using VorlaneFuzz::Input;
using VorlaneFuzz::Require;

namespace {

using Numbers = std::vector<double>;

constexpr int maximumDimension = 24;
constexpr int maximumRandomDimension = 60;

class Elements
{
public:
    Elements(int kind, std::string bytes) : m_kind(kind), m_bytes(std::move(bytes))
    {
        std::seed_seq seed(m_bytes.begin(), m_bytes.end());
        m_random.seed(seed);
    }

    double At(int row, int column)
    {
        int const distance = std::abs(row - column);
        if ((m_kind == 'd' && distance > 0) || (m_kind == 't' && distance > 1)) {
            return 0.0;
        }
        if (m_kind == 'r' || m_kind == 'R' || m_bytes.empty()) {
            return static_cast<double>(m_random()) / std::minstd_rand::max() - 0.5;
        }
        return (m_bytes[m_next++ % m_bytes.size()] - 'P') / 4.0;
    }

private:
    int m_kind;
    std::string m_bytes;
    std::minstd_rand m_random;
    std::size_t m_next = 0;
};

/// The matrix by its elements, row after row.
struct Model
{
    int dimension;
    Numbers elements;

    double& At(int row, int column) { return elements[static_cast<std::size_t>(row * dimension + column)]; }

    std::string Print() const
    {
        std::ostringstream stream;
        stream << "Dimension = " << dimension << '\n';
        for (int i = 0; i < dimension * dimension; ++i) {
            if (i % dimension == 0) {
                stream << "Row #" << i / dimension + 1 << '\n';
            }
            stream << elements[static_cast<std::size_t>(i)] << (i % dimension == dimension - 1 ? "\n" : " ");
        }
        return stream.str();
    }
};

Model MakeModel(int dimension, Elements elements)
{
    Model model{dimension, {}};
    for (int i = 0; i < dimension * dimension; ++i) {
        model.elements.push_back(elements.At(i / dimension, i % dimension));
    }
    return model;
}

void Fill(QuadraticMatrix& matrix, Model model)
{
    Require(matrix.Dimension() == model.dimension);
    for (int i = 0; i < model.dimension * model.dimension; ++i) {
        matrix(i / model.dimension, i % model.dimension) = model.elements[static_cast<std::size_t>(i)];
    }
}

void RequireEqual(QuadraticMatrix const& matrix, Model model)
{
    Require(matrix.Dimension() == model.dimension);
    for (int i = 0; i < model.dimension * model.dimension; ++i) {
        Require(matrix[i / model.dimension][i % model.dimension] ==
                model.elements[static_cast<std::size_t>(i)]);
    }
}

Model Transposed(Model model)
{
    for (int row = 0; row < model.dimension; ++row) {
        for (int column = 0; column < row; ++column) {
            std::swap(model.At(row, column), model.At(column, row));
        }
    }
    return model;
}

void CheckStorage(Model const& model, int otherDimension)
{
    QuadraticMatrix matrix(model.dimension);
    RequireEqual(matrix, {model.dimension, Numbers(model.elements.size())});
    Fill(matrix, model);
    QuadraticMatrix other(otherDimension);
    double const* const* const rows = other;
    other = matrix;
    Require((static_cast<double const* const*>(other) == rows) == (otherDimension == model.dimension));
    QuadraticMatrix const& self = other;
    other = self;
    RequireEqual(other, model);
    QuadraticMatrix copy(matrix);
    copy.Transpose();
    RequireEqual(copy, Transposed(model));
    RequireEqual(matrix, model);
    std::ostringstream stream;
    stream << other;
    Require(stream.str() == model.Print());
    Require(matrix.IsSymmetric() == (model.dimension > 0 && model.elements == Transposed(model).elements));
}

template <typename Source>
void CheckConversion(Model model)
{
    Source source;
    for (int i = 0; i < model.dimension * model.dimension; ++i) {
        source(i / model.dimension, i % model.dimension) = model.elements[static_cast<std::size_t>(i)];
    }
    RequireEqual(QuadraticMatrix(source), model);
}

void RequireEmpty(QuadraticMatrix const& matrix)
{
    Require(matrix.Dimension() == 0 && static_cast<double const* const*>(matrix) == nullptr);
}

/// Of a symmetric matrix after another value has come to one place.
void CheckSymmetry(QuadraticMatrix matrix, int place)
{
    int const row = place % matrix.Dimension(), column = place / matrix.Dimension() % matrix.Dimension();
    double const mirrored = matrix(column, row);
    for (double const value : {0.0, -0.0, std::nextafter(mirrored, 9.0), -mirrored, std::nan("")}) {
        matrix(row, column) = value;
        Require(matrix.IsSymmetric() == (row == column || value == mirrored));
    }
    matrix(row, column) = matrix(column, row) = std::nan("");
    Require(matrix.IsSymmetric() == (row == column));
}

/// The elements of the matrix number its columns and rows, so that they tell where each of these has gone.
void CheckSorting(Numbers const& values, QuadraticMatrix::EigenvalueSortOrder order)
{
    int const size = static_cast<int>(values.size());
    std::vector<int> places(values.size());
    std::iota(places.begin(), places.end(), 0);
    std::stable_sort(places.begin(), places.end(), [&](int left, int right) {
        double const a = values[static_cast<std::size_t>(left)], b = values[static_cast<std::size_t>(right)];
        return order == QuadraticMatrix::Ascending ? a < b : a > b;
    });
    QuadraticMatrix columns(size), rows(size);
    for (int i = 0; i < size * size; ++i) {
        columns(i / size, i % size) = i;
        rows(i % size, i / size) = i;
    }
    Numbers columnValues(values), rowValues(values);
    Vorlane::EigenSolver::SortColumns(columns, size, columnValues.data(), order);
    Vorlane::EigenSolver::SortRows(rows, size, rowValues.data(), order);
    Require(columnValues == rowValues);
    for (int i = 0; i < size * size; ++i) {
        int const place = places[static_cast<std::size_t>(i % size)];
        Require(columns(i / size, i % size) == i / size * size + place);
        Require(rows(i % size, i / size) == i / size * size + place);
        Require(columnValues[static_cast<std::size_t>(i % size)] == values[static_cast<std::size_t>(place)]);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    int const letter = input.Byte();
    int const kind = input.Byte();
    int const dimension =
        (letter + 256 - '0') % 256 % ((kind == 'R' ? maximumRandomDimension : maximumDimension) + 1);
    int const otherDimension = size % 3 == 0 ? dimension : static_cast<int>(size % 7);
    Elements elements(kind, std::string(reinterpret_cast<char const*>(data), size));
    Model model = MakeModel(dimension, elements);
    CheckStorage(model, otherDimension);
    if (dimension == 3) {
        CheckConversion<Spatia::Matrix3x3>(model);
    } else if (dimension == 4) {
        CheckConversion<Spatia::Matrix4x4>(model);
    }
    for (int i = 0; i < dimension * dimension; ++i) {
        model.At(i % dimension, i / dimension) = model.At(i / dimension, i % dimension);
    }
    QuadraticMatrix matrix(dimension);
    Fill(matrix, model);
    if (dimension > 0) {
        CheckSymmetry(matrix, kind * kind + otherDimension);
        RequireEmpty(QuadraticMatrix(-dimension));
        RequireEmpty(QuadraticMatrix(std::numeric_limits<int>::min() + dimension));
    }
    VorlaneFuzz::CheckEigenpairs(matrix, (kind == 'r' || kind == 'R') && dimension > 0);
    Numbers values;
    while (!input.HasEnded() && values.size() < maximumDimension) {
        values.push_back(input.Byte() % 16);
    }
    CheckSorting(values, static_cast<QuadraticMatrix::EigenvalueSortOrder>(kind % 4));
    return 0;
}
