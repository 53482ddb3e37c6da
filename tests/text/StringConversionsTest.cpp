#include "vorlane/text/StringUtils.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <algorithm>
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
#include <vector>

using Spatia::Point2d;
using Spatia::Point3d;
using Vorlane::StringUtils;

namespace {

std::uint64_t Bits(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// What the C library makes of a whole text, by the rules of the strict conversions.
template <typename Value>
struct Reference
{
    bool converted;
    Value value;
    int error;
};

Reference<double> ReferenceReal(char const* text)
{
    char* end = nullptr;
    errno = 0;
    double const value = std::strtod(text, &end);
    return {*end == '\0' && end != text && errno == 0, value, errno};
}

Reference<long> ReferenceInteger(char const* text)
{
    char* end = nullptr;
    errno = 0;
    long const value = std::strtol(text, &end, 10);
    if (value != static_cast<std::int32_t>(value)) {
        errno = ERANGE;
    }
    return {*end == '\0' && end != text && errno == 0, value, errno};
}

/// Compares the strict and the forgiving conversion with the C library; false after a difference.
bool AgreesWithStrtod(std::string const& text)
{
    double const untouched = 12345.5;
    double value = untouched;
    Reference<double> const expected = ReferenceReal(text.c_str());
    errno = -1;
    bool const converted = StringUtils::StringToReal(text.c_str(), value);
    int const error = errno;
    CString rest(text.c_str());
    double const forgiving = StringUtils::ParseRealNumber(rest, "");
    bool const agrees = converted == expected.converted && error == expected.error &&
                        Bits(value) == Bits(converted ? expected.value : untouched) &&
                        Bits(forgiving) == Bits(expected.value);
    EXPECT_TRUE(agrees) << '"' << text << "\" gives " << converted << ' ' << value << " errno " << error
                        << " and " << forgiving << ", not " << expected.converted << ' ' << expected.value
                        << " errno " << expected.error;
    return agrees;
}

std::string Print(char const* format, int precision, long double value)
{
    std::vector<char> text(4096);
    int const length = std::snprintf(text.data(), text.size(), format, precision, value);
    return std::string(text.data(), static_cast<std::size_t>(length));
}

std::string RandomText(VorlaneTest::SeededEngine& engine, std::string const& alphabet, int longest)
{
    std::string text;
    for (int left = engine.Integer(1, longest); left > 0; --left) {
        text += alphabet[static_cast<std::size_t>(engine.Integer(0, static_cast<int>(alphabet.size()) - 1))];
    }
    return text;
}

double RandomDouble(VorlaneTest::SeededEngine& engine, std::uint64_t mask)
{
    std::uint64_t const bits = engine() & mask;
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return std::isfinite(value) ? value : 1.0;
}

std::string DigitsWithExponent(VorlaneTest::SeededEngine& engine, int longest, int exponent)
{
    std::string text = RandomText(engine, "0123456789", longest);
    text.insert(static_cast<std::size_t>(engine.Integer(0, static_cast<int>(text.size()))), ".");
    return text + "e" + std::to_string(engine.Integer(-exponent, exponent));
}

/// The exact digits of a number half way between two doubles, or a little beside it.
std::string NearMidpoint(VorlaneTest::SeededEngine& engine, std::uint64_t mask)
{
    double const below = std::fabs(RandomDouble(engine, mask));
    double const above = std::nextafter(below, std::numeric_limits<double>::infinity());
    long double const middle = (static_cast<long double>(below) + static_cast<long double>(above)) / 2;
    std::string text = Print("%.*Le", 800, middle);
    std::size_t const marker = text.find('e');
    switch (engine.Integer(0, 3)) {
    case 0:
        return text.insert(marker, "1");
    case 1:
        return text.insert(marker, std::string(2000, '0') + "1");
    case 2:
        return Print("%.*Le", engine.Integer(15, 40), middle);
    default:
        return text;
    }
}

std::string Hexadecimal(VorlaneTest::SeededEngine& engine)
{
    std::string text = RandomText(engine, "0123456789abcdefABCDEF", 30);
    text.insert(static_cast<std::size_t>(engine.Integer(0, static_cast<int>(text.size()))), ".");
    return "-0x" + text + "p" + std::to_string(engine.Integer(-1200, 1100));
}

/// Many zeros, made good by the exponent.
std::string Shifted(VorlaneTest::SeededEngine& engine)
{
    int const zeros = engine.Integer(0, 1500);
    int const shift = zeros + engine.Integer(-330, 330);
    std::string const digits = RandomText(engine, "0123456789", 25);
    std::string const padding(static_cast<std::size_t>(zeros), '0');
    return engine.Integer(0, 1) == 0 ? "0." + padding + digits + "E+" + std::to_string(shift)
                                     : digits + padding + "." + padding + "e-" + std::to_string(shift);
}

std::string RandomNumber(VorlaneTest::SeededEngine& engine, std::size_t kind)
{
    std::uint64_t const all = ~std::uint64_t{0};
    std::uint64_t const subnormal = (std::uint64_t{1} << 53) - 1; // and the lowest normal exponent
    switch (kind) {
    case 0:
    case 1:
        return Print("%.*Lg", engine.Integer(1, 25), RandomDouble(engine, kind == 0 ? all : subnormal));
    case 2:
        return Print("%.*Lf", engine.Integer(0, 9), engine.Real(-2000, 2000));
    case 3:
        return DigitsWithExponent(engine, 40, 30);
    case 4:
        return DigitsWithExponent(engine, 30, 400);
    case 5:
    case 6:
        return NearMidpoint(engine, kind == 5 ? all : subnormal);
    case 7:
        return Hexadecimal(engine);
    case 8:
        return Shifted(engine);
    default:
        return RandomText(engine, "0123456789.eE+-xXpPiInNfFaAtTyY()_ \t", 12);
    }
}

} // namespace

TEST(StringConversionsTest, RandomRealNumbersAgreeWithTheCLibrary)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    int const counts[] = {200000, 20000, 200000, 200000, 100000, 5000, 5000, 100000, 5000, 200000};
    int cases = 0;
    for (std::size_t kind = 0; kind < std::size(counts); ++kind) {
        for (int i = 0; i < counts[kind]; ++i, ++cases) {
            ASSERT_TRUE(AgreesWithStrtod(RandomNumber(engine, kind)));
        }
    }
    EXPECT_GT(cases, 1000000);
}

