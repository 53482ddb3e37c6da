#ifndef VORLANE_TEXT_UNIQUESTRING_H
#define VORLANE_TEXT_UNIQUESTRING_H

/// \file
/// Texts that are stored once for the whole process. The table is shared and has no lock: one thread at a
/// time may make or assign handles from texts, and no handle may be used after the library is unloaded.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

namespace Vorlane {

/// The one place of the interned texts, which stay until the library is unloaded. Only UniqueString works on
/// it.
class UniqueStringTable
{
public:
    UniqueStringTable(UniqueStringTable const&) = delete;
    UniqueStringTable& operator=(UniqueStringTable const&) = delete;
    ~UniqueStringTable();

    /// How many texts the table holds. Until the first one it has not even a map.
    int GetCount() const;

    /// What stands for every empty text; it is not in the map.
    VORLANE_EXPORT static CString const null;

private:
    friend class UniqueString;

    UniqueStringTable() = default;

    CString const* Add(char const* text);
    CString const* Find(char const* text) const;

    CMapStringToPtr* m_map = nullptr; ///< from a text to its `CString const*`
};

/// A handle on a text that is stored once for the whole process, for the price of a pointer: the handles of
/// equal texts hold the same address, so that comparing StringPtr compares texts. Texts are equal if all
/// their bytes are.
///
/// Making a handle from a text takes constant time on average, whatever the number of texts; a new text is
/// copied. A null pointer counts as an empty text, and a CString counts up to its first zero byte. Where
/// memory is short, CMemoryException is raised and an assignment leaves the handle as it was.
class VORLANE_EXPORT UniqueString
{
public:
    /// A handle on a text, which stays in the table whatever becomes of the handle.
    UniqueString(char const* text) { Add(text); }
    UniqueString(CString const& text) { Add(text); }
    UniqueString(UniqueString const&) = default;
    ~UniqueString() = default;

    /// Makes this a handle on another text; the one before stays in the table.
    UniqueString& operator=(char const* text)
    {
        Add(text);
        return *this;
    }
    UniqueString& operator=(CString const& text)
    {
        Add(text);
        return *this;
    }
    UniqueString& operator=(UniqueString const&) = default;

    /// The text, which stays where it is until the library is unloaded.
    CString const& String() const { return *m_string; }

    /// The address of the text: that of UniqueStringTable::null for an empty one.
    CString const* StringPtr() const { return m_string; }

    /// Stores the text, or loads one and makes this a handle on it.
    void Serialize(CArchive& ar);

    /// The table of all texts. A load-time object.
    static UniqueStringTable m_table;

private:
    void Add(char const* text);

    CString const* m_string; ///< never null
};

} // namespace Vorlane

#endif
