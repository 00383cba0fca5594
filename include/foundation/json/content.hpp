/// @file
/// What a Value holds, by the vocabulary of std::variant. Not part of json.hpp: include it where
/// values are read.
///
///     if (kind_of(v) == Kind::object) ...                // one of ten kinds
///     const std::string& name = get<std::string>(v["name"]); // the content itself, no copy
///     int port = number<int>(v["port"]);                 // exact: throws unless whole and in
///     range if (const bool* flag = get_if<bool>(&v["on"])) ... // null for every other kind for
///     (const Value& element : get<Array>(v["list"])) ... for (auto& [key, value] : get<Object>(v))
///     ... v["id"] = integer(identifier);                     // an int64 or uint64, no digit lost
///     visit([](const auto& content) { ... }, v);         // calls it with whatever is there
///
/// The rest is what the standard containers offer, and moving whole containers in copies nothing:
///
///     get<Object>(v).erase("name");
///     v["list"] = Array();
///     get<Array>(v["list"]) = std::move(elements);
///
/// References and pointers refer into the value. They live as those of std::string, std::vector and
/// std::map do: until the container moves or drops the element, and until the value is assigned,
/// swapped with another kind, or destroyed. Where the result would refer into a temporary, the call
/// does not compile: give the value a name first.
///
/// A type that no Value holds, as in get<int>(v), does not compile either; the compiler's message
/// says what to write instead.
#ifndef FOUNDATION_JSON_CONTENT_HPP
#define FOUNDATION_JSON_CONTENT_HPP

#include <foundation/json/value.hpp>

#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {

using Array = std::vector<Value>;            ///< what a Value of the kind array holds
using Object = std::map<std::string, Value>; ///< what a Value of the kind object holds

/// The ten kinds, in the order in which values of different kinds are ordered: traits<T>::order.
enum class Kind {
    undefined, ///< Undefined
    null,      ///< Null
    boolean,   ///< bool
    number,    ///< double, the number kind of JSON; what int becomes
    string,    ///< std::string
    array,     ///< Array
    object,    ///< Object
    float32,   ///< float
    int64,     ///< long long
    uint64,    ///< unsigned long long
};

namespace detail {

/// A content type as it is within a value: const if the value is.
template <class AnyValue, class T>
using ContentOf = std::conditional_t<std::is_const_v<AnyValue>, const T, T>;

/// The types of content, one for each kind.
template <class... Types>
struct ContentTypes {
    template <class T>
    static constexpr bool contain = (std::is_same_v<T, Types> || ...);

    template <class Callable, class AnyValue>
    static constexpr bool
        all_taken_by = (std::is_invocable_v<Callable, ContentOf<AnyValue, Types>&> && ...);

    template <class Result, class Callable, class AnyValue>
    static constexpr bool all_give =
        (std::is_same_v<Result, std::invoke_result_t<Callable, ContentOf<AnyValue, Types>&>> &&
         ...);
};

using Contents = ContentTypes<Undefined, Null, bool, double, std::string, Array, Object, float,
                              long long, unsigned long long>;

/// Gives the address of content of one type, null for any other.
template <class Content>
struct AddressOf {
    using result_type = Content*;

    Content* operator()(Content& content) const noexcept { return &content; }

    template <class Other>
    Content* operator()(Other&) const noexcept {
        return nullptr;
    }
};

/// The way to a value's variant.
struct ValueAccess {
    using Variant = Value::Variant;

    static const Variant& variant(const Value& value) noexcept { return value.variant_; }
    static Variant& variant(Value& value) noexcept { return value.variant_; }

    /// Only the library's own sources have a definition.
    static const Value& undefined() noexcept;

