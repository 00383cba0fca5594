/// @file
/// Whether a text is UTF-8: sequence by sequence, or sixteen bytes at a time.
#ifndef FOUNDATION_JSON_SRC_TEXT_UTF8_VALIDATION_HPP
#define FOUNDATION_JSON_SRC_TEXT_UTF8_VALIDATION_HPP

#include "text/shuffled_string_text.hpp"
#include "text/utf8.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

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

#if defined(__x86_64__)

/// Sixteen bytes.
class Utf8Block {
public:
    FOUNDATION_JSON_SHUFFLING Utf8Block() noexcept : bytes_(_mm_setzero_si128()) {}
    FOUNDATION_JSON_SHUFFLING explicit Utf8Block(const char* from) noexcept
        : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))) {}
    FOUNDATION_JSON_SHUFFLING explicit Utf8Block(FewBytes bytes) noexcept
        : bytes_(_mm_set_epi64x(static_cast<long long>(bytes.second),
                                static_cast<long long>(bytes.first))) {}

    FOUNDATION_JSON_SHUFFLING bool is_ascii() const noexcept {
        return _mm_movemask_epi8(bytes_) == 0;
    }

    FOUNDATION_JSON_SHUFFLING bool is_zero() const noexcept {
        return _mm_movemask_epi8(_mm_cmpeq_epi8(bytes_, _mm_setzero_si128())) == 0xFFFF;
    }

    FOUNDATION_JSON_SHUFFLING void add(Utf8Block other) noexcept {
        bytes_ = _mm_or_si128(bytes_, other.bytes_);
    }

    /// Not zero where a byte is wrong behind those before it.
    FOUNDATION_JSON_SHUFFLING Utf8Block errors_behind(Utf8Block previous) const noexcept {
        const __m128i before = _mm_alignr_epi8(bytes_, previous.bytes_, 15);
        const __m128i pairs =
            _mm_and_si128(_mm_and_si128(lookup(first_high_table, high_half(before)),
                                        lookup(first_low_table, low_half(before))),
                          lookup(second_high_table, high_half(bytes_)));
        // The highest bit of bytes two behind a lead of three or four, three behind one of four.
        const __m128i third =
            _mm_subs_epu8(_mm_alignr_epi8(bytes_, previous.bytes_, 14), _mm_set1_epi8(0xE0 - 0x80));
        const __m128i fourth =
            _mm_subs_epu8(_mm_alignr_epi8(bytes_, previous.bytes_, 13), _mm_set1_epi8(0xF0 - 0x80));
        const __m128i demanded =
            _mm_and_si128(_mm_or_si128(third, fourth), _mm_set1_epi8(static_cast<char>(0x80)));
        return Utf8Block(_mm_xor_si128(demanded, pairs));
    }

private:
    FOUNDATION_JSON_SHUFFLING explicit Utf8Block(__m128i bytes) noexcept : bytes_(bytes) {}

    FOUNDATION_JSON_SHUFFLING static __m128i low_half(__m128i bytes) noexcept {
        return _mm_and_si128(bytes, _mm_set1_epi8(0x0F));
    }
    FOUNDATION_JSON_SHUFFLING static __m128i high_half(__m128i bytes) noexcept {
        return low_half(_mm_srli_epi16(bytes, 4));
    }
    FOUNDATION_JSON_SHUFFLING static __m128i lookup(const std::array<std::uint8_t, 16>& table,
                                                    __m128i numbers) noexcept {
        return _mm_shuffle_epi8(_mm_load_si128(reinterpret_cast<const __m128i*>(table.data())),
                                numbers);
    }

    __m128i bytes_;
};

#else

/// Sixteen bytes.
class Utf8Block {
public:
    Utf8Block() noexcept : bytes_(vdupq_n_u8(0)) {}
    explicit Utf8Block(const char* from) noexcept
        : bytes_(vld1q_u8(reinterpret_cast<const std::uint8_t*>(from))) {}
    explicit Utf8Block(FewBytes bytes) noexcept
        : bytes_(vcombine_u8(vcreate_u8(bytes.first), vcreate_u8(bytes.second))) {}

    bool is_ascii() const noexcept { return vmaxvq_u8(bytes_) < 0x80; }
    bool is_zero() const noexcept { return vmaxvq_u8(bytes_) == 0; }
    void add(Utf8Block other) noexcept { bytes_ = vorrq_u8(bytes_, other.bytes_); }

