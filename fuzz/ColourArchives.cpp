// Loads a colour array, a spectrum or the parameters of a colour map from bytes, uses it, and stores it
// again.
//
// The first byte of the input chooses the object, the next four are the schema number, and the rest is the
// archive.

#include "fuzz/Require.h"
#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/CustomColorSpectrum.h"
#include "vorlane/colour/NamedColorArrays.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

using VorlaneFuzz::Require;

namespace {

using Bytes = std::vector<unsigned char>;

/// A number above all that layouts depend on, at which every store reads back.
constexpr std::uint32_t newestSchema = 24;

template <typename Serialize>
Bytes Store(Serialize const& serialize)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.m_nObjectSchema = newestSchema;
    serialize(archive);
    archive.Close();
    return file.Bytes();
}

/// Loads from `bytes`; false if an exception that is meant for bad archives was raised.
template <typename Serialize>
bool Load(std::uint32_t schema, Bytes const& bytes, Serialize const& serialize)
{
    CMemFile file(bytes);
    CArchive archive(&file, CArchive::load);
    archive.m_nObjectSchema = schema;
    try {
        serialize(archive);
    } catch (CArchiveException const& exception) {
        Require(exception.m_cause == CArchiveException::endOfFile);
        return false;
    } catch (std::length_error const&) {
        return false;
    } catch (CMemoryException const&) {
        return false; // a name of more bytes than a text can hold
    }
    return true;
}

void TryArray(std::uint32_t schema, Bytes const& bytes)
{
    Orrin::ColorArray array("old", 1, 1);
    Load(schema, bytes, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); });
    Bytes const stored = Store([&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); });
    Orrin::ColorArray again(0, 1);
    Require(Load(newestSchema, stored, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, again); }));
    Require(again.GetName() == array.GetName() && again.GetSize() == array.GetSize());
}

void RequireOneColor(Vorlane::CustomColorSpectrum const& spectrum, Orrin::Color expected)
{
    for (Orrin::Color const& color : spectrum.GetColorArray()) {
        Require(color == expected);
    }
}

void TrySpectrum(std::uint32_t schema, Bytes const& bytes)
{
    Vorlane::CustomColorSpectrum spectrum("old", 5, true);
    spectrum.SetColor(3, Orrin::Color::Red());
    Load(schema, bytes, [&](CArchive& ar) { spectrum.Serialize(ar); });
    Bytes const stored = Store([&](CArchive& ar) { spectrum.Serialize(ar); });
    Vorlane::CustomColorSpectrum again;
    Require(Load(newestSchema, stored, [&](CArchive& ar) { again.Serialize(ar); }));
    Require(again == spectrum && !(again < spectrum));

    int const last = static_cast<int>(spectrum.GetColorArray().GetSize()) - 1;
    if (last > 200) {
        return; // each change computes the whole row anew
    }
    Orrin::Color color;
    for (int const index : {-1, 0, last / 2, last, last + 1}) {
        spectrum.SetColor(index, Orrin::Color::Cyan());
        Require(spectrum.GetColor(index, color) == (index >= 0 && index <= last));
        spectrum.UndefineColor(index);
        Require(!spectrum.GetColor(index, color));
    }
    for (int index = 0; index <= last; ++index) {
        spectrum.UndefineColor(index);
    }
    RequireOneColor(spectrum, Orrin::Color::Black());
    spectrum.SetColor(last, Orrin::Color::Blue());
    RequireOneColor(spectrum, Orrin::Color::Blue());
}

void TryParameters(std::uint32_t schema, Bytes const& bytes)
{
    Vorlane::ColorMapParameters parameters;
    Load(schema, bytes, [&](CArchive& ar) { parameters.Serialize(ar); });
    Bytes const stored = Store([&](CArchive& ar) { parameters.Serialize(ar); });
    Vorlane::ColorMapParameters again;
    Require(Load(newestSchema, stored, [&](CArchive& ar) { again.Serialize(ar); }));
    bool const hasNaN = parameters.GetMinimum() != parameters.GetMinimum() ||
                        parameters.GetMaximum() != parameters.GetMaximum();
    Require((again == parameters) != hasNaN);

    double const infinity = std::numeric_limits<double>::infinity();
    double const middle = parameters.GetMinimum() / 2 + parameters.GetMaximum() / 2;
    double const values[] = {
        parameters.GetMinimum(), parameters.GetMaximum(), middle, 0.0, infinity, -infinity,
        infinity - infinity};
    Orrin::Color colors[sizeof(values) / sizeof(values[0])];
    parameters.CalculateColors(values, static_cast<int>(sizeof(values) / sizeof(values[0])), colors);
    for (std::size_t i = 0; i < sizeof(values) / sizeof(values[0]); ++i) {
        Require(colors[i] == parameters.CalculateColor(values[i]));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size < 5) {
        return 0;
    }
    std::uint32_t schema = 0;
    for (int byte = 0; byte < 4; ++byte) {
        schema |= static_cast<std::uint32_t>(data[1 + byte]) << (8 * byte);
    }
    Bytes const bytes(data + 5, data + size);
    switch (data[0] % 3) {
    case 0:
        TryArray(schema, bytes);
        break;
    case 1:
        TrySpectrum(schema, bytes);
        break;
    default:
        TryParameters(schema, bytes);
        break;
    }
    return 0;
}
