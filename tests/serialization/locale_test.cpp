/// @file
/// Which locale affects which text: the stream's C++ locale affects 64-bit integers and the digits
/// of escapes, the process's C locale affects doubles and floats.
#include "support/locales.hpp"
#include "support/write_as.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <ios>
#include <locale>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace foundation::json {
namespace {

using test::grouping_locale;
using test::Layout;
using test::ScopedCLocale;
using test::ScopedGlobalLocale;
using test::write;

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

/// The text of a value on a stream of that locale.
std::string written(const Value& value, const std::locale& locale,
                    Layout layout = Layout::compact) {
    std::ostringstream stream;
    stream.imbue(locale);
    write(stream, value, layout);
    EXPECT_EQ(stream.getloc(), locale);
    return stream.str();
}

Value every_kind() {
    return Array{Undefined(), Null(),           true,       1234567,    0.5,       "1234567",
                 Array{},     Object{{"k", 0}}, 1234567.0f, -1234567LL, 1234567ULL};
}

// ---- The locale of a stream ----------------------------------------------------------------

struct GroupedByThree : std::numpunct<char> {
    char do_thousands_sep() const override { return '_'; }
    std::string do_grouping() const override { return "\3"; }
};

struct WidensLineFeed : std::ctype<char> {
    char do_widen(char byte) const override { return byte == '\n' ? '|' : byte; }
    const char* do_widen(const char* from, const char* end, char* to) const override {
        std::transform(from, end, to, [this](char byte) { return do_widen(byte); });
        return end;
    }
};

struct WritesStars : std::num_put<char> {
    iter_type do_put(iter_type at, std::ios_base&, char, long) const override {
        *at++ = '*';
        return at;
    }
    iter_type do_put(iter_type at, std::ios_base&, char, long long) const override {
        *at++ = '*';
        return at;
    }
};

/// The classic locale with another facet. Such a locale may keep the name of the classic one, and
/// locales are compared by their names.
template <class Facet, class Own>
std::locale classic_but() {
    const std::locale& classic = std::locale::classic();
    return classic.combine<Facet>(std::locale(classic, new Own));
}

TEST(StreamLocale, HasEffectByItsFacetsWhateverItsName) {
    EXPECT_EQ(written(Array{1234567LL}, classic_but<std::numpunct<char>, GroupedByThree>()),
              "[1_234_567]");
    EXPECT_EQ(written(Array{1234567LL}, classic_but<std::num_put<char>, WritesStars>()), "[*]");
    EXPECT_EQ(written(Array{1LL}, classic_but<std::ctype<char>, WidensLineFeed>(), Layout::pretty),
              "[|    1|]");
}

TEST(GlobalLocale, HasEffectByItsFacetsWhateverItsName) {
    {
        const ScopedGlobalLocale global(classic_but<std::numpunct<char>, GroupedByThree>());
        EXPECT_EQ(serialize(Array{1234567LL}), "[1_234_567]");
    }
    {
        const ScopedGlobalLocale global(classic_but<std::num_put<char>, WritesStars>());
        EXPECT_EQ(serialize(Array{1234567LL}), "[*]");
    }
    {
        const ScopedGlobalLocale global(classic_but<std::ctype<char>, WidensLineFeed>());
        EXPECT_EQ(pretty_print(Array{1LL}), "[|    1|]");
    }
}

TEST(StreamLocale, GroupsTheDigitsOfSixtyFourBitIntegers) {
    struct Case {
        Value value;
        const char* text;
    };
    const Case cases[] = {
        {0LL, "0"},
        {999LL, "999"},
        {1000LL, "1'000"},
        {-1000LL, "-1'000"},
        {1234567ULL, "1'234'567"},
        {LLONG_MIN, "-9'223'372'036'854'775'808"},
        {ULLONG_MAX, "18'446'744'073'709'551'615"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(written(value, grouping_locale("\3")), text);
    }
}

TEST(StreamLocale, LeavesAllOtherKindsAlone) {
    EXPECT_EQ(written(every_kind(), grouping_locale("\3")),
              R"([,null,true,1.234567E+6,0.5,"1234567",[],{"k":0},1.234567E+6,)"
              R"(-1'234'567,1'234'567])");
}

TEST(StreamLocale, AffectsPrettyText) {
    EXPECT_EQ(written(Object{{"n", Array{1000LL, 0.5}}}, grouping_locale("\3"), Layout::pretty),
              "{\n"
              "    \"n\":[\n"
              "        1'000,\n"
              "        0.5\n"
              "    ]\n"
              "}");
}

TEST(StreamLocale, HasEffectTogetherWithTheFlagsOfTheStream) {
    std::ostringstream stream;
    stream.imbue(grouping_locale("\3"));
    stream << std::hex;
    write(stream, Array{0xFFFFFLL, 0xFFFULL});
    EXPECT_EQ(stream.str(), "[ff'fff,fff]");

    std::ostringstream padded;
    padded.imbue(grouping_locale("\3"));
    padded << std::internal;
    padded.width(12);
    padded.fill('*');
    write(padded, -1234567LL);
    EXPECT_EQ(padded.str(), "-**1'234'567");
}

TEST(StreamLocale, GroupsTheDigitsOfEscapes) {
    EXPECT_EQ(written("\x01\x1F", grouping_locale("\1")), R"("\u0001\u01'f")");
    EXPECT_EQ(written("\x01\x1F", grouping_locale("\3")), R"("\u0001\u001f")");
}

TEST(StreamLocale, IsTheOneAtTheTimeOfTheWrite) {
    std::ostringstream stream;
    write(stream, 1000LL);
    stream.imbue(grouping_locale("\3"));
    write(stream, 1000LL);
    stream.imbue(std::locale::classic());
    write(stream, 1000LL);
    EXPECT_EQ(stream.str(), "10001'0001000");
}

/// Widens line feeds and sevens to something else.
class OddCharacters : public std::ctype<char> {
protected:
    char do_widen(char c) const override { return c == '\n' ? '|' : c == '7' ? '#' : c; }

    const char* do_widen(const char* first, const char* last, char* to) const override {
        for (; first != last; ++first, ++to) {
            *to = do_widen(*first);
        }
        return last;
    }
};

TEST(StreamLocale, WidensLineEndsAndDigits) {
    const std::locale locale(std::locale::classic(), new OddCharacters);
    EXPECT_EQ(written(Array{1, Array{}}, locale, Layout::pretty), "[|    1,|    [    ]|]");
    EXPECT_EQ(written(Array{177LL, 7ULL}, locale), "[1##,#]");
    EXPECT_EQ(written("\x07\x17", locale), R"("\u000#\u001#")");
    EXPECT_EQ(written(Array{7, 0.7f, "7\n"}, locale), R"([7,0.7,"7\n"])");
}

/// Formats no integer, but writes a word instead.
class WordsForIntegers : public std::num_put<char> {
protected:
    iter_type do_put(iter_type out, std::ios_base& stream, char, long) const override {
        return put_word(out, stream, "<long>");
    }
    iter_type do_put(iter_type out, std::ios_base& stream, char, long long) const override {
        return put_word(out, stream, "<long long>");
    }
    iter_type do_put(iter_type out, std::ios_base& stream, char,
                     unsigned long long) const override {
        return put_word(out, stream, "<unsigned long long>");
    }

private:
    static iter_type put_word(iter_type out, std::ios_base& stream, const std::string& word) {
        stream.width(0);
        for (const char c : word) {
            *out++ = c;
        }
        return out;
    }
};

TEST(StreamLocale, FormatsIntegersWithItsOwnFacet) {
    const std::locale locale(std::locale::classic(), new WordsForIntegers);
    EXPECT_EQ(written(Array{1LL, 1ULL, 1, 1.5f}, locale),
              "[<long long>,<unsigned long long>,1,1.5]");
    EXPECT_EQ(written("a\x01", locale), R"("a\u<long>")");
}

// ---- The global C++ locale -----------------------------------------------------------------

TEST(GlobalLocale, AffectsIntegersInSerialize) {
    const ScopedGlobalLocale global(grouping_locale("\3"));
    EXPECT_EQ(serialize(1234567LL), "1'234'567");
    EXPECT_EQ(serialize(1234567ULL), "1'234'567");
    EXPECT_EQ(pretty_print(Array{-1000LL}), "[\n    -1'000\n]");
    EXPECT_EQ(serialize(every_kind()),
              R"([,null,true,1.234567E+6,0.5,"1234567",[],{"k":0},1.234567E+6,)"
              R"(-1'234'567,1'234'567])");
}

TEST(GlobalLocale, AffectsEscapesInStrings) {
    const ScopedGlobalLocale global(grouping_locale("\1"));
    EXPECT_EQ(serialize("\x1F"), R"("\u01'f")");
}

TEST(GlobalLocale, HasNoEffectOnceReplaced) {
    {
        const ScopedGlobalLocale global(grouping_locale("\3"));
        EXPECT_EQ(serialize(1000LL), "1'000");
    }
    EXPECT_EQ(serialize(1000LL), "1000");
}

TEST(GlobalLocale, DoesNotAffectAStreamOfAnotherLocale) {
    std::ostringstream made_before;
    const ScopedGlobalLocale global(grouping_locale("\3"));
    write(made_before, 1000LL);
    EXPECT_EQ(made_before.str(), "1000");
    EXPECT_EQ(written(1000LL, std::locale::classic()), "1000");
    std::ostringstream made_since;
    write(made_since, 1000LL);
    EXPECT_EQ(made_since.str(), "1'000");
}

TEST(GlobalLocale, OfAGermanProcessHasPointsBetweenThousandsAndADecimalComma) {
    const ScopedGlobalLocale global(std::locale("de_DE.UTF-8"));
    EXPECT_EQ(serialize(1234567LL), "1.234.567");
    EXPECT_EQ(serialize(1234567ULL), "1.234.567");
    EXPECT_EQ(serialize(0.5), "0,5");
    EXPECT_EQ(pretty_print(Array{1234567LL, 0.5}), "[\n    1.234.567,\n    0,5\n]");
}

// ---- The C locale --------------------------------------------------------------------------

// With a radix character other than a point, the text of a fraction never reads back, so that the
// larger precision is used. In exponent notation, the code that removes trailing zeros does not
// know this radix character, and removes all zeros behind it.

TEST(CLocale, GovernsDoubles) {
    const ScopedCLocale german(LC_NUMERIC, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    struct Case {
        double number;
        const char* text;
    };
    const Case cases[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {3.0, "3"},
        {-7.0, "-7"},
        {999999.0, "999999"},
        {0.1, "0,10000000000000001"},
        {-0.1, "-0,10000000000000001"},
        {0.3, "0,29999999999999999"},
        {0.5, "0,5"},
        {1.5, "1,5"},
        {0.1 + 0.2, "0,30000000000000004"},
        {999999.5, "999999,5"},
        {std::nextafter(1e6, 0.0), "999999,99999999988"},
        {1e-5, "1E-5"},
        {1e-100, "1E-100"},
        {1.5e-5, "1,5E-5"},
        {-2.5e-5, "-2,5000000000000001E-5"},
        {5e-324, "4,9406564584124654E-324"},
        {1e6, "1,E+6"},
        {-1e6, "-1,E+6"},
        {2000000.0, "2,E+6"},
        {1.5e6, "1,5E+6"},
        {1010000.0, "1,01E+6"},
        {1234567.0, "1,234567E+6"},
        {1e7, "1,E+7"},
        {12345678.9, "1,23456789E+7"},
        {1e22, "1,E+22"},
        {1e23, "9,9999999999999992E+22"},
        {1e100, "1,E+100"},
        {9007199254740992.0, "9,007199254740992E+15"},
        {DBL_MAX, "1,7976931348623157E+308"},
        {HUGE_VAL, "\"Inf\""},
        {-HUGE_VAL, "\"-Inf\""},
        {std::nan(""), "\"NaN\""},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(serialize(number), text);
        EXPECT_EQ(written(number, std::locale::classic()), text);
    }
}

TEST(CLocale, GovernsFloats) {
    const ScopedCLocale german(LC_NUMERIC, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    struct Case {
        float number;
        const char* text;
    };
    const Case cases[] = {
        {0.0f, "0"},
        {-0.0f, "-0"},
        {3.0f, "3"},
        {999999.0f, "999999"},
        {0.1f, "0,100000001"},
        {-0.1f, "-0,100000001"},
        {0.5f, "0,5"},
        {999999.5f, "999999,5"},
        {1e-5f, "1E-5"},
        {-2.5e-5f, "-2,49999994E-5"},
        {FLT_MIN, "1,17549435E-38"},
        {1e6f, "1,E+6"},
        {2.5e6f, "2,5E+6"},
        {16777216.0f, "1,6777216E+7"},
        {1e10f, "1,E+10"},
        {1e38f, "9,99999968E+37"},
        {std::nextafter(FLT_MAX, 0.0f), "3,40282326E+38"},
        {FLT_MAX, "3,402823466E+38"},
        {-FLT_MAX, "-3,402823466E+38"},
        {HUGE_VALF, "\"Inf\""},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(serialize(number), text);
        EXPECT_EQ(written(number, std::locale::classic()), text);
    }
}

TEST(CLocale, GovernsNumbersIfAllCategoriesAreSetToo) {
    const ScopedCLocale german(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    EXPECT_EQ(serialize(Array{0.1, 1e6, 0.1f, 1e6f, 2000000}),
              "[0,10000000000000001,1,E+6,0,100000001,1,E+6,2,E+6]");
}

TEST(CLocale, GovernsNumbersWithinContainersOnStreamsToo) {
    const ScopedCLocale german(LC_NUMERIC, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    EXPECT_EQ(written(Array{0.1, 1e6, 0.1f, 1e6f}, std::locale::classic()),
              "[0,10000000000000001,1,E+6,0,100000001,1,E+6]");
    EXPECT_EQ(written(Object{{"half", 0.5}}, std::locale::classic(), Layout::pretty),
              "{\n    \"half\":0,5\n}");
}

TEST(CLocale, LeavesIntegersAndStringsAlone) {
    const ScopedCLocale german(LC_ALL, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    EXPECT_EQ(serialize(Array{1234567LL, 1234567ULL, "1.5\x1F\xC3\xA9"}),
              "[1234567,1234567,\"1.5\\u001f\xC3\xA9\"]");
}

TEST(CLocale, HasNoEffectOnceReplaced) {
    {
        const ScopedCLocale german(LC_NUMERIC, "de_DE.UTF-8");
        ASSERT_TRUE(german.succeeded());
        EXPECT_EQ(serialize(0.5), "0,5");
    }
    EXPECT_EQ(serialize(0.5), "0.5");
    EXPECT_EQ(serialize(1e6), "1.0E+6");
}

TEST(CLocale, IsLeftAsItWas) {
    const ScopedCLocale german(LC_NUMERIC, "de_DE.UTF-8");
    ASSERT_TRUE(german.succeeded());
    const std::string before = std::setlocale(LC_ALL, nullptr);
    static_cast<void>(serialize(Array{0.1, 1e6f, 1LL, "x\x01"}));
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    EXPECT_EQ(std::locale(), std::locale::classic());
}

} // namespace
} // namespace foundation::json
