/// @file
/// How each type is converted, for convert.hpp. Not for programs: what is here may change in every
/// version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_CONVERTERS_HPP
#define FOUNDATION_JSON_DETAIL_CONVERTERS_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/location.hpp>
#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/start.hpp>
#include <foundation/json/detail/value_source.hpp>
#include <foundation/json/export.hpp>

#include <array>
#include <cstddef>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace foundation::json::detail {

// ---- What is compiled ----------------------------------------------------------------------

/// A member of an object that is written, or left out.
struct WrittenMember {
    Object& target;
    const void* object;  ///< that has it
    const void* pointer; ///< the address of the member's `Type Class::*`
    bool is_required;
    const Start& start;       ///< what to() starts from in the object
    const Location& location; ///< that of the member, with its name
    Defaults& defaults;
};

using WriteMember = void (*)(const WrittenMember& member);

/// Makes a value, which must be Undefined, an object of the members of another object.
FOUNDATION_JSON_EXPORT void write_members(const MemberTable& table, const WriteMember* writers,
                                          const void* object, Value& target, const Start& start,
                                          const Location& location, Defaults& defaults);

/// Makes a value, which must be Undefined, an array of Undefined elements.
FOUNDATION_JSON_EXPORT Array& make_array(Value& target, std::size_t size);

/// Makes a value, which must be Undefined, an object without members.
FOUNDATION_JSON_EXPORT Object& make_object(Value& target);

/// The member of a name that an object does not have; the quickest if names come in order.
FOUNDATION_JSON_EXPORT Value& add_member(Object& object, std::string_view name);

// ---- Which types ---------------------------------------------------------------------------

template <class T>
constexpr bool is_character() {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return !std::is_same_v<T, std::make_signed_t<T>> &&
               !std::is_same_v<T, std::make_unsigned_t<T>>;
    } else {
        return false;
    }
}

/// Whether T refers to another object, as a smart pointer or an iterator does.
template <class T, class = void>
constexpr bool is_dereferenceable = false;
template <class T>
constexpr bool is_dereferenceable<T, std::void_t<decltype(*std::declval<T&>())>> = true;

template <class T, class = void>
constexpr bool is_map = false;
template <class T>
constexpr bool is_map<T, std::void_t<typename T::key_type, typename T::mapped_type>> = true;

template <class T, class = void>
constexpr bool is_map_by_string = false;
template <class T>
constexpr bool is_map_by_string<T, std::void_t<typename T::key_type, typename T::mapped_type>> =
    std::is_same_v<typename T::key_type, std::string>;

/// Whether a map may have a key twice, so that it always takes what is inserted.
template <class T, class = void>
constexpr bool is_multimap = false;
template <class T>
constexpr bool is_multimap<
    T, std::void_t<typename T::mapped_type,
                   decltype(std::declval<T&>().insert(std::declval<typename T::value_type>()))>> =
    std::is_same_v<decltype(std::declval<T&>().insert(std::declval<typename T::value_type>())),
                   typename T::iterator>;

enum class Category { number, enumeration, object, other };

template <class T>
constexpr Category category_of() {
    if constexpr (!std::is_same_v<T, std::remove_cv_t<T>>) {
        return Category::other;
    } else if constexpr (std::is_enum_v<T>) {
        constexpr bool known = has_enumerators<T>;
        return known ? Category::enumeration : Category::other;
    } else if constexpr (std::is_class_v<T>) {
        constexpr bool known = has_members<T>;
        return known ? Category::object : Category::other;
    } else {
        constexpr bool number =
            std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && !detail::is_character<T>();
        return number ? Category::number : Category::other;
    }
}

