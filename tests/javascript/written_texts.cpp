// Usage: foundation_json_written_texts doubles SEED COUNT
//        foundation_json_written_texts floats SEED COUNT
//        foundation_json_written_texts strings SEED COUNT
//        foundation_json_written_texts characters
//        foundation_json_written_texts objects SEED COUNT
//        foundation_json_written_texts document FILE INDENT
// Writes texts by write(), for compare.js, which compares them with those of a JavaScript engine.
// A line has what was written, in hexadecimal, and its texts, separated by tabs.
#include "support/random_numbers.hpp"
#include "support/random_trees.hpp"
#include "support/utf_text.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/write.hpp>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace foundation::json;

WriteOptions ascii_text() {
    WriteOptions options;
    options.ascii = true;
    options.escape_slash = true;
    return options;
}

WriteOptions replacing(WriteOptions options) {
    options.bad_utf8 = WriteOptions::BadUtf8::replace;
    return options;
}

// ---- Numbers -------------------------------------------------------------------------------

template <class Number>
void write_number(const Number& number) {
    if (std::isfinite(number)) {
        // As a double, which a JavaScript engine has; every float is one.
        const double widened = number;
        std::uint64_t bits = 0;
        std::memcpy(&bits, &widened, sizeof bits);
        std::printf("%016llx\t%s\n", static_cast<unsigned long long>(bits), write(number).c_str());
    }
}

/// Numbers where an error would show first.
template <class Number>
void write_notable_numbers() {
    using Limits = std::numeric_limits<Number>;
    const auto write_around = [](Number number) {
        write_number(number);
        write_number(-number);
        write_number(std::nextafter(number, Limits::infinity()));
        write_number(std::nextafter(number, -Limits::infinity()));
    };
    for (int exponent = Limits::min_exponent - Limits::digits; exponent < Limits::max_exponent;
         ++exponent) {
        write_around(std::ldexp(Number(1), exponent));
    }
    for (int exponent = Limits::min_exponent10 - Limits::digits10;
         exponent <= Limits::max_exponent10; ++exponent) {
        for (const char* digits :
             {"1", "5", "9", "1.5", "9.5", "99", "123456789", "12345678901234567"}) {
            const std::string text = std::string(digits) + "e" + std::to_string(exponent);
            write_around(static_cast<Number>(std::strtod(text.c_str(), nullptr)));
        }
    }
    for (const double boundary :
         {1e-7, 1e-6, 1e15, 1e16, 1e17, 1e20, 1e21, 0x1p24, 0x1p53, 0x1p63}) {
        auto number = static_cast<Number>(boundary * (1 - 1e-13));
        for (int i = 0; i < 2000; ++i) {
            write_number(number);
            number = std::nextafter(number, Limits::infinity());
        }
    }
    write_around(Limits::max());
    write_around(Limits::min());
    write_around(Number(0));
}

template <class Number>
void write_numbers(std::uint64_t seed, std::uint64_t count) {
    write_notable_numbers<Number>();
    test::RandomNumbers<Number> numbers(seed);
    for (std::uint64_t i = 0; i < count; i += 8) {
        for (int any = 0; any < 3; ++any) {
            write_number(numbers.any_bits());
        }
        write_number(numbers.decimal());
        write_number(numbers.scaled_decimal());
        write_number(numbers.whole());
        write_number(numbers.fraction_of_two());
        write_number(numbers.between_zero_and_one());
    }
}

// ---- Strings -------------------------------------------------------------------------------

/// Its bytes, its text, and that in ASCII with escaped slashes.
void write_string(const std::string& bytes) {
    for (const char byte : bytes) {
        std::printf("%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    }
    std::printf("\t%s\t%s\n", write(bytes, replacing({})).c_str(),
                write(bytes, replacing(ascii_text())).c_str());
}

void write_characters() {
    for (char32_t code = 0; code < 0x110000; code += code < 0x10000 ? 1 : 61) {
        if (code < 0xD800 || code >= 0xE000) {
            test::UtfText text;
            text.append(code);
            write_string(text.utf8);
        }
    }
}

/// Good ones and bad ones.
void write_strings(std::uint64_t seed, std::uint64_t count) {
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    for (std::uint64_t i = 0; i < count; ++i) {
        std::string bytes = random.string();
        if (random.once_in(2)) {
            test::UtfText text;
            for (std::size_t length = random.below(80); length > 0; --length) {
                constexpr char32_t limits[] = {0x80, 0x100, 0x800, 0xD800};
                const std::size_t choice = random.below(6);
                text.append(static_cast<char32_t>(choice < 4 ? random.below(limits[choice])
                                                             : 0xE000 + random.below(0x102000)));
            }
            bytes += text.utf8;
        }
        write_string(bytes);
    }
}

// ---- Objects -------------------------------------------------------------------------------

std::string random_name(test::RandomTrees& random) {
    constexpr char32_t notable[] = {'0',    '9',    'A',    'a',     'z',     '"',
                                    '/',    0x7F,   0x80,   0x7FF,   0x800,   0xD7FF,
                                    0xE000, 0xFFFD, 0xFFFF, 0x10000, 0x1F642, 0x10FFFF};
    test::UtfText text;
    for (std::size_t length = random.below(4); length > 0; --length) {
        text.append(notable[random.below(std::size(notable))]);
    }
    return text.utf8;
}

Value random_object(test::RandomTrees& random, std::size_t levels) {
    Object members;
    for (std::size_t count = random.below(12); count > 0; --count) {
        members[random_name(random)] = levels > 0 && random.once_in(3)
                                           ? random_object(random, levels - 1)
                                           : Value(random.number<double>());
    }
    return members;
}

/// Their canonical text.
void write_objects(std::uint64_t seed, std::uint64_t count) {
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    for (std::uint64_t i = 0; i < count; ++i) {
        const Value object = random_object(random, 3);
        std::printf("-\t%s\n", write(object, WriteOptions::canonical()).c_str());
    }
}

// ---- Documents -----------------------------------------------------------------------------

/// Puts a letter before all names: JavaScript moves those that look like an index to the front.
Value with_letters(const Value& value) {
    if (const auto* const elements = get_if<Array>(&value)) {
        Array result;
        for (const Value& element : *elements) {
            result.push_back(with_letters(element));
        }
        return result;
    }
    if (const auto* const members = get_if<Object>(&value)) {
        Object result;
        for (const auto& [name, member] : *members) {
            result["k" + name] = with_letters(member);
        }
        return result;
    }
    return value;
}

void write_document(const std::string& file, unsigned indent) {
    ParseOptions options;
    options.integers = ParseOptions::Integers::as_double; // as all numbers in JavaScript
    write(std::cout, with_letters(parse_file(file, options)), WriteOptions::indented(indent));
}

int run(const std::vector<std::string>& arguments) {
    const std::string& what = arguments.at(0);
    if (what == "characters") {
        write_characters();
        return 0;
    }
    if (what == "document") {
        write_document(arguments.at(1), static_cast<unsigned>(std::stoul(arguments.at(2))));
        return 0;
    }
    const std::uint64_t seed = std::stoull(arguments.at(1));
    const std::uint64_t count = std::stoull(arguments.at(2));
    if (what == "doubles") {
        write_numbers<double>(seed, count);
    } else if (what == "floats") {
        write_numbers<float>(seed, count);
    } else if (what == "strings") {
        write_strings(seed, count);
    } else if (what == "objects") {
        write_objects(seed, count);
    } else {
        throw std::invalid_argument("unknown argument '" + what + "'");
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "foundation_json_written_texts: " << error.what() << '\n';
        return 2;
    }
}
