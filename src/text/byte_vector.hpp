/// @file
/// Sixteen bytes at once: the only file that knows the vectors of processors.
///
/// Every class of vectors has the same functions. Comparisons give a vector, too: each byte is
/// all ones where the comparison holds, of a PortableVector at least the highest bit.
#ifndef FOUNDATION_JSON_SRC_TEXT_BYTE_VECTOR_HPP
#define FOUNDATION_JSON_SRC_TEXT_BYTE_VECTOR_HPP

#include "system/compiler.hpp"
#include "text/words.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

// FOUNDATION_JSON_PORTABLE leaves out instructions that only some processors have. Where there are
// shuffles, FOUNDATION_JSON_SHUFFLING marks the functions that use them.
#if !defined(FOUNDATION_JSON_PORTABLE) &&                                                          \
    (defined(__SSE2__) || (defined(_MSC_VER) && defined(_M_X64) && !defined(_M_ARM64EC)))
#define FOUNDATION_JSON_SSE2
#include <emmintrin.h>
#if defined(__x86_64__) && defined(__GNUC__)
#define FOUNDATION_JSON_SHUFFLES
#include <tmmintrin.h>
#define FOUNDATION_JSON_SHUFFLING [[gnu::target("ssse3")]]
#endif
#elif !defined(FOUNDATION_JSON_PORTABLE) && defined(__ARM_NEON) && defined(__aarch64__) &&         \
    defined(FOUNDATION_JSON_LITTLE_ENDIAN)
#define FOUNDATION_JSON_NEON
#include <arm_neon.h>
#define FOUNDATION_JSON_SHUFFLES
#define FOUNDATION_JSON_SHUFFLING
#endif

namespace foundation::json::detail {

/// Two words; for machines without vectors.
class PortableVector {
public:
    /// A set of bytes, kept as the top bit of each byte of two words.
    class Mask {
    public:
        Mask(std::uint64_t first, std::uint64_t second) noexcept : first_(first), second_(second) {}

        bool empty() const noexcept { return (first_ | second_) == 0; }

        /// The index of the first byte; the set must not be empty.
        std::size_t first() const noexcept {
            return first_ != 0 ? index_in(first_) : 8 + index_in(second_);
        }

        void remove_first() noexcept {
            std::uint64_t& word = first_ != 0 ? first_ : second_;
            word ^= std::uint64_t{0x80} << shift(index_in(word));
        }

        Mask complement() const noexcept { return {first_ ^ tops, second_ ^ tops}; }

    private:
        static std::size_t index_in(std::uint64_t word) noexcept {
            const int zeros = little_endian ? trailing_zeros(word) : leading_zeros(word);
            return static_cast<std::size_t>(zeros) / 8;
        }

        static std::size_t shift(std::size_t index) noexcept {
            return little_endian ? 8 * index : 56 - 8 * index;
        }

        std::uint64_t first_;
        std::uint64_t second_;
    };

    explicit PortableVector(const char* from) noexcept
        : PortableVector(load_word<std::uint64_t>(from), load_word<std::uint64_t>(from + 8)) {}

    /// Of two words that are adjacent in memory.
    PortableVector(std::uint64_t first, std::uint64_t second) noexcept
        : first_(first), second_(second) {}

    void store(char* out) const noexcept {
        store_word(out, first_);
        store_word(out + 8, second_);
    }

    PortableVector equal_to(PortableVector other) const noexcept {
        return {zeros(first_ ^ other.first_), zeros(second_ ^ other.second_)};
    }
    PortableVector equal_to(char byte) const noexcept {
        const std::uint64_t repeated = repeat(static_cast<unsigned char>(byte));
        return {zeros(first_ ^ repeated), zeros(second_ ^ repeated)};
    }

    /// @param limit  at most 0x7F
    PortableVector at_most(unsigned char limit) const noexcept {
        return {ascii_at_most(first_, limit) & ~first_, ascii_at_most(second_, limit) & ~second_};
    }

