/// @file
/// What messages call the types of values.
#ifndef FOUNDATION_JSON_SRC_ACCESS_NOUNS_HPP
#define FOUNDATION_JSON_SRC_ACCESS_NOUNS_HPP

#include <foundation/json/content.hpp>

namespace foundation::json::detail {

/// A type in messages, as "an array".
inline const char* noun_for(Kind kind) noexcept {
    static constexpr const char* nouns[] = {"undefined", "null",     "a boolean", "a number",
                                            "a string",  "an array", "an object", "a number",
                                            "a number",  "a number"};
    return nouns[static_cast<int>(kind)];
}

} // namespace foundation::json::detail

#endif
