/// @file
/// Stacks of the parser, which grow and shrink with every array.
#ifndef FOUNDATION_JSON_SRC_READING_STACK_HPP
#define FOUNDATION_JSON_SRC_READING_STACK_HPP

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::detail {

/// A stack of trivially copyable items. It has room of its own for a few, so that short texts need
/// no allocation. Growth is not part of push(), so that push() is inlined.
template <class Item>
class Stack {
    static_assert(std::is_trivially_copyable_v<Item>);

public:
    Stack() noexcept : begin_(own_), end_(own_), limit_(own_ + own_capacity) {}
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    bool empty() const noexcept { return end_ == begin_; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(end_ - begin_); }
    Item& top() noexcept { return end_[-1]; }
    const Item& top() const noexcept { return end_[-1]; }
    const Item* begin() const noexcept { return begin_; }
    const Item* end() const noexcept { return end_; }

    bool full() const noexcept { return end_ == limit_; }

    /// There must be room: growth is kept out of this, to be inlined.
    void push(const Item& item) noexcept { *end_++ = item; }

    void pop() noexcept { --end_; }
    void shrink(std::size_t size) noexcept { end_ = begin_ + size; }

    // A large stack in small steps, since old and new items are in memory at a time.

    [[gnu::noinline]] void grow() {
        move(capacity() < kept_capacity ? 2 * capacity() : capacity() + capacity() / 4);
    }

    /// Gives up some of the room if much of it is not in use.
    void release() {
        if (capacity() > kept_capacity && size() < capacity() - capacity() / 3) {
            move(capacity() - capacity() / 4);
        }
    }

private:
    static constexpr std::size_t own_capacity = 64;
    static constexpr std::size_t kept_capacity = 1024;

    std::size_t capacity() const noexcept { return static_cast<std::size_t>(limit_ - begin_); }

    void move(std::size_t capacity) {
        // GCOVR_EXCL_BR_START: the check of the size is the compiler's
        std::unique_ptr<Item[]> items(new Item[capacity]);
        // GCOVR_EXCL_BR_STOP: the items are there
        end_ = std::copy(begin_, end_, items.get());
        heap_ = std::move(items);
        begin_ = heap_.get();
        limit_ = begin_ + capacity;
    }

    Item* begin_;
    Item* end_;
    Item* limit_;
    std::unique_ptr<Item[]> heap_;
    Item own_[own_capacity];
};

/// A stack of containers that keep their addresses. It uses containers again after pop(), so they
/// must be empty by then.
template <class Container>
class ContainerStack {
public:
    /// The containers that were pushed last may be popped in any order, with no push() in between.
    Container& push() {
        if (size_ == capacity()) {
            grow();
        }
        const std::size_t index = size_++;
        return index < first_chunk ? chunks_[0][index]
                                   : chunks_[1 + (index - first_chunk) / chunk_size]
                                            [(index - first_chunk) % chunk_size];
    }

    void pop() noexcept { --size_; }

    /// Frees most of the containers that are not in use, if there are many.
    void release() noexcept {
        while (size_ + kept <= capacity()) {
            chunks_.pop_back();
        }
    }

private:
    static constexpr std::size_t first_chunk = 16;
    static constexpr std::size_t chunk_size = 64;
    static constexpr std::size_t kept = 256;

    std::size_t capacity() const noexcept {
        return chunks_.empty() ? 0 : first_chunk + (chunks_.size() - 1) * chunk_size;
    }

    [[gnu::noinline]] void grow() {
        chunks_.push_back(
            std::make_unique<Container[]>(chunks_.empty() ? first_chunk : chunk_size));
    }

    std::vector<std::unique_ptr<Container[]>> chunks_;
    std::size_t size_ = 0;
};

} // namespace foundation::json::detail

#endif
