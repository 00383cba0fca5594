/// @file
/// Parses a text in every way that there is, and compares the results with that of parse().
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_EVERY_WAY_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_EVERY_WAY_HPP

#include "support/describe.hpp"
#include "support/piecewise_stream.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/convert.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::test {

/// All that an error says, as one line.
inline std::string error_text(const ParserException& error) {
    return std::string("error ") + error.what() + " | code " +
           std::to_string(error.get_parse_result()) + " | byte " +
           std::to_string(error.get_byte_position()) + " | " +
           std::to_string(error.get_line_number()) + ':' + std::to_string(error.get_column()) +
           " | quoted at " + std::to_string(error.get_quoted_byte_position()) + ": " +
           error.get_quoted_text();
}

/// The value of a text as one line, or its error.
inline std::string outcome_of(const std::function<Value()>& parse) {
    try {
        return content_text(parse());
    } catch (const ParserException& error) {
        return error_text(error);
    } catch (const ConversionError& error) {
        return std::string("no array: ") + error.what();
    }
}

inline bool is_error(const std::string& outcome) {
    return outcome.rfind("error ", 0) == 0;
}

/// The position of a byte of a text, counted one byte after the other.
inline Position plain_position(std::string_view text, std::size_t byte) {
    Position result;
    result.byte = byte;
    for (std::size_t i = text.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0; i < byte; ++i) {
        if (text[i] == '\n') {
            ++result.line;
            result.column = 1;
        } else {
            result.column += (text[i] & 0xC0) != 0x80 ? 1 : 0;
        }
    }
    return result;
}

inline std::string to_text(const Position& position) {
    return std::to_string(position.byte) + '=' + std::to_string(position.line) + ':' +
           std::to_string(position.column);
}

// ---- Reader ------------------------------------------------------------------------------------

/// Makes a value of the tokens of a Reader; checks what else the reader says of each.
class ValueOfTokens {
public:
    /// @param text    what is read
    /// @param whole   0 to read token by token, otherwise which values and members are read whole
    ValueOfTokens(Reader& reader, std::string_view text, const ParseOptions& options,
                  std::size_t whole)
        : reader_(reader), text_(text), options_(options), whole_(whole) {}

    Value read() {
        while (reader_.next() != Token::end) {
            take();
            check(path_.size() == reader_.depth(), "the depth");
        }
        check(reader_.next() == Token::end, "what is behind the end");
        check_position();
        return std::move(root_);
    }

private:
    void take() {
        check_position();
        switch (reader_.token()) {
        case Token::end_array:
        case Token::end_object:
            close();
            return;
        case Token::name:
            path_.back() = std::string(reader_.string());
            check(first_byte() == '"', "where the name begins");
            check(reader_.pointer() == pointer(), "the pointer to a member");
            if (is_whole()) {
                add(reader_.value());
            }
            return;
        default:
            break;
        }
        if (!open_.empty() && holds<Array>(open_.back())) {
            path_.back() = std::to_string(get<Array>(open_.back()).size());
        }
        check(reader_.pointer() == pointer(), "the pointer");
        take_value();
    }

    void take_value() {
        if (is_whole()) {
            const Token token = reader_.token();
            add(reader_.value());
            check(token != Token::begin_array || reader_.token() == Token::end_array, "the end");
            check(token != Token::begin_object || reader_.token() == Token::end_object, "the end");
            return;
        }
        switch (reader_.token()) {
        case Token::begin_array:
            open(Array(), '[');
            break;
        case Token::begin_object:
            open(Object(), '{');
            break;
        case Token::string:
            check(first_byte() == '"', "where the string begins");
            add(std::string(reader_.string()));
            break;
        case Token::number:
            check(text_.substr(reader_.position().byte, reader_.number_text().size()) ==
                      reader_.number_text(),
                  "the text of the number");
            add(parse(reader_.number_text(), options_));
            break;
        case Token::boolean:
            check(first_byte() == (reader_.boolean() ? 't' : 'f'), "where the boolean begins");
            add(reader_.boolean());
            break;
        default:
            check(reader_.token() == Token::null && first_byte() == 'n', "the null");
            add(Null());
        }
    }

    void open(Value container, char bracket) {
        check(first_byte() == bracket, "where the container begins");
        open_.push_back(std::move(container));
        path_.emplace_back();
    }

