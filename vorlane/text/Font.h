#ifndef VORLANE_TEXT_FONT_H
#define VORLANE_TEXT_FONT_H

/// \file
/// The font of a user interface.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

namespace Vorlane {

/// A face name and a size, in a unit of the caller's. It is another type than Orrin::Font, the font of the
/// graphics primitives.
class VORLANE_EXPORT Font
{
public:
    /// An empty face in size 0.
    Font() = default;

    /// Takes both as they are.
    Font(CString face, int size);

    Font(Font const&) = default;
    Font& operator=(Font const&) = default;
    ~Font() = default;

    /// The name of the face, such as "Arial"; it is not checked.
    CString GetFace() const { return m_face; }
    void SetFace(CString face);

    /// The size; 0 or negative only from a constructor or an archive.
    int GetSize() const { return m_size; }

    /// Ignores a size of 0 or below.
    void SetSize(int size);

    /// Orders by size, then by face without regard to case.
    bool operator<(Font const& other) const;

    /// Equal sizes and equal faces, where case counts: fonts whose faces differ in case alone are neither
    /// equal nor ordered.
    bool operator==(Font const& other) const;
    bool operator!=(Font const& other) const { return !(*this == other); }

    /// "Arial" in size 12.
    static Font DefaultFont();

    /// "Arial" in size 16.
    static Font DefaultBigFont();

    /// Stores or loads the face as a text, then the size as 4 bytes. A loaded size is taken as it is.
    void Serialize(CArchive& ar);

private:
    CString m_face;
    int m_size = 0;
};

} // namespace Vorlane

#endif
