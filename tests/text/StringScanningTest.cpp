#include "vorlane/text/StringUtils.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/PiecewiseBuffer.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <locale>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using Spatia::Point3d;
using Vorlane::StringUtils;
using VorlaneTest::PiecewiseBuffer;

namespace {

std::string Bytes(CString const& text)
{
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

CString Text(std::string const& bytes)
{
    return CString(bytes.data(), static_cast<int>(bytes.size()));
}

using Scanner = std::function<std::string(std::string const&)>;

/// Each scanner gives "item|rest"; a Peek gives the item alone.
template <typename Parse>
Scanner Parsing(Parse parse)
{
    return [parse](std::string const& input) {
        CString text = Text(input);
        std::string const item = Bytes(parse(text));
        return item + '|' + Bytes(text);
    };
}

template <typename Peek>
Scanner Peeking(Peek peek)
{
    return [peek](std::string const& input) {
        return Bytes(peek(Text(input)));
    };
}

/// The rest of a stream that is no longer good is "end" or "end+fail".
template <typename Extract>
Scanner Extracting(Extract extract)
{
    return [extract](std::string const& input) {
        std::istringstream stream(input);
        std::string const item = Bytes(extract(stream));
        std::string rest = stream.eof() ? "end" : "";
        rest += stream.fail() ? "+fail" : "";
        if (rest.empty()) {
            rest.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
        }
        return item + '|' + rest;
    };
}

std::map<std::string, Scanner> const& DocumentedScanners()
{
    static std::map<std::string, Scanner> const scanners = {
        {"Parse()", Parsing([](auto& text) { return StringUtils::Parse(text); })},
        {"Parse(',')", Parsing([](auto& text) { return StringUtils::Parse(text, ','); })},
        {"ParseQuotedString()", Parsing(StringUtils::ParseQuotedString)},
        {"Peek()", Peeking([](auto const& text) { return StringUtils::Peek(text); })},
        {"Peek(',')", Peeking([](auto const& text) { return StringUtils::Peek(text, ','); })},
        {"PeekQuotedString()", Peeking(StringUtils::PeekQuotedString)},
        {"ExtractString()", Extracting([](auto& stream) { return StringUtils::ExtractString(stream); })},
        {"ExtractString(',')",
         Extracting([](auto& stream) { return StringUtils::ExtractString(stream, ','); })},
        {"ExtractString(\",;\")",
         Extracting([](auto& stream) { return StringUtils::ExtractString(stream, ",;"); })}};
    return scanners;
}

/// A cell of the documented table as bytes: its blanks are drawn as middle dots, the empty text as a dash.
std::string FromCell(std::string cell)
{
    std::string const dot = "\xC2\xB7";
    for (std::size_t at = cell.find(dot); at != std::string::npos; at = cell.find(dot, at)) {
        cell.replace(at, dot.size(), " ");
    }
    return cell == "-" ? "" : cell;
}

std::vector<std::string> Cells(std::string const& line)
{
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()};
}

} // namespace

TEST(StringScanningTest, EveryScannerDoesWhatTheDocumentedTableShows)
{
    std::ifstream page(VORLANE_SOURCE_DIR "/docs/behaviour.md");
    std::vector<std::string> header;
    int cells = 0;
    for (std::string line; std::getline(page, line);) {
        std::vector<std::string> const row = Cells(line);
        if (!row.empty() && row[0] == "input") {
            header = row;
        } else if (line == "```") {
            header.clear();
        } else if (!header.empty()) {
            ASSERT_EQ(row.size(), header.size()) << line;
            for (std::size_t column = 1; column < row.size(); ++column, ++cells) {
                Scanner const& scanner = DocumentedScanners().at(header[column]);
                EXPECT_EQ(scanner(FromCell(row[0])), FromCell(row[column]))
                    << header[column] << " of " << row[0];
            }
        }
    }
    EXPECT_GE(cells, 100);
}

