/// @file
/// Two conversions for a JSON parser of your own: UTF-16 to UTF-8, for `\u` escapes, and a string
/// to a double. Both are independent of locales, keep no state between calls and may run in several
/// threads at once.
///
///     char16_t pair[] = {0xD83D, 0xDE00};
///     std::string smile = detail::u16_to_u8(pair, 2);    // -> F0 9F 98 80
///     double number = detail::string_to_double("1.5e3"); // -> 1500
#ifndef FOUNDATION_JSON_TEXT_HELPERS_HPP
#define FOUNDATION_JSON_TEXT_HELPERS_HPP

#include <foundation/json/export.hpp>

#include <string>

namespace foundation::json::detail {

/// Converts UTF-16 code units to UTF-8.
///
/// A surrogate pair becomes one four-byte sequence, an unpaired surrogate becomes U+FFFD, and zero
/// units are converted like any other.
///
/// @param text    the code units; only read. May be null when length is 0.
/// @param length  how many of them to convert
/// @return the UTF-8 text of exactly those units
/// @throws std::length_error with the message "string too long" if length is negative
/// @throws std::bad_alloc if memory runs out
/// @complexity linear in length
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string u16_to_u8(char16_t* text, int length);

/// Parses the number at the start of a string.
///
/// Parses the longest number, in the form of std::from_chars, with which the string begins: no
/// leading whitespace and no plus sign; `inf` and `nan` are numbers. The rest is ignored. The
/// decimal separator is `.` in every locale, and the result is the double nearest to the number.
///
/// Never throws; allocates nothing.
///
/// @param text  NUL-terminated; must not be null
/// @return the number; 0 if the string does not begin with one; an infinity if it is too large, and
///         a zero if it is too small for a double, with the number's sign
/// @complexity linear in the length of the string
[[nodiscard]] FOUNDATION_JSON_EXPORT double string_to_double(const char* text);

} // namespace foundation::json::detail

#endif
