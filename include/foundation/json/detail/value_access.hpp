/// @file
/// The library's own way to the content of a Value, for its other headers. Not for programs: what
/// is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_VALUE_ACCESS_HPP
#define FOUNDATION_JSON_DETAIL_VALUE_ACCESS_HPP

#include <foundation/json/detail/refused.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/value.hpp>

#include <type_traits>

namespace foundation::json::detail {

/// A content type as it is within a value: const if the value is.
template <class AnyValue, class T>
using ContentOf = std::conditional_t<std::is_const_v<AnyValue>, const T, T>;

/// Gives the address of content of any type: one visitor for all types, since each costs compilers
/// much time.
struct AddressOf {
    using result_type = const void*;

    template <class Content>
    const void* operator()(const Content& content) const noexcept {
        return &content;
    }
};

/// The way to a value's variant.
struct ValueAccess {
    using Variant = Value::Variant;

    static const Variant& variant(const Value& value) noexcept { return value.variant_; }
    static Variant& variant(Value& value) noexcept { return value.variant_; }

    /// Only the library's own sources have a definition.
    static const Value& undefined() noexcept;

    /// The content of a value that is known to hold that type.
    ///
    /// Always inlined: where the kind is known, the variant's dispatch folds to the address of its
    /// storage, but a compiler that looks at its size first would not try.
    template <class T, class AnyValue>
    [[FOUNDATION_JSON_GNU(always_inline),
      FOUNDATION_JSON_GNU(flatten)]] static ContentOf<AnyValue, T>&
    content(AnyValue& value) noexcept {
        const Variant& content = variant(value);
        const AddressOf address;
        return *static_cast<ContentOf<AnyValue, T>*>(
            const_cast<void*>(content.apply_visitor(address)));
    }
};

/// The order of what a value holds: traits<T>::order of its content.
inline int order_of(const Value& value) noexcept {
    return ValueAccess::variant(value).which();
}

/// The traits<T>::name of the content type with that order.
[[nodiscard]] FOUNDATION_JSON_EXPORT const char* name_of_order(int order) noexcept;

/// @param order  of what is converted
/// @throws std::runtime_error "invalid conversion: <name of that order> to <target>"
[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
throw_invalid_conversion(int order, const char* target);

} // namespace foundation::json::detail

#endif
/// @endcond
