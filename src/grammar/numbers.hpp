/// @file
/// The numbers of a text.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_NUMBERS_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_NUMBERS_HPP

#include "number/decimal.hpp"
#include "system/compiler.hpp"
#include "text/byte_block.hpp"
#include "text/characters.hpp"
#include "text/words.hpp"

#include <foundation/json/detail/number_parts.hpp>
#include <foundation/json/parse_errors.hpp>

#include <cstdint>

namespace foundation::json::detail {

/// A number as it stands in a text.
struct NumberToken {
    const char* end;   ///< the byte behind it, or the first byte that cannot continue it
    ParseResult error; ///< NO_PARSE_ERROR, or what is wrong at the end
    bool negative;
    bool whole;        ///< written without point and exponent
    Decimal magnitude; ///< only if there is no error
};

constexpr std::ptrdiff_t digits_at_once = 8;

/// The number of digits at the start of a word of text, whose first byte is its lowest.
constexpr std::ptrdiff_t leading_digits(std::uint64_t word) noexcept {
    constexpr std::uint64_t every = 0x0101010101010101;
    const std::uint64_t amounts = word ^ every * '0'; // 0 to 9 for digits
    const std::uint64_t others =
        (((amounts & every * 0x7F) + every * 0x76) | amounts) & every * 0x80;
    return others == 0 ? digits_at_once : trailing_zeros(others) / 8;
}

/// Appends the digits at the start of a word of text to a number, modulo 2^64.
/// @return their count, at most digits_at_once
inline std::ptrdiff_t scan_eight_digits(const char* from, std::uint64_t& number) noexcept {
    const std::uint64_t word = load_first_lowest(from);
    const std::ptrdiff_t count = leading_digits(word);
    if (count != 0) {
        // The shift puts zeros before fewer than eight digits.
        number = number * small_powers_of_10[static_cast<int>(count)] +
                 eight_digits(word << (64 - 8 * count));
    }
    return count;
}

/// Appends the digits at the start of a text to a number, modulo 2^64.
/// @return the place behind the last of them
inline const char* scan_digits(const char* from, const char* end, std::uint64_t& number) noexcept {
    while (end - from >= digits_at_once) {
        const std::ptrdiff_t count = scan_eight_digits(from, number);
        from += count;
        if (count != digits_at_once) {
            return from;
        }
    }
    while (from != end && is_digit(*from)) {
        number = number * 10 + static_cast<std::uint64_t>(*from - '0');
        ++from;
    }
    return from;
}

/// Reads the exponent of a number.
/// @param from  at its 'e' or 'E'
const char* scan_exponent(const char* from, const char* end, NumberToken& token) noexcept;

/// The leading digits of a number that has more than 64 bits hold.
/// @param exponent  that of its last digit
Decimal leading_digits(const char* from, const char* end, std::int64_t exponent) noexcept;

/// Reads a number.
/// @param from  at a minus sign or a digit
inline NumberToken scan_number(const char* from, const char* end) noexcept {
    NumberToken token{from, NO_PARSE_ERROR, *from == '-', true, {0, 0, false}};
    const auto fail = [&token](const char* place, ParseResult error) {
        token.end = place;
        token.error = error;
        return token;
    };
    const char* const first = from + (token.negative ? 1 : 0);
    std::uint64_t digits = 0;
    const char* place = scan_digits(first, end, digits);
    if (place == first) {
        return fail(place, MISSING_QUANTITY_AFTER_SIGN);
    }
    if (*first == '0' && place - first > 1) {
        return fail(first + 1, MISSING_LEADING_DIGIT);
    }
    std::ptrdiff_t count = place - first;
    if (place != end && *place == '.') {
        const char* const fraction = place + 1;
        place = scan_digits(fraction, end, digits);
        if (place == fraction) {
            return fail(place, INVALID_FRACTION);
        }
        token.whole = false;
        token.magnitude.exponent = fraction - place;
        count += place - fraction;
    }
    const char* const last = place;
    if (place != end && (*place == 'e' || *place == 'E')) {
        place = scan_exponent(place, end, token);
    }
    token.end = place;
    token.magnitude.digits = digits;
    if (count > Decimal::most_digits) {
        token.magnitude = leading_digits(first, last, token.magnitude.exponent);
    }
    return token;
}

/// A number of few digits, at most 19, and without an exponent.
struct UsualNumber {
    const char* end; ///< the place behind it; null for any other number
    std::uint64_t digits;
    int exponent; ///< to base 10, at most 0
};

/// The most bytes that scan_usual_number() looks at.
constexpr std::ptrdiff_t usual_number_room = 5 * digits_at_once + 2;

/// Appends the digits at the start of a text, at most Times times eight of them.
template <int Times>
[[gnu::always_inline]] inline const char* scan_few_times(const char* from,
                                                         std::uint64_t& number) noexcept {
    for (int i = 0; i != Times; ++i) {
        const std::ptrdiff_t count = scan_eight_digits(from, number);
        from += count;
        if (count != digits_at_once) {
            break;
        }
    }
    return from;
}

/// Reads a number without its sign, if it has few digits and no exponent.
[[gnu::always_inline]] inline UsualNumber scan_usual_number(const char* from) noexcept {
    constexpr UsualNumber unusual{nullptr, 0, 0};
    std::uint64_t digits = 0;
    const char* place = scan_few_times<3>(from, digits);
    std::ptrdiff_t count = place - from;
    if (count == 0 || count > Decimal::most_digits || (*from == '0' && count > 1)) {
        return unusual;
    }
    int exponent = 0;
    if (*place == '.') {
        const char* const fraction = place + 1;
        place = scan_few_times<2>(fraction, digits);
        const std::ptrdiff_t decimals = place - fraction;
        count += decimals;
        exponent = static_cast<int>(-decimals);
        if (decimals == 0 || count > Decimal::most_digits) {
            return unusual;
        }
    }
    const bool goes_on = is_digit(*place) || *place == 'e' || *place == 'E';
    return goes_on ? unusual : UsualNumber{place, digits, exponent};
}

/// The most bytes that skip_usual_number() looks at.
constexpr std::ptrdiff_t skipped_number_room = 6 * digits_at_once + 1;

/// Skips up to so many times eight digits.
template <int Times>
[[gnu::always_inline]] inline const char* skip_digits(const char* from) noexcept {
    for (int i = 0; i != Times; ++i) {
        const std::ptrdiff_t count = leading_digits(load_first_lowest(from));
        from += count;
        if (count != digits_at_once) {
            break;
        }
    }
    return from;
}

/// Finds the end of a number without its sign, if it has few digits and no exponent, and so is not
/// too large.
/// @return null for any other number
[[gnu::always_inline]] inline const char* skip_usual_number(const char* from) noexcept {
    const char* at = skip_digits<3>(from);
    if (at == from || (*from == '0' && at - from > 1)) {
        return nullptr;
    }
    if (*at == '.') {
        const char* const fraction = at + 1;
        at = skip_digits<3>(fraction);
        if (at == fraction) {
            return nullptr;
        }
    }
    return continues_number(*at) ? nullptr : at;
}

/// A double holds each whole number up to this exactly.
constexpr std::uint64_t largest_exact = std::uint64_t{1} << 53;

/// Reads a number without its sign, of few digits and without exponent.
/// @return the place behind it; null if it is another number
[[gnu::noinline]] inline const char* read_usual_number(const char* from, double& number) noexcept {
    const UsualNumber token = scan_usual_number(from);
    if (token.end == nullptr) {
        return nullptr;
    }
    if (token.exponent == 0 || token.digits == 0) {
        if (token.digits > largest_exact) {
            return nullptr;
        }
        number = static_cast<double>(static_cast<std::int64_t>(token.digits));
    } else if (nearest_normal(token.digits, token.exponent, number) != Rounding::decided) {
        return nullptr;
    }
    return token.end;
}

/// The inverse of an odd number modulo 2^64.
constexpr std::uint64_t inverse_of_odd(std::uint64_t odd) noexcept {
    std::uint64_t inverse = odd; // right in three bits; each round doubles their number
    for (int i = 0; i != 5; ++i) {
        inverse *= 2 - odd * inverse;
    }
    return inverse;
}

/// 5^16
constexpr std::uint64_t power_of_5 = small_powers_of_10[16] >> 16;

/// The same, for a number that most likely has one to three digits before the point and at most
/// sixteen behind it.
[[gnu::always_inline]] inline const char* read_short_number(const char* from,
                                                            double& number) noexcept {
    const auto digit = [](char byte) {
        return static_cast<unsigned>(static_cast<unsigned char>(byte)) - '0';
    };
    // One by one, since the processor predicts well how many there are.
    std::uint64_t digits = digit(*from);
    const char* at = from + 1;
    if (digits > 9) {
        return nullptr;
    }
    for (int i = 1; i != 3 && is_digit(*at); ++i) {
        digits = digits * 10 + digit(*at);
        ++at;
    }
    if (*at != '.' || (*from == '0' && at - from > 1)) {
        return read_usual_number(from, number);
    }
    const Block fraction = Block(at + 1).digit_values();
    const auto others = fraction.not_digit_values();
    const std::size_t count = others.empty() ? 0 : others.first();
    at += 1 + count;
    if (count == 0 || *at == 'e' || *at == 'E') {
        return read_usual_number(from, number);
    }
    // Zeros behind the last digit change nothing, and so the exponent is always the same.
    constexpr int decimals = Block::size;
    digits = digits * small_powers_of_10[decimals] + fraction.decimal(count);
    // A multiple of 5^16 times its inverse modulo 2^64 is the quotient, and no other number's
    // product is as small. The number is then that many times 2^-16.
    constexpr std::uint64_t inverse = inverse_of_odd(power_of_5);
    const std::uint64_t quotient = digits * inverse;
    if (quotient <= ~std::uint64_t{0} / power_of_5) {
        constexpr double step = 1.0 / (1 << decimals);
        number = static_cast<double>(static_cast<std::int64_t>(quotient)) * step;
    } else if (nearest_normal(digits, -decimals, number) != Rounding::decided) {
        return read_usual_number(from, number);
    }
    return at;
}

/// Reads a number of the most frequent form, of few digits and without exponent.
/// @param at  at a minus sign or a digit; usual_number_room and one more byte must be there
/// @return the place behind it; null if it is another number
[[gnu::always_inline]] inline const char* usual_number(const char* at, double& number) noexcept {
    const bool negative = *at == '-';
    double magnitude = 0;
    const char* const end = read_short_number(at + (negative ? 1 : 0), magnitude);
    number = negative ? -magnitude : magnitude;
    return end;
}

/// What a part of a number ends with.
enum class NumberPart : unsigned char {
    begin,
    sign,
    zero, ///< a leading one
    whole,
    point,
    fraction,
    exponent_letter,
    exponent_sign,
    exponent,
    none, ///< no number goes on so
};

/// Skips a number that may arrive in parts.
/// @param part  what came before; what has come then, unless the number ends
/// @return the end of the text, or the first byte that cannot continue the number
const char* skip_number(const char* from, const char* end, NumberPart& part) noexcept;

/// Whether a number may be too large for a double; if not, it need not be computed to find out.
constexpr bool may_be_too_large(const NumberToken& token) noexcept {
    constexpr int digits_of_64_bits = 20;
    return token.magnitude.exponent > largest_decimal_exponent - digits_of_64_bits;
}

/// The number that a token stands for: the nearest double, or an integer if only that is exact.
/// @param from            where the number begins
/// @param exact_integers  whether it may be an integer
NumberContent content_of_number(const char* from, const NumberToken& token,
                                bool exact_integers) noexcept;

} // namespace foundation::json::detail

#endif
