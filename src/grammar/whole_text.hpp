/// @file
/// The input of a Cursor that is in memory as a whole.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_WHOLE_TEXT_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_WHOLE_TEXT_HPP

#include "grammar/position.hpp"

#include <string_view>

namespace foundation::json::detail {

/// A text that is there from its begin to its end.
class WholeText {
public:
    /// Whether text may move, and more may come, when a Cursor reaches the end of what is there.
    static constexpr bool refills = false;

    /// @param text   must outlive this object
    /// @param begin  where it begins in the whole input
    explicit WholeText(std::string_view text, const TextPosition& begin = {}) noexcept
        : end_(text.data() + text.size()), text_(text), begin_(begin) {}

    const char* begin() const noexcept { return text_.data(); }
    const char* end() const noexcept { return end_; }

    Context context() const noexcept { return {text_, begin_}; }

private:
    const char* end_;
    std::string_view text_;
    TextPosition begin_;
};

} // namespace foundation::json::detail

#endif
