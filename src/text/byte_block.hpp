/// @file
/// Blocks of sixteen bytes of text, which find their blanks, quotes, brackets and so on.
#ifndef FOUNDATION_JSON_SRC_TEXT_BYTE_BLOCK_HPP
#define FOUNDATION_JSON_SRC_TEXT_BYTE_BLOCK_HPP

#include <cstddef>
#include <cstdint>
#include <cstring>

// FOUNDATION_JSON_PORTABLE leaves out instructions that only some processors have.
#if !defined(FOUNDATION_JSON_PORTABLE) && defined(__SSE2__)
#define FOUNDATION_JSON_PARSER_SSE2
#include <emmintrin.h>
#elif !defined(FOUNDATION_JSON_PORTABLE) && defined(__ARM_NEON) && defined(__aarch64__)
#define FOUNDATION_JSON_PARSER_NEON
#include <arm_neon.h>
#endif

namespace foundation::json::detail {

// Every class of blocks has a type Mask: a set of the bytes of a block, which finds the first.

/// Sixteen bytes as two words; for machines without vectors.
class PortableBlock {
public:
    static constexpr std::size_t size = 16;

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

    private:
        static std::size_t index_in(std::uint64_t word) noexcept {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
            return static_cast<std::size_t>(__builtin_ctzll(word)) / 8;
#else
            return static_cast<std::size_t>(__builtin_clzll(word)) / 8;
#endif
        }

        static std::size_t shift(std::size_t index) noexcept {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
            return 8 * index;
#else
            return 56 - 8 * index;
#endif
        }

        std::uint64_t first_;
        std::uint64_t second_;
    };

    explicit PortableBlock(const char* from) noexcept {
        std::memcpy(&first_, from, sizeof first_);
        std::memcpy(&second_, from + sizeof first_, sizeof second_);
    }

    /// All bytes but spaces, tabs, line feeds and carriage returns.
    Mask not_blank() const noexcept {
        return {~blanks(first_) & tops, ~blanks(second_) & tops};
    }

    /// The bytes that another block has otherwise.
    Mask differing(const PortableBlock& other) const noexcept {
        return {~zeros(first_ ^ other.first_) & tops, ~zeros(second_ ^ other.second_) & tops};
    }

    /// All bytes but spaces.
    Mask not_space() const noexcept {
        return {~equal(first_, ' ') & tops, ~equal(second_, ' ') & tops};
    }

    /// The bytes of a string that cannot be skipped: quotes, backslashes, control bytes and all
    /// beyond ASCII.
    Mask special_in_string() const noexcept {
        return {special(first_), special(second_)};
    }

    /// The same without those beyond ASCII.
    Mask special_in_utf8() const noexcept {
        return {special(first_) & ~first_, special(second_) & ~second_};
    }

    bool is_ascii() const noexcept {
        return ((first_ | second_) & tops) == 0;
    }

    /// Quotes, slashes, commas and brackets.
    Mask structural() const noexcept {
        return {structural(first_), structural(second_)};
    }

private:
    static constexpr std::uint64_t repeat(unsigned char byte) noexcept {
        return byte * std::uint64_t{0x0101010101010101};
    }

    static constexpr std::uint64_t tops = std::uint64_t{0x8080808080808080};

    /// The bytes of a word that are zero.
    static std::uint64_t zeros(std::uint64_t word) noexcept {
        return ~(((word & repeat(0x7F)) + repeat(0x7F)) | word) & tops;
    }

    static std::uint64_t equal(std::uint64_t word, char byte) noexcept {
        return zeros(word ^ repeat(static_cast<unsigned char>(byte)));
    }

    static std::uint64_t blanks(std::uint64_t word) noexcept {
        return equal(word, ' ') | equal(word, '\n') | equal(word, '\r') | equal(word, '\t');
    }

    static std::uint64_t special(std::uint64_t word) noexcept {
        const std::uint64_t at_least_space = ((word & repeat(0x7F)) + repeat(0x60)) & tops;
        return (~at_least_space & tops) | (word & tops) | equal(word, '"') | equal(word, '\\');
    }

    static std::uint64_t structural(std::uint64_t word) noexcept {
        const std::uint64_t lower = word | repeat(0x20); // [ and ] become { and }
        return equal(lower, '{') | equal(lower, '}') | equal(word, ',') | equal(word, '"') |
               equal(word, '/');
    }

    std::uint64_t first_;
    std::uint64_t second_;
};

#if defined(FOUNDATION_JSON_PARSER_SSE2)

class Block {
public:
    static constexpr std::size_t size = 16;

    class Mask {
    public:
        explicit Mask(__m128i bytes) noexcept
            : Mask(static_cast<unsigned>(_mm_movemask_epi8(bytes))) {}
        explicit Mask(unsigned bits) noexcept : bits_(bits) {}

