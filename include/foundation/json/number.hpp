/// @file
/// Numbers of any arithmetic type from values, and values from integers of any type. content.hpp
/// includes this header.
///
///     Value v((Property("grams") = 250, Property("share") = 0.5));
///     int grams = number<int>(v["grams"]); // exactly that number, or an exception
///     v["id"] = integer(std::size_t{7});   // a uint64, where Value(7) would be a double
#ifndef FOUNDATION_JSON_NUMBER_HPP
#define FOUNDATION_JSON_NUMBER_HPP

#include <foundation/json/detail/number_parts.hpp>
#include <foundation/json/detail/value_access.hpp>
#include <foundation/json/value.hpp>

#include <type_traits>

namespace foundation::json {

/// @cond
namespace detail {

/// The parts of the number that a value holds.
/// @throws std::runtime_error "invalid conversion: <kind> to JSON number"
inline NumberParts number_parts(const Value& value) {
    switch (detail::order_of(value)) {
    case traits<double>::order:
        return detail::parts_of(ValueAccess::content<double>(value));
    case traits<float>::order:
        return detail::parts_of(ValueAccess::content<float>(value));
    case traits<long long>::order:
        return detail::parts_of(ValueAccess::content<long long>(value));
    case traits<unsigned long long>::order:
        return detail::parts_of(ValueAccess::content<unsigned long long>(value));
    default:
        detail::throw_invalid_conversion(detail::order_of(value), traits<double>::name);
    }
}

/// Apart from to_floating(), so that this takes no more than a comparison and a load of most
/// values.
template <class Floating>
[[FOUNDATION_JSON_GNU(noinline)]] Floating nearest_to(const Value& value) {
    return detail::nearest<Floating>(detail::number_parts(value));
}

template <class Floating>
Floating to_floating(const Value& value) {
    if constexpr (!std::is_same_v<Floating, long double>) {
        if (detail::order_of(value) == traits<Floating>::order) {
            return ValueAccess::content<Floating>(value);
        }
    }
    return detail::nearest_to<Floating>(value);
}

/// The integer types; bool and the types of characters are none.
using SignedIntegers = TypeList<signed char, short, int, long, long long>;
using UnsignedIntegers =
    TypeList<unsigned char, unsigned short, unsigned, unsigned long, unsigned long long>;
using FloatingTypes = TypeList<float, double, long double>;

/// Whether number() gives T; if it does not, says what to use instead.
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

/// Whether integer() takes T; if it does not, says what to use instead.
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
            return detail::to_integer<Number>(detail::number_parts(value),
                                              detail::order_of(value) == traits<float>::order);
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
