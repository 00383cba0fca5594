/// @file
/// Copying and escaping string content, sixteen bytes at a time.
#ifndef FOUNDATION_JSON_SRC_TEXT_FAST_STRING_TEXT_HPP
#define FOUNDATION_JSON_SRC_TEXT_FAST_STRING_TEXT_HPP

#include "text/escapes.hpp"

#include "system/compiler.hpp"

#include <foundation/json/detail/words.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace foundation::json::detail {

template <class Word>
Word load_word(const char* from) noexcept {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

template <class Word>
void store_word(char* out, Word word) noexcept {
    std::memcpy(out, &word, sizeof word);
}

/// One word of two that are adjacent in memory.
inline std::uint64_t join_words(std::uint32_t first, std::uint32_t second) noexcept {
    return little_endian ? first | static_cast<std::uint64_t>(second) << 32
                         : static_cast<std::uint64_t>(first) << 32 | second;
}

/// Sixteen bytes as two words; for machines without vectors.
template <class EscapeRule>
class PortableBytes {
public:
    using Rule = EscapeRule;

    explicit PortableBytes(const char* from) noexcept
        : PortableBytes(load_word<std::uint64_t>(from), load_word<std::uint64_t>(from + 8)) {}

    PortableBytes(std::uint64_t first, std::uint64_t second) noexcept
        : first_(first), second_(second) {}

    void store(char* out) const noexcept {
        store_word(out, first_);
        store_word(out + 8, second_);
    }

    /// Whether any byte is special by the rule.
    bool any_escaped() const noexcept {
        return (escaped_bits(first_) | escaped_bits(second_)) != 0;
    }

    /// The index of the first byte that is special, or 16.
    unsigned first_escaped() const noexcept {
        const unsigned index = first_escaped(first_);
        return index < 8 ? index : 8 + first_escaped(second_);
    }

private:
    static constexpr std::uint64_t repeat(unsigned char byte) noexcept {
        return byte * std::uint64_t{0x0101010101010101};
    }

    /// The top bit of each byte of the result says whether that byte of the word is zero.
    static std::uint64_t zeros(std::uint64_t word) noexcept {
        return ~(((word & repeat(0x7F)) + repeat(0x7F)) | word) & repeat(0x80);
    }

    /// The top bit of each byte of the result says whether that byte of the word is special.
    static std::uint64_t escaped_bits(std::uint64_t word) noexcept {
        const std::uint64_t not_controls = (word & repeat(0x7F)) + repeat(0x60);
        std::uint64_t special = ~(not_controls | word) & repeat(0x80);
        special |= zeros(word ^ repeat('"')) | zeros(word ^ repeat('\\'));
        if constexpr (Rule::escapes_solidus) {
            special |= zeros(word ^ repeat('/'));
        }
        if constexpr (Rule::stops_beyond_ascii) {
            special |= word & repeat(0x80);
        }
        return special;
    }

    static unsigned first_escaped(std::uint64_t word) noexcept {
        const std::uint64_t escaped = escaped_bits(word);
        if (escaped == 0) {
            return 8;
        }
        const int zeros = little_endian ? trailing_zeros(escaped) : leading_zeros(escaped);
        return static_cast<unsigned>(zeros) / 8;
    }

    std::uint64_t first_;
    std::uint64_t second_;
};

#if defined(FOUNDATION_JSON_SSE2)

template <class EscapeRule>
class VectorBytes {
public:
    using Rule = EscapeRule;

    explicit VectorBytes(const char* from) noexcept
        : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))) {}

    VectorBytes(std::uint64_t first, std::uint64_t second) noexcept
        : bytes_(_mm_set_epi64x(static_cast<long long>(second), static_cast<long long>(first))) {}

    void store(char* out) const noexcept {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes_);
    }

    bool any_escaped() const noexcept { return escaped_mask() != 0; }

    unsigned first_escaped() const noexcept {
        return static_cast<unsigned>(trailing_zeros(escaped_mask() | 0x10000));
    }

private:
    unsigned escaped_mask() const noexcept {
        const __m128i quotes = _mm_cmpeq_epi8(bytes_, _mm_set1_epi8('"'));
        const __m128i backslashes = _mm_cmpeq_epi8(bytes_, _mm_set1_epi8('\\'));
        __m128i escaped = _mm_or_si128(_mm_or_si128(low(), quotes), backslashes);
        if constexpr (Rule::escapes_solidus) {
            escaped = _mm_or_si128(escaped, _mm_cmpeq_epi8(bytes_, _mm_set1_epi8('/')));
        }
        return static_cast<unsigned>(_mm_movemask_epi8(escaped));
    }

    /// The control bytes and, if these are special, the bytes beyond ASCII.
    __m128i low() const noexcept {
        if constexpr (Rule::stops_beyond_ascii) {
            return _mm_cmplt_epi8(bytes_, _mm_set1_epi8(0x20)); // as signed numbers
        } else {
            return _mm_cmpeq_epi8(_mm_min_epu8(bytes_, _mm_set1_epi8(0x1F)), bytes_);
        }
    }

    __m128i bytes_;
};

#elif defined(FOUNDATION_JSON_NEON)

template <class EscapeRule>
class VectorBytes {
public:
    using Rule = EscapeRule;

    explicit VectorBytes(const char* from) noexcept
        : bytes_(vld1q_u8(reinterpret_cast<const std::uint8_t*>(from))) {}

    VectorBytes(std::uint64_t first, std::uint64_t second) noexcept
        : bytes_(vcombine_u8(vcreate_u8(first), vcreate_u8(second))) {}