        bool empty() const noexcept { return bits_ == 0; }
        std::size_t first() const noexcept {
            return static_cast<std::size_t>(__builtin_ctz(bits_));
        }
        void remove_first() noexcept { bits_ &= bits_ - 1; }
        Mask complement() const noexcept { return Mask(bits_ ^ 0xFFFF); }

    private:
        unsigned bits_;
    };

    explicit Block(const char* from) noexcept
        : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))) {}

    Mask not_blank() const noexcept {
        return Mask(either(either(equal(' '), equal('\n')), either(equal('\r'), equal('\t'))))
            .complement();
    }

    Mask differing(const Block& other) const noexcept {
        return Mask(_mm_cmpeq_epi8(bytes_, other.bytes_)).complement();
    }

    Mask not_space() const noexcept { return Mask(equal(' ')).complement(); }

    Mask special_in_string() const noexcept {
        // As signed numbers, the bytes beyond ASCII are less than a space, too.
        const __m128i low = _mm_cmplt_epi8(bytes_, _mm_set1_epi8(' '));
        return Mask(either(low, either(equal('"'), equal('\\'))));
    }

    Mask special_in_utf8() const noexcept {
        const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(bytes_, _mm_set1_epi8(0x1F)), bytes_);
        return Mask(either(low, either(equal('"'), equal('\\'))));
    }

    bool is_ascii() const noexcept { return _mm_movemask_epi8(bytes_) == 0; }

    Mask structural() const noexcept {
        const __m128i lower = either(bytes_, _mm_set1_epi8(0x20)); // [ and ] become { and }
        const __m128i brackets = either(_mm_cmpeq_epi8(lower, _mm_set1_epi8('{')),
                                        _mm_cmpeq_epi8(lower, _mm_set1_epi8('}')));
        return Mask(either(either(brackets, equal(',')), either(equal('"'), equal('/'))));
    }

private:
    static __m128i either(__m128i a, __m128i b) noexcept { return _mm_or_si128(a, b); }
    __m128i equal(char byte) const noexcept { return _mm_cmpeq_epi8(bytes_, _mm_set1_epi8(byte)); }

    __m128i bytes_;
};

#elif defined(FOUNDATION_JSON_PARSER_NEON)

class Block {
public:
    static constexpr std::size_t size = 16;

    /// A set of bytes, kept as four equal bits for each byte.
    class Mask {
    public:
        explicit Mask(uint8x16_t bytes) noexcept
            : bits_(vget_lane_u64(vreinterpret_u64_u8(vshrn_n_u16(vreinterpretq_u16_u8(bytes), 4)),
                                  0)) {}

        bool empty() const noexcept { return bits_ == 0; }
        std::size_t first() const noexcept {
            return static_cast<std::size_t>(__builtin_ctzll(bits_)) / 4;
        }
        void remove_first() noexcept { bits_ &= ~(std::uint64_t{0xF} << (4 * first())); }

    private:
        std::uint64_t bits_;
    };

    explicit Block(const char* from) noexcept
        : bytes_(vld1q_u8(reinterpret_cast<const std::uint8_t*>(from))) {}

    Mask not_blank() const noexcept {
        return Mask(vmvnq_u8(
            vorrq_u8(vorrq_u8(equal(' '), equal('\n')), vorrq_u8(equal('\r'), equal('\t')))));
    }

    Mask differing(const Block& other) const noexcept {
        return Mask(vmvnq_u8(vceqq_u8(bytes_, other.bytes_)));
    }

    Mask not_space() const noexcept { return Mask(vmvnq_u8(equal(' '))); }

    Mask special_in_string() const noexcept {
        const uint8x16_t low = vcltq_s8(vreinterpretq_s8_u8(bytes_), vdupq_n_s8(' '));
        return Mask(vorrq_u8(low, vorrq_u8(equal('"'), equal('\\'))));
    }

    Mask special_in_utf8() const noexcept {
        const uint8x16_t low = vcltq_u8(bytes_, vdupq_n_u8(' '));
        return Mask(vorrq_u8(low, vorrq_u8(equal('"'), equal('\\'))));
    }

    bool is_ascii() const noexcept { return vmaxvq_u8(bytes_) < 0x80; }

    Mask structural() const noexcept {
        const uint8x16_t lower = vorrq_u8(bytes_, vdupq_n_u8(0x20)); // [ and ] become { and }
        const uint8x16_t brackets =
            vorrq_u8(vceqq_u8(lower, vdupq_n_u8('{')), vceqq_u8(lower, vdupq_n_u8('}')));
        return Mask(vorrq_u8(vorrq_u8(brackets, equal(',')), vorrq_u8(equal('"'), equal('/'))));
    }

private:
    uint8x16_t equal(char byte) const noexcept {
        return vceqq_u8(bytes_, vdupq_n_u8(static_cast<std::uint8_t>(byte)));
    }

    uint8x16_t bytes_;
};

#else

using Block = PortableBlock;

#endif

} // namespace foundation::json::detail

#endif
