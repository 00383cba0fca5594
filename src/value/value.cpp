#include "value/value_access.hpp"

#include <boost/variant/get.hpp>

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
Value::Value(const char* text) : variant_(std::string(text)) {}
Value::Value(const std::string& text) : variant_(text) {}
Value::Value(const Array& elements) : variant_(elements) {}
Value::Value(const Object& members) : variant_(members) {}
Value::Value(const Value& other) = default;
Value::Value(Value&& other) = default;
Value::~Value() = default;

namespace {

/// Assigns one variant to another. When the kind would have become array or object and memory ran
/// out, the variant has fallen back to a bool without a value of its own: give it one.
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

} // namespace

Value& Value::operator=(const Value& other) {
    if (this != &other) {
        assign(variant_, other.variant_);
    }
    return *this;
}

Value& Value::operator=(Value&& other) {
    // A string moved into itself would come out empty.
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
