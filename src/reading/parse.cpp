// The functions that read one whole text, from memory, a stream or a file.
#include "reading/input.hpp"
#include "reading/parser.hpp"

#include <foundation/json/parse.hpp>

namespace foundation::json {

Value parse(std::string_view text, const ParseOptions& options) {
    Value value;
    detail::Parser(text, options).read(value);
    return value;
}

Value parse(std::istream& stream, const ParseOptions& options) {
    return parse(detail::read_all(stream).join(), options);
}

Value parse_file(const std::filesystem::path& path, const ParseOptions& options) {
    return parse(detail::read_file(path).join(), options);
}

} // namespace foundation::json
