/// @file
/// Positions in documents. reader.hpp, records.hpp and read.hpp include this header.
#ifndef FOUNDATION_JSON_POSITION_HPP
#define FOUNDATION_JSON_POSITION_HPP

#include <cstddef>

namespace foundation::json {

/// A position in a document.
struct Position {
    std::size_t byte = 0;   ///< from 0, including a byte order mark
    std::size_t line = 1;   ///< from 1
    std::size_t column = 1; ///< from 1, in characters
};

} // namespace foundation::json

#endif
