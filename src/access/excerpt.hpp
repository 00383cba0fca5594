/// @file
/// Values as messages show them.
#ifndef FOUNDATION_JSON_SRC_ACCESS_EXCERPT_HPP
#define FOUNDATION_JSON_SRC_ACCESS_EXCERPT_HPP

#include <foundation/json/content.hpp>

#include <string>

namespace foundation::json::detail {

/// A value in at most 40 bytes, similar to JSON: `"a long str..."`, `[1,[...],...]`. Takes bounded
/// time for a value of any size.
std::string excerpt(const Value& value);

} // namespace foundation::json::detail

#endif
