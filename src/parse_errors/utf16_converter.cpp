#include "parse_errors/utf16_converter.hpp"

#include <utf8proc.h>

#include <cstddef>
#include <stdexcept>

namespace foundation::json::detail {

namespace {

constexpr bool is_high_surrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool is_low_surrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

void append_utf8(std::string& result, utf8proc_int32_t code) {
    utf8proc_uint8_t sequence[4];
    const utf8proc_ssize_t size = utf8proc_encode_char(code, sequence);
    result.append(reinterpret_cast<const char*>(sequence), static_cast<std::size_t>(size));
}

} // namespace

Utf16Converter::Utf16Converter(const std::string& encoding, bool substitute)
    : substitute_(substitute) {
    if (encoding != "UTF-8") {
        throw std::invalid_argument("unknown encoding: " + encoding);
    }
}

std::string Utf16Converter::convert(const std::u16string& text) const {
    std::string result;
    for (std::size_t i = 0; i != text.size(); ++i) {
        const char16_t unit = text[i];
        if (is_high_surrogate(unit) && i + 1 != text.size() && is_low_surrogate(text[i + 1])) {
            ++i;
            append_utf8(result, 0x10000 + ((unit - 0xD800) << 10) + (text[i] - 0xDC00));
        } else if (!is_high_surrogate(unit) && !is_low_surrogate(unit)) {
            append_utf8(result, unit);
        } else if (substitute_) {
            append_utf8(result, 0xFFFD);
        } else {
            throw std::range_error("text cannot be converted");
        }
    }
    return result;
}

} // namespace foundation::json::detail
