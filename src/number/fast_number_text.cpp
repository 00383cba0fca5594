#include "number/fast_number_text.hpp"

#include "number/digits.hpp"
#include "number/number_text.hpp"
#include "number/product.hpp"
#include "system/locale.hpp"

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace foundation::json::detail {

namespace {

/// Separate from the fast path, which needs no such buffer.
template <class Number>
[[gnu::noinline]] char* reference_number_text(char* out, FloatingBits<Number> bits) noexcept {
    NumberBuffer buffer;
    const char* const text = number_text(buffer, bits);
    return std::copy_n(text, std::strlen(text), out);
}

} // namespace

// Machines without 128-bit integers or of the other byte order use the reference algorithm. Nothing
// here computes with floating-point numbers: the caller's settings have no effect, and no flag is
// raised.
#if defined(FOUNDATION_JSON_WIDE_DIGITS)

namespace {

/// The two formats of a type, by their numbers of digits, and how exactly its digits are computed.
template <class Number>
struct Formats;

template <>
struct Formats<double> {
    static constexpr int spare_bits = 0;
    static constexpr std::uint64_t doubt = 4;
    static constexpr int few_digits = 15;
    static constexpr int many_digits = 17;
};

template <>
struct Formats<float> {
    static constexpr int spare_bits = 1;
    // Its text is read as a double first, which may round it to the half-way point of two floats.
    static constexpr std::uint64_t doubt = std::uint64_t{1} << 30;
    static constexpr int few_digits = 6;
    static constexpr int many_digits = 9;
};

/// A number of Digits digits, of which the first has the exponent, with as many digits as others.
/// Rounding up may have added a digit.
template <int Digits>
DecimalNumber make_decimal(std::uint64_t number, int exponent) noexcept {
    const int last = exponent - (decimal_digits - 1);
    if (number == small_powers_of_10[Digits]) {
        return {small_powers_of_10[decimal_digits - 1], last + 1};
    }
    return {number * small_powers_of_10[decimal_digits - Digits], last};
}

/// The digits of the positive normal number `mantissa * 2^exponent`, if 128 bits of its power of
/// ten determine them.
///
/// Scaled by 10^k, the number has the digits of the longer format before the point, and a fraction
/// that is known to 52 bits: at least `rest` and less than `rest + 2` units of 2^-52. This
/// determines the correctly rounded digits of both formats, and whether the shorter one reads back
/// as the same number: it does if its error is less than half the distance to the next number.
///
/// @return false if the bits do not decide: at half-way cases, of the number between two texts, of
///         a text between two numbers, and very close to them
template <class Number>
bool scaled_digits(DecimalNumber& decimal, std::uint64_t mantissa, int exponent) noexcept {
    using Bits = FloatingBits<Number>;
    using F = Formats<Number>;
    mantissa <<= F::spare_bits;
    exponent -= F::spare_bits;
    // floor(log10(2^n)) for the exponent n of the leading bit; that of the number may be one more.
    int decimal_exponent = ((exponent + Bits::mantissa_bits + F::spare_bits) * 315653) >> 20;
    Product scaled(mantissa, exponent, F::many_digits - 1 - decimal_exponent);
    if (scaled.whole() >= small_powers_of_10[F::many_digits]) {
        ++decimal_exponent;
        scaled = Product(mantissa, exponent, F::many_digits - 1 - decimal_exponent);
    }
    const std::uint64_t whole = scaled.whole();
    const std::uint64_t rest = scaled.rest();
    constexpr std::uint64_t one = Product::one;

    // The rounding direction is unpredictable, so it is computed without branches.
    constexpr std::uint64_t many_to_few = small_powers_of_10[F::many_digits - F::few_digits];
    const std::uint64_t few = (whole + many_to_few / 2) / many_to_few;
    const std::uint64_t many = whole + rest / (one / 2);

    const auto off = static_cast<std::int64_t>((few * many_to_few - whole) * one - rest);
    const auto distance = static_cast<std::uint64_t>(std::abs(off));
    std::uint64_t reach = scaled.half_step(F::spare_bits);
    if (mantissa == std::uint64_t{1} << (Bits::mantissa_bits + F::spare_bits) && off < 0) {
        reach /= 2; // the next number below a power of two is half as far away
    }

    if (rest - (one / 2 - F::doubt) <= 2 * F::doubt ||
        distance - (reach - F::doubt) <= 2 * F::doubt) {
        return false;
    }
    if (distance < reach) {
        decimal = make_decimal<F::few_digits>(few, decimal_exponent);
    } else {
        decimal = make_decimal<F::many_digits>(many, decimal_exponent);
    }
    return true;
}

// Text is stored in whole words, which may write beyond its end, within the caller's buffer.

/// For numbers below one million that are not whole.
char* write_plain(char* out, const DecimalNumber& decimal) noexcept {
    const Digits digits(decimal.digits);
    const int before_point = decimal.exponent + decimal_digits;
    if (before_point > 0) {
        out[0] = digits.first();
        digits.store_behind_first(out + 1);
        out[before_point] = '.';
        digits.store_behind_first(out + before_point + 1, before_point - 1);
        return out + digits.count() + 1;
    }
    if (before_point > -4) {
        std::copy_n("0.000", 5, out);
        out += 2 - before_point;
        out[0] = digits.first();
        digits.store_behind_first(out + 1);
        return out + digits.count();
    }
    out[0] = digits.first();
    out[1] = '.';
    digits.store_behind_first(out + 2);
    return write_exponent(out + (digits.count() > 1 ? digits.count() + 1 : 1), 'E',
                          before_point - 1);
}

/// For numbers from one million on. There is always a digit after the point.
char* write_scientific(char* out, const DecimalNumber& decimal) noexcept {
    const Digits digits(decimal.digits);
    out[0] = digits.first();
    out[1] = '.';
    digits.store_behind_first(out + 2);
    return write_exponent(out + std::max(digits.count(), 2) + 1, 'E',
                          decimal.exponent + decimal_digits - 1);
}

/// For whole numbers of seven to nine digits, such as most identifiers: like write_scientific(),
/// with words of half the size.
char* write_millions(char* out, std::uint32_t number) noexcept {
    constexpr auto base = static_cast<std::uint32_t>(small_powers_of_10[8]);
    char exponent = '8';
    if (number < base / 10) {
        number *= 100;
        exponent = '6';
    } else if (number < base) {
        number *= 10;
        exponent = '7';
    }
    const std::uint64_t digits = spread_digits(number % base);
    const std::uint64_t text = digits | eight_zeros;
    out[0] = static_cast<char>('0' + number / base);
    out[1] = '.';
    std::memcpy(out + 2, &text, sizeof text);
    out += 10 - leading_zeros(digits | 1) / 8;
    out[0] = 'E';
    out[1] = '+';
    out[2] = exponent;
    return out + 3;
}

/// For whole numbers, whose digits need no computation.
char* write_whole(char* out, std::uint64_t number) noexcept {
    if (number < 1000000) {
        return write_up_to_8_digits(out, static_cast<std::uint32_t>(number));
    }
    if (number < small_powers_of_10[9]) {
        return write_millions(out, static_cast<std::uint32_t>(number));
    }
    const int missing = decimal_digits - count_digits(number);
    return write_scientific(out, {number * small_powers_of_10[missing], -missing});
}

/// The bits of a whole number that has at most as many bits as a mantissa.
template <class Number>
constexpr typename FloatingBits<Number>::Word bits_of_whole(std::uint64_t number) noexcept {
    using Bits = FloatingBits<Number>;
    int exponent = Bits::bias;
    for (; number < Bits::implicit_bit; number *= 2) {
        --exponent;
    }
    return static_cast<typename Bits::Word>(exponent - 1) * Bits::implicit_bit +
           static_cast<typename Bits::Word>(number);
}

[[gnu::noinline]] char* write_text(char* out, const char* text) noexcept {
    return std::copy_n(text, std::strlen(text), out);
}

/// For normal numbers that are not whole, and for large ones. A separate function, so that the code
/// for small whole numbers need not save registers.
template <class Number>
[[gnu::noinline]] char* write_digits(char* out, FloatingBits<Number> bits) noexcept {
    DecimalNumber decimal;
    const int exponent = static_cast<int>(bits.exponent()) - FloatingBits<Number>::bias;
    if (!scaled_digits<Number>(decimal, bits.mantissa(), exponent)) {
        return reference_number_text(out, bits.without_sign());
    }
    return bits.magnitude() < bits_of_whole<Number>(1000000) ? write_plain(out, decimal)
                                                             : write_scientific(out, decimal);
}

template <class Number>
[[gnu::always_inline]] inline char* write_number(char* out, FloatingBits<Number> bits) noexcept {
    using Bits = FloatingBits<Number>;
    *out = '-';
    char* const behind_sign = out + (bits.is_negative() ? 1 : 0);
    // The number of mantissa bits before the point, without the implicit one. Wraps below 1.
    const auto before_point = bits.exponent() - (Bits::bias - Bits::mantissa_bits);
    if (before_point < Bits::mantissa_bits) {
        if (bits.word << (Bits::sign_bit + 1 - Bits::mantissa_bits + before_point) == 0) {
            // Both formats give all digits of a whole number of that size: fewer digits would
            // read back as another number.
            return write_whole(behind_sign,
                               bits.mantissa() >> (Bits::mantissa_bits - before_point));
        }
    } else if (bits.magnitude() == 0) {
        *behind_sign = '0';
        return behind_sign + 1;
    } else if (!bits.is_finite()) {
        return write_text(out, non_finite_text(bits));
    } else if (bits.exponent() == 0 ||
               (std::is_same_v<Number, float> && bits.magnitude() == Bits::largest)) {
        // Subnormal numbers have fewer bits and other rules; the largest float has ten digits.
        return reference_number_text(behind_sign, bits.without_sign());
    }
    return write_digits(behind_sign, bits);
}

} // namespace

bool fast_number_text_applies() noexcept {
    return std::strcmp(system::radix_character(), ".") == 0 && std::fegetround() == FE_TONEAREST;
}

char* fast_number_text(char* out, FloatingBits<double> bits) noexcept {
    return write_number(out, bits);
}

char* fast_number_text(char* out, FloatingBits<float> bits) noexcept {
    return write_number(out, bits);
}

#else

bool fast_number_text_applies() noexcept {
    return true; // the reference algorithm, the only one here, has no other conditions
}

char* fast_number_text(char* out, FloatingBits<double> bits) noexcept {
    return reference_number_text(out, bits);
}

char* fast_number_text(char* out, FloatingBits<float> bits) noexcept {
    return reference_number_text(out, bits);
}

#endif

} // namespace foundation::json::detail
