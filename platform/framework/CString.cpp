#include "platform/framework/CString.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <locale.h>
#include <new>

namespace {

char ToLower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// The sum of two lengths; past the range of `int` there is no text to hold it.
int SumOfLengths(int a, int b)
{
    if (a > INT_MAX - b) {
        AfxThrowMemoryException();
    }
    return a + b;
}

/// Gives numbers a decimal point for the duration of a call, whatever locale the thread has.
class ClassicLocale
{
public:
    ClassicLocale() : m_before(uselocale(Classic())) {}
    ~ClassicLocale() { uselocale(m_before); }
    ClassicLocale(ClassicLocale const&) = delete;
    ClassicLocale& operator=(ClassicLocale const&) = delete;

private:
    static locale_t Classic()
    {
        static locale_t const classic = newlocale(LC_ALL_MASK, "C", locale_t{});
        return classic;
    }

    locale_t m_before;
};

/// The result code of a text operation that failed for no known reason.
constexpr long unspecifiedFailure = static_cast<std::int32_t>(0x80004005u);

/// Passes on the length that vsnprintf gave, unless that tells of a failure.
int CheckFormatted(int length)
{
    if (length < 0 && (errno == EOVERFLOW || errno == ENOMEM)) {
        AfxThrowMemoryException();
    }
    if (length < 0) {
        AfxThrowOleException(unspecifiedFailure);
    }
    return length;
}

} // namespace

CString::CString(wchar_t const* text, int length)
{
    CheckBytes(text, length);
    if (length > 0) {
        MoveToOwnBytes(length);
        std::transform(text, text + length, Writable(), [](wchar_t wide) {
            return wide >= 0 && wide <= 0xFF ? static_cast<char>(wide) : '?';
        });
        SetLength(length);
    }
}

CString& CString::operator=(char const* text)
{
    int const length = LengthOf(text);
    Storage* const storage = m_isStored ? m_content.stored.storage : nullptr;
    if (IsSoleOwner() && length <= (storage != nullptr ? storage->m_capacity : ownCapacity)) {
        char* const begin = storage != nullptr ? storage->Bytes() : m_content.own;
        std::memmove(begin, OrEmpty(text), static_cast<std::size_t>(length));
        if (storage != nullptr) {
            m_content.stored.text = begin;
        }
        SetLength(length);
    } else {
        *this = CString(text, length);
    }
    return *this;
}

CString& CString::operator+=(CString const& text)
{
    if (IsEmpty()) {
        *this = text;
    } else {
        Append(text.GetText(), text.m_length);
    }
    return *this;
}

CString& CString::operator+=(char const* text)
{
    Append(OrEmpty(text), LengthOf(text));
    return *this;
}

CString& CString::operator+=(char character)
{
    Append(&character, 1);
    return *this;
}

int CString::CompareNoCase(char const* other) const noexcept
{
    char const* mine = GetText();
    char const* theirs = OrEmpty(other);
    while (*mine != '\0' && ToLower(*mine) == ToLower(*theirs)) {
        ++mine;
        ++theirs;
    }
    return static_cast<unsigned char>(ToLower(*mine)) - static_cast<unsigned char>(ToLower(*theirs));
}

int CString::Find(char character, int start) const noexcept
{
    if (start < 0 || start >= m_length) {
        return -1;
    }
    char const* const text = GetText();
    void const* const found =
        std::memchr(text + start, character, static_cast<std::size_t>(m_length - start));
    return found != nullptr ? static_cast<int>(static_cast<char const*>(found) - text) : -1;
}

int CString::FindOneOf(char const* set) const noexcept
{
    std::array<bool, 256> isWanted{};
    for (char const* wanted = OrEmpty(set); *wanted != '\0'; ++wanted) {
        isWanted[static_cast<unsigned char>(*wanted)] = true;
    }
    char const* const text = GetText();
    char const* const end = text + m_length;
    char const* const found = std::find_if(
        text, end, [&](char character) { return isWanted[static_cast<unsigned char>(character)]; });
    return found != end ? static_cast<int>(found - text) : -1;
}

CString CString::Left(int count) const
{
    return count >= m_length ? *this : CString(GetText(), std::max(count, 0));
}

CString CString::Mid(int first, int count) const
{
    first = std::max(first, 0);
    if (first >= m_length || count <= 0) {
        return CString();
    }
    return count >= m_length - first ? Mid(first) : CString(GetText() + first, count);
}

CString& CString::TrimLeft()
{
    char const* const text = GetText();
    DropFront(static_cast<int>(std::find_if_not(text, text + m_length, AfxIsWhiteSpace) - text));
    return *this;
}

CString& CString::TrimRight()
{
    char const* const text = GetText();
    int length = m_length;
    while (length > 0 && AfxIsWhiteSpace(text[length - 1])) {
        --length;
    }
    if (length < m_length) {
        if (IsSoleOwner()) {
            SetLength(length);
        } else {
            *this = CString(text, length);
        }
    }
    return *this;
}

CString& CString::MakeLower()
{
    char const* const text = GetText();
    if (std::any_of(text, text + m_length,
                    [](char character) { return character >= 'A' && character <= 'Z'; })) {
        if (!IsSoleOwner()) {
            MoveToOwnBytes(m_length);
        }
        std::transform(GetText(), GetText() + m_length, Writable(), ToLower);
    }
    return *this;
}

