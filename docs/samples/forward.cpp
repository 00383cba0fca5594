// A header that only passes values on.

//! [forward declarations]
#include <foundation/json/fwd.hpp>

void save(const foundation::json::Value& settings);
//! [forward declarations]

#include "snippet.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <iostream>

void save(const foundation::json::Value& settings) {
    std::cout << foundation::json::serialize(settings) << '\n';
}

int main() {
    snippet("forward declarations");
    save("dark");
}
