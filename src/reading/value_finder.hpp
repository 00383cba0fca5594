/// @file
/// Finds where a value ends in a text that arrives piece by piece.
#ifndef FOUNDATION_JSON_SRC_READING_VALUE_FINDER_HPP
#define FOUNDATION_JSON_SRC_READING_VALUE_FINDER_HPP

#include <foundation/json/parse.hpp>

#include <cstddef>
#include <string_view>
#include <vector>

namespace foundation::json::detail {

/// Reads a text byte by byte, and knows after each byte whether a value is complete or can no
/// longer become one. It refuses what the parser refuses, except numbers that are too large and
/// names that occur twice.
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

    /// Reads more text, until a value is complete, has failed, or the text ends.
    /// @param place  is moved behind what was read
    Status go_on(const char*& place, const char* end);

    /// The status if the text ends here: nothing, complete or failed.
    Status finish() const noexcept;

    /// Prepares for the next value.
    void restart();

private:
    enum class State : unsigned char {
        before,        // nothing but blanks so far
        value,         // a value must begin, within a container
        first_element, // the same, or the array ends
        element,       // the same, after a comma
        first_name,    // a name must begin, or the object ends
        name,          // the same, after a comma
        colon,
        separator, // a comma must follow, or the container ends
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
        slash, // a comment must begin
        line_comment,
        block_comment,
        star, // a block comment may end
        complete,
    };

    /// Takes a byte, or ends a number or word before it. @return false if the byte cannot follow
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
    State after_sequence_ = State::string; ///< the state behind a sequence of UTF-8
    bool is_name_ = false;                 ///< whether the string is a name
    bool within_ = false;    ///< whether a scalar has ended before the byte, which is not taken
    std::vector<bool> open_; ///< for each open container whether it is an array
    const char* rest_of_word_ = "";
    int expected_ = 0; ///< how many hexadecimal digits, or bytes of a character, must follow
    unsigned char lowest_ = 0;  ///< the least next byte of a character
    unsigned char highest_ = 0; ///< the greatest
};

} // namespace foundation::json::detail

#endif
