/// @file
/// Whether a text is UTF-8: sequence by sequence, or sixteen bytes at a time.
#ifndef FOUNDATION_JSON_SRC_TEXT_UTF8_VALIDATION_HPP
#define FOUNDATION_JSON_SRC_TEXT_UTF8_VALIDATION_HPP

#include "text/byte_block.hpp"
#include "text/byte_vector.hpp"
#include "text/escapes.hpp"
#include "text/utf8.hpp"
#include "text/words.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace foundation::json::detail {

/// The first byte that begins no well-formed sequence, or the end.
inline const char* find_bad_utf8(const char* from, const char* end) noexcept {
    constexpr std::uint64_t beyond_ascii = 0x8080808080808080;
    while (from != end) {
        if (end - from >= 8 && (load_word<std::uint64_t>(from) & beyond_ascii) == 0) {
            from += 8;
        } else if (is_ascii(*from)) {
            ++from;
        } else if (end - from >= 3 && is_usual_of_three(from)) {
            from += 3;
        } else {
            const Utf8Sequence sequence = utf8_sequence(from, end);
            if (!sequence.complete) {
                return from;
            }
            from += sequence.length;
        }
    }
    return from;
}

#if defined(FOUNDATION_JSON_SHUFFLES)

/// A pair of adjacent bytes that no well-formed text has, or only as the last two of three or more:
/// by the four high and the four low bits of the first, and the four high bits of the second. Each
/// is a set, with a bit for each of the sixteen numbers.
struct BadPair {
    std::uint16_t first_high;
    std::uint16_t first_low;
    std::uint16_t second_high;
};

constexpr std::uint16_t any_bits = 0xFFFF;
constexpr std::uint16_t ascii_bits = 0x00FF;        // 0 to 7
constexpr std::uint16_t continuation_bits = 0x0F00; // 8 to B
constexpr std::uint16_t lead_bits = 0xF000;         // C to F

constexpr BadPair bad_pairs[8] = {
    {lead_bits, any_bits, any_bits & ~continuation_bits}, // a sequence is cut off
    {ascii_bits, any_bits, continuation_bits},            // a continuation without a lead
    {1 << 0xC, 0x0003, continuation_bits},                // overlong: C0, C1
    {1 << 0xE, 0x0001, 0x0300},                           // overlong: E0 80 to E0 9F
    {1 << 0xE, 1 << 0xD, 0x0C00},                         // surrogates: ED A0 to ED BF
    {1 << 0xF, 0xFFF0, 0x0E00},                           // beyond U+10FFFF: F4 90, F5 90, ...
    {1 << 0xF, 0xFFE1, 0x0100}, // overlong: F0 80; and beyond U+10FFFF: F5 80, F6 80, ...
    // Two continuations in a row. Not bad behind a lead of three or four bytes; the highest bit.
    {continuation_bits, any_bits, continuation_bits},
};

/// For each number of four bits the bad pairs that may have it there, as a set of bits.
constexpr std::array<std::uint8_t, 16> make_pair_table(std::uint16_t BadPair::*numbers) noexcept {
    std::array<std::uint8_t, 16> table{};
    for (std::size_t number = 0; number != table.size(); ++number) {
        for (std::size_t pair = 0; pair != 8; ++pair) {
            const unsigned is_member = bad_pairs[pair].*numbers >> number & 1U;
            table[number] = static_cast<std::uint8_t>(table[number] | is_member << pair);
        }
    }
    return table;
}

alignas(16) inline constexpr std::array<std::uint8_t, 16> first_high_table =
    make_pair_table(&BadPair::first_high);
alignas(16) inline constexpr std::array<std::uint8_t, 16> first_low_table =
    make_pair_table(&BadPair::first_low);
alignas(16) inline constexpr std::array<std::uint8_t, 16> second_high_table =
    make_pair_table(&BadPair::second_high);

/// Not zero where a byte is wrong behind those before it.
/// @param previous  the sixteen bytes before
FOUNDATION_JSON_SHUFFLING inline Vector utf8_errors(Vector bytes, Vector previous) noexcept {
    const Vector before = bytes.behind_last<1>(previous);
    const Vector pairs = table_of(first_high_table).at(before.high_halves()) &
                         table_of(first_low_table).at(before.low_halves()) &
                         table_of(second_high_table).at(bytes.high_halves());
    // The highest bit of bytes two behind a lead of three or four, three behind one of four.
    const Vector third = bytes.behind_last<2>(previous).minus(0xE0 - 0x80);
    const Vector fourth = bytes.behind_last<3>(previous).minus(0xF0 - 0x80);
    constexpr std::uint64_t highest_bits = 0x8080808080808080;
    const Vector demanded = (third | fourth) & Vector(highest_bits, highest_bits);
    return demanded ^ pairs;
}

/// Checks one block after the other.
class Utf8Checker {
public:
    FOUNDATION_JSON_SHUFFLING void check(Vector bytes) noexcept {
        errors_ = errors_ | utf8_errors(bytes, previous_);
        previous_ = bytes;
    }

