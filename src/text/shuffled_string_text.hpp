/// @file
/// Escaping string content eight bytes at a time: a shuffle puts a backslash in front of each byte
/// that takes one, however many there are. Text full of escapes costs no decision for each of them.
#ifndef FOUNDATION_JSON_SRC_TEXT_SHUFFLED_STRING_TEXT_HPP
#define FOUNDATION_JSON_SRC_TEXT_SHUFFLED_STRING_TEXT_HPP

#include "text/fast_string_text.hpp"

#if defined(FOUNDATION_JSON_SSE2) && defined(__GNUC__) && defined(__x86_64__)
#define FOUNDATION_JSON_SHUFFLES
#include <tmmintrin.h>
// For this file alone. Whether the processor has these instructions is asked before each use.
#define FOUNDATION_JSON_SHUFFLING [[gnu::target("ssse3")]]
#elif defined(FOUNDATION_JSON_NEON) && defined(FOUNDATION_JSON_LITTLE_ENDIAN)
#define FOUNDATION_JSON_SHUFFLES
#define FOUNDATION_JSON_SHUFFLING
#endif

#if defined(FOUNDATION_JSON_SHUFFLES)

#include <array>
#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

/// Whether this processor has the instructions for copy_escaped_by_shuffles().
inline bool has_shuffles() noexcept {
#if defined(__x86_64__)
    return __builtin_cpu_supports("ssse3") != 0;
#else
    return true;
#endif
}

/// What eight bytes become, one bit for each telling whether it is escaped.
struct Expansion {
    /// For each byte of the text the index of the byte it comes from, or 8 for a backslash.
    std::array<std::array<std::uint8_t, 16>, 256> sources{};
    /// How many bits are set.
    std::array<std::uint8_t, 256> escapes{};
};

constexpr Expansion make_expansion() noexcept {
    Expansion result{};
    for (std::size_t escaped = 0; escaped != 256; ++escaped) {
        std::size_t end = 0;
        for (std::uint8_t byte = 0; byte != 8; ++byte) {
            if ((escaped >> byte & 1) != 0) {
                result.sources[escaped][end++] = 8;
                ++result.escapes[escaped];
            }
            result.sources[escaped][end++] = byte;
        }
    }
    return result;
}

alignas(64) inline constexpr Expansion expansion = make_expansion();

/// The letters of the short escapes of bytes below 16, 0 for those that have none.
constexpr std::array<std::uint8_t, 16> make_control_letters() noexcept {
    std::array<std::uint8_t, 16> letters{};
    for (std::uint8_t byte = 0; byte != 16; ++byte) {
        letters[byte] = static_cast<std::uint8_t>(short_escape(byte));
    }
    return letters;
}

alignas(16) inline constexpr std::array<std::uint8_t, 16> control_letters = make_control_letters();

/// Up to fifteen bytes as two words with zeros behind them.
struct FewBytes {
    std::uint64_t first;
    std::uint64_t second;
};