TEST(StringConversionsTest, EveryFormOfRealNumbersAgreesWithTheCLibrary)
{
    std::string const largestDigits = Print("%.*Lf", 0, std::numeric_limits<double>::max());
    // 2^-1022 less half and less a quarter of a unit of the last place there, and less half a unit of a 54th
    // bit
    std::string const borders[] = {Print("%.*Le", 900, std::ldexp(0x1.fffffffffffffp-1L, -1022)),
                                   Print("%.*Le", 900, std::ldexp(0x1.fffffffffffff8p-1L, -1022)),
                                   Print("%.*Le", 900, std::ldexp(0x1.fffffffffffff7fep-1L, -1022)),
                                   Print("%.*Le", 900, std::ldexp(0x1.fffffffffffffcp-1L, -1022)),
                                   Print("%.*Le", 900, std::ldexp(1.0L, -1075)),
                                   Print("%.*Le", 900, std::ldexp(0x1.0000000000001p0L, -1075)),
                                   largestDigits,
                                   largestDigits.substr(0, largestDigits.size() - 290) +
                                       std::string(290, '9'),
                                   "1" + std::string(100000, '0') + "e-100000",
                                   "0." + std::string(1000000, '0') + "1e1000001",
                                   "0." + std::string(100000, '0') + "1",
                                   std::string(400, '9'),
                                   std::string(5000, '0') + ".0"};
    for (std::string const& text : borders) {
        AgreesWithStrtod(text);
    }
    std::istringstream words(
        "0 -0 +0.0e5 1e3 .5 5. . -. e5 .e5 1e 1e+ 1e+5 1e5. --1 +-1 1e999 -1e999 1e-999 0e999 "
        "0e-99999999999999999999 1e99999999999999999999 1e-99999999999999999999 "
        "1e00000000000000000000000000000000000000000000000000000000000000000001 "
        "1.7976931348623157e308 1.7976931348623158e308 1.7976931348623159e308 2.2250738585072014e-308 "
        "2.2250738585072011e-308 2.2250738585072012e-308 4.9e-324 2.4703282292062327e-324 2.5e-324 "
        "9007199254740993 9007199254740992e22 9007199254740993e1 1e22 1e23 8.5e22 "
        "18446744073709551616 0x 0x. 0x1 0X.8 0x1. 0x1p 0x1p+ 0x1p-1074 0x1.8p-1074 0x.8p-1074 "
        "0x.9p-1074 0x1p1024 0x1.fffffffffffff7p1023 0x1.fffffffffffff8p1023 0x0p9999999999999999999 "
        "0x1p-99999999999 0x1.fffffffffffffp-1023 0x1.fffffffffffff8p-1023 "
        "0x1.fffffffffffff7ffffffffp-1023 0x10000000000000000000000000000p-100 0x1.00000000000008p0 "
        "0x1.0000000000000800000000000001p0 0x1g 0x1.8.8 inf -INF +Infinity infinit infinityx in nan "
        "-NaN nan( nan() nan(1 nan(0x) nan(0x7Ff) -nan(123) nan(0123) nan(09) nan(x_1) nan(-1) na "
        "nan(2251799813685248) nan(4503599627370495) nan(18446744073709551616) "
        "nan(18446744073709551616z) ");
    std::vector<std::string> texts = {"1 ", " \t\n\v\f\r1", "- 1", "nan(1 )"};
    texts.insert(texts.end(), std::istream_iterator<std::string>(words), {});
    for (std::string const& text : texts) {
        AgreesWithStrtod(text);
    }
}

