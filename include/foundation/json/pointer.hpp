/// @file
/// Values within values, by JSON Pointers (RFC 6901).
///
///     const Value* port = find(config, "/servers/0/port"); // null where there is nothing
#ifndef FOUNDATION_JSON_POINTER_HPP
#define FOUNDATION_JSON_POINTER_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/value.hpp>

#include <string_view>
#include <utility>

namespace foundation::json {

/// @cond
namespace detail {

/// How far a JSON Pointer leads.
struct PathLookup {
    const Value* last;        // the last value on the way
    std::string_view reached; // the pointer to it
    std::string_view next;    // the token after that, empty if the way is complete
    bool is_complete;
};

/// @throws std::invalid_argument if the text is no JSON Pointer
[[nodiscard]] FOUNDATION_JSON_EXPORT PathLookup follow(const Value& root, std::string_view pointer);

} // namespace detail
/// @endcond

/// @name Places
/// @{

/// The value at a place, by its JSON Pointer (RFC 6901): "" is the root itself, "/servers/3/port" a
/// member of an element of a member; `~0` in it stands for `~`, `~1` for `/`.
/// @param root     where the pointer begins
/// @param pointer  bytes, compared as they are; an index has no leading zeros
/// @return null if there is no value: no such member or element, an index that is none of the
///         array, such as "-" and "01", or a name where there is no object. The pointer stays valid
///         like the references of content.hpp.
/// @throws std::invalid_argument  the text is no JSON Pointer
/// @throws std::bad_alloc         memory runs out
/// @complexity one lookup per token of the pointer
inline const Value* find(const Value& root, std::string_view pointer) {
    const detail::PathLookup way = detail::follow(root, pointer);
    return way.is_complete ? way.last : nullptr;
}

/// The same, for a value to be changed.
inline Value* find(Value& root, std::string_view pointer) {
    return const_cast<Value*>(json::find(std::as_const(root), pointer));
}

/// Deleted: the result would point into a temporary. Give the value a name first.
const Value* find(const Value&& root, std::string_view pointer) = delete;
/// @}

} // namespace foundation::json

#endif
