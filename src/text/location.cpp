#include "text/location.hpp"

#include <foundation/json/detail/quoted.hpp>

namespace foundation::json::detail {

void append_name_token(std::string& pointer, std::string_view name) {
    pointer += '/';
    for (const char byte : name) {
        if (byte == '~' || byte == '/') {
            pointer += '~';
            pointer += byte == '~' ? '0' : '1';
        } else {
            pointer += byte;
        }
    }
}

void append_index_token(std::string& pointer, std::size_t index) {
    pointer += '/';
    pointer += std::to_string(index);
}

std::string describe_location(std::string_view pointer) {
    if (pointer.empty()) {
        return "at the root: ";
    }
    std::string result = "at ";
    append_escaped(result, pointer);
    return result += ": ";
}

} // namespace foundation::json::detail
