// The longest common subsequence by the greedy algorithm of Myers ("An O(ND) Difference Algorithm
// and Its Variations", 1986), whose work grows with the number of differences.
#include "access/common_subsequence.hpp"

#include <algorithm>

namespace foundation::json::detail {

namespace {

constexpr std::size_t most_edits = 1024;
constexpr std::size_t steps_per_element = 64;

/// An element, and where it was.
struct Item {
    std::uint64_t element;
    std::size_t index;
};

/// The elements of a sequence that another one has as well. The others are in no match, and would
/// only make the search longer.
std::vector<Item> items_in_both(const std::vector<std::uint64_t>& elements,
                                std::vector<std::uint64_t> others) {
    std::sort(others.begin(), others.end());
    std::vector<Item> items;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (std::binary_search(others.begin(), others.end(), elements[i])) {
            items.push_back({elements[i], i});
        }
    }
    return items;
}

/// The search for a shortest path through the grid of both sequences, from the beginning of both to
/// the end of both. A step ahead in only one of them is an edit; a step ahead in both, over equal
/// elements, is free. On a diagonal, the difference of both positions is constant.
class Search {
public:
    Search(const std::vector<Item>& from, const std::vector<Item>& to) : from_(from), to_(to) {}

    std::vector<Match> matches() { return reaches_end() ? walk_back() : std::vector<Match>(); }

private:
    /// The furthest positions in `from` after some number of edits, one for each diagonal that they
    /// can lead to: edits, edits - 2, ... to the one side, and to the other.
    using Furthest = std::vector<std::size_t>;

    /// Whether the best way to a diagonal after some edits comes from the one where `from` is less
    /// far. The diagonals have numbers from 0 on; those before them are numbered likewise.
    static bool comes_from_above(const Furthest& before, std::size_t diagonal) noexcept {
        return diagonal == 0 ||
               (diagonal != before.size() && before[diagonal - 1] < before[diagonal]);
    }

    /// The position in `to` that belongs to one in `from`, on a diagonal after some edits.
    static std::size_t other_position(std::size_t position, std::size_t diagonal,
                                      std::size_t edits) noexcept {
        return position + edits - 2 * diagonal;
    }

    bool reaches_end() {
        const std::size_t most_work =
            steps_per_element * (from_.size() + to_.size() + steps_per_element);
        std::size_t work = 0;
        for (std::size_t edits = 0; edits <= most_edits && work <= most_work; ++edits) {
            Furthest furthest(edits + 1);
            for (std::size_t diagonal = 0; diagonal <= edits; ++diagonal) {
                std::size_t f = first_position(diagonal);
                std::size_t t = other_position(f, diagonal, edits);
                for (; f < from_.size() && t < to_.size() && from_[f].element == to_[t].element;
                     ++f, ++t) {
                    ++work;
                }
                furthest[diagonal] = f;
                if (f >= from_.size() && t >= to_.size()) {
                    end_ = diagonal;
                    edits_ = edits;
                    return true;
                }
            }
            work += edits + 1;
            before_.push_back(std::move(furthest));
        }
        return false;
    }

    /// Where a diagonal is reached by the next edit.
    std::size_t first_position(std::size_t diagonal) const noexcept {
        if (before_.empty()) {
            return 0;
        }
        const Furthest& before = before_.back();
        return comes_from_above(before, diagonal) ? before[diagonal] : before[diagonal - 1] + 1;
    }

    std::vector<Match> walk_back() const {
        std::vector<Match> matches;
        std::size_t f = from_.size();
        std::size_t diagonal = end_;
        for (std::size_t edits = edits_; edits-- > 0;) {
            const Furthest& before = before_[edits];
            const bool from_above = comes_from_above(before, diagonal);
            const std::size_t reached = from_above ? before[diagonal] : before[diagonal - 1] + 1;
            add_matches(matches, f, reached, other_position(0, diagonal, edits + 1));
            f = from_above ? reached : reached - 1;
            diagonal = from_above ? diagonal : diagonal - 1;
        }
        add_matches(matches, f, 0, 0);
        std::reverse(matches.begin(), matches.end());
        return matches;
    }

    /// Adds the matches on a diagonal, from behind a position down to another one.
    void add_matches(std::vector<Match>& matches, std::size_t end, std::size_t begin,
                     std::size_t offset) const {
        while (end > begin) {
            --end;
            matches.push_back({from_[end].index, to_[end + offset].index});
        }
    }

    const std::vector<Item>& from_;
    const std::vector<Item>& to_;
    std::vector<Furthest> before_; ///< for each number of edits
    std::size_t edits_ = 0;
    std::size_t end_ = 0;
};

} // namespace

std::vector<Match> common_subsequence(const std::vector<std::uint64_t>& from,
                                      const std::vector<std::uint64_t>& to) {
    const std::vector<Item> from_items = items_in_both(from, to);
    const std::vector<Item> to_items = items_in_both(to, from);
    return Search(from_items, to_items).matches();
}

} // namespace foundation::json::detail
