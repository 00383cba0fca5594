/// @file
/// The layouts of JSON text: which pieces are written for a value, in which order.
///
/// One implementation for all destinations. An Output has a Cursor, the position after the text so
/// far. Its functions write a piece at a cursor and return the next one:
///
///     text(Cursor, const char (&)[N])     one piece of fixed text
///     number(Cursor, FloatingBits<T>)     a double or float
///     number(Cursor, T)                   a long long or unsigned long long
///     string(Cursor, const std::string&)  a quoted and escaped string
///
/// For the fixed layouts:
///
///     line_end(Cursor)                    a line feed, and a flush of a stream
///     spaces(Cursor, std::size_t)         one piece of that many spaces
///
/// For the others:
///
///     name(Cursor, const std::string&)    the name of a member, and the colon behind it
///     line(Cursor, std::size_t)           a line feed, and the spaces of that many levels
///
/// The cursor is passed on in a register, because every piece needs it first: in an object in
/// memory, each piece would have to wait until the one before had stored it.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_LAYOUT_HPP

#include "system/compiler.hpp"
#include "text/utf16_order.hpp"
#include "value/value_access.hpp"
#include <foundation/json/detail/floating_bits.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <vector>

namespace foundation::json::detail {

enum class Layout {
    fixed,        ///< of serialize(): Undefined is nothing, and its separators stay
    fixed_pretty, ///< of pretty_print()
    compact,      ///< of JSON.stringify(): Undefined members are left out, Undefined elements null
    indented,     ///< the same, on lines of their own
};

constexpr bool is_fixed(Layout layout) noexcept {
    return layout == Layout::fixed || layout == Layout::fixed_pretty;
}

template <class Output, Layout layout>
class LayoutWriter;

/// Writes the visited content at the nesting level that a LayoutWriter has reached.
template <class Output, Layout layout>
class WriteVisitor : public boost::static_visitor<typename Output::Cursor> {
public:
    using Cursor = typename Output::Cursor;

    WriteVisitor(LayoutWriter<Output, layout>& writer, Cursor at) noexcept
        : writer_(writer), at_(at) {}

    Cursor operator()(const Undefined&) const {
        if constexpr (is_fixed(layout)) {
            return at_;
        } else {
            return output().text(at_, "null");
        }
    }

    Cursor operator()(const Null&) const { return output().text(at_, "null"); }

    Cursor operator()(bool flag) const {
        return flag ? output().text(at_, "true") : output().text(at_, "false");
    }

    Cursor operator()(const double& number) const {
        return output().number(at_, FloatingBits<double>(number));
    }
    Cursor operator()(const float& number) const {
        return output().number(at_, FloatingBits<float>(number));
    }
    Cursor operator()(long long number) const { return output().number(at_, number); }
    Cursor operator()(unsigned long long number) const { return output().number(at_, number); }
    Cursor operator()(const std::string& text) const { return output().string(at_, text); }
    Cursor operator()(const Array& elements) const { return writer_.write(at_, elements); }
    Cursor operator()(const Object& members) const { return writer_.write(at_, members); }

private:
    Output& output() const noexcept { return writer_.output(); }

    // One exists for each level of nesting, so it is small.
    LayoutWriter<Output, layout>& writer_;
    Cursor at_;
};

/// Writes values, one level of nesting within another.
template <class Output, Layout layout>
class LayoutWriter {
public:
    using Cursor = typename Output::Cursor;

    explicit LayoutWriter(Output& output) noexcept : output_(output) {}

    /// For the layouts that are not fixed.
    /// @param sorts  whether members come in the order of the UTF-16 units of their names
    /// @param depth  how many levels of arrays and objects are around the value
    LayoutWriter(Output& output, bool sorts, std::size_t depth = 0) noexcept
        : output_(output), sorts_(sorts), depth_(depth) {}

    Output& output() const noexcept { return output_; }

    Cursor write(Cursor at, const Value& value) {
        // Past visit(), which would take its share of the stack at every level.
        const WriteVisitor<Output, layout> visitor(*this, at);
        return ValueAccess::variant(value).apply_visitor(visitor);
    }

    // The recursive functions, one for each container; each needs little stack.

    [[gnu::noinline]] Cursor write(Cursor at, const Array& elements) {
        at = output_.text(at, "[");
        at = write_items(at, elements);
        return output_.text(at, "]");
    }

