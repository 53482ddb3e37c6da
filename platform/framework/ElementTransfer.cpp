#include "platform/framework/ElementTransfer.h"

#include "platform/framework/FileExceptions.h"

#include <algorithm>

namespace {

/// Makes every byte of a block 0 or 1 when it goes, however the block was read.
class TruthValues
{
public:
    TruthValues(unsigned char* begin, std::size_t count) : m_begin(begin), m_end(begin + count) {}
    ~TruthValues()
    {
        std::transform(m_begin, m_end, m_begin,
                       [](unsigned char byte) { return static_cast<unsigned char>(byte != 0); });
    }
    TruthValues(TruthValues const&) = delete;
    TruthValues& operator=(TruthValues const&) = delete;

private:
    unsigned char* m_begin;
    unsigned char* m_end;
};

} // namespace

void AfxTransferElements(CArchive& archive, void* elements, std::size_t size, std::ptrdiff_t count,
                         bool areTruthValues)
{
    constexpr std::size_t largestBlock = 2147483647;
    if (size > largestBlock) {
        AfxThrowInvalidArgException("elements of ", size, " bytes");
    }
    unsigned char* bytes = static_cast<unsigned char*>(elements);
    std::size_t missing = static_cast<std::size_t>(count);
    while (missing > 0) {
        std::size_t const inBlock = std::min(missing, largestBlock / size);
        unsigned int const blockSize = static_cast<unsigned int>(inBlock * size);
        if (archive.IsStoring()) {
            archive.Write(bytes, blockSize);
        } else {
            TruthValues const truthValues(bytes, areTruthValues ? blockSize : 0);
            if (archive.Read(bytes, blockSize) < blockSize) {
                AfxThrowArchiveException(CArchiveException::endOfFile);
            }
        }
        bytes += blockSize;
        missing -= inBlock;
    }
}

std::uintptr_t AfxTransferAddress(CArchive& archive, std::uintptr_t address)
{
    if (archive.IsStoring()) {
        if (address > UINT32_MAX) {
            AfxThrowInvalidArgException("an address that needs more than the 4 bytes of an archive");
        }
        archive << static_cast<std::uint32_t>(address);
        return address;
    }
    std::uint32_t loaded = 0;
    archive >> loaded;
    return loaded;
}