void CString::Format(char const* format, ...)
{
    if (format == nullptr) {
        AfxThrowInvalidArgException("a null pointer for a format");
    }
    ClassicLocale const pointAsDecimalMark;
    // The result goes to a text of its own, since arguments may point into this one.
    CString result;
    std::va_list arguments;
    std::array<char, 256> shortResult;
    va_start(arguments, format);
    int const length =
        CheckFormatted(std::vsnprintf(shortResult.data(), shortResult.size(), format, arguments));
    va_end(arguments);
    if (static_cast<std::size_t>(length) < shortResult.size()) {
        result = CString(shortResult.data(), length);
    } else {
        result.MoveToOwnBytes(length);
        va_start(arguments, format);
        CheckFormatted(
            std::vsnprintf(result.Writable(), static_cast<std::size_t>(length) + 1, format, arguments));
        va_end(arguments);
        result.SetLength(length);
    }
    Swap(result);
}

char* CString::GetBuffer(int minLength)
{
    if (minLength < 0) {
        AfxThrowInvalidArgException("a buffer for ", minLength, " characters");
    }
    if (!IsSoleOwner() || GetRoom() < minLength) {
        MoveToOwnBytes(std::max(minLength, m_length));
    }
    if (m_isStored) {
        m_content.stored.storage->m_lentOut = true;
    }
    return Writable();
}

void CString::ReleaseBuffer(int length)
{
    int const room = IsSoleOwner() ? GetRoom() : m_length;
    if (length == -1) {
        length = static_cast<int>(strnlen(GetText(), static_cast<std::size_t>(room)));
    }
    if (length < 0 || length > room) {
        AfxThrowInvalidArgException("a length of ", length, " in a buffer for ", room, " characters");
    }
    if (IsSoleOwner()) {
        if (m_isStored) {
            m_content.stored.storage->m_lentOut = false;
        }
        SetLength(length);
    } else {
        *this = Left(length);
    }
}

void CString::CheckBytes(void const* text, int length)
{
    if (length < 0) {
        AfxThrowInvalidArgException("a text of ", length, " characters");
    }
    if (text == nullptr && length > 0) {
        AfxThrowInvalidArgException("a null pointer for a text of ", length, " characters");
    }
}

CString CString::Concatenate(char const* first, int firstLength, char const* second, int secondLength)
{
    CString result;
    int const sum = SumOfLengths(firstLength, secondLength);
    if (sum > 0) {
        result.MoveToOwnBytes(sum);
        result.Append(first, firstLength);
        result.Append(second, secondLength);
    }
    return result;
}

/// The last `length` bytes, which share the storage.
CString CString::Tail(int length) const
{
    CString tail(*this);
    tail.DropFront(m_length - length);
    return tail;
}

CString::Storage* CString::Allocate(int capacity)
{
    void* const memory = std::malloc(sizeof(Storage) + static_cast<std::size_t>(capacity) + 1);
    if (memory == nullptr) {
        AfxThrowMemoryException();
    }
    return ::new (memory) Storage{{1}, capacity, false};
}

void CString::Free(Storage* storage) noexcept
{
    storage->~Storage();
    std::free(storage);
}

void CString::DropInside(int index, int count)
{
    if (index < m_length && count > 0) {
        *this = count < m_length - index ? Left(index) + Mid(index + count) : Left(index);
    }
}

/// The first value of a new object, where it is too long for the object itself.
void CString::Store(char const* text, int length)
{
    Storage* const storage = Allocate(length);
    m_content.stored = {storage, storage->Bytes()};
    m_isStored = true;
    std::memcpy(storage->Bytes(), text, static_cast<std::size_t>(length));
    SetLength(length);
}

/// Becomes the only owner of a copy of what was just copied from a text whose buffer is lent out.
void CString::CopyLentOut()
{
    char const* const text = m_content.stored.text;
    int const length = m_length;
    Forget();
    Assign(text, length);
}

/// Gives the text bytes that nobody else owns, with room for `capacity` of them, which is at least its
/// length.
void CString::MoveToOwnBytes(int capacity)
{
    CString moved;
    if (capacity > ownCapacity) {
        Storage* const storage = Allocate(capacity);
        moved.m_content.stored = {storage, storage->Bytes()};
        moved.m_isStored = true;
    }
    std::memcpy(moved.Writable(), GetText(), static_cast<std::size_t>(m_length) + 1);
    moved.m_length = m_length;
    Swap(moved);
}

void CString::Append(char const* text, int length)
{
    if (length == 0) {
        return;
    }
    int const sum = SumOfLengths(m_length, length);
    if (IsSoleOwner() && sum <= GetRoom()) {
        std::memcpy(Writable() + m_length, text, static_cast<std::size_t>(length));
        SetLength(sum);
        return;
    }
    // Half as much again, so that appending byte by byte stays linear; a first value gets what it needs.
    CString longer;
    int const grown = sum <= INT_MAX / 3 * 2 ? sum / 2 * 3 : INT_MAX;
    longer.MoveToOwnBytes(m_length == 0 ? sum : std::max(sum, grown));
    std::memcpy(longer.Writable(), GetText(), static_cast<std::size_t>(m_length));
    std::memcpy(longer.Writable() + m_length, text, static_cast<std::size_t>(length));
    longer.SetLength(sum);
    Swap(longer);
}
