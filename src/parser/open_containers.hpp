/// @file
/// The arrays and objects that have been opened, one within the other.
#ifndef FOUNDATION_JSON_SRC_PARSER_OPEN_CONTAINERS_HPP
#define FOUNDATION_JSON_SRC_PARSER_OPEN_CONTAINERS_HPP

#include <foundation/json/content.hpp>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace foundation::json::detail {

/// A stack of open containers.
///
/// Texts may be nested deeply, so it takes few words: two for an object and three for an array.
/// They lie in chunks, since a block that grows takes twice as much while it is copied.
class OpenContainers {
public:
    OpenContainers() noexcept : begin_(own_), top_(own_) {}
    OpenContainers(const OpenContainers&) = delete;
    OpenContainers& operator=(const OpenContainers&) = delete;

    bool empty() const noexcept { return depth_ == 0; }
    std::size_t depth() const noexcept { return depth_; }

    /// @param bracket  the opening one, in the text, which must stay there
    void open(Object& object, const char* bracket) {
        make_room(words_of_object);
        (top_++)->object = &object;
        (top_++)->bracket = bracket;
        ++depth_;
    }

    /// @param first_pending  of its elements
    /// @param bracket        the opening one, in the text, which must stay there
    void open(Array& array, std::size_t first_pending, const char* bracket) {
        make_room(words_of_array);
        (top_++)->first_pending = first_pending;
        (top_++)->array = &array;
        (top_++)->bracket = bracket;
        ++depth_;
    }

    void close() noexcept {
        top_ -= is_array() ? words_of_array : words_of_object;
        --depth_;
        if (top_ == begin_ && !chunks_.empty()) {
            leave_chunk();
        }
    }

    // Of the innermost container.

    bool is_array() const noexcept { return *bracket() == '['; }
    Object& object() const noexcept { return *top_[-2].object; }
    Array& array() const noexcept { return *top_[-2].array; }
    const char* bracket() const noexcept { return top_[-1].bracket; }
    /// Of the elements of an array.
    std::size_t first_pending() const noexcept { return top_[-3].first_pending; }

private:
    union Word {
        Object* object;
        Array* array;
        const char* bracket;
        std::size_t first_pending;
    };

    static constexpr std::ptrdiff_t words_of_object = 2;
    static constexpr std::ptrdiff_t words_of_array = 3;
    static constexpr std::size_t chunk_size = 96;

    struct Chunk {
        std::unique_ptr<Word[]> words;
        Word* outer_begin; ///< of the chunk before
        Word* outer_top;
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
        chunks_.push_back({nullptr, begin_, top_});
        chunks_.back().words = std::move(spare_);
        begin_ = top_ = chunks_.back().words.get();
    }

    [[gnu::noinline]] void leave_chunk() noexcept {
        Chunk& chunk = chunks_.back();
        begin_ = chunk.outer_begin;
        top_ = chunk.outer_top;
        spare_ = std::move(chunk.words);
        chunks_.pop_back();
    }

    Word* begin_; ///< of the innermost chunk
    Word* top_;
    std::size_t depth_ = 0;
    std::vector<Chunk> chunks_; ///< beyond its own
    std::unique_ptr<Word[]> spare_;
    Word own_[chunk_size];
};

} // namespace foundation::json::detail

#endif
