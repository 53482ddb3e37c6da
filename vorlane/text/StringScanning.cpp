#include "vorlane/text/StringUtils.h"

#include "vorlane/text/NumberScanningInternal.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <limits>
#include <streambuf>
#include <string>
#include <string_view>

namespace Vorlane {

namespace {

using NumberScanning::FindWhiteSpace;
using NumberScanning::SkipWhiteSpace;

/// The bytes that end a field. The text they are given in may change afterwards.
class Delimiters
{
public:
    explicit Delimiters(char delimiter) { Add(delimiter); }

    /// None at all for a null or empty set.
    explicit Delimiters(char const* set)
    {
        for (; set != nullptr && *set != '\0'; ++set) {
            Add(*set);
        }
    }

    bool Contains(char character) const
    {
        auto const byte = static_cast<unsigned char>(character);
        return (m_words[byte / 64u] >> (byte % 64u) & 1u) != 0;
    }

    bool IsEmpty() const { return m_count == 0; }

    void Add(char character)
    {
        auto const byte = static_cast<unsigned char>(character);
        m_words[byte / 64u] |= std::uint64_t{1} << (byte % 64u);
        m_latest = byte;
        ++m_count;
    }

    /// The first delimiter from `first` on, or `last`.
    char const* Find(char const* first, char const* last) const
    {
        if (m_count == 1) {
            void const* const found = std::memchr(first, m_latest, static_cast<std::size_t>(last - first));
            return found != nullptr ? static_cast<char const*>(found) : last;
        }
        return std::find_if(first, last, [this](char character) { return Contains(character); });
    }

    /// The first character from `first` on that is no delimiter, or `last`.
    char const* Skip(char const* first, char const* last) const
    {
        return std::find_if_not(first, last, [this](char character) { return Contains(character); });
    }

private:
    std::array<std::uint64_t, 4> m_words{};
    int m_count = 0;
    unsigned char m_latest = 0;
};

char const* Begin(CString const& text)
{
    return text;
}

char const* End(CString const& text)
{
    return Begin(text) + text.GetLength();
}

/// The part of `text` from `first` to `last`, which point into it. The tail of a text shares its storage.
CString Part(CString const& text, char const* first, char const* last)
{
    return last == End(text) ? text.Mid(static_cast<int>(first - Begin(text)))
                             : CString(first, static_cast<int>(last - first));
}

/// Leaves what stands behind the one character at `end`, which points into the text or to its end.
void KeepBehind(CString& text, char const* end)
{
    text.Delete(0, static_cast<int>(end - Begin(text)) + (end != End(text) ? 1 : 0));
}

struct Span
{
    char const* first;
    char const* last;
};

/// The field at the front of what is left from `position` on.
Span NextField(char const* position, char const* last, Delimiters const& delimiters)
{
    char const* const first = SkipWhiteSpace(position, last);
    return {first, delimiters.Find(first, last)};
}

CString ParseField(CString& text, Delimiters const& delimiters)
{
    Span const field = NextField(Begin(text), End(text), delimiters);
    CString result = Part(text, field.first, field.last);
    KeepBehind(text, field.last);
    return result;
}

Span PeekField(CString const& text, Delimiters const& delimiters)
{
    char const* const first = delimiters.Skip(Begin(text), End(text));
    return {first, delimiters.Find(first, End(text))};
}

double ParseReal(CString& text, Delimiters const& delimiters)
{
    Span const field = NextField(Begin(text), End(text), delimiters);
    double const value = NumberScanning::ScanReal(field.first, field.last).value;
    KeepBehind(text, field.last);
    return value;
}

double PeekReal(CString const& text, Delimiters const& delimiters)
{
    Span const field = PeekField(text, delimiters);
    return NumberScanning::ScanReal(field.first, field.last).value;
}

struct ScannedPoint
{
    Spatia::Point3d point;
    /// The delimiter behind the third field, or the end of the text.
    char const* end;
};

/// The three fields at the front of the text.
ScannedPoint ScanPoint(CString const& text, Delimiters const& delimiters)
{
    char const* const last = End(text);
    std::array<Span, 3> fields{};
    char const* position = Begin(text);
    for (Span& field : fields) {
        field = NextField(position, last, delimiters);
        position = field.last != last ? field.last + 1 : last;
    }
    std::array<double, 3> values{};
    auto const isEmpty = [](Span const& field) {
        return field.first == field.last;
    };
    bool converted = std::none_of(fields.begin(), fields.end(), isEmpty);
    for (std::size_t i = 0; i < fields.size() && converted; ++i) {
        // A conversion ends at a zero byte.
        char const* const end = std::find(fields[i].first, fields[i].last, '\0');
        converted = NumberScanning::ConvertReal(fields[i].first, end, values[i]);
    }
    Spatia::Point3d const zero;
    return {converted ? Spatia::Point3d(values[0], values[1], values[2]) : zero, fields[2].last};
}

Spatia::Point3d ParsePointFields(CString& text, Delimiters const& delimiters)
{
    ScannedPoint const scanned = ScanPoint(text, delimiters);
    KeepBehind(text, scanned.end);
    return scanned.point;
}

bool IsQuote(char character)
{
    return character == '`' || character == '"' || character == '\'';
}

/// What stands between the quote at `quote` and its repeat, or `last`.
Span Quoted(char const* quote, char const* last)
{
    return {quote + 1, std::find(quote + 1, last, *quote)};
}

/// Reaches the get area of any stream buffer, so that a scan runs over memory and not character by character.
struct GetArea : std::streambuf
{
    static Span Of(std::streambuf const& buffer)
    {
        return {(buffer.*&GetArea::gptr)(), (buffer.*&GetArea::egptr)()};
    }

