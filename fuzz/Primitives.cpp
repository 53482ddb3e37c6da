// Loads any object of a scene from bytes, stores it and loads it again, until it stores to the same bytes.
// What is stored is compared with the members of the object.
//
// The first byte of the input chooses the object, the next four are the schema number, and the rest is the
// archive.

#include "fuzz/ArchivedObjects.h"
#include "fuzz/Require.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

using namespace VorlaneFuzz;

namespace {

using Bytes = std::vector<unsigned char>;

/// A number at which every store reads back.
constexpr std::uint32_t newestSchema = 24;

/// Small, so that buffers end within fields.
constexpr int bufferSize = 64;

template <typename T>
Bytes Stored(T& object)
{
    CMemFile file;
    CArchive ar(&file, CArchive::store, bufferSize);
    ar.m_nObjectSchema = newestSchema;
    Serialize(ar, object);
    ar.Close();
    std::string const held = HeldBytes(object).bytes;
    Require(file.Bytes() == Bytes(held.begin(), held.end()));
    return file.Bytes();
}

template <typename T>
void Load(T& object, Bytes const& bytes, std::uint32_t schema)
{
    CMemFile file(bytes);
    CArchive ar(&file, CArchive::load, bufferSize);
    ar.m_nObjectSchema = schema;
    Serialize(ar, object);
}

/// Loads what is stored, and gives what the loaded object stores.
template <typename T>
Bytes Again(Bytes const& stored)
{
    T object;
    Load(object, stored, newestSchema);
    return Stored(object);
}

template <typename T>
void Try(Bytes const& bytes, std::uint32_t schema)
{
    T object;
    try {
        Load(object, bytes, schema);
    } catch (CArchiveException const& exception) {
        Require(exception.m_cause == CArchiveException::endOfFile);
        return;
    } catch (std::length_error const&) {
        return;
    } catch (CMemoryException const&) {
        return;
    }
    // Doubles of an older archive become floats in the first round, and faces are computed from them in the
    // next.
    Bytes const second = Again<T>(Stored(object));
    Require(Again<T>(second) == second);
}

using TryFunction = void (*)(Bytes const&, std::uint32_t);

std::vector<TryFunction> MakeTries()
{
    std::vector<TryFunction> tries;
    ForEachKind([&](char const*, auto kind) { tries.push_back(Try<typename decltype(kind)::Type>); });
    return tries;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    constexpr std::size_t headerBytes = 5;
    if (size < headerBytes) {
        return 0;
    }
    std::uint32_t schema = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        schema |= static_cast<std::uint32_t>(data[1 + i]) << (8 * i);
    }
    static std::vector<TryFunction> const tries = MakeTries();
    tries[data[0] % tries.size()](Bytes(data + headerBytes, data + size), schema);
    return 0;
}
