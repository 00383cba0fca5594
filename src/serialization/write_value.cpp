#include "serialization/write_value.hpp"

#include "serialization/error_locator.hpp"
#include "serialization/layout.hpp"
#include "serialization/write_problems.hpp"

#include <cstdlib>

namespace foundation::json::detail {

namespace {

template <class Content>
char* write_any(TextOutput& output, char* at, const Content& content, std::size_t depth) {
    const bool sorts = output.options().member_order == WriteOptions::MemberOrder::utf16;
    if (output.is_indented()) {
        return LayoutWriter<TextOutput, Layout::indented>(output, sorts, depth).write(at, content);
    }
    return LayoutWriter<TextOutput, Layout::compact>(output, sorts, depth).write(at, content);
}

template <class Content>
void find_error_of(const std::string& pointer, const Content& content,
                   const WriteOptions& options) {
    const bool sorts = options.member_order == WriteOptions::MemberOrder::utf16;
    ErrorLocator locator(pointer, options);
    LayoutWriter<ErrorLocator, Layout::compact>(locator, sorts).write({}, content);
}

template <class Content>
[[noreturn]] void throw_error_of(const std::string& pointer, const Content& content,
                                 const WriteOptions& options) {
    find_error_of(pointer, content, options);
    std::abort(); // GCOVR_EXCL_LINE: the locator finds what the output has found
}

} // namespace

char* write_content(TextOutput& output, char* at, const Value& value, std::size_t depth) {
    return write_any(output, at, value, depth);
}

char* write_content(TextOutput& output, char* at, const Array& elements, std::size_t depth) {
    return write_any(output, at, elements, depth);
}

char* write_content(TextOutput& output, char* at, const Object& members, std::size_t depth) {
    return write_any(output, at, members, depth);
}

void find_write_error(const std::string& pointer, const Value& value, const WriteOptions& options) {
    find_error_of(pointer, value, options);
}

void find_write_error(const std::string& pointer, const Array& elements,
                      const WriteOptions& options) {
    find_error_of(pointer, elements, options);
}

void find_write_error(const std::string& pointer, const Object& members,
                      const WriteOptions& options) {
    find_error_of(pointer, members, options);
}

void throw_write_error(const std::string& pointer, const Value& value,
                       const WriteOptions& options) {
    throw_error_of(pointer, value, options);
}

void throw_write_error(const std::string& pointer, const Array& elements,
                       const WriteOptions& options) {
    throw_error_of(pointer, elements, options);
}

void throw_write_error(const std::string& pointer, const Object& members,
                       const WriteOptions& options) {
    throw_error_of(pointer, members, options);
}

char* write_root(TextOutput& output, char* at, const Value& value) {
    if (holds<Undefined>(value)) {
        throw WriteError("", undefined_problem);
    }
    try {
        return write_content(output, at, value, 0);
    } catch (const Unwritable&) {
        throw_write_error("", value, output.options());
    }
}

} // namespace foundation::json::detail
