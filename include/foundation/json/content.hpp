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
/// Content can be changed in place, with everything that the standard containers offer:
///
///     get<Object>(v).erase("name");
///     v["id"] = integer(std::size_t{7}); // a uint64
///     v["list"] = Array();
///     get<Array>(v["list"]) = std::move(elements); // copies no element
///
/// References to content stay valid until the value is assigned, swapped or destroyed; references
/// into a container follow the rules of std::string, std::vector and std::map. Getting the content
/// of a temporary, or a type that no Value holds, does not compile; the compiler's message says
/// what to write instead.
#ifndef FOUNDATION_JSON_CONTENT_HPP
#define FOUNDATION_JSON_CONTENT_HPP

#include <foundation/json/value.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
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

/// @cond
namespace detail {

/// A content type as it is within a value: const if the value is.
template <class AnyValue, class T>
using ContentOf = std::conditional_t<std::is_const_v<AnyValue>, const T, T>;

/// A list of types.
template <class... Types>
struct TypeList {
    template <class T>
    static constexpr bool contains = (std::is_same_v<T, Types> || ...);

    template <class Callable, class AnyValue>
    static constexpr bool
        all_taken_by = (std::is_invocable_v<Callable, ContentOf<AnyValue, Types>&> && ...);

    template <class Result, class Callable, class AnyValue>
    static constexpr bool all_give =
        (std::is_same_v<Result, std::invoke_result_t<Callable, ContentOf<AnyValue, Types>&>> &&
         ...);
};

/// The types of content, one for each kind.
using Contents = TypeList<Undefined, Null, bool, double, std::string, Array, Object, float,
                          long long, unsigned long long>;

/// Gives the address of content of any type: one visitor for all types, since each costs compilers
/// much time.
struct AddressOf {
    using result_type = const void*;

    template <class Content>
    const void* operator()(const Content& content) const noexcept {
        return &content;
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
        const Variant& content = variant(value);
        const AddressOf address;
        return *static_cast<ContentOf<AnyValue, T>*>(
            const_cast<void*>(content.apply_visitor(address)));
    }
};

/// Stands where a static_assert has refused a type, so that the compiler says nothing else. Nothing
/// calls it, and there is no definition.
[[noreturn]] void refused();

/// Whether values hold content of type T; if they do not, says what to write instead.
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
    return static_cast<Kind>(detail::ValueAccess::variant(value).which());
}

