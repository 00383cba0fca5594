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

/// The elements of arrays between those at both ends that are equivalent.
struct Ranges {
    Range from;
    Range to;
};

Ranges different_ranges(const Array& from, const Array& to) noexcept {
    const auto shorter = static_cast<std::ptrdiff_t>(std::min(from.size(), to.size()));
    const auto front =
        std::mismatch(from.begin(), from.begin() + shorter, to.begin(), equivalent).first -
        from.begin();
    const auto back =
        std::mismatch(from.rbegin(), from.rbegin() + (shorter - front), to.rbegin(), equivalent)
            .first -
        from.rbegin();
    const auto begin = static_cast<std::size_t>(front);
    const auto behind = static_cast<std::size_t>(back);
    return {{begin, from.size() - behind}, {begin, to.size() - behind}};
}

/// The indices of elements that are not equivalent.
std::vector<std::size_t> different_indices(const Array& from, const Array& to) {
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (!equivalent(from[i], to[i])) {
            result.push_back(i);
        }
    }
    return result;
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
        // Without zeros at the end, the significand is the same for every kind.
        std::uint64_t significand = parts.significand;
        int exponent = parts.exponent;
        for (const int zeros : {32, 16, 8, 4, 2, 1}) {
            if (significand << (64 - zeros) == 0) {
                significand >>= zeros;
                exponent += zeros;
            }
        }
        if (significand == 0) {
            return 7;
        }
        const std::uint64_t first = mixed(8, parts.negative ? ~significand : significand);
        return mixed(first, static_cast<std::uint64_t>(exponent));
    }

private:
    static std::uint64_t mixed(std::uint64_t hash, std::uint64_t other) noexcept {
        hash = (hash ^ other) * 0x9E3779B97F4A7C15;
        return hash ^ hash >> 32;
    }

    unsigned levels_;
};

constexpr unsigned hashed_levels = 32;

std::vector<std::uint64_t> hashes_of(const Array& elements, Range range) {
    std::vector<std::uint64_t> result(range.size());
    const auto first = elements.begin() + static_cast<std::ptrdiff_t>(range.begin);
    std::transform(first, first + static_cast<std::ptrdiff_t>(range.size()), result.begin(),
                   [](const Value& element) { return Hash(hashed_levels).of(element); });
    return result;
}

std::vector<std::uint64_t> hashes_of(const Array& elements,
                                     const std::vector<std::size_t>& indices) {
    std::vector<std::uint64_t> result(indices.size());
    std::transform(indices.begin(), indices.end(), result.begin(),
                   [&](std::size_t index) { return Hash(hashed_levels).of(elements[index]); });
    return result;
}

/// Whether some of the elements that differ between arrays of the same length may be the same ones
/// in other positions, and not elements that have changed where they are.
bool may_have_moved(const Array& from, const Array& to, const std::vector<std::size_t>& different) {
    constexpr std::size_t few = 16;
    const bool are_apart =
        std::adjacent_find(different.begin(), different.end(), [](std::size_t a, std::size_t b) {
            return a + 1 == b;
        }) == different.end();
    if (are_apart && different.size() <= few) {
        return false; // what moves in between would differ as well
    }
    std::vector<std::uint64_t> before = hashes_of(from, different);
    std::sort(before.begin(), before.end());
    const std::vector<std::uint64_t> after = hashes_of(to, different);
    return std::any_of(after.begin(), after.end(), [&](std::uint64_t hash) {
        return std::binary_search(before.begin(), before.end(), hash);
    });
}

// ---- Sizes ---------------------------------------------------------------------------------

/// About how many bytes a value takes. Not by recursion, since values may nest deeply.
class Size {
public:
    std::size_t of(const Value& root) {
        pending_.push_back(&root);
        while (!pending_.empty()) {
            const Value* const value = pending_.back();
            pending_.pop_back();
            size_ += sizeof(Value);
            visit(*this, *value);
        }
        return size_;
    }

    void operator()(const std::string& text) { size_ += text.size(); }

    void operator()(const Array& elements) {
        std::for_each(elements.begin(), elements.end(),
                      [this](const Value& element) { pending_.push_back(&element); });
    }

    void operator()(const Object& members) {
        for (const auto& [name, value] : members) {
            size_ += name.size();
            pending_.push_back(&value);
        }
    }

    template <class Scalar>
    void operator()(const Scalar&) noexcept {}

private:
    std::vector<const Value*> pending_;
    std::size_t size_ = 0;
};

// ---- Patches -------------------------------------------------------------------------------

