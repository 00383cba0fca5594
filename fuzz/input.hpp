/// @file
/// The input bytes of a fuzz target, read as choices and content.
#ifndef FOUNDATION_JSON_FUZZ_INPUT_HPP
#define FOUNDATION_JSON_FUZZ_INPUT_HPP

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace foundation::json::fuzz {

/// Reads from the front. Behind the last byte everything reads as zero, so that the start of an
/// input means the same whatever follows.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool empty() const { return size_ == 0; }

    std::uint8_t byte() { return bits<std::uint8_t>(); }

    bool flag() { return (byte() & 1) != 0; }

    /// A number from 0 to limit - 1; the limit is at most 256.
    std::size_t below(std::size_t limit) { return byte() % limit; }

    template <class Item, std::size_t N>
    const Item& one_of(const Item (&items)[N]) {
        return items[below(N)];
    }

    /// A number with the next bytes as its representation.
    template <class Number>
    Number bits() {
        Number result{};
        const std::size_t count = std::min(size_, sizeof result);
        if (count > 0) {
            std::memcpy(&result, data_, count);
            data_ += count;
            size_ -= count;
        }
        return result;
    }

    std::string text(std::size_t length) {
        const std::size_t count = std::min(size_, length);
        std::string result(reinterpret_cast<const char*>(data_), count);
        data_ += count;
        size_ -= count;
        return result;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

} // namespace foundation::json::fuzz

#endif
