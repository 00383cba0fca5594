#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP

#include "value/value_access.hpp"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

namespace foundation::json::detail {

/// Writes values in one layout.
template <class Output, bool Pretty>
class WriteVisitor : public boost::static_visitor<> {
public:
    explicit WriteVisitor(Output& output) noexcept : output_(output), depth_(0) {}

    /// Nothing; what surrounds an Undefined element or member is written all the same.
    void operator()(const Undefined&) {}

    void operator()(const Null&) { output_.text("null"); }

    void operator()(bool flag) {
        if (flag) {
            output_.text("true");
        } else {
            output_.text("false");
        }
    }

    void operator()(double number) { output_.number(number); }
    void operator()(float number) { output_.number(number); }
    void operator()(long long number) { output_.number(number); }
    void operator()(unsigned long long number) { output_.number(number); }
    void operator()(const std::string& text) { output_.string(text); }

    void operator()(const Array& elements) {
        output_.text("[");
        write_items(elements);
        output_.text("]");
    }

    void operator()(const Object& members) {
        output_.text("{");
        write_items(members);
        output_.text("}");
    }

private:
    template <class Container>
    void write_items(const Container& items) {
        if (!items.empty()) {
            ++depth_;
            auto item = items.begin();
            write_line_start();
            write_item(*item);
            while (++item != items.end()) {
                output_.text(",");
                write_line_start();
                write_item(*item);
            }
            --depth_;
            write_line_end();
        }
        // An empty container holds its indentation between its brackets.
        write_indent();
    }

    void write_item(const Value& element) {
        boost::apply_visitor(*this, ValueAccess::variant(element));
    }

    void write_item(const Object::value_type& member) {
        output_.string(member.first);
        output_.text(":");
        boost::apply_visitor(*this, ValueAccess::variant(member.second));
    }

    void write_line_start() {
        write_line_end();
        write_indent();
    }

    void write_line_end() {
        if constexpr (Pretty) {
            output_.line_end();
        }
    }

    void write_indent() {
        if constexpr (Pretty) {
            output_.spaces(4 * static_cast<std::size_t>(depth_));
        }
    }

    Output& output_;
    std::uint32_t depth_;
};

} // namespace foundation::json::detail

#endif
