/// @file
/// The layout of JSON text: which pieces are written for a value, in which order.
///
/// Written once for every place that text can go. An Output offers:
///
///     text(const char (&)[N])       one piece of fixed text
///     number(T)                     a double, float, long long or unsigned long long
///     string(const std::string&)    a quoted and escaped string
///     line_end()                    a line feed, and a flush where there is something to flush
///     spaces(std::size_t)           one piece of that many spaces
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP

#include "value/value_access.hpp"

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

/// Writes the values of one nesting level.
template <class Output>
class WriteVisitor : public boost::static_visitor<> {
public:
    WriteVisitor(Output& output, bool pretty_print, std::uint32_t depth) noexcept
        : output_(output), pretty_print_(pretty_print), depth_(depth) {}

    /// Nothing; what surrounds an Undefined element or member is written all the same.
    void operator()(const Undefined&) const {}

    void operator()(const Null&) const { output_.text("null"); }

    void operator()(bool flag) const {
        if (flag) {
            output_.text("true");
        } else {
            output_.text("false");
        }
    }

    void operator()(double number) const { output_.number(number); }
    void operator()(float number) const { output_.number(number); }
    void operator()(long long number) const { output_.number(number); }
    void operator()(unsigned long long number) const { output_.number(number); }
    void operator()(const std::string& text) const { output_.string(text); }

    void operator()(const Array& elements) const {
        output_.text("[");
        write_items(elements);
        output_.text("]");
    }

    void operator()(const Object& members) const {
        output_.text("{");
        write_items(members);
        output_.text("}");
    }

private:
    template <class Container>
    void write_items(const Container& items) const {
        const WriteVisitor inner(output_, pretty_print_, depth_ + 1);
        bool first = true;
        for (const auto& item : items) {
            if (!first) {
                output_.text(",");
            }
            first = false;
            write_line_end();
            inner.write_indent();
            inner.write_item(item);
        }
        if (!first) {
            write_line_end();
        }
        // An empty container holds its indentation between its brackets.
        write_indent();
    }

    void write_item(const Value& element) const { visit(*this, element); }

    void write_item(const Object::value_type& member) const {
        output_.string(member.first);
        output_.text(":");
        visit(*this, member.second);
    }

    void write_line_end() const {
        if (pretty_print_) {
            output_.line_end();
        }
    }

    void write_indent() const {
        if (pretty_print_) {
            output_.spaces(4 * static_cast<std::size_t>(depth_));
        }
    }

    Output& output_;
    bool pretty_print_;
    std::uint32_t depth_;
};

} // namespace foundation::json::detail

#endif
