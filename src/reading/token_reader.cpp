#include "reading/token_reader.hpp"

#include "reading/value_reader.hpp"
#include "text/location.hpp"

#include <algorithm>
#include <utility>

namespace foundation::json::detail {

namespace {

Value value_of(const NumberContent& content) {
    switch (content.type) {
    case NumberContent::Type::int64:
        return content.int64;
    case NumberContent::Type::uint64:
        return content.uint64;
    default:
        return content.number;
    }
}

} // namespace

// ---- What the window gives up ----------------------------------------------------------------

void TokenReader::forget(const Context& context, const char* end) {
    const std::size_t first = context.begin.byte;
    const std::size_t last = first + static_cast<std::size_t>(end - context.text.data());
    kept_.resize(levels_.size());
    for (std::size_t level = 0; level != levels_.size(); ++level) {
        forget_of(level, context, first, last);
    }
}

/// @param first  the first byte of the input that is there
/// @param last   the first byte that will be
void TokenReader::forget_of(std::size_t level, const Context& context, std::size_t first,
                            std::size_t last) {
    const Level& open = levels_.begin()[level];
    const auto is_given_up = [=](std::size_t byte) { return byte >= first && byte < last; };
    if (is_given_up(open.opening)) {
        kept_[level].opening = window().locate(window().at_byte(open.opening));
    }
    if (is_given_up(open.name)) {
        const char* const text = context.text.data() + (open.name - first);
        decode({text, text + open.name_size, StringError::none, open.name_is_escaped},
               kept_[level].name);
    }
}

Opening TokenReader::opening() const {
    if (levels_.empty()) {
        return {};
    }
    const Level& level = levels_.top();
    const Context context = window().context();
    const TextPosition position = level.opening < context.begin.byte
                                      ? kept_[levels_.size() - 1].opening
                                      : context.position_of(window().at_byte(level.opening));
    return {level.is_array ? '[' : '{', position};
}

void TokenReader::append_name(std::string& pointer, std::size_t level) const {
    const Level& open = levels_.begin()[level];
    std::string name;
    if (open.name < window().context().begin.byte) {
        name = kept_[level].name;
    } else {
        const char* const text = window().at_byte(open.name);
        decode({text, text + open.name_size, StringError::none, open.name_is_escaped}, name);
    }
    append_name_token(pointer, name);
}

std::string TokenReader::pointer() const {
    std::string result;
    for (std::size_t level = 0; level != levels_.size(); ++level) {
        if (levels_.begin()[level].elements != 0) {
            append_index_token(result, levels_.begin()[level].elements - 1);
        } else if (levels_.begin()[level].name != Level::no_name) {
            append_name(result, level);
        }
    }
    return result;
}

// ---- Structure -------------------------------------------------------------------------------

// Functions take the position where they begin to read. State and position are stored together,
// once a step is done: if a later one fails, the next call goes on from there.

[[gnu::always_inline]] inline Token TokenReader::read_next() {
    if (state_ >= State::first_rare) {
        return read_rare();
    }
    const char* at = cursor_.skip_space(window().at());
    switch (state_) {
    case State::separator_in_array:
        if (!cursor_.comma(at, ']', OpeningOf{*this})) {
            return close(at, Token::end_array);
        }
        go_on(at, State::element);
        at = cursor_.skip_space(at);
        return cursor_.ends_behind_comma(at, ']') ? close(at, Token::end_array)
                                                  : read_value(at, true);
    case State::separator_in_object:
        if (!cursor_.comma(at, '}', OpeningOf{*this})) {
            return close(at, Token::end_object);
        }
        go_on(at, State::name);
        at = cursor_.skip_space(at);
        return cursor_.ends_behind_comma(at, '}') ? close(at, Token::end_object)
                                                  : read_name(at, true);
    case State::member:
        return read_value(at, false);
    case State::first_element:
        return cursor_.is_at(at, ']') ? close(at, Token::end_array) : read_value(at, false);
    default: // first_name
        return cursor_.is_at(at, '}') ? close(at, Token::end_object) : read_name(at, false);
    }
}

Token TokenReader::read() {
    try {
        return read_next();
    } catch (const ParserException& error) {
        fail(error);
        throw;
    } catch (...) {
        interrupt();
        throw;
    }
}

/// The same at the begin and end of the document, and where an earlier call has failed.
[[gnu::noinline]] Token TokenReader::read_rare() {
    if (state_ == State::failed) {
        std::rethrow_exception(error_);
    }
    if (state_ == State::start) {
        window().begin();
        state_ = State::root;
    }
    const char* at = cursor_.skip_space_again(window().at());
    switch (state_) {
    case State::interrupted:
        go_on(at, interrupted_);
        return read();
    case State::root:
        return read_value(at, false);
    case State::element:
        return cursor_.ends_behind_comma(at, ']') ? close(at, Token::end_array)
                                                  : read_value(at, true);
    case State::name:
        return cursor_.ends_behind_comma(at, '}') ? close(at, Token::end_object)
                                                  : read_name(at, true);
    case State::colon:
        at = cursor_.colon(at, OpeningOf{*this});
        go_on(at, State::member);
        return read_value(cursor_.skip_space(at), false);
    case State::behind:
        cursor_.expect_end(at, last_);
        begin_ = at;
        go_on(at, State::ended);
        return token_ = Token::end;
    default: // ended
        return token_ = Token::end;
    }
}

[[gnu::cold]] void TokenReader::interrupt() noexcept {
    token_ = Token::none;
    begin_ = nullptr; // the text may have moved
    if (state_ < State::interrupted && state_ != State::start) {
        interrupted_ = state_;
        state_ = State::interrupted;
    }
}

/// @param error  what is being handled
[[gnu::cold]] void TokenReader::fail(const ParserException& error) noexcept {
    if (state_ != State::failed) {
        interrupt();
        state_ = State::failed;
        error_ = std::current_exception();
        begin_ = end_of_value_ = window().at_byte(error.get_byte_position());
    }
}

inline void TokenReader::go_on(const char* at, State state) noexcept {
    window().go_to(at);
    state_ = state;
}

[[gnu::always_inline]] inline Token TokenReader::read_name(const char* at, bool behind_comma) {
    string_ = cursor_.name(at, OpeningOf{*this}, behind_comma);
    begin_ = string_.text - 1;
    cursor_.check_length(begin_, string_.end + 1);
    if (cursor_.options().duplicate_names == ParseOptions::DuplicateNames::error) {
        check_duplicate();
    }
    Level& level = levels_.top();
    level.name = window().byte_of(string_.text);
    level.name_size = string_.size();
    level.name_is_escaped = string_.escaped;
    const char* const end = string_.end + 1;
    if (cursor_.is_at(end, ':')) {
        go_on(end + 1, State::member);
    } else {
        go_on(end, State::colon);
    }
    return token_ = Token::name;
}

[[gnu::noinline]] void TokenReader::check_duplicate() {
    window().go_to(begin_);
    std::string name;
    decode(string_, name);
    names_.resize(levels_.size());
    if (!names_.back().insert(std::move(name)).second) {
        cursor_.fail_duplicate(string_);
    }
}

// ---- Values ----------------------------------------------------------------------------------

[[gnu::always_inline]] inline Token TokenReader::read_value(const char* at, bool behind_comma) {
    switch (at != cursor_.end() ? *at : '\0') {
    case '"':
        string_ = cursor_.string(at);
        begin_ = string_.text - 1;
        cursor_.check_length(begin_, string_.end + 1);
        return end_value(string_.end + 1, Token::string);
    case '[':
        return open(at, Token::begin_array);
    case '{':
        return open(at, Token::begin_object);
    case 'n':
        at = cursor_.word(at, "null");
        begin_ = at - 4;
        return end_value(at, Token::null);
    case 't':
        at = cursor_.word(at, "true");
        begin_ = at - 4;
        return end_value(at, Token::boolean);
    case 'f':
        at = cursor_.word(at, "false");
        begin_ = at - 5;
        return end_value(at, Token::boolean);
    default:
        if (at == cursor_.end() || !begins_number(*at)) {
            cursor_.fail_without_value(at, OpeningOf{*this}, behind_comma);
        }
        begin_ = at;
        number_end_ = cursor_.skip_usual_number(at, number_room_);
        if (number_end_ == nullptr) {
            read_any_number(at);
        }
        return end_value(number_end_, Token::number);
    }
}

/// The number itself is computed once it is asked for, but where it may be too large.
[[gnu::noinline]] void TokenReader::read_any_number(const char* at) {
    const NumberToken token = cursor_.number(at);
    begin_ = at;
    number_end_ = token.end;
    cursor_.check_length(at, token.end);
    if (may_be_too_large(token) &&
        content_of_number(at, token, false).type == NumberContent::Type::too_large) {
        cursor_.fail_too_large(at, token.end);
    }
}

NumberContent TokenReader::number_content() const noexcept {
    return content_of_number(begin_, scan_number(begin_, number_end_),
                             cursor_.options().integers == ParseOptions::Integers::exact);
}

/// Goes on behind a value.
[[gnu::always_inline]] inline Token TokenReader::end_value(const char* end, Token token) noexcept {
    if (levels_.empty()) {
        last_ = end[-1];
        go_on(end, State::behind);
    } else {
        Level& level = levels_.top();
        level.elements += level.is_array ? 1 : 0;
        go_on(end, level.is_array ? State::separator_in_array : State::separator_in_object);
    }
    return token_ = token;
}

[[gnu::always_inline]] inline Token TokenReader::open(const char* at, Token token) {
    const char* const behind = cursor_.open(at, levels_.size());
    const bool array = token == Token::begin_array;
    if (levels_.full()) {
        levels_.grow();
    }
    if (!levels_.empty() && levels_.top().is_array) {
        ++levels_.top().elements;
    }
    levels_.push({window().byte_of(at), Level::no_name, 0, 0, array, false});
    begin_ = at;
    go_on(behind, array ? State::first_element : State::first_name);
    return token_ = token;
}

[[gnu::always_inline]] inline Token TokenReader::close(const char* at, Token token) {
    levels_.pop();
    if (!names_.empty()) {
        names_.resize(std::min(names_.size(), levels_.size()));
    }
    begin_ = at;
    if (levels_.empty()) {
        last_ = *at;
        go_on(at + 1, State::behind);
    } else {
        go_on(at + 1,
              levels_.top().is_array ? State::separator_in_array : State::separator_in_object);
    }
    return token_ = token;
}

// ---- Whole values ----------------------------------------------------------------------------

bool TokenReader::find_value() {
    skips_ = false;
    if (state_ >= State::interrupted) {
        read();
    }
    if (token_ == Token::name) {
        read();
    }
    switch (token_) {
    case Token::none:
    case Token::end_array:
    case Token::end_object:
    case Token::end:
        return false;
    default:
        return true;
    }
}

void TokenReader::skip() {
    if (!skips_) {
        if (!find_value() || !is_at_container()) {
            return;
        }
        skips_ = true;
        skipped_to_ = levels_.size() - 1;
    }
    while (levels_.size() != skipped_to_) {
        read();
    }
    skips_ = false;
}

std::string TokenReader::decoded() const {
    std::string result;
    decode(string_, result);
    return result;
}

Value TokenReader::scalar() const {
    switch (token_) {
    case Token::string:
        return decoded();
    case Token::number:
        return value_of(number_content());
    case Token::boolean:
        return boolean();
    default:
        return Null();
    }
}

Value TokenReader::value() {
    Value result;
    read_value(result, nullptr);
    go_behind();
    return result;
}

/// Reads the value that begins here. Its text is kept, until go_back() or go_behind().
/// @param reuse  what the target belongs to, if its memory is used again
void TokenReader::read_value(Value& target, Reuse* reuse) {
    if (is_at_container()) {
        read_container(target, reuse);
    } else {
        begin_of_value_ = begin_;
        end_of_value_ = window().at();
        target = scalar();
    }
}

/// Reads the array or object that has just been opened.
void TokenReader::read_container(Value& target, Reuse* reuse) {
    window().keep(begin_);
    try {
        ValueReader<Window> reader(cursor_, levels_.size() - 1);
        end_of_value_ =
            reuse != nullptr ? reader.read_again(begin_, *reuse) : reader.read(begin_, target);
        begin_of_value_ = window().kept();
        cursor_.check_length(begin_of_value_, end_of_value_);
    } catch (const ParserException& error) {
        begin_of_value_ = window().kept();
        go_back();
        fail(error);
        throw;
    } catch (...) {
        go_back();
        throw;
    }
}

/// Goes back to where a value begins that has been read.
void TokenReader::go_back() noexcept {
    if (is_at_container()) {
        begin_ = window().kept();
        window().go_to(begin_ + 1);
        window().release();
        cursor_.restart();
    }
}

/// Goes to where a value ends that has been read.
void TokenReader::go_behind() {
    if (is_at_container()) {
        window().release();
        close(end_of_value_ - 1,
              token_ == Token::begin_array ? Token::end_array : Token::end_object);
    }
}

} // namespace foundation::json::detail
