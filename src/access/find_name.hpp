/// @file
/// Looks names up in the tables of members and enumerators.
#ifndef FOUNDATION_JSON_SRC_ACCESS_FIND_NAME_HPP
#define FOUNDATION_JSON_SRC_ACCESS_FIND_NAME_HPP

#include <foundation/json/detail/member_arrays.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace foundation::json::detail {

/// The number of a name in a table; the count of all if it is none of them.
[[gnu::noinline]] inline std::size_t find_name(const NameTable& table,
                                               std::string_view name) noexcept {
    const std::uint32_t* const end = table.sorted + table.count;
    const std::uint32_t* const found =
        std::lower_bound(table.sorted, end, name, [&](std::uint32_t number, std::string_view text) {
            return comes_before(table.names[number], text);
        });
    return found != end && table.names[*found] == name ? *found : table.count;
}

} // namespace foundation::json::detail

#endif
