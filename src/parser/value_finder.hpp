/// @file
/// Where a value ends in a text that arrives piece by piece.
#ifndef FOUNDATION_JSON_SRC_PARSER_VALUE_FINDER_HPP
#define FOUNDATION_JSON_SRC_PARSER_VALUE_FINDER_HPP

#include <foundation/json/parse.hpp>

#include <cstddef>
#include <string_view>
#include <vector>

namespace foundation::json::detail {

/// Goes over text byte by byte, and knows after each whether a value is complete, or can no longer
/// become one. It sees what the parser would refuse, but for numbers that are too large and names
/// that occur twice.
class ValueFinder {
public:
    enum class Status {
        nothing,  ///< no value has begun
        begun,    ///< a value or comment has begun, and more is needed
        complete, ///< the value ends at the place
        failed,   ///< the byte at the place cannot continue it
    };

    /// @param options  must outlive the finder
    explicit ValueFinder(const ParseOptions& options) : options_(options) {}

    /// Goes on with more text, until a value is complete or has failed, or to the end.
    /// @param place  comes to be behind what was gone over
    Status go_on(const char*& place, const char* end);

    /// What the end of all text makes of it: nothing, complete or failed.
    Status finish() const noexcept;

    /// Prepares for the next value.
    void restart();

private:
    enum class State : unsigned char {
        before,        // nothing but blanks
        value,         // a value is to begin, within a container
        first_element, // the same, or the array ends
        element,       // the same, after a comma
        first_name,    // a name is to begin, or the object ends
        name,          // the same, after a comma
        colon,
        separator, // a comma is to follow, or the container ends
        string,
        escape,
        hexadecimal,
        continuation, // of a UTF-8 character
        word,
        word_end,
        minus,
        zero,
        digits,
        point,
        fraction,
        exponent_letter,
        exponent_sign,
        exponent,
        slash, // a comment is to begin
        line_comment,
        block_comment,
        star, // a block comment may end
        complete,
    };

    /// Takes a byte. @return whether it could; where a number or word ends it is still to be taken
    bool take(char byte);
    bool take_value(char byte);
    bool take_structure(char byte);
    bool take_in_string(char byte);
    bool take_in_word(char byte);
    bool take_in_number(char byte);
    bool take_in_comment(char byte);

    bool begin_sequence(unsigned char lead);
    bool open(char bracket);
    bool close(char bracket);
    void end_string();
    void end_value();
    bool end_scalar(char byte);

    const ParseOptions& options_;
    State state_ = State::before;
    State after_comment_ = State::before;
    State after_sequence_ = State::string; ///< of UTF-8
    bool is_name_ = false;                 ///< the string
    bool within_ = false;                  ///< a scalar has just ended whose next byte is not taken
    std::vector<bool> open_;               ///< for each container whether it is an array
    const char* rest_of_word_ = "";
    int expected_ = 0; ///< hexadecimal digits, or bytes of a character
    unsigned char lowest_ = 0;
    unsigned char highest_ = 0; ///< of the next byte of a character
};

} // namespace foundation::json::detail

#endif