/// Refuses, at compile time, a type that nothing is known about.
template <class T>
constexpr bool refuse_type() {
    constexpr bool is_const = std::is_const_v<T> || std::is_volatile_v<T>;
    constexpr bool refers = std::is_pointer_v<T> || std::is_reference_v<T> || std::is_array_v<T> ||
                            (!is_const && is_dereferenceable<T>) ||
                            std::is_same_v<std::remove_cv_t<T>, std::string_view>;
    static_assert(!refers, "a pointer, reference, view or C array cannot be converted: use "
                           "std::string for a text, std::vector or std::array for elements, "
                           "std::optional for what may be missing");
    static_assert(refers || !is_const, "name the type without const and volatile");
    static_assert(is_const || !detail::is_character<T>(),
                  "a character cannot be converted: use std::string for a text, signed char or "
                  "unsigned char for a number");
    static_assert(is_const || !std::is_enum_v<T>,
                  "to convert this enumeration, specialise foundation::json::enumerators for it: "
                  "table<E>({{enumerator, name}, ...})");
    static_assert(is_const || !is_multimap<T>,
                  "a multimap cannot be converted, since an object has each name once: use a "
                  "std::map of std::vector");
    static_assert(is_const || !is_map<T> || is_multimap<T> || is_map_by_string<T>,
                  "a map cannot be converted unless its keys are std::string, since they become "
                  "names of members");
    static_assert(is_const || !is_map_by_string<T> || is_multimap<T>,
                  "of maps, only std::map and std::unordered_map can be converted");
    static_assert(
        refers || is_const || detail::is_character<T>() || std::is_enum_v<T> || is_map<T>,
        "to convert this type, specialise foundation::json::members for it: table(required(name, "
        "member), defaulted(name, member), ...), or use another type, such as Value, in its place");
    return false;
}

/// Refuses, at compile time, to make what has no default constructor.
template <class T>
constexpr bool require_default() {
    static_assert(std::is_default_constructible_v<T>,
                  "to convert a Value to this type, give it a default constructor: an object is "
                  "made first, and then its members are read");
    return std::is_default_constructible_v<T>;
}

// ---- Converters ----------------------------------------------------------------------------

/// What converters of types derive from that nothing is known about.
struct Refused {};

/// How a type is converted.
///
/// read() takes what it reads from source_of(from...), such as a ValueSource. It changes what is
/// there: the members of a class keep what they held where nothing is read into them, and
/// containers are emptied first. write() is given a value that is Undefined, and what read() would
/// start from at that location.
template <class T, Category = detail::category_of<T>()>
struct Converter : Refused {
    static_assert(!detail::refuse_type<T>());
    template <class... From>
    static void read(T&, From&...) {}
    static void write(Value&, const T&, const Start&, const Location&, Defaults&) {}
};

/// What a Value holds as it is.
template <class T>
struct PlainConverter {
    template <class... From>
    static void read(T& target, From&... from) {
        const auto& source = detail::source_of(from...);
        source.read(target);
    }
    static void write(Value& target, const T& content, const Start&, const Location&, Defaults&) {
        target = Value(content);
    }
};

template <>
struct Converter<bool> : PlainConverter<bool> {};

template <>
struct Converter<std::string> : PlainConverter<std::string> {};

template <>
struct Converter<Array> : PlainConverter<Array> {};

template <>
struct Converter<Object> : PlainConverter<Object> {};

template <>
struct Converter<Value> {
    template <class... From>
    static void read(Value& target, From&... from) {
        const auto& source = detail::source_of(from...);
        source.read(target);
    }
    static void write(Value& target, const Value& content, const Start&, const Location&,
                      Defaults&) {
        target = content;
    }
};

template <class T>
struct Converter<T, Category::number> {

    template <class... From>
    static void read(T& target, From&... from) {
        const auto& source = detail::source_of(from...);
        source.read_number(target);
    }

    static void write(Value& target, const T& content, const Start&, const Location&, Defaults&) {
        if constexpr (std::is_floating_point_v<T>) {
            // Only a float stays what it is.
            using Held = std::conditional_t<std::is_same_v<T, float>, float, double>;
            target = Value(static_cast<Held>(content));
        } else if constexpr (std::is_same_v<decltype(+content), int>) {
            target = Value(int{content});
        } else {
            target = json::integer(content);
        }
    }
};

template <class E>
struct Converter<E, Category::enumeration> {

