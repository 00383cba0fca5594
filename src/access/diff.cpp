// Patches (RFC 6902), made of two values.
#include "access/common_subsequence.hpp"
#include "access/equivalent.hpp"
#include "access/pointer_steps.hpp"
#include "value/append.hpp"
#include "value/value_access.hpp"

#include <foundation/json/number.hpp>
#include <foundation/json/patch.hpp>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace foundation::json {

namespace {

using detail::Match;

/// Whether two values can be turned into each other by changes within them.
bool are_similar(const Value& from, const Value& to) noexcept {
    return kind_of(from) == kind_of(to) && (holds<Array>(from) || holds<Object>(from));
}

/// Some elements of an array, from one index to another.
struct Range {
    std::size_t begin;
    std::size_t end;

    std::size_t size() const noexcept { return end - begin; }
};

/// The elements between those at the beginning and at the end that are equivalent.
std::pair<Range, Range> different_ranges(const Array& from, const Array& to) noexcept {
    const std::size_t shorter = std::min(from.size(), to.size());
    std::size_t front = 0;
    while (front < shorter && equivalent(from[front], to[front])) {
        ++front;
    }
    std::size_t back = 0;
    while (back < shorter - front &&
           equivalent(from[from.size() - back - 1], to[to.size() - back - 1])) {
        ++back;
    }
    return {{front, from.size() - back}, {front, to.size() - back}};
}

/// Whether no two elements with equal indices are similar.
bool none_similar(const Array& from, const Array& to) noexcept {
    const auto both = static_cast<std::ptrdiff_t>(std::min(from.size(), to.size()));
    return std::equal(from.begin(), from.begin() + both, to.begin(),
                      [](const Value& f, const Value& t) { return !are_similar(f, t); });
}

// ---- Hashes --------------------------------------------------------------------------------

/// A hash, the same for equivalent values.
class Hash : public boost::static_visitor<std::uint64_t> {
public:
    /// @param levels  how deep to look: values that differ only below have the same hash
    explicit Hash(unsigned levels) noexcept : levels_(levels) {}

    std::uint64_t of(const Value& value) const { return visit(*this, value); }

    std::uint64_t operator()(const Undefined&) const noexcept { return 1; }
    std::uint64_t operator()(const Null&) const noexcept { return 2; }
    std::uint64_t operator()(bool flag) const noexcept { return flag ? 3 : 4; }

    std::uint64_t operator()(const std::string& text) const noexcept {
        return std::hash<std::string_view>()(text);
    }

    std::uint64_t operator()(const Array& elements) const {
        std::uint64_t result = mixed(5, elements.size());
        if (levels_ != 0) {
            const Hash inner(levels_ - 1);
            for (const Value& element : elements) {
                result = mixed(result, inner.of(element));
            }
        }
        return result;
    }

    std::uint64_t operator()(const Object& members) const {
        std::uint64_t result = 6;
        if (levels_ != 0) {
            const Hash inner(levels_ - 1);
            for (const auto& [name, value] : members) {
                if (!holds<Undefined>(value)) {
                    result = mixed(mixed(result, (*this)(name)), inner.of(value));
                }
            }
        }
        return result;
    }

    template <class Number>
    std::uint64_t operator()(const Number& number) const noexcept {
        const detail::NumberParts parts = detail::parts_of(number);
        const std::uint64_t magnitude = detail::nearest_magnitude<double>(parts);
        return parts.negative ? ~magnitude : magnitude;
    }

private:
    static std::uint64_t mixed(std::uint64_t hash, std::uint64_t other) noexcept {
        hash = (hash ^ other) * 0x9E3779B97F4A7C15;
        return hash ^ hash >> 32;
    }

    unsigned levels_;
};

std::vector<std::uint64_t> hashes_of(const Array& elements, Range range) {
    constexpr unsigned levels = 32;
    std::vector<std::uint64_t> result;
    result.reserve(range.size());
    for (std::size_t i = range.begin; i != range.end; ++i) {
        result.push_back(Hash(levels).of(elements[i]));
    }
    return result;
}

// ---- Sizes ---------------------------------------------------------------------------------

/// Calls a function for a value and all values in it; not by recursion, since values may nest
/// deeply.
template <class Function>
void for_each_value(const Value& root, Function function) {
    std::vector<const Value*> pending{&root};
    while (!pending.empty()) {
        const Value* const value = pending.back();
        pending.pop_back();
        function(*value);
        if (const auto* const elements = get_if<Array>(value)) {
            for (const Value& element : *elements) {
                pending.push_back(&element);
            }
        } else if (const auto* const members = get_if<Object>(value)) {
            for (const auto& member : *members) {
                pending.push_back(&member.second);
            }
        }
    }
}

/// About how many bytes a value takes.
std::size_t size_of(const Value& root) {
    std::size_t size = 0;
    for_each_value(root, [&](const Value& value) {
        size += sizeof(Value);
        if (const auto* const text = get_if<std::string>(&value)) {
            size += text->size();
        } else if (const auto* const members = get_if<Object>(&value)) {
            for (const auto& member : *members) {
                size += member.first.size();
            }
        }
    });
    return size;
}

// ---- Patches -------------------------------------------------------------------------------

/// Turns one value into another by operations.
///
/// Containers in the same place on both sides are compared one after the other, without recursion,
/// since values may nest deeply. The operations on the elements of an array come before those
/// within them, whose indices are then the final ones.
class Diff {
public:
    Diff(const Value& from, const Value& to) noexcept : from_(from), to_(to) {}

