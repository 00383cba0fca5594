/// @file
/// Copying and escaping string content, sixteen bytes at a time.
#ifndef FOUNDATION_JSON_SRC_TEXT_FAST_STRING_TEXT_HPP
#define FOUNDATION_JSON_SRC_TEXT_FAST_STRING_TEXT_HPP

#include "text/byte_block.hpp"
#include "text/escapes.hpp"
#include "text/words.hpp"

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

/// Copies string content that contains no special byte, which is the common case.
///
/// Short content is copied in overlapping words, to need few branches on its size.
/// @param out  with room for the content
/// @return false if a byte is special; then the content of `out` is undefined
template <class Rule, class Bytes = Block>
[[gnu::always_inline]] inline bool copy_clean(char* out, const char* from,
                                              std::size_t size) noexcept {
    if (size >= 16) {
        const std::size_t last = size - 16;
        for (std::size_t index = 0; index < last; index += 16) {
            const Bytes bytes(from + index);
            bytes.store(out + index);
            if (!bytes.template special<Rule>().empty()) {
                return false;
            }
        }
        const Bytes bytes(from + last);
        bytes.store(out + last);
        return bytes.template special<Rule>().empty();
    }
    if (size >= 4) {
        const std::size_t offsets[] = {0, size / 8 * 4, size - 4 - size / 8 * 4, size - 4};
        std::uint32_t words[4];
        for (int i = 0; i != 4; ++i) {
            words[i] = load_word<std::uint32_t>(from + offsets[i]);
            store_word(out + offsets[i], words[i]);
        }
        const Bytes bytes(join_words(words[0], words[1]), join_words(words[2], words[3]));
        return bytes.template special<Rule>().empty();
    }
    char letters = '\0';
    for (std::size_t index = 0; index != size; ++index) {
        out[index] = from[index];
        letters |= escape_letters<Rule>[static_cast<unsigned char>(from[index])];
    }
    return letters == '\0';
}

/// How many bytes a string of at least sixteen begins with that are not special.
template <class Rule, class Bytes = Block>
std::size_t count_clean(const char* from, const char* to) noexcept {
    const char* at = from;
    while (to - at >= 16 && Bytes(at).template special<Rule>().empty()) {
        at += 16;
    }
    // The last bytes are those behind whatever was found clean.
    at = to - at >= 16 ? at : to - 16;
    const auto special = Bytes(at).template special<Rule>();
    return static_cast<std::size_t>(at - from) + (special.empty() ? Bytes::size : special.first());
}

/// Where copy_escaped() stopped reading and writing.
struct EscapedCopy {
    const char* from;
    char* out;
};

/// Copies string content, with short escapes, up to its end or a byte whose letter is `u`.
///
/// Fewer than sixteen bytes are copied one by one. Where there are shuffles, this function only
/// stands in for them; elsewhere, overlapping words in place of single bytes took 4 % off the time
/// of strings of 4 to 43 bytes with one or two escapes, which is not worth their three cases.
///
/// Text is stored in whole blocks, up to 16 bytes beyond its end.
/// @param out  with room for twice the content and 16 bytes more
template <class Rule, class Bytes = Block>
EscapedCopy copy_escaped(char* out, const char* from, const char* to) noexcept {
    while (from != to) {
        if (to - from >= static_cast<std::ptrdiff_t>(Bytes::size)) {
            const Bytes bytes(from);
            bytes.store(out);
            const auto special = bytes.template special<Rule>();
            const std::size_t clean = special.empty() ? Bytes::size : special.first();
            from += clean;
            out += clean;
            if (clean == Bytes::size) {
                continue;
            }
        }
        const char letter = escape_letters<Rule>[static_cast<unsigned char>(*from)];
        if (letter == 'u') {
            break;
        }
        if (letter == '\0') {
            *out++ = *from++;
            continue;
        }
        out[0] = '\\';
        out[1] = letter;
        out += 2;
        ++from;
    }
    return {from, out};
}

} // namespace foundation::json::detail

#endif
