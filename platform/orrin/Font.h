#ifndef VORLANE_PLATFORM_ORRIN_FONT_H
#define VORLANE_PLATFORM_ORRIN_FONT_H

/// \file
/// The font of a graphics primitive.

#include "platform/Export.h"
#include "platform/orrin/Held.h"

#include <string>
#include <utility>

namespace Orrin {

/// A font of a graphics primitive: a face name and a size, whose unit is the caller's. Whatever takes memory
/// raises CMemoryException if there is none.
class VORLANE_PLATFORM_EXPORT Font
{
public:
    /// The default font.
    Font() : Font(DefaultFont()) {}

    /// Takes both as they are.
    Font(std::wstring face, int size) : m_face(std::move(face)), m_size(size) {}

    Font(Font const&) = default;
    Font& operator=(Font const&) = default;
    virtual ~Font();

    /// "Arial" in size 12.
    static Font DefaultFont();

    /// The name of the face, such as "Arial", and the size; neither is tested.
    std::wstring GetFace() const { return m_face.Copy(); }
    void SetFace(std::wstring const& face) { m_face = face; }
    int GetSize() const { return m_size; }
    void SetSize(int size) { m_size = size; }

private:
    Held<std::wstring> m_face;
    int m_size = 0;
};

} // namespace Orrin

#endif
