#ifndef VORLANE_PLATFORM_FRAMEWORK_LITTLEENDIAN_H
#define VORLANE_PLATFORM_FRAMEWORK_LITTLEENDIAN_H

/// \file
/// Unsigned numbers as the bytes of an archive, the lowest first. The byte order of the machine doesn't
/// matter; where it is the archive's, compilers make one move of it.

#include <cstddef>
#include <cstring>
#include <utility>

/// Puts the bytes of AfxPutLittleEndian; the sequence numbers them.
template <typename Word, std::size_t... index>
void AfxPutBytes(unsigned char* bytes, Word word, std::index_sequence<index...>)
{
    // All at once, since bytes that go one by one may alias whatever is loaded between them.
    unsigned char const ordered[] = {static_cast<unsigned char>(word >> (8 * index))...};
    std::memcpy(bytes, ordered, sizeof(ordered));
}

/// Gets the bytes of AfxGetLittleEndian; the sequence numbers them.
template <typename Word, std::size_t... index>
Word AfxGetBytes(unsigned char const* bytes, std::index_sequence<index...>)
{
    return static_cast<Word>((... | (static_cast<Word>(bytes[index]) << (8 * index))));
}

/// Writes the sizeof(Word) bytes of a number.
template <typename Word>
void AfxPutLittleEndian(unsigned char* bytes, Word word)
{
    AfxPutBytes(bytes, word, std::make_index_sequence<sizeof(Word)>());
}

/// Gives the number that AfxPutLittleEndian wrote.
template <typename Word>
Word AfxGetLittleEndian(unsigned char const* bytes)
{
    return AfxGetBytes<Word>(bytes, std::make_index_sequence<sizeof(Word)>());
}

#endif
