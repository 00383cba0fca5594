#include "number/shortest_number_text.hpp"

#include "number/digits.hpp"
#include "number/powers_of_10.hpp"
#include "number/shortest_digits.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace foundation::json::detail {

namespace {

// Text is stored in whole words, which may write beyond its end, within the caller's buffer.

/// @param before_point  how many digits of the number are before the point, at most 0 for zeros
///                      behind it
[[gnu::always_inline]] inline char* write_notation(char* out, const Digits& digits,
                                                   int before_point) noexcept {
    if (before_point > 0 && before_point <= 21) {
        out[0] = digits.first();
        digits.store_behind_first(out + 1);
        if (digits.count() <= before_point) {
            std::memset(out + decimal_digits, '0', 21 - decimal_digits);
            return out + before_point;
        }
        out[before_point] = '.';
        digits.store_behind_first(out + before_point + 1, before_point - 1);
        return out + digits.count() + 1;
    }
    if (before_point <= 0 && before_point > -6) {
        constexpr char begin[8] = {'0', '.', '0', '0', '0', '0', '0', '0'};
        std::memcpy(out, begin, sizeof begin);
        out += 2 - before_point;
        out[0] = digits.first();
        digits.store_behind_first(out + 1);
        return out + digits.count();
    }
    out[0] = digits.first();
    out[1] = '.';
    digits.store_behind_first(out + 2);
    return write_exponent(out + (digits.count() > 1 ? digits.count() + 1 : 1), 'e',
                          before_point - 1);
}

/// For numbers that are not whole, and for large ones. A separate function, so that the code for
/// small whole numbers need not save registers.
template <class Number>
[[gnu::noinline]] char* write_digits(char* out, FloatingBits<Number> bits) noexcept {
    DecimalNumber number = ShortestDigits<Number>::of(bits.without_sign());
    int count = decimal_digits;
    if (std::is_same_v<Number, double> && bits.exponent() != 0) {
        // One digit is missing at most, which takes no table.
        const bool is_missing = number.digits < small_powers_of_10[decimal_digits - 1];
        number.digits *= is_missing ? 10 : 1;
        count -= is_missing ? 1 : 0;
    } else {
        count = count_digits(number.digits);
        number.digits *= small_powers_of_10[decimal_digits - count];
    }
    return write_notation(out, Digits(number.digits), number.exponent + count);
}

template <class Number>
char* write_number(char* out, FloatingBits<Number> bits) noexcept {
    using Bits = FloatingBits<Number>;
    if (bits.magnitude() == 0) {
        *out = '0';
        return out + 1;
    }
    *out = '-';
    out += bits.is_negative() ? 1 : 0;
    // The number of mantissa bits before the point, without the implicit one. Wraps below 1.
    const auto before_point = bits.exponent() - (Bits::bias - Bits::mantissa_bits);
    // No other number that is as short reads back as a whole number of that size.
    if (before_point < Bits::mantissa_bits &&
        bits.word << (Bits::sign_bit + 1 - Bits::mantissa_bits + before_point) == 0) {
        return write_integer(out, bits.mantissa() >> (Bits::mantissa_bits - before_point));
    }
    return write_digits(out, bits);
}

} // namespace

char* shortest_number_text(char* out, FloatingBits<double> bits) noexcept {
    return write_number(out, bits);
}

char* shortest_number_text(char* out, FloatingBits<float> bits) noexcept {
    return write_number(out, bits);
}

} // namespace foundation::json::detail
