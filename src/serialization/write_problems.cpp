#include "serialization/write_problems.hpp"

#include "text/characters.hpp"
#include "text/utf8.hpp"

#include <foundation/json/detail/quoted.hpp>

#include <cstddef>

namespace foundation::json::detail {

namespace {

std::string integer_problem(const std::string& number) {
    return "no double equals " + number + ": the option big_integers allows it";
}

/// The last characters of a text that is UTF-8, as messages show them.
std::string ending(std::string_view text) {
    constexpr std::size_t most = 20;
    if (text.size() <= most) {
        return detail::quoted(text);
    }
    text.remove_prefix(text.size() - most);
    while (is_continuation(text.front())) {
        text.remove_prefix(1);
    }
    return "..." + detail::quoted(text);
}

std::string utf8_problem(const char* subject, std::string_view text) {
    constexpr char digits[] = "0123456789ABCDEF";
    const char* const begin = text.data();
    const char* const bad = find_bad_utf8(begin, begin + text.size());
    const auto good = static_cast<std::size_t>(bad - begin);
    const auto byte = static_cast<unsigned char>(*bad);
    std::string problem = subject;
    problem += " is not UTF-8: found byte 0x";
    problem += {digits[byte >> 4], digits[byte & 15]};
    problem += good == 0 ? " at its beginning" : " after " + ending(text.substr(0, good));
    return problem += ": the option bad_utf8 allows it";
}

} // namespace

std::string not_finite_problem(std::string_view name) {
    return std::string(name) + " is not a JSON number: the option not_finite allows it";
}

std::string problem_of(long long number) {
    return integer_problem(std::to_string(number));
}

std::string problem_of(unsigned long long number) {
    return integer_problem(std::to_string(number));
}

std::string problem_of_string(std::string_view text) {
    return utf8_problem("the string", text);
}

std::string problem_of_name(std::string_view name) {
    return utf8_problem("a member name", name);
}

std::string problem_of_order(std::string_view previous, std::string_view name) {
    if (name == previous) {
        return "the name " + detail::quoted(name) + " occurs twice in an object";
    }
    return "the name " + detail::quoted(name) + " comes after " + detail::quoted(previous) +
           ": the option member_order demands the order of UTF-16";
}

} // namespace foundation::json::detail