    template <class... From>
    static void read(E& target, From&... from) {
        const auto& source = detail::source_of(from...);
        if constexpr (detail::require_enumerators<E>()) {
            target = enumerators<E>[source.enumerator(enumerator_table<E>)].first;
        }
    }

    static void write(Value& target, const E& content, const Start&, const Location& location,
                      Defaults&) {
        if constexpr (detail::require_enumerators<E>()) {
            const auto number = static_cast<std::underlying_type_t<E>>(content);
            for (const auto& [enumerator, name] : enumerators<E>) {
                if (static_cast<std::underlying_type_t<E>>(enumerator) == number) {
                    target = Value(name);
                    return;
                }
            }
            detail::fail_enumerator(location, std::to_string(number), enumerator_table<E>);
        }
    }
};

// ---- Members -------------------------------------------------------------------------------

template <class T>
inline constexpr bool is_optional = false;
template <class T>
inline constexpr bool is_optional<std::optional<T>> = true;

template <class T>
bool is_empty(const std::optional<T>& content) noexcept {
    if constexpr (std::is_same_v<T, Value>) {
        return !content || json::kind_of(*content) == Kind::undefined;
    } else {
        return !content;
    }
}

/// Whether what read() starts from decides how a T is written: whether it has members, or elements
/// that read() finds there.
template <class T>
inline constexpr bool has_start = detail::category_of<T>() == Category::object;
template <class T, std::size_t Length>
inline constexpr bool has_start<std::array<T, Length>> = has_start<T>;
template <class First, class Second>
inline constexpr bool has_start<std::pair<First, Second>> = has_start<First> || has_start<Second>;
template <class... Types>
inline constexpr bool has_start<std::tuple<Types...>> = (has_start<Types> || ...);

/// Where read() starts in a new T: the root, or an element that a container makes.
template <class T>
Start start_of_new() noexcept {
    if constexpr (has_start<T>) {
        return detail::new_object<T>();
    } else {
        return Start(nullptr); // nobody asks
    }
}

/// Writes the members that T has of type Type, declared in Class.
template <class T, class Class, class Type>
struct MemberWriter {
    using Plain = std::remove_cv_t<Type>;
    using Pointer = Type Class::*;

    static void write(const WrittenMember& member) {
        const Plain& content = part(member.object, member.pointer);
        if (may_leave_out(content, member)) {
            return;
        }
        Value& target = detail::add_member(member.target, member.location.name());
        if constexpr (has_start<Plain>) {
            const Start start = detail::part_of<T, Class, Type>(member.start, member.pointer);
            Converter<Plain>::write(target, content, start, member.location, member.defaults);
        } else {
            Converter<Plain>::write(target, content, member.start, member.location,
                                    member.defaults);
        }
    }

    static constexpr WriteMember entry = &write;

private:
    static const Plain& part(const void* object, const void* pointer) {
        return static_cast<const T*>(object)->**static_cast<const Pointer*>(pointer);
    }

    /// Whether what is written without this member reads back the same.
    static bool may_leave_out(const Plain& content, const WrittenMember& member) {
        if constexpr (std::is_same_v<Plain, Value>) {
            return json::kind_of(content) == Kind::undefined;
        } else if constexpr (is_optional<Plain>) {
            if (member.is_required || !detail::is_empty(content)) {
                return false;
            }
            const Found start = member.start.object(member.defaults);
            return !start.is_read || (start.object != nullptr &&
                                      detail::is_empty(part(start.object, member.pointer)));
        } else {
            return false;
        }
    }
};

template <class T>
struct Converter<T, Category::object> {
    template <class... From>
    static void read(T& target, From&... from) {
        const auto& source = detail::source_of(from...);
        if constexpr (detail::require_members<T>()) {
            source.read_members(target);
        }
    }

    static void write(Value& target, const T& content, const Start& start, const Location& location,
                      Defaults& defaults) {
        if constexpr (detail::require_members<T>()) {
            detail::write_members(member_table<T>,
                                  member_entries<T, WriteMember, MemberWriter>.entries,
                                  std::addressof(content), target, start, location, defaults);
        }
    }
};

