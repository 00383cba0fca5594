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

/// One word of two that are adjacent in memory.
inline std::uint64_t join_words(std::uint32_t first, std::uint32_t second) noexcept {
    return little_endian ? first | static_cast<std::uint64_t>(second) << 32
                         : static_cast<std::uint64_t>(first) << 32 | second;
}

} // namespace foundation::json::detail

#endif
