/// @file
/// Finds, sets, inserts, erases, moves and copies values within values, by JSON Pointers
/// (RFC 6901).
///
///     const Value* port = find(config, "/servers/0/port"); // null where there is nothing
///     set(config, "/servers/0/port", 8080);                // makes what is missing on the way
///     insert(config, "/servers/0/tags/-", "new");          // at the end of an array
///     Value old = erase(config, "/servers/1");             // gives what it took
///
/// A function that throws leaves all values as they were, also when memory runs out, with the one
/// exception that "Changes" below names. Only values that are passed as lvalues are copied, and the
/// value that copy() copies; elements of arrays are moved. Several such changes at once, all or
/// none, are a patch: see patch.hpp.
///
/// A source with both `using namespace std;` and `using namespace foundation::json;` has to say
/// which `set` it means: `std::set<int>` or `foundation::json::set(config, ...)`. The other names
/// are fine.
#ifndef FOUNDATION_JSON_POINTER_HPP
#define FOUNDATION_JSON_POINTER_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/value.hpp>

#include <memory>
#include <stdexcept>
#include <string>
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

/// @throws std::invalid_argument if the string is not a JSON Pointer
[[nodiscard]] FOUNDATION_JSON_EXPORT PathLookup follow(const Value& root, std::string_view pointer);

} // namespace detail
/// @endcond

/// The exception of a JSON Pointer that leads nowhere. what() begins with the step that failed and
/// says what was there instead: "at /servers/7: the array has length 3", "at /name: there
/// is a string, not an array or object".
class FOUNDATION_JSON_EXPORT PointerError : public std::runtime_error {
public:
    /// @param pointer  the first step that failed, as a JSON Pointer
    /// @param problem  what what() says after it
    /// @throws std::bad_alloc if memory runs out
    PointerError(std::string pointer, const std::string& problem);

    PointerError(const PointerError&) noexcept;            ///< the same error
    PointerError& operator=(const PointerError&) noexcept; ///< the same error
    ~PointerError() override;

    /// The pointer to the first step that failed, from the root, not escaped for messages.
    [[nodiscard]] const std::string& pointer() const noexcept;

private:
    std::shared_ptr<const std::string> pointer_; // shared, so that copies cannot throw
};

/// @name Lookup
/// @{

/// The value at a location, by its JSON Pointer (RFC 6901): "" is the root itself,
/// "/servers/3/port" a member of an element of a member; `~0` in it stands for `~`, `~1` for `/`.
/// @param root     where the pointer begins
/// @param pointer  bytes, compared as they are; an index has no leading zeros
/// @return null if there is no value: no such member or element, an index that is none of the
///         array, such as "-" and "01", or a name where there is no object. The pointer stays valid
///         like the references of content.hpp.
/// @throws std::invalid_argument  the string is not a JSON Pointer
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

/// @name Changes
/// In an array, an index stands for an element, and the length of the array or "-" for the position
/// after the last one. Each function takes one lookup per token of its pointers. In an array it
/// also moves the elements after the index, each in constant time, and allocates for the arrays
/// and objects among them if the array grows or has elements of several kinds; what they hold stays
/// where it is.
///
/// All of them throw PointerError, std::invalid_argument for a string that is not a JSON Pointer,
/// std::bad_alloc, and std::length_error if an array would be too long; then nothing has changed,
/// the given value included. One case has no such guarantee: if the root itself turns from an array
/// into an object, or the other way round, and memory runs out in the last step, the root is a
/// bool, false, as after an assignment.
/// @{

/// Sets the value at a location, and replaces what is there.
///
/// What is missing on the way is made: objects, and arrays where the next token is "-" or "0". A
/// value that is Undefined counts as missing.
///
///     Value config;
///     set(config, "/servers/0/host", "a.example"); // -> {"servers":[{"host":"a.example"}]}
///
/// @param root     where the pointer begins; "" replaces all of it
/// @param pointer  a member, an element, or the end of an array
/// @param value    moved from; must not be the root or lie within it
/// @return the value at its location. The reference stays valid like those of indexing.
/// @throws PointerError  a step leads into a value that is neither array nor object, or is not an
///         index of its array
FOUNDATION_JSON_EXPORT Value& set(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                  std::string_view pointer, Value&& value);

/// The same with a copy of the value, which may lie within the root.
inline Value& set(Value& root FOUNDATION_JSON_LIFETIME_BOUND, std::string_view pointer,
                  const Value& value) {
    return json::set(root, pointer, Value(value));
}

/// Inserts a value into an array, before the element with the index or at the end, or into an
/// object, in place of a member of that name. The operation "add" of RFC 6902.
///
///     insert(order, "/lines/0", "tea"); // before all others
///     insert(order, "/lines/-", "tea"); // at the end
///     insert(order, "/paid", true);     // a member
///
/// @param root     where the pointer begins; "" replaces all of it
/// @param pointer  its last token is the new index or name; all before it must exist
/// @param value    moved from; must not be the root or lie within it
/// @return the value at its location. The reference stays valid like those of indexing.
/// @throws PointerError  as set(), and if something on the way is missing
FOUNDATION_JSON_EXPORT Value& insert(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                     std::string_view pointer, Value&& value);

/// The same with a copy of the value, which may lie within the root.
inline Value& insert(Value& root FOUNDATION_JSON_LIFETIME_BOUND, std::string_view pointer,
                     const Value& value) {
    return json::insert(root, pointer, Value(value));
}

/// Removes a member or an element; the elements after it move up.
///
///     Value first = erase(order, "/lines/0");
///
/// @param root     where the pointer begins; "" leaves Undefined
/// @param pointer  must lead to a value
/// @return what was there
/// @throws PointerError  as set(), and if there is no value
FOUNDATION_JSON_EXPORT Value erase(Value& root, std::string_view pointer);

/// Takes a value from one location and inserts it at another, like erase() and insert() in one. The
/// operation "move" of RFC 6902.
///
///     move(order, "/lines/2", "/lines/0"); // the third comes first
///     move(order, "/name", "/customer");   // a new name for a member
///
/// @param root  where the pointers begin
/// @param from  must lead to a value
/// @param to    where it is inserted, once it is no longer at its old location; not
///              within the value
/// @return the value at its new location. The reference stays valid like those of indexing.
/// @throws PointerError  as erase() and insert(), and if `to` is within the value
FOUNDATION_JSON_EXPORT Value& move(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                   std::string_view from, std::string_view to);

/// Inserts a copy of a value at another location. The operation "copy" of RFC 6902.
///
///     copy(order, "/lines/0", "/lines/-");
///
/// @param root  where the pointers begin
/// @param from  must lead to a value
/// @param to    where the copy is inserted; it may lie within the value
/// @return the copy. The reference stays valid like those of indexing.
/// @throws PointerError  as insert(), and if there is no value at `from`
FOUNDATION_JSON_EXPORT Value& copy(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                   std::string_view from, std::string_view to);
/// @}

} // namespace foundation::json

#endif
