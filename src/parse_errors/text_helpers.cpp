#include <foundation/json/text_helpers.hpp>

#include "number/read_double.hpp"
#include "parse_errors/utf16_converter.hpp"

#include <cstring>
#include <stdexcept>

namespace foundation::json::detail {

std::string u16_to_u8(char16_t* text, int length) {
    const Utf16Converter converter("UTF-8", true);
    if (length < 0) {
        // A string of that length would be too long; the message of each standard library is
        // different.
        throw std::length_error("string too long");
    }
    return converter.convert(std::u16string(text, static_cast<std::size_t>(length)));
}

double string_to_double(const char* text) {
    return read_double(text, std::strlen(text));
}

} // namespace foundation::json::detail
