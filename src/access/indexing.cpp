// Indexing, hasOwnProperty and length: looking into arrays and objects.
#include "access/indexing.hpp"

#include "value/hardening.hpp"
#include "value/value_access.hpp"

#include <stdexcept>

namespace foundation::json {

namespace detail {

std::uint64_t to_index(double number) noexcept {
    constexpr double two_to_63 = 9223372036854775808.0;
    constexpr std::uint64_t top_bit = std::uint64_t{1} << 63;
    if (number >= two_to_63) {
        const double rest = number - two_to_63;
        return top_bit | (rest < two_to_63 ? static_cast<std::uint64_t>(rest) : 0);
    }
    if (number > -two_to_63) {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
    }
    return top_bit;
}

namespace {

Value& member(Value& value, const std::string& name) {
    return get<Object>(value)[name];
}

const Value& member(const Value& value, const std::string& name) {
    const auto& members = get<Object>(value);
    const auto found = members.find(name);
    return found != members.end() ? found->second : ValueAccess::undefined();
}

template <class AnyValue>
AnyValue& element(AnyValue& value, std::size_t index) {
    auto& elements = get<Array>(value);
    require_index(index, elements.size());
    return elements[index];
}

/// Looks up by the kind of the key: a number is an index, a string is a name.
template <class AnyValue>
class LookUp : public boost::static_visitor<AnyValue&> {
public:
    explicit LookUp(AnyValue& value) noexcept : value_(value) {}

    AnyValue& operator()(double index) const {
        return element(value_, static_cast<std::size_t>(to_index(index)));
    }

    AnyValue& operator()(const std::string& name) const { return member(value_, name); }

    template <class Other>
    AnyValue& operator()(const Other&) const {
        throw std::runtime_error("Undefined value");
    }

private:
    AnyValue& value_;
};

struct Length : boost::static_visitor<std::size_t> {
    std::size_t operator()(const Array& elements) const { return elements.size(); }

    template <class Other>
    std::size_t operator()(const Other&) const {
        // The missing space before the name is part of the message.
        throw std::runtime_error(
            std::string("json::Value::length not supported for values of type:") +
            traits<Other>::name);
    }
};

} // namespace
} // namespace detail

Value& Value::operator[](const std::string& key) {
    return detail::member(*this, key);
}

Value& Value::operator[](const char* key) {
    return (*this)[std::string(detail::require_text(key))];
}

Value& Value::operator[](int index) {
    return (*this)[static_cast<std::size_t>(detail::to_index(index))];
}

Value& Value::operator[](std::size_t index) {
    return detail::element(*this, index);
}

Value& Value::operator[](const Value& key) {
    return visit(detail::LookUp<Value>(*this), key);
}

const Value& Value::operator[](const std::string& key) const {
    return detail::member(*this, key);
}

const Value& Value::operator[](const char* key) const {
    return (*this)[std::string(detail::require_text(key))];
}

const Value& Value::operator[](int index) const {
    return (*this)[static_cast<std::size_t>(detail::to_index(index))];
}

const Value& Value::operator[](std::size_t index) const {
    return detail::element(*this, index);
}

const Value& Value::operator[](const Value& key) const {
    return visit(detail::LookUp<const Value>(*this), key);
}

std::size_t Value::length() const {
    return visit(detail::Length(), *this);
}

bool Value::hasOwnProperty(const std::string& key) const {
    // As HasProperty, which would copy the key.
    const auto* const members = get_if<Object>(this);
    return members != nullptr && members->find(key) != members->end();
}

} // namespace foundation::json
