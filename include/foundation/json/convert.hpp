/// @file
/// Conversion of values into your own types and back, by tables of members. Not part of json.hpp.
///
///     struct Server {
///         std::string host;
///         int port = 8080;
///         std::vector<std::string> tags;
///     };
///
///     template <>
///     inline constexpr auto foundation::json::members<Server> = std::tuple(
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
/// array and set; std::map and unordered_map by std::string; std::optional, pair and tuple;
/// enumerations by a table of `enumerators`; and all of these within each other. What is read into
/// must have a default constructor. Tables stand outside of other namespaces, before their use.
///
/// Conversion is strict: a wrong kind, a fraction for an integer, a number out of range and a
/// length that does not fit are errors. Each error names its place as a JSON Pointer, as in "at
/// /tags/2: invalid conversion: JSON number to JSON string".
#ifndef FOUNDATION_JSON_CONVERT_HPP
#define FOUNDATION_JSON_CONVERT_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/quoted.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/members.hpp>
#include <foundation/json/pointer.hpp>

#include <array>
#include <cstddef>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace foundation::json {

/// @cond
namespace detail {

inline std::string describe_place(std::string_view pointer) {
    if (pointer.empty()) {
        return "at the root: ";
    }
    std::string result = "at ";
    append_escaped(result, pointer);
    return result += ": ";
}

} // namespace detail
/// @endcond

/// The exception of a conversion. what() begins with the place, "at /servers/3/port: " or "at the
/// root: "; quotes, backslashes and control bytes in it are escaped as in a JSON string.
///
/// You can throw it from checks of your own, too.
class FOUNDATION_JSON_EXPORT ConversionError : public std::runtime_error {
public:
    /// @param pointer  the place, as a JSON Pointer (RFC 6901)
    /// @param problem  what what() says after the place
    /// @throws std::bad_alloc if memory runs out
    ConversionError(std::string pointer, const std::string& problem)
        : std::runtime_error(detail::describe_place(pointer) + problem),
          pointer_(new std::string(std::move(pointer))) {}

    ConversionError(const ConversionError&) = default;            ///< never throws
    ConversionError& operator=(const ConversionError&) = default; ///< never throws
    ~ConversionError() override = default;

    /// The place as a JSON Pointer, not escaped: from the value that was converted or, if a pointer
    /// was given, from its root. The empty text is the root.
    const std::string& pointer() const noexcept { return *pointer_; }

private:
    std::shared_ptr<const std::string> pointer_; // shared, so that copies cannot throw
};

/// Further settings of to().
struct ConvertOptions {
    /// What becomes of members that a type's table does not name, at every depth.
    enum class UnknownMembers {
        ignore, ///< they are passed over
        error,  ///< they are errors that list the known ones
    };
    UnknownMembers unknown_members = UnknownMembers::ignore; ///< passes them over by default
};

/// @cond
namespace detail {

// ---- Places --------------------------------------------------------------------------------

/// Where a conversion is, as a list from the innermost place outwards on the stack: it becomes a
/// JSON Pointer only if there is an error to report.
class Place {
public:
    explicit Place(std::string_view pointer) noexcept : outer_(nullptr), name_(pointer) {}
    Place(const Place& outer, std::string_view name) noexcept : outer_(&outer), name_(name) {}
    Place(const Place& outer, std::size_t index) noexcept
        : outer_(&outer), index_(index), is_index_(true) {}
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    std::string pointer() const {
        std::string result;
        append_to(result);
        return result;
    }

private:
    void append_to(std::string& result) const {
        if (outer_ == nullptr) {
            result += name_;
            return;
        }
        outer_->append_to(result);
        result += '/';
        if (is_index_) {
            result += std::to_string(index_);
            return;
        }
        for (const char c : name_) {
            if (c == '~') {
                result += "~0";
            } else if (c == '/') {
                result += "~1";
            } else {
                result += c;
            }
        }
    }

    const Place* outer_;
    std::string_view name_;
    std::size_t index_ = 0;
    bool is_index_ = false;
};

[[noreturn, gnu::cold, gnu::noinline]] inline void fail(const Place& place,
                                                        const std::string& problem) {
    throw ConversionError(place.pointer(), problem);
}

[[noreturn, gnu::cold, gnu::noinline]] inline void
fail_conversion(const Place& place, const Value& value, const char* target) {
    fail(place, std::string("invalid conversion: ") + name_of(kind_of(value)) + " to " + target);
}

/// Gives the exception under way a place, unless it is that memory has run out.
[[noreturn, gnu::cold, gnu::noinline]] inline void fail_as_caught(const Place& place) {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        fail(place, error.what());
    }
}

