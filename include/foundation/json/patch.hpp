/// @file
/// Several changes of a value at once, as JSON: patches (RFC 6902) and merge patches (RFC 7396),
/// applied and made; and equivalent(), which compares numbers by value, whatever their kinds.
///
///     patch(order, parse(R"([{"op": "replace", "path": "/grams", "value": 250}])"));
///     merge_patch(order, parse(R"({"grams": 250, "note": null})"));
///     Value changes = diff(before, after); // patch(before, changes) is then equivalent to after
///
/// For single changes see pointer.hpp.
#ifndef FOUNDATION_JSON_PATCH_HPP
#define FOUNDATION_JSON_PATCH_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/value.hpp>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace foundation::json {

/// The exception of a patch. what() names the operation and says what is wrong, as in
/// `operation 2 (remove "/a/7"): at /a/7: the array has length 3`.
class FOUNDATION_JSON_EXPORT PatchError : public std::runtime_error {
public:
    /// @param index    of the operation in the patch
    /// @param path     its member "path"; empty if that is missing
    /// @param message  what what() says
    /// @throws std::bad_alloc if memory runs out
    PatchError(std::size_t index, std::string path, const std::string& message);

    PatchError(const PatchError&) noexcept;            ///< the same error
    PatchError& operator=(const PatchError&) noexcept; ///< the same error
    ~PatchError() override;

    /// The index of the operation, from 0; 0 also if the patch is not an array.
    [[nodiscard]] std::size_t index() const noexcept;

    /// The JSON Pointer that is the operation's member "path", not escaped for messages.
    [[nodiscard]] const std::string& path() const noexcept;

private:
    std::size_t index_;
    std::shared_ptr<const std::string> path_; // shared, so that copies cannot throw
};

/// @name Patches
/// RFC 6902
/// @{

/// Applies a patch: an array of operations, one after the other, or none of them if one fails.
///
/// Each operation is an object with the member "op", which is "add", "remove", "replace", "move",
/// "copy" or "test", and the members that it needs: "path", "from" and "value". Others are
/// ignored. The operation "test" compares as equivalent() does. The functions in the namespace
/// `operation` make such objects.
///
///     patch(config, Array{operation::replace("/port", 8080), operation::remove("/debug")});
///
/// Only values that are added are copied; elements of arrays are moved, once for the whole patch.
/// A patch can make a value that grows without bound, by copying it into itself: limit the number
/// of operations of patches from untrusted sources, too.
///
/// @param root        where the pointers of the operations begin
/// @param operations  must not lie within the root
/// @return the root
/// @throws PatchError         an element is not an operation, a pointer leads nowhere, or a test
///                            fails
/// @throws std::bad_alloc     memory runs out
/// @throws std::length_error  an array would be too long
///
/// In each case, the root is as it was, with one exception: if the root itself turns from an array
/// into an object, or the other way round, and memory runs out in the last step, it is a bool,
/// false, as after an assignment.
///
/// @complexity one lookup per token of the pointers and, for each array in which elements are
///         inserted, removed or change their kind, at most its length for each such operation
FOUNDATION_JSON_EXPORT Value& patch(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                    const Value& operations);

/// The same, and moves the added values out of the operations.
FOUNDATION_JSON_EXPORT Value& patch(Value& root FOUNDATION_JSON_LIFETIME_BOUND, Value&& operations);

/// Makes a patch that turns one value into another: what patch() makes of the first with it is
/// equivalent to the second, unless that holds NaN, which is equivalent to nothing.
///
///     Value changes = diff(Array{1, 2, 3}, Array{1, 3}); // -> [{"op":"remove","path":"\/1"}]
///
/// An element that was inserted or removed is one operation, however long the array. The patch is
/// small for the usual changes, but not always the smallest. Arrays that differ in very many
/// positions are compared element by element. The pointers together take no more memory than the
/// second value, or one megabyte: rather than a longer patch, one operation replaces everything.
///
/// @return an array of the operations "add", "remove" and "replace", empty for equivalent values
/// @throws std::bad_alloc memory runs out
/// @complexity linear in the size of both, plus sixty-odd steps for each element of arrays in which
///         elements were inserted and removed in several positions
[[nodiscard]] FOUNDATION_JSON_EXPORT Value diff(const Value& from, const Value& to);
/// @}

