#include "vorlane/text/StringUtils.h"

#include "fuzz/ConversionChecks.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Files.h"
#include "tests/support/Seed.h"
#include "tests/text/TextTesting.h"

#include <clocale>
#include <cmath>
#include <limits>

using namespace VorlaneFuzz;
using namespace VorlaneTest;
using Vorlane::StringUtils;

namespace {

std::string const digits = "0123456789";

std::string Format(char const* format, int precision, long double value)
{
    char text[4096];
    std::snprintf(text, sizeof text, format, precision, value);
    return text;
}

std::string Zeros(int count)
{
    return std::string(static_cast<std::size_t>(count), '0');
}

/// Random texts of numbers.
class Numbers : public SeededEngine
{
public:
    std::string From(std::string const& alphabet, int longest)
    {
        std::string text(static_cast<std::size_t>(Integer(1, longest)), ' ');
        for (char& character : text) {
            character = alphabet[static_cast<std::size_t>(Integer(0, static_cast<int>(alphabet.size()) - 1))];
        }
        return text;
    }

    /// Digits with a point somewhere, behind them a letter and an exponent.
    std::string WithExponent(std::string const& alphabet, int longest, char letter, int low, int high)
    {
        std::string text = From(alphabet, longest);
        text.insert(static_cast<std::size_t>(Integer(0, static_cast<int>(text.size()))), ".");
        return text + letter + std::to_string(Integer(low, high));
    }

    /// A double of 64 bits less `unset`; with 53 it is subnormal or has the lowest normal exponent.
    double Double(int unset)
    {
        std::uint64_t const bits = (*this)() >> unset;
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        return std::isfinite(value) ? value : 1.0;
    }

    /// The exact digits of a number half way between two doubles, or a little beside it.
    std::string NearMidpoint(int unset)
    {
        double const below = std::fabs(Double(unset));
        long double const above = std::nextafter(below, std::numeric_limits<double>::infinity());
        std::string text = Format("%.*Le", Integer(0, 3) == 0 ? Integer(15, 40) : 800, (below + above) / 2);
        std::string const beside[] = {"", "1", Zeros(2000) + "1"};
        return text.insert(text.find('e'), beside[Integer(0, 2)]);
    }

    /// Many zeros or digits, made good by the exponent.
    std::string Shifted()
    {
        int const zeros = Integer(0, 1500);
        int const shift = zeros + Integer(-330, 330);
        std::string const random = From(digits, Integer(0, 3) == 0 ? 10000 : 25);
        std::string const moved = std::to_string(shift + static_cast<int>(random.size()));
        return Integer(0, 1) == 0 ? "0." + Zeros(zeros) + random + "E+" + std::to_string(shift)
                                  : random + Zeros(zeros) + "." + Zeros(zeros) + "e-" + moved;
    }
};

/// The value that a conversion gives, or "no" where it fails and leaves what was there. Nothing is converted
/// from nothing, and then errno stays.
template <typename Value>
auto Converting(bool (*convert)(char const*, Value&), Value before)
{
    return [convert, before](std::string const& text) {
        errno = -1;
        Value value = before;
        EXPECT_FALSE(convert(nullptr, value));
        bool const converts = convert(text.c_str(), value);
        EXPECT_TRUE(converts || Print(value) == Print(before)) << text;
        EXPECT_TRUE(!text.empty() || errno == -1);
        return converts ? Print(value) : "no";
    };
}

auto Editing(void (*edit)(CString&))
{
    return [edit](std::string const& text) {
        CString edited = ToText(text);
        CString const shared(edited);
        edit(edited);
        EXPECT_EQ(Print(shared), text);
        return Print(edited);
    };
}

/// The strings between bars, and what stays of them; the array is kept when memory runs out.
std::string WithoutDuplicates(std::string const& texts)
{
    CStringArray strings;
    auto const fill = [&strings, all = Split(texts, '|')] {
        strings.RemoveAll();
        for (std::string const& one : all) {
            strings.Add(one.c_str());
        }
    };
    fill();
    int const size = strings.GetSize();
    int const failures = ForEachFailedAllocation(
        fill, [&] { StringUtils::RemoveDuplicateStrings(strings); },
        [&] { EXPECT_EQ(strings.GetSize(), size) << "changed without memory"; });
    EXPECT_EQ(failures > 3, size > 0);
    std::string left;
    for (int i = 0; i < strings.GetSize(); ++i) {
        left += Print(strings[i]) + '|';
    }
    return left;
}

} // namespace

