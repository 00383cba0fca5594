/// @file
/// The layout of JSON text: which pieces are written for a value, in which order.
///
/// One implementation for all destinations. An Output has a Cursor, the position after the text so
/// far. Its functions write a piece at a cursor and return the next one:
///
///     text(Cursor, const char (&)[N])     one piece of fixed text
///     number(Cursor, FloatingBits<T>)       a double or float
///     number(Cursor, T)                   a long long or unsigned long long
///     string(Cursor, const std::string&)  a quoted and escaped string
///     line_end(Cursor)                    a line feed, and a flush of a stream
///     spaces(Cursor, std::size_t)         one piece of that many spaces
///
/// The cursor is passed on in a register, because every piece needs it first: in an object in
/// memory, each piece would have to wait until the one before had stored it.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP

#include "value/value_access.hpp"
#include <foundation/json/detail/floating_bits.hpp>

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

template <class Output, bool Pretty>
class LayoutWriter;

/// Writes the visited content at the nesting level that a LayoutWriter has reached.
template <class Output, bool Pretty>
class WriteVisitor : public boost::static_visitor<typename Output::Cursor> {
public:
    using Cursor = typename Output::Cursor;

    WriteVisitor(LayoutWriter<Output, Pretty>& writer, Output& output, Cursor at) noexcept
        : writer_(writer), output_(output), at_(at) {}

    /// Writes nothing. The separators around an Undefined element or member are still written.
    Cursor operator()(const Undefined&) const { return at_; }

    Cursor operator()(const Null&) const { return output_.text(at_, "null"); }

    Cursor operator()(bool flag) const {
        return flag ? output_.text(at_, "true") : output_.text(at_, "false");
    }

    Cursor operator()(const double& number) const {
        return output_.number(at_, FloatingBits<double>(number));
    }
    Cursor operator()(const float& number) const {
        return output_.number(at_, FloatingBits<float>(number));
    }
    Cursor operator()(long long number) const { return output_.number(at_, number); }
    Cursor operator()(unsigned long long number) const { return output_.number(at_, number); }
    Cursor operator()(const std::string& text) const { return output_.string(at_, text); }
    Cursor operator()(const Array& elements) const { return writer_.write(at_, elements); }
    Cursor operator()(const Object& members) const { return writer_.write(at_, members); }

private:
    LayoutWriter<Output, Pretty>& writer_;
    Output& output_;
    Cursor at_;
};

/// Writes values, one level of nesting within another.
template <class Output, bool Pretty>
class LayoutWriter {
public:
    using Cursor = typename Output::Cursor;

    explicit LayoutWriter(Output& output) noexcept : output_(output) {}

    Cursor write(Cursor at, const Value& value) {
        // Past visit(), which would take its share of the stack at every level.
        const WriteVisitor<Output, Pretty> visitor(*this, output_, at);
        return ValueAccess::variant(value).apply_visitor(visitor);
    }

    // The recursive functions, one for each container; each needs little stack.

    [[gnu::noinline]] Cursor write(Cursor at, const Array& elements) {
        at = output_.text(at, "[");
        at = write_items(at, elements);
        return output_.text(at, "]");
    }

    [[gnu::noinline]] Cursor write(Cursor at, const Object& members) {
        at = output_.text(at, "{");
        at = write_items(at, members);
        return output_.text(at, "}");
    }

private:
    // Inlined into the recursive functions, since a separate call would need stack of its own.
    template <class Container>
    [[gnu::always_inline]] inline Cursor write_items(Cursor at, const Container& items) {
        if (!items.empty()) {
            ++depth_;
            auto item = items.begin();
            at = write_item(start_line(at), items, item);
            while (item != items.end()) {
                at = output_.text(at, ",");
                at = write_item(start_line(at), items, item);
            }
            --depth_;
            at = end_line(at);
        }
        // An empty container has its indentation between its brackets.
        return indent(at);
    }

    Cursor write_item(Cursor at, const Array&, Array::const_iterator& element) {
        return write(at, *element++);
    }

    Cursor write_item(Cursor at, const Object& members, Object::const_iterator& member) {
        const auto& [name, value] = *member;
        at = output_.string(at, name);
        at = output_.text(at, ":");
        // Members are scattered in memory: prefetch the next name while the value is written.
        if (++member != members.end()) {
            __builtin_prefetch(member->first.data());
        }
        return write(at, value);
    }

    Cursor start_line(Cursor at) { return indent(end_line(at)); }

    Cursor end_line(Cursor at) {
        if constexpr (Pretty) {
            return output_.line_end(at);
        } else {
            return at;
        }
    }

    Cursor indent(Cursor at) {
        if constexpr (Pretty) {
            return output_.spaces(at, 4 * static_cast<std::size_t>(depth_));
        } else {
            return at;
        }
    }

    Output& output_;
    std::uint32_t depth_ = 0;
};

} // namespace foundation::json::detail

#endif
