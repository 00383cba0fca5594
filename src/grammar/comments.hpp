/// @file
/// Finds where a comment ends.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_COMMENTS_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_COMMENTS_HPP

namespace foundation::json::detail {

enum class CommentEnd {
    closed,    ///< the comment ends here
    text_ends, ///< more text may continue it from here
    utf8,      ///< the byte here cannot continue a character
};

struct CommentToken {
    const char* end;
    CommentEnd status;
};

/// Whether a byte makes a slash before it the begin of a comment.
constexpr bool begins_comment(char byte) noexcept {
    return byte == '/' || byte == '*';
}

/// Scans a comment.
/// @param from   behind its first two bytes, or where the text ended before
/// @param second its second byte: a slash if the comment ends with the line
CommentToken scan_comment(const char* from, const char* end, char second) noexcept;

} // namespace foundation::json::detail

#endif
