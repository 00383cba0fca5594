/// @file
/// Stacks of the parser, which grow and shrink with every array.
#ifndef FOUNDATION_JSON_SRC_PARSER_STACK_HPP
#define FOUNDATION_JSON_SRC_PARSER_STACK_HPP

#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::detail {

/// A stack of trivially copyable items. Growth is not part of push(), so that push() is inlined.
template <class Item>
class Stack {
    static_assert(std::is_trivially_copyable_v<Item>);

public:
    bool empty() const noexcept { return size_ == 0; }
    std::size_t size() const noexcept { return size_; }
    Item& top() noexcept { return items_[size_ - 1]; }
    const Item& top() const noexcept { return items_[size_ - 1]; }
    const Item* begin() const noexcept { return items_.get(); }
    const Item* end() const noexcept { return items_.get() + size_; }

    bool full() const noexcept { return size_ == capacity_; }

    void push(const Item& item) {
        if (full()) {
            grow();
        }
        items_[size_++] = item;
    }

    void pop() noexcept { --size_; }
    void shrink(std::size_t size) noexcept { size_ = size; }

    [[gnu::noinline]] void grow() {
        // By half, not to double the size, since old and new items are in memory at the same time.
        const std::size_t capacity = capacity_ == 0 ? first_capacity : capacity_ + capacity_ / 2;
        auto items = std::make_unique<Item[]>(capacity);
        if (size_ != 0) {
            std::memcpy(items.get(), items_.get(), size_ * sizeof(Item));
        }
        items_ = std::move(items);
        capacity_ = capacity;
    }

private:
    static constexpr std::size_t first_capacity = 64;

    std::unique_ptr<Item[]> items_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// A stack of containers that keep their addresses. It uses containers again after pop(), so they
/// must be empty by then.
template <class Container>
class Pool {
public:
    /// The containers that were pushed last may be popped in any order, with no push() in between.
    Container& push() {
        if (size_ == chunks_.size() * chunk_size) {
            grow();
        }
        const std::size_t index = size_++;
        return chunks_[index / chunk_size][index % chunk_size];
    }

    void pop() noexcept { --size_; }

    /// Frees most of the containers that are not in use.
    void release() noexcept {
        while (size_ + 2 * chunk_size <= chunks_.size() * chunk_size) {
            chunks_.pop_back();
        }
    }

private:
    static constexpr std::size_t chunk_size = 32;

    [[gnu::noinline]] void grow() { chunks_.push_back(std::make_unique<Container[]>(chunk_size)); }

    std::vector<std::unique_ptr<Container[]>> chunks_;
    std::size_t size_ = 0;
};

} // namespace foundation::json::detail

#endif
