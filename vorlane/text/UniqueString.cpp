#include "vorlane/text/UniqueString.h"

#include <memory>

namespace Vorlane {

namespace {

constexpr int mapBlockSize = 101;
constexpr unsigned int mapBuckets = 101;

} // namespace

UniqueStringTable::~UniqueStringTable()
{
    if (m_map == nullptr) {
        return;
    }
    CString key;
    void* text = nullptr;
    for (POSITION position = m_map->GetStartPosition(); position != nullptr;) {
        m_map->GetNextAssoc(position, key, text);
        delete static_cast<CString*>(text);
    }
    delete m_map;
}

int UniqueStringTable::GetCount() const
{
    return m_map != nullptr ? static_cast<int>(m_map->GetCount()) : 0;
}

CString const* UniqueStringTable::Add(char const* text)
{
    if (text == nullptr || *text == '\0') {
        return &null;
    }
    if (m_map == nullptr) {
        auto map = AfxWithMemoryException([] { return std::make_unique<CMapStringToPtr>(mapBlockSize); });
        map->InitHashTable(mapBuckets, 1);
        m_map = map.release();
    }
    void* known = nullptr;
    if (m_map->Lookup(text, known)) {
        return static_cast<CString const*>(known);
    }
    auto added = AfxWithMemoryException([&] { return std::make_unique<CString>(text); });
    m_map->SetAt(*added, added.get());
    return added.release();
}

CString const* UniqueStringTable::Find(char const* text) const
{
    void* known = nullptr;
    bool const found = text != nullptr && *text != '\0' && m_map != nullptr && m_map->Lookup(text, known);
    return found ? static_cast<CString const*>(known) : &null;
}

void UniqueString::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar << *m_string;
    } else {
        CString text;
        ar >> text;
        Add(text);
    }
}

void UniqueString::Add(char const* text)
{
    m_string = m_table.Add(text);
}

} // namespace Vorlane
