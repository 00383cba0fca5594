// ParserException: what a reader of JSON text reports, and where.
#include <foundation/json/parse_errors.hpp>

#include <utility>

namespace foundation::json {

ParserException::ParserException(const std::string& message, ParseResult parse_result,
                                 std::size_t byte_position, std::size_t line_number,
                                 std::size_t column, std::size_t quoted_byte_position,
                                 const std::string& quoted_text)
    : std::runtime_error(message),
      parse_result_(parse_result),
      byte_position_(byte_position),
      line_number_(line_number),
      column_(column),
      quoted_byte_position_(quoted_byte_position),
      quoted_text_(quoted_text) {}

ParserException::ParserException(const ParserException& other) = default;

// The base is copied on purpose: moving it may leave the other without its message.
ParserException::ParserException(ParserException&& other) noexcept
    : std::runtime_error(static_cast<const std::runtime_error&>(other)),
      parse_result_(other.parse_result_),
      byte_position_(other.byte_position_),
      line_number_(other.line_number_),
      column_(other.column_),
      quoted_byte_position_(other.quoted_byte_position_),
      quoted_text_(std::exchange(other.quoted_text_, std::string())) {}

ParserException& ParserException::operator=(const ParserException& other) = default;

ParserException& ParserException::operator=(ParserException&& other) noexcept {
    if (this != &other) {
        std::runtime_error::operator=(static_cast<const std::runtime_error&>(other));
        parse_result_ = other.parse_result_;
        byte_position_ = other.byte_position_;
        line_number_ = other.line_number_;
        column_ = other.column_;
        quoted_byte_position_ = other.quoted_byte_position_;
        quoted_text_ = std::exchange(other.quoted_text_, std::string());
    }
    return *this;
}

ParserException::~ParserException() = default;

ParseResult ParserException::get_parse_result() const {
    return parse_result_;
}

std::size_t ParserException::get_byte_position() const {
    return byte_position_;
}

std::size_t ParserException::get_line_number() const {
    return line_number_;
}

std::size_t ParserException::get_column() const {
    return column_;
}

std::size_t ParserException::get_quoted_byte_position() const {
    return quoted_byte_position_;
}

std::string ParserException::get_quoted_text() const {
    return quoted_text_;
}

} // namespace foundation::json
