// Equality of values in which numbers count by their amount.
#include "access/equivalent.hpp"

#include <foundation/json/number.hpp>
#include <foundation/json/patch.hpp>

#include <optional>
#include <type_traits>
#include <utility>

namespace foundation::json {

namespace detail {

namespace {

/// Gives the parts of a number, and nothing for other content.
struct PartsOfNumber {
    template <class Content>
    std::optional<NumberParts> operator()(const Content& content) const noexcept {
        if constexpr (std::is_arithmetic_v<Content> && !std::is_same_v<Content, bool>) {
            return parts_of(content);
        } else {
            return std::nullopt;
        }
    }
};

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
    const auto left_number = visit(PartsOfNumber(), left);
    const auto right_number = visit(PartsOfNumber(), right);
    if (left_number && right_number) {
        return same_number(*left_number, *right_number);
    }
    return holds<Undefined>(left) && holds<Undefined>(right);
}

} // namespace detail

bool equivalent(const Value& left, const Value& right) noexcept {
    return detail::equivalent_values(detail::View(), left, right);
}

} // namespace foundation::json