/// `head` and the quoted texts, if there are any: `; known are "a", "b"`.
inline std::string list_of(const char* head, const std::string_view* texts, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += i == 0 ? head : ", ";
        result += detail::quoted(texts[i]);
    }
    return result;
}

/// The content of type T, or an error at the place.
template <class T>
const T& content_at(const Value& value, const Place& place) {
    const T* const content = get_if<T>(&value);
    if (content == nullptr) {
        fail_conversion(place, value, traits<T>::name);
    }
    return *content;
}

inline void check_length(const Array& elements, std::size_t length, const Place& place) {
    if (elements.size() != length) {
        fail(place, "the array has length " + std::to_string(elements.size()) + ", not " +
                        std::to_string(length));
    }
}

inline bool is_nothing(const Value& value) {
    return kind_of(value) == Kind::null || kind_of(value) == Kind::undefined;
}

// ---- Objects -------------------------------------------------------------------------------

/// What one call of to() goes by.
struct Session {
    const ConvertOptions& options;
    std::string key; // of the lookup under way, kept for its memory
};

/// Finds the members of an object that a table names.
///
/// All are found before any is read: the object has them in the order of their names, but they are
/// read in that of the table.
class MemberFinder {
public:
    MemberFinder(const MemberNames& table, const Object& object) noexcept
        : table_(table), object_(object) {}

    /// Stores the address of each member that is there and not Undefined, by its index in the
    /// table.
    void find(const Value** found, const Place& place, Session& session) const {
        // One lookup takes about as long as a few steps from one member to the next.
        const std::size_t known = object_.size() / 4 < table_.count ? find_in_order(found)
                                                                    : find_each(found, session.key);
        if (known != object_.size() &&
            session.options.unknown_members == ConvertOptions::UnknownMembers::error) {
            refuse_unknown(place);
        }
        for (std::size_t i = 0; i < table_.count; ++i) {
            if (table_.required[i] && found[i] == nullptr) {
                fail(place,
                     "the required member " + detail::quoted(table_.names[i]) + " is missing");
            }
        }
    }

private:
    /// @return how many of the object's members the table names
    std::size_t find_in_order(const Value** found) const {
        std::size_t known = 0;
        auto member = object_.begin();
        for (std::size_t i = 0; i < table_.count && member != object_.end(); ++i) {
            const std::size_t index = table_.sorted[i];
            int order = 0;
            while ((order = member->first.compare(table_.names[index])) < 0 &&
                   ++member != object_.end()) {
            }
            if (order == 0) {
                take(member->second, found[index]);
                ++member;
                ++known;
            }
        }
        return known;
    }

    std::size_t find_each(const Value** found, std::string& key) const {
        std::size_t known = 0;
        for (std::size_t i = 0; i < table_.count; ++i) {
            key.assign(table_.names[i]);
            const auto member = object_.find(key);
            if (member != object_.end()) {
                take(member->second, found[i]);
                ++known;
            }
        }
        return known;
    }

    static void take(const Value& value, const Value*& found) {
        if (kind_of(value) != Kind::undefined) {
            found = &value;
        }
    }

    [[noreturn, gnu::cold, gnu::noinline]] void refuse_unknown(const Place& place) const {
        auto member = object_.begin();
        while (is_known(member->first)) {
            ++member;
        }
        fail(Place(place, member->first), "the member " + detail::quoted(member->first) +
                                              " is unknown" +
                                              list_of("; known are ", table_.names, table_.count));
    }

    bool is_known(std::string_view name) const {
        for (std::size_t i = 0; i < table_.count; ++i) {
            if (table_.names[i] == name) {
                return true;
            }
        }
        return false;
    }

    const MemberNames& table_;
    const Object& object_;
};

/// Makes values arrays and objects, and gives objects members.
class Writer {
public:
    Array& make_array(Value& target) {
        if (!holds<Array>(array_)) {
            array_ = Value(Array());
        }
        target = array_;
        return ValueAccess::content<Array>(target);
    }

    Object& make_object(Value& target) {
        if (!holds<Object>(object_)) {
            object_ = Value(Object());
        }
        target = object_;
        return ValueAccess::content<Object>(target);
    }

