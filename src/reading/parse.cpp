// The functions that parse one whole document, from memory, a stream or a file.
#include "reading/input.hpp"
#include "reading/parse_text.hpp"
#include "reading/value_reader.hpp"

#include <foundation/json/parse.hpp>

namespace foundation::json {

namespace detail {

Value parse_text(const WholeText& text, const char* begin, const ParseOptions& options) {
    Value value;
    Cursor<WholeText> cursor(options, text);
    const char* const end = ValueReader<WholeText>(cursor).read(cursor.skip_space(begin), value);
    cursor.expect_end(end, end[-1]);
    return value;
}

void parse_text_again(const WholeText& text, const char* begin, const ParseOptions& options,
                      Reuse& reuse) {
    Cursor<WholeText> cursor(options, text);
    const char* const end =
        ValueReader<WholeText>(cursor).read_again(cursor.skip_space(begin), reuse);
    cursor.expect_end(end, end[-1]);
}

namespace {

/// The value of a text, if it is not too long.
Value parse_limited(std::string_view text, const ParseOptions& options, std::size_t max_bytes) {
    if (text.size() > max_bytes) {
        Errors({text, {}}, options).too_long(text.data() + max_bytes, max_bytes);
    }
    return parse(text, options);
}

} // namespace
} // namespace detail

Value parse(std::string_view text, const ParseOptions& options) {
    return detail::parse_text(detail::WholeText(text), text.data() + detail::mark_length(text),
                              options);
}

Value parse(std::istream& stream, const ParseOptions& options) {
    return parse(stream, options, detail::unlimited);
}

Value parse(std::istream& stream, const ParseOptions& options, std::size_t max_bytes) {
    return detail::parse_limited(detail::read_all(stream, max_bytes).join(), options, max_bytes);
}

Value parse_file(const std::filesystem::path& path, const ParseOptions& options) {
    return parse_file(path, options, detail::unlimited);
}

Value parse_file(const std::filesystem::path& path, const ParseOptions& options,
                 std::size_t max_bytes) {
    return detail::parse_limited(detail::read_file(path, max_bytes).join(), options, max_bytes);
}

} // namespace foundation::json