    static void Advance(std::streambuf& buffer, int count) { (buffer.*&GetArea::gbump)(count); }
};

/// The characters that a stream has ready. Reading goes through the stream's own unformatted input, so that
/// its bits, its tied stream and its exceptions are served as usual.
class StreamWindow
{
public:
    explicit StreamWindow(std::istream& stream) : m_stream(stream) {}

    /// The next characters, at least one; none at the end of the stream, whose end bit is then set, or on a
    /// stream that is not good, whose fail bit is then set. They stand until the next call.
    Span Look()
    {
        // What Take left is as good as what the stream would show again, and so is what a good stream has
        // ready that has no other to flush first.
        if (m_buffered || (m_stream.good() && m_stream.tie() == nullptr)) {
            Span const ready = Ready();
            m_buffered = ready.first != ready.last;
            if (m_buffered) {
                return ready;
            }
        }
        std::istream::int_type const next = m_stream.peek();
        if (std::istream::traits_type::eq_int_type(next, std::istream::traits_type::eof())) {
            return {&m_single, &m_single};
        }
        Span const ready = Ready();
        m_buffered = ready.first != ready.last;
        if (!m_buffered) {
            m_single = std::istream::traits_type::to_char_type(next);
            return {&m_single, &m_single + 1};
        }
        return ready;
    }

    /// Takes that many of the characters that Look gave.
    void Take(std::ptrdiff_t count)
    {
        if (m_buffered) {
            GetArea::Advance(*m_stream.rdbuf(), static_cast<int>(count));
        } else if (count > 0) {
            m_stream.get();
        }
    }

    /// Leaves the stream in front of a character that is no white space, or says that there is none.
    bool SkipWhiteSpace()
    {
        for (Span ready = Look(); ready.first != ready.last; ready = Look()) {
            char const* const found = NumberScanning::SkipWhiteSpace(ready.first, ready.last);
            Take(found - ready.first);
            if (found != ready.last) {
                return true;
            }
        }
        return false;
    }

private:
    Span Ready() const
    {
        Span const ready = GetArea::Of(*m_stream.rdbuf());
        std::ptrdiff_t const largest = std::numeric_limits<int>::max();
        return {ready.first, ready.first + std::min(ready.last - ready.first, largest)};
    }

    std::istream& m_stream;
    char m_single = '\0';
    bool m_buffered = false;
};

CString MakeText(std::string_view text)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        AfxThrowMemoryException();
    }
    return CString(text.data(), static_cast<int>(text.size()));
}

enum class Ending
{
    taken,
    left
};

struct ExtractedItem
{
    CString text;
    bool atEnd;
};

/// Reads up to the character that `find` finds, or up to the end of the stream.
template <typename Find>
ExtractedItem Extract(StreamWindow& window, Find find, Ending ending)
{
    std::string gathered; // what earlier windows held
    for (Span ready = window.Look(); ready.first != ready.last; ready = window.Look()) {
        char const* const end = find(ready.first, ready.last);
        std::string_view const piece(ready.first, static_cast<std::size_t>(end - ready.first));
        if (end != ready.last && gathered.empty()) {
            ExtractedItem item{MakeText(piece), false};
            window.Take(end - ready.first + (ending == Ending::taken ? 1 : 0));
            return item;
        }
        AfxWithMemoryException([&] { gathered.append(piece); });
        window.Take(end - ready.first + (end != ready.last && ending == Ending::taken ? 1 : 0));
        if (end != ready.last) {
            return {MakeText(gathered), false};
        }
    }
    return {MakeText(gathered), true};
}