    /// The content of a value that is known to hold that type.
    ///
    /// Always inlined: where the kind is known, the variant's dispatch folds to the address of its
    /// storage, but a compiler that looks at its size first would not try.
    template <class T, class AnyValue>
    [[gnu::always_inline, gnu::flatten]] static ContentOf<AnyValue, T>&
    content(AnyValue& value) noexcept {
        AddressOf<ContentOf<AnyValue, T>> address;
        return *variant(value).apply_visitor(address);
    }
};

/// @throws std::runtime_error "invalid conversion: <source> to <target>"
[[noreturn, gnu::cold, gnu::noinline]] inline void throw_invalid_conversion(const char* source,
                                                                            const char* target) {
    throw std::runtime_error(std::string("invalid conversion: ") + source + " to " + target);
}

/// Whether values hold content of type T; if they do not, says what to write instead.
template <class T>
constexpr bool require_content() {
    constexpr bool plain = std::is_same_v<T, std::remove_cv_t<std::remove_reference_t<T>>>;
    constexpr bool number = std::is_arithmetic_v<T>;
    constexpr bool text = std::is_constructible_v<std::string, T>;
    constexpr bool found = Contents::contain<T>;
    static_assert(plain, "write the type without const, volatile and &: the result is const if "
                         "the value is");
    static_assert(found || !plain || !number,
                  "no Value holds this type of number: write number<T>(value), which converts, as "
                  "in number<int>(value)");
    static_assert(found || !plain || !text,
                  "a Value holds text as std::string: write get<std::string>(value)");
    static_assert(found || !plain || number || text,
                  "no Value holds this type: write Undefined, Null, bool, double, std::string, "
                  "Array, Object, float, long long or unsigned long long");
    return found;
}

} // namespace detail

/// The kind of a value. Constant time.
inline Kind kind_of(const Value& value) noexcept {
    return static_cast<Kind>(detail::ValueAccess::variant(value).which());
}

/// What messages call a kind, as traits<T>::name: "JSON array" and so on.
inline const char* name_of(Kind kind) noexcept {
    switch (kind) {
    case Kind::undefined:
        return traits<Undefined>::name;
    case Kind::null:
        return traits<Null>::name;
    case Kind::boolean:
        return traits<bool>::name;
    case Kind::number:
        return traits<double>::name;
    case Kind::string:
        return traits<std::string>::name;
    case Kind::array:
        return traits<Array>::name;
    case Kind::object:
        return traits<Object>::name;
    case Kind::float32:
        return traits<float>::name;
    case Kind::int64:
        return traits<long long>::name;
    case Kind::uint64:
        return traits<unsigned long long>::name;
    }
    return "no kind"; // a number that is no enumerator
}

/// @name Content of one type
/// T is what a Value can hold: Undefined, Null, bool, double, std::string, Array, Object, float,
/// long long or unsigned long long. Constant time; nothing is copied.
/// @{

/// Whether a value holds content of type T.
template <class T>
bool holds(const Value& value) noexcept {
    if constexpr (detail::require_content<T>()) {
        return detail::ValueAccess::variant(value).which() == traits<T>::order;
    } else {
        return false;
    }
}

namespace detail {

template <class T, class AnyValue>
ContentOf<AnyValue, T>* content_if(AnyValue* value) noexcept {
    if constexpr (require_content<T>()) {
        if (value != nullptr && holds<T>(*value)) {
            return &ValueAccess::content<T>(*value);
        }
    }
    return nullptr;
}

template <class T, class AnyValue>
ContentOf<AnyValue, T>& content_or_throw(AnyValue& value) {
    if constexpr (require_content<T>()) {
        if (!holds<T>(value)) {
            throw_invalid_conversion(name_of(kind_of(value)), traits<T>::name);
        }
        return ValueAccess::content<T>(value);
    }
}

} // namespace detail

/// The content of type T, to be read or changed.
/// @param value  may be null
/// @return null if the value holds another type, or value is null
template <class T>
T* get_if(Value* value) noexcept {
    return detail::content_if<T>(value);
}

/// The same, to be read.
template <class T>
const T* get_if(const Value* value) noexcept {
    return detail::content_if<T>(value);
}

