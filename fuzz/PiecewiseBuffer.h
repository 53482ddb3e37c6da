#ifndef VORLANE_FUZZ_PIECEWISEBUFFER_H
#define VORLANE_FUZZ_PIECEWISEBUFFER_H

#include <algorithm>
#include <cstddef>
#include <streambuf>
#include <string>
#include <utility>

namespace VorlaneFuzz {

/// Gives out its bytes in pieces of `step`; with a step of 0 it has no get area.
class PiecewiseBuffer : public std::streambuf
{
public:
    PiecewiseBuffer(std::string bytes, std::size_t step) : m_bytes(std::move(bytes)), m_step(step) {}

protected:
    int_type underflow() override
    {
        if (m_position == m_bytes.size()) {
            return traits_type::eof();
        }
        char* const first = m_bytes.data() + m_position;
        if (m_step > 0) {
            std::size_t const count = std::min(m_step, m_bytes.size() - m_position);
            setg(first, first, first + count);
            m_position += count;
        }
        return traits_type::to_int_type(*first);
    }

    int_type uflow() override
    {
        if (m_step > 0) {
            return std::streambuf::uflow();
        }
        int_type const next = underflow();
        m_position += traits_type::eq_int_type(next, traits_type::eof()) ? 0 : 1;
        return next;
    }

private:
    std::string m_bytes;
    std::size_t m_step;
    std::size_t m_position = 0;
};

} // namespace VorlaneFuzz

#endif
