// Element and Property: arrays and objects as expressions.
#include <foundation/json/builders.hpp>

#include "value/append.hpp"

#include <utility>

namespace foundation::json {

Element::Element(const Value& v) : elements_(1, v) {}

Element::Element(const Element& other) : elements_(1, Value(other.elements_)) {}

Element::~Element() = default;

// clang-format takes the operator for a separator.
// clang-format off
const Element& Element::operator,(const Element& other) const {
    // clang-format on
    detail::append(elements_, other.elements_.data(), other.elements_.size());
    return *this;
}

Element::operator Value() const {
    return Value(elements_);
}

Property::Property(const std::string& name) : name_(name) {}

Property::Property(const Property& other) = default;

Property::~Property() = default;

const Property& Property::operator=(const Value& v) const {
    // The copy is made in a separate node, so that inserting it cannot fail.
    Object single;
    single.emplace(name_, v);
    members_.erase(name_);
    members_.merge(single);
    return *this;
}

const Property& Property::operator=(const Property& other) const {
    return *this = Value(other.members_);
}

// clang-format off
const Property& Property::operator,(const Property& other) const {
    // clang-format on
    // Merging moves the nodes of the missing keys over and cannot fail.
    Object copies(other.members_);
    members_.merge(copies);
    return *this;
}

Property::operator Value() const {
    return Value(members_);
}

} // namespace foundation::json