    [[gnu::noinline]] Cursor write(Cursor at, const Object& members) {
        if constexpr (!is_fixed(layout)) {
            if (sorts_ && differs_in_utf16(members)) {
                return write_sorted(at, members);
            }
        }
        at = output_.text(at, "{");
        at = write_items(at, members);
        return output_.text(at, "}");
    }

private:
    // Inlined into the recursive functions, since a separate call would need stack of its own.
    template <class Container>
    [[gnu::always_inline]] inline Cursor write_items(Cursor at, const Container& items) {
        auto item = items.begin();
        skip_undefined(items, item);
        if (item != items.end()) {
            ++depth_;
            at = write_item(start_line(at), items, item);
            while (item != items.end()) {
                at = output_.text(at, ",");
                at = write_item(start_line(at), items, item);
            }
            --depth_;
            at = end_line(at);
        }
        return end_items(at);
    }

    // ---- Items -------------------------------------------------------------------------------

    // Each writes one item, and moves on to the next that is written.

    Cursor write_item(Cursor at, const Array&, Array::const_iterator& element) {
        return write(at, *element++);
    }

    Cursor write_item(Cursor at, const Object& members, Object::const_iterator& member) {
        const auto& [name, value] = *member;
        at = write_name(at, name);
        ++member;
        skip_undefined(members, member);
        // Members are scattered in memory: prefetch the next name while the value is written.
        if (member != members.end()) {
            prefetch(member->first.data());
        }
        return write(at, value);
    }

    Cursor write_name(Cursor at, const std::string& name) {
        if constexpr (is_fixed(layout)) {
            at = output_.string(at, name);
            return output_.text(at, ":");
        } else {
            return output_.name(at, name);
        }
    }

    static void skip_undefined(const Array&, const Array::const_iterator&) noexcept {}

    static void skip_undefined(const Object& members, Object::const_iterator& member) noexcept {
        if constexpr (!is_fixed(layout)) {
            while (member != members.end() && holds<Undefined>(member->second)) {
                ++member;
            }
        }
    }

    // ---- Lines -------------------------------------------------------------------------------

    Cursor start_line(Cursor at) {
        if constexpr (layout == Layout::fixed_pretty) {
            return indent(output_.line_end(at));
        } else {
            return end_line(at);
        }
    }

    /// What follows the last item.
    Cursor end_line(Cursor at) {
        if constexpr (layout == Layout::fixed_pretty) {
            return output_.line_end(at);
        } else if constexpr (layout == Layout::indented) {
            return output_.line(at, depth_);
        } else {
            return at;
        }
    }

    /// What precedes the closing bracket, also of an empty container.
    Cursor end_items(Cursor at) {
        if constexpr (layout == Layout::fixed_pretty) {
            return indent(at);
        } else {
            return at;
        }
    }

    Cursor indent(Cursor at) { return output_.spaces(at, 4 * depth_); }

    // ---- Objects in the order of UTF-16 ------------------------------------------------------

    /// Whether names may come in another order than in the object. The orders differ only where
    /// characters beyond U+FFFF take part.
    [[gnu::noinline]] static bool differs_in_utf16(const Object& members) noexcept {
        return std::any_of(members.begin(), members.end(),
                           [](const auto& member) { return has_pair_in_utf16(member.first); });
    }

    [[gnu::noinline]] Cursor write_sorted(Cursor at, const Object& members) {
        sort(members);
        at = output_.text(at, "{");
        if (const auto* member = take_sorted()) {
            ++depth_;
            at = write_sorted_member(start_line(at), *member);
            while ((member = take_sorted()) != nullptr) {
                at = output_.text(at, ",");
                at = write_sorted_member(start_line(at), *member);
            }
            --depth_;
            at = end_line(at);
        }
        return output_.text(at, "}");
    }

    Cursor write_sorted_member(Cursor at, const Object::value_type& member) {
        return write(write_name(at, member.first), member.second);
    }

    /// Appends null, and the members of an object that are written, the last one first.
    [[gnu::noinline]] void sort(const Object& members) {
        sorted_.push_back(nullptr);
        const auto begin = static_cast<std::ptrdiff_t>(sorted_.size());
        for (const auto& member : members) {
            if (!holds<Undefined>(member.second)) {
                sorted_.push_back(&member);
            }
        }
        std::sort(std::next(sorted_.begin(), begin), sorted_.end(),
                  [](const auto* left, const auto* right) {
                      return is_less_in_utf16(right->first, left->first);
                  });
    }

    /// The next member of the object that was sorted last; null behind the last one.
    const Object::value_type* take_sorted() noexcept {
        const auto* const member = sorted_.back();
        sorted_.pop_back();
        return member;
    }

    Output& output_;
    bool sorts_ = false;
    std::size_t depth_ = 0;
    /// What is left of the objects that are being written in another order, of the outermost first.
    struct Nothing {};
    using Members = std::vector<const Object::value_type*>;
    std::conditional_t<is_fixed(layout), Nothing, Members> sorted_;
};

} // namespace foundation::json::detail

#endif
