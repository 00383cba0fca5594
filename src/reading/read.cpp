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

#include <algorithm>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json {

// ---- Errors ----------------------------------------------------------------------------------

struct ReadError::Details {
    std::vector<ParserException> where;
    std::string what;
    std::string file_name;
};

namespace {

/// An error with the lines and columns of its errors.
ConversionError located(const ConversionError& error, const std::vector<ParserException>& where) {
    std::vector<ConversionProblem> errors = error.errors();
    if (errors.size() != where.size()) {
        throw std::invalid_argument("foundation::json::ReadError: an error has no position");
    }
    for (std::size_t i = 0; i != errors.size(); ++i) {
        errors[i].line = where[i].get_line_number();
        errors[i].column = where[i].get_column();
    }
    return ConversionError(std::move(errors), error.is_cut_off());
}

/// `server.json:12:17: at /port: "80" is a string, not a number`
std::string line_of(const ConversionProblem& error, std::string_view file_name) {
    std::string result(file_name);
    result += file_name.empty() ? "" : ":";
    return result + std::to_string(error.line) + ':' + std::to_string(error.column) + ": " +
           detail::describe_location(error.pointer) + error.message;
}

std::string lines_of(const ConversionError& error, std::string_view file_name) {
    std::string result;
    for (const ConversionProblem& problem : error.errors()) {
        result += result.empty() ? "" : "\n";
        result += line_of(problem, file_name);
    }
    return error.is_cut_off() ? result + '\n' + detail::cut_off_line(error.errors().size())
                              : result;
}

} // namespace

ReadError::ReadError(const ConversionError& error, const std::vector<ParserException>& where,
                     std::string_view file_name)
    : ConversionError(located(error, where)),
      details_(std::make_shared<const Details>(
          Details{where, lines_of(*this, file_name), std::string(file_name)})) {}

ReadError::~ReadError() = default;

const char* ReadError::what() const noexcept {
    return details_->what.c_str();
}

Position ReadError::position() const noexcept {
    const ParserException& where = details_->where.front();
    return {where.get_byte_position(), where.get_line_number(), where.get_column()};
}

