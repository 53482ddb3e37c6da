#ifndef VORLANE_PLATFORM_ORRIN_HELD_H
#define VORLANE_PLATFORM_ORRIN_HELD_H

/// \file
/// The standard containers that value types and graphics primitives hold.

#include "platform/framework/AfxExceptions.h"

#include <utility>

namespace Orrin {

/// A container of the standard library whose copies raise CMemoryException if there is no memory for them;
/// what was to be changed is then as it was.
template <typename Container>
class Held : public Container
{
public:
    /// Without arguments empty. Copies and moves take the content.
    Held() = default;
    Held(Container&& other) noexcept : Container(std::move(other)) {}
    Held(Held&&) noexcept = default;
    Held(Held const& other) : Container(other.Copy()) {}
    ~Held() = default;

    /// Assignment as by the constructors.
    Held& operator=(Held&&) noexcept = default;
    Held& operator=(Held const& other) { return *this = static_cast<Container const&>(other); }
    Held& operator=(Container const& other)
    {
        AfxWithMemoryException([&] { Container::operator=(other); });
        return *this;
    }
    Held& operator=(Container&& other) noexcept
    {
        Container::operator=(std::move(other));
        return *this;
    }

    /// A container of the caller's own.
    Container Copy() const
    {
        return AfxWithMemoryException([this] { return Container(*this); });
    }
};

} // namespace Orrin

#endif
