// Documents into objects of a caller's types, and the errors of it.
#include "grammar/errors.hpp"
#include "reading/document_reader.hpp"
#include "reading/input.hpp"
#include "reading/parse_text.hpp"
#include "reading/quoted_line.hpp"
#include "reading/read_error.hpp"
#include "reading/token_reader.hpp"
#include "reading/value_walker.hpp"
#include "text/location.hpp"
#include "text/visible_name.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/read.hpp>

#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace foundation::json {

// ---- Errors ----------------------------------------------------------------------------------

struct ReadError::Details {
    ParserException where;
    std::string what;
    bool has_name;
};

namespace {

std::string located(const ConversionError& error, const ParserException& where,
                    std::string_view file_name) {
    std::string result(file_name);
    result += file_name.empty() ? "" : ":";
    return result + std::to_string(where.get_line_number()) + ':' +
           std::to_string(where.get_column()) + ": " + error.what();
}

} // namespace

ReadError::ReadError(const ConversionError& error, const ParserException& where,
                     std::string_view file_name)
    : ConversionError(error),
      details_(std::make_shared<const Details>(
          Details{where, located(error, where, file_name), !file_name.empty()})) {}

ReadError::~ReadError() = default;

const char* ReadError::what() const noexcept {
    return details_->what.c_str();
}

Position ReadError::position() const noexcept {
    const ParserException& where = details_->where;
    return {where.get_byte_position(), where.get_line_number(), where.get_column()};
}

std::string describe(const ReadError& error, std::string_view name) {
    const ReadError::Details& details = error.details();
    const bool uses_name = !name.empty() && !details.has_name;
    const std::string head = uses_name ? std::string(name) + ':' : std::string();
    return detail::describe_line(head + details.what, details.where);
}

namespace detail {

namespace {

/// The names and indexes of a JSON Pointer.
std::vector<std::string> steps_of(std::string_view pointer) {
    std::vector<std::string> steps;
    while (!pointer.empty()) {
        pointer.remove_prefix(1);
        const std::string_view token = pointer.substr(0, pointer.find('/'));
        steps.push_back(unescaped(token));
        pointer.remove_prefix(token.size());
    }
    return steps;
}

/// Follows a JSON Pointer through a document, of which it has been parsed that it has the value.
/// Of members with the same name, the last one counts.
class PointerWalk {
public:
    explicit PointerWalk(std::string_view pointer)
        : steps_(steps_of(pointer)), open_(steps_.size() + 2) {}

    /// The byte where the value begins.
    std::size_t find(std::string_view text, const ParseOptions& options) {
        TokenReader tokens(options, text);
        std::size_t found = 0;
        for (Token token = tokens.next(); token != Token::end; token = tokens.next()) {
            if (token == Token::end_array || token == Token::end_object) {
                matched_ = std::min(matched_, tokens.depth());
            } else if (is_at_value(tokens)) {
                found = tokens.position().byte;
            }
        }
        return found;
    }

private:
    /// An array or object on the way.
    struct Open {
        bool is_array = false;
        std::size_t index = 0;
    };

    bool is_at_value(const TokenReader& tokens) {
        const Token token = tokens.token();
        const bool opens = token == Token::begin_array || token == Token::begin_object;
        const std::size_t depth = tokens.depth() - (opens ? 1 : 0);
        if (depth > steps_.size() || matched_ + 1 < depth) {
            return false;
        }
        if (token == Token::name) {
            matched_ = depth - (tokens.decoded() == steps_[depth - 1] ? 0 : 1);
            return false;
        }
        if (depth != 0 && open_[depth].is_array) {
            const std::string index = std::to_string(open_[depth].index++);
            matched_ = depth - (index == steps_[depth - 1] ? 0 : 1);
        }
        if (opens && matched_ == depth) {
            open_[depth + 1] = {token == Token::begin_array, 0};
        }
        return matched_ == depth && depth == steps_.size();
    }

    const std::vector<std::string> steps_;
    std::vector<Open> open_;  ///< by depth, from 1
    std::size_t matched_ = 0; ///< how many steps lead to where the walk is
};

} // namespace

ReadError make_read_error(const Context& context, const ParseOptions& options,
                          const ConversionError& found, const ConversionError& error,
                          std::string_view file_name) {
    const std::size_t byte = PointerWalk(found.pointer()).find(context.text, options);
    try {
        Errors(context, options).not_wanted(context.text.data() + byte, error.what());
    } catch (const ParserException& where) {
        return {error, where, file_name};
    }
}

void convert_value(const Value& value, const ReadOptions& options, void* object, ReadAny read) {
    ValueWalker walker(value, options);
    static_cast<void>(read(walker, walker.begin(), object, nullptr, nullptr));
}

void read_by_value(std::string_view text, const ReadOptions& options, std::string_view file_name,
                   void* object, ReadAny read) {
    if (text.size() > options.max_bytes) {
        Errors({text, {}}, options).too_long(text.data() + options.max_bytes, options.max_bytes);
    }
    const Value value = parse(text, options);
    try {
        convert_value(value, options, object, read);
    } catch (const ConversionError& error) {
        throw make_read_error({text, {}}, options, error, error, file_name);
    }
}

// ---- Documents -------------------------------------------------------------------------------

namespace {

void read_with(DocumentCore& core, const char* begin, void* object, const void* base,
               ReadAny read) {
    core.finish(read(core, core.begin(begin), object, base, nullptr));
}

void read_any(std::string_view text, const ReadOptions& options, void* object, const void* base,
              ReadAny read, std::size_t mark) {
    constexpr std::size_t longest_copied = 1024;
    if (text.size() > longest_copied) {
        const char* const fast_end = text.data() + text.size() - room_behind;
        DocumentCore core(text, fast_end, options);
        read_with(core, text.data() + mark, object, base, read);
    } else {
        // Of a short text, most is near its end: a copy has room behind it.
        char copy[longest_copied + room_behind];
        if (!text.empty()) {
            std::memcpy(copy, text.data(), text.size());
        }
        std::memset(copy + text.size(), 0, room_behind);
        DocumentCore core({copy, text.size()}, copy + text.size(), options);
        read_with(core, copy + mark, object, base, read);
    }
}

} // namespace

bool read_document(std::string_view text, const ReadOptions& options, void* object,
                   const void* base, ReadAny read, Mark mark) {
    if (text.size() > options.max_bytes) {
        return false;
    }
    try {
        read_any(text, options, object, base, read, mark == Mark::skipped ? mark_length(text) : 0);
        return true;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const NotAsWanted&) {
        return false;
    } catch (const std::exception&) {
        return false;
    }
}

class DocumentText::Storage {
public:
    explicit Storage(GrowingText input) noexcept : text(std::move(input)) {}
    GrowingText text;
};

DocumentText::DocumentText(std::istream& stream, const ReadOptions& options)
    : storage_(std::make_unique<Storage>(read_all(stream, options.max_bytes))),
      text_(storage_->text.join()) {}
DocumentText::DocumentText(const std::filesystem::path& path, const ReadOptions& options)
    : storage_(std::make_unique<Storage>(read_file(path, options.max_bytes))),
      text_(storage_->text.join()) {}
DocumentText::~DocumentText() = default;

std::string shown_name(const std::filesystem::path& path) {
    return visible_name(path);
}

} // namespace detail

} // namespace foundation::json
