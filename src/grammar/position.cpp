#include "grammar/position.hpp"

#include "text/characters.hpp"

namespace foundation::json::detail {

namespace {

/// How many bytes of a text are as asked for. Counts in single bytes, so that compilers make
/// vectors of them.
template <class Predicate>
std::size_t count_bytes(std::string_view text, const Predicate& predicate) noexcept {
    constexpr std::size_t most = 240; // a multiple of every usual vector
    std::size_t result = 0;
    while (!text.empty()) {
        const std::string_view part = text.substr(0, most);
        unsigned char count = 0;
        for (const char byte : part) {
            count = static_cast<unsigned char>(count + (predicate(byte) ? 1 : 0));
        }
        result += count;
        text.remove_prefix(part.size());
    }
    return result;
}

} // namespace

void TextPosition::advance(std::string_view text) noexcept {
    const std::size_t mark = byte == 0 ? mark_length(text) : 0;
    byte += text.size();
    text.remove_prefix(mark);
    if (const std::size_t lines = count_bytes(text, [](char c) { return c == '\n'; }); lines != 0) {
        line += lines;
        column = 1;
        text.remove_prefix(text.rfind('\n') + 1);
    }
    column += count_bytes(text, [](char c) { return !is_continuation(c); });
}

} // namespace foundation::json::detail
