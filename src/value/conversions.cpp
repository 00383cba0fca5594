#include "value/conversions.hpp"

// Callers catch the exceptions of this cast, so their type information must not be hidden: not
// every runtime library compares it by name.
#pragma GCC visibility push(default)
#include <boost/numeric/conversion/cast.hpp>
#pragma GCC visibility pop

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <type_traits>

namespace foundation::json {

namespace detail {

void throw_invalid_conversion(const char* source, const char* target) {
    throw std::runtime_error(std::string("invalid conversion: ") + source + " to " + target);
}

namespace {

/// Hands out the content of one kind, const or not as Content is, and rejects every other.
template <class Content>
struct StrictAccessor : boost::static_visitor<Content&> {
    Content& operator()(Content& content) const { return content; }

    template <class Other>
    Content& operator()(const Other&) const {
        throw_invalid_conversion(traits<Other>::name, traits<std::remove_const_t<Content>>::name);
    }
};

} // namespace

Array& strict_array(Value& value) {
    return visit(StrictAccessor<Array>(), value);
}

const Array& strict_array(const Value& value) {
    return visit(StrictAccessor<const Array>(), value);
}

Object& strict_object(Value& value) {
    return visit(StrictAccessor<Object>(), value);
}

const Object& strict_object(const Value& value) {
    return visit(StrictAccessor<const Object>(), value);
}

} // namespace detail

namespace {

struct ToInt : boost::static_visitor<int> {
    int operator()(const Undefined&) const { return 0; }
    int operator()(const Null&) const { return 0; }
    int operator()(bool flag) const { return flag ? 1 : 0; }

    int operator()(double number) const {
        // NaN passes every range test, and casting it would be undefined.
        if (std::isnan(number)) {
            return std::numeric_limits<int>::min();
        }
        return boost::numeric_cast<int>(number);
    }

    int operator()(const std::string& text) const {
        std::istringstream stream(text);
        int number = 0;
        stream >> number;
        return number;
    }

    template <class Other>
    int operator()(const Other&) const {
        detail::throw_invalid_conversion(traits<Other>::name, traits<int>::name);
    }
};

} // namespace

Value::operator bool() const {
    return detail::visit(detail::StrictAccessor<const bool>(), *this);
}

Value::operator int() const {
    return detail::visit(ToInt(), *this);
}

} // namespace foundation::json
