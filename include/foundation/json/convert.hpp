/// @file
/// Conversion of values to your own types and back, by tables of members. Not part of json.hpp.
///
///     struct Server {
///         std::string host;
///         int port = 8080;
///         std::vector<std::string> tags;
///     };
///
///     template <>
///     inline constexpr auto foundation::json::members<Server> = table(
///         required("host", &Server::host),
///         defaulted("port", &Server::port),
///         defaulted("tags", &Server::tags));
///
/// Then values convert to objects of these types, and back:
///
///     Server server = to<Server>(value);                // a whole object, or ConversionError
///     int port = to_or(config, "/server/port", 8080);   // a fallback for what is missing
///     Value copy = from(server);                        // {"host":...,"port":...,"tags":[...]}
///     const Value* tags = find(config, "/server/tags"); // null where there is nothing
///
/// Convertible are bool, numbers, std::string, Value, Array and Object; std::vector, deque, list,
/// array, set, multiset and the unordered sets; maps and multimaps by std::string; std::optional,
/// unique_ptr and shared_ptr; std::pair, tuple and variant; std::filesystem::path; enumerations by
/// a table of `enumerators`; whatever has a `representation`; and all of these within each other.
/// chrono.hpp adds times. What to() makes must have a default constructor or a representation.
/// Tables are defined outside of other namespaces, before use. See also read.hpp, write_types.hpp.
///
/// Conversion is strict: a value of the wrong type, a fraction for an integer, a number out of
/// range and a length that does not fit are errors. Each error names its location as a JSON Pointer
/// and shows the value, as in `at /tags/2: 7 is a number, not a string`.
#ifndef FOUNDATION_JSON_CONVERT_HPP
#define FOUNDATION_JSON_CONVERT_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/conversion_error.hpp>
#include <foundation/json/detail/converters.hpp>
#include <foundation/json/detail/value_sink.hpp>
#include <foundation/json/detail/value_source.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/members.hpp>
#include <foundation/json/pointer.hpp>
#include <foundation/json/value.hpp>
#include <foundation/json/write_types.hpp>

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {

/// @cond
namespace detail {

/// What `{}` means as the second argument of to(): the better match, so that it is neither taken
/// for an empty pointer nor ambiguous.
enum class NoOptions {};

/// Converts a value that lies at that location, or throws all of its errors.
template <class T>
[[FOUNDATION_JSON_GNU(cold)]] T read_or_collect(const Value& value, const Location& location,
                                                const ConvertOptions& options) {
    ErrorCollector collector(options);
    Session session{options, {}, &collector};
    T result = detail::make_from<T>(value, location, session);
    if (collector.noted() != 0) {
        collector.fail();
    }
    return result;
}

/// Converts a value that lies at that location.
template <class T>
T read_value(const Value& value, const Location& location, const ConvertOptions& options) {
    if constexpr (!detail::is_known<T>) {
        static_assert(!detail::refuse_type<T>());
    } else {
        if constexpr (detail::require_default<T>()) {
            if (options.max_errors > 1) {
                return detail::read_or_collect<T>(value, location, options);
            }
            Session session{options, {}};
            if constexpr (std::is_default_constructible_v<T>) {
                T result{};
                Converter<T>::read(result, value, location, session);
                return result;
            } else {
                return detail::make_from<T>(value, location, session);
            }
        }
    }
}

/// The value that a JSON Pointer leads to, or null if it is missing.
/// @throws ConversionError        a value on the way is of a type that has no such children
/// @throws std::invalid_argument  the string is not a JSON Pointer
[[nodiscard]] FOUNDATION_JSON_EXPORT const Value* find_checked(const Value& root,
                                                               std::string_view pointer);

/// The same; null also if there is Undefined or Null, there or on the way.
[[nodiscard]] FOUNDATION_JSON_EXPORT const Value* find_present(const Value& root,
                                                               std::string_view pointer);

/// What a fallback of type T is a fallback for.
template <class T>
using FallbackFor = std::conditional_t<std::is_same_v<T, const char*> || std::is_same_v<T, char*> ||
                                           std::is_same_v<T, std::string_view>,
                                       std::string, T>;

} // namespace detail
/// @endcond

/// @name Conversion
/// @{

/// A value as a T.
///
/// An object of a class is made by the default constructor; then its members are read into it.
/// Containers and std::optional are emptied first; members of other types keep what the constructor
/// gave them if nothing is read into them.
/// @throws ConversionError  the value does not fit: a wrong type, a number out of range or with a
///                          fraction, a wrong length, a required member that is missing, a name
///                          that is unknown, an element that a set contains already. With the
///                          option max_errors, it has all such errors: those of each member and
///                          element. Of an array with a wrong length, a member that its check
///                          refuses, and a variant, it has one error
/// @throws std::bad_alloc   memory runs out
/// @throws what a default constructor, or the insertion into a container, throws
/// @complexity linear in the size of what is read, times the logarithm of the sizes of objects and
///             tables; recursion as deep as the nesting of T.
template <class T>
T to(const Value& value, const ConvertOptions& options = {}) {
    return detail::read_value<T>(value, detail::Location(std::string_view()), options);
}

/// @cond
template <class T>
T to(const Value& value, detail::NoOptions) {
    return json::to<T>(value, ConvertOptions());
}
/// @endcond

/// The value at a location within another, as a T. If there is none, a std::optional is empty, and
/// every other type is an error.
/// @param root     where the pointer begins, and also those in errors
/// @param pointer  a JSON Pointer, as for find()
/// @param options  what to accept
/// @throws ConversionError        as above; also if nothing is there, or if a value on the way is
///                                neither an object nor an array, or is an array where the pointer
///                                has a name. A token such as "-" or "01", which is not an index
///                                of the array, leads to nothing, as for find()
/// @throws std::invalid_argument  the string is not a JSON Pointer
/// @throws std::bad_alloc         memory runs out
template <class T>
T to(const Value& root, std::string_view pointer, const ConvertOptions& options = {}) {
    const detail::Location location(pointer);
    const Value* const value = detail::find_checked(root, pointer);
    if (value == nullptr) {
        if constexpr (detail::is_optional<T>) {
            return T();
        }
        detail::fail(location, "there is no value");
    }
    return detail::read_value<T>(*value, location, options);
}

/// The value at a location within another, or a fallback if it, or a value on the way, is missing,
/// Undefined or Null. A value of a wrong type still throws, there and on the way, as in to().
/// @param root      where the pointer begins
/// @param pointer   a JSON Pointer, as for find()
/// @param fallback  its type is that of the result; for a string literal, std::string
/// @throws as to()
template <class T>
detail::FallbackFor<T> to_or(const Value& root, std::string_view pointer, T fallback) {
    using Result = detail::FallbackFor<T>;
    const Value* const value = detail::find_present(root, pointer);
    if (value == nullptr) {
        return Result(std::move(fallback));
    }
    return detail::read_value<Result>(*value, detail::Location(pointer), ConvertOptions());
}

/// A value from an object of a convertible type, from which to() makes an equal object.
///
/// An int, and any type that promotes to int, becomes a double, as in Value; larger integers become
/// int64 or uint64, a float stays a float, and a long double becomes the nearest double. Classes
/// and maps become objects; other containers, pairs and tuples become arrays. Value, Array and
/// Object are copied as they are.
///
/// A std::optional without a value becomes Null, and so does a null smart pointer. As a defaulted()
/// member it is left out if it has no value in the default object either: that of the class or, for
/// a class within another one, that part of the outer default object. Default objects are made
/// where they are needed, once for each class; if the constructor throws anything but
/// std::bad_alloc, Null is written.
///
/// A member of a class or map that is an Undefined Value is left out; in a std::optional it counts
/// as no value. to() cannot restore what JSON cannot express: an Undefined Value, unless it is
/// Undefined in the default object, too; and a std::optional that holds Null or an empty
/// std::optional.
/// @throws ConversionError  an enumerator has no name, a std::variant no value, or to() of a
///                          representation has thrown a std::exception
/// @throws std::bad_alloc   memory runs out
/// @complexity linear in the size of the object, times the logarithm of the sizes of objects made.
template <class T>
Value from(const T& object) {
    Value result;
    detail::Defaults defaults;
    const detail::Location location{std::string_view()};
    detail::ValueSink sink(result, location, defaults);
    detail::Converter<T>::write(sink, object, detail::start_of_new<T>());
    return result;
}
/// @}

} // namespace foundation::json

#endif