    /// Not zero where a byte is wrong behind those before it.
    Utf8Block errors_behind(Utf8Block previous) const noexcept {
        const uint8x16_t before = vextq_u8(previous.bytes_, bytes_, 15);
        const uint8x16_t pairs =
            vandq_u8(vandq_u8(lookup(first_high_table, vshrq_n_u8(before, 4)),
                              lookup(first_low_table, vandq_u8(before, vdupq_n_u8(0x0F)))),
                     lookup(second_high_table, vshrq_n_u8(bytes_, 4)));
        // The highest bit of bytes two behind a lead of three or four, three behind one of four.
        const uint8x16_t third =
            vqsubq_u8(vextq_u8(previous.bytes_, bytes_, 14), vdupq_n_u8(0xE0 - 0x80));
        const uint8x16_t fourth =
            vqsubq_u8(vextq_u8(previous.bytes_, bytes_, 13), vdupq_n_u8(0xF0 - 0x80));
        const uint8x16_t demanded = vandq_u8(vorrq_u8(third, fourth), vdupq_n_u8(0x80));
        return Utf8Block(veorq_u8(demanded, pairs));
    }

private:
    explicit Utf8Block(uint8x16_t bytes) noexcept : bytes_(bytes) {}

    static uint8x16_t lookup(const std::array<std::uint8_t, 16>& table,
                             uint8x16_t numbers) noexcept {
        return vqtbl1q_u8(vld1q_u8(table.data()), numbers);
    }

    uint8x16_t bytes_;
};

#endif

/// Checks one block after the other.
class Utf8Checker {
public:
    FOUNDATION_JSON_SHUFFLING void check(Utf8Block block) noexcept {
        errors_.add(block.errors_behind(previous_));
        previous_ = block;
    }

    /// Four blocks. Text that is mostly ASCII passes through at once; fewer blocks would be more of
    /// a gamble on what comes next than it takes to check them.
    FOUNDATION_JSON_SHUFFLING void check_four(const char* from) noexcept {
        const Utf8Block blocks[] = {Utf8Block(from), Utf8Block(from + 16), Utf8Block(from + 32),
                                    Utf8Block(from + 48)};
        Utf8Block all = previous_;
        for (const Utf8Block& block : blocks) {
            all.add(block);
        }
        if (all.is_ascii()) {
            return;
        }
        for (const Utf8Block& block : blocks) {
            check(block);
        }
    }

    FOUNDATION_JSON_SHUFFLING bool found_nothing() const noexcept { return errors_.is_zero(); }

private:
    Utf8Block previous_;
    Utf8Block errors_;
};

/// The same as find_bad_utf8(from, end) == end, sixteen bytes at a time.
FOUNDATION_JSON_SHUFFLING inline bool is_utf8_by_shuffles(const char* from,
                                                          const char* end) noexcept {
    Utf8Checker checker;
    for (; end - from >= 64; from += 64) {
        checker.check_four(from);
    }
    for (; end - from >= 16; from += 16) {
        checker.check(Utf8Block(from));
    }
    // Zeros behind the end show whether a sequence is cut off there.
    checker.check(from != end ? Utf8Block(load_few(from, static_cast<std::size_t>(end - from)))
                              : Utf8Block());
    return checker.found_nothing();
}

/// What became of a string that copy_utf8() has copied.
enum class Utf8Copy {
    clean,   ///< it is UTF-8, and no byte is special
    special, ///< it is UTF-8, but bytes are special, so that the copy is of no use
    bad,     ///< it is not UTF-8
};

/// Copies a string and checks it meanwhile: is_utf8() and copy_clean() in one.
/// @param Bytes  has bytes beyond ASCII copied
/// @param size   at least 16
template <class Bytes>
FOUNDATION_JSON_SHUFFLING Utf8Copy copy_utf8_by_shuffles(char* out, const char* from,
                                                         std::size_t size) noexcept {
    Utf8Checker checker;
    bool any_escaped = false;
    std::size_t at = 0;
    for (; size - at >= 16; at += 16) {
        const Bytes bytes(from + at);
        bytes.store(out + at);
        any_escaped = any_escaped | bytes.any_escaped();
        checker.check(Utf8Block(from + at));
    }
    const Bytes last(from + size - 16); // overlaps the block before it
    last.store(out + size - 16);
    any_escaped = any_escaped | last.any_escaped();
    // Zeros behind the end show whether a sequence is cut off there.
    checker.check(at != size ? Utf8Block(load_few(from + at, size - at)) : Utf8Block());
    if (!checker.found_nothing()) {
        return Utf8Copy::bad;
    }
    return any_escaped ? Utf8Copy::special : Utf8Copy::clean;
}

#endif

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