    /// As at_most(), and all bytes beyond ASCII.
    PortableVector at_most_or_beyond_ascii(unsigned char limit) const noexcept {
        return {ascii_at_most(first_, limit) | first_, ascii_at_most(second_, limit) | second_};
    }

    /// Each byte with the bit that distinguishes lower case.
    PortableVector in_lower_case() const noexcept {
        return {first_ | repeat(0x20), second_ | repeat(0x20)};
    }

    /// The value of each decimal digit, and more than 9 for any other byte.
    PortableVector digit_values() const noexcept {
        return {first_ ^ repeat('0'), second_ ^ repeat('0')};
    }

    /// The number of sixteen digits that have these values.
    std::uint64_t decimal() const noexcept {
        return eight_digits(lowest_first(first_)) * 100000000 + eight_digits(lowest_first(second_));
    }

    friend PortableVector operator&(PortableVector left, PortableVector right) noexcept {
        return {left.first_ & right.first_, left.second_ & right.second_};
    }

    bool is_ascii() const noexcept { return ((first_ | second_) & tops) == 0; }

    friend PortableVector operator|(PortableVector left, PortableVector right) noexcept {
        return {left.first_ | right.first_, left.second_ | right.second_};
    }

    /// The bytes for which a comparison holds.
    Mask mask() const noexcept { return {first_ & tops, second_ & tops}; }

private:
    static constexpr std::uint64_t tops = std::uint64_t{0x8080808080808080};

    static constexpr std::uint64_t repeat(unsigned char byte) noexcept {
        return byte * std::uint64_t{0x0101010101010101};
    }

    static std::uint64_t zeros(std::uint64_t word) noexcept {
        return ~(((word & repeat(0x7F)) + repeat(0x7F)) | word);
    }

    /// Compares bytes without their highest bit.
    static std::uint64_t ascii_at_most(std::uint64_t word, unsigned char limit) noexcept {
        return ~((word & repeat(0x7F)) + repeat(static_cast<unsigned char>(0x7F - limit)));
    }

    std::uint64_t first_;
    std::uint64_t second_;
};

#if defined(FOUNDATION_JSON_SSE2)

class Vector {
public:
    /// A set of bytes, kept as one bit for each.
    class Mask {
    public:
        explicit Mask(unsigned bits) noexcept : bits_(bits) {}

        bool empty() const noexcept { return bits_ == 0; }
        std::size_t first() const noexcept {
            return static_cast<std::size_t>(trailing_zeros(bits_));
        }
        void remove_first() noexcept { bits_ &= bits_ - 1; }
        Mask complement() const noexcept { return Mask(bits_ ^ 0xFFFF); }

    private:
        unsigned bits_;
    };

