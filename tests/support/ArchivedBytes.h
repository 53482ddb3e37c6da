#ifndef VORLANE_TESTS_SUPPORT_ARCHIVEDBYTES_H
#define VORLANE_TESTS_SUPPORT_ARCHIVEDBYTES_H

/// \file
/// Objects stored to bytes and loaded from bytes that a test writes out.

#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace VorlaneTest {

using Bytes = std::vector<unsigned char>;

constexpr std::uint32_t unsetSchema = 0xFFFFFFFFu;

/// What `store(archive)` stores at a schema number.
template <typename Store>
Bytes StoredBytes(std::uint32_t schema, Store const& store)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.m_nObjectSchema = schema;
    store(archive);
    archive.Close();
    return file.Bytes();
}

/// The cause of the CFileException or CArchiveException that `operation` raises, which names `fileName`; 0
/// for none.
template <typename Exception, typename Operation>
int CauseOf(Operation const& operation, std::string const& fileName = "")
{
    try {
        operation();
    } catch (Exception const& exception) {
        EXPECT_EQ(exception.m_strFileName, fileName.c_str());
        EXPECT_TRUE(fileName.empty() ||
                    std::string(exception.what()).find('"' + fileName + '"') != std::string::npos)
            << exception.what();
        return exception.m_cause;
    }
    return 0;
}

/// Runs `load(archive)` on `bytes` at a schema number and gives the cause of the CArchiveException that it
/// raised, or 0. A load that goes through has to take all the bytes.
template <typename Load>
int LoadBytes(std::uint32_t schema, Bytes bytes, Load const& load)
{
    CMemFile file(std::move(bytes));
    CArchive archive(&file, CArchive::load);
    archive.m_nObjectSchema = schema;
    return CauseOf<CArchiveException>([&] {
        load(archive);
        EXPECT_EQ(archive.GetRemaining(), 0u) << "bytes are left";
    });
}

/// One run of bytes out of several.
inline Bytes Joined(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (Bytes const& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

} // namespace VorlaneTest

#endif
