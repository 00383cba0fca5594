/// @file
/// Access to the content of a Value, with the vocabulary of std::variant. json.hpp does not include
/// this header.
///
///     Value v((Property("name") = "tea", Property("grams") = 250, Property("hot") = true));
///     std::cout << get<std::string>(v["name"]) << '\n'; // -> tea
///     std::cout << number<int>(v["grams"]) / 2 << '\n'; // -> 125
///     if (const bool* hot = get_if<bool>(&v["hot"])) {  // null for every other kind
///         std::cout << *hot << '\n';                    // -> 1
///     }
///     for (auto& [name, member] : get<Object>(v)) {
///         std::cout << name << ": " << name_of(kind_of(member)) << '\n';
///         // ->
///         // grams: JSON number
///         // hot: JSON boolean
///         // name: JSON string
///     }
///
/// Content can be changed in place, with all members of the standard containers:
///
///     get<Object>(v).erase("name");
///     v["id"] = integer(std::size_t{7}); // a uint64
///     v["list"] = Array();
///     get<Array>(v["list"]) = std::move(elements); // copies no element
///
/// References to content stay valid until the value is assigned, swapped or destroyed; references
/// into a container follow the rules of std::string, std::vector and std::map. The content of a
/// temporary comes by value. A type that no Value holds does not compile; the compiler's message
/// says what to use instead.
#ifndef FOUNDATION_JSON_CONTENT_HPP
#define FOUNDATION_JSON_CONTENT_HPP

#include <foundation/json/detail/value_access.hpp>
#include <foundation/json/number.hpp>
#include <foundation/json/value.hpp>

#include <map>
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

/// @cond
namespace detail {

/// Whether values hold content of type T; if they do not, says what to use instead.
template <class T>
constexpr bool require_content() {
    constexpr bool plain = std::is_same_v<T, std::remove_cv_t<std::remove_reference_t<T>>>;
    constexpr bool is_number = std::is_arithmetic_v<T>;
    constexpr bool is_text = std::is_constructible_v<std::string, T>;
    constexpr bool found = Contents::contains<T>;
    static_assert(plain, "write the type without const, volatile and &: the result is const if "
                         "the value is");
    static_assert(found || !plain || !is_number,
                  "no Value holds this type of number: write number<T>(value), which converts, as "
                  "in number<int>(value)");
    static_assert(found || !plain || !is_text,
                  "a Value holds text as std::string: write get<std::string>(value)");
    static_assert(found || !plain || is_number || is_text,
                  "no Value holds this type: write Undefined, Null, bool, double, std::string, "
                  "Array, Object, float, long long or unsigned long long");
    return found;
}

} // namespace detail
/// @endcond

/// The kind of a value. Constant time.
[[nodiscard]] inline Kind kind_of(const Value& value) noexcept {
    return static_cast<Kind>(detail::order_of(value));
}

/// The name of a kind in messages, as traits<T>::name: "JSON array" and so on.
[[nodiscard]] inline const char* name_of(Kind kind) noexcept {
    return detail::name_of_order(static_cast<int>(kind));
}

/// @name Content of one type
/// T is one of the types that a Value can hold: Undefined, Null, bool, double, std::string, Array,
/// Object, float, long long or unsigned long long. Constant time; nothing is copied.
/// @{

/// Whether a value holds content of type T.
template <class T>
[[nodiscard]] bool holds(const Value& value) noexcept {
    if constexpr (detail::require_content<T>()) {
        return detail::order_of(value) == traits<T>::order;
    } else {
        return false;
    }
}

/// @cond
namespace detail {

template <class T, class AnyValue>
ContentOf<AnyValue, T>* content_if(AnyValue* value) noexcept {
    if constexpr (detail::require_content<T>()) {
        if (value != nullptr && json::holds<T>(*value)) {
            return &ValueAccess::content<T>(*value);
        }
    }
    return nullptr;
}

template <class T, class AnyValue>
ContentOf<AnyValue, T>& content_or_throw(AnyValue& value) {
    if constexpr (detail::require_content<T>()) {
        if (!json::holds<T>(value)) {
            detail::throw_invalid_conversion(detail::order_of(value), traits<T>::name);
        }
        return ValueAccess::content<T>(value);
    } else {
        detail::refused();
    }
}

} // namespace detail
/// @endcond

