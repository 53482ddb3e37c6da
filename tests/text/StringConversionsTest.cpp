#include "vorlane/text/StringUtils.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using Spatia::Point2d;
using Spatia::Point3d;
using Vorlane::StringUtils;
using VorlaneTest::SeededEngine;

namespace {

/// The pieces of a text between bars.
std::vector<std::string> Split(std::string const& text)
{
    std::istringstream stream(text);
    std::vector<std::string> pieces;
    for (std::string piece; std::getline(stream, piece, '|');) {
        pieces.push_back(piece);
    }
    return pieces;
}

/// Compares the strict and the forgiving conversion with the C library.
bool AgreesWithStrtod(std::string const& text)
{
    char* end = nullptr;
    errno = 0;
    double const expected = std::strtod(text.c_str(), &end);
    int const error = errno;
    bool const converts = *end == '\0' && end != text.c_str() && error == 0;
    double const untouched = 12345.5;
    double value = untouched;
    errno = -1;
    bool const agrees = StringUtils::StringToReal(text.c_str(), value) == converts && errno == error;
    CString rest(text.c_str());
    double const forgiving = StringUtils::ParseRealNumber(rest, "");
    return agrees && std::memcmp(&value, converts ? &expected : &untouched, sizeof value) == 0 &&
           std::memcmp(&forgiving, &expected, sizeof expected) == 0;
}

/// The same for the strict conversion to an integer, at 32 bits.
bool AgreesWithStrtol(std::string const& text)
{
    char* end = nullptr;
    errno = 0;
    long const expected = std::strtol(text.c_str(), &end, 10);
    int const error = expected == static_cast<std::int32_t>(expected) ? errno : ERANGE;
    bool const converts = *end == '\0' && end != text.c_str() && error == 0;
    long value = 77;
    errno = -1;
    return StringUtils::StringToInteger(text.c_str(), value) == converts && errno == error &&
           value == (converts ? expected : 77);
}

std::string Print(char const* format, int precision, long double value)
{
    std::vector<char> text(4096);
    int const length = std::snprintf(text.data(), text.size(), format, precision, value);
    return std::string(text.data(), static_cast<std::size_t>(length));
}

std::string RandomText(SeededEngine& engine, std::string const& alphabet, int longest)
{
    std::string text(static_cast<std::size_t>(engine.Integer(1, longest)), ' ');
    for (char& character : text) {
        character =
            alphabet[static_cast<std::size_t>(engine.Integer(0, static_cast<int>(alphabet.size()) - 1))];
    }
    return text;
}

/// Digits with a point somewhere, behind them a letter and an exponent.
std::string Digits(SeededEngine& engine, char const* alphabet, int longest, char letter, int low, int high)
{
    std::string text = RandomText(engine, alphabet, longest);
    text.insert(static_cast<std::size_t>(engine.Integer(0, static_cast<int>(text.size()))), ".");
    return text + letter + std::to_string(engine.Integer(low, high));
}

double RandomDouble(SeededEngine& engine, bool subnormal)
{
    // With 53 bits it is subnormal or has the lowest normal exponent.
    std::uint64_t const bits = engine() >> (subnormal ? 11 : 0);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return std::isfinite(value) ? value : 1.0;
}

/// The exact digits of a number half way between two doubles, or a little beside it.
std::string NearMidpoint(SeededEngine& engine, bool subnormal)
{
    double const below = std::fabs(RandomDouble(engine, subnormal));
    double const above = std::nextafter(below, std::numeric_limits<double>::infinity());
    long double const middle = (static_cast<long double>(below) + static_cast<long double>(above)) / 2;
    std::string const text = Print("%.*Le", 800, middle);
    std::string const beside[] = {"", "1", std::string(2000, '0') + "1"};
    int const kind = engine.Integer(0, 3);
    return kind == 3 ? Print("%.*Le", engine.Integer(15, 40), middle)
                     : std::string(text).insert(text.find('e'), beside[kind]);
}

/// Many zeros or digits, made good by the exponent.
std::string Shifted(SeededEngine& engine)
{
    int const zeros = engine.Integer(0, 1500);
    int const shift = zeros + engine.Integer(-330, 330);
    std::string const digits = RandomText(engine, "0123456789", engine.Integer(0, 3) == 0 ? 10000 : 25);
    std::string const padding(static_cast<std::size_t>(zeros), '0');
    return engine.Integer(0, 1) == 0 ? "0." + padding + digits + "E+" + std::to_string(shift)
                                     : digits + padding + "." + padding + "e-" +
                                           std::to_string(shift + static_cast<int>(digits.size()));
}

std::string RandomNumber(SeededEngine& engine, std::size_t kind)
{
    switch (kind) {
    case 0:
    case 1:
        return Print("%.*Lg", engine.Integer(1, 25), RandomDouble(engine, kind == 1));
    case 2:
        return Print("%.*Lf", engine.Integer(0, 9), engine.Real(-2000, 2000));
    case 3:
        return Digits(engine, "0123456789", 40, 'e', -30, 30);
    case 4:
        return Digits(engine, "0123456789", 30, 'e', -400, 400);
    case 5:
    case 6:
        return NearMidpoint(engine, kind == 6);
    case 7:
        return "-0x" + Digits(engine, "0123456789abcdefABCDEF", 30, 'p', -1200, 1100);
    case 8:
        return Shifted(engine);
    default:
        return RandomText(engine, "0123456789.eE+-xXpPiInNfFaAtTyY()_ \t", 12);
    }
}

} // namespace