    Vector() noexcept : bytes_(_mm_setzero_si128()) {}
    explicit Vector(const char* from) noexcept
        : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))) {}
    Vector(std::uint64_t first, std::uint64_t second) noexcept
        : bytes_(_mm_set_epi64x(static_cast<long long>(second), static_cast<long long>(first))) {}

    void store(char* out) const noexcept {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes_);
    }

    Vector equal_to(Vector other) const noexcept {
        return Vector(_mm_cmpeq_epi8(bytes_, other.bytes_));
    }
    Vector equal_to(char byte) const noexcept {
        return Vector(_mm_cmpeq_epi8(bytes_, _mm_set1_epi8(byte)));
    }

    Vector at_most(unsigned char limit) const noexcept {
        const __m128i lesser = _mm_min_epu8(bytes_, _mm_set1_epi8(static_cast<char>(limit)));
        return Vector(_mm_cmpeq_epi8(lesser, bytes_));
    }

    Vector at_most_or_beyond_ascii(unsigned char limit) const noexcept {
        // As signed numbers, the bytes beyond ASCII are less than any other, too.
        return Vector(_mm_cmplt_epi8(bytes_, _mm_set1_epi8(static_cast<char>(limit + 1))));
    }

    Vector in_lower_case() const noexcept {
        return Vector(_mm_or_si128(bytes_, _mm_set1_epi8(0x20)));
    }

    Vector digit_values() const noexcept {
        return Vector(_mm_xor_si128(bytes_, _mm_set1_epi8('0')));
    }

    /// Joins neighbours to pairs, pairs to groups of four, and these to groups of eight.
    std::uint64_t decimal() const noexcept {
        const __m128i tens =
            _mm_mullo_epi16(_mm_and_si128(bytes_, _mm_set1_epi16(0x00FF)), _mm_set1_epi16(10));
        const __m128i pairs = _mm_add_epi16(tens, _mm_srli_epi16(bytes_, 8));
        const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
        const __m128i eights =
            _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(1 << 16 | 10000));
        std::uint64_t both = 0;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(&both), eights);
        return (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
    }

    friend Vector operator|(Vector left, Vector right) noexcept {
        return Vector(_mm_or_si128(left.bytes_, right.bytes_));
    }

    Mask mask() const noexcept { return Mask(bits()); }

    /// The bytes for which a comparison holds, as one bit for each.
    unsigned bits() const noexcept { return static_cast<unsigned>(_mm_movemask_epi8(bytes_)); }

    bool is_ascii() const noexcept { return bits() == 0; }

    friend Vector operator&(Vector left, Vector right) noexcept {
        return Vector(_mm_and_si128(left.bytes_, right.bytes_));
    }
    friend Vector operator^(Vector left, Vector right) noexcept {
        return Vector(_mm_xor_si128(left.bytes_, right.bytes_));
    }

    /// Without the bits that another vector has.
    Vector without(Vector other) const noexcept {
        return Vector(_mm_andnot_si128(other.bytes_, bytes_));
    }

    /// Each byte less a number, but not less than 0.
    Vector minus(unsigned char number) const noexcept {
        return Vector(_mm_subs_epu8(bytes_, _mm_set1_epi8(static_cast<char>(number))));
    }

    /// The four low bits of each byte.
    Vector low_halves() const noexcept {
        return Vector(_mm_and_si128(bytes_, _mm_set1_epi8(0x0F)));
    }

    /// The four high bits of each byte.
    Vector high_halves() const noexcept { return Vector(_mm_srli_epi16(bytes_, 4)).low_halves(); }

    /// The first eight bytes, or the last eight, and eight times another.
    Vector first_half_and(char byte) const noexcept {
        return Vector(_mm_unpacklo_epi64(bytes_, _mm_set1_epi8(byte)));
    }
    Vector last_half_and(char byte) const noexcept {
        return Vector(_mm_unpackhi_epi64(bytes_, _mm_set1_epi8(byte)));
    }

#if defined(FOUNDATION_JSON_SHUFFLES)
    /// For each byte of the indexes the byte that has this index; any or 0 for an index beyond 15.
    FOUNDATION_JSON_SHUFFLING Vector at(Vector indexes) const noexcept {
        return Vector(_mm_shuffle_epi8(bytes_, indexes.bytes_));
    }

    /// The last bytes of another vector, then all of this one but for as many.
    template <int Count>
    FOUNDATION_JSON_SHUFFLING Vector behind_last(Vector previous) const noexcept {
        return Vector(_mm_alignr_epi8(bytes_, previous.bytes_, 16 - Count));
    }
#endif

private:
    explicit Vector(__m128i bytes) noexcept : bytes_(bytes) {}

    __m128i bytes_;
};