/// The name of a kind in messages, as traits<T>::name: "JSON array" and so on.
[[nodiscard]] inline const char* name_of(Kind kind) noexcept {
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

/// @cond
namespace detail {

/// @throws std::runtime_error "invalid conversion: <source> to <target>"
[[noreturn, gnu::cold, gnu::noinline]] inline void throw_invalid_conversion(Kind source,
                                                                            const char* target) {
    throw std::runtime_error(std::string("invalid conversion: ") + name_of(source) + " to " +
                             target);
}

} // namespace detail
/// @endcond

/// @name Content of one type
/// T is one of the types that a Value can hold: Undefined, Null, bool, double, std::string, Array,
/// Object, float, long long or unsigned long long. Constant time; nothing is copied.
/// @{

/// Whether a value holds content of type T.
template <class T>
[[nodiscard]] bool holds(const Value& value) noexcept {
    if constexpr (detail::require_content<T>()) {
        return detail::ValueAccess::variant(value).which() == traits<T>::order;
    } else {
        return false;
    }
}

/// @cond
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
            throw_invalid_conversion(kind_of(value), traits<T>::name);
        }
        return ValueAccess::content<T>(value);
    } else {
        refused();
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

/// Deleted, since the result would refer into the temporary.
template <class T>
const T& get(const Value&& temporary) = delete; // it must have a name: const Value value = ...
/// @}

/// @cond
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

/// @cond
namespace detail {

/// A number taken apart: significand * 2^exponent or its negative, if it is finite.
///
/// Conversions go by these parts, not by the processor's arithmetic, whose results depend on the
/// rounding mode, flush-to-zero and denormals-are-zero, and which may trap. Where merely copying a
/// signaling NaN would, numbers are passed on by reference.
struct NumberParts {
    enum class Class { finite, infinite, nan };

    Class type;
    bool negative;
    std::uint64_t significand;
    int exponent;
};

/// The bits of the binary floating-point formats of 32 and 64 bits.
template <class Floating>
struct FloatingFormat {
    using Limits = std::numeric_limits<Floating>;
    using Bits = std::conditional_t<sizeof(Floating) == 4, std::uint32_t, std::uint64_t>;
    static_assert(Limits::is_iec559 && sizeof(Floating) == sizeof(Bits));

    static constexpr int fraction_bits = Limits::digits - 1;
    static constexpr Bits hidden_bit = Bits{1} << fraction_bits;
    static constexpr Bits sign_bit = Bits{1} << (8 * sizeof(Bits) - 1);
    static constexpr Bits infinity = sign_bit - hidden_bit;
    /// The exponent of the significand's last bit, in the smallest numbers.
    static constexpr int least_exponent = Limits::min_exponent - Limits::digits;

    static Bits bits_of(const Floating& number) noexcept {
        Bits bits;
        std::memcpy(&bits, &number, sizeof bits);
        return bits;
    }

    static NumberParts parts_of(const Floating& number) noexcept {
        const Bits bits = bits_of(number);
        const bool negative = (bits & sign_bit) != 0;
        const Bits magnitude = bits & ~sign_bit;
        if (magnitude >= infinity) {
            return {magnitude == infinity ? NumberParts::Class::infinite : NumberParts::Class::nan,
                    negative, 0, 0};
        }
        const bool subnormal = magnitude < hidden_bit;
        const Bits significand = subnormal ? magnitude : (magnitude % hidden_bit) | hidden_bit;
        const int biased = subnormal ? 1 : static_cast<int>(magnitude >> fraction_bits);
        return {NumberParts::Class::finite, negative, significand,
                significand == 0 ? 0 : biased - 1 + least_exponent};
    }

    /// The number nearest to one taken apart and, of two as near, the even one; an infinity beyond
    /// the largest.
    static Floating nearest(const NumberParts& parts) noexcept {
        const Bits bits = nearest_magnitude(parts) | (parts.negative ? sign_bit : 0);
        Floating number;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

private:
    static Bits nearest_magnitude(const NumberParts& parts) noexcept {
        if (parts.type == NumberParts::Class::nan) {
            return infinity | hidden_bit >> 1;
        }
        if (parts.significand == 0) {
            return parts.type == NumberParts::Class::infinite ? infinity : 0;
        }
        // The significand's first bit as the top bit.
        const int shift = __builtin_clzll(parts.significand);
        const std::uint64_t significand = parts.significand << shift;
        const int exponent = parts.exponent - shift;

        // How many of its bits to drop: more than usual below the normal numbers.
        const int normal_exponent = exponent + 64 - Limits::digits;
        const int missing = normal_exponent < least_exponent ? least_exponent - normal_exponent : 0;
        const int dropped = 64 - Limits::digits + missing;
        if (dropped > 64) {
            return 0;
        }
        if (normal_exponent > Limits::max_exponent - Limits::digits) {
            return infinity;
        }
        const std::uint64_t kept = dropped == 64 ? 0 : significand >> dropped;
        const std::uint64_t rest = dropped == 64 ? significand : significand << (64 - dropped);
        constexpr std::uint64_t half = std::uint64_t{1} << 63;
        const bool up = rest > half || (rest == half && kept % 2 != 0);
        // Added rather than combined: the hidden bit counts as one more in the exponent, and so
        // does what rounding carries, up to infinity.
        const auto biased = static_cast<Bits>(normal_exponent + missing - least_exponent);
        return (biased << fraction_bits) + static_cast<Bits>(kept) + (up ? 1 : 0);
    }
};

inline NumberParts parts_of(const double& number) noexcept {
    return FloatingFormat<double>::parts_of(number);
}

inline NumberParts parts_of(const float& number) noexcept {
    return FloatingFormat<float>::parts_of(number);
}

inline NumberParts parts_of(long long number) noexcept {
    const auto bits = static_cast<std::uint64_t>(number);
    return {NumberParts::Class::finite, number < 0, number < 0 ? 0 - bits : bits, 0};
}

inline NumberParts parts_of(unsigned long long number) noexcept {
    return {NumberParts::Class::finite, false, number, 0};
}

/// The parts of the number that a value holds.
/// @throws std::runtime_error "invalid conversion: <kind> to JSON number"
inline NumberParts number_parts(const Value& value) {
    switch (kind_of(value)) {
    case Kind::number:
        return parts_of(ValueAccess::content<double>(value));
    case Kind::float32:
        return parts_of(ValueAccess::content<float>(value));
    case Kind::int64:
        return parts_of(ValueAccess::content<long long>(value));
    case Kind::uint64:
        return parts_of(ValueAccess::content<unsigned long long>(value));
    default:
        throw_invalid_conversion(kind_of(value), traits<double>::name);
    }
}

/// Whether a text reads back to a number: as a float, or as a double.
inline bool reads_back(const char* text, const NumberParts& number, bool is_float) {
    using Double = FloatingFormat<double>;
    using Float = FloatingFormat<float>;
    const NumberParts read = Double::parts_of(std::strtod(text, nullptr));
    return is_float
               ? Float::bits_of(Float::nearest(read)) == Float::bits_of(Float::nearest(number))
               : Double::bits_of(Double::nearest(read)) == Double::bits_of(Double::nearest(number));
}

/// A float or double in a message, the same in every locale: with the digits that its type always
/// keeps or, where those do not read back to it, with as many as that takes.
[[gnu::cold, gnu::noinline]] inline std::string text_of(const NumberParts& number, bool is_float) {
    if (number.type == NumberParts::Class::nan) {
        return "NaN";
    }
    if (number.type == NumberParts::Class::infinite) {
        return number.negative ? "-Inf" : "Inf";
    }
    using Float = std::numeric_limits<float>;
    using Double = std::numeric_limits<double>;
    const double widened = FloatingFormat<double>::nearest(number);
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.*G", is_float ? Float::digits10 : Double::digits10,
                  widened);
    if (!reads_back(buffer, number, is_float)) {
        std::snprintf(buffer, sizeof buffer, "%.*G",
                      is_float ? Float::max_digits10 : Double::max_digits10, widened);
    }
    std::string text = buffer;
    // Whatever is none of these is the locale's radix character.
    const std::size_t point = text.find_first_not_of("-0123456789E+");
    if (point != std::string::npos) {
        text.replace(point, text.find_first_of("0123456789", point) - point, ".");
    }
    return text;
}

/// A whole number, in a message.
inline std::string text_of(bool negative, std::uint64_t magnitude) {
    std::string text = negative ? "-" : "";
    return text += std::to_string(magnitude);
}

/// Whether a number has no fraction; the infinities have none.
inline bool is_whole(const NumberParts& parts) noexcept {
    return parts.type != NumberParts::Class::nan &&
           (parts.exponent >= 0 ||
            (parts.exponent > -64 && parts.significand << (64 + parts.exponent) == 0));
}

/// Whether the magnitude of a whole number has no more than 64 bits.
inline bool has_64_bits(const NumberParts& whole) noexcept {
    return whole.type == NumberParts::Class::finite &&
           (whole.exponent <= 0 ||
            (whole.exponent < 64 && whole.significand >> (64 - whole.exponent) == 0));
}

/// The magnitude of a whole number that has 64 bits.
inline std::uint64_t magnitude_of(const NumberParts& whole) noexcept {
    return whole.exponent < 0 ? whole.significand >> -whole.exponent
                              : whole.significand << whole.exponent;
}

/// Throws what there is to say of a number that to_integer() cannot give.
[[noreturn, gnu::cold, gnu::noinline]] inline void throw_out_of_range(const NumberParts& number,
                                                                      bool is_float,
                                                                      std::uint64_t lowest,
                                                                      std::uint64_t highest) {
    if (!is_whole(number)) {
        throw std::out_of_range(text_of(number, is_float) += " is not a whole number");
    }
    std::string problem = has_64_bits(number) ? text_of(number.negative, magnitude_of(number))
                                              : text_of(number, is_float);
    problem += " is not within ";
    problem += text_of(lowest != 0, lowest);
    problem += " to ";
    throw std::out_of_range(problem += text_of(false, highest));
}

template <class Integer>
Integer to_integer(const Value& value) {
    // The magnitudes of both.
    constexpr auto lowest = 0 - static_cast<std::uint64_t>(std::numeric_limits<Integer>::min());
    constexpr auto highest = static_cast<std::uint64_t>(std::numeric_limits<Integer>::max());
    const NumberParts number = number_parts(value);
    const bool fits = is_whole(number) && has_64_bits(number) &&
                      magnitude_of(number) <= (number.negative ? lowest : highest);
    if (!fits) {
        throw_out_of_range(number, kind_of(value) == Kind::float32, lowest, highest);
    }
    const std::uint64_t magnitude = magnitude_of(number);
    // One less and one more, since the lowest number of all has no positive counterpart.
    return number.negative && magnitude != 0
               ? static_cast<Integer>(-1 - static_cast<std::int64_t>(magnitude - 1))
               : static_cast<Integer>(magnitude);
}

inline long double to_long_double(const NumberParts& parts) noexcept {
    using Double = FloatingFormat<double>;
    if (std::numeric_limits<long double>::digits < 64 || parts.type != NumberParts::Class::finite) {
        return static_cast<long double>(Double::nearest(parts));
    }
    // In two steps, each by a normal number of the type double; neither rounds.
    const int half = parts.exponent / 2;
    const auto power = [](int exponent) {
        return static_cast<long double>(
            Double::nearest({NumberParts::Class::finite, false, 1, exponent}));
    };
    const long double magnitude =
        static_cast<long double>(parts.significand) * power(half) * power(parts.exponent - half);
    return parts.negative ? -magnitude : magnitude;
}

template <class Floating>
Floating to_floating(const Value& value) {
    if constexpr (std::is_same_v<Floating, long double>) {
        return to_long_double(number_parts(value));
    } else {
        return holds<Floating>(value) ? ValueAccess::content<Floating>(value)
                                      : FloatingFormat<Floating>::nearest(number_parts(value));
    }
}

/// The integer types; bool and the types of characters are none.
using SignedIntegers = TypeList<signed char, short, int, long, long long>;
using UnsignedIntegers =
    TypeList<unsigned char, unsigned short, unsigned, unsigned long, unsigned long long>;
using FloatingTypes = TypeList<float, double, long double>;

/// Whether number() gives T; if it does not, says what to write instead.
template <class T>
constexpr bool require_number() {
    using Plain = std::remove_cv_t<std::remove_reference_t<T>>;
    constexpr bool is_integer =
        SignedIntegers::contains<Plain> || UnsignedIntegers::contains<Plain>;
    constexpr bool found = is_integer || FloatingTypes::contains<Plain>;
    static_assert(!found || std::is_same_v<T, Plain>,
                  "number: write the type without const, volatile and &");
    static_assert(!std::is_same_v<Plain, bool>,
                  "number: a truth value is no number: write get<bool>(value)");
    static_assert(found || std::is_same_v<Plain, bool> || !std::is_integral_v<Plain>,
                  "number: write an integer type of at most 64 bits, such as int or std::int8_t, "
                  "rather than a character type");
    static_assert(found || std::is_integral_v<Plain> || !std::is_enum_v<Plain>,
                  "number: write an integer type, and convert the number to the enumeration");
    static_assert(found || std::is_integral_v<Plain> || std::is_enum_v<Plain>,
                  "number: write an integer type or a floating-point type");
    return found && std::is_same_v<T, Plain>;
}

/// Whether integer() takes T; if it does not, says what to write instead.
template <class T>
constexpr bool require_integer() {
    constexpr bool found = SignedIntegers::contains<T> || UnsignedIntegers::contains<T>;
    static_assert(!std::is_same_v<T, bool>, "integer: for a truth value write Value(flag)");
    static_assert(!std::is_floating_point_v<T>,
                  "integer: for a floating-point number write Value(number)");
    static_assert(!std::is_enum_v<T>,
                  "integer: convert the enumeration to its underlying type first");
    static_assert(found || std::is_same_v<T, bool> || !std::is_integral_v<T>,
                  "integer: convert to an integer type of at most 64 bits first; a character type "
                  "is none");
    static_assert(found || std::is_arithmetic_v<T> || std::is_enum_v<T>,
                  "integer: takes an integer");
    return found;
}

} // namespace detail
/// @endcond

/// @name Numbers of any type
/// @{

/// A number of any of the four kinds of numbers, converted to an arithmetic type.
///
/// An integer type gets exactly that number, or an exception. A floating-point type gets the
/// nearest number, ties to even, whatever the rounding mode, and subnormal numbers even if the
/// processor is set to flush them to zero. A number that is too large becomes an infinity; NaN
/// stays NaN.
///
/// @tparam Number  any arithmetic type but bool and the character types
/// @throws std::runtime_error the value is not a number: "invalid conversion: <kind> to JSON
/// number"
/// @throws std::out_of_range for an integer type: "2.5 is not a whole number", or "70000 is not
///         within 0 to 65535"
/// @complexity constant
template <class Number>
[[nodiscard]] Number number(const Value& value) {
    if constexpr (detail::require_number<Number>()) {
        if constexpr (std::is_integral_v<Number>) {
            return detail::to_integer<Number>(value);
        } else {
            return detail::to_floating<Number>(value);
        }
    } else {
        detail::refused();
    }
}

/// A value of the kind int64 or uint64 from an integer of any type. Value(number) makes a double of
/// an int, and is ambiguous for long and std::size_t.
/// @param number  of any integer type but bool and the character types: signed types give an int64,
///                unsigned ones a uint64
template <class Integer>
[[nodiscard]] Value integer(Integer number) {
    if constexpr (detail::require_integer<Integer>()) {
        using Content =
            std::conditional_t<std::is_signed_v<Integer>, long long, unsigned long long>;
        return Value(static_cast<Content>(number));
    } else {
        detail::refused();
    }
}
/// @}

} // namespace foundation::json

#endif
