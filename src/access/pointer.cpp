// Values within values, by JSON Pointers.
#include <foundation/json/pointer.hpp>

#include "access/pointer_steps.hpp"

#include <foundation/json/content.hpp>

#include <string>

namespace foundation::json::detail {

namespace {

/// @param name  memory for a member's name, which std::map wants as a std::string
const Value* find_child(const Value& value, std::string_view token, std::string& name) {
    if (const auto* const object = get_if<Object>(&value)) {
        assign_unescaped(name, token);
        const auto found = object->find(name);
        return found != object->end() ? &found->second : nullptr;
    }
    if (const auto* const elements = get_if<Array>(&value)) {
        const auto index = index_of(token, elements->size());
        return index && *index < elements->size() ? &(*elements)[*index] : nullptr;
    }
    return nullptr;
}

} // namespace

PathLookup follow(const Value& root, std::string_view pointer) {
    PointerSteps steps(pointer);
    const Value* value = &root;
    std::string name;
    while (!steps.at_end()) {
        const std::string_view reached = steps.walked();
        const std::string_view token = steps.next();
        const Value* const child = find_child(*value, token, name);
        if (child == nullptr) {
            return {value, reached, token, false};
        }
        value = child;
    }
    return {value, pointer, {}, true};
}

} // namespace foundation::json::detail
