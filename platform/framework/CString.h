#ifndef VORLANE_PLATFORM_FRAMEWORK_CSTRING_H
#define VORLANE_PLATFORM_FRAMEWORK_CSTRING_H

/// \file
/// The framework's narrow text.

#include "platform/Export.h"
#include "platform/framework/AfxExceptions.h"

#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

/// Whether this is a blank, tab, LF, VT, FF or CR: the white space of all texts, whatever the locale.
constexpr bool AfxIsWhiteSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// A text of 8-bit characters with value semantics, always readable as a zero-terminated buffer.
///
/// A text of up to 15 bytes may lie in the object itself. Otherwise copies share their storage until one of
/// them changes, and so does the tail that Mid(first) or TrimLeft leaves: both cost the same for any length,
/// and eating a text from its front takes linear time overall. Such a tail keeps the whole storage alive;
/// CString(tail, tail.GetLength()) cuts it loose. Owners are counted atomically, so distinct objects may live
/// on distinct threads even while they share.
///
/// Every index and length is an `int`. A length past that range, or a failed allocation, raises
/// CMemoryException, and the text keeps its value. Arguments may point into the text's own buffer. A null
/// `char const*` stands for an empty text.
///
/// Bytes behind an embedded zero byte count for GetLength, Find, Mid and the archive. Compare, CompareNoCase,
/// the comparison operators and HashKey see the zero-terminated text, that is, the bytes before the first
/// zero byte: one rule for all, so that == and < agree with Compare in every mixture of operands.
class VORLANE_PLATFORM_EXPORT CString
{
public:
    /// Empty.
    CString() noexcept {}

    /// Copies share the storage of a long text until one of them changes; moves leave an empty text.
    CString(CString const& other)
        : m_content(other.m_content), m_length(other.m_length), m_isStored(other.m_isStored)
    {
        if (m_isStored) {
            Share();
        }
    }
    CString(CString&& other) noexcept
        : m_content(other.m_content), m_length(other.m_length), m_isStored(other.m_isStored)
    {
        other.Forget();
    }

    /// The bytes up to the terminator.
    CString(char const* text) { Assign(OrEmpty(text), LengthOf(text)); }

    /// Exactly `length` bytes, zero bytes included. A length below 0, or a null pointer with a length above
    /// 0, raises CInvalidArgException.
    CString(char const* text, int length)
    {
        if (text == nullptr || length < 0) {
            CheckBytes(text, length);
        } else {
            Assign(text, length);
        }
    }

    /// Narrows exactly `length` wide characters: 0 to 255 become the byte of that value, all others '?'.
    /// Bad arguments as above.
    CString(wchar_t const* text, int length);

    ~CString()
    {
        if (m_isStored) {
            Release();
        }
    }

    /// Assignment as by the constructors; the text assigned may be part of this one.
    CString& operator=(CString const& other)
    {
        CString copy(other);
        Swap(copy);
        return *this;
    }
    CString& operator=(CString&& other) noexcept
    {
        CString taken(std::move(other));
        Swap(taken);
        return *this;
    }
    CString& operator=(char const* text);

    /// Append; amortised time linear in the appended length.
    CString& operator+=(CString const& text);
    CString& operator+=(char const* text);
    CString& operator+=(char character);

    /// The zero-terminated buffer; valid until this text changes or moves.
    operator char const*() const noexcept { return m_isStored ? m_content.stored.text : m_content.own; }

    /// The number of bytes.
    int GetLength() const noexcept { return m_length; }

    /// Whether there are no bytes.
    bool IsEmpty() const noexcept { return m_length == 0; }

    /// The byte at `index`; the terminating 0 where `index` is the length. Any other index raises
    /// CInvalidArgException.
    char GetAt(int index) const
    {
        if (static_cast<unsigned int>(index) > static_cast<unsigned int>(m_length)) {
            AfxThrowIndexException(index, m_length);
        }
        return GetText()[index];
    }
    char operator[](int index) const { return GetAt(index); }

    /// Makes the text empty and lets go of its storage.
    void Empty() noexcept { CString().Swap(*this); }

    /// Orders by unsigned bytes: negative, 0 or positive.
    int Compare(char const* other) const noexcept { return std::strcmp(GetText(), OrEmpty(other)); }

    /// Compare, with the letters A to Z taken as a to z.
    int CompareNoCase(char const* other) const noexcept;

    /// The index of the first `character` at or after `start`, else -1. A `start` outside the text gives -1.
    int Find(char character, int start = 0) const noexcept;

    /// The index of the first byte that stands in the zero-terminated `set`, else -1.
    int FindOneOf(char const* set) const noexcept;

    /// The first `count` bytes: none for a count below 0, all for one past the length.
    CString Left(int count) const;

