/// @file
/// How each type is converted, for convert.hpp. Not for programs: what is here may change in every
/// version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_CONVERTERS_HPP
#define FOUNDATION_JSON_DETAIL_CONVERTERS_HPP

#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/sources.hpp>
#include <foundation/json/detail/start.hpp>
#include <foundation/json/detail/text_sink.hpp>
#include <foundation/json/fwd.hpp>

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
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
#include <unordered_set>
#include <utility>
#include <vector>

namespace foundation::json::detail {

// ---- Which types ---------------------------------------------------------------------------

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

template <class T>
inline constexpr bool has_representation = !std::is_base_of_v<NoRepresentation, representation<T>>;

/// Whether T is std::filesystem::path, told by what only a path has.
template <class T, class = void>
inline constexpr bool is_path = false;
template <class T>
inline constexpr bool
    is_path<T, std::void_t<typename T::string_type, typename T::value_type, typename T::format,
                           decltype(std::declval<const T&>().lexically_normal())>> =
        std::is_same_v<decltype(std::declval<const T&>().lexically_normal()), T>;

enum class Category { number, enumeration, object, represented, path, other };

template <class T>
constexpr Category category_of_own() {
    if constexpr (has_representation<T>) {
        return Category::represented;
    } else if constexpr (std::is_enum_v<T>) {
        constexpr bool known = has_enumerators<T>;
        return known ? Category::enumeration : Category::other;
    } else {
        constexpr bool known = has_members<T>;
        constexpr bool path = is_path<T>;
        return known ? Category::object : path ? Category::path : Category::other;
    }
}

template <class T>
constexpr Category category_of() {
    if constexpr (!std::is_same_v<T, std::remove_cv_t<T>>) {
        return Category::other;
    } else if constexpr (std::is_class_v<T> || std::is_enum_v<T>) {
        return category_of_own<T>();
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
                            (!is_const && is_dereferenceable<T>);
    static_assert(!refers, "a pointer, reference, view or C array cannot be converted: use "
                           "std::string for a string, std::vector or std::array for elements, "
                           "std::optional for what may be missing");
    static_assert(refers || !is_const, "name the type without const and volatile");
    static_assert(is_const || !detail::is_character<T>(),
                  "a character cannot be converted: use std::string for a string, signed char or "
                  "unsigned char for a number");
    static_assert(is_const || !std::is_enum_v<T>,
                  "to convert this enumeration, specialise foundation::json::enumerators for it: "
                  "table<E>({{enumerator, name}, ...})");
    static_assert(
        is_const || !is_multimap<T>,
        "a multimap cannot be converted unless its keys are std::string, since they become "
        "names of members");
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

/// Refuses, at compile time, to make what has neither a default constructor nor a representation.
template <class T>
constexpr bool require_default() {
    constexpr bool makeable = std::is_default_constructible_v<T> || has_representation<T>;
    static_assert(makeable,
                  "to convert a Value to this type, give it a default constructor: an object is "
                  "made first, and then its members are read; or specialise "
                  "foundation::json::representation for it");
    return makeable;
}

// ---- Converters ----------------------------------------------------------------------------

/// What converters of types derive from that nothing is known about.
struct Refused {};

/// How a type is converted.
///
/// read() takes what it reads from source_of(from...), such as a ValueSource. It changes what is
/// there: the members of a class keep what they held where nothing is read into them, and
/// containers are emptied first. write() passes an object on to a sink, a ValueSink or TextSink; it
/// is given what read() would start from at that location.
template <class T, Category = detail::category_of<T>()>
struct Converter : Refused {
    template <class... From>
    static void read(T&, From&...) {
        static_assert(!detail::refuse_type<T>());
    }
    template <class Sink>
    static void write(Sink&, const T&, const Start&) {
        static_assert(!detail::refuse_type<T>());
    }
};

/// Whether something is known about T.
template <class T>
inline constexpr bool is_known = !std::is_base_of_v<Refused, Converter<T>>;

/// What a Value holds as it is.
template <class T>
struct PlainConverter {
    template <class... From>
    static void read(T& target, From&... from) {
        const auto& source = detail::source_of(from...);
        source.read(target);
    }
};

template <>
struct Converter<bool> : PlainConverter<bool> {
    template <class Sink>
    static void write(Sink& sink, bool content, const Start&) {
        sink.put(content);
    }
};

template <>
struct Converter<std::string> : PlainConverter<std::string> {
    template <class Sink>
    static void write(Sink& sink, const std::string& content, const Start&) {
        sink.put_string(content);
    }
};

// Value may be incomplete here.

template <>
struct Converter<std::vector<Value>, Category::other> : PlainConverter<std::vector<Value>> {
    template <class Sink>
    static void write(Sink& sink, const std::vector<Value>& content, const Start&) {
        sink.put_array(content);
    }
};

template <>
struct Converter<std::map<std::string, Value>, Category::other>
    : PlainConverter<std::map<std::string, Value>> {
    template <class Sink>
    static void write(Sink& sink, const std::map<std::string, Value>& content, const Start&) {
        sink.put_object(content);
    }
};

template <>
struct Converter<Value, Category::other> {
    template <class... From>
    static void read(Value& target, From&... from) {
        const auto& source = detail::source_of(from...);
        source.read(target);
    }
    template <class Sink>
    static void write(Sink& sink, const Value& content, const Start&) {
        sink.put_value(content);
    }
};

template <class T>
struct Converter<T, Category::number> {

    template <class... From>
    static void read(T& target, From&... from) {
        const auto& source = detail::source_of(from...);
        source.read_number(target);
    }

    template <class Sink>
    static void write(Sink& sink, const T& content, const Start&) {
        if constexpr (std::is_floating_point_v<T>) {
            // Only a float stays what it is.
            using Held = std::conditional_t<std::is_same_v<T, float>, float, double>;
            sink.put(static_cast<Held>(content));
        } else if constexpr (std::is_same_v<decltype(+content), int>) {
            sink.put(int{content});
        } else {
            using Held = std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>;
            static_assert(sizeof(T) <= sizeof(Held), "an integer of more than 64 bits has no kind");
            sink.put(static_cast<Held>(content));
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

    template <class Sink>
    static void write(Sink& sink, const E& content, const Start&) {
        if constexpr (detail::require_enumerators<E>()) {
            const auto number = static_cast<std::underlying_type_t<E>>(content);
            for (const auto& [enumerator, name] : enumerators<E>) {
                if (static_cast<std::underlying_type_t<E>>(enumerator) == number) {
                    sink.put_string(name);
                    return;
                }
            }
            sink.fail_enumerator(std::to_string(number), enumerator_table<E>);
        }
    }
};

// ---- New objects ---------------------------------------------------------------------------

/// An object of a type that may lack a default constructor: there is none before it is read.
template <class T>
struct Made {
    std::optional<T> object;
};

template <class T>
struct Converter<Made<T>, Category::other> {
    template <class... From>
    static void read(Made<T>& target, From&... from) {
        if constexpr (std::is_default_constructible_v<T>) {
            const auto& source = detail::source_of(from...);
            source.read_new(target.object.emplace());
        } else {
            target.object.emplace(Converter<T>::make(from...));
        }
    }
};

/// A new object, which is read.
template <class T, class... From>
T make_from(From&... from) {
    Made<T> made;
    Converter<Made<T>>::read(made, from...);
    return std::move(*made.object);
}

// ---- Members -------------------------------------------------------------------------------

template <class T>
inline constexpr bool is_optional = false;
template <class T>
inline constexpr bool is_optional<std::optional<T>> = true;
template <class T>
inline constexpr bool is_optional<std::unique_ptr<T>> = true;
template <class T>
inline constexpr bool is_optional<std::shared_ptr<T>> = true;

template <class T>
inline constexpr bool is_plain_optional = false;
template <class T>
inline constexpr bool
    is_plain_optional<std::optional<T>> = detail::plain_type<T>() != PlainType::none;

/// @tparam Optional  a std::optional or a smart pointer
template <class Optional>
bool is_empty(const Optional& content) noexcept {
    using T = std::remove_cv_t<std::remove_reference_t<decltype(*content)>>;
    if constexpr (std::is_same_v<T, Value>) {
        return !content || detail::is_undefined(*content);
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

/// Whether the writing of a T asks what read() starts from: whether it may leave out a member, or
/// one of a member.
template <class T>
constexpr bool asks_for_start();

template <class Part>
inline constexpr bool part_asks_for_start = false;
template <class Class, class Type>
inline constexpr bool
    part_asks_for_start<Member<Class, Type>> = is_optional<std::remove_cv_t<Type>> ||
                                               detail::asks_for_start<std::remove_cv_t<Type>>();
template <class Class, class Type, class Check>
inline constexpr bool part_asks_for_start<CheckedMember<Class, Type, Check>> =
    part_asks_for_start<Member<Class, Type>>;
template <class... Parts>
inline constexpr bool part_asks_for_start<std::tuple<Parts...>> =
    !detail::all_of({true, !part_asks_for_start<Parts>...});
template <class Numbers, class... Parts>
inline constexpr bool part_asks_for_start<Table<Numbers, Parts...>> =
    part_asks_for_start<std::tuple<Parts...>>;

template <class T>
inline constexpr bool elements_ask_for_start = false;
template <class T, std::size_t Length>
inline constexpr bool elements_ask_for_start<std::array<T, Length>> = detail::asks_for_start<T>();
template <class First, class Second>
inline constexpr bool elements_ask_for_start<std::pair<First, Second>> =
    detail::asks_for_start<First>() || detail::asks_for_start<Second>();
template <class... Types>
inline constexpr bool
    elements_ask_for_start<std::tuple<Types...>> = (detail::asks_for_start<Types>() || ...);

template <class T>
constexpr bool asks_for_start() {
    if constexpr (detail::category_of<T>() == Category::object) {
        return part_asks_for_start<std::remove_cv_t<decltype(members<T>)>>;
    } else {
        return elements_ask_for_start<T>;
    }
}

/// Where read() starts in a new T: the root, or an element that a container makes.
template <class T>
Start start_of_new() noexcept {
    if constexpr (detail::asks_for_start<T>()) {
        return detail::new_object<T>();
    } else {
        return Start(nullptr); // nobody asks
    }
}

/// Writes the members that T has of type Type, declared in Class, to a sink, or leaves them out.
template <class Sink>
struct MemberWriters {
    using WrittenMember = typename Sink::Member;

    template <class T, class Class, class Type>
    struct Of;
};

template <class Sink>
template <class T, class Class, class Type>
struct MemberWriters<Sink>::Of {
    using Plain = std::remove_cv_t<Type>;
    using Pointer = Type Class::*;

    static void write(const WrittenMember& member) {
        const Plain& content = part(member.object, member.pointer);
        if (may_leave_out(content, member)) {
            return;
        }
        if constexpr (std::is_same_v<Sink, TextSink> && is_plain_optional<Plain>) {
            // In one call rather than three.
            using Part = typename Plain::value_type;
            member.target.put_member(member, content ? detail::plain_type<Part>() : PlainType::none,
                                     content ? std::addressof(*content) : nullptr);
            return;
        }
        auto&& sink = member.sink();
        if constexpr (detail::asks_for_start<Plain>()) {
            const Start start = detail::part_of<T, Class, Type>(member.start, member.pointer);
            Converter<Plain>::template write<Sink>(sink, content, start);
        } else {
            Converter<Plain>::template write<Sink>(sink, content, member.start);
        }
    }

    static constexpr auto entry = &write;

private:
    static const Plain& part(const void* object, const void* pointer) {
        return static_cast<const T*>(object)->**static_cast<const Pointer*>(pointer);
    }

    /// Whether what is written without this member reads back the same.
    static bool may_leave_out(const Plain& content, const WrittenMember& member) {
        if constexpr (std::is_same_v<Plain, Value>) {
            return detail::is_undefined(content);
        } else if constexpr (is_optional<Plain>) {
            if (member.is_required || !detail::is_empty(content)) {
                return false;
            }
            const Found start = member.start.object(member.defaults());
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

    template <class Sink>
    static void write(Sink& sink, const T& content, const Start& start) {
        if constexpr (detail::require_members<T>()) {
            sink.write_members_of(content, start);
        }
    }
};

template <class T>
void TextSink::write_members_of(const T& object, const Start& start) {
    const void* parts[MembersOf<T>::count + 1]; // there are no arrays of length 0
    parts[MembersOf<T>::count] = nullptr;
    PartCollector<T> collector(object, parts);
    detail::visit_members(members<T>, collector);
    write_members(text_table<T, MemberWriters<TextSink>::Of>, std::addressof(object), parts, start);
}

// ---- Containers ----------------------------------------------------------------------------

template <class T>
struct Converter<std::optional<T>, Category::other> {

    template <class... From>
    static void read(std::optional<T>& target, From&... from) {
        const auto& source = detail::source_of(from...);
        if constexpr (detail::require_default<T>()) {
            if (source.read_nothing()) {
                target.reset();
            } else if constexpr (std::is_default_constructible_v<T>) {
                source.read_present(target);
            } else {
                target.emplace(Converter<T>::make(from...));
            }
        }
    }

    template <class Sink>
    static void write(Sink& sink, const std::optional<T>& content, const Start&) {
        if (detail::is_empty(content)) {
            sink.put_null();
        } else {
            Converter<T>::template write<Sink>(sink, *content, detail::start_of_new<T>());
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
        using Source = std::remove_cv_t<std::remove_reference_t<decltype(source)>>;
        if constexpr (Source::template reads_whole<Container>) {
            source.read(target);
        } else {
            read_elements<Source>(target, source);
        }
    }

    template <class Sink>
    static void write(Sink& sink, const Container& content, const Start&) {
        constexpr PlainType plain = detail::plain_type<T>();
        if constexpr (std::is_same_v<Sink, TextSink> && is_vector && plain != PlainType::none) {
            sink.put_plain(plain, content.data(), content.size());
        } else {
            write_elements(sink, content);
        }
    }

private:
    template <class Source>
    static void read_elements(Container& target, const Source& source) {
        auto elements = source.elements();
        if constexpr (detail::require_default<T>()) {
            if constexpr (!std::is_default_constructible_v<T>) {
                target.clear();
                while (elements.next()) {
                    Made<T> element;
                    if (elements.read(element)) {
                        target.push_back(std::move(*element.object));
                    }
                }
            } else if constexpr (Source::known_lengths) {
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

    static constexpr bool is_vector =
        std::is_same_v<Container, std::vector<T, typename Container::allocator_type>>;

    template <class Sink>
    static void write_elements(Sink& sink, const Container& content) {
        const Start start = detail::start_of_new<T>();
        typename Sink::Elements elements(sink, content.size());
        for (const T& element : content) {
            auto&& sink_of_element = elements.next();
            Converter<T>::template write<Sink>(sink_of_element, element, start);
        }
        elements.end();
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

    template <class Sink>
    static void write(Sink& sink, const std::vector<bool, Allocator>& content, const Start&) {
        typename Sink::Elements elements(sink, content.size());
        for (const bool element : content) {
            elements.next().put(element);
        }
        elements.end();
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

    template <class Sink>
    static void write(Sink& sink, const std::array<T, Length>& content, const Start& start) {
        typename Sink::Elements elements(sink, Length);
        for (std::size_t i = 0; i < Length; ++i) {
            auto&& sink_of_element = elements.next();
            if constexpr (detail::asks_for_start<T>()) {
                const Start start_of_element = detail::element_of<std::array<T, Length>>(start, i);
                Converter<T>::template write<Sink>(sink_of_element, content[i], start_of_element);
            } else {
                Converter<T>::template write<Sink>(sink_of_element, content[i], start);
            }
        }
        elements.end();
    }
};

/// A set, or a multiset, which may have an element twice.
template <class Set, bool may_repeat>
struct SetConverter : SequenceConverter<Set> {
    using T = typename Set::value_type;

    template <class... From>
    static void read(Set& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto elements = source.elements();
        target.clear();
        if constexpr (detail::require_default<T>()) {
            while (elements.next()) {
                Made<T> element;
                if (elements.read(element)) {
                    const std::size_t size = target.size();
                    target.insert(target.end(), std::move(*element.object));
                    if (!may_repeat && target.size() == size) {
                        elements.report("the set has this element already");
                    }
                }
            }
        }
    }
};

template <class T, class Compare, class Allocator>
struct Converter<std::set<T, Compare, Allocator>, Category::other>
    : SetConverter<std::set<T, Compare, Allocator>, false> {};

template <class T, class Compare, class Allocator>
struct Converter<std::multiset<T, Compare, Allocator>, Category::other>
    : SetConverter<std::multiset<T, Compare, Allocator>, true> {};

template <class T, class Hash, class Equal, class Allocator>
struct Converter<std::unordered_set<T, Hash, Equal, Allocator>, Category::other>
    : SetConverter<std::unordered_set<T, Hash, Equal, Allocator>, false> {};

template <class T, class Hash, class Equal, class Allocator>
struct Converter<std::unordered_multiset<T, Hash, Equal, Allocator>, Category::other>
    : SetConverter<std::unordered_multiset<T, Hash, Equal, Allocator>, true> {};

/// A map by std::string.
template <class Map, MapOrder order>
struct MapConverter {
    using T = typename Map::mapped_type;

    template <class... From>
    static void read(Map& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto members = source.members();
        target.clear();
        if constexpr (detail::require_default<T>()) {
            while (members.next()) {
                if constexpr (std::is_default_constructible_v<T>) {
                    const std::size_t size = target.size();
                    const auto added = target.try_emplace(target.end(), members.name());
                    if (target.size() == size) {
                        members.report("the map has this name already");
                    } else {
                        members.read(added->second);
                    }
                } else if (target.find(members.name()) != target.end()) {
                    members.report("the map has this name already");
                } else {
                    const std::string name = members.name();
                    Made<T> element;
                    if (members.read(element)) {
                        target.emplace(name, std::move(*element.object));
                    }
                }
            }
        }
    }

    template <class Sink>
    static void write(Sink& sink, const Map& content, const Start&) {
        if constexpr (std::is_same_v<Sink, TextSink>) {
            if (sink.sorts(order)) {
                write_sorted(sink, content);
                return;
            }
        }
        const Start start = detail::start_of_new<T>();
        typename Sink::Members members(sink);
        for (const auto& [name, element] : content) {
            write_member(sink, members, name, element, start);
        }
        members.end();
    }

private:
    static void write_sorted(TextSink& sink, const Map& content) {
        std::vector<NamedPart> parts;
        parts.reserve(content.size());
        for (const auto& [name, element] : content) {
            parts.push_back({name, std::addressof(element)});
        }
        sink.sort_names(parts.data(), parts.size());
        const Start start = detail::start_of_new<T>();
        TextSink::Members members(sink);
        for (const auto& [name, part] : parts) {
            write_member(sink, members, name, *static_cast<const T*>(part), start);
        }
        members.end();
    }

    template <class Sink>
    static void write_member(Sink&, typename Sink::Members& members, std::string_view name,
                             const T& element, const Start& start) {
        if constexpr (std::is_same_v<T, Value>) {
            if (detail::is_undefined(element)) {
                return;
            }
        }
        auto&& sink_of_member = members.next(name);
        Converter<T>::template write<Sink>(sink_of_member, element, start);
    }
};

template <class T, class Compare, class Allocator>
struct Converter<std::map<std::string, T, Compare, Allocator>, Category::other>
    : MapConverter<std::map<std::string, T, Compare, Allocator>,
                   std::is_same_v<Compare, std::less<std::string>> ||
                           std::is_same_v<Compare, std::less<>>
                       ? MapOrder::by_bytes
                       : MapOrder::own> {};

template <class T, class Hash, class Equal, class Allocator>
struct Converter<std::unordered_map<std::string, T, Hash, Equal, Allocator>, Category::other>
    : MapConverter<std::unordered_map<std::string, T, Hash, Equal, Allocator>, MapOrder::none> {};

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

    template <class Sink>
    static void write(Sink& sink, const Tuple& content, const Start& start) {
        typename Sink::Elements elements(sink, sizeof...(Types));
        write_elements<Sink>(elements, content, start, std::index_sequence_for<Types...>());
        elements.end();
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

    template <class Sink, std::size_t... I>
    static void write_elements(typename Sink::Elements& elements, const Tuple& content,
                               const Start& start, std::index_sequence<I...>) {
        (write_element<Sink, I, Types>(elements, std::get<I>(content), start), ...);
    }

    template <class Sink, std::size_t I, class Type>
    static void write_element(typename Sink::Elements& elements, const Type& content,
                              const Start& start) {
        auto&& sink = elements.next();
        if constexpr (detail::asks_for_start<Type>()) {
            Converter<Type>::template write<Sink>(sink, content,
                                                  detail::element_of<Tuple, I>(start));
        } else {
            Converter<Type>::template write<Sink>(sink, content, start);
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

template <class T>
AnyObject any_object(const T& object) noexcept {
    return {std::addressof(object), [](TextSink& sink, const void* address) {
                Converter<T>::write(sink, *static_cast<const T*>(address),
                                    detail::start_of_new<T>());
            }};
}

template <class T>
void TextSink::put_tagged(std::string_view member, std::string_view tag, const T& object) {
    put_tagged_object(member, tag, detail::any_object(object));
}

} // namespace foundation::json::detail

#include <foundation/json/detail/more_converters.hpp>

#endif
/// @endcond