    /// The new member of that name; mostly they come in order.
    static Value& add_member(Object& object, std::string_view name) {
        return object
            .emplace_hint(object.end(), std::piecewise_construct, std::forward_as_tuple(name),
                          std::tuple<>())
            ->second;
    }

private:
    // A copy of an empty container costs one allocation; moved into a value, it would cost two.
    Value array_;
    Value object_;
};

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
            std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && !is_character<T>();
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
    static_assert(is_const || !is_character<T>(),
                  "a character cannot be converted: use std::string for a text, signed char or "
                  "unsigned char for a number");
    static_assert(is_const || !std::is_enum_v<T>,
                  "to convert this enumeration, specialise foundation::json::enumerators for it: "
                  "an array of pairs of enumerator and name");
    static_assert(is_const || !is_map<T>,
                  "a map cannot be converted unless its keys are std::string, since they become "
                  "names of members");
    static_assert(
        refers || is_const || is_character<T>() || std::is_enum_v<T> || is_map<T>,
        "to convert this type, specialise foundation::json::members for it: a "
        "std::tuple of required(name, member) and defaulted(name, member), or use another "
        "type, such as Value, in its place");
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
/// read() changes what is there: the members of a class keep what they held where nothing is read
/// into them, and containers are emptied first. write() is given a value that is Undefined.
template <class T, Category = category_of<T>()>
struct Converter : Refused {
    static_assert(!refuse_type<T>());
    static void read(T&, const Value&, const Place&, Session&) {}
    static void write(Value&, const T&, const Place&, Writer&) {}
};

/// What a Value holds as it is.
template <class T>
struct PlainConverter {
    static void read(T& target, const Value& value, const Place& place, Session&) {
        target = content_at<T>(value, place);
    }
    static void write(Value& target, const T& content, const Place&, Writer&) {
        target = Value(content);
    }
};

template <>
struct Converter<bool> {
    static void read(bool& target, const Value& value, const Place& place, Session&) {
        target = content_at<bool>(value, place);
    }
    static void write(Value& target, bool content, const Place&, Writer&) {
        target = Value(content);
    }
};

template <>
struct Converter<std::string> : PlainConverter<std::string> {};

template <>
struct Converter<Array> : PlainConverter<Array> {};

template <>
struct Converter<Object> : PlainConverter<Object> {};

template <>
struct Converter<Value> {
    static void read(Value& target, const Value& value, const Place&, Session&) { target = value; }
    static void write(Value& target, const Value& content, const Place&, Writer&) {
        target = content;
    }
};

template <class T>
struct Converter<T, Category::number> {

    static void read(T& target, const Value& value, const Place& place, Session&) {
        try {
            target = number<T>(value);
        } catch (...) {
            fail_as_caught(place);
        }
    }

    static void write(Value& target, const T& content, const Place&, Writer&) {
        if constexpr (std::is_floating_point_v<T>) {
            // Only a float stays what it is.
            using Held = std::conditional_t<std::is_same_v<T, float>, float, double>;
            target = Value(static_cast<Held>(content));
        } else if constexpr (std::is_same_v<decltype(+content), int>) {
            target = Value(int{content});
        } else {
            target = integer(content);
        }
    }
};

template <class E>
struct Converter<E, Category::enumeration> {

    static void read(E& target, const Value& value, const Place& place, Session&) {
        if constexpr (require_enumerators<E>()) {
            const std::string_view name = content_at<std::string>(value, place);
            for (std::size_t i = 0; i < Table::count; ++i) {
                if (Table::texts[i] == name) {
                    target = enumerators<E>[i].first;
                    return;
                }
            }
            fail(place, "the enumerator " + detail::quoted(name) + " is unknown" +
                            list_of("; known are ", Table::texts.data(), Table::count));
        }
    }

    static void write(Value& target, const E& content, const Place& place, Writer&) {
        if constexpr (require_enumerators<E>()) {
            for (const auto& [enumerator, name] : enumerators<E>) {
                if (enumerator == content) {
                    target = Value(name);
                    return;
                }
            }
            fail(place, "the enumerator " +
                            std::to_string(static_cast<std::underlying_type_t<E>>(content)) +
                            " has no name" +
                            list_of("; named are ", Table::texts.data(), Table::count));
        }
    }

private:
    using Table = EnumeratorTableOf<E>;
};

