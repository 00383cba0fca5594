// The snippets of docs/kinds.md.
#include "snippet.hpp"

#include <foundation/json/json.hpp>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <limits>
#include <string>

using namespace foundation::json;

int main() {
    snippet("integers");
    //! [integers]
    const std::size_t count = 3'000'000;
    const std::int64_t id = 7;
    const Value exact = static_cast<unsigned long long>(count);
    const Value number = static_cast<double>(id);
    std::cout << serialize(exact) << ' ' << serialize(number) << '\n'; // -> 3000000 7
    std::cout << serialize('c') << ' ' << serialize("c") << '\n';      // -> 99 "c"
    //! [integers]

    snippet("to int");
    //! [to int]
    std::cout << int(Value(-3.99)) << '\n';         // -> -3
    std::cout << int(Value("  42 apples")) << '\n'; // -> 42
    std::cout << int(Value("apples")) << '\n';      // -> 0
    std::cout << int(Value(Null())) << '\n';        // -> 0
    std::cout << int(Value(true)) << '\n';          // -> 1
    std::cout << int(Value(std::nan(""))) << '\n';  // -> -2147483648
    //! [to int]

    snippet("to int fails");
    //! [to int fails]
    try {
        std::cout << int(Value(3e9)) << '\n';
    } catch (const std::bad_cast& error) {
        std::cout << error.what() << '\n'; // -> bad numeric conversion: positive overflow
    }
    try {
        std::cout << int(Value(7LL)) << '\n';
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n'; // -> invalid conversion: int64 to int
    }
    //! [to int fails]

    snippet("to text");
    //! [to text]
    const Value name = "Ada";
    const std::string quoted = serialize(name);
    std::cout << quoted << ' ' << (name == "Ada") << '\n'; // -> "Ada" 1
    //! [to text]

    snippet("equality");
    //! [equality]
    std::cout << (Value(1) == Value(1.0)) << '\n';                     // -> 1
    std::cout << (Value(1) == Value(1LL)) << '\n';                     // -> 0
    std::cout << (Value() == Value()) << '\n';                         // -> 0
    std::cout << (Value(Null()) == Value(Null())) << '\n';             // -> 1
    std::cout << (Value(std::nan("")) == Value(std::nan(""))) << '\n'; // -> 0
    std::cout << (Value(0.0) == Value(-0.0)) << '\n';                  // -> 1
    std::cout << (Value((Element(1), Element(2))) == Value((Element(1), Element(2))))
              << '\n'; // -> 1
    //! [equality]

    snippet("fallback");
    //! [fallback]
    std::cout << serialize(Value(0) || Value(5)) << '\n';          // -> 5
    std::cout << serialize(Value(0LL) || Value(5)) << '\n';        // -> 0
    std::cout << serialize(Value("") || Value("x")) << '\n';       // -> "x"
    std::cout << serialize(Value(false) || Value(Null())) << '\n'; // -> null
    //! [fallback]

    snippet("names");
    //! [names]
    std::cout << traits<long long>::name << ' ' << traits<long long>::order << '\n'; // -> int64 8
    //! [names]
}