    void close() {
        check(first_byte() == (holds<Array>(open_.back()) ? ']' : '}'), "where the container ends");
        Value closed = std::move(open_.back());
        open_.pop_back();
        path_.pop_back();
        check(reader_.pointer() == pointer(), "the pointer behind a container");
        add(std::move(closed));
    }

    void add(Value value) {
        if (open_.empty()) {
            root_ = std::move(value);
        } else if (Array* const array = get_if<Array>(&open_.back())) {
            array->push_back(std::move(value));
        } else {
            get<Object>(open_.back())[path_.back()] = std::move(value);
        }
    }

    bool is_whole() const { return whole_ != 0 && (reader_.position().byte * 7 + whole_) % 3 != 0; }

    std::string pointer() const {
        std::string result;
        for (const std::string& name : path_) {
            result += '/';
            for (const char c : name) {
                result += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
            }
        }
        return result;
    }

    char first_byte() const { return text_[reader_.position().byte]; }

    void check_position() const {
        if (text_.size() < 300) {
            const Position found = reader_.position();
            check(to_text(found) == to_text(plain_position(text_, found.byte)), "the position");
        }
    }

    static void check(bool condition, const char* what) {
        if (!condition) {
            throw std::logic_error(std::string("the reader is wrong in ") + what);
        }
    }

    Reader& reader_;
    std::string_view text_;
    const ParseOptions& options_;
    std::size_t whole_;
    Value root_;
    std::vector<Value> open_;
    std::vector<std::string> path_; ///< for each open container, the present child
};

/// The outcome of a Reader; an error must come again at every further call.
inline std::string outcome_of_reader(Reader& reader, const std::function<Value(Reader&)>& parse) {
    const std::string result = outcome_of([&] { return parse(reader); });
    if (is_error(result)) {
        const std::string again[] = {
            outcome_of([&] { return Value(reader.next() == Token::end); }),
            outcome_of([&] { return reader.value(); }),
            outcome_of([&] { return reader.skip(), Value(); }),
        };
        for (const std::string& other : again) {
            if (other != result) {
                return result + ", and then " + other;
            }
        }
    }
    return result;
}

// ---- Records -----------------------------------------------------------------------------------

/// All records of a stream, and errors, one a line.
/// @param begin_only  without what records say of themselves
template <class Stream>
std::string outcomes_of_records(Stream&& records, bool begin_only = false) {
    std::string result;
    const auto add = [&](const std::string& outcome) {
        result += outcome;
        if constexpr (!std::is_same_v<std::decay_t<Stream>, ValueStream>) {
            if (!begin_only) {
                result += " | " + std::to_string(records.index()) + ' ' +
                          to_text(records.position()) + ' ' + std::string(records.text());
            }
        }
        result += '\n';
    };
    Value value;
    bool more = true;
    while (more) {
        const std::string outcome = outcome_of([&] {
            more = records.next(value);
            return value;
        });
        if (more) {
            add(outcome);
        }
    }
    return result;
}

