#include "vorlane/numerics/QuadraticMatrix.h"

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/numerics/EigenSolverInternal.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <ostream>
#include <utility>

namespace Vorlane {

namespace {

std::size_t ElementCount(int dimension)
{
    return static_cast<std::size_t>(dimension) * static_cast<std::size_t>(dimension);
}

template <typename Matrix>
void CopyElements(Matrix const& source, double** rows, int dimension)
{
    for (int row = 0; row < dimension; ++row) {
        for (int column = 0; column < dimension; ++column) {
            rows[row][column] = source(row, column);
        }
    }
}

} // namespace

QuadraticMatrix::QuadraticMatrix(int dimension)
{
    if (dimension >= 1) {
        Allocate(dimension);
    }
}

QuadraticMatrix::QuadraticMatrix(Spatia::Matrix3x3 const& matrix)
{
    Allocate(3);
    CopyElements(matrix, m_rows, 3);
}

QuadraticMatrix::QuadraticMatrix(Spatia::Matrix4x4 const& matrix)
{
    Allocate(4);
    CopyElements(matrix, m_rows, 4);
}

QuadraticMatrix::QuadraticMatrix(QuadraticMatrix const& other)
{
    if (other.m_dimension >= 1) {
        Allocate(other.m_dimension);
        std::copy_n(other.m_elements, ElementCount(m_dimension), m_elements);
    }
}

QuadraticMatrix::~QuadraticMatrix()
{
    delete[] m_rows;
    delete[] m_elements;
}

QuadraticMatrix& QuadraticMatrix::operator=(QuadraticMatrix const& other)
{
    if (m_dimension != other.m_dimension) {
        QuadraticMatrix copy(other);
        std::swap(m_elements, copy.m_elements);
        std::swap(m_rows, copy.m_rows);
        std::swap(m_dimension, copy.m_dimension);
    } else if (this != &other) {
        std::copy_n(other.m_elements, ElementCount(m_dimension), m_elements);
    }
    return *this;
}

void QuadraticMatrix::Allocate(int dimension)
{
    // The constructors that call this have no destructor to clean up behind them: the block is owned here
    // until nothing can fail any more.
    AfxWithMemoryException([&] {
        auto elements = std::make_unique<double[]>(ElementCount(dimension));
        m_rows = new double*[static_cast<std::size_t>(dimension)];
        m_elements = elements.release();
    });
    for (int row = 0; row < dimension; ++row) {
        m_rows[row] = m_elements + static_cast<std::ptrdiff_t>(row) * dimension;
    }
    m_dimension = dimension;
}

bool QuadraticMatrix::IsSymmetric() const
{
    return EigenSolver::IsSymmetric(m_rows, m_dimension);
}

void QuadraticMatrix::Transpose()
{
    EigenSolver::Transpose(m_rows, m_dimension);
}

void QuadraticMatrix::Print(std::ostream& stream) const
{
    stream << "Dimension = " << m_dimension << '\n';
    for (int row = 0; row < m_dimension; ++row) {
        stream << "Row #" << row + 1 << '\n' << m_rows[row][0];
        for (int column = 1; column < m_dimension; ++column) {
            stream << ' ' << m_rows[row][column];
        }
        stream << '\n';
    }
}

std::ostream& operator<<(std::ostream& stream, QuadraticMatrix const& matrix)
{
    matrix.Print(stream);
    return stream;
}

} // namespace Vorlane
