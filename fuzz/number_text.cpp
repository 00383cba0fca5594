/// @file
/// Numbers to text and text to numbers. The first twelve bytes are a double and a float, which are
/// written by the fast path and the reference algorithm, and read back; the next two choose the
/// floating-point environment for that. All bytes together are a text, from which a number is read.
#include "expect.hpp"
#include "input.hpp"

#include "number/digits.hpp"
#include "number/fast_number_text.hpp"
#include "number/number_text.hpp"
#include "number/shortest_digits.hpp"
#include "number/shortest_number_text.hpp"
#include "support/float_environments.hpp"
#include "support/number_rule.hpp"
#include "support/shortest_rule.hpp"

#include <foundation/json/text_helpers.hpp>

#include <cctype>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::fuzz {
namespace {

template <class Number>
bool same_number(Number left, Number right) {
    return std::isnan(left) ? std::isnan(right)
                            : left == right && std::signbit(left) == std::signbit(right);
}

// ---- Number to text ----------------------------------------------------------------------------

test::Environment read_environment(Input& input) {
    const unsigned choice = input.bits<std::uint16_t>();
    const std::vector<test::MachineSetting>& settings = test::machine_settings();
    // An input without these bytes gives the usual environment.
    return {test::directions()[choice & 3], (choice & 4) != 0,
            choice >> 3 == 0 ? test::usual_setting : settings[(choice >> 3) % settings.size()]};
}

template <class Number>
void check_number(const test::Environment& environment, const Number& number) {
    const detail::FloatingBits<Number> bits(number);
    std::string expected;
    {
        const test::EnvironmentKeeper keeper;
        std::fesetround(environment.direction);
        expected = test::expected_number_text(number);
    }
    std::string reference;
    std::string fast = expected;
    const int flags = test::flags_raised_in(environment, [&] {
        detail::NumberBuffer buffer;
        reference = detail::number_text(buffer, bits);
        if (detail::fast_number_text_applies()) {
            char room[detail::fast_number_room];
            char* const text = room;
            fast.assign(text, detail::fast_number_text(text, bits));
        }
    });
    expect_equal(reference, expected, "the text of a number by the reference algorithm");
    expect_equal(fast, expected, "the text of a number by the fast path");
    expect(flags == 0, "no flag is raised: " + test::name_of(environment));
    if (bits.is_finite() && environment.direction == FE_TONEAREST) {
        const double read = detail::string_to_double(expected.c_str());
        expect(same_number(static_cast<Number>(read), number),
               "a number's text reads back: " + expected);
    }
}

/// The shortest text, in the same environment.
template <class Number>
void check_shortest(const test::Environment& environment, const Number& number) {
    const detail::FloatingBits<Number> bits(number);
    if (!bits.is_finite()) {
        return;
    }
    std::string text;
    const int flags = test::flags_raised_in(environment, [&] {
        char room[detail::shortest_number_room];
        char* const begin = room;
        text.assign(begin, detail::shortest_number_text(begin, bits));
    });
    expect_equal(text, test::expected_shortest_text(number), "the shortest text of a number");
    expect(flags == 0, "no flag is raised: " + test::name_of(environment));
    const detail::FloatingBits<Number> magnitude = bits.without_sign();
    if (magnitude.word != 0) {
        const auto shortest = detail::ShortestDigits<Number>::of(magnitude);
        const auto exact = detail::ShortestDigits<Number>::exactly_of(magnitude);
        expect(shortest.digits == exact.digits && shortest.exponent == exact.exponent,
               "the digits are those of the exact way: " + text);
    }
}

template <class Integer>
void check_integer(Integer number) {
    char room[detail::fast_number_room];
    char* const text = room;
    expect_equal(std::string(text, detail::integer_text(text, number)), std::to_string(number),
                 "the text of an integer");
}

// ---- Text to number ----------------------------------------------------------------------------

std::size_t digits_at(std::string_view text, std::size_t position) {
    const std::size_t end = text.find_first_not_of("0123456789", position);
    return (end == std::string_view::npos ? text.size() : end) - position;
}

bool has_word_at(std::string_view text, std::size_t position, std::string_view word) {
    for (const char letter : word) {
        if (position == text.size() ||
            std::tolower(static_cast<unsigned char>(text[position])) != letter) {
            return false;
        }
        ++position;
    }
    return true;
}

/// The length of the longest number at the start of a text; 0 if there is none.
std::size_t leading_number(std::string_view text) {
    const std::size_t begin = !text.empty() && text.front() == '-' ? 1 : 0;
    for (const std::string_view word : {"infinity", "inf", "nan"}) {
        if (has_word_at(text, begin, word)) {
            return begin + word.size();
        }
    }
    std::size_t end = begin + digits_at(text, begin);
    std::size_t digits = end - begin;
    if (end < text.size() && text[end] == '.') {
        const std::size_t fraction = digits_at(text, end + 1);
        digits += fraction;
        end += 1 + fraction;
    }
    if (digits == 0) {
        return 0;
    }
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) {
            ++exponent;
        }
        if (const std::size_t count = digits_at(text, exponent); count > 0) {
            end = exponent + count;
        }
    }
    return end;
}

void check_text(const std::string& text) {
    const std::string number = text.substr(0, leading_number(text));
    const double expected = number.empty() ? 0.0 : std::strtod(number.c_str(), nullptr);
    expect(same_number(detail::string_to_double(text.c_str()), expected),
           "the C library reads the same number from: " + text);
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace foundation::json;
    using namespace foundation::json::fuzz;
    Input input(data, size);
    const auto number = input.bits<double>();
    const auto real = input.bits<float>();
    const test::Environment environment = read_environment(input);
    check_number(environment, number);
    check_number(environment, real);
    check_shortest(environment, number);
    check_shortest(environment, real);
    input = Input(data, size);
    check_integer(input.bits<long long>());
    input = Input(data, size);
    check_integer(input.bits<unsigned long long>());
    check_text(std::string(Input(data, size).text(size)).c_str());
    return 0;
}
