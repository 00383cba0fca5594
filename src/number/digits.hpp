/// @file
/// Decimal digits of whole numbers as text.
///
/// Text is stored in whole words, which may write beyond its end, within the caller's buffer.
#ifndef FOUNDATION_JSON_SRC_NUMBER_DIGITS_HPP
#define FOUNDATION_JSON_SRC_NUMBER_DIGITS_HPP

#include "number/powers_of_10.hpp"
#include "number/wide.hpp"
#include "system/compiler.hpp"
#include "text/byte_vector.hpp"
#include "text/words.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

// Digits are computed eight at a time and arranged in registers, the first digit lowest.
#if defined(FOUNDATION_JSON_WIDE) && defined(FOUNDATION_JSON_LITTLE_ENDIAN)
#define FOUNDATION_JSON_WIDE_DIGITS
#endif

namespace foundation::json::detail {

/// The most digits that a format has.
constexpr int decimal_digits = 17;

/// The number digits * 10^exponent. There may be trailing zeros.
struct DecimalNumber {
    std::uint64_t digits;
    int exponent;
};

/// The digits of a number of decimal_digits digits: the first one, and sixteen more. On any
/// machine.
class PlainDigits {
public:
    explicit PlainDigits(std::uint64_t number) noexcept {
        std::to_chars(text_, text_ + decimal_digits, number);
        count_ = decimal_digits;
        while (count_ > 1 && text_[count_ - 1] == '0') {
            --count_;
        }
    }

    char first() const noexcept { return text_[0]; }

    /// Without trailing zeros, at least 1.
    int count() const noexcept { return count_; }

    /// Stores sixteen bytes: the digits behind the first and, of these, without so many more.
    void store_behind_first(char* out, int skipped = 0) const noexcept {
        std::memcpy(out, text_ + 1 + skipped, 16);
    }

private:
    int count_;
    char text_[decimal_digits + 16] = {};
};

inline int count_digits(std::uint64_t number) noexcept {
    // log10(2) times the number of bits is the number of digits or one less.
    const int estimate = (64 - leading_zeros(number | 1)) * 1233 >> 12;
    return estimate + (number >= small_powers_of_10[estimate] ? 1 : 0);
}

#if defined(FOUNDATION_JSON_WIDE_DIGITS)

/// Eight decimal digits as eight bytes: divides groups of four, and pairs, in parallel.
///
/// Each step divides numbers by 10^n and leaves quotient and remainder beside each other, `width`
/// bits apart. Computed at once: number << width, less the quotient times 10^n << width, plus the
/// quotient.
inline std::uint64_t spread_digits(std::uint32_t number) noexcept {
    const auto beside = [](std::uint64_t numbers, std::uint64_t quotients, std::uint64_t divisor,
                           int width) {
        return (numbers << width) - quotients * ((divisor << width) - 1);
    };
    const std::uint64_t fours = beside(number, number / 10000, 10000, 32);
    const std::uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000007F0000007F;
    const std::uint64_t pairs = beside(fours, hundreds, 100, 16);
    const std::uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
    return beside(pairs, tens, 10, 8);
}

constexpr std::uint64_t eight_zeros = 0x3030303030303030;

/// Writes a number below 10^8 in eight digits.
inline char* write_8_digits(char* out, std::uint32_t number) noexcept {
    const std::uint64_t text = spread_digits(number) | eight_zeros;
    std::memcpy(out, &text, sizeof text);
    return out + 8;
}

/// Writes a number below 10^8 without leading zeros. Always stores eight bytes.
inline char* write_up_to_8_digits(char* out, std::uint32_t number) noexcept {
    const std::uint64_t digits = spread_digits(number);
    const int zeros = trailing_zeros(digits | std::uint64_t{1} << 56) / 8;
    const std::uint64_t text = (digits | eight_zeros) >> (8 * zeros);
    std::memcpy(out, &text, sizeof text);
    return out + 8 - zeros;
}

inline char* write_integer(char* out, std::uint64_t number) noexcept {
    constexpr std::uint64_t base = small_powers_of_10[8];
    if (number < base) {
        return write_up_to_8_digits(out, static_cast<std::uint32_t>(number));
    }
    out = write_integer(out, number / base);
    return write_8_digits(out, static_cast<std::uint32_t>(number % base));
}

/// Writes an integer. Where its text ends is known before its digits are, so that what comes behind
/// it need not wait for them. Stores eight bytes more than the text at most.
inline char* write_integer_quickly(char* out, std::uint64_t number) noexcept {
    constexpr std::uint64_t base = small_powers_of_10[8];
    const auto count = static_cast<std::size_t>(count_digits(number | 1)); // 0 has a digit, too
    const auto store = [](char* at, std::uint32_t part, std::size_t digits) {
        const std::uint64_t text = (spread_digits(part) | eight_zeros) >> (64 - 8 * digits);
        std::memcpy(at, &text, sizeof text);
    };
    if (number < base) {
        store(out, static_cast<std::uint32_t>(number), count);
        return out + count;
    }
    if (number < 100 * base) {
        const auto first = static_cast<std::uint32_t>(number / base);
        const std::uint32_t tens = first * 205 >> 11;
        out[0] = static_cast<char>('0' + tens);
        out[count - 9] = static_cast<char>('0' + first - 10 * tens); // in its place if tens is 0
        write_8_digits(out + count - 8, static_cast<std::uint32_t>(number % base));
        return out + count;
    }
    if (number >= base * base) {
        store(out, static_cast<std::uint32_t>(number / (base * base)), count - 16);
        number %= base * base;
        write_8_digits(out + count - 16, static_cast<std::uint32_t>(number / base));
        write_8_digits(out + count - 8, static_cast<std::uint32_t>(number % base));
        return out + count;
    }
    store(out, static_cast<std::uint32_t>(number / base), count - 8);
    write_8_digits(out + count - 8, static_cast<std::uint32_t>(number % base));
    return out + count;
}

/// The same as PlainDigits.
class Digits {
public:
    explicit Digits(std::uint64_t number) noexcept {
        constexpr std::uint64_t base = small_powers_of_10[8];
        const std::uint64_t first_nine = number / base;
        const auto last_eight = static_cast<std::uint32_t>(number % base);
        const std::uint64_t middle_eight = first_nine % base;
        std::uint64_t high = 0;
        std::uint64_t low = 0;
        // A shortcut, since numbers of up to nine digits are common.
        if (last_eight == 0) {
            high = spread_digits(static_cast<std::uint32_t>(middle_eight));
        } else {
#if defined(FOUNDATION_JSON_SSE2)
            high = middle_eight | std::uint64_t{last_eight} << 32;
            low = spread_sixteen_digits(high);
#else
            high = spread_digits(static_cast<std::uint32_t>(middle_eight));
            low = spread_digits(last_eight);
#endif
        }
        first_ = static_cast<char>('0' + first_nine / base);
        rest_ = static_cast<Wide>(low | eight_zeros) << 64 | (high | eight_zeros);
        // Without divisions of signed numbers, which take more instructions.
        count_ = low != 0    ? 17 - (leading_zeros(low) >> 3)
                 : high != 0 ? 9 - (leading_zeros(high) >> 3)
                             : 1;
    }