template <class T>
struct IsOptional : std::false_type {};

template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class T>
struct Converter<T, Category::object> {
    static void read(T& target, const Value& value, const Place& place, Session& session) {
        if constexpr (require_members<T>()) {
            const auto& object = content_at<Object>(value, place);
            const Value* found[Names<T>::count + 1] = {}; // there are no arrays of length 0
            MemberFinder(Names<T>::view, object).find(found, place, session);
            read_members(target, found, place, session,
                         std::make_index_sequence<Names<T>::count>());
        }
    }

    static void write(Value& target, const T& content, const Place& place, Writer& writer) {
        if constexpr (require_members<T>()) {
            write_members(writer.make_object(target), content, place, writer,
                          std::make_index_sequence<Names<T>::count>());
        }
    }

private:
    template <std::size_t... I>
    static void read_members(T& target, const Value* const* found, const Place& place,
                             Session& session, std::index_sequence<I...>) {
        (read_member(target, std::get<I>(members<T>), found[I], place, session), ...);
    }

    template <class Class, class Type>
    static void read_member(T& target, const Member<Class, Type>& member, const Value* found,
                            const Place& place, Session& session) {
        static_assert(!std::is_const_v<Type>, "a member that is const cannot be read into");
        if constexpr (!std::is_const_v<Type>) {
            if (found != nullptr) {
                Converter<Type>::read(target.*member.pointer, *found, Place(place, member.name),
                                      session);
            }
        }
    }

    /// In the order of the names, in which the members of an object are added the fastest.
    template <std::size_t... I>
    static void write_members(Object& target, const T& content, const Place& place, Writer& writer,
                              std::index_sequence<I...>) {
        (write_member(target, content, std::get<Names<T>::sorted[I]>(members<T>), place, writer),
         ...);
    }

    template <class Class, class Type>
    static void write_member(Object& target, const T& content, const Member<Class, Type>& member,
                             const Place& place, Writer& writer) {
        using Plain = std::remove_cv_t<Type>;
        if (!may_leave_out(content, member)) {
            Converter<Plain>::write(Writer::add_member(target, member.name),
                                    content.*member.pointer, Place(place, member.name), writer);
        }
    }

    /// Whether what is written without this member reads back the same.
    template <class Class, class Type>
    static bool may_leave_out(const T& content, const Member<Class, Type>& member) {
        using Plain = std::remove_cv_t<Type>;
        if constexpr (std::is_same_v<Plain, Value>) {
            return kind_of(content.*member.pointer) == Kind::undefined;
        } else if constexpr (IsOptional<Plain>::value) {
            if (member.is_required || content.*member.pointer) {
                return false;
            }
            if constexpr (std::is_default_constructible_v<T>) {
                return !(T{}.*member.pointer);
            } else {
                return true;
            }
        } else {
            return false;
        }
    }
};

template <class T>
struct Converter<std::optional<T>, Category::other> {

    static void read(std::optional<T>& target, const Value& value, const Place& place,
                     Session& session) {
        if constexpr (require_default<T>()) {
            if (is_nothing(value)) {
                target.reset();
            } else {
                Converter<T>::read(target.emplace(), value, place, session);
            }
        }
    }

    static void write(Value& target, const std::optional<T>& content, const Place& place,
                      Writer& writer) {
        if (content) {
            Converter<T>::write(target, *content, place, writer);
        } else {
            target = Value(Null());
        }
    }
};

/// Writes the elements of any container, in its order.
template <class T, class Container>
void write_elements(Value& target, const Container& content, const Place& place, Writer& writer) {
    Array& elements = writer.make_array(target);
    elements = Array(content.size());
    std::size_t i = 0;
    for (const T& element : content) {
        Converter<T>::write(elements[i], element, Place(place, i), writer);
        ++i;
    }
}

/// A container that is given its size before the elements are read into it.
template <class Container>
struct SequenceConverter {
    using T = typename Container::value_type;

    static void read(Container& target, const Value& value, const Place& place, Session& session) {
        const auto& elements = content_at<Array>(value, place);
        if constexpr (require_default<T>()) {
            target = Container(elements.size(), target.get_allocator());
            read_elements(target, elements, place, session);
        }
    }

    static void read_elements(Container& target, const Array& elements, const Place& place,
                              Session& session) {
        std::size_t i = 0;
        for (T& element : target) {
            Converter<T>::read(element, elements[i], Place(place, i), session);
            ++i;
        }
    }

