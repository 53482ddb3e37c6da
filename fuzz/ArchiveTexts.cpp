// Texts, counts, arrays and maps from any bytes, through a buffer of any size: they load, or raise what is
// told, in bounded memory; what has loaded goes out and comes back the same.

#include "fuzz/Require.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <cstddef>
#include <cstdint>
#include <vector>

using VorlaneFuzz::Require;

namespace {

/// Loads one thing after the other, as the input says; stores each again and loads that.
void LoadAll(std::vector<unsigned char> bytes, int bufferSize)
{
    CMemFile file(std::move(bytes));
    CArchive archive(&file, CArchive::load, bufferSize);
    for (;;) {
        unsigned char kind = 0;
        archive >> kind;
        CString text;
        CArray<int, int> ints;
        CArray<bool, bool> truths;
        CStringArray texts;
        CMap<CString, char const*, int, int> map;
        CMemFile copy;
        CArchive storing(&copy, CArchive::store, bufferSize);
        switch (kind % 5) {
        case 0:
            archive >> text;
            storing << text;
            break;
        case 1:
            ints.Serialize(archive);
            ints.Serialize(storing);
            break;
        case 2:
            truths.Serialize(archive);
            truths.Serialize(storing);
            break;
        case 3:
            texts.Serialize(archive);
            texts.Serialize(storing);
            break;
        default:
            map.Serialize(archive);
            map.Serialize(storing);
        }
        storing.Close();
        copy.SeekToBegin();
        CArchive again(&copy, CArchive::load, bufferSize);
        if (kind % 5 == 0) {
            CString loaded;
            again >> loaded;
            Require(loaded.GetLength() == text.GetLength() && loaded == text && again.GetRemaining() == 0);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    try {
        LoadAll(std::vector<unsigned char>(bytes + 1, bytes + size), bytes[0]);
    } catch (CArchiveException const& exception) {
        Require(exception.m_cause == CArchiveException::endOfFile);
    } catch (CInvalidArgException const&) {
    } catch (CMemoryException const&) {
    }
    return 0;
}
