// Values within values, by JSON Pointers.
#include <foundation/json/pointer.hpp>

#include "access/pointer_steps.hpp"

#include <foundation/json/content.hpp>

namespace foundation::json::detail {

bool is_index(std::string_view token) noexcept {
    if (token == "-") {
        return true;
    }
    return !token.empty() && token.find_first_not_of("0123456789") == std::string_view::npos &&
           (token.size() == 1 || token.front() != '0');
}

namespace {

const Value* find_element(const Array& elements, std::string_view token) {
    if (!is_index(token) || token == "-") {
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
