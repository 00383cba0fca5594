#include "grammar/position.hpp"

#include "text/characters.hpp"

#include <algorithm>

namespace foundation::json::detail {

void TextPosition::advance(std::string_view text) noexcept {
    const std::size_t mark = byte == 0 ? mark_length(text) : 0;
    byte += text.size();
    text.remove_prefix(mark);
    const std::size_t line_feed = text.rfind('\n');
    if (line_feed != std::string_view::npos) {
        line += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        column = 1;
        text.remove_prefix(line_feed + 1);
    }
    column += static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return !is_continuation(c); }));
}

} // namespace foundation::json::detail
