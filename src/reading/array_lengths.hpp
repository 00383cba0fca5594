/// @file
/// Counts the elements of long arrays before they are read, so that the vector grows once.
#ifndef FOUNDATION_JSON_SRC_READING_ARRAY_LENGTHS_HPP
#define FOUNDATION_JSON_SRC_READING_ARRAY_LENGTHS_HPP

#include <foundation/json/parse.hpp>

#include <cstddef>
#include <map>

namespace foundation::json::detail {

/// Counts the elements of long arrays ahead of reading them.
///
/// No byte is scanned twice, however arrays are nested: a scan keeps the lengths of all long arrays
/// within the one that it counts. It ends where the text is nested too deeply or where nothing is
/// between two commas, and so counts at most one element for two bytes. Other than that, the length
/// is unspecified where the text is not JSON.
class ArrayLengths {
public:
    /// An array with at least this many elements is long. Fewer are pending in less than a
    /// megabyte.
    static constexpr std::size_t least = 8192;

    /// @param options  must outlive this object
    explicit ArrayLengths(const ParseOptions& options) noexcept : options_(options) {}

    /// Finds the length of a long array, counting from one of its elements on. Each array may be
    /// asked for once, in the order of the text.
    /// @param element  the element: its first byte, or the one behind it
    /// @param end      the end of the text
    /// @param before   the number of elements before it
    /// @param depth    how many arrays and objects are open, with this one
    /// @throws std::bad_alloc
    std::size_t length(const char* element, const char* end, std::size_t before, std::size_t depth);

private:
    class Count;

    struct Known {
        const char* end; ///< the closing bracket
        std::size_t length;
    };

    const ParseOptions& options_;
    std::map<const char*, Known> known_; ///< by opening bracket
};

} // namespace foundation::json::detail

#endif
