/// @file
/// The arrays and objects that have been opened, one within the other.
#ifndef FOUNDATION_JSON_SRC_READING_OPEN_CONTAINERS_HPP
#define FOUNDATION_JSON_SRC_READING_OPEN_CONTAINERS_HPP

#include <foundation/json/content.hpp>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace foundation::json::detail {

/// A stack of open containers.
///
/// Texts may be nested deeply, so it takes few words: one for an object and two for an array. They
/// lie in chunks, since a block that grows takes twice as much while it is copied.
class OpenContainers {
public:
    OpenContainers() noexcept : begin_(own_), top_(own_) {}
    OpenContainers(const OpenContainers&) = delete;
    OpenContainers& operator=(const OpenContainers&) = delete;

    bool empty() const noexcept { return depth_ == 0; }
    std::size_t depth() const noexcept { return depth_; }

    void open(Object& object) {
        make_room(words_of_object);
        (top_++)->object = &object;
        are_arrays_ <<= 1;
        ++depth_;
    }

    /// @param first_pending  of its elements
    void open(Array& array, std::size_t first_pending) {
        make_room(words_of_array);
        (top_++)->first_pending = first_pending;
        (top_++)->array = &array;
        are_arrays_ = are_arrays_ << 1 | 1;
        ++depth_;
    }

    void close() noexcept {
        top_ -= is_array() ? words_of_array : words_of_object;
        are_arrays_ >>= 1;
        --depth_;
        if (top_ == begin_ && !chunks_.empty()) {
            leave_chunk();
        }
    }

    // Of the innermost container.

    bool is_array() const noexcept { return (are_arrays_ & 1) != 0; }
    Object& object() const noexcept { return *top_[-1].object; }
    Array& array() const noexcept { return *top_[-1].array; }
    /// Of the elements of an array.
    std::size_t first_pending() const noexcept { return top_[-2].first_pending; }

private:
    union Word {
        Object* object;
        Array* array;
        std::size_t first_pending;
    };

    using Bits = std::uint64_t;

    static constexpr std::ptrdiff_t words_of_object = 1;
    static constexpr std::ptrdiff_t words_of_array = 2;
    /// So that there is a bit for each container of a chunk.
    static constexpr std::size_t chunk_size = std::numeric_limits<Bits>::digits;

    struct Chunk {
        std::unique_ptr<Word[]> words;
        Word* outer_top; ///< of the chunk before
        Bits outer_are_arrays;
    };

    void make_room(std::ptrdiff_t words) {
        if (begin_ + chunk_size - top_ < words) {
            enter_chunk();
        }
    }

    [[gnu::noinline]] void enter_chunk() {
        if (spare_ == nullptr) {
            spare_ = std::make_unique<Word[]>(chunk_size);
        }
        chunks_.push_back({nullptr, top_, are_arrays_});
        chunks_.back().words = std::move(spare_);
        begin_ = top_ = chunks_.back().words.get();
    }

    [[gnu::noinline]] void leave_chunk() noexcept {
        Chunk& chunk = chunks_.back();
        top_ = chunk.outer_top;
        are_arrays_ = chunk.outer_are_arrays;
        spare_ = std::move(chunk.words);
        chunks_.pop_back();
        begin_ = chunks_.empty() ? own_ : chunks_.back().words.get();
    }

    Word* begin_; ///< of the innermost chunk
    Word* top_;
    Bits are_arrays_ = 0; ///< for each container of the innermost chunk; the lowest bit comes last
    std::size_t depth_ = 0;
    std::vector<Chunk> chunks_; ///< beyond its own
    std::unique_ptr<Word[]> spare_;
    Word own_[chunk_size];
};

} // namespace foundation::json::detail

#endif
