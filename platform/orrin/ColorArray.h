#ifndef VORLANE_PLATFORM_ORRIN_COLORARRAY_H
#define VORLANE_PLATFORM_ORRIN_COLORARRAY_H

/// \file
/// Named rows of colours.

#include "platform/orrin/Color.h"
#include "platform/orrin/LegacyArray.h"

#include <string>

namespace Orrin {

/// An array of colours with a name.
class VORLANE_PLATFORM_EXPORT ColorArray : public LegacyArray<Color>
{
public:
    /// `size` colours, opaque black, and an empty name. `growBy` has no effect.
    ///
    /// \throws std::length_error "vector<T> too long" for a negative size.
    ColorArray(int size, int growBy);

    /// The same with a name; a null pointer gives an empty one.
    ColorArray(char const* name, int size, int growBy);

    /// Copies and moves take the colours and the name; a failed assignment leaves the array as it was.
    ColorArray(ColorArray const&) = default;
    ColorArray(ColorArray&&) noexcept = default;
    ColorArray& operator=(ColorArray const& other);
    ColorArray& operator=(ColorArray&&) noexcept = default;
    ~ColorArray() override;

    /// The name, empty if none was given.
    std::string const& GetName() const { return m_name; }

    /// Replaces the name; a null pointer empties it.
    void SetName(char const* name);

private:
    Held<std::string> m_name;
};

} // namespace Orrin

#endif
