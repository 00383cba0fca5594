/// @file
/// Counts the elements of long arrays before they are read, so that the vector grows once.
#ifndef FOUNDATION_JSON_SRC_READING_ARRAY_LENGTHS_HPP
#define FOUNDATION_JSON_SRC_READING_ARRAY_LENGTHS_HPP

#include <cstddef>
#include <map>

namespace foundation::json::detail {

/// Counts the elements of long arrays ahead of reading them.
///
/// No byte is scanned twice, however arrays are nested: a scan keeps the lengths of all long arrays
/// within the one that it counts. The length is unspecified where the text is not JSON.
class ArrayLengths {
public:
    /// An array with at least this many elements is long.
    static constexpr std::size_t least = 256;

    /// @param comments  whether the text may have comments
    ArrayLengths(const char* end, bool comments) noexcept : end_(end), comments_(comments) {}

    /// Finds the length of a long array, counting from one of its elements on. Each array may be
    /// asked for once, in the order of the text.
    /// @param element  the element: its first byte, or the one behind it
    /// @param before   the number of elements before it
    /// @throws std::bad_alloc
    std::size_t length(const char* element, std::size_t before);

private:
    class Count;

    struct Known {
        const char* end; ///< the closing bracket
        std::size_t length;
    };

    const char* end_;
    bool comments_;
    std::map<const char*, Known> known_; ///< by opening bracket
};

} // namespace foundation::json::detail

#endif