/// @param count  from 1 to 15
inline FewBytes load_few(const char* from, std::size_t count) noexcept {
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

/// Sixteen bytes, and what becomes of them by a rule that has bytes beyond ASCII copied.
template <class Rule>
class ShuffledBytes {
    static_assert(!Rule::stops_beyond_ascii);

public:
#if defined(__x86_64__)
    using Vector = __m128i;

    FOUNDATION_JSON_SHUFFLING static Vector load(const char* from) noexcept {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    }

    FOUNDATION_JSON_SHUFFLING static Vector join(FewBytes bytes) noexcept {
        return _mm_set_epi64x(static_cast<long long>(bytes.second),
                              static_cast<long long>(bytes.first));
    }

    FOUNDATION_JSON_SHUFFLING explicit ShuffledBytes(Vector bytes) noexcept : bytes_(bytes) {
        const Vector controls = at_most(bytes, 0x1F);
        Vector escaped =
            _mm_or_si128(_mm_or_si128(controls, equal(bytes, '"')), equal(bytes, '\\'));
        if constexpr (Rule::escapes_solidus) {
            escaped = _mm_or_si128(escaped, equal(bytes, '/'));
        }
        escaped_ = mask(escaped);
    }

    /// One bit for each byte that is not written as it is.
    unsigned escaped() const noexcept {
        return escaped_;
    }

    /// Puts letters in the place of control characters.
    /// @return one bit for each that has no short escape
    FOUNDATION_JSON_SHUFFLING unsigned replace_controls() noexcept {
        const Vector low = at_most(bytes_, 0x0F);
        const Vector letters = _mm_and_si128(
            low,
            _mm_shuffle_epi8(
                _mm_load_si128(reinterpret_cast<const __m128i*>(control_letters.data())), bytes_));
        const Vector without = _mm_and_si128(at_most(bytes_, 0x1F), equal(letters, '\0'));
        bytes_ = _mm_or_si128(letters, _mm_andnot_si128(low, bytes_));
        return mask(without);
    }

    FOUNDATION_JSON_SHUFFLING void store(char* out) const noexcept {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes_);
    }

    /// Stores sixteen bytes of text made from the first eight.
    FOUNDATION_JSON_SHUFFLING void expand_first(char* out, unsigned escaped) const noexcept {
        expand(out, _mm_unpacklo_epi64(bytes_, _mm_set1_epi8('\\')), escaped);
    }

    /// Stores sixteen bytes of text made from the last eight.
    FOUNDATION_JSON_SHUFFLING void expand_last(char* out, unsigned escaped) const noexcept {
        expand(out, _mm_unpackhi_epi64(bytes_, _mm_set1_epi8('\\')), escaped);
    }

private:
    FOUNDATION_JSON_SHUFFLING static Vector equal(Vector bytes, char byte) noexcept {
        return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte));
    }

    FOUNDATION_JSON_SHUFFLING static Vector at_most(Vector bytes, char byte) noexcept {
        return _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(byte)), bytes);
    }

    FOUNDATION_JSON_SHUFFLING static unsigned mask(Vector bytes) noexcept {
        return static_cast<unsigned>(_mm_movemask_epi8(bytes));
    }

    FOUNDATION_JSON_SHUFFLING static void expand(char* out, Vector bytes,
                                                 unsigned escaped) noexcept {
        const Vector sources =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(expansion.sources[escaped].data()));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(bytes, sources));
    }
#else
    using Vector = uint8x16_t;

    static Vector load(const char* from) noexcept {
        return vld1q_u8(reinterpret_cast<const std::uint8_t*>(from));
    }

    static Vector join(FewBytes bytes) noexcept {
        return vcombine_u8(vcreate_u8(bytes.first), vcreate_u8(bytes.second));
    }

    explicit ShuffledBytes(Vector bytes) noexcept : bytes_(bytes) {
        Vector escaped =
            vorrq_u8(vorrq_u8(at_most(bytes, 0x1F), equal(bytes, '"')), equal(bytes, '\\'));
        if constexpr (Rule::escapes_solidus) {
            escaped = vorrq_u8(escaped, equal(bytes, '/'));
        }
        escaped_ = mask(escaped);
    }

    /// One bit for each byte that is not written as it is.
    unsigned escaped() const noexcept {
        return escaped_;
    }

    /// Puts letters in the place of control characters.
    /// @return one bit for each that has no short escape
    unsigned replace_controls() noexcept {
        // Whatever is not below 16 has no letter here.
        const Vector letters = vqtbl1q_u8(vld1q_u8(control_letters.data()), bytes_);
        const Vector without = vandq_u8(at_most(bytes_, 0x1F), equal(letters, '\0'));
        bytes_ = vbslq_u8(at_most(bytes_, 0x0F), letters, bytes_);
        return mask(without);
    }

    void store(char* out) const noexcept {
        vst1q_u8(reinterpret_cast<std::uint8_t*>(out), bytes_);
    }

    /// Stores sixteen bytes of text made from the first eight.
    void expand_first(char* out, unsigned escaped) const noexcept {
        expand(out, vget_low_u8(bytes_), escaped);
    }

    /// Stores sixteen bytes of text made from the last eight.
    void expand_last(char* out, unsigned escaped) const noexcept {
        expand(out, vget_high_u8(bytes_), escaped);
    }

