/// @file
/// Makes the errors of documents that do not fit a type.
#ifndef FOUNDATION_JSON_SRC_READING_READ_ERROR_HPP
#define FOUNDATION_JSON_SRC_READING_READ_ERROR_HPP

#include "grammar/position.hpp"

#include <foundation/json/read.hpp>

#include <string_view>

namespace foundation::json::detail {

/// Finds the values that an error is about. Time linear in the length of the text.
/// @param context    the text of the whole value, which has been parsed
/// @param error      the errors within it
/// @param pointer    to that value
/// @param file_name  may be empty
ReadError make_read_error(const Context& context, const ParseOptions& options,
                          const ConversionError& error, std::string_view pointer,
                          std::string_view file_name);

} // namespace foundation::json::detail

#endif