    /// Four blocks. Text that is mostly ASCII passes through at once; fewer blocks would be more of
    /// a gamble on what comes next than it takes to check them.
    FOUNDATION_JSON_SHUFFLING void check_four(const char* from) noexcept {
        const Vector blocks[] = {Vector(from), Vector(from + 16), Vector(from + 32),
                                 Vector(from + 48)};
        if ((previous_ | blocks[0] | blocks[1] | blocks[2] | blocks[3]).is_ascii()) {
            return;
        }
        for (const Vector& bytes : blocks) {
            check(bytes);
        }
    }

    FOUNDATION_JSON_SHUFFLING bool found_nothing() const noexcept {
        return errors_.equal_to('\0').mask().complement().empty();
    }

private:
    Vector previous_;
    Vector errors_;
};

/// The same as find_bad_utf8(from, end) == end, sixteen bytes at a time.
FOUNDATION_JSON_SHUFFLING inline bool is_utf8_by_shuffles(const char* from,
                                                          const char* end) noexcept {
    Utf8Checker checker;
    for (; end - from >= 64; from += 64) {
        checker.check_four(from);
    }
    for (; end - from >= 16; from += 16) {
        checker.check(Vector(from));
    }
    // Zeros behind the end show whether a sequence is cut off there.
    checker.check(from != end ? load_few(from, static_cast<std::size_t>(end - from)) : Vector());
    return checker.found_nothing();
}

/// The same as skip_utf8(), sixteen bytes at a time.
FOUNDATION_JSON_SHUFFLING inline const char* skip_utf8_by_shuffles(const char* from,
                                                                   const char* end) noexcept {
    Vector previous;
    for (const char* at = from;; at += Block::size) {
        const auto left = static_cast<std::size_t>(end - at);
        // Zeros behind the end are control bytes, and show whether a sequence is cut off there.
        const Vector bytes = left >= Block::size ? Vector(at)
                             : left != 0         ? load_few(at, left)
                                                 : Vector();
        const auto special =
            special_bytes<EscapeRule<Solidus::raw, BeyondAscii::plain>>(bytes).mask();
        const std::size_t size = special.empty() ? Block::size : special.first();
        const unsigned good = utf8_errors(bytes, previous).equal_to('\0').bits();
        const unsigned looked_at = (2U << size) - 1; // and the byte that would continue a sequence
        if ((~good & looked_at & 0xFFFF) != 0) {
            // The character that is wrong, or the last before it.
            while (at != from && is_continuation(*--at)) {
            }
            return at;
        }
        if (!special.empty()) {
            return at + size;
        }
        previous = bytes;
    }
}

/// What became of a string that copy_utf8() has copied.
enum class Utf8Copy {
    clean,   ///< it is UTF-8, and no byte is special
    special, ///< it is UTF-8, but bytes are special, so that the copy is of no use
    bad,     ///< it is not UTF-8
};

/// Copies a string and checks it meanwhile: is_utf8() and copy_clean() in one.
/// @tparam Rule  has bytes beyond ASCII copied
/// @param size   at least 16
template <class Rule>
FOUNDATION_JSON_SHUFFLING Utf8Copy copy_utf8_by_shuffles(char* out, const char* from,
                                                         std::size_t size) noexcept {
    Utf8Checker checker;
    Vector special;
    std::size_t at = 0;
    for (; size - at >= 16; at += 16) {
        const Vector bytes(from + at);
        bytes.store(out + at);
        special = special | special_bytes<Rule>(bytes);
        checker.check(bytes);
    }
    const Vector last(from + size - 16); // overlaps the block before it
    last.store(out + size - 16);
    special = special | special_bytes<Rule>(last);
    // Zeros behind the end show whether a sequence is cut off there.
    checker.check(at != size ? load_few(from + at, size - at) : Vector());
    if (!checker.found_nothing()) {
        return Utf8Copy::bad;
    }
    return special.mask().empty() ? Utf8Copy::clean : Utf8Copy::special;
}

#endif

/// Skips what of a string is well-formed and neither a quote nor a backslash nor a control byte, in
/// the quickest way that this processor has.
/// @param from  the beginning of a character beyond ASCII
/// @return the byte that ends it, or the end; or a character before it from which on to look byte
/// by
///         byte, which is `from` where there is no quick way
template <class Bytes>
const char* skip_utf8(const char* from, const char* end) noexcept {
#if defined(FOUNDATION_JSON_SHUFFLES)
    if constexpr (std::is_same_v<Bytes, Block>) {
        if (has_shuffles()) { // GCOVR_EXCL_BR_LINE: this depends on the processor
            return skip_utf8_by_shuffles(from, end);
        }
    }
#endif
    static_cast<void>(end);
    return from;
}

/// Whether a text is UTF-8, found in the quickest way that this processor has.
inline bool is_utf8(const char* from, const char* end) noexcept {
#if defined(FOUNDATION_JSON_SHUFFLES)
    if (end - from >= 16 && has_shuffles()) { // GCOVR_EXCL_BR_LINE: this depends on the processor
        return is_utf8_by_shuffles(from, end);
    }
#endif
    return find_bad_utf8(from, end) == end;
}

} // namespace foundation::json::detail

#endif
