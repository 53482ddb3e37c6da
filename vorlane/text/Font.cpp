#include "vorlane/text/Font.h"

#include <utility>

namespace Vorlane {

Font::Font(CString face, int size) : m_face(std::move(face)), m_size(size) {}

void Font::SetFace(CString face)
{
    m_face = std::move(face);
}

void Font::SetSize(int size)
{
    if (size > 0) {
        m_size = size;
    }
}

bool Font::operator<(Font const& other) const
{
    return m_size != other.m_size ? m_size < other.m_size : m_face.CompareNoCase(other.m_face) < 0;
}

bool Font::operator==(Font const& other) const
{
    return m_size == other.m_size && m_face.Compare(other.m_face) == 0;
}

Font Font::DefaultFont()
{
    return Font("Arial", 12);
}

Font Font::DefaultBigFont()
{
    return Font("Arial", 16);
}

void Font::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar << m_face;
        ar << m_size;
    } else {
        ar >> m_face;
        ar >> m_size;
    }
}

} // namespace Vorlane
