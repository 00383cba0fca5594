#include "grammar/comments.hpp"

#include "text/characters.hpp"
#include "text/utf8.hpp"

namespace foundation::json::detail {

CommentToken scan_comment(const char* from, const char* end, char second) noexcept {
    const bool to_line_end = second == '/';
    while (from != end) {
        if (to_line_end && *from == '\n') {
            return {from + 1, CommentEnd::closed};
        }
        if (!to_line_end && *from == '*') {
            if (end - from == 1) {
                break;
            }
            if (from[1] == '/') {
                return {from + 2, CommentEnd::closed};
            }
        }
        const Utf8Sequence sequence =
            is_ascii(*from) ? Utf8Sequence{1, true} : utf8_sequence(from, end);
        if (!sequence.complete) {
            const char* const bad = from + sequence.length;
            return bad == end ? CommentToken{from, CommentEnd::text_ends}
                              : CommentToken{bad, CommentEnd::utf8};
        }
        from += sequence.length;
    }
    return {from, CommentEnd::text_ends};
}

} // namespace foundation::json::detail