TEST(StringConversionsTest, RandomNumbersAgreeWithTheCLibrary)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    int const counts[] = {200000, 20000, 200000, 200000, 100000, 5000, 5000, 100000, 5000, 200000};
    for (std::size_t kind = 0; kind < std::size(counts); ++kind) {
        for (int i = 0; i < counts[kind]; ++i) {
            std::string const text = RandomNumber(engine, kind);
            ASSERT_TRUE(AgreesWithStrtod(text)) << text;
        }
    }
    for (int i = 0; i < 100000; ++i) {
        for (std::string const& text :
             {RandomText(engine, "0123456789", 12), RandomText(engine, "0123456789+- \tx", 6),
              std::to_string(static_cast<std::int64_t>(engine()) >> engine.Integer(28, 40))}) {
            ASSERT_TRUE(AgreesWithStrtol(text)) << text;
        }
    }
}

TEST(StringConversionsTest, EveryFormOfNumbersAgreesWithTheCLibrary)
{
    std::string const zeros(1000000, '0');
    std::string const largest = Print("%.*Lf", 0, std::numeric_limits<double>::max());
    std::vector<std::string> reals = {largest,
                                      largest.substr(0, largest.size() - 290) + std::string(290, '9'),
                                      std::string(400, '9'),
                                      "1" + zeros + "e-1000000",
                                      "0." + zeros + "1e1000001",
                                      "0." + zeros + "1",
                                      zeros + ".0",
                                      zeros + "17e0" + zeros + "5",
                                      std::string(10000, '7') + "e-9700",
                                      std::string(10000, '7') + "e-4294967296"};
    // 2^-1022 less half and less a quarter of a unit of the last place there, and less half a unit of a 54th
    // bit; half of the smallest double, and a little more
    for (long double border :
         {std::ldexp(0x1.fffffffffffffp-1L, -1022), std::ldexp(0x1.fffffffffffff8p-1L, -1022),
          std::ldexp(0x1.fffffffffffff7fep-1L, -1022), std::ldexp(0x1.fffffffffffffcp-1L, -1022),
          std::ldexp(1.0L, -1075), std::ldexp(0x1.0000000000001p0L, -1075)}) {
        reals.push_back(Print("%.*Le", 900, border));
    }
    for (std::string const& text : Split(
             "0|-0|+0.0e5|1e3|.5|5.|.|-.|e5|.e5|1e|1e+|1e+5|1e5.|--1|+-1|1e999|-1e999|1e-999|0e999|"
             "0e-99999999999999999999|1e99999999999999999999|1e-99999999999999999999|1e2147483648|"
             "1e-2147483649|0.1e4294967297|1e4294967296|1e-4294967296|1e18446744073709551617|"
             "1e00000000000000000000000000000000000000000000000000000000000000000001|"
             "1.7976931348623157e308|1.7976931348623158e308|1.7976931348623159e308|2.2250738585072014e-308|"
             "2.2250738585072011e-308|2.2250738585072012e-308|4.9e-324|2.4703282292062327e-324|2.5e-324|"
             "9007199254740993|9007199254740992e22|9007199254740993e1|1e22|1e23|8.5e22|18446744073709551616|"
             "0x|0x.|0x1|0X.8|0x1.|0x1p|0x1p+|0x1p-1074|0x1.8p-1074|0x.8p-1074|0x.9p-1074|0x1p1024|"
             "0x1.fffffffffffff7p1023|0x1.fffffffffffff8p1023|0x0p9999999999999999999|0x1p-99999999999|"
             "0x1.fffffffffffffp-1023|0x1.fffffffffffff8p-1023|0x1.fffffffffffff7ffffffffp-1023|"
             "0x10000000000000000000000000000p-100|0x1.00000000000008p0|0x1.0000000000000800000000000001p0|"
             "0x1g|0x1.8.8|inf|-INF|+Infinity|infinit|infinityx|in|nan|-NaN|nan(|nan()|nan(1|nan(0x)|nan("
             "0x7Ff)|"
             "-nan(123)|nan(0123)|nan(09)|nan(x_1)|nan(-1)|na|nan(2251799813685248)|nan(4503599627370495)|"
             "nan(18446744073709551616)|nan(18446744073709551616z)|1 | \t\n\v\f\r1|- 1|nan(1 )")) {
        reals.push_back(text);
    }
    for (std::string const& text : reals) {
        EXPECT_TRUE(AgreesWithStrtod(text)) << text.substr(0, 1000);
    }
    for (std::string const& text :
         Split("  42|42 |42abc|+7|-|+| |- 1|0x10|00012|\v\f-5|2147483647|2147483648|-2147483648|-2147483649|"
               "4294967296|9223372036854775808|-99999999999999999999|99999999999999999999x")) {
        EXPECT_TRUE(AgreesWithStrtol(text)) << text;
    }
}

