#include "reading/value_finder.hpp"

#include "text/byte_block.hpp"
#include "text/characters.hpp"
#include "text/skipping.hpp"

namespace foundation::json::detail {

ValueFinder::Status ValueFinder::go_on(const char*& place, const char* end) {
    while (place != end) {
        if (state_ == State::string) {
            place = skip_clean<Block>(place, end);
            if (place == end) {
                break;
            }
        }
        if (!take(*place)) {
            return Status::failed;
        }
        if (state_ == State::complete) {
            place += within_ ? 0 : 1;
            return Status::complete;
        }
        ++place;
    }
    return state_ == State::before ? Status::nothing : Status::begun;
}

ValueFinder::Status ValueFinder::finish() const noexcept {
    switch (state_) {
    case State::before:
        return Status::nothing;
    case State::line_comment:
        return after_comment_ == State::before ? Status::nothing : Status::failed;
    case State::word_end:
    case State::zero:
    case State::digits:
    case State::fraction:
    case State::exponent:
        return open_.empty() ? Status::complete : Status::failed;
    default:
        return Status::failed;
    }
}

void ValueFinder::restart() {
    state_ = State::before;
    open_.clear();
}

bool ValueFinder::take(char byte) {
    within_ = false;
    if (state_ <= State::separator) {
        return take_structure(byte);
    }
    if (state_ <= State::continuation) {
        return take_in_string(byte);
    }
    if (state_ <= State::word_end) {
        return take_in_word(byte);
    }
    if (state_ <= State::exponent) {
        return take_in_number(byte);
    }
    return take_in_comment(byte);
}

// ---- Structure -------------------------------------------------------------------------------

bool ValueFinder::take_structure(char byte) {
    if (is_blank(byte)) {
        return true;
    }
    if (byte == '/') {
        after_comment_ = state_;
        state_ = State::slash;
        return options_.comments;
    }
    switch (state_) {
    case State::first_element:
        return byte == ']' ? close(byte) : take_value(byte);
    case State::element:
        return byte == ']' && options_.trailing_commas ? close(byte) : take_value(byte);
    case State::first_name:
    case State::name:
        if (byte == '}' && (state_ == State::first_name || options_.trailing_commas)) {
            return close(byte);
        }
        is_name_ = true;
        state_ = State::string;
        return byte == '"';
    case State::colon:
        state_ = State::value;
        return byte == ':';
    case State::separator:
        if (byte != ',') {
            return close(byte);
        }
        state_ = open_.back() ? State::element : State::name;
        return true;
    default:
        return take_value(byte);
    }
}

bool ValueFinder::take_value(char byte) {
    switch (byte) {
    case '[':
    case '{':
        return open(byte);
    case '"':
        is_name_ = false;
        state_ = State::string;
        return true;
    case 'n':
    case 't':
    case 'f':
        rest_of_word_ = byte == 'n' ? "ull" : byte == 't' ? "rue" : "alse";
        state_ = State::word;
        return true;
    default:
        state_ = byte == '-' ? State::minus : byte == '0' ? State::zero : State::digits;
        return byte == '-' || is_digit(byte);
    }
}

bool ValueFinder::open(char bracket) {
    if (open_.size() >= options_.max_depth) {
        return false;
    }
    open_.push_back(bracket == '[');
    state_ = bracket == '[' ? State::first_element : State::first_name;
    return true;
}

bool ValueFinder::close(char bracket) {
    if (bracket != (open_.back() ? ']' : '}')) {
        return false;
    }
    open_.pop_back();
    end_value();
    return true;
}

void ValueFinder::end_string() {
    if (is_name_) {
        state_ = State::colon;
    } else {
        end_value();
    }
}

void ValueFinder::end_value() {
    state_ = open_.empty() ? State::complete : State::separator;
}

/// Ends a number or word before a byte.
bool ValueFinder::end_scalar(char byte) {
    end_value();
    if (state_ != State::complete) {
        return take_structure(byte);
    }
    within_ = true;
    return true;
}

// ---- Within scalars --------------------------------------------------------------------------

bool ValueFinder::take_in_string(char byte) {
    const auto number = static_cast<unsigned char>(byte);
    switch (state_) {
    case State::escape:
        expected_ = 4;
        state_ = byte == 'u' ? State::hexadecimal : State::string;
        return byte == 'u' || std::string_view("\"\\/bfnrt").find(byte) != std::string_view::npos;
    case State::hexadecimal:
        state_ = --expected_ == 0 ? State::string : State::hexadecimal;
        return hex_digit(byte) >= 0;
    case State::continuation:
        state_ = --expected_ == 0 ? after_sequence_ : State::continuation;
        if (number < lowest_ || number > highest_) {
            return false;
        }
        lowest_ = 0x80;
        highest_ = 0xBF;
        return true;
    default:
        break;
    }
    if (byte == '"') {
        end_string();
        return true;
    }
    if (byte == '\\') {
        state_ = State::escape;
        return true;
    }
    return is_ascii(byte) ? !is_control(byte) : begin_sequence(number);
}

/// Begins a character beyond ASCII, in a string or comment.
bool ValueFinder::begin_sequence(unsigned char lead) {
    after_sequence_ = state_;
    state_ = State::continuation;
    expected_ = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    lowest_ = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    highest_ = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    return lead >= 0xC2 && lead <= 0xF4;
}

bool ValueFinder::take_in_word(char byte) {
    if (state_ == State::word_end) {
        return !continues_word(byte) && end_scalar(byte);
    }
    if (byte != *rest_of_word_) {
        return false;
    }
    ++rest_of_word_;
    state_ = *rest_of_word_ == '\0' ? State::word_end : State::word;
    return true;
}

bool ValueFinder::take_in_number(char byte) {
    if (is_digit(byte)) {
        switch (state_) {
        case State::zero:
            return false;
        case State::minus:
            state_ = byte == '0' ? State::zero : State::digits;
            return true;
        case State::point:
            state_ = State::fraction;
            return true;
        case State::exponent_letter:
        case State::exponent_sign:
            state_ = State::exponent;
            return true;
        default:
            return true;
        }
    }
    const bool whole = state_ == State::zero || state_ == State::digits;
    if (byte == '.' && whole) {
        state_ = State::point;
        return true;
    }
    if ((byte == 'e' || byte == 'E') && (whole || state_ == State::fraction)) {
        state_ = State::exponent_letter;
        return true;
    }
    if ((byte == '+' || byte == '-') && state_ == State::exponent_letter) {
        state_ = State::exponent_sign;
        return true;
    }
    const bool may_end = whole || state_ == State::fraction || state_ == State::exponent;
    const bool goes_on = continues_word(byte) || byte == '.' || byte == '+' || byte == '-';
    return may_end && !goes_on && end_scalar(byte);
}

bool ValueFinder::take_in_comment(char byte) {
    switch (state_) {
    case State::slash:
        state_ = byte == '/' ? State::line_comment : State::block_comment;
        return byte == '/' || byte == '*';
    case State::line_comment:
        if (byte == '\n') {
            state_ = after_comment_;
            return true;
        }
        break;
    default:
        if (byte == '/' && state_ == State::star) {
            state_ = after_comment_;
            return true;
        }
        state_ = byte == '*' ? State::star : State::block_comment;
    }
    return is_ascii(byte) || begin_sequence(static_cast<unsigned char>(byte));
}

} // namespace foundation::json::detail
