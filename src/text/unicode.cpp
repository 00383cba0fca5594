// What Unicode says of a character, by utf8proc.
#include "text/unicode.hpp"

#include <utf8proc.h>

namespace foundation::json::detail {

namespace {

utf8proc_category_t category_of(std::uint32_t code) noexcept {
    return utf8proc_category(static_cast<utf8proc_int32_t>(code));
}

} // namespace

CharacterClass class_of(std::uint32_t code) noexcept {
    constexpr std::uint32_t zero_width_joiner = 0x200D;
    if (code == zero_width_joiner) {
        return CharacterClass::joiner;
    }
    switch (category_of(code)) {
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_ME:
        return CharacterClass::mark;
    case UTF8PROC_CATEGORY_ZS:
        return CharacterClass::space;
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_CS:
    case UTF8PROC_CATEGORY_CO:
    case UTF8PROC_CATEGORY_CN:
        return CharacterClass::hidden;
    default:
        return CharacterClass::visible;
    }
}

std::size_t width_of(std::uint32_t code) noexcept {
    switch (category_of(code)) {
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_ME:
    case UTF8PROC_CATEGORY_CF:
        return 0;
    default:
        break;
    }
    // utf8proc says 0 for some more, such as the vowels of Hangul, which terminals show one by one.
    return utf8proc_charwidth(static_cast<utf8proc_int32_t>(code)) == 2 ? 2 : 1;
}

} // namespace foundation::json::detail
