/// @file
/// Values whose memory is used again for the next value that is read.
#ifndef FOUNDATION_JSON_SRC_READING_REUSE_HPP
#define FOUNDATION_JSON_SRC_READING_REUSE_HPP

#include <foundation/json/content.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace foundation::json::detail {

/// What an earlier value leaves to the next one: the members of its objects and the room of their
/// names, strings and short arrays; of what is within arrays, nothing.
///
/// Room beyond these limits is kept only if the next string needs at least half of it. Otherwise,
/// short records could come to hold the memory of many long ones.
class Reuse {
public:
    static constexpr std::size_t most_characters = 256;
    static constexpr std::size_t most_elements = 16;

    /// The value to read into.
    Value value;

    /// Begins to read it, perhaps again.
    void restart() noexcept { left_.clear(); }

    /// Opens an object: takes its members away.
    void open(Object& object) {
        left_.emplace_back();
        left_.back().swap(object);
    }

    /// Closes the innermost object: frees what has not been used again.
    void close() noexcept { left_.pop_back(); }

    /// The name that is to be found in the innermost object.
    std::string& name() noexcept { return name_; }

    /// Puts a member with this name into an object, with some content from before.
    /// @return null if none is left
    /// @throws std::bad_alloc
    Value* member_for(Object& object);

private:
    std::vector<Object> left_; ///< of each object that is open, what has not been used again
    std::string name_;
};

} // namespace foundation::json::detail

#endif
