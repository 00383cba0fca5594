#include "reading/record_source.hpp"

#include "reading/parse_text.hpp"
#include "reading/read_error.hpp"
#include "reading/take_value.hpp"
#include "reading/token_reader.hpp"
#include "reading/value_reader.hpp"
#include "text/location.hpp"

#include <foundation/json/convert.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::detail {

void RecordTarget::take(Value& value, const ReadOptions& options) const {
    if (object_ != nullptr) {
        object_->convert(object_->object, value, options);
    } else {
        take_value(*value_, value);
    }
}

bool RecordSource::next(const RecordTarget& record) {
    try {
        if (!found_) {
            text_ = {};
            begin_.reset();
            index_ = next_index_;
            if (!find()) {
                return false;
            }
            found_ = true;
        }
        read(record);
    } catch (const ParserException&) {
        end_record();
        throw;
    } catch (const ReadError&) {
        end_record();
        throw;
    }
    end_record();
    keep_for_reuse();
    return true;
}

std::optional<ReadError> RecordSource::give(const RecordTarget& record, std::string_view text,
                                            const ReadOptions& options) {
    try {
        record.take(reuse_.value, options);
        return std::nullopt;
    } catch (const ConversionError& error) {
        const TextPosition begin = set_bad_text(text.data(), text.data() + text.size());
        return make_read_error({text, begin}, options, error, {}, {});
    }
}

/// Keeps what the caller had before, unless that is long: its memory would be kept for little.
void RecordSource::keep_for_reuse() noexcept {
    constexpr std::size_t longest = 65536;
    if (std::exchange(last_size_, text_.size()) > longest) {
        reuse_.value = Value();
    }
}

void RecordSource::end_record() noexcept {
    found_ = false;
    next_index_ = index_ + 1;
}

Position RecordSource::position() {
    const TextPosition result = begin_ ? *begin_ : locate(text_.data());
    return {result.byte, result.line, result.column};
}

TextPosition RecordSource::set_bad_text(const char* begin, const char* end) noexcept {
    // Now, since what is asked for later must not lie before what was asked for already.
    begin_ = locate(begin);
    text_ = {begin, static_cast<std::size_t>(end - begin)};
    return *begin_;
}

namespace {

/// The names and indexes that a JSON Pointer consists of.
/// @throws std::invalid_argument the text is no JSON Pointer
std::vector<std::string> names_of_pointer(std::string_view pointer) {
    const Value nothing;
    static_cast<void>(json::find(nothing, pointer)); // checks it
    std::vector<std::string> names;
    for (std::size_t i = 0; i != pointer.size(); ++i) {
        if (pointer[i] == '/') {
            names.emplace_back();
        } else if (pointer[i] == '~') {
            names.back() += pointer[++i] == '0' ? '~' : '/';
        } else {
            names.back() += pointer[i];
        }
    }
    return names;
}

/// A source that goes on with another line behind an error.
class LinewiseSource : public RecordSource {
public:
    LinewiseSource(std::istream& stream, const ReadOptions& options)
        : options_(options), cursor_(options_, &stream, options_.max_bytes) {}

protected:
    TextPosition locate(const char* at) noexcept final {
        return window().locate(at != nullptr ? at : window().at());
    }

    /// Reads what there is to read before the next record.
    void prepare() {
        if (!started_) {
            window().begin();
            started_ = true;
        }
        if (skips_line_) {
            window().settle();
        }
        while (skips_line_) {
            const char* at = end_of_line(window().at());
            const bool found = at != window().end();
            at += found ? 1 : 0;
            window().go_to(at);
            skips_line_ = !found && window().refill(at);
        }
    }

    /// @return the next line feed, or the end of the text that is there
    const char* end_of_line(const char* from) noexcept {
        return std::find(from, window().end(), '\n');
    }

    /// @param at  the line of this position belongs to an error
    void skip_line_of(const char* at) noexcept {
        window().go_to(at);
        window().locate(at);
        skips_line_ = at != window().end();
    }

    Window& window() noexcept { return cursor_.input(); }

    const ReadOptions options_;
    Cursor<Window> cursor_;

private:
    bool started_ = false;
    bool skips_line_ = false;
};

// ---- Lines -----------------------------------------------------------------------------------

class LineSource final : public LinewiseSource {
public:
    using LinewiseSource::LinewiseSource;

private:
    bool find() override;
    void read(const RecordTarget& record) override;
    bool find_line();
    bool is_empty();
    void parse_line();
    [[noreturn]] void refuse_long();

