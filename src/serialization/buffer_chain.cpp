#include "serialization/buffer_chain.hpp"

#include <algorithm>
#include <utility>

namespace foundation::json::detail {

void BufferChain::end_piece(const char* text, std::size_t size) {
    pieces_.emplace_back(text, size);
    total_ += size;
}

Room BufferChain::next(const char* at) {
    end_piece(begin_, static_cast<std::size_t>(at - begin_));
    const std::size_t capacity = std::max(sizeof first_, total_ / 8);
    std::unique_ptr<char[]> buffer(new char[capacity]);
    begin_ = buffer.get();
    buffers_.push_back(std::move(buffer));
    return {begin_, begin_ + capacity};
}

void BufferChain::pass(char* at, const char* text, std::size_t size) {
    end_piece(begin_, static_cast<std::size_t>(at - begin_));
    end_piece(text, size);
    begin_ = at;
}

std::string BufferChain::take(const char* at) {
    const auto size = static_cast<std::size_t>(at - begin_);
    if (pieces_.empty()) {
        return std::string(begin_, size);
    }
    std::string result;
    result.reserve(total_ + size);
    for (const std::string_view piece : pieces_) {
        result += piece;
    }
    result.append(begin_, size);
    return result;
}

} // namespace foundation::json::detail
