// HasProperty: whether an object has a member.
#include "value/value_access.hpp"

#include <utility>

namespace foundation::json {

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