/// The values of sixteen digits: of two numbers below 10^8, the first digit of each lowest.
/// @param numbers  the first of them in the low half; becomes the digits of the first
/// @return those of the second
inline std::uint64_t spread_sixteen_digits(std::uint64_t& numbers) noexcept {
    // Divides by 10^4, 100 and 10, each time with quotient and remainder beside each other.
    const __m128i both = _mm_unpacklo_epi32(
        _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&numbers)), _mm_setzero_si128());
    const __m128i high_fours = _mm_srli_epi64(_mm_mul_epu32(both, _mm_set1_epi64x(0xD1B71759)), 45);
    const __m128i low_fours =
        _mm_sub_epi64(both, _mm_mul_epu32(high_fours, _mm_set1_epi64x(10000)));
    const __m128i fours = _mm_or_si128(high_fours, _mm_slli_epi64(low_fours, 32));
    const __m128i hundreds = _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi16(10486)), 4);
    const __m128i below_hundred =
        _mm_sub_epi16(fours, _mm_mullo_epi16(hundreds, _mm_set1_epi16(100)));
    const __m128i pairs = _mm_or_si128(hundreds, _mm_slli_epi32(below_hundred, 16));
    const __m128i tens = _mm_mulhi_epu16(pairs, _mm_set1_epi16(6554));
    const __m128i ones = _mm_sub_epi16(pairs, _mm_mullo_epi16(tens, _mm_set1_epi16(10)));
    const __m128i digits = _mm_or_si128(tens, _mm_slli_epi16(ones, 8));
    std::uint64_t second = 0;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(&numbers), digits);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(&second), _mm_unpackhi_epi64(digits, digits));
    return second;
}

#elif defined(FOUNDATION_JSON_NEON)

class Vector {
public:
    /// A set of bytes, kept as four equal bits for each byte.
    class Mask {
    public:
        explicit Mask(std::uint64_t bits) noexcept : bits_(bits) {}

        bool empty() const noexcept { return bits_ == 0; }
        std::size_t first() const noexcept {
            return static_cast<std::size_t>(trailing_zeros(bits_)) / 4;
        }
        void remove_first() noexcept { bits_ &= ~(std::uint64_t{0xF} << (4 * first())); }
        Mask complement() const noexcept { return Mask(~bits_); }

    private:
        std::uint64_t bits_;
    };

    Vector() noexcept : bytes_(vdupq_n_u8(0)) {}
    explicit Vector(const char* from) noexcept
        : bytes_(vld1q_u8(reinterpret_cast<const std::uint8_t*>(from))) {}
    Vector(std::uint64_t first, std::uint64_t second) noexcept
        : bytes_(vcombine_u8(vcreate_u8(first), vcreate_u8(second))) {}

    void store(char* out) const noexcept { vst1q_u8(reinterpret_cast<std::uint8_t*>(out), bytes_); }

    Vector equal_to(Vector other) const noexcept { return Vector(vceqq_u8(bytes_, other.bytes_)); }
    Vector equal_to(char byte) const noexcept {
        return Vector(vceqq_u8(bytes_, vdupq_n_u8(static_cast<std::uint8_t>(byte))));
    }

    Vector at_most(unsigned char limit) const noexcept {
        return Vector(vcleq_u8(bytes_, vdupq_n_u8(limit)));
    }

    Vector at_most_or_beyond_ascii(unsigned char limit) const noexcept {
        return Vector(
            vcleq_s8(vreinterpretq_s8_u8(bytes_), vdupq_n_s8(static_cast<std::int8_t>(limit))));
    }

    Vector in_lower_case() const noexcept { return Vector(vorrq_u8(bytes_, vdupq_n_u8(0x20))); }

    Vector digit_values() const noexcept { return Vector(veorq_u8(bytes_, vdupq_n_u8('0'))); }

    std::uint64_t decimal() const noexcept {
        const uint64x2_t words = vreinterpretq_u64_u8(bytes_);
        return eight_digits(vgetq_lane_u64(words, 0)) * 100000000 +
               eight_digits(vgetq_lane_u64(words, 1));
    }

    friend Vector operator|(Vector left, Vector right) noexcept {
        return Vector(vorrq_u8(left.bytes_, right.bytes_));
    }

    Mask mask() const noexcept {
        const uint8x8_t narrowed = vshrn_n_u16(vreinterpretq_u16_u8(bytes_), 4);
        return Mask(vget_lane_u64(vreinterpret_u64_u8(narrowed), 0));
    }

