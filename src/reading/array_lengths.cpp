#include "reading/array_lengths.hpp"

#include "grammar/comments.hpp"
#include "grammar/strings.hpp"
#include "text/byte_block.hpp"

#include <utility>
#include <vector>

namespace foundation::json::detail {

/// One scan, which counts the elements of an array and of the long arrays within it.
class ArrayLengths::Count {
public:
    /// @param deepest  how many levels more the text may have
    Count(ArrayLengths& lengths, const char* element, const char* end, std::size_t deepest)
        : lengths_(lengths), at_(element), end_(end), deepest_(deepest) {}

    /// The number of elements up to the end of the array.
    std::size_t run() {
        while (!done_ && at_ != end_) {
            if (end_ - at_ >= static_cast<std::ptrdiff_t>(Block::size)) {
                take_block();
            } else {
                const char* const byte = at_++;
                take(byte);
            }
        }
        return (open_.empty() ? commas_ : open_.front().commas_before) + 1;
    }

private:
    struct Container {
        const char* begin;
        std::size_t commas_before; ///< of the enclosing container, before this one
    };

    void take_block() {
        const char* const block = at_;
        at_ += Block::size;
        for (auto found = Block(block).structural(); !found.empty(); found.remove_first()) {
            if (done_) {
                return;
            }
            const char* const byte = block + found.first();
            if (*byte == '"' || *byte == '/') {
                at_ = byte + 1; // take() moves it behind the string or comment
                take(byte);
                return;
            }
            take(byte);
        }
    }

    void take(const char* byte) {
        switch (*byte) {
        case '[':
        case '{':
            open(byte);
            break;
        case ']':
        case '}':
            close(byte);
            break;
        case ',':
            count(byte);
            break;
        case '"':
            skip_string();
            break;
        case '/':
            if (lengths_.options_.comments) {
                skip_comment();
            }
            break;
        default:
            break;
        }
    }

    void count(const char* comma) {
        done_ = comma - 1 == last_comma_;
        last_comma_ = comma;
        ++commas_;
    }

    void open(const char* bracket) {
        if (open_.size() == deepest_) {
            done_ = true;
            return;
        }
        open_.push_back({bracket, std::exchange(commas_, 0)});
    }

    void close(const char* bracket) {
        if (open_.empty()) {
            done_ = true;
            return;
        }
        const Container closed = open_.back();
        open_.pop_back();
        if (commas_ >= least - 1) {
            lengths_.known_.emplace(closed.begin, Known{bracket, commas_ + 1});
        }
        commas_ = closed.commas_before;
    }

    void skip_string() {
        const StringToken token = scan_string<Block>(at_, end_);
        done_ = token.error != StringError::none;
        at_ = done_ ? end_ : token.end + 1;
    }

    void skip_comment() {
        if (at_ != end_ && begins_comment(*at_)) {
            at_ = scan_comment(at_ + 1, end_, *at_).end;
        }
    }

    ArrayLengths& lengths_;
    const char* at_;
    const char* end_;
    std::size_t deepest_;
    std::vector<Container> open_; ///< containers within the array that is counted
    std::size_t commas_ = 0;      ///< so far, in the innermost open container
    const char* last_comma_ = nullptr;
    bool done_ = false;
};

std::size_t ArrayLengths::length(const char* element, const char* end, std::size_t before,
                                 std::size_t depth) {
    // The array itself, if it is known, begins last of all that are known around the element. Those
    // that end before the element have been read, and nobody asks for them any more.
    for (auto known = known_.lower_bound(element); known != known_.begin();) {
        --known;
        const Known found = known->second;
        known = known_.erase(known);
        if (found.end >= element) {
            return found.length;
        }
    }
    return before + Count(*this, element, end, options_.max_depth - depth).run();
}

} // namespace foundation::json::detail
