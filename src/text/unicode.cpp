// What Unicode says of a character, by ICU.
#include "text/unicode.hpp"

#include <unicode/uchar.h>

namespace foundation::json::detail {

CharacterClass class_of(std::uint32_t code) noexcept {
    constexpr std::uint32_t zero_width_joiner = 0x200D;
    if (code == zero_width_joiner) {
        return CharacterClass::joiner;
    }
    const std::uint32_t category = U_GET_GC_MASK(static_cast<UChar32>(code));
    if ((category & U_GC_M_MASK) != 0) {
        return CharacterClass::mark;
    }
    if ((category & U_GC_ZS_MASK) != 0) {
        return CharacterClass::space;
    }
    return (category & (U_GC_C_MASK | U_GC_Z_MASK)) != 0 ? CharacterClass::hidden
                                                         : CharacterClass::visible;
}

std::size_t width_of(std::uint32_t code) noexcept {
    const auto character = static_cast<UChar32>(code);
    if ((U_GET_GC_MASK(character) & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK)) != 0) {
        return 0;
    }
    const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

} // namespace foundation::json::detail
