/// @file
/// The checks of members, for the library's other headers. Not for programs: what is here may
/// change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_CHECKS_HPP
#define FOUNDATION_JSON_DETAIL_CHECKS_HPP

#include <foundation/json/members.hpp>

#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json::detail {

/// An object as messages show it, as JSON text. more_converters.hpp defines it.
template <class T>
std::string shown(const T& object);

/// Whether one number is at most another, whatever their types.
template <class Left, class Right>
constexpr bool is_at_most(const Left& left, const Right& right) {
    if constexpr (std::is_integral_v<Left> && std::is_integral_v<Right>) {
        if constexpr (std::is_signed_v<Left> && !std::is_signed_v<Right>) {
            return left < 0 || static_cast<std::make_unsigned_t<Left>>(left) <= right;
        } else if constexpr (!std::is_signed_v<Left> && std::is_signed_v<Right>) {
            return right >= 0 && left <= static_cast<std::make_unsigned_t<Right>>(right);
        } else {
            return left <= right;
        }
    } else if constexpr (std::is_arithmetic_v<Left> && std::is_arithmetic_v<Right>) {
        using Common = std::common_type_t<Left, Right>;
        return static_cast<Common>(left) <= static_cast<Common>(right);
    } else {
        return left <= right;
    }
}

template <class T, class = void>
inline constexpr bool may_be_empty = false;
template <class T>
inline constexpr bool may_be_empty<T, std::void_t<decltype(*std::declval<const T&>())>> = true;

template <class Low, class High, class T>
std::string check_range(const InRange<Low, High>& range, const T& content) {
    if (detail::is_at_most(range.low, content) && detail::is_at_most(content, range.high)) {
        return {};
    }
    return detail::shown(content) + " is not within " + detail::shown(range.low) + " to " +
           detail::shown(range.high);
}

template <class Check>
inline constexpr bool is_range = false;
template <class Low, class High>
inline constexpr bool is_range<InRange<Low, High>> = true;

/// What a check says; empty if nothing is wrong.
template <class Check, class T>
std::string sentence_of(const Check& check, const T& content) {
    if constexpr (std::is_invocable_v<const Check&, const T&>) {
        return check(content);
    } else if constexpr (may_be_empty<T>) {
        return content ? detail::sentence_of(check, *content) : std::string();
    } else {
        static_assert(is_range<Check>,
                      "a check of a member takes the member, or what is in it, and "
                      "gives a std::string: what is wrong, or nothing");
        if constexpr (is_range<Check>) {
            return detail::check_range(check, content);
        } else {
            return {};
        }
    }
}

} // namespace foundation::json::detail

#endif
/// @endcond
