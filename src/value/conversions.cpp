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

namespace foundation::json {

namespace detail {

void throw_invalid_conversion(const char* source, const char* target) {
    throw std::runtime_error(std::string("invalid conversion: ") + source + " to " + target);
}

namespace {

struct NameOfKind : boost::static_visitor<const char*> {
    template <class Content>
    const char* operator()(const Content&) const {
        return traits<Content>::name;
    }
};

} // namespace

void throw_invalid_conversion(const Value& source, const char* target) {
    throw_invalid_conversion(visit(NameOfKind(), source), target);
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
    return detail::strict_content<bool>(*this);
}

Value::operator int() const {
    return detail::visit(ToInt(), *this);
}

} // namespace foundation::json
