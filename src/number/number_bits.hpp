/// @file
/// The representation of a double or float, to examine it without floating-point arithmetic, which
/// may flush subnormal numbers to zero, raise flags and trap, depending on the caller's
/// environment.
#ifndef FOUNDATION_JSON_SRC_NUMBER_NUMBER_BITS_HPP
#define FOUNDATION_JSON_SRC_NUMBER_NUMBER_BITS_HPP

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace foundation::json::detail {

/// The bits of a number. Functions pass the bits instead of the number, which may pass through a
/// register that changes a signalling NaN.
template <class Number>
struct NumberBits {
    static_assert(std::numeric_limits<Number>::is_iec559);

    using Word = std::conditional_t<sizeof(Number) == 8, std::uint64_t, std::uint32_t>;

    static constexpr int mantissa_bits = std::numeric_limits<Number>::digits - 1;
    static constexpr int sign_bit = 8 * sizeof(Number) - 1;
    static constexpr Word implicit_bit = Word{1} << mantissa_bits;
    static constexpr Word infinity = (Word{1} << sign_bit) - implicit_bit;
    static constexpr Word largest = infinity - 1;

    Word word;

    explicit NumberBits(const Number& number) noexcept { std::memcpy(&word, &number, sizeof word); }

    Number number() const noexcept {
        Number result;
        std::memcpy(&result, &word, sizeof result);
        return result;
    }

    bool is_negative() const noexcept { return word >> sign_bit != 0; }

    NumberBits without_sign() const noexcept {
        NumberBits result = *this;
        result.word = magnitude();
        return result;
    }

    /// Ordered like the absolute values of the numbers.
    Word magnitude() const noexcept { return word & ((Word{1} << sign_bit) - 1); }

    bool is_finite() const noexcept { return magnitude() < infinity; }

    /// As stored: 0 for zero and subnormal numbers.
    Word exponent() const noexcept { return word >> mantissa_bits & infinity >> mantissa_bits; }

    /// Of a normal number.
    Word mantissa() const noexcept { return (word & (implicit_bit - 1)) | implicit_bit; }
};

/// The text of a number that is not finite.
template <class Number>
const char* non_finite_text(const NumberBits<Number>& bits) noexcept {
    if (bits.magnitude() > NumberBits<Number>::infinity) {
        return "\"NaN\"";
    }
    return bits.is_negative() ? "\"-Inf\"" : "\"Inf\"";
}

} // namespace foundation::json::detail

#endif
