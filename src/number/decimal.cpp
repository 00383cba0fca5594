#include "number/decimal.hpp"

namespace foundation::json::detail {

Rounding nearest_double(const Decimal& decimal, double& number) noexcept {
    if (decimal.digits == 0 || decimal.exponent < least_decimal_exponent) {
        number = 0;
        return Rounding::decided;
    }
    if (decimal.exponent > largest_decimal_exponent) {
        return Rounding::too_large;
    }
    const int q = static_cast<int>(decimal.exponent);
    const Rounding result = nearest_normal(decimal.digits, q, number);
    if (!decimal.cut_off || result == Rounding::undecided) {
        return result;
    }
    double next = 0;
    const Rounding next_result = nearest_normal(decimal.digits + 1, q, next);
    const bool same = next_result == result && (result != Rounding::decided || next == number);
    return same ? result : Rounding::undecided;
}

} // namespace foundation::json::detail
