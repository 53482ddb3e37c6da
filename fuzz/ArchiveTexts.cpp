// Fields, blocks, texts, arrays and maps from any bytes, through buffers of any size: they load, or raise
// what is told, in bounded memory; what has loaded goes out and comes back the same.
//
// The first two bytes of the input are the sizes of the buffers, the third says how blocks are moved. Then
// come items, each a byte for its kind and its fields.

#include "fuzz/Require.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

using VorlaneFuzz::Require;

namespace {

using Bytes = std::vector<unsigned char>;

/// Does not give its memory out, as a CMemFile itself does.
struct FileOfItsOwn : CMemFile
{
    using CMemFile::CMemFile;
};

std::unique_ptr<CMemFile> MakeFile(Bytes bytes, bool givesMemory)
{
    if (givesMemory) {
        return std::make_unique<CMemFile>(std::move(bytes));
    }
    return std::make_unique<FileOfItsOwn>(std::move(bytes));
}

/// Moves items from one archive to another.
class Transfer
{
public:
    Transfer(Bytes const& source, Bytes const& header)
        : m_source(source), m_readsInPlace((header[2] & 1) != 0), m_writesInPlace((header[2] & 2) != 0),
          m_sourceFile(MakeFile(source, (header[2] & 4) != 0)),
          m_targetFile(MakeFile({}, (header[2] & 8) != 0)),
          m_loading(m_sourceFile.get(), CArchive::load, header[0]),
          m_storing(m_targetFile.get(), CArchive::store, header[1])
    {}

    /// All items up to the first that does not load; gives what was stored.
    Bytes Run()
    {
        try {
            for (;;) {
                MoveItem();
            }
        } catch (CArchiveException const& exception) {
            Require(exception.m_cause == CArchiveException::endOfFile);
        } catch (CInvalidArgException const&) {
        } catch (CMemoryException const&) {
        }
        m_storing.Close();
        return m_targetFile->Bytes();
    }

private:
    void MoveItem()
    {
        unsigned char kind = 0;
        m_loading >> kind;
        kind = static_cast<unsigned char>(kind % 7);
        switch (kind) {
        case 0:
            MoveFields<CString>(kind);
            break;
        case 1:
            MoveObject<CArray<int, int>>(kind);
            break;
        case 2:
            MoveObject<CArray<bool, bool>>(kind);
            break;
        case 3:
            MoveObject<CStringArray>(kind);
            break;
        case 4:
            MoveObject<CMap<CString, char const*, int, int>>(kind);
            break;
        case 5:
            MoveFields<bool, char, short, unsigned int, long, long long, float, double>(kind);
            break;
        default:
            MoveBlock(kind);
        }
    }

    template <typename... Values>
    void MoveFields(unsigned char kind)
    {
        std::tuple<Values...> fields;
        std::apply([&](auto&... values) { (m_loading >> ... >> values); }, fields);
        m_storing << kind;
        std::apply([&](auto&... values) { (m_storing << ... << values); }, fields);
    }

    template <typename Object>
    void MoveObject(unsigned char kind)
    {
        Object object;
        object.Serialize(m_loading);
        m_storing << kind;
        object.Serialize(m_storing);
    }

    /// A count and as many bytes, or those that there are.
    void MoveBlock(unsigned char kind)
    {
        unsigned int const announced = static_cast<unsigned int>(m_loading.ReadCount()) & 0x3FFF;
        std::ptrdiff_t const start = static_cast<std::ptrdiff_t>(m_source.size() - m_loading.GetRemaining());
        Bytes block(announced);
        unsigned char const* const place = m_readsInPlace ? m_loading.ReadInPlace(announced) : nullptr;
        if (place != nullptr) {
            block.assign(place, place + announced);
        } else {
            block.resize(m_loading.Read(block.data(), announced));
        }
        Require(block.size() == announced || m_loading.GetRemaining() == 0);
        Require(std::equal(block.begin(), block.end(), m_source.begin() + start));

        unsigned int const size = static_cast<unsigned int>(block.size());
        m_storing << kind;
        m_storing.WriteCount(size);
        unsigned char* const room = m_writesInPlace ? m_storing.WriteInPlace(size) : nullptr;
        if (room != nullptr) {
            std::copy(block.begin(), block.end(), room);
        } else {
            m_storing.Write(block.data(), size);
        }
    }

    Bytes const& m_source;
    bool const m_readsInPlace;
    bool const m_writesInPlace;
    std::unique_ptr<CMemFile> const m_sourceFile;
    std::unique_ptr<CMemFile> const m_targetFile;
    CArchive m_loading;
    CArchive m_storing;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size)
{
    constexpr std::size_t headerBytes = 3;
    if (size < headerBytes) {
        return 0;
    }
    Bytes const header(bytes, bytes + headerBytes);
    Bytes const source(bytes + headerBytes, bytes + size);
    Bytes const first = Transfer(source, header).Run();
    Bytes const second = Transfer(first, header).Run();
    Require(second.size() == first.size());
    // Each way turns the order within the buckets of a map round.
    Require(Transfer(second, header).Run() == first);
    return 0;
}
