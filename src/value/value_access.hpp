/// @file
/// The way to a value's variant for the library's own sources, and visitation by kind.
#ifndef FOUNDATION_JSON_SRC_VALUE_VALUE_ACCESS_HPP
#define FOUNDATION_JSON_SRC_VALUE_VALUE_ACCESS_HPP

#include <foundation/json/value.hpp>

#include <boost/variant/apply_visitor.hpp>

#include <map>
#include <string>
#include <vector>

namespace foundation::json {

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

namespace detail {

struct ValueAccess {
    using Variant = Value::Variant;

    static const Variant& variant(const Value& value) noexcept { return value.variant_; }
    static Variant& variant(Value& value) noexcept { return value.variant_; }
    static const Value& undefined() noexcept { return Value::UNDEFINED; }
};

/// Calls the visitor with the content of the value.
template <class Visitor, class AnyValue>
decltype(auto) visit(Visitor&& visitor, AnyValue& value) {
    return boost::apply_visitor(visitor, ValueAccess::variant(value));
}

} // namespace detail
} // namespace foundation::json

#endif