TEST(StringScanningTest, SetsOfDelimiters)
{
    using namespace std::string_literals;
    struct
    {
        std::string text;
        char const* delimiters;
        std::string parsed;
        std::string left;
        std::string peeked;
    } const rows[] = {{"a;b,c", ",;", "a", "b,c", "a"},
                      {";,;a b", ";,", "", ",;a b", "a b"},
                      {" a b", " ", "a", "b", "a"},
                      {"\ta\nb", "\n\t", "a", "b", "a"},
                      {"a,b ", "", "a,b ", "", "a,b "},
                      {" a,b", nullptr, "a,b", "", " a,b"},
                      {",;", ",;", "", ";", ""},
                      {"\xE9\xFF\x80,", "\x80,", "\xE9\xFF", ",", "\xE9\xFF"},
                      {"\xFF\xFF", "\xFF", "", "\xFF", ""},
                      {"\xA0\x85 a", ",;", "\xA0\x85 a", "", "\xA0\x85 a"},
                      {"a\0b,\0 c"s, ",;", "a\0b"s, "\0 c"s, "a\0b"s}};
    for (auto const& row : rows) {
        CString text = Text(row.text);
        EXPECT_EQ(Bytes(StringUtils::Peek(text, row.delimiters)), row.peeked) << row.text;
        EXPECT_EQ(Bytes(StringUtils::Parse(text, row.delimiters)), row.parsed) << row.text;
        EXPECT_EQ(Bytes(text), row.left) << row.text;
    }
    // A zero byte is no white space, and a delimiter only if it is given as one.
    CString text = Text("a\0b,\0 c"s);
    EXPECT_EQ(Bytes(StringUtils::Peek(text)), "a\0b,\0"s);
    EXPECT_EQ(Bytes(StringUtils::Peek(text, '\0')), "a");
    EXPECT_EQ(Bytes(StringUtils::Parse(text, '\0')), "a");
    EXPECT_EQ(Bytes(StringUtils::Parse(text)), "b,\0"s);
    EXPECT_EQ(Bytes(text), "c");
}

TEST(StringScanningTest, NumbersTakeTheLongestFront)
{
    double const infinity = std::numeric_limits<double>::infinity();
    struct
    {
        char const* text;
        double parsed;
        char const* left;
        double peeked;
    } const rows[] = {{"12abc,3", 12, "3", 12},
                      {"abc,3", 0, "3", 0},
                      {",4,5", 0, "4,5", 4},
                      {"", 0, "", 0},
                      {"\t,,7", 0, ",7", 0},
                      {"  -1.5e1 ,2", -15, "2", -15},
                      {"-1e999", -infinity, "", -infinity},
                      {"1e-999", 0, "", 0},
                      {"1e999,1", infinity, "1", infinity},
                      {"0x1p3z,", 8, "", 8},
                      {"1.5.5", 1.5, "", 1.5},
                      {"4.9e-324x", 4.9e-324, "", 4.9e-324}};
    auto const check = [&](auto comma) {
        for (auto const& row : rows) {
            CString text(row.text);
            EXPECT_EQ(StringUtils::PeekRealNumber(text, comma), row.peeked) << row.text;
            EXPECT_EQ(StringUtils::ParseRealNumber(text, comma), row.parsed) << row.text;
            EXPECT_STREQ(text, row.left) << row.text;
        }
    };
    check(",");
    check(',');
    CString digits("15e3");
    EXPECT_EQ(StringUtils::ParseRealNumber(digits, '5'), 1);
    EXPECT_EQ(StringUtils::PeekRealNumber(digits, "e"), 3);
}

