#ifndef VORLANE_FUZZ_INPUT_H
#define VORLANE_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>

namespace VorlaneFuzz {

/// The input as a list of small numbers; 0 where it has ended.
class Input
{
public:
    Input(std::uint8_t const* bytes, std::size_t size) : m_next(bytes), m_end(bytes + size) {}

    bool HasEnded() const { return m_next == m_end; }
    int Byte() { return HasEnded() ? 0 : *m_next++; }

    /// One of the values of a table.
    template <typename Value, std::size_t count>
    Value const& OneOf(Value const (&values)[count])
    {
        return values[static_cast<std::size_t>(Byte()) % count];
    }

private:
    std::uint8_t const* m_next;
    std::uint8_t const* m_end;
};

} // namespace VorlaneFuzz

#endif
