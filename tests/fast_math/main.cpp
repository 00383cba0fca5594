/// @file
/// A program compiled and linked with -ffast-math. On many machines, the processor then treats
/// subnormal numbers as zero from the start of the program. The library, which is compiled without
/// this option, still writes them.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>

namespace {

using foundation::json::Serializer;
using foundation::json::Value;

template <class Number, class Word>
Value number_of(Word word) {
    Number number;
    static_assert(sizeof number == sizeof word);
    std::memcpy(&number, &word, sizeof number);
    return number;
}

bool subnormal_numbers_are_taken_for_zero() {
    const volatile double subnormal = 4e-310;
    const volatile double large = 1e300;
    const volatile double product = subnormal * large;
    return product == 0;
}

int failures = 0;

void expect(const char* way, const std::string& text, const char* expected) {
    if (text != expected) {
        std::printf("%s: %s instead of %s\n", way, text.c_str(), expected);
        ++failures;
    }
}

/// The text on a stream: written through buffers, or piece by piece if there is a width.
std::string text_on_stream(const Value& value, std::streamsize width) {
    std::ostringstream stream;
    stream.width(width);
    Serializer().write(stream, value);
    return stream.str();
}

void check(const Value& number, const std::string& text) {
    expect("serialize", serialize(number), text.c_str());
    expect("a stream", text_on_stream(number, 0), text.c_str());
    expect("a stream, by pieces", text_on_stream(number, 1), text.c_str());
    const Value array = std::vector<Value>{number};
    expect("a stream, buffered", text_on_stream(array, 0), ("[" + text + "]").c_str());
}

} // namespace

int main() {
    check(number_of<double>(std::uint64_t{0x000049A22DC398AC}), "3.99999999999999E-310");
    check(number_of<double>(std::uint64_t{0x8000000000000001}), "-4.94065645841247E-324");
    check(number_of<double>(std::uint64_t{0x000FFFFFFFFFFFFF}), "2.2250738585072009E-308");
    check(number_of<double>(std::uint64_t{0x0010000000000000}), "2.2250738585072014E-308");
    check(number_of<double>(std::uint64_t{0x8000000000000000}), "-0");
    check(number_of<double>(std::uint64_t{0x7FF8000000000000}), "\"NaN\"");
    check(number_of<double>(std::uint64_t{0x7FF0000000000001}), "\"NaN\"");
    check(number_of<double>(std::uint64_t{0xFFF0000000000000}), "\"-Inf\"");
    check(number_of<float>(std::uint32_t{0x00000001}), "1.4013E-45");
    check(number_of<float>(std::uint32_t{0x807FFFFF}), "-1.17549421E-38");
    check(number_of<float>(std::uint32_t{0x3DCCCCCD}), "0.1");
    check(number_of<float>(std::uint32_t{0x7F800000}), "\"Inf\"");
#if defined(__x86_64__)
    if (!subnormal_numbers_are_taken_for_zero()) {
        std::puts("-ffast-math did not change the treatment of subnormal numbers");
        ++failures;
    }
#else
    std::printf("subnormal numbers are taken for zero: %s\n",
                subnormal_numbers_are_taken_for_zero() ? "yes" : "no");
#endif
    return failures == 0 ? 0 : 1;
}
