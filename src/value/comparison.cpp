// Equality and order of values.
#include "value/value_access.hpp"

#include <algorithm>

namespace foundation::json {

bool Null::operator==(const Null&) const noexcept {
    return true;
}

bool Null::operator!=(const Null&) const noexcept {
    return false;
}

bool Null::operator<(const Null&) const noexcept {
    return false;
}

bool Undefined::operator==(const Undefined&) const noexcept {
    return false;
}

bool Undefined::operator!=(const Undefined&) const noexcept {
    return false;
}

bool Undefined::operator<(const Undefined&) const noexcept {
    return false;
}

namespace {

// The recursive functions, one for each container, are separate from the visits of the content, so
// that a level of nesting needs only a few words of stack.

bool equal(const Array& left, const Array& right);
bool equal(const Object& left, const Object& right);

/// Whether the visited content equals that of another value of the same kind.
class Equal : public boost::static_visitor<bool> {
public:
    explicit Equal(const Value& right) noexcept : right_(right) {}

    template <class Content>
    bool operator()(const Content& left) const {
        return left == right<Content>();
    }

    bool operator()(const Array& left) const { return equal(left, right<Array>()); }
    bool operator()(const Object& left) const { return equal(left, right<Object>()); }

private:
    template <class Content>
    const Content& right() const {
        return detail::ValueAccess::content<Content>(right_);
    }

    const Value& right_;
};

inline bool equal(const Value& left, const Value& right) {
    // The commonest kind takes no visit.
    if (const auto* const number = get_if<double>(&left)) {
        const auto* const other = get_if<double>(&right);
        return other != nullptr && *number == *other;
    }
    return kind_of(left) == kind_of(right) && visit(Equal(right), left);
}

inline bool equal(const Object::value_type& left, const Object::value_type& right) {
    return left.first == right.first && equal(left.second, right.second);
}

template <class Container>
inline bool equal_members(const Container& left, const Container& right) {
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](const auto& l, const auto& r) { return equal(l, r); });
}

[[gnu::noinline]] bool equal(const Array& left, const Array& right) {
    return equal_members(left, right);
}

[[gnu::noinline]] bool equal(const Object& left, const Object& right) {
    return equal_members(left, right);
}

int compare(const Array& left, const Array& right);
int compare(const Object& left, const Object& right);

inline int compare(const std::string& left, const std::string& right) {
    return left.compare(right);
}

template <class Scalar>
int compare(const Scalar& left, const Scalar& right) {
    return static_cast<int>(right < left) - static_cast<int>(left < right);
}

/// Three-way comparison: negative, zero or positive; zero means that neither is less.
///
/// One three-way comparison per pair of elements keeps `<` linear: asking `a < b` and then `b < a`
/// would double the work at every level of nesting.
class Compare : public boost::static_visitor<int> {
public:
    explicit Compare(const Value& right) noexcept : right_(right) {}

    template <class Content>
    int operator()(const Content& left) const {
        if (const auto* const same_kind = get_if<Content>(&right_)) {
            return compare(left, *same_kind);
        }
        return traits<Content>::order < static_cast<int>(kind_of(right_)) ? -1 : 1;
    }

private:
    const Value& right_;
};

inline int compare(const Value& left, const Value& right) {
    // The commonest kind takes no visit.
    if (const auto* const number = get_if<double>(&left)) {
        if (const auto* const other = get_if<double>(&right)) {
            return compare(*number, *other);
        }
    }
    return visit(Compare(right), left);
}

inline int compare(const Object::value_type& left, const Object::value_type& right) {
    const int names = left.first.compare(right.first);
    return names != 0 ? names : compare(left.second, right.second);
}

template <class Container>
inline int compare_members(const Container& left, const Container& right) {
    auto l = left.begin();
    auto r = right.begin();
    for (; l != left.end() && r != right.end(); ++l, ++r) {
        if (const int order = compare(*l, *r); order != 0) {
            return order;
        }
    }
    return l != left.end() ? 1 : (r != right.end() ? -1 : 0);
}

[[gnu::noinline]] int compare(const Array& left, const Array& right) {
    return compare_members(left, right);
}

[[gnu::noinline]] int compare(const Object& left, const Object& right) {
    return compare_members(left, right);
}

} // namespace

bool Value::operator==(const Value& other) const noexcept {
    return equal(*this, other);
}

bool Value::operator!=(const Value& other) const noexcept {
    return !(*this == other);
}

bool Value::operator<(const Value& other) const noexcept {
    return compare(*this, other) < 0;
}

} // namespace foundation::json
