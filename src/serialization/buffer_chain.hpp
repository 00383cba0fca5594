/// @file
/// A text that grows in a chain of buffers until its length is known.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_BUFFER_CHAIN_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_BUFFER_CHAIN_HPP

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::detail {

/// Memory to fill with text.
struct Room {
    char* begin;
    char* end;
};

/// The size of each buffer is a fraction of the text before it, so that at most the text, a copy
/// and that fraction are in memory at once. Long pieces need not be copied until the text is put
/// together.
class BufferChain {
public:
    BufferChain() noexcept : begin_(first_) {}
    BufferChain(const BufferChain&) = delete;
    BufferChain& operator=(const BufferChain&) = delete;

    /// Room for 4096 bytes.
    Room start() noexcept { return {first_, first_ + sizeof first_}; }

    /// Ends the text of the present buffer at the cursor.
    /// @return a new buffer, of 4096 bytes at least
    Room next(const char* at);

    /// Appends text that stays as it is until take(). The present buffer goes on at the cursor.
    void pass(char* at, const char* text, std::size_t size);

    /// The text up to the cursor. Call it once, at the end.
    std::string take(const char* at);

private:
    void end_piece(const char* text, std::size_t size);

    char first_[4096];
    std::vector<std::unique_ptr<char[]>> buffers_;
    /// The text before that of the present buffer from `begin_` on.
    std::vector<std::string_view> pieces_;
    std::size_t total_ = 0;
    char* begin_;
};

} // namespace foundation::json::detail

#endif
