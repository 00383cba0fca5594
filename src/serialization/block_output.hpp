/// @file
/// Filling a buffer with text, block by block.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_BLOCK_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_BLOCK_OUTPUT_HPP

#include "text/fast_string_text.hpp"
#include "text/shuffled_string_text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace foundation::json::detail {

/// What outputs have in common that fill a buffer. The Output, which derives from this class,
/// empties a full buffer. It has these functions, which take a cursor and return the next one:
///
///     make_room(Cursor)                      makes room for at least minimum_room bytes
///     pass(Cursor, const char*, std::size_t) writes many bytes that stay as they are until the end
///     unicode_escape(Cursor, unsigned char)  writes a byte as \u escape
template <class Output>
class BlockOutput {
public:
    /// Where the text so far ends in the buffer.
    using Cursor = char*;

    static constexpr std::size_t minimum_room = 1024;

    BlockOutput(const BlockOutput&) = delete;
    BlockOutput& operator=(const BlockOutput&) = delete;

    template <std::size_t N>
    Cursor text(Cursor at, const char (&piece)[N]) {
        at = ensure_room(at, N - 1);
        std::memcpy(at, piece, N - 1);
        return at + N - 1;
    }

    // Not inlined: the layouts, which recurse, would need more stack.
    [[gnu::noinline]] Cursor spaces(Cursor at, std::size_t count) {
        constexpr std::size_t most = 256;
        for (; count > most; count -= most) {
            at = std::fill_n(ensure_room(at, most), most, ' ');
        }
        return std::fill_n(ensure_room(at, most), count, ' ');
    }

protected:
    BlockOutput() = default;
    ~BlockOutput() = default;

    bool has_room(const char* at, std::size_t count) const {
        return static_cast<std::size_t>(end_ - at) >= count;
    }

    Cursor ensure_room(Cursor at, std::size_t count) {
        return has_room(at, count) ? at : output().make_room(at);
    }

    /// The most bytes of a string that are written between two checks of the room.
    static constexpr std::ptrdiff_t block = 256;

    /// One check of the room serves a quote, a block with every byte escaped, and another quote.
    static constexpr std::size_t room_of_block = 2 * block + 32;
    static_assert(room_of_block <= minimum_room);

    /// Writes a string in quotes, with the escapes of the rule.
    template <class Rule>
    Cursor quoted(Cursor at, std::string_view text);

    /// The end of the buffer.
    char* end_ = nullptr;

private:
    Output& output() { return static_cast<Output&>(*this); }
};

// Inlined, since a call from a function that does nothing else would cost as much as a short
// string.
template <class Output>
template <class Rule>
[[gnu::always_inline]] inline char* BlockOutput<Output>::quoted(Cursor at, std::string_view text) {
    // From this size on, copying costs more than what it takes to do without.
    constexpr std::size_t long_text = 4096;
    const char* from = text.data();
    const char* const end = from + text.size();
    at = ensure_room(at, room_of_block);
    *at++ = '"';
    if (end - from <= block && copy_clean<Rule>(at, from, text.size())) {
        at += text.size();
        *at++ = '"';
        return at;
    }
    if (text.size() >= long_text) {
        if (const std::size_t clean = count_clean<Rule>(from, end); clean >= long_text) {
            at = ensure_room(output().pass(at, from, clean), room_of_block);
            from += clean;
        }
    }
    while (from != end) {
        const char* const block_end = end - from > block ? from + block : end;
        const EscapedCopy copied = copy_escaped_quickly<Rule>(at, from, block_end);
        from = copied.from;
        at = copied.out;
        if (from != block_end) {
            at = output().unicode_escape(at, static_cast<unsigned char>(*from++));
        }
        if (from != end) {
            at = ensure_room(at, room_of_block);
        }
    }
    at = ensure_room(at, 1);
    *at++ = '"';
    return at;
}

} // namespace foundation::json::detail

#endif