TEST(StringConversionsTest, NarrowTargetsWrapOrBecomeInfinite)
{
    std::pair<char const*, short> const shorts[] = {{"70000", 4464}, {"-2147483648", 0}, {"40000", -25536}};
    short shortValue = 5;
    for (auto const& [text, expected] : shorts) {
        EXPECT_TRUE(StringUtils::StringToInteger(text, shortValue)) << text;
        EXPECT_EQ(shortValue, expected) << text;
    }
    EXPECT_FALSE(StringUtils::StringToInteger("2147483648", shortValue));
    EXPECT_EQ(shortValue, -25536);
    int intValue = 5;
    EXPECT_TRUE(StringUtils::StringToInteger("-2147483648", intValue));
    EXPECT_EQ(intValue, std::numeric_limits<int>::min());

    float const infinite = std::numeric_limits<float>::infinity();
    float const largest = std::numeric_limits<float>::max();
    std::pair<char const*, float> const floats[] = {{"1e39", infinite},
                                                    {"-1e39", -infinite},
                                                    {"3.4028235e38", largest},
                                                    {"3.40282356e38", largest},
                                                    {"-3.4028236e38", -infinite},
                                                    {"0x1.fffffefp127", largest},
                                                    {"0x1.ffffffp127", infinite},
                                                    {"1e-60", 0.0f},
                                                    {"0.1", 0.1f}};
    float value = 5;
    for (auto const& [text, expected] : floats) {
        EXPECT_TRUE(StringUtils::StringToReal(text, value)) << text;
        EXPECT_EQ(value, expected) << text;
    }
    EXPECT_FALSE(StringUtils::StringToReal("1e999", value));
    EXPECT_EQ(value, 0.1f);
    EXPECT_TRUE(StringUtils::StringToReal("nan", value));
    EXPECT_TRUE(std::isnan(value));
}

