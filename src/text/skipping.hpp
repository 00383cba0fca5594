/// @file
/// Skips whitespace, and the bytes of strings that need neither decoding nor checks.
#ifndef FOUNDATION_JSON_SRC_TEXT_SKIPPING_HPP
#define FOUNDATION_JSON_SRC_TEXT_SKIPPING_HPP

#include "text/byte_block.hpp"
#include "text/characters.hpp"

namespace foundation::json::detail {

/// The first byte at or after `from` that is not whitespace, or the end.
template <class Bytes>
[[gnu::noinline]] const char* skip_blanks(const char* from, const char* end) noexcept {
    // Mostly a line feed and the indentation of the next line, which a block finds sooner.
    from += from != end && *from == '\n' ? 1 : 0;
    while (end - from >= static_cast<std::ptrdiff_t>(Bytes::size)) {
        const auto found = Bytes(from).not_space();
        if (!found.empty()) {
            from += found.first();
            if (!is_blank(*from)) {
                return from;
            }
            break;
        }
        from += Bytes::size;
    }
    while (end - from >= static_cast<std::ptrdiff_t>(Bytes::size)) {
        const auto found = Bytes(from).not_blank();
        if (!found.empty()) {
            return from + found.first();
        }
        from += Bytes::size;
    }
    while (from != end && is_blank(*from)) {
        ++from;
    }
    return from;
}

/// The first byte at or after `from` that is a quote, a backslash, a control byte or not ASCII, or
/// the end.
template <class Bytes>
const char* skip_clean(const char* from, const char* end) noexcept {
    while (end - from >= static_cast<std::ptrdiff_t>(Bytes::size)) {
        const auto found = Bytes(from).special_in_string();
        if (!found.empty()) {
            return from + found.first();
        }
        from += Bytes::size;
    }
    while (from != end && !is_control(*from) && is_ascii(*from) && *from != '"' && *from != '\\') {
        ++from;
    }
    return from;
}

} // namespace foundation::json::detail

#endif