TEST(StringConversionsTest, IntegersAgreeWithTheCLibraryAtThirtyTwoBits)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    std::vector<std::string> texts = {"  42",
                                      "42 ",
                                      "42abc",
                                      "+7",
                                      "-",
                                      "+",
                                      " ",
                                      "- 1",
                                      "0x10",
                                      "00012",
                                      "\v\f-5",
                                      "2147483647",
                                      "2147483648",
                                      "-2147483648",
                                      "-2147483649",
                                      "4294967296",
                                      "9223372036854775808",
                                      "-99999999999999999999",
                                      "99999999999999999999x"};
    for (int i = 0; i < 100000; ++i) {
        texts.push_back(RandomText(engine, "0123456789", 12));
        texts.push_back(std::to_string(static_cast<std::int64_t>(engine()) >> engine.Integer(28, 40)));
        texts.push_back(RandomText(engine, "0123456789+- \tx", 6));
    }
    for (std::string const& text : texts) {
        long const untouched = 77;
        long value = untouched;
        Reference<long> const expected = ReferenceInteger(text.c_str());
        errno = -1;
        ASSERT_EQ(StringUtils::StringToInteger(text.c_str(), value), expected.converted) << text;
        ASSERT_EQ(errno, expected.error) << text;
        ASSERT_EQ(value, expected.converted ? expected.value : untouched) << text;
    }
}

