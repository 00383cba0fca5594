#include "reading/array_lengths.hpp"

#include "text/byte_block.hpp"
#include "text/skipping.hpp"

#include <utility>
#include <vector>

namespace foundation::json::detail {

/// One scan, which counts the elements of an array and of the long arrays within it.
class ArrayLengths::Count {
public:
    Count(ArrayLengths& lengths, const char* element) : lengths_(lengths), place_(element) {}

    /// The number of elements up to the end of the array.
    std::size_t run() {
        while (!done_ && place_ != lengths_.end_) {
            if (lengths_.end_ - place_ >= static_cast<std::ptrdiff_t>(Block::size)) {
                take_block();
            } else {
                const char* const byte = place_++;
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
        const char* const block = place_;
        place_ += Block::size;
        for (auto found = Block(block).structural(); !found.empty(); found.remove_first()) {
            if (done_) {
                return;
            }
            const char* const byte = block + found.first();
            if (*byte == '"' || *byte == '/') {
                place_ = byte + 1; // take() moves it behind the string or comment
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
            open_.push_back({byte, std::exchange(commas_, 0)});
            break;
        case ']':
        case '}':
            close(byte);
            break;
        case ',':
            ++commas_;
            break;
        case '"':
            skip_string();
            break;
        case '/':
            if (lengths_.comments_) {
                skip_comment();
            }
            break;
        default:
            break;
        }
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
        const char* const end = lengths_.end_;
        for (; place_ != end; ++place_) {
            place_ = skip_clean<Block>(place_, end);
            if (place_ == end) {
                return;
            }
            if (*place_ == '"') {
                ++place_;
                return;
            }
            if (*place_ == '\\' && place_ + 1 != end) {
                ++place_;
            }
        }
    }

    void skip_comment() {
        const char* const end = lengths_.end_;
        if (place_ == end || (*place_ != '/' && *place_ != '*')) {
            return;
        }
        const bool to_line_end = *place_ == '/';
        for (++place_; place_ != end; ++place_) {
            const bool ends = to_line_end ? *place_ == '\n'
                                          : *place_ == '*' && end - place_ > 1 && place_[1] == '/';
            if (ends) {
                place_ += to_line_end ? 1 : 2;
                return;
            }
        }
    }

    ArrayLengths& lengths_;
    const char* place_;
    std::vector<Container> open_; ///< containers within the array that is counted
    std::size_t commas_ = 0;      ///< so far, in the innermost open container
    bool done_ = false;
};

std::size_t ArrayLengths::length(const char* element, std::size_t before) {
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
    return before + Count(*this, element).run();
}

} // namespace foundation::json::detail