private:
    static Vector equal(Vector bytes, char byte) noexcept {
        return vceqq_u8(bytes, vdupq_n_u8(static_cast<std::uint8_t>(byte)));
    }

    static Vector at_most(Vector bytes, std::uint8_t byte) noexcept {
        return vcleq_u8(bytes, vdupq_n_u8(byte));
    }

    static unsigned mask(Vector bytes) noexcept {
        constexpr std::uint8_t weights[] = {1, 2, 4, 8, 16, 32, 64, 128,
                                            1, 2, 4, 8, 16, 32, 64, 128};
        const Vector bits = vandq_u8(bytes, vld1q_u8(weights));
        return vaddv_u8(vget_low_u8(bits)) | static_cast<unsigned>(vaddv_u8(vget_high_u8(bits)))
                                                 << 8;
    }

    static void expand(char* out, uint8x8_t bytes, unsigned escaped) noexcept {
        const Vector source = vcombine_u8(bytes, vdup_n_u8('\\'));
        vst1q_u8(reinterpret_cast<std::uint8_t*>(out),
                 vqtbl1q_u8(source, vld1q_u8(expansion.sources[escaped].data())));
    }
#endif

    Vector bytes_;
    unsigned escaped_;
};

/// The same as copy_escaped(), with as much room.
template <class Rule>
FOUNDATION_JSON_SHUFFLING EscapedCopy copy_escaped_by_shuffles(char* out, const char* from,
                                                               const char* to) noexcept {
    while (from != to) {
        const auto left = static_cast<std::size_t>(to - from);
        std::size_t count = left < 16 ? left : 16;
        using Bytes = ShuffledBytes<Rule>;
        Bytes bytes(left < 16 ? Bytes::join(load_few(from, left)) : Bytes::load(from));
        unsigned escaped = bytes.escaped() & (0xFFFFU >> (16 - count));
        if (escaped == 0) {
            bytes.store(out);
            from += count;
            out += count;
            continue;
        }
        const unsigned without_letter = bytes.replace_controls() & escaped;
        if (without_letter != 0) {
            count = static_cast<std::size_t>(trailing_zeros(without_letter));
            escaped &= (1U << count) - 1;
        }
        const std::size_t first = count < 8 ? count : 8;
        bytes.expand_first(out, escaped & 0xFF);
        out += first + expansion.escapes[escaped & 0xFF];
        if (count > 8) {
            bytes.expand_last(out, escaped >> 8);
            out += count - 8 + expansion.escapes[escaped >> 8];
        }
        from += count;
        if (without_letter != 0) {
            break;
        }
    }
    return {from, out};
}

} // namespace foundation::json::detail

#endif

namespace foundation::json::detail {

/// The same as copy_escaped(), with as much room, in the quickest way that this processor has.
template <class Rule>
EscapedCopy copy_escaped_quickly(char* out, const char* from, const char* to) noexcept {
#if defined(FOUNDATION_JSON_SHUFFLES)
    if (!has_shuffles()) { // GCOVR_EXCL_BR_LINE: this depends on the processor
        return copy_escaped<VectorBytes<Rule>>(out, from, to); // GCOVR_EXCL_LINE: so does this
    }
    return copy_escaped_by_shuffles<Rule>(out, from, to);
#else
    return copy_escaped<VectorBytes<Rule>>(out, from, to);
#endif
}

} // namespace foundation::json::detail

#endif