    char first() const noexcept {
        return first_;
    }
    int count() const noexcept {
        return count_;
    }

    void store_behind_first(char* out, int skipped = 0) const noexcept {
        const Wide text = rest_ >> (8 * skipped);
        std::memcpy(out, &text, sizeof text);
    }

private:
    char first_;
    int count_;
    Wide rest_;
};

#else

inline char* write_integer(char* out, std::uint64_t number) noexcept {
    return std::to_chars(out, out + 20, number).ptr;
}

inline char* write_integer_quickly(char* out, std::uint64_t number) noexcept {
    return write_integer(out, number);
}

using Digits = PlainDigits;

#endif

/// Writes an exponent of up to three digits, with its sign.
/// @param letter  what stands before it
/// @param out     with room for five bytes
inline char* write_exponent(char* out, char letter, int exponent) noexcept {
    out[0] = letter;
    out[1] = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    // The number of digits is unpredictable, so all three are stored.
    const int tens = magnitude * 205 >> 11;
    const int hundreds = tens * 205 >> 11;
    const int skipped = (magnitude < 100 ? 1 : 0) + (magnitude < 10 ? 1 : 0);
    char digits[5] = {static_cast<char>('0' + hundreds),
                      static_cast<char>('0' + tens - 10 * hundreds),
                      static_cast<char>('0' + magnitude - 10 * tens)};
    std::memcpy(out + 2, digits + skipped, 3);
    return out + 5 - skipped;
}

/// Writes an integer in decimal.
/// @param out  with room for 24 bytes
/// @return the end of the text, of at most 20 characters
inline char* integer_text(char* out, unsigned long long number) noexcept {
    return write_integer(out, number);
}

inline char* integer_text(char* out, long long number) noexcept {
    // Negated as unsigned, which is correct for the lowest number, too.
    const auto bits = static_cast<std::uint64_t>(number);
    *out = '-';
    return number < 0 ? write_integer(out + 1, 0 - bits) : write_integer(out, bits);
}

/// The same, inlined, where many integers are written in a row.
/// @param out  with room for 32 bytes
[[gnu::always_inline]] inline char* quick_integer_text(char* out,
                                                       unsigned long long number) noexcept {
    return write_integer_quickly(out, number);
}

[[gnu::always_inline]] inline char* quick_integer_text(char* out, long long number) noexcept {
    const auto bits = static_cast<std::uint64_t>(number);
    *out = '-';
    out += number < 0 ? 1 : 0;
    return write_integer_quickly(out, number < 0 ? 0 - bits : bits);
}

} // namespace foundation::json::detail

#endif
