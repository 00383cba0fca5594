/// @file
/// The target of a Writer: a buffer of text on its way to a stream or string.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_WRITER_TARGET_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_WRITER_TARGET_HPP

#include "serialization/text_output.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace foundation::json::detail {

/// Text from a certain point on can be held
/// back, so that it can still be withdrawn.
class WriterTarget final : public TextTarget {
public:
    explicit WriterTarget(std::ostream& stream) noexcept : stream_(&stream) {}
    explicit WriterTarget(std::string& text) noexcept : text_(&text) {}

    Room start() noexcept { return {begin_, begin_ + size_}; }

    /// Passes all text on.
    void finish(const char* at) { deliver(begin_, at - begin_); }

    /// Holds back what follows the cursor, until release().
    void hold(char* at) noexcept { held_ = at; }

    /// @return the cursor at which hold() was called
    char* held() const noexcept { return held_; }

    void release() noexcept { held_ = nullptr; }

    Room next(const char* at) override {
        // A text that fits into a larger buffer is passed on as one piece.
        const char* const kept = begin_ == first_ ? begin_ : held_ != nullptr ? held_ : at;
        const auto kept_size = static_cast<std::size_t>(at - kept);
        const std::ptrdiff_t held_offset = held_ != nullptr ? held_ - kept : 0;
        if (kept != begin_) {
            finish(kept);
        }
        if (size_ - kept_size < least_room) {
            grow(kept, kept_size);
        } else {
            std::memmove(begin_, kept, kept_size);
        }
        held_ = held_ != nullptr ? begin_ + held_offset : nullptr;
        return {begin_ + kept_size, begin_ + size_};
    }

    Room pass(Room rest, const char* text, std::size_t size) override {
        if (held_ == nullptr) {
            finish(rest.begin);
            deliver(text, static_cast<std::ptrdiff_t>(size));
            return start();
        }
        while (size != 0) {
            if (rest.begin == rest.end) {
                rest = next(rest.begin);
            }
            const std::size_t count =
                std::min(size, static_cast<std::size_t>(rest.end - rest.begin));
            rest.begin = std::copy_n(text, count, rest.begin);
            text += count;
            size -= count;
        }
        return rest;
    }

private:
    void deliver(const char* bytes, std::ptrdiff_t count) {
        if (stream_ != nullptr) {
            stream_->write(bytes, count);
        } else {
            text_->append(bytes, static_cast<std::size_t>(count));
        }
    }

    void grow(const char* kept, std::size_t kept_size) {
        const std::size_t new_size = std::max(usual_size, 2 * size_);
        std::unique_ptr<char[]> larger(new char[new_size]);
        std::memcpy(larger.get(), kept, kept_size);
        larger_ = std::move(larger);
        begin_ = larger_.get();
        size_ = new_size;
    }

    static constexpr std::size_t least_room = TextOutput::minimum_room;
    static constexpr std::size_t usual_size = 8192;

    std::ostream* stream_ = nullptr;
    std::string* text_ = nullptr;
    std::unique_ptr<char[]> larger_;
    char* begin_ = first_;
    std::size_t size_ = sizeof first_;
    char* held_ = nullptr;
    char first_[640]; ///< so that a Writer of a short text is one small block of memory
};

} // namespace foundation::json::detail

#endif