    void store(char* out) const noexcept { vst1q_u8(reinterpret_cast<std::uint8_t*>(out), bytes_); }

    bool any_escaped() const noexcept { return escaped_mask() != 0; }

    unsigned first_escaped() const noexcept {
        const std::uint64_t mask = escaped_mask();
        return mask == 0 ? 16 : static_cast<unsigned>(trailing_zeros(mask)) / 4;
    }

private:
    /// Four bits for each byte.
    std::uint64_t escaped_mask() const noexcept {
        uint8x16_t escaped =
            vorrq_u8(vceqq_u8(bytes_, vdupq_n_u8('"')), vceqq_u8(bytes_, vdupq_n_u8('\\')));
        if constexpr (Rule::stops_beyond_ascii) {
            escaped = vorrq_u8(escaped, vcltq_s8(vreinterpretq_s8_u8(bytes_), vdupq_n_s8(0x20)));
        } else {
            escaped = vorrq_u8(escaped, vcltq_u8(bytes_, vdupq_n_u8(0x20)));
        }
        if constexpr (Rule::escapes_solidus) {
            escaped = vorrq_u8(escaped, vceqq_u8(bytes_, vdupq_n_u8('/')));
        }
        const uint8x8_t narrowed = vshrn_n_u16(vreinterpretq_u16_u8(escaped), 4);
        return vget_lane_u64(vreinterpret_u64_u8(narrowed), 0);
    }

    uint8x16_t bytes_;
};

#else

template <class Rule>
using VectorBytes = PortableBytes<Rule>;

#endif

/// Copies string content that contains no special byte, which is the common case.
///
/// Short content is copied in overlapping words, to need few branches on its size.
/// @param out  with room for the content
/// @return false if a byte is special; then the content of `out` is undefined
template <class Bytes>
[[gnu::always_inline]] inline bool copy_clean(char* out, const char* from,
                                              std::size_t size) noexcept {
    if (size >= 16) {
        const std::size_t last = size - 16;
        for (std::size_t index = 0; index < last; index += 16) {
            const Bytes bytes(from + index);
            bytes.store(out + index);
            if (bytes.any_escaped()) {
                return false;
            }
        }
        const Bytes bytes(from + last);
        bytes.store(out + last);
        return !bytes.any_escaped();
    }
    if (size >= 4) {
        const std::size_t places[] = {0, size / 8 * 4, size - 4 - size / 8 * 4, size - 4};
        std::uint32_t words[4];
        for (int i = 0; i != 4; ++i) {
            words[i] = load_word<std::uint32_t>(from + places[i]);
            store_word(out + places[i], words[i]);
        }
        return !Bytes(join_words(words[0], words[1]), join_words(words[2], words[3])).any_escaped();
    }
    char letters = '\0';
    for (std::size_t index = 0; index != size; ++index) {
        out[index] = from[index];
        letters |= escape_letters<typename Bytes::Rule>[static_cast<unsigned char>(from[index])];
    }
    return letters == '\0';
}

/// How many bytes a string of at least sixteen begins with that are not special.
template <class Bytes>
std::size_t count_clean(const char* from, const char* to) noexcept {
    const char* at = from;
    while (to - at >= 16 && !Bytes(at).any_escaped()) {
        at += 16;
    }
    // The last bytes are those behind whatever was found clean.
    at = to - at >= 16 ? at : to - 16;
    const unsigned clean = Bytes(at).first_escaped();
    return static_cast<std::size_t>(at - from) + clean;
}

/// Where copy_escaped() stopped reading and writing.
struct EscapedCopy {
    const char* from;
    char* out;
};

/// Copies string content, with short escapes, up to its end or a byte whose letter is `u`.
///
/// Text is stored in whole words, up to 16 bytes beyond its end.
/// @param out  with room for twice the content and 16 bytes more
template <class Bytes>
EscapedCopy copy_escaped(char* out, const char* from, const char* to) noexcept {
    for (;;) {
        const std::ptrdiff_t left = to - from;
        std::ptrdiff_t clean = 0;
        if (left >= 16) {
            const Bytes bytes(from);
            bytes.store(out);
            clean = bytes.first_escaped();
            if (clean == 16) {
                from += 16;
                out += 16;
                continue;
            }
        } else if (left >= 8) {
            // The last word overlaps the first.
            const auto first = load_word<std::uint64_t>(from);
            const auto last = load_word<std::uint64_t>(to - 8);
            store_word(out, first);
            store_word(out + left - 8, last);
            clean = Bytes(first, last).first_escaped();
            clean = clean < 8 ? clean : left - 16 + clean;
        } else if (left >= 4) {
            const auto first = load_word<std::uint32_t>(from);
            const auto last = load_word<std::uint32_t>(to - 4);
            store_word(out, first);
            store_word(out + left - 4, last);
            const std::uint64_t both = join_words(first, last);
            clean = Bytes(both, both).first_escaped();
            clean = clean < 4 ? clean : left - 8 + (clean < 8 ? clean : 8);
        } else {
            while (clean != left &&
                   escape_letters<typename Bytes::Rule>[static_cast<unsigned char>(from[clean])] ==
                       '\0') {
                out[clean] = from[clean];
                ++clean;
            }
        }
        from += clean;
        out += clean;
        if (clean == left) {
            return {from, out};
        }
        const char letter = escape_letters<typename Bytes::Rule>[static_cast<unsigned char>(*from)];
        if (letter == 'u') {
            return {from, out};
        }
        out[0] = '\\';
        out[1] = letter;
        out += 2;
        ++from;
    }
}

} // namespace foundation::json::detail

#endif
