/// @file
/// A stack of bits.
#ifndef FOUNDATION_JSON_SRC_READING_BIT_STACK_HPP
#define FOUNDATION_JSON_SRC_READING_BIT_STACK_HPP

#include <cstddef>
#include <cstdint>
#include <vector>

namespace foundation::json::detail {

/// A stack of bits. The first 64 need no allocation.
class BitStack {
public:
    void push(bool bit) {
        if (size_ % word_size == 0 && size_ != 0) {
            full_.push_back(top_);
        }
        top_ = top_ << 1 | std::uint64_t{bit};
        ++size_;
    }

    bool top() const noexcept { return (top_ & 1) != 0; }

    void pop() noexcept {
        --size_;
        top_ >>= 1;
        if (size_ % word_size == 0 && size_ != 0) {
            top_ = full_.back();
            full_.pop_back();
        }
    }

private:
    static constexpr std::size_t word_size = 64;

    std::uint64_t top_ = 0; ///< the last ones, the top one lowest
    std::size_t size_ = 0;
    std::vector<std::uint64_t> full_;
};

} // namespace foundation::json::detail

#endif
