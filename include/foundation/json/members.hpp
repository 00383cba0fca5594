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
///         std::tuple(required("host", &Server::host), defaulted("port", &Server::port));
///
/// Tables stand outside of other namespaces, before their use. This header includes neither Value
/// nor any container, so that it costs the headers of your types little.
#ifndef FOUNDATION_JSON_MEMBERS_HPP
#define FOUNDATION_JSON_MEMBERS_HPP

#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace foundation::json {

/// @cond
namespace detail {

struct NoTable {};

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

} // namespace detail
/// @endcond

/// @name Tables
/// @{

/// The table of a class's members. Specialise it for your class as a std::tuple of what required()
/// and defaulted() return. See the top of the page for an example.
///
/// A base's members are joined by `std::tuple_cat(members<Base>, std::tuple(...))`. For the members
/// of a class template, specialise partially: `template <class T> inline constexpr auto
/// foundation::json::members<Range<T>> = ...`. For private members, let the class befriend a struct
/// of yours that holds the table as a static member.
template <class T>
inline constexpr auto members = detail::NoTable{};

/// The table of an enumeration's names, specialised likewise: a std::array of std::pair<E, const
/// char*>. Of several names for an enumerator, the first is written and all are read.
template <class E>
inline constexpr auto enumerators = detail::NoTable{};

/// A required member; if it is missing or Undefined, to() throws.
/// @param name     in JSON; must outlive the table
/// @param pointer  to a data member of the class or of a base
template <class Class, class Type>
constexpr auto required(std::string_view name, Type Class::*pointer) {
    return detail::make_member(name, pointer, true);
}

/// A member with a default: if it is missing or Undefined, it keeps what the class's default
/// constructor gave it. Null is not missing: it is a wrong kind for any type but std::optional and
/// Value.
/// @param name     in JSON; must outlive the table
/// @param pointer  to a data member of the class or of a base
template <class Class, class Type>
constexpr auto defaulted(std::string_view name, Type Class::*pointer) {
    return detail::make_member(name, pointer, false);
}
/// @}

/// @cond
namespace detail {

/// What a table of members says, but for their types.
struct MemberNames {
    const std::string_view* names;
    const bool* required;
    const std::size_t* sorted; // the indexes, in the order of the names
    std::size_t count;
};

template <class T>
constexpr bool has_members = !std::is_same_v<std::remove_cv_t<decltype(members<T>)>, NoTable>;

template <class T>
constexpr bool has_enumerators =
    !std::is_same_v<std::remove_cv_t<decltype(enumerators<T>)>, NoTable>;

/// Whether no text occurs twice.
constexpr bool all_different(const std::string_view* texts, std::size_t count) {
    for (std::size_t i = 1; i < count; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (texts[i] == texts[j]) {
                return false;
            }
        }
    }
    return true;
}

// ---- Tables --------------------------------------------------------------------------------

/// The indexes of texts in the order of the texts, by insertion.
template <std::size_t Count>
constexpr std::array<std::size_t, Count>
sorted_indexes(const std::array<std::string_view, Count>& texts) {
    std::array<std::size_t, Count> result{};
    for (std::size_t i = 0; i < Count; ++i) {
        std::size_t j = i;
        for (; j > 0 && texts[i] < texts[result[j - 1]]; --j) {
            result[j] = result[j - 1];
        }
        result[j] = i;
    }
    return result;
}

/// What can be said of a table without its class.
template <class Table>
struct MemberTable {
    static constexpr bool is_valid = false;
};

template <class... Classes, class... Types>
struct MemberTable<std::tuple<Member<Classes, Types>...>> {
    static constexpr bool is_valid = true;

    template <class T>
    static constexpr bool belongs_to = (std::is_base_of_v<Classes, T> && ...);
};

/// The table of T, with its names in an array.
template <class T,
          class Indexes =
              std::make_index_sequence<std::tuple_size_v<std::remove_cv_t<decltype(members<T>)>>>>
struct Names;

template <class T, std::size_t... I>
struct Names<T, std::index_sequence<I...>> {
    static constexpr std::size_t count = sizeof...(I);
    static constexpr std::array<std::string_view, count> texts{std::get<I>(members<T>).name...};
    static constexpr std::array<bool, count> required{std::get<I>(members<T>).is_required...};
    static constexpr std::array<std::size_t, count> sorted = sorted_indexes(texts);
    static constexpr MemberNames view{texts.data(), required.data(), sorted.data(), count};
};

/// Refuses, at compile time, a table of members with a mistake in it.
template <class T>
constexpr bool require_members() {
    using Table = MemberTable<std::remove_cv_t<decltype(members<T>)>>;
    static_assert(Table::is_valid, "foundation::json::members has to be a std::tuple of what "
                                   "required(name, member) and defaulted(name, member) return");
    if constexpr (Table::is_valid) {
        constexpr bool belong = Table::template belongs_to<T>;
        static_assert(belong, "foundation::json::members names a member of another class, which is "
                              "no base of this one");
        constexpr bool differ = all_different(Names<T>::texts.data(), Names<T>::count);
        static_assert(differ, "foundation::json::members names two members the same");
        return belong && differ;
    } else {
        return false;
    }
}

/// What can be said of a table of names.
template <class E, class Table>
struct EnumeratorTable {
    static constexpr bool is_valid = false;
};

template <class E, std::size_t Count>
struct EnumeratorTable<E, std::array<std::pair<E, const char*>, Count>> {
    static constexpr bool is_valid = true;
    static constexpr std::size_t count = Count;

    static constexpr std::array<std::string_view, Count> names() {
        std::array<std::string_view, Count> result;
        for (std::size_t i = 0; i < Count; ++i) {
            result[i] = enumerators<E>[i].second;
        }
        return result;
    }
    static constexpr std::array<std::string_view, Count> texts = names();
};

template <class E>
using EnumeratorTableOf = EnumeratorTable<E, std::remove_cv_t<decltype(enumerators<E>)>>;

/// Refuses, at compile time, a table of names with a mistake in it.
template <class E>
constexpr bool require_enumerators() {
    using Table = EnumeratorTableOf<E>;
    static_assert(Table::is_valid, "foundation::json::enumerators has to be a std::array of "
                                   "std::pair<E, const char*>, with E this enumeration");
    if constexpr (Table::is_valid) {
        constexpr bool differ = all_different(Table::texts.data(), Table::count);
        static_assert(differ, "foundation::json::enumerators has the same name twice");
        return differ;
    } else {
        return false;
    }
}

} // namespace detail
/// @endcond

} // namespace foundation::json

#endif