/// Turns one value into another by operations.
///
/// Containers at the same location on both sides are compared one after the other, without
/// recursion, since values may nest deeply. The operations on the elements of an array come before
/// those within them, whose indices are then the final ones.
class Diff {
public:
    Diff(const Value& from, const Value& to) : from_(from), to_(to) {}

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

    /// Containers at the same location.
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
        } else if (!detail::equivalent_values(detail::View(), from, to)) {
            replace(from, to, step);
        }
    }

    void replace(const Value& from, const Value& to, Step step);

    void compare_members(const Object& from, const Object& to);
    void add_member(const std::string& name, const Value& value);
    void remove_member(const std::string& name, const Value& value);

    void compare_elements(const Array& from, const Value& to_value);
    void compare_ranges(const Array& from, const Value& to_value, const Ranges& ranges,
                        bool search);
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
    auto f = from.begin();
    auto t = to.begin();
    while (f != from.end() && t != to.end()) {
        if (detail::same_text(f->first, t->first)) {
            compare(f->second, t->second, {&t->first, 0});
            ++f;
            ++t;
        } else if (f->first < t->first) {
            remove_member(f->first, f->second);
            ++f;
        } else {
            add_member(t->first, t->second);
            ++t;
        }
    }
    std::for_each(f, from.end(), [this](const auto& m) { remove_member(m.first, m.second); });
    std::for_each(t, to.end(), [this](const auto& m) { add_member(m.first, m.second); });
}

void Diff::add_member(const std::string& name, const Value& value) {
    if (!holds<Undefined>(value)) {
        const Step step{&name, 0};
        add_operation("add", &step, &value);
    }
}

void Diff::remove_member(const std::string& name, const Value& value) {
    if (!holds<Undefined>(value)) {
        const Step step{&name, 0};
        add_operation("remove", &step, nullptr);
    }
}

/// An Undefined member is one that is missing; Undefined elements are elements like others.
void Diff::replace(const Value& from, const Value& to, Step step) {
    if (step.name != nullptr && holds<Undefined>(from)) {
        add_operation("add", &step, &to);
    } else if (step.name != nullptr && holds<Undefined>(to)) {
        add_operation("remove", &step, nullptr);
    } else {
        add_operation("replace", &step, &to);
    }
}

// ---- Arrays

void Diff::compare_elements(const Array& from, const Value& to_value) {
    const auto& to = get<Array>(to_value);
    // Deeper down, nothing is searched for. Otherwise each level would add to the work for what
    // lies below it.
    constexpr std::size_t deepest_search = 16;
    const bool is_deep = path_.size() > deepest_search;
    if (from.size() != to.size()) {
        compare_ranges(from, to_value, different_ranges(from, to), !is_deep);
        return;
    }
    if (is_deep) {
        compare_gap(from, {0, from.size()}, to, {0, to.size()});
        return;
    }
    const auto different = different_indices(from, to);
    if (different.empty()) {
        return;
    }
    const bool search = may_have_moved(from, to, different);
    if (search || different.size() == from.size()) {
        const Range range{different.front(), different.back() + 1};
        compare_ranges(from, to_value, {range, range}, search);
        return;
    }
    for (const std::size_t index : different) {
        compare(from[index], to[index], {nullptr, index});
    }
}

void Diff::compare_ranges(const Array& from, const Value& to_value, const Ranges& ranges,
                          bool search) {
    const auto& to = get<Array>(to_value);
    std::vector<Match> matches;
    if (search && ranges.from.size() != 0 && ranges.to.size() != 0) {
        matches =
            detail::common_subsequence(hashes_of(from, ranges.from), hashes_of(to, ranges.to));
    }
    // Then that of the other array has all its elements, too.
    const bool has_all = ranges.from.size() == from.size();
    if (matches.empty() && has_all && std::max(from.size(), to.size()) > 1 &&
        none_similar(from, to)) {
        add_operation("replace", nullptr, &to_value);
        return;
    }
    std::size_t f = ranges.from.begin;
    std::size_t t = ranges.to.begin;
    for (const Match& match : matches) {
        const std::size_t matched_from = ranges.from.begin + match.from;
        const std::size_t matched_to = ranges.to.begin + match.to;
        compare_gap(from, {f, matched_from}, to, {t, matched_to});
        // Hashes can be equal by chance.
        if (!equivalent(from[matched_from], to[matched_to])) {
            compare(from[matched_from], to[matched_to], {nullptr, matched_to});
        }
        f = matched_from + 1;
        t = matched_to + 1;
    }
    compare_gap(from, {f, ranges.from.end}, to, {t, ranges.to.end});
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
            detail::append_name_token(result, *step.name);
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
        most_pointer_bytes_ = std::max(most_pointer_bytes_, Size().of(to_));
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
