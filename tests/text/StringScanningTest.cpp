#include "vorlane/text/StringUtils.h"

#include "fuzz/ScannerChecks.h"
#include "tests/support/AllocationFailure.h"
#include "tests/text/TextTesting.h"

#include <locale>
#include <regex>

using namespace VorlaneTest;
using Vorlane::StringUtils;

namespace {

/// "item|rest" for a scanner that takes the item off a text.
template <typename Parse>
auto Parsing(Parse parse)
{
    return [parse](std::string const& input) {
        CString text = ToText(input);
        CString const copy(text);
        std::string const item = Print(parse(text));
        EXPECT_EQ(Print(copy), input) << "another text has changed";
        return item + '|' + Print(text);
    };
}

template <typename Peek>
auto Peeking(Peek peek)
{
    return [peek](std::string const& input) {
        return Print(peek(ToText(input)));
    };
}

/// "item|rest" for a stream; the rest of one that is no longer good is "end" or "end+fail".
template <typename Extract>
auto Extracting(Extract extract)
{
    return [extract](std::string const& input) {
        std::istringstream stream(input);
        stream.setstate(std::ios::failbit);
        EXPECT_EQ(Print(extract(stream)), "") << "of a stream that is not good";
        stream.clear();
        std::string const item = Print(extract(stream));
        std::string rest = stream.eof() ? "end" : "";
        rest += stream.fail() ? "+fail" : "";
        if (rest.empty()) {
            rest.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
        }
        return item + '|' + rest;
    };
}

TextFunctions const scanners = {
    {"Parse()", Parsing([](auto& text) { return StringUtils::Parse(text); })},
    {"Parse(',')", Parsing([](auto& text) { return StringUtils::Parse(text, ','); })},
    {"Parse('\\0')", Parsing([](auto& text) { return StringUtils::Parse(text, '\0'); })},
    {"ParseQuotedString()", Parsing(StringUtils::ParseQuotedString)},
    {"ParseRealNumber(',')", Parsing([](auto& text) { return StringUtils::ParseRealNumber(text, ","); })},
    {"ParsePoint(',')", Parsing([](auto& text) { return StringUtils::ParsePoint(text, ","); })},
    {"Peek()", Peeking([](auto const& text) { return StringUtils::Peek(text); })},
    {"Peek(',')", Peeking([](auto const& text) { return StringUtils::Peek(text, ','); })},
    {"Peek('\\0')", Peeking([](auto const& text) { return StringUtils::Peek(text, '\0'); })},
    {"PeekQuotedString()", Peeking(StringUtils::PeekQuotedString)},
    {"PeekRealNumber(',')", Peeking([](auto const& text) { return StringUtils::PeekRealNumber(text, ","); })},
    {"CheckNext",
     Peeking([](auto const& text) { return StringUtils::CheckNextCharacter(text[0], text.Mid(1)); })},
    {"CheckQuoted",
     Peeking([](auto const& text) { return StringUtils::CheckQuotedString(text.Mid(1), text[0]); })},
    {"ExtractString()", Extracting([](auto& stream) { return StringUtils::ExtractString(stream); })},
    {"ExtractString(',')", Extracting([](auto& stream) { return StringUtils::ExtractString(stream, ','); })},
    {"ExtractString(\",;\")",
     Extracting([](auto& stream) { return StringUtils::ExtractString(stream, ",;"); })},
    // A null or empty set of delimiters is a blank.
    {"ExtractString(\" \")",
     Extracting([](auto& stream) { return StringUtils::ExtractString(stream, nullptr); })},
    {"ExtractString(\" \")", Extracting([](auto& stream) { return StringUtils::ExtractString(stream, ""); })},
    {"ExtractLine()", Extracting(StringUtils::ExtractLine)}};

/// The cells of a line of the documented table; their blanks are drawn as middle dots, the empty text as a
/// dash.
Texts CellsOf(std::string const& line)
{
    std::istringstream words(line);
    Texts cells;
    for (std::string cell; words >> cell;) {
        cells.push_back(cell == "-" ? "" : std::regex_replace(cell, std::regex("\u00b7"), " "));
    }
    return cells;
}

} // namespace