    static void write(Value& target, const Container& content, const Place& place, Writer& writer) {
        write_elements<T>(target, content, place, writer);
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

    static void read(std::vector<bool, Allocator>& target, const Value& value, const Place& place,
                     Session&) {
        const auto& elements = content_at<Array>(value, place);
        target.assign(elements.size(), false);
        for (std::size_t i = 0; i < elements.size(); ++i) {
            target[i] = content_at<bool>(elements[i], Place(place, i));
        }
    }

    static void write(Value& target, const std::vector<bool, Allocator>& content, const Place&,
                      Writer& writer) {
        writer.make_array(target).assign(content.begin(), content.end());
    }
};

template <class T, std::size_t Length>
struct Converter<std::array<T, Length>, Category::other> {

    static void read(std::array<T, Length>& target, const Value& value, const Place& place,
                     Session& session) {
        const auto& elements = content_at<Array>(value, place);
        check_length(elements, Length, place);
        SequenceConverter<std::array<T, Length>>::read_elements(target, elements, place, session);
    }

    static void write(Value& target, const std::array<T, Length>& content, const Place& place,
                      Writer& writer) {
        write_elements<T>(target, content, place, writer);
    }
};

template <class T, class Compare, class Allocator>
struct Converter<std::set<T, Compare, Allocator>, Category::other> {

    static void read(std::set<T, Compare, Allocator>& target, const Value& value,
                     const Place& place, Session& session) {
        const auto& elements = content_at<Array>(value, place);
        target.clear();
        if constexpr (require_default<T>()) {
            for (std::size_t i = 0; i < elements.size(); ++i) {
                const Place element_place(place, i);
                T element{};
                Converter<T>::read(element, elements[i], element_place, session);
                target.insert(target.end(), std::move(element));
                if (target.size() != i + 1) {
                    fail(element_place, "the set has this element already");
                }
            }
        }
    }

    static void write(Value& target, const std::set<T, Compare, Allocator>& content,
                      const Place& place, Writer& writer) {
        write_elements<T>(target, content, place, writer);
    }
};

/// A map by std::string.
template <class Map>
struct MapConverter {
    using T = typename Map::mapped_type;

    static void read(Map& target, const Value& value, const Place& place, Session& session) {
        const auto& object = content_at<Object>(value, place);
        target.clear();
        if constexpr (require_default<T>()) {
            for (const auto& [name, member] : object) {
                const Place member_place(place, name);
                const std::size_t size = target.size();
                const auto added = target.try_emplace(target.end(), name);
                if (target.size() == size) {
                    fail(member_place, "the map has this name already");
                }
                Converter<T>::read(added->second, member, member_place, session);
            }
        }
    }

