// The fallback, left || right.
#include "value/value_access.hpp"

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

} // namespace foundation::json