// ---- Containers ----------------------------------------------------------------------------

template <class T>
struct Converter<std::optional<T>, Category::other> {

    template <class... From>
    static void read(std::optional<T>& target, From&... from) {
        const auto& source = detail::source_of(from...);
        if constexpr (detail::require_default<T>()) {
            if (source.read_nothing()) {
                target.reset();
            } else {
                source.read_present(target);
            }
        }
    }

    static void write(Value& target, const std::optional<T>& content, const Start&,
                      const Location& location, Defaults& defaults) {
        if (detail::is_empty(content)) {
            target = Value(Null());
        } else {
            Converter<T>::write(target, *content, detail::start_of_new<T>(), location, defaults);
        }
    }
};

/// A container whose elements read() makes before it reads into them.
template <class Container>
struct SequenceConverter {
    using T = typename Container::value_type;

    template <class... From>
    static void read(Container& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto elements = source.elements();
        if constexpr (detail::require_default<T>()) {
            if constexpr (std::remove_reference_t<decltype(source)>::known_lengths) {
                target = Container(elements.size(), target.get_allocator());
                for (T& element : target) {
                    elements.take();
                    elements.read(element);
                }
            } else {
                elements.read_all(target);
            }
        }
    }

    static void write(Value& target, const Container& content, const Start&,
                      const Location& location, Defaults& defaults) {
        const Start start = detail::start_of_new<T>();
        Array& elements = detail::make_array(target, content.size());
        std::size_t i = 0;
        for (const T& element : content) {
            Converter<T>::write(elements[i], element, start, Location(location, i), defaults);
            ++i;
        }
    }
};

template <class T, class Allocator>
struct Converter<std::vector<T, Allocator>, Category::other>
    : SequenceConverter<std::vector<T, Allocator>> {};

template <class T, class Allocator>
struct Converter<std::deque<T, Allocator>, Category::other>
    : SequenceConverter<std::deque<T, Allocator>> {};

template <class T, class Allocator>
struct Converter<std::list<T, Allocator>, Category::other>
    : SequenceConverter<std::list<T, Allocator>> {};

/// Its elements have no address.
template <class Allocator>
struct Converter<std::vector<bool, Allocator>, Category::other> {

    template <class... From>
    static void read(std::vector<bool, Allocator>& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto elements = source.elements();
        target.clear();
        if constexpr (std::remove_reference_t<decltype(source)>::known_lengths) {
            target.reserve(elements.size());
        }
        while (elements.next()) {
            bool element = false;
            elements.read(element);
            target.push_back(element);
        }
    }

    static void write(Value& target, const std::vector<bool, Allocator>& content, const Start&,
                      const Location&, Defaults&) {
        Array& elements = detail::make_array(target, content.size());
        for (std::size_t i = 0; i < content.size(); ++i) {
            elements[i] = Value(static_cast<bool>(content[i]));
        }
    }
};

template <class T, std::size_t Length>
struct Converter<std::array<T, Length>, Category::other> {

    template <class... From>
    static void read(std::array<T, Length>& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto elements = source.elements(Length);
        for (std::size_t i = 0; i < Length; ++i) {
            elements.take();
            elements.read(target[i], source.template part<std::array<T, Length>>(
                                         [i](const auto& whole) { return &whole[i]; }));
        }
        elements.finish();
    }

    static void write(Value& target, const std::array<T, Length>& content, const Start& start,
                      const Location& location, Defaults& defaults) {
        Array& elements = detail::make_array(target, Length);
        for (std::size_t i = 0; i < Length; ++i) {
            if constexpr (has_start<T>) {
                const Start start_of_element = detail::element_of<std::array<T, Length>>(start, i);
                Converter<T>::write(elements[i], content[i], start_of_element,
                                    Location(location, i), defaults);
            } else {
                Converter<T>::write(elements[i], content[i], start, Location(location, i),
                                    defaults);
            }
        }
    }
};

