/// @file
/// What Unicode says of a character: whether it can be seen, and how wide it is.
#ifndef FOUNDATION_JSON_SRC_TEXT_UNICODE_HPP
#define FOUNDATION_JSON_SRC_TEXT_UNICODE_HPP

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

enum class CharacterClass {
    visible, ///< letters, digits, punctuation, symbols
    mark,    ///< combines with the character before it
    joiner,  ///< joins several characters to one emoji
    space,   ///< of any width
    hidden,  ///< controls the terminal, the direction of text or line ends, or has no meaning that
             ///< everybody shares: surrogates, private use, not assigned
};

CharacterClass class_of(std::uint32_t code) noexcept;

/// How many columns of a terminal a character takes: 0, 1 or 2.
/// @param code  not hidden; of hidden ones, versions of Unicode's data differ
std::size_t width_of(std::uint32_t code) noexcept;

} // namespace foundation::json::detail

#endif