/// The content of type T, to be read or changed.
/// @param value  may be null
/// @return null if the value holds another type, or value is null
template <class T>
[[nodiscard]] T* get_if(Value* value FOUNDATION_JSON_LIFETIME_BOUND) noexcept {
    return detail::content_if<T>(value);
}

/// The same, to be read.
template <class T>
[[nodiscard]] const T* get_if(const Value* value FOUNDATION_JSON_LIFETIME_BOUND) noexcept {
    return detail::content_if<T>(value);
}

/// The content of type T, to be read or changed.
/// @throws std::runtime_error if the value holds another type: "invalid conversion: <its kind> to
///         <the kind of T>", such as "invalid conversion: JSON number to JSON string"
template <class T>
T& get(Value& value FOUNDATION_JSON_LIFETIME_BOUND) {
    return detail::content_or_throw<T>(value);
}

/// The same, to be read.
template <class T>
[[nodiscard]] const T& get(const Value& value FOUNDATION_JSON_LIFETIME_BOUND) {
    return detail::content_or_throw<T>(value);
}

/// The content of a temporary, or of a value given as std::move(value): moved out of it, so that no
/// reference is left that could outlive it.
///
///     Object order = get<Object>(parse(text)); // moved out of the temporary
///
/// @return a value, not a reference
/// @throws std::runtime_error as above; then the value is unchanged
template <class T>
[[nodiscard]] T get(Value&& temporary) {
    if constexpr (detail::require_content<T>()) {
        return std::move(detail::content_or_throw<T>(temporary));
    } else {
        detail::refused();
    }
}

/// A copy of the content of a const temporary.
/// @throws std::runtime_error as above
/// @throws std::bad_alloc     memory runs out
template <class T>
[[nodiscard]] T get(const Value&& temporary) {
    if constexpr (detail::require_content<T>()) {
        return detail::content_or_throw<T>(temporary);
    } else {
        detail::refused();
    }
}
/// @}

/// @cond
namespace detail {

template <class Callable, class AnyValue, class... Types>
constexpr bool taken_by(TypeList<Types...>) {
    return (std::is_invocable_v<Callable, ContentOf<AnyValue, Types>&> && ...);
}

template <class Result, class Callable, class AnyValue, class... Types>
constexpr bool give(TypeList<Types...>) {
    return (std::is_same_v<Result, std::invoke_result_t<Callable, ContentOf<AnyValue, Types>&>> &&
            ...);
}

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
    return detail::taken_by<Callable, AnyValue>(Contents());
}

/// Whether a callable that takes every kind has one type of result.
template <class Callable, class AnyValue>
constexpr bool require_one_result() {
    using Result = std::invoke_result_t<Callable, ContentOf<AnyValue, Undefined>&>;
    constexpr bool one = detail::give<Result, Callable, AnyValue>(Contents());
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
    if constexpr (detail::require_every_kind<Callable, AnyValue>()) {
        if constexpr (detail::require_one_result<Callable, AnyValue>()) {
            using Result = std::invoke_result_t<Callable, ContentOf<AnyValue, Undefined>&>;
            Call<Callable, Result> call{std::forward<Callable>(callable)};
            return ValueAccess::variant(value).apply_visitor(call);
        }
    }
}

} // namespace detail
/// @endcond

/// @name Content of any type
/// @{

/// Calls a callable with a reference to the content of a value.
/// @param callable  takes each type of content, and returns the same type for all; a generic lambda
///                  or a class with overloads
/// @param value     its content may be changed by the call
/// @return what it returns
/// @throws what it throws
/// @complexity constant, plus the call
template <class Callable>
decltype(auto) visit(Callable&& callable, Value& value) {
    return detail::visit_content(std::forward<Callable>(callable), value);
}

/// The same for a const value.
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
