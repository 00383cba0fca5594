// Numbers in messages, and the message of a number that an integer type cannot hold.
#include "number/number_parts.hpp"

#include "number/default_environment.hpp"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>

namespace foundation::json::detail {

namespace {

/// Writes a finite number with the digits that its type always keeps or, where those do not read
/// back to it, with as many as that takes. Not to be inlined; see DefaultEnvironment.
template <class Floating>
[[gnu::noinline]] void format(char (&buffer)[40], const Floating& number) {
    using Limits = std::numeric_limits<Floating>;
    const double widened = number;
    std::snprintf(buffer, sizeof buffer, "%.*G", Limits::digits10, widened);
    if (static_cast<Floating>(std::strtod(buffer, nullptr)) != number) {
        std::snprintf(buffer, sizeof buffer, "%.*G", Limits::max_digits10, widened);
    }
}

/// A finite number as that of its type.
std::string text_of_floating(const NumberParts& number, bool is_float) {
    char buffer[40];
    {
        const DefaultEnvironment environment;
        if (is_float) {
            format(buffer, nearest<float>(number));
        } else {
            format(buffer, nearest<double>(number));
        }
    }
    std::string text = buffer;
    // Whatever is none of these is the locale's radix character.
    const std::size_t point = text.find_first_not_of("-0123456789E+");
    if (point != std::string::npos) {
        text.replace(point, text.find_first_of("0123456789", point) - point, ".");
    }
    return text;
}

std::string text_of_whole(bool negative, std::uint64_t magnitude) {
    std::string text = negative ? "-" : "";
    return text += std::to_string(magnitude);
}

} // namespace

std::string text_of(const NumberParts& number, bool is_float) {
    if (number.type == NumberParts::Class::nan) {
        return "NaN";
    }
    if (number.type == NumberParts::Class::infinite) {
        return number.negative ? "-Inf" : "Inf";
    }
    return is_whole(number) && has_64_bits(number)
               ? text_of_whole(number.negative, magnitude_of(number))
               : text_of_floating(number, is_float);
}

void throw_out_of_range(const NumberParts& number, bool is_float, std::uint64_t lowest,
                        std::uint64_t highest) {
    const std::string text = text_of(number, is_float);
    if (!is_whole(number)) {
        throw std::out_of_range(text + " is not a whole number");
    }
    throw std::out_of_range(text + " is not within " + text_of_whole(lowest != 0, lowest) + " to " +
                            text_of_whole(false, highest));
}

} // namespace foundation::json::detail
