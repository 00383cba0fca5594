#include "serialization/text_output.hpp"

#include "number/digits.hpp"
#include "number/shortest_number_text.hpp"
#include "serialization/write_problems.hpp"
#include "text/utf8.hpp"
#include "text/utf8_validation.hpp"

#include <foundation/json/detail/number_parts.hpp>

#include <algorithm>
#include <cstring>

namespace foundation::json::detail {

// ---- Numbers -------------------------------------------------------------------------------

template <class Number>
char* TextOutput::real_number(Cursor at, FloatingBits<Number> bits) {
    if (!has_room(at, shortest_number_room) || !bits.is_finite()) {
        return other_number(at, bits);
    }
    return shortest_number_text(at, bits);
}

/// Separate from the common case, which then need not save registers.
template <class Number>
[[gnu::noinline]] char* TextOutput::other_number(Cursor at, FloatingBits<Number> bits) {
    if (bits.is_finite()) {
        return shortest_number_text(make_room(at), bits);
    }
    if (!is_writable(bits, options_)) {
        throw Unwritable();
    }
    if (options_.not_finite == WriteOptions::NotFinite::null) {
        return text(at, "null");
    }
    return string(at, not_finite_name(bits));
}

char* TextOutput::number(Cursor at, FloatingBits<double> bits) {
    return real_number(at, bits);
}

char* TextOutput::number(Cursor at, FloatingBits<float> bits) {
    return real_number(at, bits);
}

template <class Integer>
char* TextOutput::integer(Cursor at, Integer value) {
    if (is_big(value) && options_.big_integers != WriteOptions::BigIntegers::digits) {
        return big_integer(at, value);
    }
    return integer_text(ensure_room(at, shortest_number_room), value);
}

char* TextOutput::number(Cursor at, long long value) {
    return integer(at, value);
}

char* TextOutput::number(Cursor at, unsigned long long value) {
    return integer(at, value);
}

template <class Integer>
[[gnu::noinline]] char* TextOutput::big_integer(Cursor at, Integer value) {
    if (!is_writable(value, options_)) {
        throw Unwritable();
    }
    if (options_.big_integers == WriteOptions::BigIntegers::as_double) {
        return number(at, FloatingBits<double>(nearest<double>(parts_of(value))));
    }
    at = text(at, "\"");
    at = integer_text(ensure_room(at, shortest_number_room), value);
    return text(at, "\"");
}

// ---- Strings -------------------------------------------------------------------------------

/// Writes a string without its closing quote, if none of its bytes needs attention: the common
/// case, in one pass.
/// @param at  becomes the cursor behind it, with room for a quote, a colon and a space
[[gnu::always_inline]] inline bool TextOutput::write_clean(Cursor& at, std::string_view text) {
    at = ensure_room(at, std::min(text.size(), clean_size) + 4);
    if (!copies_clean(at, text)) {
        return false;
    }
    *at = '"';
    at += 1 + text.size();
    return true;
}

char* TextOutput::string(Cursor at, std::string_view text) {
    if (!write_clean(at, text)) {
        return other_string(at, text);
    }
    *at = '"';
    return at + 1;
}

char* TextOutput::name(Cursor at, std::string_view name) {
    if (!write_clean(at, name)) {
        at = other_string(at, name);
        return is_indented() ? this->text(at, ": ") : this->text(at, ":");
    }
    std::copy_n("\": ", 3, at);
    return at + (is_indented() ? 3 : 2);
}

/// For strings that are long, or have escapes or characters beyond ASCII.
[[gnu::noinline]] char* TextOutput::other_string(Cursor at, std::string_view text) {
#if defined(FOUNDATION_JSON_SHUFFLES)
    if (text.size() >= 16 && text.size() <= utf8_size && !options_.ascii &&
        !options_.escape_slash &&
        has_shuffles()) { // GCOVR_EXCL_BR_LINE: this depends on the processor
        return short_utf8(at, text);
    }
#endif
    const char* const end = text.data() + text.size();
    const bool keeps = options_.bad_utf8 == WriteOptions::BadUtf8::keep;
    const bool is_plain = options_.ascii ? std::all_of(text.begin(), text.end(), is_ascii)
                                         : keeps || is_utf8(text.data(), end);
    if (!is_plain) {
        return by_characters(at, text);
    }
    return options_.escape_slash
               ? quoted<EscapeRule<Solidus::escaped, BeyondAscii::plain>>(at, text)
               : quoted<EscapeRule<Solidus::raw, BeyondAscii::plain>>(at, text);
}

#if defined(FOUNDATION_JSON_SHUFFLES)

/// For strings of up to utf8_size bytes, which are mostly UTF-8.
char* TextOutput::short_utf8(Cursor at, std::string_view text) {
    using Rule = EscapeRule<Solidus::raw, BeyondAscii::plain>;
    at = ensure_room(at, minimum_room);
    *at = '"';
    switch (copy_utf8_by_shuffles<Rule>(at + 1, text.data(), text.size())) {
    case Utf8Copy::clean:
        at += 1 + text.size();
        *at = '"';
        return at + 1;
    case Utf8Copy::special:
        return quoted<Rule>(at, text);
    case Utf8Copy::bad:
        break;
    }
    return options_.bad_utf8 == WriteOptions::BadUtf8::keep ? quoted<Rule>(at, text)
                                                            : by_characters(at, text);
}

#endif

/// For strings with something to be decided about characters beyond ASCII.
char* TextOutput::by_characters(Cursor at, std::string_view text) {
    if (!is_writable_string(text, options_)) {
        throw Unwritable();
    }
    constexpr char32_t replacement = 0xFFFD;
    const bool keeps = options_.bad_utf8 == WriteOptions::BadUtf8::keep;
    at = this->text(at, "\"");
    const char* const end = text.data() + text.size();
    for (const char* from = text.data(); from != end;) {
        at = ensure_room(at, 16);
        if (is_ascii(*from)) {
            at = escaped_character(at, static_cast<unsigned char>(*from++));
            continue;
        }
        const Utf8Sequence sequence = utf8_sequence(from, end);
        const std::size_t length = std::max<std::size_t>(sequence.length, 1);
        if (sequence.complete ? !options_.ascii : keeps) {
            at = std::copy_n(from, length, at);
        } else {
            at =
                escaped_character(at, sequence.complete ? code_point({from, length}) : replacement);
        }
        from += length;
    }
    return this->text(at, "\"");
}

/// Writes a character with an escape if it takes one, beyond ASCII only if the text is to be ASCII.
/// @param at  with room for two \u escapes
char* TextOutput::escaped_character(Cursor at, char32_t code) {
    const auto escape_unit = [&at](char32_t unit) {
        constexpr char digits[] = "0123456789abcdef";
        const char escape[] = {'\\',
                               'u',
                               digits[unit >> 12],
                               digits[unit >> 8 & 15],
                               digits[unit >> 4 & 15],
                               digits[unit & 15]};
        at = std::copy_n(escape, sizeof escape, at);
    };
    if (code >= 0x80) {
        if (!options_.ascii) {
            return put_utf8(at, code);
        }
        if (code < 0x10000) {
            escape_unit(code);
            return at;
        }
        escape_unit(0xD800 + ((code - 0x10000) >> 10));
        escape_unit(0xDC00 + (code & 0x3FF));
        return at;
    }
    const auto byte = static_cast<unsigned char>(code);
    const char letter = short_escape(byte);
    if (letter != '\0' && (byte != '/' || options_.escape_slash)) {
        at[0] = '\\';
        at[1] = letter;
        return at + 2;
    }
    if (byte < 0x20) {
        escape_unit(code);
        return at;
    }
    *at = static_cast<char>(byte);
    return at + 1;
}

char* TextOutput::unicode_escape(Cursor at, unsigned char byte) {
    return escaped_character(ensure_room(at, 16), byte);
}

// ---- Lines ---------------------------------------------------------------------------------

char* TextOutput::line(Cursor at, std::size_t depth) {
    constexpr std::size_t few = 32;
    const std::size_t count = depth * indent_;
    at = ensure_room(at, 1 + few);
    *at++ = '\n';
    if (count > few) {
        return spaces(at, count);
    }
    // A fixed size takes no call.
    std::memset(at, ' ', few);
    return at + count;
}

char* TextOutput::raw(Cursor at, std::string_view text) {
    while (!text.empty()) {
        at = ensure_room(at, 1);
        const std::size_t count = std::min(text.size(), static_cast<std::size_t>(end_ - at));
        at = std::copy_n(text.data(), count, at);
        text.remove_prefix(count);
    }
    return at;
}

} // namespace foundation::json::detail