    /// The bytes from `first` to the end: all for a `first` below 0, none for one past the end. Shares
    /// storage.
    CString Mid(int first) const
    {
        int const length = first > 0 ? m_length - first : m_length;
        if (length > ownCapacity) {
            return Tail(length);
        }
        return length > 0 ? CString(GetText() + (m_length - length), length) : CString();
    }

    /// At most `count` bytes from `first`, cut at the end; numbers below 0 count as 0.
    CString Mid(int first, int count) const;

    /// Removes at most `count` bytes from `index` on, cut at the end, and gives the new length; numbers below
    /// 0 count as 0. Bytes at the front go in constant time and leave shared storage shared.
    int Delete(int index, int count = 1)
    {
        if (index <= 0) {
            DropFront(count);
        } else {
            DropInside(index, count);
        }
        return m_length;
    }

    /// Remove white space (AfxIsWhiteSpace) at one end; both return this text.
    CString& TrimLeft();
    CString& TrimRight();

    /// Turns A to Z into a to z in place, whatever the locale; returns this text.
    CString& MakeLower();

    /// Replaces the value with the result of a `printf` in the "C" locale, of any length. Arguments may point
    /// into this text. A null `format` raises CInvalidArgException, a conversion that fails COleException.
    void Format(char const* format, ...) __attribute__((format(printf, 2, 3)));

    /// A writable buffer for at least `minLength` bytes and a terminator that starts with the present text.
    /// It belongs to this text alone: copies taken before ReleaseBuffer don't share it. A `minLength` below 0
    /// raises CInvalidArgException.
    char* GetBuffer(int minLength);

    /// Ends the use of the buffer and sets the length; -1 takes the bytes up to the first zero byte. A length
    /// below -1, or past the buffer's room, raises CInvalidArgException.
    void ReleaseBuffer(int length = -1);

    /// Comparison of the bytes, as unsigned numbers, up to the first zero byte of each; a null pointer counts
    /// as an empty text.
    friend bool operator==(CString const& a, CString const& b) noexcept
    {
        return a.Compare(b.GetText()) == 0;
    }
    friend bool operator==(CString const& a, char const* b) noexcept { return a.Compare(b) == 0; }
    friend bool operator==(char const* a, CString const& b) noexcept { return b.Compare(a) == 0; }
    friend bool operator!=(CString const& a, CString const& b) noexcept
    {
        return a.Compare(b.GetText()) != 0;
    }
    friend bool operator!=(CString const& a, char const* b) noexcept { return a.Compare(b) != 0; }
    friend bool operator!=(char const* a, CString const& b) noexcept { return b.Compare(a) != 0; }
    friend bool operator<(CString const& a, CString const& b) noexcept { return a.Compare(b.GetText()) < 0; }
    friend bool operator<(CString const& a, char const* b) noexcept { return a.Compare(b) < 0; }
    friend bool operator<(char const* a, CString const& b) noexcept { return b.Compare(a) > 0; }
    friend bool operator>(CString const& a, CString const& b) noexcept { return a.Compare(b.GetText()) > 0; }
    friend bool operator>(CString const& a, char const* b) noexcept { return a.Compare(b) > 0; }
    friend bool operator>(char const* a, CString const& b) noexcept { return b.Compare(a) < 0; }
    friend bool operator<=(CString const& a, CString const& b) noexcept
    {
        return a.Compare(b.GetText()) <= 0;
    }
    friend bool operator<=(CString const& a, char const* b) noexcept { return a.Compare(b) <= 0; }
    friend bool operator<=(char const* a, CString const& b) noexcept { return b.Compare(a) >= 0; }
    friend bool operator>=(CString const& a, CString const& b) noexcept
    {
        return a.Compare(b.GetText()) >= 0;
    }
    friend bool operator>=(CString const& a, char const* b) noexcept { return a.Compare(b) >= 0; }
    friend bool operator>=(char const* a, CString const& b) noexcept { return b.Compare(a) <= 0; }

    /// Both texts, one after the other; a null pointer counts as an empty text.
    friend CString operator+(CString const& a, CString const& b)
    {
        return Concatenate(a.GetText(), a.m_length, b.GetText(), b.m_length);
    }
    friend CString operator+(CString const& a, char const* b)
    {
        return Concatenate(a.GetText(), a.m_length, OrEmpty(b), LengthOf(b));
    }
    friend CString operator+(char const* a, CString const& b)
    {
        return Concatenate(OrEmpty(a), LengthOf(a), b.GetText(), b.m_length);
    }
    friend CString operator+(CString const& a, char b) { return Concatenate(a.GetText(), a.m_length, &b, 1); }
    friend CString operator+(char a, CString const& b) { return Concatenate(&a, 1, b.GetText(), b.m_length); }
    friend CString operator+(CString&& a, CString const& b) { return std::move(a += b); }
    friend CString operator+(CString&& a, char const* b) { return std::move(a += b); }
    friend CString operator+(CString&& a, char b) { return std::move(a += b); }

private:
    /// The head of an allocation; the bytes follow it, `m_capacity` of them and one for a terminator. The
    /// texts that share it all end at the same terminator and differ in where they begin.
    struct Storage
    {
        std::atomic<int> m_owners;
        int m_capacity;
        bool m_lentOut; ///< handed out by GetBuffer, so not to be shared

