/// @file
/// What a text cannot express by its options, and how messages say so.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_WRITE_PROBLEMS_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_WRITE_PROBLEMS_HPP

#include "number/wide.hpp"
#include "text/utf8_validation.hpp"

#include <foundation/json/detail/floating_bits.hpp>
#include <foundation/json/write.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Is thrown where a text cannot go on. Whoever catches it finds out where and why, so that what
/// succeeds need not keep track.
struct Unwritable {};

// ---- Whether it can be written -------------------------------------------------------------

template <class Number>
bool is_writable(FloatingBits<Number> bits, const WriteOptions& options) noexcept {
    return bits.is_finite() || options.not_finite != WriteOptions::NotFinite::error;
}

/// Whether an integer is beyond 2^53, so that not every reader keeps its digits.
constexpr bool is_big(unsigned long long number) noexcept {
    return number > 1ULL << 53;
}
constexpr bool is_big(long long number) noexcept {
    return number > 1LL << 53 || number < -(1LL << 53);
}

/// Whether a double equals an integer.
/// @param magnitude  of the integer, not 0
constexpr bool equals_double(std::uint64_t magnitude) noexcept {
    return magnitude >> trailing_zeros(magnitude) < std::uint64_t{1} << 53;
}

constexpr std::uint64_t magnitude_of(unsigned long long number) noexcept {
    return number;
}
constexpr std::uint64_t magnitude_of(long long number) noexcept {
    const auto bits = static_cast<std::uint64_t>(number);
    return number < 0 ? 0 - bits : bits;
}

template <class Integer>
bool is_writable(Integer number, const WriteOptions& options) noexcept {
    return options.big_integers != WriteOptions::BigIntegers::as_double || !is_big(number) ||
           equals_double(magnitude_of(number));
}

inline bool is_writable_string(std::string_view text, const WriteOptions& options) noexcept {
    return options.bad_utf8 != WriteOptions::BadUtf8::error ||
           is_utf8(text.data(), text.data() + text.size());
}

// ---- What is wrong -------------------------------------------------------------------------

/// The name of a number that is not finite: NaN, Infinity or -Infinity.
template <class Number>
std::string_view not_finite_name(FloatingBits<Number> bits) noexcept {
    if (bits.is_nan()) {
        return "NaN";
    }
    return bits.is_negative() ? "-Infinity" : "Infinity";
}

std::string not_finite_problem(std::string_view name);

template <class Number>
std::string problem_of(FloatingBits<Number> bits) {
    return not_finite_problem(not_finite_name(bits));
}

std::string problem_of(long long number);
std::string problem_of(unsigned long long number);
std::string problem_of_string(std::string_view text);
std::string problem_of_name(std::string_view name);

/// For a name that comes behind another one, but may not.
std::string problem_of_order(std::string_view previous, std::string_view name);

inline constexpr const char* undefined_problem = "Undefined has no JSON text";

} // namespace foundation::json::detail

#endif
