// The fallback, left || right, and HasProperty.
#include "value/value_access.hpp"

#include <utility>

namespace foundation::json {

Value::Or Value::operator||(const Value& right) const noexcept {
    return Or(*this, right);
}

Value::Or::Or(const Value& left, const Value& right) noexcept : left_(&left), right_(&right) {}

Value::Or::operator const Value&() const noexcept {
    return visit(OrVisitor(*left_, *right_), *left_);
}

Value::OrVisitor::OrVisitor(const Value& left, const Value& right) noexcept
    : left_(&left), right_(&right) {}

const Value& Value::OrVisitor::left() const noexcept {
    return *left_;
}

const Value& Value::OrVisitor::operator()(const Null&) const noexcept {
    return *right_;
}

const Value& Value::OrVisitor::operator()(const Undefined&) const noexcept {
    return *right_;
}

const Value& Value::OrVisitor::operator()(bool b) const noexcept {
    return b ? *left_ : *right_;
}

const Value& Value::OrVisitor::operator()(double d) const noexcept {
    return d != 0.0 ? *left_ : *right_;
}

const Value& Value::OrVisitor::operator()(const std::string& s) const noexcept {
    return s.empty() ? *right_ : *left_;
}

Value::HasProperty::HasProperty(const std::string& name) : name_(name) {}

Value::HasProperty::HasProperty(const HasProperty& other) = default;

// The standard leaves the content of a moved-from string open; this library promises an empty one.
Value::HasProperty::HasProperty(HasProperty&& other) noexcept
    : name_(std::exchange(other.name_, std::string())) {}

Value::HasProperty& Value::HasProperty::operator=(const HasProperty& other) = default;

Value::HasProperty& Value::HasProperty::operator=(HasProperty&& other) noexcept {
    if (this != &other) {
        name_ = std::exchange(other.name_, std::string());
    }
    return *this;
}

Value::HasProperty::~HasProperty() = default;

bool Value::HasProperty::operator()(const Object& members) const {
    return members.find(name_) != members.end();
}

bool Value::HasProperty::operator()(const Value& value) const {
    return visit(*this, value);
}

} // namespace foundation::json
