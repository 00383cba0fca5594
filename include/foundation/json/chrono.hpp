/// @file
/// Times of std::chrono in JSON: points in time as strings of RFC 3339, durations as numbers. No
/// other header includes this one.
///
///     struct Event {
///         std::chrono::system_clock::time_point at; // "2026-11-22T08:40:00.25Z"
///         std::chrono::milliseconds took{};         // 1500
///     };
///
/// A time point of std::chrono::system_clock is written in UTC, with as many digits of the
/// fraction of a second as are needed. It is read with any offset from UTC, from the year 0 to
/// 9999, and rounded down to what its type can hold; a point in time beyond its range is an error.
/// A leap second, with the second 60, is read as the second after it.
///
/// A duration is the number of its periods: 1500 for 1500 milliseconds.
///
/// Include this header before a table of members that has such types is used.
#ifndef FOUNDATION_JSON_CHRONO_HPP
#define FOUNDATION_JSON_CHRONO_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/members.hpp>

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

namespace foundation::json {

/// @cond
namespace detail {

/// A point in time: whole seconds since 1970, and nanoseconds since then, below 10^9.
struct TimeParts {
    long long seconds;
    long long nanoseconds;
};

/// As RFC 3339 writes it, in UTC.
/// @throws std::out_of_range  the year is not within 0 to 9999
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string time_text(TimeParts parts);

/// @throws std::invalid_argument  the text is no time of RFC 3339
[[nodiscard]] FOUNDATION_JSON_EXPORT TimeParts parse_time(std::string_view text);

/// @throws std::out_of_range  always
[[noreturn]] FOUNDATION_JSON_EXPORT void fail_time_range(std::string_view text);

} // namespace detail
/// @endcond

/// A point in time as a string of RFC 3339.
template <class Duration>
struct representation<std::chrono::time_point<std::chrono::system_clock, Duration>> {
    using TimePoint = std::chrono::time_point<std::chrono::system_clock, Duration>; ///< that type

    /// The time in UTC, such as "2026-11-22T10:00:00Z".
    /// @throws std::out_of_range  the year is not within 0 to 9999
    static std::string to(const TimePoint& time) {
        using std::chrono::floor;
        using std::chrono::nanoseconds;
        using std::chrono::seconds;
        constexpr long double limit = 1e12L; // seconds, beyond the year 9999
        const std::chrono::duration<long double> wide = time.time_since_epoch();
        if (!(wide.count() > -limit && wide.count() < limit)) {
            throw std::out_of_range("the year is not within 0 to 9999");
        }
        const auto whole = floor<seconds>(time.time_since_epoch());
        const auto rest = std::chrono::duration_cast<nanoseconds>(time.time_since_epoch() - whole);
        return detail::time_text({whole.count(), rest.count()});
    }

    /// The time that a string states.
    /// @throws std::invalid_argument  the string is not a time of RFC 3339
    /// @throws std::out_of_range      the type cannot hold it
    static TimePoint from(const std::string& text) {
        using std::chrono::nanoseconds;
        using std::chrono::seconds;
        const detail::TimeParts parts = detail::parse_time(text);
        using Wide = std::chrono::duration<long double, typename Duration::period>;
        const Wide wide = seconds(parts.seconds);
        if (wide < Wide((Duration::min)()) || wide >= Wide((Duration::max)()) - Wide(seconds(1))) {
            detail::fail_time_range(text);
        }
        const auto whole = std::chrono::floor<Duration>(seconds(parts.seconds));
        const auto lost = std::chrono::duration_cast<nanoseconds>(seconds(parts.seconds) - whole);
        return TimePoint(whole +
                         std::chrono::floor<Duration>(lost + nanoseconds(parts.nanoseconds)));
    }
};

/// A duration as the number of its periods.
template <class Rep, class Period>
struct representation<std::chrono::duration<Rep, Period>> {
    /// The number of periods.
    static Rep to(const std::chrono::duration<Rep, Period>& duration) { return duration.count(); }

    /// The duration of so many periods.
    static std::chrono::duration<Rep, Period> from(Rep count) {
        return std::chrono::duration<Rep, Period>(count);
    }
};

} // namespace foundation::json

#endif