TEST(StringConversionsTest, NothingIsConvertedFromNothingAndErrnoStays)
{
    for (char const* text : {static_cast<char const*>(nullptr), ""}) {
        errno = -1;
        bool boolean = true;
        long integer = 5;
        double real = 5;
        Point3d point(1, 2, 3);
        EXPECT_FALSE(StringUtils::StringToBoolean(text, boolean) ||
                     StringUtils::StringToInteger(text, integer) || StringUtils::StringToReal(text, real) ||
                     StringUtils::StringToPoint(text, point));
        EXPECT_EQ(errno, -1);
        EXPECT_TRUE(boolean && integer == 5 && real == 5 && point.z == 3);
    }
}

TEST(StringConversionsTest, BooleansAreTenKeywords)
{
    std::pair<char const*, bool> const rows[] = {{"on|t|TRUE|y|yEs", true}, {"F|false|n|No|oFF", false}};
    for (auto const& [keywords, expected] : rows) {
        for (std::string const& text : Split(keywords)) {
            bool value = !expected;
            EXPECT_TRUE(StringUtils::StringToBoolean(text.c_str(), value)) << text;
            EXPECT_EQ(value, expected) << text;
        }
    }
    for (std::string const& text : Split(" yes|yes |1|0|tr|truer|of|\xC9")) {
        for (bool before : {true, false}) {
            bool value = before;
            EXPECT_FALSE(StringUtils::StringToBoolean(text.c_str(), value)) << text;
            EXPECT_EQ(value, before) << text;
        }
    }
}

TEST(StringConversionsTest, PointsTakeTheirFirstWords)
{
    struct
    {
        char const* text;
        bool isPoint2d;
        bool isPoint3d;
    } const rows[] = {{"1 2", true, false},
                      {"1 2 x", true, false},
                      {"1 2 3", true, true},
                      {"1 2 3 4", true, true},
                      {"\t1\n\n2 \r3\v", true, true},
                      {"1 2 3 x", true, true},
                      {"1,2,3", false, false},
                      {"1 x 3", false, false},
                      {"1 2 1e999", true, false},
                      {"x 2 3", false, false},
                      {"1", false, false},
                      {" ", false, false},
                      {"0x1 2e0 3.", true, true}};
    for (auto const& row : rows) {
        Point2d point2d(7, 8);
        Point3d point3d(7, 8, 9);
        EXPECT_EQ(StringUtils::StringToPoint(row.text, point2d), row.isPoint2d) << row.text;
        EXPECT_EQ(StringUtils::StringToPoint(row.text, point3d), row.isPoint3d) << row.text;
        EXPECT_TRUE(row.isPoint2d ? point2d.x == 1 && point2d.y == 2 : point2d.x == 7 && point2d.y == 8)
            << row.text;
        EXPECT_EQ(point3d.x, row.isPoint3d ? 1 : 7) << row.text;
        EXPECT_EQ(point3d.z, row.isPoint3d ? 3 : 9) << row.text;
    }
}

