/// @file
/// The output of JSON text for other programs, which goes by WriteOptions.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_TEXT_OUTPUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_TEXT_OUTPUT_HPP

#include "serialization/block_output.hpp"
#include "serialization/buffer_chain.hpp"
#include "text/escapes.hpp"

#include <foundation/json/detail/floating_bits.hpp>
#include <foundation/json/write.hpp>

#include <cstddef>
#include <string_view>

namespace foundation::json::detail {

/// Where a TextOutput leaves its text. Its calls are few, one for each full buffer.
class TextTarget {
public:
    /// Takes the text of the present buffer, up to the cursor.
    /// @return a buffer with room for BlockOutput::minimum_room bytes at least
    virtual Room next(const char* at) = 0;

    /// Takes the text of the present buffer, up to the cursor, and further text, which stays as it
    /// is until the value is written.
    /// @param rest  the rest of the buffer, from the cursor on
    /// @return where to go on
    virtual Room pass(Room rest, const char* text, std::size_t size) = 0;

    TextTarget(const TextTarget&) = delete;
    TextTarget& operator=(const TextTarget&) = delete;

protected:
    TextTarget() = default;
    ~TextTarget() = default;
};

/// An output of the layouts `compact` and `indented`. Throws Unwritable where the options allow no
/// text.
class TextOutput : public BlockOutput<TextOutput> {
public:
    /// @param target  must outlive the output
    /// @param room    the first buffer
    TextOutput(TextTarget& target, Room room, const WriteOptions& options) noexcept
        : target_(target), options_(options), indent_(std::min(options.indent, most_indent)) {
        end_ = room.end;
    }

    const WriteOptions& options() const noexcept { return options_; }
    bool is_indented() const noexcept { return indent_ != 0; }

    Cursor number(Cursor at, FloatingBits<double> bits);
    Cursor number(Cursor at, FloatingBits<float> bits);
    Cursor number(Cursor at, long long value);
    Cursor number(Cursor at, unsigned long long value);
    Cursor string(Cursor at, std::string_view text);
    Cursor name(Cursor at, std::string_view name);
    Cursor line(Cursor at, std::size_t depth);

    /// Writes text as it is.
    Cursor raw(Cursor at, std::string_view text);

    /// @return the cursor, with room for that many bytes, at most minimum_room
    Cursor room(Cursor at, std::size_t count) { return ensure_room(at, count); }

    /// Strings up to this size may be clean.
    static constexpr std::size_t clean_size = block;

    /// Whether no byte of a short string needs attention, which is the common case: then it is at
    /// the position behind the cursor, as it is in the text. The room of clean_size bytes and the
    /// quotes is there.
    [[gnu::always_inline]] bool copies_clean(Cursor at, std::string_view text) const noexcept {
        using Checked = EscapeRule<Solidus::raw, BeyondAscii::special>;
        return text.size() <= clean_size && !options_.escape_slash &&
               copy_clean<Checked>(at + 1, text.data(), text.size());
    }

    /// Writes a string that is not clean, in quotes.
    Cursor other_string(Cursor at, std::string_view text);

private:
    friend class BlockOutput<TextOutput>;

    static constexpr unsigned most_indent = 10;

    /// Strings up to this size, with the quotes, fit into the least room.
    static constexpr std::size_t utf8_size = minimum_room - 2;

    Cursor make_room(const char* at) { return go_on(target_.next(at)); }
    Cursor pass(Cursor at, const char* text, std::size_t size) {
        return go_on(target_.pass({at, end_}, text, size));
    }
    Cursor unicode_escape(Cursor at, unsigned char byte);

    Cursor go_on(Room room) noexcept {
        end_ = room.end;
        return room.begin;
    }

    template <class Number>
    Cursor real_number(Cursor at, FloatingBits<Number> bits);
    template <class Number>
    Cursor other_number(Cursor at, FloatingBits<Number> bits);
    template <class Integer>
    Cursor integer(Cursor at, Integer value);
    template <class Integer>
    Cursor big_integer(Cursor at, Integer value);

    bool write_clean(Cursor& at, std::string_view text);
    Cursor short_utf8(Cursor at, std::string_view text);
    Cursor by_characters(Cursor at, std::string_view text);
    Cursor escaped_character(Cursor at, char32_t code);

    TextTarget& target_;
    const WriteOptions options_;
    const unsigned indent_;
};

} // namespace foundation::json::detail

#endif
