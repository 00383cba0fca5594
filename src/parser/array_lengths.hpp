/// @file
/// Counts the elements of long arrays before they are read, so that the vector grows once.
#ifndef FOUNDATION_JSON_SRC_PARSER_ARRAY_LENGTHS_HPP
#define FOUNDATION_JSON_SRC_PARSER_ARRAY_LENGTHS_HPP

#include <cstddef>
#include <map>

namespace foundation::json::detail {

/// Counts the elements of long arrays ahead of reading them.
///
/// No byte is gone over twice, however arrays lie within one another: the lengths of long arrays
/// within another that is counted are kept. Text that is not JSON gives some length or other.
class ArrayLengths {
public:
    /// What makes an array long, in elements.
    static constexpr std::size_t least = 256;

    /// @param comments  whether the text may have comments
    ArrayLengths(const char* end, bool comments) noexcept : end_(end), comments_(comments) {}

    /// How many elements a long array has from one on.
    /// @param array    its opening bracket
    /// @param element  the place of the element, within the array
    /// @param before   how many there are before that
    /// @throws std::bad_alloc
    std::size_t length(const char* array, const char* element, std::size_t before);

private:
    class Count;

    const char* end_;
    bool comments_;
    std::map<const char*, std::size_t> known_; ///< by opening bracket
};

} // namespace foundation::json::detail

#endif