    /// The bytes for which a comparison holds, as one bit for each.
    unsigned bits() const noexcept {
        constexpr std::uint8_t weights[] = {1, 2, 4, 8, 16, 32, 64, 128,
                                            1, 2, 4, 8, 16, 32, 64, 128};
        const uint8x16_t bits = vandq_u8(bytes_, vld1q_u8(weights));
        return vaddv_u8(vget_low_u8(bits)) | static_cast<unsigned>(vaddv_u8(vget_high_u8(bits)))
                                                 << 8;
    }

    bool is_ascii() const noexcept { return vmaxvq_u8(bytes_) < 0x80; }

    friend Vector operator&(Vector left, Vector right) noexcept {
        return Vector(vandq_u8(left.bytes_, right.bytes_));
    }
    friend Vector operator^(Vector left, Vector right) noexcept {
        return Vector(veorq_u8(left.bytes_, right.bytes_));
    }

    /// Without the bits that another vector has.
    Vector without(Vector other) const noexcept { return Vector(vbicq_u8(bytes_, other.bytes_)); }

    /// Each byte less a number, but not less than 0.
    Vector minus(unsigned char number) const noexcept {
        return Vector(vqsubq_u8(bytes_, vdupq_n_u8(number)));
    }

    /// The four low bits of each byte.
    Vector low_halves() const noexcept { return Vector(vandq_u8(bytes_, vdupq_n_u8(0x0F))); }

    /// The four high bits of each byte.
    Vector high_halves() const noexcept { return Vector(vshrq_n_u8(bytes_, 4)); }

    /// The first eight bytes, or the last eight, and eight times another.
    Vector first_half_and(char byte) const noexcept {
        return Vector(vcombine_u8(vget_low_u8(bytes_), vdup_n_u8(static_cast<std::uint8_t>(byte))));
    }
    Vector last_half_and(char byte) const noexcept {
        return Vector(
            vcombine_u8(vget_high_u8(bytes_), vdup_n_u8(static_cast<std::uint8_t>(byte))));
    }

    /// For each byte of the indexes the byte that has this index; any or 0 for an index beyond 15.
    Vector at(Vector indexes) const noexcept { return Vector(vqtbl1q_u8(bytes_, indexes.bytes_)); }

    /// The last bytes of another vector, then all of this one but for as many.
    template <int Count>
    Vector behind_last(Vector previous) const noexcept {
        return Vector(vextq_u8(previous.bytes_, bytes_, 16 - Count));
    }

private:
    explicit Vector(uint8x16_t bytes) noexcept : bytes_(bytes) {}

    uint8x16_t bytes_;
};

#else

using Vector = PortableVector;

#endif

#if defined(FOUNDATION_JSON_SHUFFLES)

/// Whether this processor has the instructions of functions marked FOUNDATION_JSON_SHUFFLING.
inline bool has_shuffles() noexcept {
#if defined(FOUNDATION_JSON_SSE2)
    return __builtin_cpu_supports("ssse3") != 0;
#else
    return true;
#endif
}

/// One to fifteen bytes, and zeros behind them.
inline Vector load_few(const char* from, std::size_t count) noexcept {
    if (count >= 8) {
        const auto last = load_word<std::uint64_t>(from + count - 8);
        return {load_word<std::uint64_t>(from), last >> 8 >> 8 * (15 - count)};
    }
    if (count >= 4) {
        const std::uint64_t last = load_word<std::uint32_t>(from + count - 4);
        return {load_word<std::uint32_t>(from) | last >> 8 * (8 - count) << 32, 0};
    }
    const auto byte = [from](std::size_t index) {
        return static_cast<std::uint64_t>(static_cast<unsigned char>(from[index])) << 8 * index;
    };
    return {byte(0) | byte(count / 2) | byte(count - 1), 0};
}

/// A table with an entry for each number of four bits.
inline Vector table_of(const std::array<std::uint8_t, 16>& entries) noexcept {
    return Vector(reinterpret_cast<const char*>(entries.data()));
}

#endif

} // namespace foundation::json::detail

#endif
