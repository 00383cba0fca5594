#include "grammar/numbers.hpp"

#include "number/default_environment.hpp"

#include <fast_float/fast_float.h>

#include <limits>
#include <optional>

namespace foundation::json::detail {

namespace {

/// Finds the nearest double for every number; slower than nearest_double().
/// @return false if it is too large
[[gnu::noinline]] bool read_any(const char* from, const char* end, double& number) noexcept {
    const DefaultEnvironment environment;
    [[maybe_unused]] const DoublePrecision precision;
    fast_float::from_chars(from, end, number);
    // Tests the bits: compilers might move a comparison of doubles behind the end of the
    // environment, where a subnormal number may trap.
    return FloatingBits<double>(number).is_finite();
}

// Larger exponents are cut to this: no text has enough digits to make up for it, and adding the
// number of digits to it does not overflow.
constexpr std::int64_t most_exponent = std::int64_t{1} << 60;

} // namespace

const char* scan_exponent(const char* from, const char* end, NumberToken& token) noexcept {
    ++from;
    const bool negative = from != end && *from == '-';
    from += negative || (from != end && *from == '+') ? 1 : 0;
    if (from == end || !is_digit(*from)) {
        token.error = INVALID_EXPONENT;
        return from;
    }
    std::int64_t exponent = 0;
    for (; from != end && is_digit(*from); ++from) {
        exponent = exponent < most_exponent / 10 ? exponent * 10 + (*from - '0') : most_exponent;
    }
    token.whole = false;
    token.magnitude.exponent += negative ? -exponent : exponent;
    return from;
}

namespace {

NumberPart next_part(NumberPart part, char byte) noexcept {
    using Part = NumberPart;
    struct Next {
        Part zero;
        Part digit; ///< other than 0
        Part minus;
        Part plus;
        Part point;
        Part letter;
    };
    constexpr Part none = Part::none;
    constexpr Next after[] = {
        /* begin */ {Part::zero, Part::whole, Part::sign, none, none, none},
        /* sign */ {Part::zero, Part::whole, none, none, none, none},
        /* zero */ {none, none, none, none, Part::point, Part::exponent_letter},
        /* whole */ {Part::whole, Part::whole, none, none, Part::point, Part::exponent_letter},
        /* point */ {Part::fraction, Part::fraction, none, none, none, none},
        /* fraction */ {Part::fraction, Part::fraction, none, none, none, Part::exponent_letter},
        /* exponent_letter */
        {Part::exponent, Part::exponent, Part::exponent_sign, Part::exponent_sign, none, none},
        /* exponent_sign */ {Part::exponent, Part::exponent, none, none, none, none},
        /* exponent */ {Part::exponent, Part::exponent, none, none, none, none},
    };
    const Next& next = after[static_cast<std::size_t>(part)];
    switch (byte) {
    case '0':
        return next.zero;
    case '-':
        return next.minus;
    case '+':
        return next.plus;
    case '.':
        return next.point;
    case 'e':
    case 'E':
        return next.letter;
    default:
        return is_digit(byte) ? next.digit : none;
    }
}

} // namespace

const char* skip_number(const char* from, const char* end, NumberPart& part) noexcept {
    for (; from != end; ++from) {
        const NumberPart next = next_part(part, *from);
        if (next == NumberPart::none) {
            break;
        }
        part = next;
    }
    return from;
}

Decimal leading_digits(const char* from, const char* end, std::int64_t exponent) noexcept {
    Decimal result{0, exponent, false};
    int count = 0;
    for (; from != end; ++from) {
        if (*from == '.') {
            continue;
        }
        if (count == Decimal::most_digits) {
            result.cut_off = result.cut_off || *from != '0';
            ++result.exponent;
        } else {
            result.digits = result.digits * 10 + static_cast<std::uint64_t>(*from - '0');
            count += result.digits != 0 ? 1 : 0;
        }
    }
    return result;
}

namespace {

/// All digits of a whole number; empty if they take more than 64 bits.
std::optional<std::uint64_t> whole_magnitude(const NumberToken& token) noexcept {
    const std::uint64_t leading = token.magnitude.digits;
    if (token.magnitude.exponent == 0) {
        return leading;
    }
    // Only one digit may be missing in the leading ones: 64 bits hold no more than 20.
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const auto last = static_cast<std::uint64_t>(token.end[-1] - '0');
    if (token.magnitude.exponent != 1 || leading > most / 10 || leading * 10 > most - last) {
        return std::nullopt;
    }
    return leading * 10 + last;
}

/// Whether a double holds a whole number exactly.
/// @param number  not 0
constexpr bool is_exact_double(std::uint64_t number) noexcept {
    return number >> trailing_zeros(number) < std::uint64_t{1} << 53;
}

/// The integer that a token stands for, if no double holds it.
std::optional<NumberContent> large_integer(const NumberToken& token) noexcept {
    constexpr std::uint64_t most_negative = std::uint64_t{1} << 63;
    const auto magnitude = whole_magnitude(token);
    if (!magnitude || is_exact_double(*magnitude)) {
        return std::nullopt;
    }
    if (*magnitude < most_negative) {
        const auto number = static_cast<long long>(*magnitude);
        return NumberContent(token.negative ? -number : number);
    }
    if (token.negative) {
        return std::nullopt;
    }
    return NumberContent(static_cast<unsigned long long>(*magnitude));
}

} // namespace

NumberContent content_of_number(const char* from, const NumberToken& token,
                                bool exact_integers) noexcept {
    if (token.whole && token.magnitude.digits <= largest_exact) { // these are all its digits
        const auto number = static_cast<double>(static_cast<std::int64_t>(token.magnitude.digits));
        return NumberContent(token.negative ? -number : number);
    }
    if (token.whole && exact_integers) {
        if (const auto integer = large_integer(token)) {
            return *integer;
        }
    }
    double number = 0;
    switch (nearest_double(token.magnitude, number)) {
    case Rounding::decided:
        return NumberContent(token.negative ? -number : number);
    case Rounding::too_large:
        return NumberContent(NumberContent::Type::too_large);
    default:
        return read_any(from, token.end, number) ? NumberContent(number)
                                                 : NumberContent(NumberContent::Type::too_large);
    }
}

} // namespace foundation::json::detail