TEST(StringConversionsTest, NarrowTargetsWrapOrBecomeInfinite)
{
    short shortValue = 5;
    EXPECT_TRUE(StringUtils::StringToInteger("70000", shortValue));
    EXPECT_EQ(shortValue, 4464);
    EXPECT_TRUE(StringUtils::StringToInteger("-2147483648", shortValue));
    EXPECT_EQ(shortValue, 0);
    EXPECT_TRUE(StringUtils::StringToInteger("40000", shortValue));
    EXPECT_EQ(shortValue, -25536);
    EXPECT_FALSE(StringUtils::StringToInteger("2147483648", shortValue));
    EXPECT_EQ(shortValue, -25536);
    int intValue = 5;
    EXPECT_TRUE(StringUtils::StringToInteger("-2147483648", intValue));
    EXPECT_EQ(intValue, std::numeric_limits<int>::min());

    float const infinite = std::numeric_limits<float>::infinity();
    float const largest = std::numeric_limits<float>::max();
    struct
    {
        char const* text;
        float value;
    } const rows[] = {{"1e39", infinite},
                      {"-1e39", -infinite},
                      {"3.4028235e38", largest},
                      {"3.40282356e38", largest},
                      {"-3.4028236e38", -infinite},
                      {"0x1.fffffefp127", largest},
                      {"0x1.ffffffp127", infinite},
                      {"1e-60", 0.0f},
                      {"0.1", 0.1f}};
    for (auto const& row : rows) {
        float value = 5;
        EXPECT_TRUE(StringUtils::StringToReal(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
    float value = 5;
    EXPECT_TRUE(StringUtils::StringToReal("nan", value));
    EXPECT_TRUE(std::isnan(value));
    value = 5;
    EXPECT_FALSE(StringUtils::StringToReal("1e999", value));
    EXPECT_EQ(value, 5);
}

TEST(StringConversionsTest, NothingIsConvertedFromNothingAndErrnoStays)
{
    for (char const* text : {static_cast<char const*>(nullptr), ""}) {
        errno = -1;
        bool boolean = true;
        long integer = 5;
        double real = 5;
        Point3d point(1, 2, 3);
        EXPECT_FALSE(StringUtils::StringToBoolean(text, boolean));
        EXPECT_FALSE(StringUtils::StringToInteger(text, integer));
        EXPECT_FALSE(StringUtils::StringToReal(text, real));
        EXPECT_FALSE(StringUtils::StringToPoint(text, point));
        EXPECT_EQ(errno, -1);
        EXPECT_TRUE(boolean && integer == 5 && real == 5 && point.z == 3);
    }
}

TEST(StringConversionsTest, BooleansAreTenKeywords)
{
    for (char const* text : {"on", "t", "TRUE", "y", "yEs"}) {
        bool value = false;
        EXPECT_TRUE(StringUtils::StringToBoolean(text, value)) << text;
        EXPECT_TRUE(value) << text;
    }
    for (char const* text : {"F", "false", "n", "No", "oFF"}) {
        bool value = true;
        EXPECT_TRUE(StringUtils::StringToBoolean(text, value)) << text;
        EXPECT_FALSE(value) << text;
    }
    for (char const* text : {" yes", "yes ", "1", "0", "tr", "truer", "of", "\xC9"}) {
        bool value = true;
        EXPECT_FALSE(StringUtils::StringToBoolean(text, value)) << text;
        EXPECT_TRUE(value) << text;
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
    CStringArray strings;
    char const* const texts[] = {"b", "a", "", "b", "B", "c", "a", "", "\xFF"};
    for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
        strings.SetAtGrow(i, texts[i]);
    }
    StringUtils::RemoveDuplicateStrings(strings);
    std::string left;
    for (int i = 0; i < strings.GetSize(); ++i) {
        left += std::string(strings[i]) + "|";
    }
    EXPECT_EQ(left, "b|a||B|c|\xFF|");
    strings.SetSize(0, -1);
    StringUtils::RemoveDuplicateStrings(strings);
    EXPECT_EQ(strings.GetSize(), 0);
}

TEST(StringConversionsTest, ArrayIsKeptWhenMemoryRunsOut)
{
    CStringArray strings;
    int const failures = VorlaneTest::ForEachFailedAllocation(
        [&] {
            strings.SetSize(0, -1);
            for (int i = 0; i < 10; ++i) {
                strings.SetAtGrow(i, i % 2 == 0 ? "even" : "odd");
            }
        },
        [&] { StringUtils::RemoveDuplicateStrings(strings); }, [&] { EXPECT_EQ(strings.GetSize(), 10); });
    EXPECT_GT(failures, 3);
    EXPECT_EQ(strings.GetSize(), 2);
}

namespace {

/// Sets a locale with a decimal comma for the life of the object, one of the machine's or one made for the
/// occasion.
class CommaLocale
{
public:
    CommaLocale()
    {
        for (char const* name :
             {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"}) {
            m_isSet = m_isSet || TrySet(name);
        }
        if (!m_isSet) {
            std::string folder = ::testing::TempDir() + "vorlane_locale_XXXXXX";
            if (mkdtemp(folder.data()) != nullptr) {
                m_folder = folder;
                std::string const make =
                    "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >'" + folder + "/log' 2>&1";
                bool const made = std::system(make.c_str()) == 0;
                setenv("LOCPATH", folder.c_str(), 1);
                m_isSet = made && TrySet("de_DE.UTF-8");
                unsetenv("LOCPATH");
            }
        }
    }

    ~CommaLocale()
    {
        std::setlocale(LC_ALL, "C");
        if (!m_folder.empty()) {
            std::string const remove = "rm -rf '" + m_folder + "'";
            EXPECT_EQ(std::system(remove.c_str()), 0);
        }
    }

    CommaLocale(CommaLocale const&) = delete;
    CommaLocale& operator=(CommaLocale const&) = delete;

    bool IsSet() const { return m_isSet; }

private:
    static bool TrySet(char const* name)
    {
        return std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',';
    }

    bool m_isSet = false;
    std::string m_folder;
};

} // namespace

TEST(StringConversionsTest, ADecimalCommaOfTheLocaleChangesNothing)
{
    CommaLocale const locale;
    if (!locale.IsSet()) {
        GTEST_SKIP() << "no locale with a decimal comma is installed, and localedef makes none";
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
