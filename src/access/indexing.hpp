/// @file
/// The conversions behind indexing an array by a double and by an int.
#ifndef FOUNDATION_JSON_SRC_ACCESS_INDEXING_HPP
#define FOUNDATION_JSON_SRC_ACCESS_INDEXING_HPP

#include <cstdint>

namespace foundation::json::detail {

/// The usual conversion of a double to an unsigned 64-bit index, defined for every double:
/// truncation toward zero; -1 and less wrap around like a negative integer; a double that no 64-bit
/// integer can represent, including NaN, gives the index with only the top bit set.
std::uint64_t to_index(double number) noexcept;

/// The same for an int: -1 and less wrap around.
constexpr std::uint64_t to_index(int number) noexcept {
    return static_cast<std::uint64_t>(number);
}

} // namespace foundation::json::detail

#endif
