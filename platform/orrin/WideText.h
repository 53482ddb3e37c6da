#ifndef VORLANE_PLATFORM_ORRIN_WIDETEXT_H
#define VORLANE_PLATFORM_ORRIN_WIDETEXT_H

/// \file
/// The wide texts that fonts and graphics primitives hold.

#include "platform/framework/AfxExceptions.h"

#include <string>
#include <utility>

namespace Orrin {

/// A std::wstring whose copies raise CMemoryException if there is no memory for them; what was to be changed
/// is then as it was.
class WideText
{
public:
    WideText() = default;

    /// Takes the text over.
    explicit WideText(std::wstring text) : m_text(std::move(text)) {}

    WideText(WideText const& other) : m_text(other.Copy()) {}
    WideText& operator=(WideText const& other) { return *this = other.m_text; }
    WideText& operator=(std::wstring const& text)
    {
        AfxWithMemoryException([&] { m_text = text; });
        return *this;
    }
    ~WideText() = default;

    /// The text, as long as this lives unchanged.
    std::wstring const& Get() const { return m_text; }

    /// A text of the caller's own.
    std::wstring Copy() const
    {
        return AfxWithMemoryException([this] { return std::wstring(m_text); });
    }

private:
    std::wstring m_text;
};

} // namespace Orrin

#endif
