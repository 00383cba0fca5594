/// @file
/// Whole numbers of up to 1280 bits, to compute and to compare exactly.
#ifndef FOUNDATION_JSON_SRC_NUMBER_LARGE_HPP
#define FOUNDATION_JSON_SRC_NUMBER_LARGE_HPP

#include "number/wide.hpp"

#include <cstdint>

namespace foundation::json::detail {

/// A whole number without a sign. Whatever exceeds 1280 bits is undefined behaviour.
class Large {
public:
    static constexpr int bits = 1280;

    constexpr explicit Large(WordPair number) noexcept
        : size_(4),
          word_{static_cast<std::uint32_t>(number.low),
                static_cast<std::uint32_t>(number.low >> 32),
                static_cast<std::uint32_t>(number.high),
                static_cast<std::uint32_t>(number.high >> 32)} {
        trim();
    }
    constexpr explicit Large(std::uint64_t number) noexcept : Large(WordPair{0, number}) {}

    constexpr void multiply(std::uint32_t factor) noexcept {
        std::uint64_t carry = 0;
        for (int i = 0; i != size_; ++i) {
            carry += std::uint64_t{word_[i]} * factor;
            word_[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0) {
            word_[size_++] = static_cast<std::uint32_t>(carry);
        }
    }

    /// Rounds down.
    constexpr void divide(std::uint32_t divisor) noexcept {
        std::uint64_t rest = 0;
        for (int i = size_; i-- != 0;) {
            rest = rest << 32 | word_[i];
            word_[i] = static_cast<std::uint32_t>(rest / divisor);
            rest %= divisor;
        }
        trim();
    }

    constexpr void multiply_by_power_of_5(int exponent) noexcept {
        constexpr int most = 13; // the largest power that fits into a word
        for (; exponent >= most; exponent -= most) {
            multiply(1220703125);
        }
        for (; exponent > 0; --exponent) {
            multiply(5);
        }
    }

    constexpr void multiply_by_power_of_2(int exponent) noexcept {
        const int words = exponent / 32;
        multiply(std::uint32_t{1} << exponent % 32);
        if (size_ == 0) {
            return;
        }
        for (int i = size_; i-- != 0;) {
            word_[i + words] = word_[i];
        }
        for (int i = 0; i != words; ++i) {
            word_[i] = 0;
        }
        size_ += words;
    }

    /// 128 bits, from the highest that is set on; lower ones are cut off. The number is not 0.
    constexpr WordPair leading_bits() const noexcept {
        int shift = 0;
        while ((word(0) << shift >> 31 & 1) == 0) {
            ++shift;
        }
        const auto pair = [&](int i) {
            const std::uint64_t both = word(i) << 32 | word(i + 1);
            return both << shift | word(i + 2) << shift >> 32;
        };
        return {pair(0), pair(2)};
    }

    /// Less than, equal to or greater than 0, like the difference of two numbers.
    friend constexpr int compare(const Large& left, const Large& right) noexcept {
        if (left.size_ != right.size_) {
            return left.size_ - right.size_;
        }
        for (int i = left.size_; i-- != 0;) {
            if (left.word_[i] != right.word_[i]) {
                return left.word_[i] < right.word_[i] ? -1 : 1;
            }
        }
        return 0;
    }

private:
    /// A word of the number, the highest first; 0 behind the last.
    constexpr std::uint64_t word(int index) const noexcept {
        return index < size_ ? word_[size_ - 1 - index] : 0;
    }

    constexpr void trim() noexcept {
        while (size_ != 0 && word_[size_ - 1] == 0) {
            --size_;
        }
    }

    int size_;
    std::uint32_t word_[bits / 32]; ///< the lowest first; zero or undefined from size_ on
};

} // namespace foundation::json::detail

#endif
