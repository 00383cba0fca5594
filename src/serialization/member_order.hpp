/// @file
/// The order in which the members of a caller's object are written.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_MEMBER_ORDER_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_MEMBER_ORDER_HPP

#include "text/utf16_order.hpp"

#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/text_sink.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace foundation::json::detail {

/// The numbers of a table's members in the order of the table, or in that of the UTF-16 units of
/// their names.
class MemberOrder {
public:
    /// @throws std::bad_alloc  memory runs out; only if the order is neither that of the table nor
    ///                         that of the bytes of the names
    MemberOrder(const MemberTable& table, bool sorts) {
        if (sorts) {
            sort(table.names);
        }
    }

    std::size_t operator[](std::size_t index) const noexcept {
        return numbers_ == nullptr ? index : numbers_[index];
    }

private:
    [[gnu::noinline]] void sort(const NameTable& table) {
        numbers_ = table.sorted;
        const std::string_view* const names = table.names;
        if (std::any_of(names, names + table.count, has_pair_in_utf16)) {
            own_.assign(table.sorted, table.sorted + table.count);
            std::sort(own_.begin(), own_.end(), [names](std::uint32_t left, std::uint32_t right) {
                return is_less_in_utf16(names[left], names[right]);
            });
            numbers_ = own_.data();
        }
    }

    const std::uint32_t* numbers_ = nullptr;
    std::vector<std::uint32_t> own_;
};

/// Sorts what a map holds by the bytes of the names, or by their UTF-16 units.
inline void sort_parts(NamedPart* parts, std::size_t count, bool in_utf16) {
    const auto by = [parts, count](auto is_less) {
        const auto is_before = [is_less](const NamedPart& left, const NamedPart& right) {
            return is_less(left.name, right.name);
        };
        if (!std::is_sorted(parts, parts + count, is_before)) {
            std::sort(parts, parts + count, is_before);
        }
    };
    if (in_utf16) {
        by(is_less_in_utf16);
    } else {
        by([](std::string_view left, std::string_view right) {
            const std::size_t shorter = std::min(left.size(), right.size());
            const int order = std::memcmp(left.data(), right.data(), shorter);
            return order != 0 ? order < 0 : left.size() < right.size();
        });
    }
}

} // namespace foundation::json::detail

#endif
