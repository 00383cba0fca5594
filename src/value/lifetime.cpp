// How values are copied, moved, assigned, swapped and destroyed, and how arrays grow. All of it is
// in one source, since compilers put what scalars take into the loops over elements only where they
// see both.
#include "value/append.hpp"
#include "value/dispatch.hpp"
#include "value/nesting.hpp"

#include <boost/variant/get.hpp>

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace foundation::json {

namespace {

// The recursive functions are separate from those that do the work of a level, so that each level
// needs only a few words of stack.

void copy_members(Array& target, const Array& source);
void copy_members(Object& target, const Object& source);

template <class Content>
[[gnu::noinline]] Value& append(Array& target, const Content& content) {
    return target.emplace_back(content);
}

/// @param name  comes after all names that the target holds
template <class Content>
[[gnu::noinline]] Value& append(Object& target, const std::string& name, const Content& content) {
    return target.emplace_hint(target.end(), name, content)->second;
}

[[gnu::noinline]] void reserve(Array& target, std::size_t size) {
    target.reserve(size);
}

template <class Container>
[[gnu::noinline]] Container& append_empty(Array& target) {
    return detail::ValueAccess::content<Container>(target.emplace_back(Container()));
}

template <class Container>
[[gnu::noinline]] Container& append_empty(Object& target, const std::string& name) {
    return detail::ValueAccess::content<Container>(append(target, name, Container()));
}

/// Appends a copy of the visited content to an array.
class CopyElement : public boost::static_visitor<> {
public:
    explicit CopyElement(Array& target) noexcept : target_(target) {}

    template <class Content>
    void operator()(const Content& content) const {
        append(target_, content);
    }

    void operator()(const Array& content) const { copy_container(content); }
    void operator()(const Object& content) const { copy_container(content); }

private:
    template <class Container>
    void copy_container(const Container& content) const {
        copy_members(append_empty<Container>(target_), content);
    }

    Array& target_;
};

/// Appends a copy of the visited content to an object, under a name.
class CopyMember : public boost::static_visitor<> {
public:
    CopyMember(Object& target, const std::string& name) noexcept : target_(target), name_(name) {}

    template <class Content>
    void operator()(const Content& content) const {
        append(target_, name_, content);
    }

    void operator()(const Array& content) const { copy_container(content); }
    void operator()(const Object& content) const { copy_container(content); }

private:
    template <class Container>
    void copy_container(const Container& content) const {
        copy_members(append_empty<Container>(target_, name_), content);
    }

    Object& target_;
    const std::string& name_;
};

[[gnu::noinline]] void copy_members(Array& target, const Array& source) {
    reserve(target, source.size());
    for (const Value& element : source) {
        visit(CopyElement(target), element);
    }
}

[[gnu::noinline]] void copy_members(Object& target, const Object& source) {
    for (const auto& [name, value] : source) {
        visit(CopyMember(target, name), value);
    }
}

using Variant = detail::ValueAccess::Variant;

template <class Container>
[[gnu::noinline]] Variant copy_deep(const Container& content) {
    Variant copy{Container()};
    copy_members(*boost::get<Container>(&copy), content);
    return copy;
}

template <class Content>
[[gnu::noinline]] Variant copy_content(const Content& content) {
    return Variant(content);
}

/// A copy of the visited content.
struct Copy : boost::static_visitor<Variant> {
    template <class Content>
    Variant operator()(const Content& content) const {
        return Variant(content);
    }

    Variant operator()(const Array& content) const { return copy_container(content); }
    Variant operator()(const Object& content) const { return copy_container(content); }

private:
    template <class Container>
    [[gnu::noinline]] static Variant copy_container(const Container& content) {
        const detail::NestingLevel level;
        return level.beyond_ordinary() ? copy_deep(content) : copy_content(content);
    }
};

/// A new variant to which the visited content is moved.
struct Take : boost::static_visitor<Variant> {
    template <class Content>
    Variant operator()(Content& content) const {
        return Variant(std::move(content));
    }
};

/// A copy of anything but a number or string.
[[gnu::noinline]] Variant copy_other(const Value& original) {
    return detail::visit_inline(Copy(), original);
}

// The two commonest kinds come first, in functions so short that compilers inline them into the
// loops over elements.

inline Variant copy(const Value& original) {
    if (holds<double>(original)) {
        return Variant(detail::ValueAccess::content<double>(original));
    }
    return holds<std::string>(original)
               ? copy_content(detail::ValueAccess::content<std::string>(original))
               : copy_other(original);
}

inline Variant take(Value& original) {
    if (holds<double>(original)) {
        return Variant(detail::ValueAccess::content<double>(original));
    }
    return holds<std::string>(original)
               ? Variant(std::move(detail::ValueAccess::content<std::string>(original)))
               : detail::visit_inline(Take(), original);
}

} // namespace

Value::Value(const Value& other) : variant_(copy(other)) {}

Value::Value(Value&& other) : variant_(take(other)) {}

namespace {

void clear_members(Array& elements);
void clear_members(Object& members);

struct ClearContainer : boost::static_visitor<> {
    void operator()(Array& elements) const { clear_members(elements); }
    void operator()(Object& members) const { clear_members(members); }

    template <class Other>
    void operator()(const Other&) const {}
};

[[gnu::noinline]] void clear(Array& elements) {
    elements.clear();
}

[[gnu::noinline]] void clear(Object& members) {
    members.clear();
}

// Bottom up, so that each container's own clear() only finds empty containers.

[[gnu::noinline]] void clear_members(Array& elements) {
    for (Value& element : elements) {
        visit(ClearContainer(), element);
    }
    clear(elements);
}

[[gnu::noinline]] void clear_members(Object& members) {
    for (auto& member : members) {
        visit(ClearContainer(), member.second);
    }
    clear(members);
}

/// Destroys the members of an object, counted as a level. Destroying a vector of values needs
/// little stack at any level.
void destroy_members(Object& members) {
    const detail::NestingLevel level;
    if (level.beyond_ordinary()) {
        clear_members(members);
    } else {
        members.clear();
    }
}

} // namespace

namespace {

[[gnu::noinline]] void destroy_container(Value& value) noexcept {
    if (auto* const members = get_if<Object>(&value)) {
        destroy_members(*members);
    }
    detail::ValueAccess::variant(value).~Variant();
}

/// Destroys a string, array or object. Of a scalar there is nothing to destroy.
inline void destroy_content(Value& value) noexcept {
    if (auto* const text = get_if<std::string>(&value)) {
        text->~basic_string();
    } else if (!detail::holds_scalar(value)) {
        destroy_container(value);
    }
}

} // namespace

// The variant is in a union, so that this is all that happens: scalars are not written to. That
// matters to the library's own Undefined, since a missing member may be looked up after static
// objects are destroyed, and to big arrays of numbers.
Value::~Value() {
    destroy_content(*this);
}

namespace {

// What follows returns the target, so that one function can end with a jump to the next.

template <class Content>
[[gnu::noinline]] Value& replace(Value& target, Content content) noexcept {
    destroy_content(target);
    new (&detail::ValueAccess::variant(target)) Variant(std::move(content));
    return target;
}

/// @param content  by value, since the source may lie within the target
template <class Scalar>
inline Value& assign_scalar(Value& target, Scalar content) noexcept {
    if (!detail::holds_scalar(target)) {
        return replace(target, content);
    }
    new (&detail::ValueAccess::variant(target)) Variant(content);
    return target;
}

[[gnu::noinline]] Value& assign_text(Value& target, const std::string& text) {
    if (auto* const old_text = get_if<std::string>(&target)) {
        *old_text = text;
        return target;
    }
    return replace(target, text);
}

/// Assigns an array or object. If the kind changes and memory runs out, the variant falls back to
/// an uninitialised bool, which is set to false here.
template <class Source>
void assign_variant(Variant& target, Source&& source) {
    try {
        target = std::forward<Source>(source);
    } catch (...) {
        if (bool* const flag = boost::get<bool>(&target)) {
            *flag = false;
        }
        throw;
    }
}

template <class Container>
Value& assign_container(Value& target, const Value& source);

/// Assigns the visited content, that of the source.
class Assign : public boost::static_visitor<Value&> {
public:
    Assign(Value& target, const Value& source) noexcept : target_(target), source_(source) {}

    template <class Scalar>
    Value& operator()(const Scalar& content) const {
        return assign_scalar(target_, content);
    }

    Value& operator()(const std::string& text) const { return assign_text(target_, text); }
    Value& operator()(const Array&) const { return assign_container<Array>(target_, source_); }
    Value& operator()(const Object&) const { return assign_container<Object>(target_, source_); }

private:
    Value& target_;
    const Value& source_;
};

// The effect of a vector's assignment, with little stack. It recurses only to assign an array to an
// array. Everything else that lies deeper is copied, also with little stack, or not changed.

void assign_elements(Array& target, const Array& source);

[[gnu::noinline]] void assign_content(Value& target, const Value& source) {
    if (holds<Array>(source) || holds<Object>(source)) {
        assign_variant(detail::ValueAccess::variant(target), detail::ValueAccess::variant(source));
    } else {
        detail::visit_inline(Assign(target, source), source);
    }
}

/// Assigns a value to another one. No visit: at every level, a visitor would take its place on the
/// stack.
inline void assign_deep(Value& target, const Value& source) {
    auto* const elements = get_if<Array>(&target);
    const auto* const source_elements = get_if<Array>(&source);
    if (elements != nullptr && source_elements != nullptr) {
        assign_elements(*elements, *source_elements);
    } else {
        assign_content(target, source);
    }
}

/// Assigns elements without recursion: all of them if the capacity does not suffice, otherwise
/// those after the target's elements. Excess elements of the target are destroyed.
[[gnu::noinline]] void assign_rest(Array& target, const Array& source) {
    if (source.size() > target.capacity()) {
        target = source;
    } else if (source.size() > target.size()) {
        target.insert(target.end(), source.begin() + static_cast<std::ptrdiff_t>(target.size()),
                      source.end());
    } else {
        target.erase(target.begin() + static_cast<std::ptrdiff_t>(source.size()), target.end());
    }
}

[[gnu::noinline]] void assign_elements(Array& target, const Array& source) {
    if (source.size() <= target.capacity()) {
        for (std::size_t i = 0; i < target.size() && i < source.size(); ++i) {
            assign_deep(target[i], source[i]);
        }
    }
    assign_rest(target, source);
}

template <class Container>
[[gnu::noinline]] Value& assign_container(Value& target, const Value& source) {
    const detail::NestingLevel level;
    if (level.beyond_ordinary()) {
        assign_deep(target, source);
    } else if (auto* const content = get_if<Container>(&target)) {
        *content = detail::ValueAccess::content<Container>(source);
    } else {
        assign_variant(detail::ValueAccess::variant(target), detail::ValueAccess::variant(source));
    }
    return target;
}

[[gnu::noinline]] Value& assign_moved(Value& target, Value& source) {
    assign_variant(detail::ValueAccess::variant(target),
                   std::move(detail::ValueAccess::variant(source)));
    return target;
}

} // namespace

Value& Value::operator=(const Value& other) {
    return this != &other ? detail::visit_inline(Assign(*this, other), other) : *this;
}

Value& Value::operator=(Value&& other) {
    if (const auto* const number = get_if<double>(&other)) {
        return assign_scalar(*this, *number);
    }
    if (detail::holds_scalar(other)) {
        return *this = std::as_const(other);
    }
    // A string moved to itself would become empty.
    return this != &other ? assign_moved(*this, other) : *this;
}

Value& Value::swap(Value& other) {
    if (variant_.which() == other.variant_.which()) {
        variant_.swap(other.variant_);
    } else {
        Value temporary(std::move(other));
        other = std::move(*this);
        *this = std::move(temporary);
    }
    return *this;
}

namespace detail {

std::size_t grown_capacity(const Array& elements, std::size_t count) {
    if (count > elements.max_size() - elements.size()) {
        throw std::length_error("foundation::json: array too long");
    }
    const std::size_t needed = elements.size() + count;
    return std::min(std::max(needed, 2 * elements.capacity()), elements.max_size());
}

namespace {

void append_in_place(Array& elements, const Value* values, std::size_t count) {
    const std::size_t old_size = elements.size();
    try {
        std::for_each(values, values + count,
                      [&](const Value& value) { elements.push_back(value); });
    } catch (...) {
        elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(old_size), elements.end());
        throw;
    }
}

/// Swaps values with as many others from which they were moved, or which were moved from them.
/// Moving keeps the kind, so this cannot fail.
void exchange(Value* values, const Value* values_end, Value* others) noexcept {
    for (; values != values_end; ++values, ++others) {
        values->swap(*others);
    }
}

/// Moves values to the end of an array with sufficient capacity. If anything throws, they stay
/// where they were.
[[gnu::noinline]] void move_over(Array& target, Array& values) {
    const std::size_t old_size = target.size();
    try {
        for (Value& value : values) {
            target.push_back(std::move(value));
        }
    } catch (...) {
        exchange(target.data() + old_size, target.data() + target.size(), values.data());
        throw;
    }
}

[[gnu::noinline]] void append_growing(Array& elements, const Value* values, std::size_t count) {
    Array grown;
    grown.reserve(grown_capacity(elements, count));
    // Copies before moves, since the copied values may be among those that are moved.
    Array copies(values, values + count);
    move_over(grown, elements);
    try {
        move_over(grown, copies);
    } catch (...) {
        exchange(elements.data(), elements.data() + elements.size(), grown.data());
        throw;
    }
    elements.swap(grown);
}

} // namespace

void append(Array& elements, const Value& value) {
    if (elements.size() != elements.capacity()) {
        elements.push_back(value);
    } else {
        append_growing(elements, &value, 1);
    }
}

void append(Array& elements, const Value* values, std::size_t count) {
    if (count <= elements.capacity() - elements.size()) {
        append_in_place(elements, values, count);
    } else {
        append_growing(elements, values, count);
    }
}

void make_room(Array& elements, std::size_t count) {
    if (count > elements.capacity() - elements.size()) {
        Array grown;
        grown.reserve(grown_capacity(elements, count));
        move_over(grown, elements);
        elements.swap(grown);
    }
}

} // namespace detail

void Value::push(const Value& v) {
    // An array takes no visit.
    if (auto* const elements = get_if<Array>(this)) {
        detail::append(*elements, v);
    } else {
        visit(push_visitor(v), *this); // GCOVR_EXCL_BR_LINE: it does not return
    }
}

} // namespace foundation::json
