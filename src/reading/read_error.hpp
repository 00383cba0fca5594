/// @file
/// Makes the errors of documents that do not fit a type.
#ifndef FOUNDATION_JSON_SRC_READING_READ_ERROR_HPP
#define FOUNDATION_JSON_SRC_READING_READ_ERROR_HPP

#include "grammar/position.hpp"

#include <foundation/json/read.hpp>

#include <string_view>

namespace foundation::json::detail {

/// Finds the value that an error is about.
/// @param context    the text of the whole value, which has been parsed
/// @param found      the error within it
/// @param error      the same as it is told
/// @param file_name  may be empty
ReadError make_read_error(const Context& context, const ParseOptions& options,
                          const ConversionError& found, const ConversionError& error,
                          std::string_view file_name);

} // namespace foundation::json::detail

#endif
