/// @file
/// The input of a Cursor that comes from a stream, a piece at a time.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_WINDOW_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_WINDOW_HPP

#include "grammar/position.hpp"

#include <algorithm>
#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string_view>

namespace foundation::json::detail {

/// What a Window tells before it gives up text.
class WindowListener {
public:
    /// @param context  all text that is there, and where it begins
    /// @param end      the text before this is given up
    virtual void forget(const Context& context, const char* end) = 0;

protected:
    ~WindowListener() = default;
};

/// A window on the text of a stream, or on a text in memory.
///
/// It holds what has come and is still needed: the text from the cursor's position or, if that is
/// earlier, from the position marked by keep() on, and a line's worth before it for errors to
/// quote. It grows only where that text fills it.
class Window {
public:
    static constexpr bool refills = true;

    /// Reads from a stream, which must outlive this object; nothing yet.
    /// @param most_kept  how long the text may be that is kept, or a token
    explicit Window(std::istream* stream, std::size_t most_kept = unlimited) noexcept
        : stream_(stream), most_kept_(most_kept) {}

    /// @param text  must outlive this object; nothing is read
    explicit Window(std::string_view text) noexcept;

    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    void set_listener(WindowListener* listener) noexcept { listener_ = listener; }

    /// Where reading goes on: what go_to() has set or, if text has been read since, from where on
    /// that was needed. So it is right after every exception.
    const char* at() const noexcept { return at_; }
    void go_to(const char* at) noexcept { at_ = at; }

    /// The end of the text that is there.
    const char* end() const noexcept { return end_; }

    /// Reads what may be a byte order mark and goes behind it. To be called before all else, until
    /// it throws nothing.
    void begin();

    /// Reads more text. Waits only for the first byte of it.
    ///
    /// All pointers into the text become invalid, but for the arguments.
    /// @param at     where the text is needed from
    /// @param token  the same for a token that has been begun, at or before `at`
    /// @return false at the end of the input
    /// @throws std::bad_alloc                  nothing has changed then
    /// @throws whatever reading a stream does  nothing has changed but the state of the stream
    bool refill(const char*& at, const char*& token);
    bool refill(const char*& at) {
        const char* token = at;
        return refill(at, token);
    }

    // ---- Text that stays ---------------------------------------------------------------------

    /// Keeps the text from a position on, until release().
    void keep(const char* from) noexcept { kept_ = from; }
    void release() noexcept { kept_ = nullptr; }

    /// Where the text begins that is kept; what lies at an offset from there stays at that offset.
    const char* kept() const noexcept { return kept_; }

    /// The limit of a text, if it is longer than allowed; else null.
    const char* limit_before(const char* begin, const char* end) const noexcept {
        return static_cast<std::size_t>(end - begin) > most_kept_ ? begin + most_kept_ : nullptr;
    }
    std::size_t most_kept() const noexcept { return most_kept_; }

    // ---- Positions ---------------------------------------------------------------------------

    /// What is known of the input around an error, with the line that it is in, for quoted_behind
    /// bytes behind it. Moves no text; settle() must be called before text is read again.
    /// @throws whatever reading a stream does
    Context context_for_error(const char* at);

    /// Prepares for reading on from at() behind an error.
    void settle();

    Context context() const noexcept {
        Context result({text_, static_cast<std::size_t>(end_ - text_)}, position_);
        result.marked = marked_;
        result.mark = mark_;
        return result;
    }

    /// The position of a byte in the input. Asked in ascending order, it scans no byte twice.
    TextPosition locate(const char* at) noexcept;

    /// The number of bytes of the input before a position in the text.
    std::size_t byte_of(const char* at) const noexcept {
        return position_.byte + static_cast<std::size_t>(at - text_);
    }

    /// The position in the text of a byte of the input, or the nearest one that is there: the
    /// exceptions of a stream may be about another text.
    const char* at_byte(std::size_t byte) const noexcept {
        const std::size_t offset = byte - std::min(byte, position_.byte);
        return text_ + std::min(offset, static_cast<std::size_t>(end_ - text_));
    }

private:
    std::size_t room() const noexcept;
    void make_room(const char* needed);
    bool take(std::size_t most);
    void forget_before(const char* begin);
    void move_to(char* target) noexcept;

    std::istream* stream_ = nullptr; ///< null if the text is in memory
    WindowListener* listener_ = nullptr;
    std::size_t most_kept_ = unlimited;
    bool ended_ = false;
    const char* text_ = nullptr; ///< what is there
    const char* end_ = nullptr;
    const char* kept_ = nullptr;
    const char* at_ = nullptr;
    TextPosition position_; ///< of the first byte that is there
    const char* marked_ = nullptr;
    TextPosition mark_; ///< of the byte at marked_
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
};

} // namespace foundation::json::detail

#endif
