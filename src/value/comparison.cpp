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

/// Whether two values of the same kind have equal content; visits the second with the first at
/// hand.
struct Equal : boost::static_visitor<bool> {
    template <class Content>
    bool operator()(const Content& left, const Content& right) const {
        return left == right;
    }

    template <class Left, class Right>
    bool operator()(const Left&, const Right&) const {
        return false;
    }
};

/// Three-way comparison, negative, zero or positive, where zero says that neither is less.
///
/// One three-way comparison per pair of elements keeps `<` linear: asking `a < b` and then `b < a`
/// would double the work at every level of nesting.
struct Compare : boost::static_visitor<int> {
    int operator()(const Array& left, const Array& right) const;
    int operator()(const Object& left, const Object& right) const;

    int operator()(const std::string& left, const std::string& right) const {
        return left.compare(right);
    }

    template <class Scalar>
    int operator()(const Scalar& left, const Scalar& right) const {
        return left < right ? -1 : (right < left ? 1 : 0);
    }

    template <class Left, class Right>
    int operator()(const Left&, const Right&) const {
        return traits<Left>::order < traits<Right>::order ? -1 : 1;
    }
};

int compare(const Value& left, const Value& right) {
    return boost::apply_visitor(Compare(), detail::ValueAccess::variant(left),
                                detail::ValueAccess::variant(right));
}

int compare(const Object::value_type& left, const Object::value_type& right) {
    const int names = left.first.compare(right.first);
    return names != 0 ? names : compare(left.second, right.second);
}

template <class Container>
int compare_lexicographically(const Container& left, const Container& right) {
    auto l = left.begin();
    auto r = right.begin();
    for (; l != left.end() && r != right.end(); ++l, ++r) {
        if (const int order = compare(*l, *r); order != 0) {
            return order;
        }
    }
    return l != left.end() ? 1 : (r != right.end() ? -1 : 0);
}

int Compare::operator()(const Array& left, const Array& right) const {
    return compare_lexicographically(left, right);
}

int Compare::operator()(const Object& left, const Object& right) const {
    return compare_lexicographically(left, right);
}

} // namespace

bool Value::operator==(const Value& other) const noexcept {
    return variant_.which() == other.variant_.which() &&
           boost::apply_visitor(Equal(), variant_, other.variant_);
}

bool Value::operator!=(const Value& other) const noexcept {
    return !(*this == other);
}

bool Value::operator<(const Value& other) const noexcept {
    return compare(*this, other) < 0;
}

} // namespace foundation::json