/// What Framing::lines must give: each line parsed by itself, behind a text of as many bytes and
/// lines as there are before it.
inline std::string outcomes_of_lines(const std::string& text, const ParseOptions& options) {
    std::string result;
    std::size_t index = 0;
    const std::size_t mark = text.rfind("\xEF\xBB\xBF", 0) == 0 ? 3 : 0;
    std::string before = text.substr(0, mark);
    while (before.size() < text.size()) {
        const std::size_t begin = before.size();
        const std::size_t found = text.find('\n', begin);
        std::string line = text.substr(begin, found - begin);
        before += std::string(line.size(), ' ') + '\n';
        if (found != std::string::npos && !line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        const std::string outcome =
            outcome_of([&] { return parse(before.substr(0, begin) + line, options); });
        if (outcome.rfind("error the document is empty ", 0) != 0) {
            result += outcome + " | " + std::to_string(index) + ' ' +
                      to_text(plain_position(text, begin)) + ' ' + line + '\n';
            ++index;
        }
    }
    return result;
}

// ---- Limits ------------------------------------------------------------------------------------

/// The outcomes of a Reader with a limit: token by token, and of the first value as a whole.
inline std::string reader_outcomes_within(const std::string& text, const ParseOptions& options,
                                          std::size_t max_bytes, std::size_t piece) {
    PiecewiseStream stream(text, piece);
    Reader reader(stream, options, max_bytes);
    const std::string tokens = outcome_of_reader(
        reader, [&](Reader& at) { return ValueOfTokens(at, text, options, 0).read(); });
    PiecewiseStream again(text, piece);
    Reader whole(again, options, max_bytes);
    return tokens + '\n' + outcome_of_reader(whole, [](Reader& at) {
               at.next();
               Value value = at.value();
               at.next();
               return value;
           });
}

/// The outcomes of records with a limit.
inline std::string record_outcomes_within(const std::string& text, const Framing& framing,
                                          const ParseOptions& options, std::size_t max_bytes,
                                          std::size_t piece) {
    ReadOptions limited;
    static_cast<ParseOptions&>(limited) = options;
    limited.max_bytes = max_bytes;
    PiecewiseStream stream(text, piece);
    return outcomes_of_records(Records<Value>(stream, framing, limited));
}

/// Whether limits are kept alike in pieces of a size and in one piece. @return what differs
inline std::string disagreement_within(const std::string& text, const ParseOptions& options,
                                       std::size_t max_bytes, std::size_t piece) {
    const auto compared = [&](const std::string& found, const std::string& expected) {
        return found == expected ? std::string()
                                 : found + "\ninstead of\n" + expected + "\nfor at most " +
                                       std::to_string(max_bytes) + " bytes, in pieces of " +
                                       std::to_string(piece) + ", of\n" + text;
    };
    const std::size_t whole = text.size() + 1;
    std::string result = compared(reader_outcomes_within(text, options, max_bytes, piece),
                                  reader_outcomes_within(text, options, max_bytes, whole));
    for (const Framing& framing :
         {Framing(Framing::lines), Framing(Framing::concatenated), Framing::elements()}) {
        if (result.empty()) {
            result = compared(record_outcomes_within(text, framing, options, max_bytes, piece),
                              record_outcomes_within(text, framing, options, max_bytes, whole));
        }
    }
    return result;
}

// ---- All of them -------------------------------------------------------------------------------

/// Where one way of parsing a text differs from another; empty if none does.
class Disagreement {
public:
    Disagreement(std::string text, const ParseOptions& options)
        : text_(std::move(text)),
          options_(options),
          expected_(outcome_of([this] { return parse(text_, options_); })),
          lines_(outcomes_of_lines(text_, options_)) {}

    /// @param pieces  the sizes of the pieces in which streams deliver the text
    std::string find(const std::vector<std::size_t>& pieces) {
        check_readers("from memory", [this](const CheckReader& check) {
            Reader reader(std::string_view(text_), options_);
            check(reader);
        });
        for (const std::size_t piece : pieces) {
            const std::string way = "in pieces of " + std::to_string(piece);
            check_readers(way, [&](const CheckReader& check) {
                PiecewiseStream stream(text_, piece);
                Reader reader(stream, options_);
                check(reader);
            });
            check_lines(way, piece);
            check_concatenated(way, piece);
            check_elements(way, piece);
        }
        return found_;
    }

private:
    using CheckReader = std::function<void(Reader&)>;

    /// @param with_reader  passes a new reader to what it is given
    void check_readers(const std::string& way,
                       const std::function<void(const CheckReader&)>& with_reader) {
        for (const std::size_t whole : {0U, 1U, 2U}) {
            with_reader([&](Reader& reader) {
                compare(
                    "tokens " + way,
                    outcome_of_reader(reader,
                                      [&](Reader& at) {
                                          return ValueOfTokens(at, text_, options_, whole).read();
                                      }),
                    expected_);
            });
        }
        with_reader([&](Reader& reader) {
            compare("value() " + way,
                    outcome_of_reader(reader,
                                      [](Reader& at) {
                                          at.next();
                                          Value value = at.value();
                                          return at.next() == Token::end ? value : Value("no end");
                                      }),
                    expected_);
        });
        with_reader([&](Reader& reader) {
            const bool accepted = !is_error(expected_);
            compare("skip() " + way,
                    outcome_of_reader(reader,
                                      [](Reader& at) {
                                          at.next();
                                          at.skip();
                                          return Value(at.next() == Token::end);
                                      }),
                    accepted ? "true" : expected_);
        });
    }

    void check_lines(const std::string& way, std::size_t piece) {
        PiecewiseStream stream(text_, piece);
        compare("lines " + way,
                outcomes_of_records(Records<Value>(stream, Framing::lines, read_options())),
                lines_);
    }

    void check_concatenated(const std::string& way, std::size_t piece) {
        PiecewiseStream whole(text_, text_.size() + 1);
        PiecewiseStream stream(text_, piece);
        const Framing framing = Framing::concatenated;
        const std::string found =
            outcomes_of_records(Records<Value>(stream, framing, read_options()));
        compare("concatenated " + way, found,
                outcomes_of_records(Records<Value>(whole, framing, read_options())));
        PiecewiseStream same(text_, piece);
        PiecewiseStream other(text_, piece);
        const std::string values = outcomes_of_records(ValueStream(same, options_));
        compare("ValueStream " + way, values,
                outcomes_of_records(Records<Value>(other, framing, read_options()), true));
        const std::string first = values.substr(0, values.find('\n'));
        if (!is_error(expected_)) {
            compare("the only value " + way, values, expected_ + '\n');
        } else if (!is_about_the_end() && !begins_with_value(first)) {
            compare("the first value " + way, first, expected_);
        }
    }

    /// Whether the error of the whole text is one that a stream of values does not have.
    bool is_about_the_end() const {
        const char* const parts[] = {
            "after the end of the value", "that ends the value",  "right after",       "a comment",
            "document is empty",          "begins with // or /*", "within the comment"};
        return std::any_of(std::begin(parts), std::end(parts),
                           [this](const char* part) {
                               return expected_.find(part) != std::string::npos;
                           }) ||
               expected_.find('\n') != std::string::npos;
    }

    /// Whether the text has this value before its error, as 7/a.txt has 7. The error may lie behind
    /// up to three bytes of a character that is cut off, or within a comment.
    bool begins_with_value(const std::string& value) const {
        try {
            parse(text_, options_);
        } catch (const ParserException& error) {
            const std::size_t position = error.get_byte_position();
            for (std::size_t end = position; end != 0; --end) {
                if (position - end <= 3 || text_[end] == '/') {
                    const std::string before =
                        outcome_of([&] { return parse(text_.substr(0, end), options_); });
                    if (!is_error(before)) {
                        return before == value;
                    }
                }
            }
        }
        return false;
    }

    void check_elements(const std::string& way, std::size_t piece) {
        PiecewiseStream whole(text_, text_.size() + 1);
        PiecewiseStream stream(text_, piece);
        const std::string found =
            outcomes_of_records(Records<Value>(stream, Framing::elements(), read_options()));
        compare("elements " + way, found,
                outcomes_of_records(Records<Value>(whole, Framing::elements(), read_options())));
        PiecewiseStream again(text_, piece);
        std::string elements =
            outcomes_of_records(Records<Value>(again, Framing::elements(), read_options()), true);
        if (elements.rfind("no array", 0) == 0) {
            return;
        }
        if (is_error(expected_)) {
            // The elements before the error, and then that.
            const bool ends_with_error = elements.size() > expected_.size() &&
                                         elements.compare(elements.size() - expected_.size() - 1,
                                                          expected_.size(), expected_) == 0;
            compare("the last element " + way, ends_with_error ? expected_ : elements, expected_);
            return;
        }
        std::string expected;
        const Value value = parse(text_, options_);
        for (const Value& element : get<Array>(value)) {
            expected += content_text(element) + '\n';
        }
        compare("each element " + way, elements, expected);
    }

    ReadOptions read_options() const {
        ReadOptions result;
        static_cast<ParseOptions&>(result) = options_;
        return result;
    }

    void compare(const std::string& what, const std::string& found, const std::string& expected) {
        if (found_.empty() && found != expected) {
            found_ = what + ":\n  " + found + "\ninstead of\n  " + expected + "\nfor\n" + text_;
        }
    }

    std::string text_;
    ParseOptions options_;
    std::string expected_; ///< of parse()
    std::string lines_;    ///< of each line
    std::string found_;
};

/// Parses a text in every way, with streams in a few sizes of pieces. @return what differs
inline std::string disagreement(const std::string& text, const ParseOptions& options = {}) {
    std::vector<std::size_t> pieces{1, 2, 3, 7, 64, 1000000};
    if (text.size() <= 80) {
        pieces.resize(text.size() + 1);
        for (std::size_t i = 0; i != pieces.size(); ++i) {
            pieces[i] = i + 1;
        }
    } else if (text.size() > 2000) {
        pieces = {61};
    }
    return Disagreement(text, options).find(pieces);
}

/// The same with one size of pieces.
inline std::string disagreement_in_pieces_of(const std::string& text, const ParseOptions& options,
                                             std::size_t piece) {
    return Disagreement(text, options).find({piece});
}

} // namespace foundation::json::test

#endif