TEST(StringScanningTest, PointsTakeThreeFieldsWhateverTheyHold)
{
    struct
    {
        std::string text;
        Point3d point;
        char const* left;
    } const rows[] = {{"1,2,3,4", {1, 2, 3}, "4"},
                      {"1,x,3,4", {0, 0, 0}, "4"},
                      {"1,2", {0, 0, 0}, ""},
                      {"1 ,2,3", {0, 0, 0}, ""},
                      {" 1, 2,\n3", {1, 2, 3}, ""},
                      {"1,,3,4", {0, 0, 0}, "4"},
                      {",1,2,3", {0, 0, 0}, "3"},
                      {"1,2,3,", {1, 2, 3}, ""},
                      {"1,2,1e999,4", {0, 0, 0}, "4"},
                      {"", {0, 0, 0}, ""},
                      {"1,2,3 ,4", {0, 0, 0}, "4"},
                      // A number ends at a zero byte.
                      {std::string("1\0x,2\0,3", 8), {1, 2, 3}, ""}};
    auto const check = [&](auto comma) {
        for (auto const& row : rows) {
            CString text = Text(row.text);
            EXPECT_EQ(StringUtils::PeekPoint(text, comma).Distance2(row.point), 0) << row.text;
            EXPECT_EQ(Bytes(text), row.text);
            EXPECT_EQ(StringUtils::ParsePoint(text, comma).Distance2(row.point), 0) << row.text;
            EXPECT_STREQ(text, row.left) << row.text;
        }
    };
    check(",");
    check(',');
}

TEST(StringScanningTest, ChecksOfCharacters)
{
    EXPECT_TRUE(StringUtils::CheckNextCharacter('a', " \t\n\v\f\ra"));
    EXPECT_FALSE(StringUtils::CheckNextCharacter('b', "ab"));
    EXPECT_FALSE(StringUtils::CheckNextCharacter(' ', "  "));
    EXPECT_FALSE(StringUtils::CheckNextCharacter('\0', ""));
    EXPECT_TRUE(StringUtils::CheckNextCharacter('\xFF', "\xFF"));
    EXPECT_TRUE(StringUtils::CheckQuotedString("\"\"", '"'));
    EXPECT_TRUE(StringUtils::CheckQuotedString("xabx", 'x'));
    for (char const* text : {"", "'", " 'a'", "'a' ", "'a\"", "a'"}) {
        EXPECT_FALSE(StringUtils::CheckQuotedString(text, '\'')) << text;
    }
}

TEST(StringScanningTest, ArgumentsMayBeTheTextItself)
{
    CString text("ab cd ef");
    text = StringUtils::Parse(text);
    EXPECT_STREQ(text, "ab");
    text = ";,a";
    EXPECT_STREQ(StringUtils::Parse(text, text), "");
    EXPECT_STREQ(text, ",a");
    text = "'b'";
    CString const copy(text);
    text = StringUtils::ParseQuotedString(text);
    EXPECT_STREQ(text, "b");
    EXPECT_STREQ(copy, "'b'");
}

TEST(StringScanningTest, ALongTextIsEatenInLinearTime)
{
    int const count = 300000; // with a copy of the rest at each step this would move 10^12 bytes
    std::string record;
    for (int i = 0; i < count; ++i) {
        record += "'a', 1,2,3,;";
    }
    CString text = Text(record);
    int items = 0;
    for (; !text.IsEmpty(); ++items) {
        ASSERT_STREQ(StringUtils::ParseQuotedString(text), "a");
        ASSERT_STREQ(StringUtils::Parse(text, ','), "");
        ASSERT_EQ(StringUtils::ParsePoint(text, ',').z, 3);
        ASSERT_STREQ(StringUtils::Parse(text, ",;"), "");
    }
    EXPECT_EQ(items, count);
    text = Text(record);
    for (items = 0; !text.IsEmpty(); ++items) {
        StringUtils::Parse(text);
    }
    EXPECT_EQ(items, count + 1);
}

