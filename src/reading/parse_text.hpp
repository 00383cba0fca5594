/// @file
/// Parses one whole text that is in memory.
#ifndef FOUNDATION_JSON_SRC_READING_PARSE_TEXT_HPP
#define FOUNDATION_JSON_SRC_READING_PARSE_TEXT_HPP

#include "grammar/whole_text.hpp"
#include "reading/reuse.hpp"

#include <foundation/json/parse.hpp>

namespace foundation::json::detail {

/// The value of a text.
/// @param begin  where to begin: behind a byte order mark
Value parse_text(const WholeText& text, const char* begin, const ParseOptions& options);

/// The same into a value whose memory is used again, which is unspecified after an exception.
void parse_text_again(const WholeText& text, const char* begin, const ParseOptions& options,
                      Reuse& reuse);

} // namespace foundation::json::detail

#endif
