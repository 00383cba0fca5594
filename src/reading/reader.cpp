// Reader: documents token by token, as callers see it.
#include "reading/read_error.hpp"
#include "reading/token_reader.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/reader.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace foundation::json {

class Reader::Implementation {
public:
    template <class... Input>
    explicit Implementation(const ParseOptions& options, const Input&... input)
        : options_(options), tokens(options_, input...) {}

    const ParseOptions& options() const noexcept { return options_; }

private:
    const ParseOptions options_;

public:
    detail::TokenReader tokens;
    std::string decoded; ///< of the current token, if it has escapes
};

namespace {

/// What a token is called in messages.
const char* name_of(Token token) noexcept {
    switch (token) {
    case Token::none:
        return "no token: next() has not been called, or has failed";
    case Token::begin_array:
        return "the beginning of an array";
    case Token::end_array:
        return "the end of an array";
    case Token::begin_object:
        return "the beginning of an object";
    case Token::end_object:
        return "the end of an object";
    case Token::name:
        return "a name";
    case Token::string:
        return "a string";
    case Token::number:
        return "a number";
    case Token::boolean:
        return "a boolean";
    case Token::null:
        return "null";
    default:
        return "the end of the document";
    }
}

/// The traits<T>::order of the value that a token begins; -1 if it begins none.
int order_of(Token token) noexcept {
    switch (token) {
    case Token::begin_array:
        return traits<Array>::order;
    case Token::begin_object:
        return traits<Object>::order;
    case Token::string:
        return traits<std::string>::order;
    case Token::number:
        return traits<double>::order;
    case Token::boolean:
        return traits<bool>::order;
    case Token::null:
        return traits<Null>::order;
    default:
        return -1;
    }
}

[[noreturn]] void fail_misuse(const char* function, Token token) {
    throw std::logic_error(std::string("foundation::json::Reader::") + function +
                           ": the reader is at " + name_of(token));
}

/// Throws what there is to say of a token that has no content of a type.
/// @param target  the traits<T>::name of that type
[[noreturn]] void fail_content(const char* function, Token token, const char* target) {
    if (const int order = order_of(token); order >= 0) {
        detail::throw_invalid_conversion(order, target);
    }
    fail_misuse(function, token);
}

} // namespace

Reader::Reader(std::string_view text, const ParseOptions& options)
    : implementation_(std::make_unique<Implementation>(options, text)) {}
Reader::Reader(std::istream& stream, const ParseOptions& options, std::size_t max_bytes)
    : implementation_(std::make_unique<Implementation>(options, &stream, max_bytes)) {}
Reader::Reader(Reader&& other) noexcept = default;
Reader& Reader::operator=(Reader&& other) noexcept = default;
Reader::~Reader() = default;

Token Reader::next() {
    return implementation_->tokens.next();
}

Token Reader::token() const noexcept {
    return implementation_->tokens.token();
}

std::string_view Reader::string() const {
    const detail::TokenReader& reader = implementation_->tokens;
    if (reader.token() != Token::string && reader.token() != Token::name) {
        fail_content("string", reader.token(), traits<std::string>::name);
    }
    const detail::StringToken& token = reader.string();
    if (!token.escaped) {
        return {token.text, token.size()};
    }
    decode(token, implementation_->decoded);
    return implementation_->decoded;
}

std::string_view Reader::number_text() const {
    const detail::TokenReader& reader = implementation_->tokens;
    if (reader.token() != Token::number) {
        fail_content("number_text", reader.token(), traits<double>::name);
    }
    return reader.number_text();
}

detail::NumberContent Reader::number_content() const {
    const detail::TokenReader& reader = implementation_->tokens;
    if (reader.token() != Token::number) {
        fail_content("number", reader.token(), traits<double>::name);
    }
    return reader.number_content();
}

bool Reader::boolean() const {
    const detail::TokenReader& reader = implementation_->tokens;
    if (reader.token() != Token::boolean) {
        fail_content("boolean", reader.token(), traits<bool>::name);
    }
    return reader.boolean();
}

void Reader::skip() {
    implementation_->tokens.skip();
}

Value Reader::value() {
    detail::TokenReader& reader = implementation_->tokens;
    if (!reader.find_value()) {
        fail_misuse("value", reader.token());
    }
    return reader.value();
}

void Reader::read_object(const detail::ReadObject& target, const ConvertOptions& conversion) {
    detail::TokenReader& reader = implementation_->tokens;
    if (!reader.find_value()) {
        fail_misuse("read", reader.token());
    }
    ReadOptions options;
    static_cast<ParseOptions&>(options) = implementation_->options();
    static_cast<ConvertOptions&>(options) = conversion;
    std::optional<ReadError> error;
    detail::Reuse found_value;
    reader.value(found_value, [&] {
        try {
            target.convert(target.object, found_value.value, options);
        } catch (const ConversionError& found) {
            const std::string_view text = reader.text_of_value();
            error = detail::make_read_error({text, reader.position_of(text.data())}, options, found,
                                            reader.pointer(), {});
        }
    });
    if (error) {
        throw ReadError(*error);
    }
}

std::size_t Reader::depth() const noexcept {
    return implementation_->tokens.depth();
}

std::string Reader::pointer() const {
    return implementation_->tokens.pointer();
}

Position Reader::position() const {
    const detail::TextPosition position = implementation_->tokens.position();
    return {position.byte, position.line, position.column};
}

} // namespace foundation::json