    const char* behind_ = nullptr; ///< where the next line begins
    bool is_long_ = false;         ///< whether the line is too long
};

bool LineSource::find() {
    prepare();
    while (find_line()) {
        if (is_long_ || !is_empty()) {
            return true;
        }
        window().go_to(behind_);
    }
    return false;
}

/// Finds the end of a line, or enough of a line that is too long.
/// @return false at the end of the stream
bool LineSource::find_line() {
    const char* begin = window().at();
    const char* end = end_of_line(begin);
    // One byte more, which may belong to the end of the line.
    while (end == window().end() &&
           window().limit_before(begin, end - (end != begin ? 1 : 0)) == nullptr &&
           window().refill(end, begin)) {
        end = end_of_line(end);
    }
    const bool has_end = end != window().end();
    behind_ = end + (has_end ? 1 : 0);
    const bool carriage_return = has_end && end != begin && end[-1] == '\r';
    text_ = {begin, static_cast<std::size_t>(end - begin) - (carriage_return ? 1 : 0)};
    is_long_ = text_.size() > options_.max_bytes;
    text_ = text_.substr(0, options_.max_bytes);
    if (begin == behind_) {
        text_ = {};
        return false;
    }
    return true;
}

/// Whether a line has no value, but space or comments.
bool LineSource::is_empty() {
    const char* const end = text_.data() + text_.size();
    const char* const at = skip_blanks<Block>(text_.data(), end);
    if (at == end || *at != '/') {
        return at == end;
    }
    try {
        return Cursor<WholeText>(options_, text_).skip_space(at) == end;
    } catch (const ParserException&) {
        return false;
    }
}

void LineSource::read(const RecordTarget& record) {
    if (is_long_) {
        refuse_long();
    }
    std::optional<ReadError> error;
    if (!record.read(text_, options_)) {
        parse_line();
        error = give(record, text_, options_);
    }
    window().go_to(behind_);
    if (error) {
        throw ReadError(*error);
    }
}

void LineSource::parse_line() {
    const auto parse_at = [this](const TextPosition& begin) {
        const WholeText line(text_, begin);
        parse_text_again(line, line.begin(), options_, reuse_);
    };
    try {
        parse_at({}); // positions are counted for errors alone
    } catch (const ParserException&) {
        const TextPosition begin = set_bad_text(text_.data(), text_.data() + text_.size());
        window().go_to(behind_);
        parse_at(begin); // throws again
    }
}

/// Throws the error of a line that is too long, of which the rest has not been read.
void LineSource::refuse_long() {
    const char* const limit = text_.data() + text_.size();
    try {
        cursor_.fail_too_long(limit);
    } catch (const ParserException&) {
        set_bad_text(text_.data(), limit);
        skip_line_of(limit);
        throw;
    }
}

// ---- Values that follow each other -----------------------------------------------------------

class ConcatenatedSource final : public LinewiseSource {
public:
    using LinewiseSource::LinewiseSource;

private:
    bool find() override;
    void read(const RecordTarget& record) override;
    void go_on_behind(const ParserException& error) noexcept;
    void end_value(const char* at) noexcept;

    std::optional<ValueReader<Window>> reader_;
};

bool ConcatenatedSource::find() {
    prepare();
    try {
        window().go_to(cursor_.skip_space_again(window().at()));
    } catch (const ParserException& error) {
        go_on_behind(error);
        throw;
    }
    return window().at() != cursor_.end();
}

void ConcatenatedSource::read(const RecordTarget& record) {
    window().keep(window().at());
    try {
        if (!reader_) {
            reader_.emplace(cursor_);
        }
        const char* const end = reader_->read_again(window().at(), reuse_);
        const char* const begin = window().kept();
        cursor_.check_length(begin, end);
        cursor_.expect_separation(end, end[-1]);
        const std::string_view text(begin, static_cast<std::size_t>(end - begin));
        const std::optional<ReadError> error = give(record, text, options_);
        text_ = text;
        window().go_to(end);
        window().release();
        if (error) {
            throw ReadError(*error);
        }
    } catch (const ReadError&) {
        throw;
    } catch (const ParserException& error) {
        go_on_behind(error);
        throw;
    } catch (...) {
        end_value(window().kept());
        throw;
    }
}

void ConcatenatedSource::go_on_behind(const ParserException& error) noexcept {
    const char* const at = window().at_byte(error.get_byte_position());
    const char* const begin = window().kept() != nullptr ? window().kept() : at;
    set_bad_text(begin, at);
    end_value(at);
    skip_line_of(at);
}

/// @param at  where to go on
void ConcatenatedSource::end_value(const char* at) noexcept {
    window().go_to(at);
    reader_.reset();
    window().release();
    cursor_.restart();
}

// ---- Elements of an array --------------------------------------------------------------------

class ElementSource final : public RecordSource {
public:
    ElementSource(std::istream& stream, const std::string& pointer, const ReadOptions& options)
        : pointer_(pointer),
          names_(names_of_pointer(pointer)),
          options_(options),
          tokens_(options_, &stream, options_.max_bytes) {}

private:
    TextPosition locate(const char* at) noexcept override {
        return at != nullptr ? tokens_.position_of(at) : tokens_.position();
    }
    bool find() override;
    void read(const RecordTarget& record) override;
    bool find_element();
    void find_array();
    void find_member(const std::string& name);
    void find_index(const std::string& name);
    void skip_child();
    [[noreturn]] void fail(const char* problem);

