/// @file
/// Tables of members and enumerators, which describe your own types to convert.hpp.
///
///     struct Server {
///         std::string host;
///         int port = 8080;
///     };
///
///     template <>
///     inline constexpr auto foundation::json::members<Server> =
///         table(required("host", &Server::host), defaulted("port", &Server::port));
///
/// Tables are defined outside of other namespaces, before their use. This header includes neither
/// Value nor any container, so that it costs the headers of your types little.
#ifndef FOUNDATION_JSON_MEMBERS_HPP
#define FOUNDATION_JSON_MEMBERS_HPP

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace foundation::json {

/// @cond
namespace detail {

struct NoTable {};
struct NoRepresentation {};

/// An entry of a table of members.
template <class Class, class Type>
struct Member {
    std::string_view name;
    Type Class::*pointer;
    bool is_required;
};

template <class Class, class Type>
constexpr Member<Class, Type> make_member(std::string_view name, Type Class::*pointer,
                                          bool is_required) {
    static_assert(!std::is_function_v<Type>,
                  "a table of members holds data members: give this one as &Class::data_member");
    return {name, pointer, is_required};
}

/// What is needed to read a member and check it. The pointer comes first: code that ignores the
/// check uses the address of this object as that of the pointer.
template <class Class, class Type, class Check>
struct CheckedPointer {
    Type Class::*pointer;
    Check check;
};

/// An entry with a check.
template <class Class, class Type, class Check>
struct CheckedMember {
    std::string_view name;
    CheckedPointer<Class, Type, Check> checked;
    bool is_required;
};

template <class Class, class Type, class Check>
constexpr CheckedMember<Class, Type, Check> make_member(std::string_view name, Type Class::*pointer,
                                                        bool is_required, Check check) {
    static_assert(!std::is_function_v<Type>,
                  "a table of members holds data members: give this one as &Class::data_member");
    static_assert(std::is_standard_layout_v<CheckedPointer<Class, Type, Check>>,
                  "a check is a function, a lambda, or what in_range() returns");
    return {name, {pointer, check}, is_required};
}

/// What in_range() returns.
template <class Low, class High>
struct InRange {
    Low low;
    High high;
};

/// What tagged() returns.
template <std::size_t Count>
struct Tagged {
    std::string_view member;
    std::string_view names[Count];
};

/// A part of a table; the number makes it a base class of its own.
template <std::size_t Number, class Part>
struct NumberedPart {
    Part part;
};

/// What table() returns. The parts are members and other tables, all of them bases of one class:
/// compilers handle a thousand bases quickly, but not a thousand levels of templates.
template <class Numbers, class... Parts>
struct Table;

template <std::size_t... Numbers, class... Parts>
struct Table<std::index_sequence<Numbers...>, Parts...> : NumberedPart<Numbers, Parts>... {};

template <class T>
inline constexpr bool is_table = false;
template <class Numbers, class... Parts>
inline constexpr bool is_table<Table<Numbers, Parts...>> = true;

template <class T>
inline constexpr bool is_member = false;
template <class Class, class Type>
inline constexpr bool is_member<Member<Class, Type>> = true;
template <class Class, class Type, class Check>
inline constexpr bool is_member<CheckedMember<Class, Type, Check>> = true;

/// Not a fold, since compilers limit the length of those.
constexpr bool all_of(std::initializer_list<bool> conditions) {
    bool result = true;
    for (const bool condition : conditions) {
        result = result && condition;
    }
    return result;
}

template <class... Members>
inline constexpr bool is_table<std::tuple<Members...>> = detail::all_of({true,
                                                                         is_member<Members>...});

} // namespace detail
/// @endcond

/// Options of to() and, as a part of ReadOptions, of read().
struct ConvertOptions {
    /// What happens to members that a type's table does not name, at every depth.
    enum class UnknownMembers {
        ignore, ///< they are skipped
        error,  ///< they are errors that list the known ones
    };
    UnknownMembers unknown_members = UnknownMembers::ignore; ///< by default they are skipped

    /// How many errors one exception may report. If more than one, the conversion continues after
    /// an error with the next member or element, and throws all errors as one exception at the end,
    /// or as soon as it has found so many. By default, it throws the first one. 0 means 1.
    std::size_t max_errors = 1;
};

/// @name Tables
/// @{

/// The table of a class's members. Specialise it for your class with the result of table(), as in
/// the example at the top. A std::tuple of what required() and defaulted() return is a
/// table as well, but takes compilers longer, and no more than a few hundred members.
///
/// For the members of a class template, specialise partially: `template <class T> inline constexpr
/// auto foundation::json::members<Range<T>> = ...`. For private members, let the class befriend a
/// struct of yours that holds the table as a static member.
template <class T>
inline constexpr auto members = detail::NoTable{};

/// The table of an enumeration's names, specialised with the result of `table<E>({...})`, or a
/// std::array of std::pair<E, const char*>. Of several names for an enumerator, the first is
/// written and all are read.
template <class E>
inline constexpr auto enumerators = detail::NoTable{};

/// How a type is represented by another one. Specialise it for types that no table describes: those
/// without a default constructor or with getters, and those of other libraries.
///
///     template <>
///     struct foundation::json::representation<Uuid> {
///         static std::string to(const Uuid& id) { return id.text(); }
///         static Uuid from(const std::string& text) { return Uuid(text); }
///     };
///
/// to() returns what is serialized instead: an object of another convertible type, such as a class
/// with a table. from() makes an object of what was parsed, of any such type. Both may throw any
/// std::exception, whose what() becomes the message of a ConversionError at that location. A
/// function that is not needed can be left out. A type with a representation and a table uses the
/// representation.
template <class T>
struct representation : detail::NoRepresentation {};

/// How the alternatives of a std::variant are told apart, specialised with the result of tagged().
/// Without it, a value becomes the first alternative that it converts to.
template <class Variant>
inline constexpr auto alternatives = detail::NoTable{};

/// Alternatives that are objects, told apart by a member that names the alternative.
///
///     using Shape = std::variant<Circle, Square>; // {"type":"circle","radius":2} is a Circle
///
///     template <>
///     inline constexpr auto foundation::json::alternatives<Shape> = tagged(
///         "type", {"circle", "square"});
///
/// @param member  the name of that member, which must not be a member of the alternatives
/// @param names   the name of each alternative, in their order; all different
template <std::size_t Count>
constexpr auto tagged(std::string_view member, const char* const (&names)[Count]) {
    detail::Tagged<Count> result{member, {}};
    for (std::size_t i = 0; i < Count; ++i) {
        result.names[i] = names[i];
    }
    return result;
}

/// A required member; if it is missing or Undefined, to() throws.
/// @param name     in JSON; must outlive the table
/// @param pointer  to a data member of the class or of a base
template <class Class, class Type>
constexpr auto required(std::string_view name, Type Class::*pointer) {
    return detail::make_member(name, pointer, true);
}

/// A member with a default: if it is missing or Undefined, it keeps what the class's default
/// constructor gave it. Null is not missing: it is of the wrong type for any member but a
/// std::optional or a Value.
/// @param name     in JSON; must outlive the table
/// @param pointer  to a data member of the class or of a base
template <class Class, class Type>
constexpr auto defaulted(std::string_view name, Type Class::*pointer) {
    return detail::make_member(name, pointer, false);
}

/// The same with a check of what is read into the member; the default is not checked, and neither
/// is what is written.
/// @param name     in JSON; must outlive the table
/// @param pointer  to a data member of the class or of a base
/// @param check    in_range(), or a function that takes the member, or its content if it is a
///                 std::optional, and returns what is wrong with it, such as "80 is not even", or
///                 an empty string
template <class Class, class Type, class Check>
constexpr auto required(std::string_view name, Type Class::*pointer, Check check) {
    return detail::make_member(name, pointer, true, check);
}

/// The same for a member with a default.
template <class Class, class Type, class Check>
constexpr auto defaulted(std::string_view name, Type Class::*pointer, Check check) {
    return detail::make_member(name, pointer, false, check);
}

/// A check that a member is neither less than one limit nor greater than another, as in
/// `required("port", &Server::port, in_range(1, 65535))`. NaN is in no range.
template <class Low, class High>
constexpr auto in_range(Low low, High high) {
    return detail::InRange<Low, High>{low, high};
}

/// A table of members, in the order in which they are read. Compilers take time in proportion to
/// their number, and a second for a thousand.
///
///     struct Secured : Server {
///         std::string certificate;
///     };
///
///     template <>
///     inline constexpr auto foundation::json::members<Secured> =
///         table(members<Server>, required("certificate", &Secured::certificate));
///
/// @param parts  what required() and defaulted() return, and other tables, such as that of a base,
///               whose members are then members of this one
template <class... Parts>
constexpr auto table(const Parts&... parts) {
    constexpr bool known =
        detail::all_of({true, (detail::is_member<Parts> || detail::is_table<Parts>)...});
    static_assert(known, "table() takes what required(name, member) and defaulted(name, member) "
                         "return, and tables, such as members<Base>, that stand before it");
    if constexpr (known) {
        return detail::Table<std::index_sequence_for<Parts...>, Parts...>{{parts}...};
    } else {
        return detail::NoTable{};
    }
}

/// A table of an enumeration's names.
///
///     enum class Level { low, high };
///
///     template <>
///     inline constexpr auto foundation::json::enumerators<Level> =
///         table<Level>({{Level::low, "low"}, {Level::high, "high"}});
///
/// @param names  pairs of an enumerator and its name in JSON, which must outlive the table
template <class E, std::size_t Count>
constexpr std::array<std::pair<E, const char*>, Count>
table(const std::pair<E, const char*> (&names)[Count]) {
    std::array<std::pair<E, const char*>, Count> result{};
    for (std::size_t i = 0; i < Count; ++i) {
        result[i].first = names[i].first;
        result[i].second = names[i].second;
    }
    return result;
}
/// @}

} // namespace foundation::json

#endif
