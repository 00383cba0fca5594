/// @file
/// Conversions of numbers into other types, for the library's other headers. Not for programs: what
/// is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_NUMBER_PARTS_HPP
#define FOUNDATION_JSON_DETAIL_NUMBER_PARTS_HPP

#include <foundation/json/detail/floating_bits.hpp>
#include <foundation/json/detail/words.hpp>
#include <foundation/json/export.hpp>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace foundation::json::detail {

/// A number taken apart: significand * 2^exponent or its negative, if it is finite.
///
/// Conversions go by these parts, not by the processor's arithmetic, whose results depend on the
/// rounding mode, flush-to-zero and denormals-are-zero, and which may trap. Where merely copying a
/// signaling NaN would, numbers are passed on by reference.
struct NumberParts {
    enum class Class { finite, infinite, nan };

    Class type;
    bool negative;
    std::uint64_t significand;
    int exponent;
};

template <class Floating>
NumberParts parts_of_floating(const Floating& number) noexcept {
    using Bits = FloatingBits<Floating>;
    const Bits bits(number);
    if (!bits.is_finite()) {
        return {bits.is_nan() ? NumberParts::Class::nan : NumberParts::Class::infinite,
                bits.is_negative(), 0, 0};
    }
    if (bits.exponent() == 0) {
        const typename Bits::Word significand = bits.magnitude();
        return {NumberParts::Class::finite, bits.is_negative(), significand,
                significand == 0 ? 0 : 1 - Bits::bias};
    }
    return {NumberParts::Class::finite, bits.is_negative(), bits.mantissa(),
            static_cast<int>(bits.exponent()) - Bits::bias};
}

inline NumberParts parts_of(const double& number) noexcept {
    return detail::parts_of_floating(number);
}

inline NumberParts parts_of(const float& number) noexcept {
    return detail::parts_of_floating(number);
}

inline NumberParts parts_of(long long number) noexcept {
    const auto bits = static_cast<std::uint64_t>(number);
    return {NumberParts::Class::finite, number < 0, number < 0 ? 0 - bits : bits, 0};
}

inline NumberParts parts_of(unsigned long long number) noexcept {
    return {NumberParts::Class::finite, false, number, 0};
}

// ---- To floating-point types ---------------------------------------------------------------

template <class Floating>
typename FloatingBits<Floating>::Word nearest_magnitude(const NumberParts& parts) noexcept {
    using Bits = FloatingBits<Floating>;
    using Word = typename Bits::Word;
    using Limits = std::numeric_limits<Floating>;
    if (parts.type == NumberParts::Class::nan) {
        return Bits::infinity | Bits::implicit_bit >> 1;
    }
    if (parts.significand == 0) {
        return parts.type == NumberParts::Class::infinite ? Bits::infinity : 0;
    }
    // The significand's first bit as the top bit.
    const int shift = detail::leading_zeros(parts.significand);
    const std::uint64_t significand = parts.significand << shift;
    const int exponent = parts.exponent - shift;

    // How many of its bits to drop: more than usual below the normal numbers.
    constexpr int least_exponent = 1 - Bits::bias;
    const int normal_exponent = exponent + 64 - Limits::digits;
    const int missing = normal_exponent < least_exponent ? least_exponent - normal_exponent : 0;
    const int dropped = 64 - Limits::digits + missing;
    if (dropped > 64) {
        return 0;
    }
    if (normal_exponent > Limits::max_exponent - Limits::digits) {
        return Bits::infinity;
    }
    const std::uint64_t kept = dropped == 64 ? 0 : significand >> dropped;
    const std::uint64_t rest = dropped == 64 ? significand : significand << (64 - dropped);
    constexpr std::uint64_t half = std::uint64_t{1} << 63;
    const bool up = rest > half || (rest == half && kept % 2 != 0);
    // Added rather than combined: the implicit bit counts as one more in the exponent, and so does
    // what rounding carries, up to infinity.
    const auto biased = static_cast<Word>(normal_exponent + missing - least_exponent);
    return (biased << Bits::mantissa_bits) + static_cast<Word>(kept) + (up ? 1 : 0);
}

/// The number nearest to one taken apart and, of two as near, the even one; an infinity beyond the
/// largest.
template <class Floating>
Floating nearest(const NumberParts& parts) noexcept {
    return FloatingBits<Floating>::number_of(parts.negative,
                                             detail::nearest_magnitude<Floating>(parts));
}

