// What a value is: the names and order of the kinds, construction, assignment, destruction.
#include "value/hardening.hpp"
#include "value/nesting.hpp"
#include "value/value_access.hpp"

#include <boost/variant/get.hpp>

#include <cstddef>
#include <utility>

namespace foundation::json {

Null::Null() = default;
Undefined::Undefined() = default;

const char* const traits<Undefined>::name = "undefined";
const char* const traits<Null>::name = "JSON null";
const char* const traits<bool>::name = "JSON boolean";
const char* const traits<double>::name = "JSON number";
const char* const traits<std::string>::name = "JSON string";
const char* const traits<Array>::name = "JSON array";
const char* const traits<Object>::name = "JSON object";
const char* const traits<float>::name = "float";
const char* const traits<int>::name = "int";
const char* const traits<long long>::name = "int64";
const char* const traits<unsigned long long>::name = "uint64";

const int traits<Undefined>::order;
const int traits<Null>::order;
const int traits<bool>::order;
const int traits<double>::order;
const int traits<std::string>::order;
const int traits<Array>::order;
const int traits<Object>::order;
const int traits<float>::order;
const int traits<int>::order;
const int traits<long long>::order;
const int traits<unsigned long long>::order;

const Value Value::UNDEFINED;

Value::Value() : variant_(Undefined()) {}
Value::Value(const Undefined& tag) : variant_(tag) {}
Value::Value(const Null& tag) : variant_(tag) {}
Value::Value(bool flag) : variant_(flag) {}
Value::Value(int number) : variant_(static_cast<double>(number)) {}
Value::Value(double number) : variant_(number) {}
Value::Value(float number) : variant_(number) {}
Value::Value(long long number) : variant_(number) {}
Value::Value(unsigned long long number) : variant_(number) {}
Value::Value(const char* text) : variant_(std::string(detail::require_text(text))) {}
Value::Value(const std::string& text) : variant_(text) {}
Value::Value(const Array& elements) : variant_(elements) {}
Value::Value(const Object& members) : variant_(members) {}

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

/// Copies the members of the visited container to a value that holds an empty one.
class CopyDeferred : public boost::static_visitor<> {
public:
    explicit CopyDeferred(Value& target) noexcept : target_(target) {}

    void operator()(const Array& elements) const { copy_container(elements); }
    void operator()(const Object& members) const { copy_container(members); }

    template <class Other>
    void operator()(const Other&) const {}

private:
    template <class Container>
    void copy_container(const Container& content) const {
        copy_members(detail::ValueAccess::content<Container>(target_), content);
    }

    Value& target_;
};

using Variant = detail::ValueAccess::Variant;

/// A copy of scalars, tags and strings; an empty container in place of an array or object.
struct CopyShallow : boost::static_visitor<Variant> {
    Variant operator()(const Array&) const { return Variant(Array()); }
    Variant operator()(const Object&) const { return Variant(Object()); }

    template <class Content>
    Variant operator()(const Content& content) const {
        return Variant(content);
    }
};

[[gnu::noinline]] Variant copy_shallow(const Value& original) {
    return visit(CopyShallow(), original);
}

/// A copy; beyond the ordinary levels, CopyDeferred does the rest.
Variant copy(const Value& original) {
    // The commonest kind takes no visit and no level.
    if (const auto* const number = get_if<double>(&original)) {
        return Variant(*number);
    }
    const detail::NestingLevel level;
    return level.beyond_ordinary() ? copy_shallow(original)
                                   : Variant(detail::ValueAccess::variant(original));
}

} // namespace

Value::Value(const Value& other) : variant_(copy(other)) {
    if (detail::NestingLevel::at_last_ordinary()) {
        visit(CopyDeferred(*this), other);
    }
}

namespace {

Variant take(Value& original) {
    if (const auto* const number = get_if<double>(&original)) {
        return Variant(*number);
    }
    return Variant(std::move(detail::ValueAccess::variant(original)));
}

} // namespace

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

Value::~Value() {
    if (auto* const members = get_if<Object>(this)) {
        destroy_members(*members);
    }
}

namespace {

/// Assigns one variant to another. If the kind would have become array or object and memory runs
/// out, the variant falls back to an uninitialised bool, which is set to false here.
template <class Variant, class Source>
void assign(Variant& target, Source&& source) {
    try {
        target = std::forward<Source>(source);
    } catch (...) {
        bool* const flag = boost::get<bool>(&target);
        const bool target_untouched = boost::get<std::string>(&source) != nullptr;
        if (flag != nullptr && !target_untouched) {
            *flag = false;
        }
        throw;
    }
}

// The effect of a vector's assignment, with little stack. It recurses only to assign an array to an
// array. Everything else that lies deeper is copied, also with little stack, or not changed.

void assign_elements(Array& target, const Array& source);

[[gnu::noinline]] void assign_content(Value& target, const Value& source) {
    assign(detail::ValueAccess::variant(target), detail::ValueAccess::variant(source));
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

} // namespace

Value& Value::operator=(const Value& other) {
    if (this != &other) {
        const detail::NestingLevel level;
        if (level.beyond_ordinary()) {
            assign_deep(*this, other);
        } else {
            assign(variant_, other.variant_);
        }
    }
    return *this;
}

Value& Value::operator=(Value&& other) {
    // A string moved to itself would become empty.
    if (this != &other) {
        assign(variant_, std::move(other.variant_));
    }
    return *this;
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

} // namespace foundation::json