        char* Bytes() { return reinterpret_cast<char*>(this + 1); }
    };

    /// A text in storage that may be shared.
    struct Stored
    {
        Storage* storage;
        char const* text;
    };

    static constexpr int ownCapacity = 15;

    /// No part of it points to another, so that a text may be moved bitwise.
    union Content {
        char own[ownCapacity + 1] = {};
        Stored stored;
    };

    static char const* OrEmpty(char const* text) noexcept { return text != nullptr ? text : ""; }
    static int LengthOf(char const* text)
    {
        std::size_t const length = text != nullptr ? std::strlen(text) : 0;
        if (length > INT_MAX) {
            AfxThrowMemoryException();
        }
        return static_cast<int>(length);
    }
    static void CheckBytes(void const* text, int length);
    static CString Concatenate(char const* first, int firstLength, char const* second, int secondLength);
    CString Tail(int length) const;
    static Storage* Allocate(int capacity);
    static void Free(Storage* storage) noexcept;

    /// Copies at most ownCapacity bytes, which may overlap: two moves of a fixed size, for less than the
    /// price of a call.
    static void CopyFew(char* target, char const* source, std::size_t count) noexcept
    {
        if (count >= 8) {
            CopyEnds<std::uint64_t>(target, source, count);
        } else if (count >= 4) {
            CopyEnds<std::uint32_t>(target, source, count);
        } else if (count != 0) {
            // One to three bytes, some of them more than once, without asking how many.
            char const front = source[0];
            char const middle = source[count / 2];
            char const back = source[count - 1];
            target[0] = front;
            target[count / 2] = middle;
            target[count - 1] = back;
        }
    }
    template <class Word>
    static void CopyEnds(char* target, char const* source, std::size_t count) noexcept
    {
        Word front;
        Word back;
        std::memcpy(&front, source, sizeof front);
        std::memcpy(&back, source + count - sizeof back, sizeof back);
        std::memcpy(target, &front, sizeof front);
        std::memcpy(target + count - sizeof back, &back, sizeof back);
    }

    char const* GetText() const noexcept { return *this; }

    /// The first value of a new object.
    void Assign(char const* text, int length)
    {
        if (length <= ownCapacity) {
            CopyFew(m_content.own, text, static_cast<std::size_t>(length));
            m_content.own[length] = '\0';
            m_length = length;
        } else {
            Store(text, length);
        }
    }
    void Store(char const* text, int length);

    /// Becomes one more owner of the storage that was just copied from another text.
    void Share()
    {
        if (m_content.stored.storage->m_lentOut) {
            CopyLentOut();
        } else {
            m_content.stored.storage->m_owners.fetch_add(1, std::memory_order_relaxed);
        }
    }
    void Release() noexcept
    {
        if (m_content.stored.storage->m_owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            Free(m_content.stored.storage);
        }
    }
    void CopyLentOut();

    /// Is empty, without letting go of any storage.
    void Forget() noexcept
    {
        m_content.own[0] = '\0';
        m_length = 0;
        m_isStored = false;
    }

    void Swap(CString& other) noexcept
    {
        std::swap(m_content, other.m_content);
        std::swap(m_length, other.m_length);
        std::swap(m_isStored, other.m_isStored);
    }

    /// Whether the bytes may be changed in place.
    bool IsSoleOwner() const noexcept
    {
        return !m_isStored || m_content.stored.storage->m_owners.load(std::memory_order_acquire) == 1;
    }
    /// The bytes from the begin of this text that there is room for, without the terminator.
    int GetRoom() const noexcept
    {
        Stored const& stored = m_content.stored;
        return m_isStored
                   ? stored.storage->m_capacity - static_cast<int>(stored.text - stored.storage->Bytes())
                   : ownCapacity;
    }
    char* Writable() noexcept { return const_cast<char*>(GetText()); }
    void SetLength(int length) noexcept
    {
        m_length = length;
        Writable()[length] = '\0';
    }
    void DropFront(int count) noexcept
    {
        if (count >= m_length) {
            Empty();
        } else if (count > 0) {
            m_length -= count;
            if (m_isStored) {
                m_content.stored.text += count;
            } else {
                CopyFew(m_content.own, m_content.own + count, static_cast<std::size_t>(m_length) + 1);
            }
        }
    }
    void DropInside(int index, int count);
    void MoveToOwnBytes(int capacity);
    void Append(char const* text, int length);

    Content m_content;
    int m_length = 0;
    bool m_isStored = false; ///< which member of the content is in use
};

#endif