    Value run() {
        if (are_similar(from_, to_)) {
            pending_.push_back({&from_, &to_, {}, 0});
        } else if (!equivalent(from_, to_)) {
            replace_all();
        }
        while (!pending_.empty() && !is_too_long_) {
            compare_next();
        }
        if (is_too_long_) {
            replace_all();
        }
        return std::move(operations_);
    }

private:
    /// A step of a JSON Pointer.
    struct Step {
        const std::string* name; ///< null for an index
        std::size_t index;
    };

    /// Containers in the same place.
    struct Pair {
        const Value* from;
        const Value* to;
        Step step; ///< the last one to them
        std::size_t depth;
    };

    void compare_next() {
        const Pair pair = pending_.back();
        pending_.pop_back();
        path_.resize(pair.depth);
        if (pair.depth != 0) {
            path_.back() = pair.step;
        }
        const std::size_t first = pending_.size();
        if (const auto* const elements = get_if<Array>(pair.from)) {
            compare_elements(*elements, *pair.to);
        } else {
            compare_members(get<Object>(*pair.from), get<Object>(*pair.to));
        }
        // The first is to be the next.
        std::reverse(pending_.begin() + static_cast<std::ptrdiff_t>(first), pending_.end());
    }

    /// Compares values to which a step leads on both sides.
    void compare(const Value& from, const Value& to, Step step) {
        if (are_similar(from, to)) {
            pending_.push_back({&from, &to, step, path_.size() + 1});
        } else if (!equivalent(from, to)) {
            add_operation("replace", &step, &to);
        }
    }

    void compare_members(const Object& from, const Object& to);
    void compare_member(const std::string& name, const Value& from, const Value& to);

    void compare_elements(const Array& from, const Value& to_value);
    bool compare_in_step(const Array& from, const Array& to, Range range);
    void compare_gap(const Array& from, Range from_gap, const Array& to, Range to_gap);

    void add_operation(const char* name, const Step* last, const Value* value);
    std::string pointer_to(const Step* last) const;
    bool exceeds_limit();
    void replace_all();

