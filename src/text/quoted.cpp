// Strings as messages show them.
#include <foundation/json/detail/quoted.hpp>

namespace foundation::json::detail {

void append_escaped(std::string& target, std::string_view text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f) {
            constexpr char digits[] = "0123456789abcdef";
            target += {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 15]};
            continue;
        }
        if (c == '"' || c == '\\') {
            target += '\\';
        }
        target += c;
    }
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    append_escaped(result, text);
    return result += '"';
}

} // namespace foundation::json::detail
