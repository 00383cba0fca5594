// What push() visits: an array takes the value, every other kind refuses it.
#include "value/append.hpp"

#include <stdexcept>
#include <string>

namespace foundation::json {

namespace detail {

namespace {

template <class Content>
[[noreturn]] void throw_push_not_supported() {
    throw std::runtime_error(std::string("json::Value::push not supported for values of type: ") +
                             traits<Content>::name);
}

} // namespace

} // namespace detail

Value::push_visitor::push_visitor(const Value& v) noexcept : value_(&v) {}

void Value::push_visitor::operator()(Array& elements) const {
    detail::append(elements, *value_);
}

void Value::push_visitor::operator()(const Undefined&) const {
    detail::throw_push_not_supported<Undefined>();
}

void Value::push_visitor::operator()(const Null&) const {
    detail::throw_push_not_supported<Null>();
}

void Value::push_visitor::operator()(bool) const {
    detail::throw_push_not_supported<bool>();
}

void Value::push_visitor::operator()(double) const {
    detail::throw_push_not_supported<double>();
}

void Value::push_visitor::operator()(const std::string&) const {
    detail::throw_push_not_supported<std::string>();
}

void Value::push_visitor::operator()(const Object&) const {
    detail::throw_push_not_supported<Object>();
}

void Value::push_visitor::operator()(float) const {
    detail::throw_push_not_supported<float>();
}

void Value::push_visitor::operator()(long long) const {
    detail::throw_push_not_supported<long long>();
}

void Value::push_visitor::operator()(unsigned long long) const {
    detail::throw_push_not_supported<unsigned long long>();
}

} // namespace foundation::json