TEST(StringConversionsTest, RandomNumbersAgreeWithTheCLibrary)
{
    Numbers numbers;
    SCOPED_TRACE(numbers.Describe());
    auto const check = [](int count, auto make) {
        for (int i = 0; i < count; ++i) {
            std::string const text = make();
            ASSERT_NO_THROW(CheckReal(text.c_str())) << text;
        }
    };
    check(200000, [&] { return Format("%.*Lg", numbers.Integer(1, 25), numbers.Double(0)); });
    check(20000, [&] { return Format("%.*Lg", numbers.Integer(1, 25), numbers.Double(11)); });
    check(200000, [&] { return Format("%.*Lf", numbers.Integer(0, 9), numbers.Real(-2000, 2000)); });
    check(200000, [&] { return numbers.WithExponent(digits, 40, 'e', -30, 30); });
    check(100000, [&] { return numbers.WithExponent(digits, 30, 'e', -400, 400); });
    check(5000, [&] { return numbers.NearMidpoint(0); });
    check(5000, [&] { return numbers.NearMidpoint(11); });
    check(100000,
          [&] { return "-0x" + numbers.WithExponent(digits + "abcdefABCDEF", 30, 'p', -1200, 1100); });
    check(5000, [&] { return numbers.Shifted(); });
    check(200000, [&] { return numbers.From(digits + ".eE+-xXpPiInNfFaAtTyY()_ \t", 12); });
    for (int i = 0; i < 100000; ++i) {
        ASSERT_NO_THROW(CheckPoint(numbers.From("12. \tx", 12).c_str()));
        for (std::string const& text :
             {numbers.From(digits, 12), numbers.From(digits + "+- \tx", 6),
              std::to_string(static_cast<std::int64_t>(numbers()) >> numbers.Integer(28, 40))}) {
            ASSERT_NO_THROW(CheckInteger(text.c_str())) << text;
        }
    }
}

TEST(StringConversionsTest, EveryFormOfNumbersAgreesWithTheCLibrary)
{
    // 2^-1022 less half and less a quarter of a unit of the last place there, and less half a unit of a 54th
    // bit; half of the smallest double, and a little more
    for (long double border :
         {std::ldexp(0x1.fffffffffffffp-1L, -1022), std::ldexp(0x1.fffffffffffff8p-1L, -1022),
          std::ldexp(0x1.fffffffffffff7fep-1L, -1022), std::ldexp(0x1.fffffffffffffcp-1L, -1022),
          std::ldexp(1.0L, -1075), std::ldexp(0x1.0000000000001p0L, -1075)}) {
        EXPECT_NO_THROW(CheckReal(Format("%.*Le", 900, border).c_str())) << border;
    }
    for (Case const& row : ReadCases("text/conversions.txt", "reals")) {
        EXPECT_NO_THROW(CheckReal(row.at("text").c_str())) << row.at("where");
    }
    for (Case const& row : ReadCases("text/conversions.txt", "integers")) {
        EXPECT_NO_THROW(CheckInteger(row.at("text").c_str())) << row.at("where");
    }
}

TEST(StringConversionsTest, ConversionsAndEditsDoWhatTheTablesShow)
{
    CheckTables("text/conversions.txt",
                {{"short", Converting<short>(StringUtils::StringToInteger, 5)},
                 {"int", Converting<int>(StringUtils::StringToInteger, 5)},
                 {"double", Converting<double>(StringUtils::StringToReal, 5)},
                 {"float", Converting<float>(StringUtils::StringToReal, 5)},
                 {"bool", Converting<bool>(StringUtils::StringToBoolean, true)},
                 {"bool", Converting<bool>(StringUtils::StringToBoolean, false)},
                 {"Point2d", Converting<Spatia::Point2d>(StringUtils::StringToPoint, {7, 8})},
                 {"Point3d", Converting<Spatia::Point3d>(StringUtils::StringToPoint, {7, 8, 9})},
                 {"CleanString", Editing(StringUtils::CleanString)},
                 {"RemoveSpaces", Editing(StringUtils::RemoveSpaces)},
                 {"QuoteString", [](auto& text) {
                      return Print(StringUtils::QuoteString(ToText(text), '\''));
                  }}});
}

TEST(StringConversionsTest, DuplicatesGoAndTheFirstOfEachStays)
{
    CheckTables("text/conversions.txt", {{"RemoveDuplicateStrings", WithoutDuplicates}});
}

TEST(StringConversionsTest, ADecimalCommaOfTheLocaleChangesNothing)
{
    struct LocaleReset
    {
        ~LocaleReset() { std::setlocale(LC_ALL, "C"); }
    } const reset;
    std::string folder = ::testing::TempDir() + "vorlane_locale_XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    int const status = RunCommand("localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8'").status;
    setenv("LOCPATH", folder.c_str(), 1);
    bool const isSet = status == 0 && std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    unsetenv("LOCPATH");
    EXPECT_EQ(RunCommand("rm -rf '" + folder + "'").status, 0);
    if (!isSet) {
        GTEST_SKIP() << "localedef makes no locale with a decimal comma";
    }
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);
    std::pair<char const*, double> const rows[] = {
        {"1.5", 1.5}, {"0x1.8p1", 3}, {"-12345678901234567890.25e-3", -12345678901234567.89025}};
    for (auto const& [text, expected] : rows) {
        double value = 0;
        EXPECT_TRUE(StringUtils::StringToReal(text, value) && value == expected) << text;
    }
    double value = 0;
    EXPECT_FALSE(StringUtils::StringToReal("1,5", value) || StringUtils::StringToReal("0x1,8p1", value));
    EXPECT_EQ(StringUtils::PeekRealNumber("1,5", ""), 1);
}
