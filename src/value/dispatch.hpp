/// @file
/// The dispatch on kinds where a visit would cost more than the work: for scalars.
#ifndef FOUNDATION_JSON_SRC_VALUE_DISPATCH_HPP
#define FOUNDATION_JSON_SRC_VALUE_DISPATCH_HPP

#include "value/value_access.hpp"

#include <string>

namespace foundation::json::detail {

/// Whether a value holds a tag, a bool or a number: content without a destructor.
inline bool holds_scalar(const Value& value) noexcept {
    const Kind kind = kind_of(value);
    return kind < Kind::string || kind > Kind::object;
}

/// As visit(), but compiled into the caller. Numbers, the commonest kind, come first.
template <class Callable, class AnyValue>
[[gnu::always_inline]] inline decltype(auto) visit_inline(const Callable& callable,
                                                          AnyValue& value) {
    const Kind kind = kind_of(value);
    if (kind == Kind::number) {
        return callable(ValueAccess::content<double>(value));
    }
    switch (kind) {
    case Kind::null:
        return callable(ValueAccess::content<Null>(value));
    case Kind::boolean:
        return callable(ValueAccess::content<bool>(value));
    case Kind::string:
        return callable(ValueAccess::content<std::string>(value));
    case Kind::array:
        return callable(ValueAccess::content<Array>(value));
    case Kind::object:
        return callable(ValueAccess::content<Object>(value));
    case Kind::float32:
        return callable(ValueAccess::content<float>(value));
    case Kind::int64:
        return callable(ValueAccess::content<long long>(value));
    case Kind::uint64:
        return callable(ValueAccess::content<unsigned long long>(value));
    default: // Kind::undefined, the only other one left
        return callable(ValueAccess::content<Undefined>(value));
    }
}

} // namespace foundation::json::detail

#endif
