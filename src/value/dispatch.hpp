/// @file
/// The dispatch on kinds where a visit would cost more than the work: for scalars.
#ifndef FOUNDATION_JSON_SRC_VALUE_DISPATCH_HPP
#define FOUNDATION_JSON_SRC_VALUE_DISPATCH_HPP

#include "value/value_access.hpp"

#include <string>
#include <utility>

namespace foundation::json::detail {

/// Whether a value holds a tag, a bool or a number: content that needs no destruction.
inline bool holds_scalar(const Value& value) noexcept {
    const Kind kind = kind_of(value);
    return kind < Kind::string || kind > Kind::object;
}

/// As visit(), but compiled into the caller. Numbers, the commonest kind, come first.
template <class Callable, class AnyValue>
[[gnu::always_inline]] inline decltype(auto) visit_inline(const Callable& callable,
                                                          AnyValue& value) {
    const Kind kind = kind_of(value);
    // GCOVR_EXCL_BR_START: some callers keep numbers or containers for themselves
    // The only visit: compilers reduce it to the address of the variant's storage, and for arrays
    // and objects what that points to.
    const AddressOf address_of;
    void* const address =
        const_cast<void*>(std::as_const(ValueAccess::variant(value)).apply_visitor(address_of));
    if (kind == Kind::number) {
        return callable(*static_cast<ContentOf<AnyValue, double>*>(address));
    }
    switch (kind) {
    case Kind::null:
        return callable(*static_cast<ContentOf<AnyValue, Null>*>(address));
    case Kind::boolean:
        return callable(*static_cast<ContentOf<AnyValue, bool>*>(address));
    case Kind::string:
        return callable(*static_cast<ContentOf<AnyValue, std::string>*>(address));
    case Kind::array:
        return callable(*static_cast<ContentOf<AnyValue, Array>*>(address));
    case Kind::object:
        return callable(*static_cast<ContentOf<AnyValue, Object>*>(address));
    case Kind::float32:
        return callable(*static_cast<ContentOf<AnyValue, float>*>(address));
    case Kind::int64:
        return callable(*static_cast<ContentOf<AnyValue, long long>*>(address));
    case Kind::uint64:
        return callable(*static_cast<ContentOf<AnyValue, unsigned long long>*>(address));
    default: // Kind::undefined, the only other one left
        return callable(*static_cast<ContentOf<AnyValue, Undefined>*>(address));
    }
    // GCOVR_EXCL_BR_STOP: from here on as everywhere
}

} // namespace foundation::json::detail

#endif