    const Value& from_;
    const Value& to_;
    Value operations_ = Array();
    std::vector<Step> path_; ///< to the containers that are compared
    std::vector<Pair> pending_;
    std::size_t pointer_bytes_ = 0;
    std::size_t most_pointer_bytes_ = std::size_t{1} << 20;
    bool has_limit_ = false;
    bool is_too_long_ = false;
};

// ---- Objects

void Diff::compare_members(const Object& from, const Object& to) {
    const Value& nothing = detail::ValueAccess::undefined();
    auto f = from.begin();
    auto t = to.begin();
    while (f != from.end() && t != to.end()) {
        if (detail::same_text(f->first, t->first)) {
            compare_member(t->first, f->second, t->second);
            ++f;
            ++t;
        } else if (f->first < t->first) {
            compare_member(f->first, f->second, nothing);
            ++f;
        } else {
            compare_member(t->first, nothing, t->second);
            ++t;
        }
    }
    for (; f != from.end(); ++f) {
        compare_member(f->first, f->second, nothing);
    }
    for (; t != to.end(); ++t) {
        compare_member(t->first, nothing, t->second);
    }
}

/// @param from, to  Undefined for a member that is missing
void Diff::compare_member(const std::string& name, const Value& from, const Value& to) {
    const Step step{&name, 0};
    if (holds<Undefined>(from) == holds<Undefined>(to)) {
        compare(from, to, step);
    } else if (holds<Undefined>(to)) {
        add_operation("remove", &step, nullptr);
    } else {
        add_operation("add", &step, &to);
    }
}

// ---- Arrays

void Diff::compare_elements(const Array& from, const Value& to_value) {
    const auto& to = get<Array>(to_value);
    // Deeper down, nothing is searched for. Otherwise each level would add to the work for what
    // lies below it.
    constexpr std::size_t deepest_search = 16;
    const bool is_deep = path_.size() > deepest_search;
    if (is_deep && from.size() == to.size()) {
        compare_gap(from, {0, from.size()}, to, {0, to.size()});
        return;
    }
    const auto [from_range, to_range] = different_ranges(from, to);
    if (from_range.size() == to_range.size() && compare_in_step(from, to, to_range)) {
        return;
    }
    std::vector<Match> matches;
    if (!is_deep && from_range.size() != 0 && to_range.size() != 0) {
        matches = detail::common_subsequence(hashes_of(from, from_range), hashes_of(to, to_range));
    }
    if (matches.empty() && from_range.size() == from.size() && to_range.size() == to.size() &&
        std::max(from.size(), to.size()) > 1 && none_similar(from, to)) {
        add_operation("replace", nullptr, &to_value);
        return;
    }
    std::size_t f = from_range.begin;
    std::size_t t = to_range.begin;
    for (const Match& match : matches) {
        const std::size_t matched_from = from_range.begin + match.from;
        const std::size_t matched_to = to_range.begin + match.to;
        compare_gap(from, {f, matched_from}, to, {t, matched_to});
        // Hashes can be equal by chance.
        if (!equivalent(from[matched_from], to[matched_to])) {
            compare(from[matched_from], to[matched_to], {nullptr, matched_to});
        }
        f = matched_from + 1;
        t = matched_to + 1;
    }
    compare_gap(from, {f, from_range.end}, to, {t, to_range.end});
}

/// Compares elements with equal indices, if most of them are equivalent or there is only one.
/// @return whether it did so
bool Diff::compare_in_step(const Array& from, const Array& to, Range range) {
    std::vector<std::size_t> changed;
    for (std::size_t i = range.begin; i != range.end; ++i) {
        if (!equivalent(from[i], to[i])) {
            changed.push_back(i);
        }
    }
    if (changed.size() > 1 && changed.size() > range.size() / 2) {
        return false;
    }
    for (const std::size_t index : changed) {
        compare(from[index], to[index], {nullptr, index});
    }
    return true;
}

/// Compares elements between matches one by one, then removes or adds what is left.
void Diff::compare_gap(const Array& from, Range from_gap, const Array& to, Range to_gap) {
    const std::size_t both = std::min(from_gap.size(), to_gap.size());
    for (std::size_t i = 0; i < both; ++i) {
        const std::size_t index = to_gap.begin + i;
        compare(from[from_gap.begin + i], to[index], {nullptr, index});
    }
    const Step behind{nullptr, to_gap.begin + both};
    for (std::size_t i = both; i < from_gap.size(); ++i) {
        add_operation("remove", &behind, nullptr);
    }
    for (std::size_t i = both; i < to_gap.size(); ++i) {
        const Step step{nullptr, to_gap.begin + i};
        add_operation("add", &step, &to[step.index]);
    }
}

// ---- Operations

/// @param last  the step from the path to the target; null for the path itself
void Diff::add_operation(const char* name, const Step* last, const Value* value) {
    if (is_too_long_) {
        return;
    }
    const std::string pointer = pointer_to(last);
    pointer_bytes_ += pointer.size();
    if (pointer_bytes_ > most_pointer_bytes_ && exceeds_limit()) {
        is_too_long_ = true;
        return;
    }
    auto& operations = get<Array>(operations_);
    detail::make_room(operations, 1);
    auto& members = get<Object>(operations.emplace_back(Object()));
    members.emplace("op", name);
    members.emplace("path", pointer);
    if (value != nullptr) {
        members.emplace("value", *value);
    }
}

std::string Diff::pointer_to(const Step* last) const {
    std::string result;
    const auto append = [&](const Step& step) {
        if (step.name != nullptr) {
            detail::append_token(result, *step.name);
        } else {
            (result += '/') += std::to_string(step.index);
        }
    };
    std::for_each(path_.begin(), path_.end(), append);
    if (last != nullptr) {
        append(*last);
    }
    return result;
}

/// Whether the pointers take more memory than the second value, of which there must be a lot:
/// pointers can be as long as the value is large, and as many.
bool Diff::exceeds_limit() {
    if (!has_limit_) {
        has_limit_ = true;
        most_pointer_bytes_ = std::max(most_pointer_bytes_, size_of(to_));
    }
    return pointer_bytes_ > most_pointer_bytes_;
}

void Diff::replace_all() {
    is_too_long_ = false;
    pointer_bytes_ = 0;
    path_.clear();
    get<Array>(operations_).clear();
    add_operation("replace", nullptr, &to_);
}

} // namespace

Value diff(const Value& from, const Value& to) {
    return Diff(from, to).run();
}

} // namespace foundation::json