/// The content of type T, to be read or changed.
/// @throws std::runtime_error if the value holds another type: "invalid conversion: <its kind> to
///         <the kind of T>", such as "invalid conversion: JSON number to JSON string"
template <class T>
T& get(Value& value) {
    return detail::content_or_throw<T>(value);
}

/// The same, to be read.
template <class T>
const T& get(const Value& value) {
    return detail::content_or_throw<T>(value);
}

/// Deleted: the result would refer into a temporary. Give the value a name first.
template <class T>
const T& get(const Value&&) = delete;
/// @}

namespace detail {

/// Whether a callable takes the content of every kind; if it does not, says which is missing.
template <class Callable, class AnyValue>
constexpr bool require_every_kind() {
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, Undefined>&>,
                  "visit: the callable does not take Undefined");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, Null>&>,
                  "visit: the callable does not take Null");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, bool>&>,
                  "visit: the callable does not take bool");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, double>&>,
                  "visit: the callable does not take double");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, std::string>&>,
                  "visit: the callable does not take std::string");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, Array>&>,
                  "visit: the callable does not take Array");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, Object>&>,
                  "visit: the callable does not take Object");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, float>&>,
                  "visit: the callable does not take float");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, long long>&>,
                  "visit: the callable does not take long long");
    static_assert(std::is_invocable_v<Callable, ContentOf<AnyValue, unsigned long long>&>,
                  "visit: the callable does not take unsigned long long");
    return Contents::all_taken_by<Callable, AnyValue>;
}

/// Whether a callable that takes every kind has one type of result.
template <class Callable, class AnyValue>
constexpr bool require_one_result() {
    using Result = std::invoke_result_t<Callable, ContentOf<AnyValue, Undefined>&>;
    constexpr bool one = Contents::all_give<Result, Callable, AnyValue>;
    static_assert(one, "visit: the callable returns different types for different kinds: give all "
                       "of them the same one, as in [](const auto&) -> std::string");
    return one;
}

/// A callable as the variant wants it.
template <class Callable, class Result>
struct Call {
    using result_type = Result;

    template <class Content>
    Result operator()(Content& content) const {
        return std::forward<Callable>(callable)(content);
    }

    Callable&& callable;
};

template <class Callable, class AnyValue>
decltype(auto) visit_content(Callable&& callable, AnyValue& value) {
    if constexpr (require_every_kind<Callable, AnyValue>()) {
        if constexpr (require_one_result<Callable, AnyValue>()) {
            using Result = std::invoke_result_t<Callable, ContentOf<AnyValue, Undefined>&>;
            Call<Callable, Result> call{std::forward<Callable>(callable)};
            return ValueAccess::variant(value).apply_visitor(call);
        }
    }
}

} // namespace detail

/// @name Content of any type
/// @{

/// Calls a callable with the content of a value, by reference.
/// @param callable  takes each type of content, and returns the same type for all; a generic lambda
///                  or a class with overloads
/// @return what it returns
/// @throws what it throws
/// @complexity constant, beside the call
template <class Callable>
decltype(auto) visit(Callable&& callable, Value& value) {
    return detail::visit_content(std::forward<Callable>(callable), value);
}

/// The same for a value that is only read.
template <class Callable>
decltype(auto) visit(Callable&& callable, const Value& value) {
    return detail::visit_content(std::forward<Callable>(callable), value);
}

/// The same for a temporary, where the result is not a reference and so does not refer into it.
template <class Callable>
decltype(auto) visit(Callable&& callable, const Value&& value) {
    using Result = decltype(detail::visit_content(std::forward<Callable>(callable), value));
    static_assert(!std::is_reference_v<Result>,
                  "visit: the result may refer into a temporary: give the value a name first");
    return detail::visit_content(std::forward<Callable>(callable), value);
}
/// @}

} // namespace foundation::json

#endif
