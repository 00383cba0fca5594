/// @file
/// The bits of floating-point numbers, for the library's other headers. Not for programs: what is
/// here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_FLOATING_BITS_HPP
#define FOUNDATION_JSON_DETAIL_FLOATING_BITS_HPP

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace foundation::json::detail {

/// The representation of a float or double, to examine it in integer arithmetic. Arithmetic of
/// floating-point numbers may flush subnormal numbers to zero, raise flags and trap, depending on
/// the caller's environment, and merely passing a signalling NaN in a register may change it.
template <class Floating>
struct FloatingBits {
    using Limits = std::numeric_limits<Floating>;
    using Word = std::conditional_t<sizeof(Floating) == 8, std::uint64_t, std::uint32_t>;
    static_assert(Limits::is_iec559 && sizeof(Floating) == sizeof(Word));

    static constexpr int mantissa_bits = Limits::digits - 1; ///< as stored
    static constexpr int sign_bit = 8 * sizeof(Word) - 1;
    static constexpr Word implicit_bit = Word{1} << mantissa_bits;
    static constexpr Word infinity = (Word{1} << sign_bit) - implicit_bit;
    static constexpr Word largest = infinity - 1;
    /// A finite number is its mantissa times two to the power of its exponent less this.
    static constexpr int bias = Limits::digits - Limits::min_exponent + 1;

    Word word;

    explicit FloatingBits(const Floating& number) noexcept {
        std::memcpy(&word, &number, sizeof word);
    }

    /// @param negative   whether to add the sign
    /// @param magnitude  all bits but the sign
    static Floating number_of(bool negative, Word magnitude) noexcept {
        const Word word = magnitude | static_cast<Word>(Word{negative} << sign_bit);
        Floating number;
        std::memcpy(&number, &word, sizeof number);
        return number;
    }

    Floating number() const noexcept { return number_of(false, word); }

    bool is_negative() const noexcept { return word >> sign_bit != 0; }

    FloatingBits without_sign() const noexcept {
        FloatingBits result = *this;
        result.word = magnitude();
        return result;
    }

    /// Ordered like the absolute values of the numbers.
    Word magnitude() const noexcept { return word & ((Word{1} << sign_bit) - 1); }

    bool is_finite() const noexcept { return magnitude() < infinity; }
    bool is_nan() const noexcept { return magnitude() > infinity; }

    /// As stored: 0 for zero and subnormal numbers.
    Word exponent() const noexcept { return word >> mantissa_bits & infinity >> mantissa_bits; }

    /// Of a normal number.
    Word mantissa() const noexcept { return (word & (implicit_bit - 1)) | implicit_bit; }
};

} // namespace foundation::json::detail

#endif
/// @endcond