TEST(StringConversionsTest, EditsOfWholeTexts)
{
    struct
    {
        char const* text;
        char const* cleaned;
        char const* withoutSpaces;
    } const rows[] = {{"", "", ""},
                      {" \t\n\v\f\r ", "", ""},
                      {"abc", "abc", "abc"},
                      {"  a \t\n b  c ", "a b c", "abc"},
                      {"a\tb", "a b", "ab"},
                      {"a b \"c d\" 'e f'", "a b \"c d\" 'e f'", "ab\"c d\"'e f'"},
                      {"a \" b  c ", "a \" b c", "a\" b  c "},
                      {"a \"b' \" c d' e f", "a \"b' \" c d' e f", "a\"b' \" c d'ef"},
                      {"`a b` \xA0 \x85", "`a b` \xA0 \x85", "`ab`\xA0\x85"}};
    for (auto const& row : rows) {
        CString cleaned(row.text);
        StringUtils::CleanString(cleaned);
        EXPECT_STREQ(cleaned, row.cleaned) << row.text;
        CString withoutSpaces(row.text);
        CString const shared(withoutSpaces);
        StringUtils::RemoveSpaces(withoutSpaces);
        EXPECT_STREQ(withoutSpaces, row.withoutSpaces) << row.text;
        EXPECT_STREQ(shared, row.text);
        EXPECT_EQ(StringUtils::QuoteString(row.text, '\''), CString("'") + row.text + "'");
    }
    CString zero("a \0  b ", 7);
    StringUtils::CleanString(zero);
    EXPECT_EQ(std::string(zero, 5), std::string("a \0 b", 5));
    EXPECT_EQ(zero.GetLength(), 5);
}

TEST(StringConversionsTest, DuplicatesGoAndTheFirstOfEachStays)
{
    std::pair<char const*, char const*> const rows[] = {{"b|a||b|B|c|a||\xFF", "b|a||B|c|\xFF|"}, {"", ""}};
    for (auto const& [texts, expected] : rows) {
        CStringArray strings;
        auto const fill = [&strings, all = Split(texts)] {
            strings.SetSize(static_cast<int>(all.size()), -1);
            for (std::size_t i = 0; i < all.size(); ++i) {
                strings[static_cast<int>(i)] = all[i].c_str();
            }
        };
        fill();
        int const size = strings.GetSize();
        int const failures = VorlaneTest::ForEachFailedAllocation(
            fill, [&] { StringUtils::RemoveDuplicateStrings(strings); },
            [&] { EXPECT_EQ(strings.GetSize(), size) << "the array changed though memory ran out"; });
        EXPECT_EQ(failures > 3, size > 0);
        std::string left;
        for (int i = 0; i < strings.GetSize(); ++i) {
            left += std::string(strings[i]) + "|";
        }
        EXPECT_EQ(left, expected);
    }
}

TEST(StringConversionsTest, ADecimalCommaOfTheLocaleChangesNothing)
{
    struct LocaleReset
    {
        ~LocaleReset() { std::setlocale(LC_ALL, "C"); }
    } const reset;
    auto const isSet = [](char const* name) {
        return std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',';
    };
    if (!isSet("de_DE.UTF-8") && !isSet("de_DE") && !isSet("fr_FR.UTF-8") && !isSet("nl_NL.UTF-8")) {
        // None is installed, so one is made for the occasion.
        std::string folder = ::testing::TempDir() + "vorlane_locale_XXXXXX";
        ASSERT_NE(mkdtemp(folder.data()), nullptr);
        std::string const make = "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >/dev/null 2>&1";
        bool const made = std::system(make.c_str()) == 0;
        setenv("LOCPATH", folder.c_str(), 1);
        bool const found = made && isSet("de_DE.UTF-8");
        unsetenv("LOCPATH");
        EXPECT_EQ(std::system(("rm -rf '" + folder + "'").c_str()), 0);
        if (!found) {
            GTEST_SKIP() << "no locale with a decimal comma is installed, and localedef makes none";
        }
    }
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);
    struct
    {
        char const* text;
        bool converted;
        double forgiving;
    } const rows[] = {{"1.5", true, 1.5},
                      {"1,5", false, 1},
                      {"-12345678901234567890.25e-3", true, -12345678901234567.89025},
                      {"0x1.8p1", true, 3},
                      {"0x1,8p1", false, 1}};
    for (auto const& row : rows) {
        double value = 0;
        EXPECT_EQ(StringUtils::StringToReal(row.text, value), row.converted) << row.text;
        EXPECT_EQ(value, row.converted ? row.forgiving : 0) << row.text;
        CString text(row.text);
        EXPECT_EQ(StringUtils::ParseRealNumber(text, ""), row.forgiving) << row.text;
    }
}
