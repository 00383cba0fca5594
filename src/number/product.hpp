/// @file
/// A floating-point number times a power of ten.
#ifndef FOUNDATION_JSON_SRC_NUMBER_PRODUCT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_PRODUCT_HPP

#include "number/powers_of_10.hpp"
#include "number/wide.hpp"

#include <cstdint>

namespace foundation::json::detail {

/// The number `mantissa * 2^exponent * 10^k`, truncated to 52 bits after the point: the exact
/// number is greater by less than two units of 2^-52.
///
/// For a mantissa of 53 bits and a k that makes the number one of 17 or 18 digits, or for 25 bits
/// and 9 or 10 digits; or for fewer bits and a k that makes 2^exponent a number from 1 to 10. Then
/// every part below fits into one or two words.
class Product {
public:
    static constexpr std::uint64_t one = std::uint64_t{1} << 52;

    Product(std::uint64_t mantissa, int exponent, int k) noexcept
        : power_(powers_of_10.leading_bits(k)),
          shift_(128 + exponent + PowersOf10::binary_exponent(k)),
          bits_(scaled(mantissa << shift_, power_)) {}

    std::uint64_t whole() const noexcept { return bits_.high; }

    /// The fraction, in units of 2^-52.
    std::uint64_t rest() const noexcept { return bits_.low >> 12; }

    /// Half of the value of the mantissa's bit 2^bit, in units of 2^-52, rounded down.
    std::uint64_t half_step(int bit) const noexcept { return power_.high >> (13 - shift_ - bit); }

private:
    WordPair power_;
    int shift_; ///< of the mantissa, so that the point is between the words; from 1 to 10
    WordPair bits_;
};

} // namespace foundation::json::detail

#endif
