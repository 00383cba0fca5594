/// @file
/// Serializes objects of your own types, without a Value in between. Not part of json.hpp;
/// convert.hpp includes it.
///
///     std::string text = write(server);
///     write(stream, server, WriteOptions::indented(2));
///     writer.value(server); // of a Writer, with write.hpp
///
/// write_file() is in write_file.hpp. This header includes neither Value nor Boost: types that have
/// a Value in them need value.hpp.
///
/// Everything that from() of convert.hpp takes can be written, by the same tables of members, and
/// the result is that of write(from(object), options), except for the order of members: those of a
/// class come in the order of its table, those of a std::map in the order of the map. With
/// MemberOrder::utf16, that order is the same, too.
#ifndef FOUNDATION_JSON_WRITE_TYPES_HPP
#define FOUNDATION_JSON_WRITE_TYPES_HPP

#include <foundation/json/detail/converters.hpp>
#include <foundation/json/detail/text_sink.hpp>
#include <foundation/json/fwd.hpp>
#include <foundation/json/members.hpp>
#include <foundation/json/write_options.hpp>

#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>

namespace foundation::json {

/// @cond
namespace detail {

/// Whether a T converts to a type, which may be incomplete: then it does not.
template <class T, class Other, class = void>
inline constexpr bool is_convertible_to = false;
template <class T, class Other>
inline constexpr bool is_convertible_to<T, Other, std::void_t<decltype(sizeof(Other))>> =
    std::is_convertible_v<const T&, Other>;

/// Whether write() takes a T as it is, rather than as the Value that it converts to.
template <class T>
constexpr bool is_written_as_own() {
    if constexpr (std::is_same_v<T, Value> || std::is_array_v<T> || std::is_pointer_v<T> ||
                  std::is_null_pointer_v<T>) {
        return false;
    } else if constexpr (is_known<T>) {
        return true;
    } else {
        return !is_convertible_to<T, Value>;
    }
}

template <class T>
using IfOwn = std::enable_if_t<detail::is_written_as_own<T>()>;

/// For Writer::value().
template <class T, class = IfOwn<T>>
AnyObject object_of(OfOtherType, const T& object) noexcept {
    return detail::any_object(object);
}

} // namespace detail
/// @endcond

/// @name Objects of your own types
/// Errors are the same exceptions, with the same messages, as of from() and write(). After an error
/// the object is visited once more, to find its location.
/// @throws ConversionError  what from() throws
/// @throws WriteError       the options do not allow something in the object
/// @throws std::bad_alloc   memory runs out
/// @complexity linear in the size of the object, plus sorting in a std::unordered_map and with
///             MemberOrder::utf16. Recursion as deep as the nesting.
/// @{

/// Serializes an object to a string, without a line end.
template <class T, class = detail::IfOwn<T>>
[[nodiscard]] std::string write(const T& object, const WriteOptions& options = {}) {
    return detail::write_text(detail::any_object(object), options);
}

/// Serializes an object onto a stream, as write() of a Value does. The stream may have got
/// a part of the text before an exception.
template <class T, class = detail::IfOwn<T>>
void write(std::ostream& stream, const T& object, const WriteOptions& options = {}) {
    detail::write_text(stream, detail::any_object(object), options);
}
/// @}

} // namespace foundation::json

#endif
