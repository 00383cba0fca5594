#include "number/powers_of_10.hpp"

#include "number/large.hpp"

namespace foundation::json::detail {

constexpr PowersOf10::PowersOf10() noexcept : bits_{} {
    // The factors of two do not change the leading bits.
    Large power(1);
    for (int exponent = 0; exponent <= largest; ++exponent) {
        bits_[exponent - least] = power.leading_bits();
        power.multiply(5);
    }
    // The first set bit of 5^-342 is 795 bits behind the point, and 128 bits are needed.
    Large inverse(1);
    inverse.multiply_by_power_of_2(1024);
    for (int exponent = 0; exponent >= least; --exponent) {
        bits_[exponent - least] = inverse.leading_bits();
        inverse.divide(5);
    }
}

constexpr PowersOf10 powers_of_10;

} // namespace foundation::json::detail
