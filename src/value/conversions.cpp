// The conversions of a value to bool and int.
#include "value/value_access.hpp"

// Callers catch the exceptions of this cast, so their type information must not be hidden: not
// every runtime library compares it by name.
#pragma GCC visibility push(default)
#include <boost/numeric/conversion/cast.hpp>
#pragma GCC visibility pop

#include <cmath>
#include <limits>
#include <sstream>

namespace foundation::json {

namespace {

struct ToInt : boost::static_visitor<int> {
    int operator()(const Undefined&) const { return 0; }
    int operator()(const Null&) const { return 0; }
    int operator()(bool flag) const { return flag ? 1 : 0; }

    int operator()(double number) const {
        // NaN passes every range check, and casting it would be undefined behaviour.
        if (std::isnan(number)) {
            return std::numeric_limits<int>::min();
        }
        return boost::numeric_cast<int>(number);
    }

    int operator()(const std::string& text) const {
        std::istringstream stream(text);
        int result = 0;
        stream >> result;
        return result;
    }

    template <class Other>
    int operator()(const Other&) const {
        detail::throw_invalid_conversion(traits<Other>::order, traits<int>::name);
    }
};

} // namespace

Value::operator bool() const {
    return get<bool>(*this);
}

Value::operator int() const {
    return visit(ToInt(), *this);
}

} // namespace foundation::json
