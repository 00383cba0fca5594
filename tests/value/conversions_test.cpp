// Conversions of values to native types, and their errors.
#include "support/describe.hpp"
#include "support/locales.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <boost/numeric/conversion/cast.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace foundation::json {
namespace {

using test::Array;
using test::describe;
using test::Object;
using testing::ThrowsMessage;

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The result of a conversion, or the message of its std::runtime_error.
template <class Target>
std::string outcome(const Value& value) {
    try {
        return std::to_string(static_cast<Target>(value));
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(Conversion, IsExplicit) {
    static_assert(std::is_constructible_v<bool, const Value&>);
    static_assert(std::is_constructible_v<int, const Value&>);
    static_assert(!std::is_convertible_v<Value, bool>);
    static_assert(!std::is_convertible_v<Value, int>);
    static_assert(!std::is_convertible_v<Value, std::string>);

    const Value one(1);
    EXPECT_TRUE(one == 1) << "the operand becomes a Value, not the Value an int";
    EXPECT_TRUE(one < 2);
}

TEST(Conversion, FollowsTheKind) {
    struct Row {
        Value value;
        const char* to_bool;
        const char* to_int;
    };
    const Row rows[] = {
        {Undefined(), "invalid conversion: undefined to JSON boolean", "0"},
        {Null(), "invalid conversion: JSON null to JSON boolean", "0"},
        {true, "1", "1"},
        {false, "0", "0"},
        {7.0, "invalid conversion: JSON number to JSON boolean", "7"},
        {"7", "invalid conversion: JSON string to JSON boolean", "7"},
        {Array{1}, "invalid conversion: JSON array to JSON boolean",
         "invalid conversion: JSON array to int"},
        {Object{{"a", 1}}, "invalid conversion: JSON object to JSON boolean",
         "invalid conversion: JSON object to int"},
        {7.0f, "invalid conversion: float to JSON boolean", "invalid conversion: float to int"},
        {7LL, "invalid conversion: int64 to JSON boolean", "invalid conversion: int64 to int"},
        {7ULL, "invalid conversion: uint64 to JSON boolean", "invalid conversion: uint64 to int"},
    };
    for (const Row& row : rows) {
        const std::string before = describe(row.value);
        EXPECT_EQ(outcome<bool>(row.value), row.to_bool);
        EXPECT_EQ(outcome<int>(row.value), row.to_int);
        EXPECT_EQ(describe(row.value), before);
    }
}

TEST(Conversion, ToBoolAcceptsBooleansOnly) {
    const Value without_a_flag[] = {0.0, 1.0, "", "true", Array{}, Object{}, 0LL, 1ULL, 0.0f};
    for (const Value& value : without_a_flag) {
        EXPECT_THROW(static_cast<void>(static_cast<bool>(value)), std::runtime_error)
            << describe(value);
    }
}

TEST(Conversion, FromDoubleToIntTruncatesTowardZero) {
    struct Case {
        double number;
        int expected;
    };
    const double smallest = std::numeric_limits<double>::denorm_min();
    const Case cases[] = {
        {0.0, 0},
        {-0.0, 0},
        {smallest, 0},
        {-smallest, 0},
        {0.5, 0},
        {-0.5, 0},
        {0.999999999999, 0},
        {-0.999999999999, 0},
        {1.0, 1},
        {-1.0, -1},
        {3.99, 3},
        {-3.99, -3},
        {7.0, 7},
        {2147483646.5, 2147483646},
        {2147483647.0, 2147483647},
        {2147483647.9, 2147483647},
        {std::nextafter(2147483648.0, 0.0), 2147483647},
        {-2147483647.5, -2147483647},
        {-2147483648.0, -2147483647 - 1},
        {-2147483648.5, -2147483647 - 1},
        {-2147483648.9, -2147483647 - 1},
        {std::nextafter(-2147483649.0, 0.0), -2147483647 - 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(static_cast<int>(Value(c.number)), c.expected) << std::to_string(c.number);
    }
}

TEST(Conversion, FromNanToIntGivesTheLeastInt) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(static_cast<int>(Value(nan)), -2147483647 - 1);
    EXPECT_EQ(static_cast<int>(Value(-nan)), -2147483647 - 1);
}

TEST(Conversion, FromDoubleToIntOverflowsOneUnitBeyondTheRangeOfInt) {
    using boost::numeric::negative_overflow;
    using boost::numeric::positive_overflow;
    const double greatest = std::numeric_limits<double>::max();
    const auto to_int = [](double number) {
        return [number] { static_cast<void>(static_cast<int>(Value(number))); };
    };
    for (double number : {2147483648.0, 2147483648.5, 1e10, 1e300, greatest, infinity}) {
        EXPECT_THAT(to_int(number),
                    ThrowsMessage<positive_overflow>("bad numeric conversion: positive overflow"))
            << number;
    }
    for (double number : {-2147483649.0, -2147483649.5, -1e10, -1e300, -greatest, -infinity}) {
        EXPECT_THAT(to_int(number),
                    ThrowsMessage<negative_overflow>("bad numeric conversion: negative overflow"))
            << number;
    }
}

TEST(Conversion, OverflowsAreBadCastsAndNotRuntimeErrors) {
    static_assert(
        std::is_base_of_v<boost::numeric::bad_numeric_cast, boost::numeric::positive_overflow>);
    static_assert(std::is_base_of_v<std::bad_cast, boost::numeric::positive_overflow>);
    static_assert(std::is_base_of_v<std::bad_cast, boost::numeric::negative_overflow>);
    static_assert(!std::is_base_of_v<std::runtime_error, boost::numeric::positive_overflow>);
    static_assert(!std::is_base_of_v<std::runtime_error, boost::numeric::negative_overflow>);
}

TEST(Conversion, FromStringToIntReadsTheLeadingDecimalNumber) {
    struct Case {
        std::string text;
        int expected;
    };
    const int greatest = 2147483647;
    const int least = -2147483647 - 1;
    const Case cases[] = {
        // no number
        {"", 0},
        {" ", 0},
        {"  ", 0},
        {"\n", 0},
        {"abc", 0},
        {"x5", 0},
        {".5", 0},
        {",5", 0},
        {"e5", 0},
        {"true", 0},
        {"Infinity", 0},
        {"\"5\"", 0},
        {"(5)", 0},
        // digits
        {"0", 0},
        {"7", 7},
        {"42", 42},
        {"007", 7},
        {"010", 10},
        {"000000000000000000000000000000000007", 7},
        {std::string(1000, '0') + "8", 8},
        // signs
        {"+5", 5},
        {"-5", -5},
        {"-0", 0},
        {"+", 0},
        {"-", 0},
        {"- 5", 0},
        {"+ 5", 0},
        {"--5", 0},
        {"++5", 0},
        {"+-5", 0},
        {"-+5", 0},
        {"\xE2\x88\x92"
         "5",
         0}, // a minus sign that is not ASCII
        // leading blanks are skipped
        {" 5", 5},
        {"\t\n\v\f\r 5", 5},
        {"  -12xyz", -12},
        {"\xC2\xA0"
         "5",
         0}, // a no-break space is no blank
        {"\b5", 0},
        // the rest is ignored
        {"42abc", 42},
        {"42 43", 42},
        {"4.9", 4},
        {"-4.9", -4},
        {"1e3", 1},
        {"1E3", 1},
        {"0x1F", 0},
        {"0b1", 0},
        {"-0x1F", 0},
        {"1,234", 1},
        {"1'234", 1},
        {"1_000", 1},
        {"1-2", 1},
        {"5%", 5},
        {"12\xC3\xA9", 12},
        // zero bytes are neither digits nor blanks
        {std::string("12\0"
                     "34",
                     5),
         12},
        {std::string("\0"
                     "12",
                     3),
         0},
        {std::string(1, '\0'), 0},
        // the limits
        {"2147483646", 2147483646},
        {"2147483647", greatest},
        {"2147483648", greatest},
        {"4294967296", greatest},
        {"4294967301", greatest},
        {"9223372036854775808", greatest},
        {"18446744073709551616", greatest},
        {"99999999999999999999999999", greatest},
        {std::string(1000, '9'), greatest},
        {"2147483648abc", greatest},
        {"-2147483647", -2147483647},
        {"-2147483648", least},
        {"-2147483649", least},
        {"-4294967297", least},
        {"-99999999999999999999999999", least},
        {"-" + std::string(1000, '9'), least},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(static_cast<int>(Value(c.text)), c.expected) << '"' << c.text << '"';
    }
}

TEST(Conversion, FromStringToIntFollowsTheCurrentGlobalLocale) {
    const Value grouped("1'234'567");
    EXPECT_EQ(static_cast<int>(grouped), 1);
    {
        const test::ScopedGlobalLocale locale(test::grouping_locale("\3"));
        EXPECT_EQ(static_cast<int>(grouped), 1234567);
    }
    EXPECT_EQ(static_cast<int>(grouped), 1);
}

} // namespace
} // namespace foundation::json