template <class T, class Compare, class Allocator>
struct Converter<std::set<T, Compare, Allocator>, Category::other>
    : SequenceConverter<std::set<T, Compare, Allocator>> {

    template <class... From>
    static void read(std::set<T, Compare, Allocator>& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto elements = source.elements();
        target.clear();
        if constexpr (detail::require_default<T>()) {
            for (std::size_t size = 1; elements.next(); ++size) {
                T element{};
                elements.read(element);
                target.insert(target.end(), std::move(element));
                if (target.size() != size) {
                    elements.fail("the set has this element already");
                }
            }
        }
    }
};

/// A map by std::string.
template <class Map>
struct MapConverter {
    using T = typename Map::mapped_type;

    template <class... From>
    static void read(Map& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto members = source.members();
        target.clear();
        if constexpr (detail::require_default<T>()) {
            while (members.next()) {
                const std::size_t size = target.size();
                const auto added = target.try_emplace(target.end(), members.name());
                if (target.size() == size) {
                    members.fail("the map has this name already");
                }
                members.read(added->second);
            }
        }
    }

    static void write(Value& target, const Map& content, const Start&, const Location& location,
                      Defaults& defaults) {
        const Start start = detail::start_of_new<T>();
        Object& object = detail::make_object(target);
        for (const auto& [name, element] : content) {
            if constexpr (std::is_same_v<T, Value>) {
                if (json::kind_of(element) == Kind::undefined) {
                    continue;
                }
            }
            Converter<T>::write(detail::add_member(object, name), element, start,
                                Location(location, name), defaults);
        }
    }
};

template <class T, class Compare, class Allocator>
struct Converter<std::map<std::string, T, Compare, Allocator>, Category::other>
    : MapConverter<std::map<std::string, T, Compare, Allocator>> {};

template <class T, class Hash, class Equal, class Allocator>
struct Converter<std::unordered_map<std::string, T, Hash, Equal, Allocator>, Category::other>
    : MapConverter<std::unordered_map<std::string, T, Hash, Equal, Allocator>> {};

/// A pair or tuple, as an array.
template <class Tuple, class... Types>
struct TupleConverter {

    template <class... From>
    static void read(Tuple& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto elements = source.elements(sizeof...(Types));
        read_elements(target, elements, source, std::index_sequence_for<Types...>());
        elements.finish();
    }

    static void write(Value& target, const Tuple& content, const Start& start,
                      const Location& location, Defaults& defaults) {
        write_elements(detail::make_array(target, sizeof...(Types)), content, start, location,
                       defaults, std::index_sequence_for<Types...>());
    }

private:
    template <class Elements, class Source, std::size_t... I>
    static void read_elements(Tuple& target, [[maybe_unused]] Elements& elements,
                              [[maybe_unused]] const Source& source, std::index_sequence<I...>) {
        ((elements.take(),
          elements.read(std::get<I>(target), source.template part<Tuple>([](const auto& whole) {
              return &std::get<I>(whole);
          }))),
         ...);
    }

    template <std::size_t... I>
    static void write_elements(Array& elements, const Tuple& content, const Start& start,
                               const Location& location, Defaults& defaults,
                               std::index_sequence<I...>) {
        (write_element<I, Types>(elements[I], std::get<I>(content), start, Location(location, I),
                                 defaults),
         ...);
    }

    template <std::size_t I, class Type>
    static void write_element(Value& target, const Type& content, const Start& start,
                              const Location& location, Defaults& defaults) {
        if constexpr (has_start<Type>) {
            Converter<Type>::write(target, content, detail::element_of<Tuple, I>(start), location,
                                   defaults);
        } else {
            Converter<Type>::write(target, content, start, location, defaults);
        }
    }
};

template <class First, class Second>
struct Converter<std::pair<First, Second>, Category::other>
    : TupleConverter<std::pair<First, Second>, First, Second> {};

template <class... Types>
struct Converter<std::tuple<Types...>, Category::other>
    : TupleConverter<std::tuple<Types...>, Types...> {};

template <class T, class... From>
void read_from(T& target, From&... from) {
    Converter<T>::read(target, from...);
}

} // namespace foundation::json::detail

#endif
/// @endcond