    static void write(Value& target, const Map& content, const Place& place, Writer& writer) {
        Object& object = writer.make_object(target);
        for (const auto& [name, element] : content) {
            Converter<T>::write(Writer::add_member(object, name), element, Place(place, name),
                                writer);
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

    static void read(Tuple& target, const Value& value, const Place& place, Session& session) {
        const auto& elements = content_at<Array>(value, place);
        check_length(elements, sizeof...(Types), place);
        read_elements(target, elements, place, session, std::index_sequence_for<Types...>());
    }

    static void write(Value& target, const Tuple& content, const Place& place, Writer& writer) {
        Array& elements = writer.make_array(target);
        elements.resize(sizeof...(Types));
        write_elements(elements, content, place, writer, std::index_sequence_for<Types...>());
    }

private:
    template <std::size_t... I>
    static void read_elements(Tuple& target, const Array& elements, const Place& place,
                              Session& session, std::index_sequence<I...>) {
        (Converter<Types>::read(std::get<I>(target), elements[I], Place(place, I), session), ...);
    }

    template <std::size_t... I>
    static void write_elements(Array& elements, const Tuple& content, const Place& place,
                               Writer& writer, std::index_sequence<I...>) {
        (Converter<Types>::write(elements[I], std::get<I>(content), Place(place, I), writer), ...);
    }
};

template <class First, class Second>
struct Converter<std::pair<First, Second>, Category::other>
    : TupleConverter<std::pair<First, Second>, First, Second> {};

template <class... Types>
struct Converter<std::tuple<Types...>, Category::other>
    : TupleConverter<std::tuple<Types...>, Types...> {};

/// Converts a value that lies at that place.
template <class T>
T read_value(const Value& value, const Place& place, const ConvertOptions& options) {
    if constexpr (!std::is_base_of_v<Refused, Converter<T>>) {
        if constexpr (require_default<T>()) {
            T result{};
            Session session{options, {}};
            Converter<T>::read(result, value, place, session);
            return result;
        }
    }
}

// ---- JSON Pointers -------------------------------------------------------------------------

/// Throws if the last value on an incomplete way is of a kind that cannot have what comes next.
inline void check_end(const PathLookup& way) {
    const Kind kind = kind_of(*way.last);
    if (kind != Kind::object && !(kind == Kind::array && is_index(way.next))) {
        fail_conversion(Place(way.reached), *way.last, traits<Object>::name);
    }
}

/// The value that a JSON Pointer leads to. Null if it is missing; an error if what lies on the way
/// is of a wrong kind.
inline const Value* find_checked(const Value& root, std::string_view pointer) {
    const PathLookup way = follow(root, pointer);
    if (way.is_complete) {
        return way.last;
    }
    check_end(way);
    return nullptr;
}

/// The same; null also if there is Undefined or Null, there or on the way.
inline const Value* find_present(const Value& root, std::string_view pointer) {
    const PathLookup way = follow(root, pointer);
    if (is_nothing(*way.last)) {
        return nullptr;
    }
    if (way.is_complete) {
        return way.last;
    }
    check_end(way);
    return nullptr;
}

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
/// @throws ConversionError  the value does not fit: a wrong kind, a number out of range or with a
///                          fraction, a wrong length, a required member that is missing, a name
///                          that is unknown, an element that a set contains already
/// @throws std::bad_alloc   memory runs out
/// @complexity linear in the size of what is read, times the logarithm of the sizes of objects;
///             recursion as deep as the nesting of T.
template <class T>
T to(const Value& value, const ConvertOptions& options = {}) {
    return detail::read_value<T>(value, detail::Place(std::string_view()), options);
}

/// The value at a place within another, as a T. If there is none, a std::optional is empty, and
/// every other type is an error.
/// @param root     where the pointer begins, and also those in errors
/// @param pointer  a JSON Pointer, as for find()
/// @param options  what to accept
/// @throws ConversionError        as above; also if nothing is there, or if a value on the way has
///                                neither elements nor members
/// @throws std::invalid_argument  the text is no JSON Pointer
/// @throws std::bad_alloc         memory runs out
template <class T>
T to(const Value& root, std::string_view pointer, const ConvertOptions& options = {}) {
    const detail::Place place(pointer);
    const Value* const value = detail::find_checked(root, pointer);
    if (value == nullptr) {
        if constexpr (detail::IsOptional<T>::value) {
            return std::nullopt;
        }
        detail::fail(place, "there is no value");
    }
    return detail::read_value<T>(*value, place, options);
}

/// The value at a place within another, or a fallback if it, or a value on the way, is missing,
/// Undefined or Null. A value of a wrong kind still throws.
/// @param root      where the pointer begins
/// @param pointer   a JSON Pointer, as for find()
/// @param fallback  its type is that of the result; for a text, such as a literal, std::string
/// @throws as to()
template <class T>
detail::FallbackFor<T> to_or(const Value& root, std::string_view pointer, T fallback) {
    using Result = detail::FallbackFor<T>;
    const Value* const value = detail::find_present(root, pointer);
    if (value == nullptr) {
        return Result(std::move(fallback));
    }
    return detail::read_value<Result>(*value, detail::Place(pointer), {});
}

/// A value from an object of a convertible type.
///
/// An int, and any type that promotes to int, becomes a double, as in Value; larger integers become
/// int64 or uint64, a float stays a float, and a long double becomes the nearest double. Classes
/// and maps become objects; other containers, pairs and tuples become arrays. A std::optional
/// without a value becomes Null; as a defaulted() member it is left out, unless the class's default
/// constructor puts a value there. An Undefined Value becomes no member.
/// @throws ConversionError  an enumerator has no name
/// @throws std::bad_alloc   memory runs out
/// @complexity linear in the size of the object, times the logarithm of the sizes of objects made.
template <class T>
Value from(const T& object) {
    Value result;
    detail::Writer writer;
    detail::Converter<T>::write(result, object, detail::Place(std::string_view()), writer);
    return result;
}
/// @}

} // namespace foundation::json

#endif