    const std::string pointer_;
    const std::vector<std::string> names_;
    const ReadOptions options_;
    TokenReader tokens_;
    bool ended_ = false;

    // How far the way to the array has been gone, since every step may fail and be tried again.
    std::size_t step_ = 0;          ///< the name that is looked for
    Token container_ = Token::none; ///< within this
    std::size_t passed_ = 0;        ///< elements of an array
    bool found_name_ = false;       ///< which has not been compared
    bool skips_ = false;            ///< a child that is not looked for
    std::size_t depth_ = 0;         ///< of the array, once it is found
    bool is_closed_ = false;        ///< the array
    const char* problem_ = nullptr; ///< why there is no array
};

bool ElementSource::find() {
    try {
        ended_ = ended_ || !find_element();
        return !ended_;
    } catch (const ParserException&) {
        ended_ = true;
        set_bad_text(tokens_.error(), tokens_.error());
        throw;
    } catch (const ConversionError&) {
        ended_ = true;
        throw;
    }
}

bool ElementSource::find_element() {
    if (problem_ != nullptr) {
        fail(problem_);
    }
    if (depth_ == 0) {
        find_array();
    }
    if (!is_closed_) {
        tokens_.next();
        is_closed_ = tokens_.depth() < depth_;
    }
    // The rest of the document is checked.
    while (is_closed_ && tokens_.token() != Token::end) {
        tokens_.next();
    }
    return !is_closed_;
}

void ElementSource::read(const RecordTarget& record) {
    std::optional<ReadError> error;
    try {
        tokens_.value(reuse_, [&] {
            text_ = tokens_.text_of_value();
            error = give(record, text_, options_);
        });
    } catch (const ParserException&) {
        ended_ = true;
        const std::string_view text = tokens_.text_of_value();
        set_bad_text(text.data(), text.data() + text.size());
        throw;
    }
    if (error) {
        throw ReadError(*error);
    }
}

void ElementSource::find_array() {
    for (; step_ != names_.size(); ++step_) {
        if (container_ == Token::none) {
            container_ = tokens_.next();
            passed_ = 0;
        }
        if (container_ == Token::begin_object) {
            find_member(names_[step_]);
        } else if (container_ == Token::begin_array) {
            find_index(names_[step_]);
        } else {
            fail("there is no value");
        }
        container_ = Token::none;
    }
    if (tokens_.next() != Token::begin_array) {
        fail(tokens_.token() == Token::end_array ? "there is no value" : "the value is no array");
    }
    depth_ = tokens_.depth();
}

/// Goes to the name of a member of the present object.
void ElementSource::find_member(const std::string& name) {
    for (;; skips_ = true) {
        skip_child();
        if (!std::exchange(found_name_, false) && tokens_.next() == Token::end_object) {
            fail("there is no value");
        }
        found_name_ = true; // if memory runs out, it is decoded again
        const bool is_other = tokens_.decoded() != name;
        found_name_ = false;
        if (!is_other) {
            return;
        }
    }
}

/// Goes before an element of the present array.
void ElementSource::find_index(const std::string& name) {
    if (!looks_like_index(name)) {
        fail("there is no value");
    }
    for (;; skips_ = true) {
        skip_child();
        if (std::to_string(passed_) == name) {
            return;
        }
        if (tokens_.next() == Token::end_array) {
            fail("there is no value");
        }
    }
}

/// Skips the present child, if it is not looked for.
void ElementSource::skip_child() {
    if (skips_) {
        tokens_.skip();
        skips_ = false;
        ++passed_;
    }
}

void ElementSource::fail(const char* problem) {
    problem_ = problem; // if memory runs out, it is told at the next call
    throw ConversionError(pointer_, problem);
}

} // namespace

std::unique_ptr<RecordSource> make_record_source(std::istream& stream, const Framing& framing,
                                                 const ReadOptions& options) {
    if (framing.is_elements()) {
        return std::make_unique<ElementSource>(stream, framing.pointer(), options);
    }
    if (framing.kind() == Framing::lines) {
        return std::make_unique<LineSource>(stream, options);
    }
    return std::make_unique<ConcatenatedSource>(stream, options);
}

} // namespace foundation::json::detail
