/// @file
/// The syntax of JSON Pointers.
#ifndef FOUNDATION_JSON_SRC_ACCESS_POINTER_STEPS_HPP
#define FOUNDATION_JSON_SRC_ACCESS_POINTER_STEPS_HPP

#include "text/location.hpp"

#include <cstddef>
#include <optional>
#include <string_view>

namespace foundation::json::detail {

/// @throws std::invalid_argument if a text is no JSON Pointer
void check_pointer(std::string_view pointer);

/// The index that a token stands for in an array of that length, "-" included.
/// @return one more than the length for every index beyond it; nothing if the token is no index
std::optional<std::size_t> index_of(std::string_view token, std::size_t length) noexcept;

/// Whether a token stands for the first element of an array that has none.
inline bool begins_array(std::string_view token) noexcept {
    return token == "-" || token == "0";
}

/// The tokens of a JSON Pointer, one by one.
class PointerSteps {
public:
    /// @throws std::invalid_argument if the text is no JSON Pointer
    explicit PointerSteps(std::string_view pointer) : pointer_(pointer) { check_pointer(pointer); }

    bool at_end() const noexcept { return end_ == pointer_.size(); }

    /// The next token, still escaped.
    std::string_view next() noexcept;

    /// The same, which next() is going to give.
    std::string_view peek() const noexcept {
        PointerSteps ahead = *this;
        return ahead.next();
    }

    /// The pointer up to and with the token that next() gave last.
    std::string_view walked() const noexcept { return pointer_.substr(0, end_); }

private:
    std::string_view pointer_;
    std::size_t end_ = 0;
};

} // namespace foundation::json::detail

#endif
