#include "parser/decimal.hpp"

#include <cstddef>
#include <cstring>

namespace foundation::json::detail {

namespace {

// Numbers below the first are nearer to zero than to any double, whatever their 19 digits, and
// those above the last are too large.
constexpr int least_exponent = -342;
constexpr int largest_exponent = 308;

double from_bits(std::uint64_t bits) noexcept {
    static_assert(sizeof(double) == sizeof bits);
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

#if defined(__SIZEOF_INT128__)

__extension__ using Wide = unsigned __int128;

/// A large number for making the table below; the lowest 32 bits come first.
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

    /// The highest 128 bits, the first of them set; what lies below is cut off.
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

/// The leading 128 bits of the powers of five, each cut off below.
class PowersOf5 {
public:
    constexpr PowersOf5() noexcept : bits_{} {
        Large power(0);
        for (int q = 0; q <= largest_exponent; ++q) {
            bits_[q - least_exponent] = power.leading_bits();
            power.times_5();
        }
        // 5^-342 has its first bit 795 places behind the point, and 128 bits are wanted.
        Large inverse(Large::words * 32 - 1);
        for (int q = 0; q >= least_exponent; --q) {
            bits_[q - least_exponent] = inverse.leading_bits();
            inverse.over_5();
        }
    }

    constexpr Wide leading_bits(int q) const noexcept { return bits_[q - least_exponent]; }

    /// 5^q is the leading bits, and what was cut off of them, times 2 to this. The product is the
    /// logarithm of 5^q to base 2, rounded down.
    static constexpr int exponent(int q) noexcept { return (q * 152170 >> 16) - 127; }

    /// Whether 128 bits hold 5^q.
    static constexpr bool is_exact(int q) noexcept { return q >= 0 && q <= 55; }

private:
    Wide bits_[largest_exponent - least_exponent + 1];
};

constexpr PowersOf5 powers_of_5;

constexpr int bits_of_double = 53;
constexpr int exponent_bias = 1075; // of a double's 53 bits, taken as a whole number
constexpr int least_biased = 1;
constexpr int largest_biased = 2046;

Rounding nearest_normal(std::uint64_t digits, int q, double& number) noexcept {
    const int shift = __builtin_clzll(digits);
    const std::uint64_t factor = digits << shift;
    const Wide power = powers_of_5.leading_bits(q);
    const Wide low = Wide{factor} * static_cast<std::uint64_t>(power);
    const Wide product = Wide{factor} * static_cast<std::uint64_t>(power >> 64) + (low >> 64);
    // The number is product times a power of 2, and a rest that is less than 2: one for what was
    // cut off of `low`, and one for what was cut off of the power.
    const int excess = 128 - bits_of_double - (product >> 127 == 0 ? 1 : 0);
    std::uint64_t bits = static_cast<std::uint64_t>(product >> excess);
    const Wide half = Wide{1} << (excess - 1);
    const Wide rest = product & (2 * half - 1);
    bool up = rest > half;
    if (rest == half || rest == half - 1) {
        if (!PowersOf5::is_exact(q)) {
            return Rounding::undecided;
        }
        const bool more = static_cast<std::uint64_t>(low) != 0;
        up = rest == half && (more || (bits & 1) != 0);
    }
    int biased = excess + 64 + PowersOf5::exponent(q) + q - shift + exponent_bias;
    bits += up ? 1 : 0;
    if (bits >> bits_of_double != 0) {
        bits >>= 1;
        ++biased;
    }
    if (biased < least_biased) {
        return Rounding::undecided;
    }
    if (biased > largest_biased) {
        return Rounding::too_large;
    }
    // Adding, the first of the 53 bits goes into the exponent.
    number = from_bits((static_cast<std::uint64_t>(biased - 1) << (bits_of_double - 1)) + bits);
    return Rounding::decided;
}

#else

Rounding nearest_normal(std::uint64_t, int, double&) noexcept {
    return Rounding::undecided;
}

#endif

} // namespace

Rounding nearest_double(const Decimal& decimal, double& number) noexcept {
    if (decimal.digits == 0 || decimal.exponent < least_exponent) {
        number = 0;
        return Rounding::decided;
    }
    if (decimal.exponent > largest_exponent) {
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
