/// @file
/// Whether two values are equivalent, where one of them may be seen through changes that are still
/// to be made.
#ifndef FOUNDATION_JSON_SRC_ACCESS_EQUIVALENT_HPP
#define FOUNDATION_JSON_SRC_ACCESS_EQUIVALENT_HPP

#include "text/words.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/detail/floating_bits.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace foundation::json::detail {

/// Sees values as they are. Views are passed by value: this one takes no register.
struct View {
    static constexpr bool has_lists = false;
};

/// Whether values of two kinds are equivalent, or numbers of one kind other than double, or whether
/// both are Undefined.
bool equivalent_scalars(const Value& left, const Value& right) noexcept;

/// Whether doubles are equal; decided by their bits, since the processor may take subnormal numbers
/// for zero.
inline bool same_double(const double& left, const double& right) noexcept {
    const FloatingBits<double> l(left);
    const FloatingBits<double> r(right);
    return l.word == r.word ? !l.is_nan() : (l.magnitude() | r.magnitude()) == 0;
}

// GCOVR_EXCL_BR_START: compiled into each of many callers, which meet some of the cases each

template <class Word>
bool same_ends(const char* left, const char* right, std::size_t size) noexcept {
    const std::size_t last = size - sizeof(Word);
    return ((load_word<Word>(left) ^ load_word<Word>(right)) |
            (load_word<Word>(left + last) ^ load_word<Word>(right + last))) == 0;
}

/// Whether strings are equal; without a call for the short ones that most names are.
[[gnu::always_inline]] inline bool same_text(const std::string& left,
                                             const std::string& right) noexcept {
    const std::size_t size = left.size();
    if (size != right.size()) {
        return false;
    }
    if (size > 16) {
        return std::memcmp(left.data(), right.data(), size) == 0;
    }
    if (size >= 8) {
        return same_ends<std::uint64_t>(left.data(), right.data(), size);
    }
    if (size >= 4) {
        return same_ends<std::uint32_t>(left.data(), right.data(), size);
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (left[i] != right[i]) {
            return false;
        }
    }
    return true;
}

// The recursive functions are one for each container, so that a level of nesting needs only a few
// words of stack.

template <class AnyView>
bool equivalent_elements(AnyView view, const Value* left, const Value* left_end,
                         const Value* right) noexcept;

template <class AnyView, class List>
bool equivalent_list(AnyView view, const Array& left, const List& list,
                     const Array& right) noexcept;

template <class AnyView>
bool equivalent_members(AnyView view, const Object& left, const Object& right) noexcept;

template <class AnyView>
[[gnu::always_inline]] inline bool equivalent_arrays(AnyView view, const Array& left,
                                                     const Array& right) noexcept {
    if constexpr (AnyView::has_lists) {
        if (const auto* const list = view.list_of(left)) {
            return equivalent_list(view, left, *list, right);
        }
    }
    const Value* const first = left.data();
    return left.size() == right.size() &&
           (left.empty() || equivalent_elements(view, first, first + left.size(), right.data()));
}

/// @param view  how to see the left value
template <class AnyView>
[[gnu::always_inline]] inline bool equivalent_values(AnyView view, const Value& left,
                                                     const Value& right) noexcept {
    const Kind kind = kind_of(left);
    if (kind != kind_of(right)) {
        return equivalent_scalars(left, right);
    }
    // No visit, which would take a call for each scalar.
    if (kind == Kind::number) {
        return same_double(ValueAccess::content<double>(left), ValueAccess::content<double>(right));
    }
    if (kind == Kind::string) {
        return same_text(ValueAccess::content<std::string>(left),
                         ValueAccess::content<std::string>(right));
    }
    if (kind == Kind::array) {
        return equivalent_arrays(view, ValueAccess::content<Array>(left),
                                 ValueAccess::content<Array>(right));
    }
    if (kind == Kind::object) {
        return equivalent_members(view, ValueAccess::content<Object>(left),
                                  ValueAccess::content<Object>(right));
    }
    if (kind == Kind::boolean) {
        return ValueAccess::content<bool>(left) == ValueAccess::content<bool>(right);
    }
    return kind == Kind::null || equivalent_scalars(left, right);
}

// GCOVR_EXCL_BR_STOP: from here on as everywhere

template <class AnyView>
[[gnu::noinline]] bool equivalent_elements(AnyView view, const Value* left, const Value* left_end,
                                           const Value* right) noexcept {
    for (; left != left_end; ++left, ++right) {
        if (!equivalent_values(view, *left, *right)) {
            return false;
        }
    }
    return true;
}

/// @param list  what is to become of the left array
template <class AnyView, class List>
[[gnu::noinline]] bool equivalent_list(AnyView view, const Array& left, const List& list,
                                       const Array& right) noexcept {
    if (list.size() != right.size()) {
        return false;
    }
    for (std::size_t i = 0; i < right.size(); ++i) {
        const Value& element = i < list.kept ? left[i] : *list.rest[i - list.kept];
        if (!equivalent_values(view, element, right[i])) {
            return false;
        }
    }
    return true;
}

/// Whether objects are equivalent that do not have the same names, from members on up to which they
/// are.
template <class AnyView>
[[gnu::noinline]] bool equivalent_rest(AnyView view, Object::const_iterator l,
                                       Object::const_iterator left_end, Object::const_iterator r,
                                       Object::const_iterator right_end) noexcept {
    while (l != left_end && r != right_end) {
        if (same_text(l->first, r->first)) {
            if (!equivalent_values(view, l->second, r->second)) {
                return false;
            }
            ++l;
            ++r;
        } else if (holds<Undefined>(l->second)) {
            ++l;
        } else if (holds<Undefined>(r->second)) {
            ++r;
        } else {
            return false;
        }
    }
    const auto is_undefined = [](const auto& member) { return holds<Undefined>(member.second); };
    return std::all_of(l, left_end, is_undefined) && std::all_of(r, right_end, is_undefined);
}

template <class AnyView>
[[gnu::noinline]] bool equivalent_members(AnyView view, const Object& left,
                                          const Object& right) noexcept {
    auto l = left.begin();
    auto r = right.begin();
    if (left.size() != right.size()) {
        return equivalent_rest(view, l, left.end(), r, right.end());
    }
    // Counted, since the step behind the last member takes longest.
    std::size_t count = left.size();
    if (count == 0) {
        return true;
    }
    for (;;) {
        if (!same_text(l->first, r->first)) {
            return equivalent_rest(view, l, left.end(), r, right.end());
        }
        if (!equivalent_values(view, l->second, r->second)) {
            return false;
        }
        if (--count == 0) {
            return true;
        }
        ++l;
        ++r;
    }
}

} // namespace foundation::json::detail

#endif
