// The snippets of docs/fixed_format.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>

#include <cmath>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

using namespace foundation::json;

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
