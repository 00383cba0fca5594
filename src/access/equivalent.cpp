// Equality of values in which numbers count by their amount.
#include "access/equivalent.hpp"

#include <foundation/json/number.hpp>
#include <foundation/json/patch.hpp>

#include <utility>

namespace foundation::json {

namespace detail {

namespace {

bool is_number(const Value& value) noexcept {
    const Kind kind = kind_of(value);
    return kind == Kind::number || kind > Kind::object;
}

/// In integer arithmetic, which neither rounds nor depends on the floating-point environment.
bool same_number(NumberParts left, NumberParts right) noexcept {
    using Class = NumberParts::Class;
    if (left.type != right.type || left.type == Class::nan) {
        return false;
    }
    if (left.significand == 0 && right.significand == 0) {
        return left.type == Class::finite || left.negative == right.negative;
    }
    if (left.exponent < right.exponent) {
        std::swap(left, right);
    }
    const int shift = left.exponent - right.exponent;
    return left.negative == right.negative && shift < 64 &&
           left.significand << shift >> shift == left.significand &&
           left.significand << shift == right.significand;
}

} // namespace

bool equivalent_scalars(const Value& left, const Value& right) noexcept {
    if (is_number(left) && is_number(right)) {
        return same_number(number_parts(left), number_parts(right));
    }
    return holds<Undefined>(left) && holds<Undefined>(right);
}

} // namespace detail

bool equivalent(const Value& left, const Value& right) noexcept {
    return detail::equivalent_values(detail::View(), left, right);
}

} // namespace foundation::json
