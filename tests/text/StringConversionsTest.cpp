#include "vorlane/text/StringUtils.h"

#include "fuzz/ConversionChecks.h"
#include "tests/support/AllocationFailure.h"
#include "tests/text/TextTesting.h"

#include <clocale>
#include <cmath>
#include <filesystem>

using namespace VorlaneFuzz;
using namespace VorlaneTest;
using Vorlane::StringUtils;

namespace {

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

} // namespace

TEST(StringConversionsTest, EveryFormOfNumbersAgreesWithTheCLibrary)
{
    // 2^-1022 less half and less a quarter of a unit of the last place there, and less half a unit of a 54th
    // bit; half of the smallest double, and a little more
    for (long double border :
         {std::ldexp(0x1.fffffffffffffp-1L, -1022), std::ldexp(0x1.fffffffffffff8p-1L, -1022),
          std::ldexp(0x1.fffffffffffff7fep-1L, -1022), std::ldexp(0x1.fffffffffffffcp-1L, -1022),
          std::ldexp(1.0L, -1075), std::ldexp(0x1.0000000000001p0L, -1075)}) {
        char digits[1000];
        std::snprintf(digits, sizeof digits, "%.900Le", border);
        EXPECT_NO_THROW(CheckReal(digits)) << border;
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

TEST(StringConversionsTest, DuplicatesGoUnlessMemoryRunsOut)
{
    CStringArray strings;
    StringUtils::RemoveDuplicateStrings(strings);
    auto const fill = [&strings] {
        strings.RemoveAll();
        for (char const* text : {"b", "a", "", "b", "B", "c", "a", "", "\xFF"}) {
            strings.Add(text);
        }
    };
    EXPECT_GT(ForEachFailedAllocation(
                  fill, [&] { StringUtils::RemoveDuplicateStrings(strings); },
                  [&] { EXPECT_EQ(strings.GetSize(), 9) << "changed without memory"; }),
              3);
    std::string left;
    for (int i = 0; i < strings.GetSize(); ++i) {
        left += Print(strings[i]) + '|';
    }
    EXPECT_EQ(left, "b|a||B|c|\xFF|");
}

TEST(StringConversionsTest, ADecimalCommaOfTheLocaleChangesNothing)
{
    struct LocaleReset
    {
        ~LocaleReset() { std::setlocale(LC_ALL, "C"); }
    } const reset;
    std::string folder = ::testing::TempDir() + "vorlane_locale_XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    std::string const makeLocale = "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >/dev/null 2>&1";
    int const status = std::system(makeLocale.c_str());
    setenv("LOCPATH", folder.c_str(), 1);
    bool const isSet = status == 0 && std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder);
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
