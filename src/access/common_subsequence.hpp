/// @file
/// What two sequences have in common, in order.
#ifndef FOUNDATION_JSON_SRC_ACCESS_COMMON_SUBSEQUENCE_HPP
#define FOUNDATION_JSON_SRC_ACCESS_COMMON_SUBSEQUENCE_HPP

#include <cstddef>
#include <cstdint>
#include <vector>

namespace foundation::json::detail {

/// The indices of equal elements.
struct Match {
    std::size_t from;
    std::size_t to;
};

/// The matches of the longest common subsequence of two sequences, in order. Empty as well if the
/// sequences differ in so much that finding it takes more than bounded work: some tens of steps for
/// each element, and a few megabytes.
std::vector<Match> common_subsequence(const std::vector<std::uint64_t>& from,
                                      const std::vector<std::uint64_t>& to);

} // namespace foundation::json::detail

#endif
