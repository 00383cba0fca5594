// The snippet in the comment of version.hpp.
#include "snippet.hpp"

//! [version]
#include <foundation/json/version.hpp>

#if FOUNDATION_JSON_VERSION < 10100
#error "foundation::json 1.1.0 or later is needed"
#endif
//! [version]

int main() {
    snippet("version");
    std::cout << FOUNDATION_JSON_VERSION_STRING << '\n';
}
