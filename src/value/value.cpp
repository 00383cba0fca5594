// What a value is: the names and order of the kinds, construction from native values.
#include "system/compiler.hpp"
#include "value/hardening.hpp"
#include "value/value_access.hpp"

#include <stdexcept>
#include <string>

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

namespace detail {

namespace {

/// The name of each type in a list, in its order.
template <class... Types>
const char* name_in(TypeList<Types...>, int order) noexcept {
    int next = 0;
    const char* result = "no kind"; // what is no order
    static_cast<void>(((order == next++ ? (result = traits<Types>::name, true) : false) || ...));
    return result;
}

/// Whether each type of a list has the order of its position there.
template <class... Types>
constexpr bool are_in_order(TypeList<Types...>) noexcept {
    int next = 0;
    return ((traits<Types>::order == next++) && ...);
}

static_assert(are_in_order(Contents()));
static_assert(static_cast<int>(Kind::uint64) == Contents::size - 1);

} // namespace

const char* name_of_order(int order) noexcept {
    return name_in(Contents(), order);
}

void throw_invalid_conversion(int order, const char* target) {
    throw std::runtime_error(std::string("invalid conversion: ") + name_of_order(order) + " to " +
                             target);
}

} // namespace detail

FOUNDATION_JSON_CONSTINIT const Value Value::UNDEFINED{detail::ZeroBytes(0)};

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

} // namespace foundation::json
