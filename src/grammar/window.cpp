#include "grammar/window.hpp"

#include "grammar/streams.hpp"

#include <algorithm>
#include <cstring>
#include <istream>
#include <streambuf>
#include <utility>

namespace foundation::json::detail {

namespace {

/// The most bytes that are taken from a stream at a time.
constexpr std::size_t most_at_once = 65536;

/// With less room than this behind the text, it is moved.
constexpr std::size_t least_room = 4096;

/// Room behind the text that only context_for_error() uses, so that the text need not move then.
constexpr std::size_t reserve = quoted_behind;

/// Text before the one that is needed, for errors to quote: whole characters.
constexpr std::size_t quoted_before = most_quoted + 4;

} // namespace

Window::Window(std::string_view text) noexcept
    : ended_(true),
      text_(text.data()),
      end_(text.data() + text.size()),
      at_(text.data()),
      marked_(text.data()) {}

void Window::begin() {
    const auto may_be_marked = [this] {
        const auto size = static_cast<std::size_t>(end_ - text_);
        return size < byte_order_mark.size() &&
               std::string_view(text_, size) == byte_order_mark.substr(0, size);
    };
    do {
        at_ = text_;
    } while (may_be_marked() && refill(at_));
    at_ += mark_length({text_, static_cast<std::size_t>(end_ - text_)});
}

bool Window::refill(const char*& at, const char*& token) {
    at_ = token;
    if (ended_) {
        return false;
    }
    begin_reading(*stream_);
    if (room() < least_room) {
        const std::ptrdiff_t ahead = at - token;
        make_room(kept_ != nullptr ? std::min(kept_, token) : token);
        token = at_;
        at = at_ + ahead;
    }
    return take(std::min(room(), most_at_once));
}

void Window::settle() {
    if (!ended_ && room() < least_room) {
        make_room(at_);
    }
}

/// How many bytes may be read without moving the text.
std::size_t Window::room() const noexcept {
    const auto used = static_cast<std::size_t>(end_ - buffer_.get());
    return buffer_ == nullptr || used + reserve > capacity_ ? 0 : capacity_ - reserve - used;
}

/// Moves the text that is needed to the begin of the buffer, or to a buffer of another size: twice
/// that text, so that each byte is moved a few times at most.
void Window::make_room(const char* needed) {
    auto before = std::min(static_cast<std::size_t>(needed - text_), quoted_before);
    if (byte_of(needed - before) < byte_order_mark.size()) {
        before = static_cast<std::size_t>(needed - text_); // a part of it would not be recognized
    }
    const auto size = static_cast<std::size_t>(end_ - needed) + before;
    const std::size_t wanted = 2 * size + most_at_once + reserve;
    std::unique_ptr<char[]> other;
    if (2 * (size + reserve) > capacity_ || wanted < capacity_ / 4) {
        // GCOVR_EXCL_BR_START: the check of the size is the compiler's
        other.reset(new char[wanted]);
        // GCOVR_EXCL_BR_STOP
    }
    forget_before(needed - before);
    move_to(other != nullptr ? other.get() : buffer_.get());
    if (other != nullptr) {
        buffer_ = std::move(other);
        capacity_ = wanted;
    }
}

/// Takes what the stream has at hand; waits only if that is nothing.
/// @return false at the end
bool Window::take(std::size_t most) {
    char* const to = buffer_.get() + (end_ - buffer_.get());
    std::streamsize count = 0;
    try {
        std::streambuf& buffer = *stream_->rdbuf();
        using Traits = std::streambuf::traits_type;
        if (!Traits::eq_int_type(buffer.sgetc(), Traits::eof())) {
            count = std::clamp<std::streamsize>(buffer.in_avail(), 1,
                                                static_cast<std::streamsize>(most));
            count = buffer.sgetn(to, count);
        }
    } catch (...) {
        set_state(*stream_, std::ios_base::badbit);
        throw;
    }
    if (count == 0) {
        end_reading(*stream_);
        ended_ = true;
        return false;
    }
    end_ += count;
    return true;
}

void Window::forget_before(const char* begin) {
    if (listener_ != nullptr) {
        listener_->forget(context(), begin);
    }
    position_ = context().position_of(begin);
    text_ = begin;
    if (marked_ < begin) {
        marked_ = begin;
        mark_ = position_;
    }
}

TextPosition Window::locate(const char* at) noexcept {
    const TextPosition result = context().position_of(at);
    if (at > marked_) {
        marked_ = at;
        mark_ = result;
    }
    return result;
}

/// Moves the text, and all that points into it.
void Window::move_to(char* target) noexcept {
    const auto size = static_cast<std::size_t>(end_ - text_);
    if (size != 0) {
        std::memmove(target, text_, size);
    }
    const char* const old = text_;
    const auto moved = [old, target](const char* from) {
        return old != nullptr ? target + (from - old) : target;
    };
    at_ = moved(at_);
    kept_ = kept_ != nullptr ? moved(kept_) : nullptr;
    marked_ = moved(marked_);
    text_ = target;
    end_ = target + size;
}

Context Window::context_for_error(const char* at) {
    // Where earlier errors have used up the room, and settle() has not been called since, less is
    // quoted.
    const auto wanted = [this, at] {
        const auto behind = std::min(static_cast<std::size_t>(end_ - at), quoted_behind);
        const auto left = capacity_ - static_cast<std::size_t>(end_ - buffer_.get());
        return std::min(quoted_behind - behind, left);
    };
    while (!ended_ && wanted() != 0 && std::find(at, end_, '\n') == end_) {
        begin_reading(*stream_);
        take(wanted());
    }
    return context();
}

} // namespace foundation::json::detail