std::string describe(const ReadError& error, std::string_view name) {
    const ReadError::Details& details = error.details();
    const std::string_view file_name = details.file_name.empty() ? name : details.file_name;
    std::string result;
    for (std::size_t i = 0; i != details.where.size(); ++i) {
        result += detail::describe_line(line_of(error.errors()[i], file_name), details.where[i]);
    }
    return error.is_cut_off() ? result + detail::cut_off_line(details.where.size()) + '\n' : result;
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

/// Follows JSON Pointers through a document, of which it has been parsed that it has these values.
/// Of members with the same name, the last one counts.
class PointerWalk {
public:
    /// Adds a pointer. @return its number
    std::size_t add(std::string_view pointer) {
        std::size_t node = 0;
        for (std::string& step : steps_of(pointer)) {
            const auto [child, added] = nodes_[node].children.try_emplace(std::move(step), 0);
            if (added) {
                child->second = nodes_.size();
                nodes_.emplace_back().parent = node;
            }
            node = child->second;
        }
        return node;
    }

    /// Walks through the document.
    void walk(std::string_view text, const ParseOptions& options) {
        TokenReader tokens(options, text);
        std::size_t named = none;
        for (Token token = tokens.next(); token != Token::end; token = tokens.next()) {
            if (token == Token::end_array || token == Token::end_object) {
                open_.pop_back();
            } else if (token == Token::name) {
                named = child_of(open_.back().node, tokens);
            } else {
                visit(tokens, open_.empty() ? 0 : open_.back().is_array ? next_element() : named);
            }
        }
    }

    /// The byte where the value of a pointer begins; if there is none, that around it.
    std::size_t byte(std::size_t number) const {
        while (number != 0 && nodes_[number].byte == none) {
            number = nodes_[number].parent;
        }
        return nodes_[number].byte;
    }

private:
    static constexpr std::size_t none = ~std::size_t{0};

    /// A value that pointers lead to or through; the first one is the root.
    struct Node {
        std::map<std::string, std::size_t> children;
        std::size_t parent = 0;
        std::size_t byte = none;
    };

    /// An array or object that pointers lead to or through.
    struct Open {
        std::size_t node;
        bool is_array;
        std::size_t index;
    };

    std::size_t child_of(std::size_t node, const std::string& name) const {
        const auto found = nodes_[node].children.find(name);
        return found != nodes_[node].children.end() ? found->second : none;
    }
    std::size_t child_of(std::size_t node, const TokenReader& tokens) const {
        return nodes_[node].children.empty() ? none : child_of(node, tokens.decoded());
    }
    std::size_t next_element() {
        Open& array = open_.back();
        const std::size_t index = array.index++;
        return nodes_[array.node].children.empty() ? none
                                                   : child_of(array.node, std::to_string(index));
    }

    void visit(TokenReader& tokens, std::size_t node) {
        const Token token = tokens.token();
        if (node == none) {
            tokens.skip();
            return;
        }
        nodes_[node].byte = tokens.position().byte;
        if (token == Token::begin_array || token == Token::begin_object) {
            open_.push_back({node, token == Token::begin_array, 0});
        }
    }

    std::vector<Node> nodes_ = std::vector<Node>(1);
    std::vector<Open> open_;
};

/// Where an error is, in the text around it.
class ErrorPlaces {
public:
    ErrorPlaces(const Context& context, const ParseOptions& options) noexcept
        : context_(context), options_(options), position_(context.begin) {}

    /// @param byte  of the text; not before that of the last call
    ParserException at(std::size_t byte) {
        const std::string_view text = context_.text;
        position_.advance(text.substr(byte_, byte - byte_));
        byte_ = byte;
        // No more of the text than is quoted, since errors look for the ends of their lines.
        constexpr std::size_t longest_sequence = 4;
        const std::size_t before = std::min(byte, most_quoted + longest_sequence);
        TextPosition begin;
        begin.byte = position_.byte - before;
        Context around(text.substr(byte - before, before + quoted_behind), begin);
        around.marked = text.data() + byte;
        around.mark = position_;
        try {
            Errors(around, options_).not_wanted(around.marked, {});
        } catch (const ParserException& where) {
            return where;
        }
    }

private:
    const Context& context_;
    const ParseOptions& options_;
    std::size_t byte_ = 0;
    TextPosition position_; ///< of that byte
};

} // namespace

ReadError make_read_error(const Context& context, const ParseOptions& options,
                          const ConversionError& error, std::string_view pointer,
                          std::string_view file_name) {
    PointerWalk walk;
    std::vector<std::pair<std::size_t, ConversionProblem>> found; // by their bytes
    for (const ConversionProblem& problem : error.errors()) {
        found.emplace_back(walk.add(problem.pointer), problem);
    }
    walk.walk(context.text, options);
    for (auto& [byte, problem] : found) {
        byte = walk.byte(byte);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });

    ErrorPlaces places(context, options);
    std::vector<ConversionProblem> errors;
    std::vector<ParserException> where;
    for (auto& [byte, problem] : found) {
        where.push_back(places.at(byte));
        errors.push_back(std::move(problem));
        errors.back().pointer.insert(0, pointer);
    }
    return {ConversionError(std::move(errors), error.is_cut_off()), where, file_name};
}

void convert_value(const Value& value, const ReadOptions& options, void* object, ReadAny read) {
    ValueWalker walker(value, options);
    ErrorCollector collector(options);
    if (options.max_errors > 1) {
        walker.collect_errors(&collector);
    }
    static_cast<void>(read(walker, walker.begin(), object, nullptr, nullptr));
    if (collector.noted() != 0) {
        collector.fail();
    }
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
        throw make_read_error({text, {}}, options, error, {}, file_name);
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
