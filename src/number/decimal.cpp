#include "number/decimal.hpp"

namespace foundation::json::detail {

#if defined(__SIZEOF_INT128__)

namespace {

/// A large integer for computing the table below; the lowest 32 bits come first.
class Large {
public:
    static constexpr int words = 31;

    constexpr explicit Large(int power_of_2) noexcept : word_{} {
        word_[power_of_2 / 32] = std::uint32_t{1} << power_of_2 % 32;
    }

    constexpr void times_5() noexcept {
        std::uint64_t carry = 0;
        for (std::uint32_t& word : word_) {
            carry += std::uint64_t{word} * 5;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }

    /// Rounds down.
    constexpr void over_5() noexcept {
        std::uint64_t rest = 0;
        for (int i = words; i-- != 0;) {
            rest = rest << 32 | word_[i];
            word_[i] = static_cast<std::uint32_t>(rest / 5);
            rest %= 5;
        }
    }

    constexpr int length() const noexcept {
        int result = words * 32;
        while ((word_[(result - 1) / 32] >> (result - 1) % 32 & 1) == 0) {
            --result;
        }
        return result;
    }

    /// 128 bits, from the highest that is set on; lower ones are cut off.
    constexpr Wide leading_bits() const noexcept {
        Wide result = 0;
        int bits = 0;
        for (int bit = length() - 1; bits != 128; --bit, ++bits) {
            result = result << 1 | (bit < 0 ? 0 : word_[bit / 32] >> bit % 32 & 1);
        }
        return result;
    }

private:
    std::uint32_t word_[words];
};

} // namespace

constexpr PowersOf5::PowersOf5() noexcept : bits_{} {
    Large power(0);
    for (int q = 0; q <= largest_decimal_exponent; ++q) {
        bits_[q - least_decimal_exponent] = power.leading_bits();
        power.times_5();
    }
    // The first set bit of 5^-342 is 795 places behind the point, and 128 bits are needed.
    Large inverse(Large::words * 32 - 1);
    for (int q = 0; q >= least_decimal_exponent; --q) {
        bits_[q - least_decimal_exponent] = inverse.leading_bits();
        inverse.over_5();
    }
}

constexpr PowersOf5 powers_of_5;

#endif

Rounding nearest_double(const Decimal& decimal, double& number) noexcept {
    if (decimal.digits == 0 || decimal.exponent < least_decimal_exponent) {
        number = 0;
        return Rounding::decided;
    }
    if (decimal.exponent > largest_decimal_exponent) {
        return Rounding::too_large;
    }
    const int q = static_cast<int>(decimal.exponent);
    const Rounding result = nearest_normal(decimal.digits, q, number);
    if (!decimal.cut_off || result == Rounding::undecided) {
        return result;
    }
    double next = 0;
    const Rounding next_result = nearest_normal(decimal.digits + 1, q, next);
    const bool same = next_result == result && (result != Rounding::decided || next == number);
    return same ? result : Rounding::undecided;
}

} // namespace foundation::json::detail