/// The word or field form: the read that meets the end of the stream fails, and what was read is delivered.
template <typename Find>
CString ExtractItem(std::istream& stream, Find find, Ending ending)
{
    StreamWindow window(stream);
    window.SkipWhiteSpace();
    ExtractedItem item = Extract(window, find, ending);
    if (item.atEnd) {
        stream.setstate(std::ios::failbit);
    }
    return std::move(item.text);
}

} // namespace

CString StringUtils::Parse(CString& text)
{
    char const* const first = SkipWhiteSpace(Begin(text), End(text));
    char const* const last = FindWhiteSpace(first, End(text));
    CString word = Part(text, first, last);
    KeepBehind(text, last);
    return word;
}

CString StringUtils::Parse(CString& text, char const* delimiters)
{
    return ParseField(text, Delimiters(delimiters));
}

CString StringUtils::Parse(CString& text, char delimiter)
{
    return ParseField(text, Delimiters(delimiter));
}

CString StringUtils::ParseQuotedString(CString& text)
{
    char const* const first = SkipWhiteSpace(Begin(text), End(text));
    if (first == End(text)) {
        text.Empty();
        return CString();
    }
    if (!IsQuote(*first)) {
        text.TrimLeft();
        return CString();
    }
    Span const quoted = Quoted(first, End(text));
    CString result = Part(text, quoted.first, quoted.last);
    KeepBehind(text, quoted.last);
    return result;
}

double StringUtils::ParseRealNumber(CString& text, char const* delimiters)
{
    return ParseReal(text, Delimiters(delimiters));
}

double StringUtils::ParseRealNumber(CString& text, char delimiter)
{
    return ParseReal(text, Delimiters(delimiter));
}

Spatia::Point3d StringUtils::ParsePoint(CString& text, char const* delimiters)
{
    return ParsePointFields(text, Delimiters(delimiters));
}

Spatia::Point3d StringUtils::ParsePoint(CString& text, char delimiter)
{
    return ParsePointFields(text, Delimiters(delimiter));
}

CString StringUtils::Peek(CString const& text)
{
    char const* const first = SkipWhiteSpace(Begin(text), End(text));
    return Part(text, first, FindWhiteSpace(first, End(text)));
}

CString StringUtils::Peek(CString const& text, char const* delimiters)
{
    Span const field = PeekField(text, Delimiters(delimiters));
    return Part(text, field.first, field.last);
}

CString StringUtils::Peek(CString const& text, char delimiter)
{
    Span const field = PeekField(text, Delimiters(delimiter));
    return Part(text, field.first, field.last);
}

CString StringUtils::PeekQuotedString(CString const& text)
{
    if (text.IsEmpty() || !IsQuote(*Begin(text))) {
        return CString();
    }
    Span const quoted = Quoted(Begin(text), End(text));
    return Part(text, quoted.first, quoted.last);
}

double StringUtils::PeekRealNumber(CString const& text, char const* delimiters)
{
    return PeekReal(text, Delimiters(delimiters));
}

double StringUtils::PeekRealNumber(CString const& text, char delimiter)
{
    return PeekReal(text, Delimiters(delimiter));
}

Spatia::Point3d StringUtils::PeekPoint(CString const& text, char const* delimiters)
{
    return ScanPoint(text, Delimiters(delimiters)).point;
}

Spatia::Point3d StringUtils::PeekPoint(CString const& text, char delimiter)
{
    return ScanPoint(text, Delimiters(delimiter)).point;
}

bool StringUtils::CheckNextCharacter(char character, CString const& text)
{
    char const* const first = SkipWhiteSpace(Begin(text), End(text));
    return first != End(text) && *first == character;
}

bool StringUtils::CheckQuotedString(CString const& text, char quote)
{
    return text.GetLength() >= 2 && *Begin(text) == quote && End(text)[-1] == quote;
}

CString StringUtils::ExtractString(std::istream& stream)
{
    return ExtractItem(stream, FindWhiteSpace, Ending::taken);
}

CString StringUtils::ExtractString(std::istream& stream, char const* delimiters)
{
    bool const none = delimiters == nullptr || *delimiters == '\0';
    Delimiters set(none ? " " : delimiters);
    set.Add('\0');
    auto const find = [&set](char const* first, char const* last) {
        return set.Find(first, last);
    };
    return ExtractItem(stream, find, Ending::left);
}

CString StringUtils::ExtractString(std::istream& stream, char delimiter)
{
    StreamWindow window(stream);
    if (!window.SkipWhiteSpace()) {
        return CString();
    }
    Delimiters const set(delimiter);
    auto const find = [&set](char const* first, char const* last) {
        return set.Find(first, last);
    };
    return Extract(window, find, Ending::taken).text;
}

CString StringUtils::ExtractLine(std::istream& stream)
{
    return ExtractString(stream, '\n');
}

} // namespace Vorlane
