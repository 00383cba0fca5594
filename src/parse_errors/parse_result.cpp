// The descriptions of error codes.
#include <foundation/json/parse_errors.hpp>

#include <iterator>

namespace foundation::json {

namespace {

/// By code. The first entry completes the table and is never returned.
constexpr const char* descriptions[] = {
    "No error",
    "Failed to match the string 'null'",
    "Failed to match either of 'true' or 'false' while parsing value of type boolean",
    "The given input sequence is empty",
    "Incomplete escape sequence while parsing value of type string",
    "Invalid escape sequence while parsing value of type char",
    "Invalid Unicode escape sequence while parsing value of type string",
    "Found '\"' character outside escape sequence before end of string",
    "Expected leading '\"' character while parsing value of type string",
    "Expected trailing '\"' character while parsing value of type string",
    "No quantity found after sign while parsing value of type number",
    "Expected leading digit while parsing value of type number",
    "Error in fractional component after decimal place while parsing value of type number",
    "Error in exponent while parsing value of type number",
    "No leading '[' while parsing value of type array",
    "No trailing ']' while parsing value of type array (possible missing comma?)",
    "No leading '{' while parsing value of type object",
    "No trailing '}' while parsing value of type object (possible missing comma?)",
    "No ':' after name while parsing value of type object",
    "Unexpected end of input",
    // The two misspelt words are part of the promised text.
    "Invalid intergal value while parsing interger array",
};

} // namespace

const char* get_parse_result_description(ParseResult r) {
    // Unsigned arithmetic from 1 excludes 0, which is not an error, and negative numbers.
    const std::uint32_t from_one = static_cast<std::uint32_t>(r) - 1;
    if (from_one >= std::size(descriptions) - 1) {
        return "Unrecognized error code";
    }
    return descriptions[r];
}

} // namespace foundation::json