TEST(StringScanningTest, StreamsDeliverItemsOfEveryLengthWhole)
{
    for (std::size_t length : {1u, 8191u, 8192u, 8193u, 16384u, 1000000u}) {
        for (std::size_t step : {0u, 1u, 7u, 8192u, 10000000u}) {
            SCOPED_TRACE(std::to_string(length) + " characters in pieces of " + std::to_string(step));
            std::string word(length, '\xFF');
            word[length / 2] = '\0';
            std::string const bytes = " \n" + word + "\n\t" + word;
            for (char const* form : {"word", "line", "field"}) {
                PiecewiseBuffer buffer(bytes, step);
                std::istream stream(&buffer);
                auto const extract = [&] {
                    return Bytes(*form == 'w'   ? StringUtils::ExtractString(stream)
                                 : *form == 'l' ? StringUtils::ExtractLine(stream)
                                                : StringUtils::ExtractString(stream, "\n;"));
                };
                ASSERT_TRUE(extract() == word) << form;
                EXPECT_TRUE(stream.good()) << form;
                EXPECT_EQ(stream.peek(), *form == 'f' ? '\n' : '\t') << form;
                ASSERT_TRUE(extract() == word) << form;
                EXPECT_TRUE(stream.eof()) << form;
                EXPECT_EQ(stream.fail(), *form != 'l') << form;
                EXPECT_EQ(extract(), "") << form;
                EXPECT_TRUE(stream.fail()) << form;
            }
        }
    }
}

TEST(StringScanningTest, StreamsLeaveTheirBitsAsTheItemsEnd)
{
    auto const line = Extracting(StringUtils::ExtractLine);
    EXPECT_EQ(line("\n \r\n  text \r\n\n\nlast "), "text \r|\n\nlast ");
    EXPECT_EQ(line("\n\nlast "), "last |end");
    EXPECT_EQ(line(" \n "), "|end");
    auto const field = Extracting([](auto& stream) { return StringUtils::ExtractString(stream, ','); });
    EXPECT_EQ(field(",,a,"), "|,a,");
    EXPECT_EQ(field("a,"), "a|");
    // A null or empty set of delimiters is a blank.
    for (char const* set : {static_cast<char const*>(nullptr), ""}) {
        EXPECT_EQ(
            Extracting([set](auto& stream) { return StringUtils::ExtractString(stream, set); })("a\tb c"),
            "a\tb| c");
    }
}

TEST(StringScanningTest, TheLocaleOfAStreamChangesNothing)
{
    /// A character classification for which x is white space and a blank is not.
    class StrangeCharacters : public std::ctype<char>
    {
    public:
        StrangeCharacters() : std::ctype<char>(m_masks)
        {
            std::copy_n(classic_table(), table_size, m_masks);
            std::swap(m_masks[static_cast<unsigned char>('x')], m_masks[static_cast<unsigned char>(' ')]);
        }

    private:
        mask m_masks[table_size];
    };
    std::istringstream stream("  xax b x");
    stream.imbue(std::locale(std::locale::classic(), new StrangeCharacters));
    EXPECT_STREQ(StringUtils::ExtractString(stream), "xax");
    EXPECT_STREQ(StringUtils::ExtractString(stream, "x"), "b ");
    EXPECT_STREQ(StringUtils::ExtractLine(stream), "x");
}

TEST(StringScanningTest, AStreamThatIsNotGoodGivesNothing)
{
    std::istringstream stream("abc def");
    stream.setstate(std::ios::failbit);
    EXPECT_STREQ(StringUtils::ExtractString(stream), "");
    EXPECT_STREQ(StringUtils::ExtractLine(stream), "");
    EXPECT_STREQ(StringUtils::ExtractString(stream, ","), "");
    stream.clear();
    EXPECT_STREQ(StringUtils::ExtractString(stream), "abc");
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
    int const failures = VorlaneTest::ForEachFailedAllocation([&] { text = Text(record); },
                                                              [&] { StringUtils::Parse(text, ','); },
                                                              [&] { EXPECT_EQ(Bytes(text), record); });
    EXPECT_EQ(failures, 1);
    std::istringstream stream;
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation(
                  [&] {
                      stream.str(std::string(100, 'a'));
                      stream.clear();
                  },
                  [&] { StringUtils::ExtractString(stream); }, [] {}),
              1);
}