TEST(StringScanningTest, EveryScannerDoesWhatTheTablesShow)
{
    CheckTables("text/scanners.txt", scanners);
    std::ifstream page(VORLANE_SOURCE_DIR "/docs/behaviour.md");
    Texts header;
    int cells = 0;
    for (std::string line; std::getline(page, line);) {
        Texts const row = CellsOf(line);
        if (line == "```" || line.rfind("input ", 0) == 0) {
            header = row;
        }
        for (std::size_t column = 1; column < header.size() && row != header; ++column, ++cells) {
            EXPECT_EQ(scanners.find(header[column])->second(row.at(0)), row.at(column))
                << header[column] << " of " << row[0];
        }
    }
    EXPECT_GE(cells, 100);
}

TEST(StringScanningTest, SetsOfDelimiters)
{
    for (Case const& row : ReadCases("text/scanners.txt", "sets of delimiters")) {
        SCOPED_TRACE(row.at("where"));
        std::string const& set = row.at("delimiters");
        char const* const delimiters = set == "null" ? nullptr : set.c_str();
        CString text = ToText(row.at("text"));
        EXPECT_EQ(Print(StringUtils::Peek(text, delimiters)), row.at("peeked"));
        EXPECT_EQ(Print(StringUtils::Parse(text, delimiters)), row.at("parsed"));
        EXPECT_EQ(Print(text), row.at("left"));
    }
}

TEST(StringScanningTest, ALongTextIsEatenInLinearTime)
{
    int const count = 300000; // with a copy of the rest at each step this would move 10^12 bytes
    std::string record;
    for (int i = 0; i < count; ++i) {
        record += "'a', 1,2,3,;";
    }
    CString text = ToText(record);
    CString words(text);
    for (int i = 0; i < count; ++i) {
        ASSERT_STREQ(StringUtils::ParseQuotedString(text), "a");
        ASSERT_STREQ(StringUtils::Parse(text, ','), "");
        ASSERT_EQ(StringUtils::ParsePoint(text, ',').z, 3);
        ASSERT_STREQ(StringUtils::Parse(text, ",;"), "");
        ASSERT_STREQ(StringUtils::Parse(words), i == 0 ? "'a'," : "1,2,3,;'a',");
    }
    EXPECT_EQ(Print(text) + Print(words), "1,2,3,;");
}

TEST(StringScanningTest, StreamsDeliverItemsOfEveryLengthWhole)
{
    for (std::size_t length : {1u, 8191u, 8192u, 8193u, 16384u, 1000000u}) {
        std::string word(length, '\xFF');
        word[length / 2] = '\0';
        std::string text = " \n" + word;
        for (int words = 1; words <= 3;
             ++words, text += "\n\t" + word) { // each of the forms comes to the end
            for (std::size_t step : {0u, 1u, 7u, 8192u, 10000000u}) {
                EXPECT_NO_THROW(VorlaneFuzz::CheckStream(text, "\n;", step))
                    << words << " words of " << length << " characters in pieces of " << step;
            }
        }
    }
}

TEST(StringScanningTest, TheLocaleOfAStreamChangesNothing)
{
    // A character classification for which x is white space and a blank is not.
    std::ctype_base::mask masks[std::ctype<char>::table_size];
    std::copy_n(std::ctype<char>::classic_table(), std::ctype<char>::table_size, masks);
    std::swap(masks[int{'x'}], masks[int{' '}]);
    std::istringstream stream("  xax b x");
    stream.imbue(std::locale(std::locale::classic(), new std::ctype<char>(masks)));
    EXPECT_STREQ(StringUtils::ExtractString(stream), "xax");
    EXPECT_STREQ(StringUtils::ExtractString(stream, "x"), "b ");
    EXPECT_STREQ(StringUtils::ExtractLine(stream), "x");
}

TEST(StringScanningTest, StreamsThrowAsTheyWereTold)
{
    std::istringstream stream("abc");
    stream.exceptions(std::ios::failbit);
    EXPECT_THROW(StringUtils::ExtractString(stream), std::ios::failure);
    std::istream none(nullptr);
    EXPECT_STREQ(StringUtils::ExtractLine(none), "");
    EXPECT_TRUE(none.bad());
}

TEST(StringScanningTest, ATextIsKeptWhenMemoryRunsOut)
{
    std::string const record = "  a field that needs storage, and a rest that needs storage too";
    CString text;
    EXPECT_EQ(ForEachFailedAllocation([&] { text = ToText(record); }, [&] { StringUtils::Parse(text, ','); },
                                      [&] { EXPECT_EQ(Print(text), record); }),
              1);
    std::istringstream stream;
    auto const refill = [&] {
        stream.str(std::string(100, 'a'));
        stream.clear();
    };
    EXPECT_GT(ForEachFailedAllocation(
                  refill, [&] { StringUtils::ExtractString(stream); }, [] {}),
              1);
}