/// @name Merge patches
/// RFC 7396: objects with the members to be set; null for those to be removed.
/// @{

/// Applies a merge patch, all of it or nothing.
///
///     merge_patch(config, (Property("port") = 8080, Property("debug") = Null()));
///
/// @param root     changed member by member if both are objects, else replaced
/// @param changes  must not lie within the root. Undefined members are ignored, and so is a patch
///                 that is Undefined.
/// @return the root
/// @throws std::bad_alloc memory runs out; then the root is as it was, with the exception that
///         patch() has
/// @complexity the size of the patch, each member with a lookup
FOUNDATION_JSON_EXPORT Value& merge_patch(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                          const Value& changes);

/// The same, and moves values out of the changes.
FOUNDATION_JSON_EXPORT Value& merge_patch(Value& root FOUNDATION_JSON_LIFETIME_BOUND,
                                          Value&& changes);

/// Makes a merge patch that turns one value into another: what merge_patch() makes of the first
/// with it is equivalent to the second, unless that holds NaN.
///
///     Value changes = merge_diff(before, after); // -> {"debug":null,"port":8080}
///
/// @throws PointerError    a member is to become null, which a merge patch cannot express, or the
///                         root Undefined
/// @throws std::bad_alloc  memory runs out
/// @complexity linear in the size of both
[[nodiscard]] FOUNDATION_JSON_EXPORT Value merge_diff(const Value& from, const Value& to);
/// @}

/// Whether two values are equal as JSON: numbers by value, whatever their kinds, exactly;
/// Undefined members as if they were missing.
///
///     bool same = equivalent(integer(7), 7); // true, and integer(7) == Value(7) is false
///
/// 2^53 + 1 as int64 is not equivalent to 2^53 as double. -0.0 is equivalent to 0, NaN to nothing.
/// @complexity linear in the size of the smaller; ends at the first difference
[[nodiscard]] FOUNDATION_JSON_EXPORT bool equivalent(const Value& a, const Value& b) noexcept;

/// The operations of a patch, as objects.
///
///     patch(order, Array{operation::test("/id", 7), operation::add("/lines/-", "tea")});
///
/// All of them throw std::invalid_argument if a path is no JSON Pointer, and std::bad_alloc.
namespace operation {

/// Inserts a value, as foundation::json::insert().
[[nodiscard]] FOUNDATION_JSON_EXPORT Value add(std::string_view path, Value&& value);
/// The same with a copy of the value.
[[nodiscard]] inline Value add(std::string_view path, const Value& value) {
    return operation::add(path, Value(value));
}

/// Removes the value at the path.
[[nodiscard]] FOUNDATION_JSON_EXPORT Value remove(std::string_view path);

/// Replaces the value at the path, where there must be one.
[[nodiscard]] FOUNDATION_JSON_EXPORT Value replace(std::string_view path, Value&& value);
/// The same with a copy of the value.
[[nodiscard]] inline Value replace(std::string_view path, const Value& value) {
    return operation::replace(path, Value(value));
}

/// Takes the value from one location and inserts it at another, as foundation::json::move().
[[nodiscard]] FOUNDATION_JSON_EXPORT Value move(std::string_view from, std::string_view path);

/// Inserts a copy of the value at another location, as foundation::json::copy().
[[nodiscard]] FOUNDATION_JSON_EXPORT Value copy(std::string_view from, std::string_view path);

/// Fails the patch unless the value at the path is equivalent to this one.
[[nodiscard]] FOUNDATION_JSON_EXPORT Value test(std::string_view path, Value&& value);
/// The same with a copy of the value.
[[nodiscard]] inline Value test(std::string_view path, const Value& value) {
    return operation::test(path, Value(value));
}

} // namespace operation

} // namespace foundation::json

#endif