template <>
inline long double nearest<long double>(const NumberParts& parts) noexcept {
    if (std::numeric_limits<long double>::digits < 64 || parts.type != NumberParts::Class::finite) {
        return static_cast<long double>(detail::nearest<double>(parts));
    }
    // In two steps, each by a normal number of the type double; neither rounds.
    const int half = parts.exponent / 2;
    const auto power = [](int exponent) {
        return static_cast<long double>(
            detail::nearest<double>({NumberParts::Class::finite, false, 1, exponent}));
    };
    const long double magnitude =
        static_cast<long double>(parts.significand) * power(half) * power(parts.exponent - half);
    return parts.negative ? -magnitude : magnitude;
}

// ---- To integers ---------------------------------------------------------------------------

/// Whether a number has no fraction; the infinities have none.
inline bool is_whole(const NumberParts& parts) noexcept {
    return parts.type != NumberParts::Class::nan &&
           (parts.exponent >= 0 ||
            (parts.exponent > -64 && parts.significand << (64 + parts.exponent) == 0));
}

/// Whether the magnitude of a whole number has no more than 64 bits.
inline bool has_64_bits(const NumberParts& whole) noexcept {
    return whole.type == NumberParts::Class::finite &&
           (whole.exponent <= 0 ||
            (whole.exponent < 64 && whole.significand >> (64 - whole.exponent) == 0));
}

/// The magnitude of a whole number that has 64 bits.
inline std::uint64_t magnitude_of(const NumberParts& whole) noexcept {
    return whole.exponent < 0 ? whole.significand >> -whole.exponent
                              : whole.significand << whole.exponent;
}

/// Throws what there is to say of a number that to_integer() cannot give.
/// @param is_float  whether the number comes from a float
/// @param lowest    the magnitude of the lowest number of the integer type
/// @throws std::out_of_range "2.5 is not a whole number", or "70000 is not within 0 to 65535"
[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
throw_out_of_range(const NumberParts& number, bool is_float, std::uint64_t lowest,
                   std::uint64_t highest);

/// The magnitude of a whole number that is within limits, whose magnitudes are given.
/// @param is_float  whether the number comes from a float
/// @throws std::out_of_range as throw_out_of_range()
inline std::uint64_t magnitude_within(const NumberParts& number, bool is_float,
                                      std::uint64_t lowest, std::uint64_t highest) {
    const bool fits = detail::is_whole(number) && detail::has_64_bits(number) &&
                      detail::magnitude_of(number) <= (number.negative ? lowest : highest);
    if (!fits) {
        detail::throw_out_of_range(number, is_float, lowest, highest);
    }
    return detail::magnitude_of(number);
}

/// The integer of that magnitude, which is within the type's limits.
template <class Integer>
Integer integer_of(bool negative, std::uint64_t magnitude) noexcept {
    // One less and one more, since the lowest number of all has no positive counterpart.
    return negative && magnitude != 0
               ? static_cast<Integer>(-1 - static_cast<std::int64_t>(magnitude - 1))
               : static_cast<Integer>(magnitude);
}

/// @param is_float  whether the number comes from a float
/// @throws std::out_of_range as throw_out_of_range()
template <class Integer>
Integer to_integer(const NumberParts& number, bool is_float) {
    // The magnitudes of both.
    constexpr auto lowest = 0 - static_cast<std::uint64_t>((std::numeric_limits<Integer>::min)());
    constexpr auto highest = static_cast<std::uint64_t>((std::numeric_limits<Integer>::max)());
    return detail::integer_of<Integer>(number.negative,
                                       detail::magnitude_within(number, is_float, lowest, highest));
}

// ---- Numbers of documents ------------------------------------------------------------------

/// The number that stands in a document: a double, or an integer if only that is exact.
struct NumberContent {
    enum class Type { number, int64, uint64, too_large };

    explicit NumberContent(double content) noexcept : type(Type::number), number(content) {}
    explicit NumberContent(long long content) noexcept : type(Type::int64), int64(content) {}
    explicit NumberContent(unsigned long long content) noexcept
        : type(Type::uint64), uint64(content) {}
    explicit NumberContent(Type content) noexcept : type(content), number(0) {}

    Type type;
    union {
        double number;
        long long int64;
        unsigned long long uint64;
    };
};

/// The same as an arithmetic type.
/// @param content  not too large
/// @throws std::out_of_range as throw_out_of_range()
template <class Number>
Number to_number(const NumberContent& content) {
    if constexpr (std::is_same_v<Number, double>) {
        if (content.type == NumberContent::Type::number) {
            return content.number;
        }
    }
    const NumberParts parts = content.type == NumberContent::Type::number ? parts_of(content.number)
                              : content.type == NumberContent::Type::int64
                                  ? parts_of(content.int64)
                                  : parts_of(content.uint64);
    if constexpr (std::is_integral_v<Number>) {
        return to_integer<Number>(parts, false);
    } else {
        return nearest<Number>(parts);
    }
}

} // namespace foundation::json::detail

#endif
/// @endcond
