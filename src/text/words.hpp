/// @file
/// Words: from and to text, wherever it begins, and how many zeros they begin and end with.
#ifndef FOUNDATION_JSON_SRC_TEXT_WORDS_HPP
#define FOUNDATION_JSON_SRC_TEXT_WORDS_HPP

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

/// A word of text with its first byte lowest.
constexpr std::uint64_t lowest_first(std::uint64_t word) noexcept {
    return little_endian ? word : bytes_reversed(word);
}

inline std::uint64_t load_first_lowest(const char* from) noexcept {
    return lowest_first(load_word<std::uint64_t>(from));
}

/// The value of eight digits: joins neighbours to pairs, pairs to groups of four, and these to one
/// number. Bytes that are 0 count as the digit 0.
constexpr std::uint64_t eight_digits(std::uint64_t word) noexcept {
    // Each product adds 10, 100 or 10000 times the lower neighbour to the higher one.
    word = (word & 0x0F0F0F0F0F0F0F0F) * (10 << 8 | 1) >> 8;
    word = (word & 0x00FF00FF00FF00FF) * (100 << 16 | 1) >> 16;
    return (word & 0x0000FFFF0000FFFF) * (std::uint64_t{10000} << 32 | 1) >> 32;
}

/// One word of two that are adjacent in memory.
inline std::uint64_t join_words(std::uint32_t first, std::uint32_t second) noexcept {
    return little_endian ? first | static_cast<std::uint64_t>(second) << 32
                         : static_cast<std::uint64_t>(first) << 32 | second;
}

} // namespace foundation::json::detail

#endif
