#include "platform/orrin/ColorArray.h"

namespace Orrin {

ColorArray::ColorArray(int size, int growBy) : ColorArray(nullptr, size, growBy) {}

ColorArray::ColorArray(char const* name, int size, int growBy)
{
    SetSize(size, growBy);
    SetName(name);
}

ColorArray& ColorArray::operator=(ColorArray const& other)
{
    std::string name = other.m_name.Copy();
    LegacyArray<Color>::operator=(other);
    m_name = std::move(name);
    return *this;
}

ColorArray::~ColorArray() = default;

void ColorArray::SetName(char const* name)
{
    AfxWithMemoryException([&] { m_name = name != nullptr ? name : ""; });
}

} // namespace Orrin
