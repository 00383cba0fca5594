/// @file
/// Escaping string content eight bytes at a time: a shuffle puts a backslash in front of each byte
/// that takes one, however many there are. Text full of escapes costs no decision for each of them.
#ifndef FOUNDATION_JSON_SRC_TEXT_SHUFFLED_STRING_TEXT_HPP
#define FOUNDATION_JSON_SRC_TEXT_SHUFFLED_STRING_TEXT_HPP

#include "text/fast_string_text.hpp"

#if defined(FOUNDATION_JSON_SHUFFLES)

#include <array>
#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

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

/// Sixteen bytes, and what becomes of them by a rule that has bytes beyond ASCII copied.
template <class Rule>
class ShuffledBytes {
    static_assert(!Rule::stops_beyond_ascii);

public:
    FOUNDATION_JSON_SHUFFLING explicit ShuffledBytes(Vector bytes) noexcept
        : bytes_(bytes), escaped_(special_bytes<Rule>(bytes).bits()) {}

    /// One bit for each byte that is not written as it is.
    unsigned escaped() const noexcept { return escaped_; }

    /// Puts letters in the place of control characters.
    /// @return one bit for each that has no short escape
    FOUNDATION_JSON_SHUFFLING unsigned replace_controls() noexcept {
        const Vector low = bytes_.at_most(0x0F);
        const Vector letters = table_of(control_letters).at(bytes_) & low;
        const Vector without_letter = bytes_.at_most(0x1F) & letters.equal_to('\0');
        bytes_ = letters | bytes_.without(low);
        return without_letter.bits();
    }

    FOUNDATION_JSON_SHUFFLING void store(char* out) const noexcept { bytes_.store(out); }

    /// Stores sixteen bytes of text made from the first eight.
    FOUNDATION_JSON_SHUFFLING void expand_first(char* out, unsigned escaped) const noexcept {
        bytes_.first_half_and('\\').at(table_of(expansion.sources[escaped])).store(out);
    }

    /// Stores sixteen bytes of text made from the last eight.
    FOUNDATION_JSON_SHUFFLING void expand_last(char* out, unsigned escaped) const noexcept {
        bytes_.last_half_and('\\').at(table_of(expansion.sources[escaped])).store(out);
    }

private:
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
        ShuffledBytes<Rule> bytes(left < 16 ? load_few(from, left) : Vector(from));
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
        return copy_escaped<Rule>(out, from, to); // GCOVR_EXCL_LINE: so does this
    }
    return copy_escaped_by_shuffles<Rule>(out, from, to);
#else
    return copy_escaped<Rule>(out, from, to);
#endif
}

} // namespace foundation::json::detail

#endif
