// The snippets of docs/writing.md.
#include "snippet.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace foundation::json;

namespace {

//! [write a file]
void write_file(const std::string& name, const Value& value) {
    std::ofstream file(name);
    file << pretty_print(value) << '\n';
    file.flush();
    if (!file) {
        throw std::runtime_error("cannot write '" + name + "'");
    }
}
//! [write a file]

//! [indented]
std::string indented(const Value& value, std::size_t width) {
    std::istringstream lines(pretty_print(value));
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
        text += text.empty() ? "" : "\n";
        text.append(blanks / 4 * width, ' ').append(line, blanks);
    }
    return text;
}
//! [indented]

//! [plain digits]
void plain_digits(Value& value) {
    if (const auto* real = get_if<double>(&value)) {
        const double size = std::abs(*real);
        if (size >= 1e6 && size < 9007199254740992.0 && size == std::floor(size)) {
            value = static_cast<long long>(*real);
        }
    } else if (auto* elements = get_if<Array>(&value)) {
        for (Value& element : *elements) {
            plain_digits(element);
        }
    } else if (auto* members = get_if<Object>(&value)) {
        for (auto& [name, member] : *members) {
            plain_digits(member);
        }
    }
}
//! [plain digits]

} // namespace

int main() {
    snippet("ways");
    {
        //! [ways]
        const Value value((Property("a") = (Element(1), Element(true)), Property("b") = "x"));
        const std::string compact = serialize(value);
        const std::string pretty = pretty_print(value);

        Serializer serializer;
        serializer.pretty_print(true);
        std::ostringstream stream;
        serializer.write(stream, value);
        std::cout << compact << '\n' << pretty << '\n' << (stream.str() == pretty) << '\n';
        //! [ways]
    }

    snippet("write a file");
    try {
        write_file("no/such/folder.json", Value());
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n';
    }

    snippet("empty containers");
    {
        //! [empty containers]
        const Value value((Property("e") = std::vector<Value>{}, Property("f") = Value()));
        std::cout << serialize(value) << '\n' << pretty_print(value) << '\n';
        //! [empty containers]
    }

    snippet("undefined");
    {
        //! [undefined]
        std::cout << serialize((Element(1), Element(Value()), Element(2))) << '\n'; // -> [1,,2]
        //! [undefined]
    }

    snippet("use of indented");
    {
        //! [use of indented]
        std::cout << indented((Property("a") = Element(1)), 2) << '\n';
        // ->
        // {
        //   "a":[
        //     1
        //   ]
        // }
        //! [use of indented]
    }

    snippet("order of members");
    {
        //! [order of members]
        const Value steps = Array{Array{"wash", 30}, Array{"dry", 60}};
        std::cout << serialize(steps) << '\n'; // -> [["wash",30],["dry",60]]
        //! [order of members]
    }

    snippet("doubles");
    {
        //! [doubles]
        const std::vector<double> numbers = {3,    0.1,  0.1 + 0.2, 999999.5, 1e6,         1234567,
                                             1e-4, 1e-5, -0.0,      1e100,    std::nan("")};
        for (const double number : numbers) {
            std::cout << serialize(number) << ' ';
        }
        //! [doubles]
        std::cout << '\n';
    }

    snippet("floats");
    {
        //! [floats]
        for (const float number : {0.1F, 16777216.0F, std::numeric_limits<float>::max()}) {
            std::cout << serialize(number) << ' ';
        }
        //! [floats]
        std::cout << '\n';
    }

    snippet("integers");
    {
        //! [integers]
        std::cout << serialize(2'000'000) << ' ' << serialize(2'000'000LL) << '\n';
        // -> 2.0E+6 2000000
        //! [integers]
    }

    snippet("use of plain digits");
    {
        //! [use of plain digits]
        Value config((Property("bytes") = 5'000'000, Property("rate") = 1234567.5));
        std::cout << serialize(config) << '\n'; // -> {"bytes":5.0E+6,"rate":1.2345675E+6}
        plain_digits(config);
        std::cout << serialize(config) << '\n'; // -> {"bytes":5000000,"rate":1.2345675E+6}
        //! [use of plain digits]
    }

    snippet("strings");
    {
        //! [strings]
        std::cout << serialize("a/b \"c\" \\ \t \x0b") << '\n';
        //! [strings]
    }

    snippet("stream state");
    {
        //! [stream state]
        std::ostringstream stream;
        stream << std::hex << std::setw(6) << std::setfill('*');
        Serializer().write(stream, (Element(255LL), Element(255)));
        std::cout << stream.str() << '\n'; // -> *****[ff,255]
        //! [stream state]
    }
}
