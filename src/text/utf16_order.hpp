/// @file
/// The order of texts by their UTF-16 units, without converting them from UTF-8.
#ifndef FOUNDATION_JSON_SRC_TEXT_UTF16_ORDER_HPP
#define FOUNDATION_JSON_SRC_TEXT_UTF16_ORDER_HPP

#include <algorithm>
#include <string_view>

namespace foundation::json::detail {

/// The first byte of a character beyond U+FFFF, which takes a pair of units, or a greater byte.
constexpr bool begins_pair_in_utf16(char byte) noexcept {
    return static_cast<unsigned char>(byte) >= 0xF0;
}

inline bool has_pair_in_utf16(std::string_view text) noexcept {
    return std::any_of(text.begin(), text.end(), begins_pair_in_utf16);
}

/// Whether one text comes before another in the order of their UTF-16 units. It differs from that
/// of their bytes in one respect: the units of a pair are less than those from U+E000 on, whose
/// first byte is 0xEE or 0xEF.
inline bool is_less_in_utf16(std::string_view left, std::string_view right) noexcept {
    const auto rank = [](char byte) {
        const int code = static_cast<unsigned char>(byte);
        return code < 0xEE ? code : begins_pair_in_utf16(byte) ? code - 2 : code + 0x10;
    };
    return std::lexicographical_compare(
        left.begin(), left.end(), right.begin(), right.end(),
        [&](char one, char other) { return rank(one) < rank(other); });
}

} // namespace foundation::json::detail

#endif
