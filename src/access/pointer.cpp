// Values within values, by JSON Pointers.
#include <foundation/json/pointer.hpp>

#include "access/pointer.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/detail/quoted.hpp>

#include <stdexcept>
#include <string>

namespace foundation::json::detail {

bool looks_like_index(std::string_view token) noexcept {
    return token == "-" ||
           (!token.empty() && token.find_first_not_of("0123456789") == std::string_view::npos);
}

namespace {

/// @throws std::invalid_argument if a text is no JSON Pointer
void check_pointer(std::string_view pointer) {
    const auto refuse = [&](const char* reason) {
        throw std::invalid_argument(quoted(pointer) + " is no JSON Pointer: " + reason);
    };
    if (!pointer.empty() && pointer.front() != '/') {
        refuse("it is not empty and does not begin with /");
    }
    for (std::size_t i = 0; i < pointer.size(); ++i) {
        if (pointer[i] == '~' &&
            (i + 1 == pointer.size() || (pointer[i + 1] != '0' && pointer[i + 1] != '1'))) {
            refuse("~ is not followed by 0 or 1");
        }
    }
}

/// A name as a JSON Pointer that has been checked escapes it.
std::string unescaped(std::string_view token) {
    std::string name;
    for (std::size_t i = 0; i < token.size(); ++i) {
        if (token[i] == '~') {
            ++i;
            name += token[i] == '0' ? '~' : '/';
        } else {
            name += token[i];
        }
    }
    return name;
}

const Value* find_element(const Array& elements, std::string_view token) {
    const bool has_leading_zero = token.size() > 1 && token.front() == '0';
    if (!looks_like_index(token) || token == "-" || has_leading_zero) {
        return nullptr;
    }
    std::size_t index = 0;
    for (const char digit : token) {
        index = index * 10 + static_cast<std::size_t>(digit - '0');
        if (index >= elements.size()) {
            return nullptr; // before the index can overflow
        }
    }
    return &elements[index];
}

const Value* find_child(const Value& value, std::string_view token) {
    if (const auto* const object = get_if<Object>(&value)) {
        const auto found = object->find(unescaped(token));
        return found != object->end() ? &found->second : nullptr;
    }
    const auto* const elements = get_if<Array>(&value);
    return elements != nullptr ? find_element(*elements, token) : nullptr;
}

} // namespace

PathLookup follow(const Value& root, std::string_view pointer) {
    check_pointer(pointer);
    const Value* value = &root;
    std::size_t begin = 0;
    while (begin < pointer.size()) {
        const std::size_t slash = pointer.find('/', begin + 1);
        const std::size_t end = slash != std::string_view::npos ? slash : pointer.size();
        const std::string_view token = pointer.substr(begin + 1, end - begin - 1);
        const Value* const child = find_child(*value, token);
        if (child == nullptr) {
            return {value, pointer.substr(0, begin), token, false};
        }
        value = child;
        begin = end;
    }
    return {value, pointer, {}, true};
}

} // namespace foundation::json::detail
