// Points in time as RFC 3339 writes them.
#include <foundation/json/chrono.hpp>

#include <foundation/json/detail/quoted.hpp>

namespace foundation::json::detail {

namespace {

constexpr long long seconds_per_day = 86400;
constexpr long long days_per_era = 146097; ///< of 400 years

// Years begin in March here, so that a leap day is the last one.

/// @return days since 1970-01-01
long long days_of(long long year, int month, int day) noexcept {
    year -= month <= 2 ? 1 : 0;
    const long long era = (year >= 0 ? year : year - 399) / 400;
    const long long year_of_era = year - era * 400;
    const long long day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * days_per_era + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 +
           day_of_year - 719468;
}

struct Date {
    long long year;
    int month;
    int day;
};

Date date_of(long long days) noexcept {
    days += 719468;
    const long long era = (days >= 0 ? days : days - (days_per_era - 1)) / days_per_era;
    const long long day_of_era = days - era * days_per_era;
    const long long year_of_era =
        (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / (days_per_era - 1)) /
        365;
    const long long day_of_year =
        day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const long long month = (5 * day_of_year + 2) / 153;
    const int day = static_cast<int>(day_of_year - (153 * month + 2) / 5 + 1);
    const int real_month = static_cast<int>(month < 10 ? month + 3 : month - 9);
    return {era * 400 + year_of_era + (real_month <= 2 ? 1 : 0), real_month, day};
}

void append_digits(std::string& text, long long number, std::size_t count) {
    const std::string digits = std::to_string(number);
    text.append(count - digits.size(), '0');
    text += digits;
}

constexpr bool is_leap(long long year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int days_of_month(long long year, int month) noexcept {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && is_leap(year) ? 29 : days[month - 1];
}

/// Takes the parts of a text from its begin.
class TimeReader {
public:
    explicit TimeReader(std::string_view text) noexcept : text_(text), rest_(text) {}

    TimeParts read() {
        const int year = digits(4, 0, 9999);
        require(take("-"));
        const int month = digits(2, 1, 12);
        require(take("-"));
        const int day = digits(2, 1, days_of_month(year, month));
        require(take("T") || take("t") || take(" "));
        const int hour = digits(2, 0, 23);
        require(take(":"));
        const int minute = digits(2, 0, 59);
        require(take(":"));
        const int second = digits(2, 0, 60);
        const long long nanoseconds = fraction();
        const long long seconds = days_of(year, month, day) * seconds_per_day + hour * 3600LL +
                                  minute * 60LL + second - offset();
        require(rest_.empty());
        return {seconds, nanoseconds};
    }

private:
    void require(bool condition) const {
        if (!condition) {
            throw std::invalid_argument(detail::quoted(text_) +
                                        " is no time such as \"2026-11-22T08:40:00Z\"");
        }
    }

    bool take(std::string_view expected) noexcept {
        const bool found = rest_.substr(0, expected.size()) == expected;
        rest_.remove_prefix(found ? expected.size() : 0);
        return found;
    }

    bool has_digit() const noexcept {
        return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
    }

    int digits(int count, int least, int most) {
        int number = 0;
        for (int i = 0; i < count; ++i) {
            require(has_digit());
            number = number * 10 + (rest_.front() - '0');
            rest_.remove_prefix(1);
        }
        require(number >= least && number <= most);
        return number;
    }

    /// Digits beyond nanoseconds are cut off.
    long long fraction() {
        if (!take(".")) {
            return 0;
        }
        require(has_digit());
        long long nanoseconds = 0;
        for (long long unit = 100000000; has_digit(); unit /= 10) {
            nanoseconds += unit * (rest_.front() - '0');
            rest_.remove_prefix(1);
        }
        return nanoseconds;
    }

    /// In seconds, east of Greenwich.
    long long offset() {
        if (take("Z") || take("z")) {
            return 0;
        }
        const bool is_west = take("-");
        require(is_west || take("+"));
        const int hours = digits(2, 0, 23);
        require(take(":"));
        const long long seconds = hours * 3600LL + digits(2, 0, 59) * 60LL;
        return is_west ? -seconds : seconds;
    }

    std::string_view text_;
    std::string_view rest_;
};

} // namespace

std::string time_text(TimeParts parts) {
    const long long days =
        (parts.seconds >= 0 ? parts.seconds : parts.seconds - (seconds_per_day - 1)) /
        seconds_per_day;
    const long long second_of_day = parts.seconds - days * seconds_per_day;
    const Date date = date_of(days);
    if (date.year < 0 || date.year > 9999) {
        throw std::out_of_range("the year " + std::to_string(date.year) +
                                " is not within 0 to 9999");
    }
    std::string text;
    append_digits(text, date.year, 4);
    text += '-';
    append_digits(text, date.month, 2);
    text += '-';
    append_digits(text, date.day, 2);
    text += 'T';
    append_digits(text, second_of_day / 3600, 2);
    text += ':';
    append_digits(text, second_of_day / 60 % 60, 2);
    text += ':';
    append_digits(text, second_of_day % 60, 2);
    if (parts.nanoseconds != 0) {
        text += '.';
        append_digits(text, parts.nanoseconds, 9);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text += 'Z';
}

TimeParts parse_time(std::string_view text) {
    return TimeReader(text).read();
}

void fail_time_range(std::string_view text) {
    throw std::out_of_range("the time " + detail::quoted(text) +
                            " is beyond the range of its type");
}

} // namespace foundation::json::detail
