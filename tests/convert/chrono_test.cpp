// Points in time and durations.
#include "convert/conversion_error.hpp"
#include "support/random_trees.hpp"

#include <foundation/json/chrono.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/write.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace foundation::json {
namespace {

using std::chrono::system_clock;
using test::conversion_error;
using Seconds = std::chrono::time_point<system_clock, std::chrono::seconds>;
using Nanoseconds = std::chrono::time_point<system_clock, std::chrono::nanoseconds>;
using Days = std::chrono::time_point<system_clock, std::chrono::duration<int, std::ratio<86400>>>;

template <class Time>
std::string read_and_written(const char* text) {
    return write(to<Time>(Value(text)));
}

TEST(Chrono, WritesTimesInUtc) {
    const struct {
        long long seconds;
        const char* text;
    } rows[] = {
        {0, "\"1970-01-01T00:00:00Z\""},
        {1795336800, "\"2026-11-22T08:40:00Z\""},
        {-1, "\"1969-12-31T23:59:59Z\""},
        {951782400, "\"2000-02-29T00:00:00Z\""},
        {-2203891200, "\"1900-03-01T00:00:00Z\""},
        {-62167219200, "\"0000-01-01T00:00:00Z\""},
        {253402300799, "\"9999-12-31T23:59:59Z\""},
    };
    for (const auto& [seconds, text] : rows) {
        const Seconds time{std::chrono::seconds(seconds)};
        EXPECT_EQ(write(time), text);
        EXPECT_EQ(to<Seconds>(from(time)), time);
    }
}

TEST(Chrono, WritesAsManyDigitsAsAreNeeded) {
    EXPECT_EQ(write(Nanoseconds(std::chrono::nanoseconds(1))),
              "\"1970-01-01T00:00:00.000000001Z\"");
    EXPECT_EQ(write(Nanoseconds(std::chrono::milliseconds(-1))), "\"1969-12-31T23:59:59.999Z\"");
    EXPECT_EQ(write(Days(std::chrono::duration<int, std::ratio<86400>>(1))),
              "\"1970-01-02T00:00:00Z\"");
}

TEST(Chrono, ReadsAnyOffsetAndRoundsDown) {
    const struct {
        const char* text;
        const char* seconds;
        const char* days;
    } rows[] = {
        {"2024-02-29T00:00:00+05:30", "\"2024-02-28T18:30:00Z\"", "\"2024-02-28T00:00:00Z\""},
        {"2024-02-29t23:00:00-01:30", "\"2024-03-01T00:30:00Z\"", "\"2024-03-01T00:00:00Z\""},
        {"1969-12-31 23:59:59.9999z", "\"1969-12-31T23:59:59Z\"", "\"1969-12-31T00:00:00Z\""},
        {"2016-12-31T23:59:60Z", "\"2017-01-01T00:00:00Z\"", "\"2017-01-01T00:00:00Z\""},
    };
    for (const auto& [text, seconds, days] : rows) {
        EXPECT_EQ(read_and_written<Seconds>(text), seconds);
        EXPECT_EQ(read_and_written<Days>(text), days);
    }
    EXPECT_EQ(read_and_written<Nanoseconds>("1970-01-01T00:00:00.1234567899Z"),
              "\"1970-01-01T00:00:00.123456789Z\"");
}

TEST(Chrono, RefusesWhatIsNoTime) {
    for (const char* const text :
         {"", "2026-11-22", "2026-11-22T08:40Z", "2026-11-22T08:40:00", "2026-11-22T08:40:00.Z",
          "2026-11-22T24:00:00Z", "2026-11-22T08:60:00Z", "2026-11-22T08:40:61Z",
          "2026-13-22T08:40:00Z", "2026-00-22T08:40:00Z", "2026-11-31T08:40:00Z",
          "2026-11-00T08:40:00Z", "2023-02-29T00:00:00Z", "1900-02-29T00:00:00Z",
          "2026-11-22T08:40:00Z ", "2026-11-22T08:40:00+24:00", "2026-11-22T08:40:00+0100",
          "+026-11-22T08:40:00Z", "12026-11-22T08:40:00Z"}) {
        EXPECT_EQ(conversion_error([&] { static_cast<void>(to<Seconds>(Value(text))); }),
                  "at the root: \"" + std::string(text) +
                      "\" is no time such as \"2026-11-22T08:40:00Z\"");
    }
}

TEST(Chrono, RefusesWhatItsTypeCannotHold) {
    for (const char* const text : {"1677-09-21T00:12:43Z", "2262-04-11T23:47:17Z",
                                   "0000-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        EXPECT_EQ(conversion_error([&] { static_cast<void>(to<Nanoseconds>(Value(text))); }),
                  "at the root: the time \"" + std::string(text) +
                      "\" is beyond the range of its type");
    }
    EXPECT_EQ(read_and_written<Nanoseconds>("1677-09-21T00:12:44Z"), "\"1677-09-21T00:12:44Z\"");
    EXPECT_EQ(read_and_written<Nanoseconds>("2262-04-11T23:47:15Z"), "\"2262-04-11T23:47:15Z\"");
    const auto written = [](auto time) {
        return conversion_error([&] { static_cast<void>(write(time)); });
    };
    EXPECT_EQ(written(Seconds(std::chrono::seconds(253402300800))),
              "at the root: the year 10000 is not within 0 to 9999");
    EXPECT_EQ(written(Seconds(std::chrono::seconds(-62167219201))),
              "at the root: the year -1 is not within 0 to 9999");
    using Real = std::chrono::time_point<system_clock, std::chrono::duration<double>>;
    for (const double count : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(written(Real(std::chrono::duration<double>(count))),
                  "at the root: the year is not within 0 to 9999");
    }
}

TEST(RandomChrono, ReadsBackWhatItWrites) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    constexpr long long first = -62167219200; // of the year 0
    constexpr long long last = 253402300799;  // of the year 9999
    std::uniform_int_distribution<std::uint64_t> seconds(0, last - first);
    for (int i = 0; i < 10000 && !HasFailure(); ++i) {
        const Seconds time{std::chrono::seconds(first + static_cast<long long>(seconds(random)))};
        EXPECT_EQ(to<Seconds>(from(time)), time);
    }
}

TEST(Chrono, MakesNumbersOfDurations) {
    EXPECT_EQ(write(std::chrono::milliseconds(1500)), "1500");
    EXPECT_EQ(write(std::chrono::duration<double>(0.25)), "0.25");
    EXPECT_EQ(to<std::chrono::hours>(Value(7)), std::chrono::hours(7));
    EXPECT_EQ(conversion_error([] { static_cast<void>(to<std::chrono::hours>(Value(7.5))); }),
              "at the root: 7.5 is not a whole number");
}

} // namespace
} // namespace foundation::json
