/// @file
/// What converters read from, as far as they have to know it, for the library's other headers. Not
/// for programs: what is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_SOURCES_HPP
#define FOUNDATION_JSON_DETAIL_SOURCES_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>

#include <type_traits>

namespace foundation::json::detail {

// Every source has these members:
//
//     known_lengths         whether elements() has a size()
//     reads_whole<T>        whether read() reads a container of this type
//     read(target)          what a Value holds as it is: bool, std::string, Array, Object, Value
//     read_number(target)
//     enumerator(names)     the number of the name that is there
//     read_nothing()        whether there is no value, but null
//     expect_nothing()      the same for what can be nothing else
//     read_members(object)  those of a class with a table
//     elements()            those of an array, one after the other; elements(length) for so many
//     members()             those of an object
//     part<T>(part_of)      for an element of a T, the second argument of read() of its elements()
//     read_present(target)  the content of a std::optional
//     read_new(target)      an object that has just been made, of whatever type
//     noted()               how many errors have been noted so far
//     fail_since(noted)     fails if there have been more since then
//     trial()               as long as the result lives, errors are thrown rather than noted
//     use_again(use)        calls a function with a source that can be read from more than once
//     use_tagged(member, names, use)
//                           the same for the rest of an object without a member, whose value is one
//                           of the names; the second argument is the number of the name
//     fail(problem)         fails there
//     fail_current()        the same because of the exception under way
//     problem()             of what use_again() gives: what the exception under way says
//
// Where types are read, source_of(from...) gives it: one itself, or one of its parts.

class Location;
class TextSource;
class ValueSource;
struct Session;

/// A value at a location.
ValueSource source_of(const Value& value, const Location& location, Session& session) noexcept;

/// A source itself.
inline const ValueSource& source_of(const ValueSource& source) noexcept {
    return source;
}
inline const TextSource& source_of(const TextSource& source) noexcept {
    return source;
}

/// Reads an object of any convertible type. converters.hpp defines it.
/// @param from  a source, or what source_of() makes one of: in registers, a call takes less time
template <class T, class... From>
void read_from(T& target, From&... from);

/// Refuses, at compile time, to read into a member that is const.
template <class Type>
constexpr bool require_changeable() {
    static_assert(!std::is_const_v<Type>, "a member that is const cannot be read into");
    return !std::is_const_v<Type>;
}

/// Whether a value is Undefined.
[[nodiscard]] FOUNDATION_JSON_EXPORT bool is_undefined(const Value& value) noexcept;

} // namespace foundation::json::detail

#endif
/// @endcond
