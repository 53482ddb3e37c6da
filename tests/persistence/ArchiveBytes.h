#ifndef VORLANE_TESTS_PERSISTENCE_ARCHIVEBYTES_H
#define VORLANE_TESTS_PERSISTENCE_ARCHIVEBYTES_H

/// \file
/// Bytes written as text, and objects of any kind stored to bytes and loaded from them.

#include "tests/persistence/FilledPrimitives.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace VorlaneTest {

using Bytes = std::vector<unsigned char>;

/// Reads hexadecimal bytes; blanks may stand between them, and "00*8" is a byte eight times.
inline Bytes FromHex(std::string const& text)
{
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        std::size_t const star = word.find('*');
        std::size_t const repeats = star == std::string::npos ? 1 : std::stoul(word.substr(star + 1));
        if (repeats > 1000) {
            throw std::invalid_argument("too many bytes in \"" + word + "\"; is a blank missing?");
        }
        for (std::size_t repeat = 0; repeat < repeats; ++repeat) {
            for (std::size_t i = 0; i < std::min(star, word.size()); i += 2) {
                bytes.push_back(static_cast<unsigned char>(std::stoul(word.substr(i, 2), nullptr, 16)));
            }
        }
    }
    return bytes;
}

inline std::string ToHex(Bytes const& bytes)
{
    std::string text;
    for (unsigned char byte : bytes) {
        text += "0123456789ABCDEF"[byte / 16];
        text += "0123456789ABCDEF"[byte % 16];
    }
    return text;
}

using Vorlane::Serialize;

/// Points and matrices, whose operators follow the mode of the archive.
template <typename Value>
auto Serialize(CArchive& ar, Value& value) -> decltype(Vorlane::operator>>(ar, value))
{
    return Vorlane::operator>>(ar, value);
}

/// Bytes in memory that pass for the file "named".
struct NamedFile : CMemFile
{
    using CMemFile::CMemFile;
    CString GetFilePath() const override { return "named"; }
};

/// An object of some kind that can be stored and loaded.
class Subject
{
public:
    virtual ~Subject() = default;
    virtual void Fill() = 0;
    virtual void Transfer(CArchive& ar) = 0;

    Bytes Store(std::uint32_t schema, int bufferSize = 0)
    {
        CMemFile file;
        CArchive ar(&file, CArchive::store, bufferSize);
        ar.m_nObjectSchema = schema;
        Transfer(ar);
        ar.Close();
        return file.Bytes();
    }

    /// Loads from the beginning of `bytes` and gives the number of bytes that were left.
    std::uint64_t Load(Bytes const& bytes, std::uint32_t schema, int bufferSize = 0)
    {
        NamedFile file(bytes);
        CArchive ar(&file, CArchive::load, bufferSize);
        ar.m_nObjectSchema = schema;
        Transfer(ar);
        return ar.GetRemaining();
    }
};

template <typename T>
class SubjectOf : public Subject
{
public:
    void Fill() override { VorlaneTest::Fill(object); }
    void Transfer(CArchive& ar) override { Serialize(ar, object); }

    T object;
};

using MakeSubject = std::unique_ptr<Subject> (*)();

template <typename T>
std::unique_ptr<Subject> Make()
{
    return std::make_unique<SubjectOf<T>>();
}

} // namespace VorlaneTest

#endif
