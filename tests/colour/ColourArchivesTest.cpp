// What colours, arrays, spectra and parameters store, and what they are after a load of any bytes.

#include "tests/colour/ColourTesting.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"
#include "tests/support/CaseTable.h"
#include "vorlane/colour/NamedColorArrays.h"

#include "gtest/gtest.h"

#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>

using namespace VorlaneTest;

namespace {

/// An object that can be stored and loaded, and that tells what it is.
struct Subject
{
    std::function<void(CArchive&)> serialize;
    std::function<std::string()> tell;

    int Load(std::string const& bytes, std::uint32_t schema = 24) const
    {
        return LoadBytes(schema, Bytes(bytes.begin(), bytes.end()), serialize);
    }
};

Subject Make(std::string const& kind, std::string const& before)
{
    if (kind == "array") {
        auto const array = std::make_shared<Orrin::ColorArray>("old", static_cast<int>(before.size()), 1);
        return {[=](CArchive& ar) { Vorlane::SerializeColorArray(ar, *array); },
                [=] {
                    return array->GetName() + HexOf(ColorsOf(*array));
                }};
    }
    if (kind == "spectrum") {
        auto const spectrum = std::make_shared<CustomColorSpectrum>(SpectrumOf("old", before, false));
        return {[=](CArchive& ar) { spectrum->Serialize(ar); },
                [=] {
                    Orrin::ColorArray const array = spectrum->GetColorArray();
                    return array.GetName() + ' ' + FlagsOf(*spectrum) +
                           (spectrum->IsEditable() ? " editable" : " fixed") + HexOf(ColorsOf(array));
                }};
    }
    auto const parameters =
        std::make_shared<ColorMapParameters>(ParametersOf("Red-Blue", false, 0, 1, before));
    parameters->CalculateColor(1); // so that a map has to be built anew
    return {[=](CArchive& ar) { parameters->Serialize(ar); },
            [=] {
                std::uint32_t const color = parameters->CalculateColor(1).GetPacked();
                std::ostringstream text;
                text << static_cast<char const*>(parameters->GetSpectrumName()) << ' '
                     << parameters->GetClip() << ' ' << parameters->GetMinimum() << ' '
                     << parameters->GetMaximum() << ' ' << BinsOf(*parameters) << HexOf({color});
                return text.str();
            }};
}

} // namespace

TEST(ColourArchivesTest, LoadsAndStoresAreAsTold)
{
    for (Case const& row : ReadCases("colour/colours.txt", "loads")) {
        SCOPED_TRACE(row.at("where"));
        auto const schema = static_cast<std::uint32_t>(std::stoul(row.at("schema"), nullptr, 0));
        Subject const subject = Make(row.at("object"), row.at("before"));
        EXPECT_EQ(subject.Load(row.at("bytes"), schema), 0);
        EXPECT_EQ(subject.tell(), row.at("told"));
        std::string const& stored = row.at(row.at("stored") == "=" ? "bytes" : "stored");
        EXPECT_EQ(StoredBytes(schema, subject.serialize), Bytes(stored.begin(), stored.end()));
    }
}

TEST(ColourArchivesTest, CutArchivesLeaveWhatWasRead)
{
    std::map<std::string, std::string> whole;
    for (Case const& row : ReadCases("colour/colours.txt", "loads")) {
        if (row.at("schema") == "24") {
            whole.emplace(row.at("object"), row.at("bytes"));
        }
    }
    std::vector<Case> const cuts = ReadCases("colour/colours.txt", "cuts");
    for (auto const& [object, bytes] : whole) {
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            Case told; // the last row that begins before the cut
            for (Case const& row : cuts) {
                told = row.at("object") == object && std::stoul(row.at("from")) <= length ? row : told;
            }
            Subject const subject = Make(object, told.at("before"));
            EXPECT_EQ(subject.Load(bytes.substr(0, length)), 3);
            EXPECT_EQ(subject.tell(), told.at("told")) << told.at("where") << " cut to " << length;
        }
    }
}

TEST(ColourArchivesTest, CountsBeyondTheArchiveTakeLittleMemory)
{
    Subject const subject = Make("array", "---");
    EXPECT_THROW(subject.Load(std::string("\xFF\xFF\0\0\0\x80", 6)), std::length_error);
    EXPECT_THROW(subject.Load("\xFF\xFF\xFF\xFF\xFF\xFF"), std::length_error);
    EXPECT_EQ(subject.tell(), "old FF000000 FF000000 FF000000");
    EXPECT_EQ(subject.Load("\xFF\xFF\xFF\xFF\xFF\x7F\1\2\3\4"), 3);
    EXPECT_LE(subject.tell().size(), 3 + (std::size_t{9} << 20)); // a million colours
    EXPECT_EQ(subject.tell().substr(0, 13), "old 04030201 ");
    AllocationLimit const limit(1 << 20);
    Subject const parameters = Make("parameters", "---");
    EXPECT_EQ(parameters.Load(std::string("\0\1", 2) + std::string(16, '\0') + "\xFF\xFF\xFF\x7F\1"), 3);
    EXPECT_EQ(parameters.tell(), " 1 0 0 x FF000000");
}

TEST(ColourArchivesTest, OperatorsOfColoursFollowTheModeOfTheArchive)
{
    using Vorlane::operator<<;
    using Vorlane::operator>>;
    Color first, second;
    Bytes const bytes = {0x10, 0x20, 0x30, 0, 0, 0, 0, 1};
    EXPECT_EQ(LoadBytes(21, bytes, [&](CArchive& ar) { ar << first >> second; }), 0);
    EXPECT_EQ(first.GetPacked(), 0xFF302010u);
    EXPECT_EQ(second.GetPacked(), 0x01000000u);
    first = 0x00302010u;
    EXPECT_EQ(StoredBytes(21, [&](CArchive& ar) { ar >> first << second; }), bytes);
}
