/// @file
/// JSON Pointers, patches and the equality of JSON a second time, in the plainest way: one change
/// after the other, on values whose containers are copied.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_REFERENCE_PATCH_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_REFERENCE_PATCH_HPP

#include <foundation/json/content.hpp>

#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace foundation::json::test {

/// Whether values have the same kinds and content throughout: as ==, but Undefined and NaN equal
/// themselves.
inline bool are_identical(const Value& a, const Value& b) {
    if (kind_of(a) != kind_of(b)) {
        return false;
    }
    if (const auto* const elements = get_if<Array>(&a)) {
        const auto& others = get<Array>(b);
        bool same = elements->size() == others.size();
        for (std::size_t i = 0; same && i != others.size(); ++i) {
            same = are_identical((*elements)[i], others[i]);
        }
        return same;
    }
    if (const auto* const members = get_if<Object>(&a)) {
        const auto& others = get<Object>(b);
        bool same = members->size() == others.size();
        for (auto i = members->begin(), j = others.begin(); same && i != members->end(); ++i, ++j) {
            same = i->first == j->first && are_identical(i->second, j->second);
        }
        return same;
    }
    const auto is_nan = [](const Value& value) {
        const auto* const number = get_if<double>(&value);
        const auto* const small = get_if<float>(&value);
        return number != nullptr ? std::isnan(*number) : small != nullptr && std::isnan(*small);
    };
    return holds<Undefined>(a) || (is_nan(a) ? is_nan(b) : a == b);
}

// ---- Equality ------------------------------------------------------------------------------

/// A number that is whole and has 64 bits, or else a double.
struct ReferenceNumber {
    bool is_whole;
    bool is_negative;
    unsigned long long magnitude;
    double other;

    explicit ReferenceNumber(double number)
        : is_whole(std::trunc(number) == number && std::fabs(number) < 18446744073709551616.0),
          is_negative(is_whole && number < 0),
          magnitude(is_whole ? static_cast<unsigned long long>(std::fabs(number)) : 0),
          other(is_whole ? 0 : number) {}
    explicit ReferenceNumber(float number) : ReferenceNumber(static_cast<double>(number)) {}
    explicit ReferenceNumber(long long number)
        : is_whole(true),
          is_negative(number < 0),
          magnitude(number < 0 ? 0 - static_cast<unsigned long long>(number)
                               : static_cast<unsigned long long>(number)),
          other(0) {}
    explicit ReferenceNumber(unsigned long long number)
        : is_whole(true), is_negative(false), magnitude(number), other(0) {}

    bool operator==(const ReferenceNumber& right) const {
        return is_whole == right.is_whole && is_negative == right.is_negative &&
               magnitude == right.magnitude && other == right.other;
    }
};

struct ToReferenceNumber {
    std::optional<ReferenceNumber> operator()(double number) const {
        return ReferenceNumber(number);
    }
    std::optional<ReferenceNumber> operator()(float number) const {
        return ReferenceNumber(number);
    }
    std::optional<ReferenceNumber> operator()(long long number) const {
        return ReferenceNumber(number);
    }
    std::optional<ReferenceNumber> operator()(unsigned long long number) const {
        return ReferenceNumber(number);
    }
    template <class Other>
    std::optional<ReferenceNumber> operator()(const Other&) const {
        return std::nullopt;
    }
};

/// A copy of an object without the members that are Undefined.
inline Object defined_members(const Object& members) {
    Object result;
    for (const auto& [name, value] : members) {
        if (!holds<Undefined>(value)) {
            result[name] = value;
        }
    }
    return result;
}

inline bool reference_equivalent(const Value& a, const Value& b) {
    const auto number = visit(ToReferenceNumber(), a);
    const auto other = visit(ToReferenceNumber(), b);
    if (number || other) {
        return number && other && *number == *other;
    }
    if (holds<Array>(a) && holds<Array>(b)) {
        const auto& left = get<Array>(a);
        const auto& right = get<Array>(b);
        bool same = left.size() == right.size();
        for (std::size_t i = 0; same && i != left.size(); ++i) {
            same = reference_equivalent(left[i], right[i]);
        }
        return same;
    }
    if (holds<Object>(a) && holds<Object>(b)) {
        const Object left = defined_members(get<Object>(a));
        const Object right = defined_members(get<Object>(b));
        bool same = left.size() == right.size();
        for (auto i = left.begin(), j = right.begin(); same && i != left.end(); ++i, ++j) {
            same = i->first == j->first && reference_equivalent(i->second, j->second);
        }
        return same;
    }
    return (holds<Undefined>(a) && holds<Undefined>(b)) || a == b;
}

// ---- Pointers ------------------------------------------------------------------------------

/// What is thrown for an operation that fails, whatever the reason.
struct ReferenceFailure : std::runtime_error {
    ReferenceFailure() : std::runtime_error("the operation fails") {}
};

inline std::vector<std::string> tokens_of(const std::string& pointer) {
    std::vector<std::string> tokens;
    for (std::size_t i = 0; i < pointer.size(); ++i) {
        if (pointer[i] == '/') {
            tokens.emplace_back();
        } else if (pointer[i] == '~') {
            tokens.back() += pointer[++i] == '0' ? '~' : '/';
        } else {
            tokens.back() += pointer[i];
        }
    }
    return tokens;
}

/// The index that a token stands for, from 0 to the size.
inline std::size_t reference_index(const std::string& token, std::size_t size) {
    if (token == "-") {
        return size;
    }
    for (std::size_t i = 0; i <= size; ++i) {
        if (token == std::to_string(i)) {
            return i;
        }
    }
    throw ReferenceFailure();
}

inline Value& reference_child(Value& parent, const std::string& token) {
    if (auto* const members = get_if<Object>(&parent)) {
        const auto found = members->find(token);
        return found != members->end() ? found->second : throw ReferenceFailure();
    }
    if (auto* const elements = get_if<Array>(&parent)) {
        const std::size_t index = reference_index(token, elements->size());
        return index != elements->size() ? (*elements)[index] : throw ReferenceFailure();
    }
    throw ReferenceFailure();
}

inline Value& reference_find(Value& root, const std::vector<std::string>& tokens) {
    Value* value = &root;
    for (const std::string& token : tokens) {
        value = &reference_child(*value, token);
    }
    return *value;
}

/// The parent of what tokens lead to.
inline Value& reference_parent(Value& root, std::vector<std::string> tokens) {
    tokens.pop_back();
    return reference_find(root, tokens);
}

// ---- Operations ----------------------------------------------------------------------------

inline void reference_add(Value& root, const std::vector<std::string>& tokens, const Value& value) {
    if (tokens.empty()) {
        root = Value(value);
        return;
    }
    Value& parent = reference_parent(root, tokens);
    if (auto* const members = get_if<Object>(&parent)) {
        members->erase(tokens.back());
        members->emplace(tokens.back(), value);
    } else if (const auto* const elements = get_if<Array>(&parent)) {
        Array copy = *elements;
        const std::size_t index = reference_index(tokens.back(), copy.size());
        copy.insert(copy.begin() + static_cast<std::ptrdiff_t>(index), value);
        parent = copy;
    } else {
        throw ReferenceFailure();
    }
}

inline Value reference_remove(Value& root, const std::vector<std::string>& tokens) {
    Value removed = reference_find(root, tokens);
    if (tokens.empty()) {
        root = Value();
        return removed;
    }
    Value& parent = reference_parent(root, tokens);
    if (auto* const members = get_if<Object>(&parent)) {
        members->erase(tokens.back());
    } else {
        Array copy = get<Array>(parent);
        const std::size_t index = reference_index(tokens.back(), copy.size());
        copy.erase(copy.begin() + static_cast<std::ptrdiff_t>(index));
        parent = copy;
    }
    return removed;
}

inline void reference_replace(Value& root, const std::vector<std::string>& tokens,
                              const Value& value) {
    reference_find(root, tokens) = Value(value);
}

inline void reference_move(Value& root, const std::vector<std::string>& from,
                           const std::vector<std::string>& to) {
    reference_find(root, from);
    const bool within = to.size() > from.size() && std::equal(from.begin(), from.end(), to.begin());
    if (within) {
        throw ReferenceFailure();
    }
    if (from != to) {
        const Value value = reference_remove(root, from);
        reference_add(root, to, value);
    }
}

inline void reference_set(Value& root, const std::vector<std::string>& tokens, const Value& value) {
    Value* place = &root;
    for (const std::string& token : tokens) {
        if (holds<Undefined>(*place)) {
            *place = token == "-" || token == "0" ? Value(Array()) : Value(Object());
        }
        if (auto* const members = get_if<Object>(place)) {
            place = &(*members)[token];
        } else if (auto* const elements = get_if<Array>(place)) {
            const std::size_t index = reference_index(token, elements->size());
            if (index == elements->size()) {
                elements->emplace_back();
            }
            place = &(*elements)[index];
        } else {
            throw ReferenceFailure();
        }
    }
    *place = Value(value);
}

/// Applies the operations of a patch, each of which must be one, until one fails.
/// @param root  in the end, as it is after the last operation, or was before all of them
/// @return the index of the operation that fails; nothing if none does
inline std::optional<std::size_t> reference_patch(Value& root, const Array& operations) {
    Value changed = root;
    for (std::size_t i = 0; i != operations.size(); ++i) {
        const Value& operation = operations[i];
        const auto& name = get<std::string>(operation["op"]);
        const auto path = tokens_of(get<std::string>(operation["path"]));
        try {
            if (name == "add") {
                reference_add(changed, path, operation["value"]);
            } else if (name == "remove") {
                reference_remove(changed, path);
            } else if (name == "replace") {
                reference_replace(changed, path, operation["value"]);
            } else if (name == "move") {
                reference_move(changed, tokens_of(get<std::string>(operation["from"])), path);
            } else if (name == "copy") {
                const Value value =
                    reference_find(changed, tokens_of(get<std::string>(operation["from"])));
                reference_add(changed, path, value);
            } else if (!reference_equivalent(reference_find(changed, path), operation["value"])) {
                return i;
            }
        } catch (const ReferenceFailure&) {
            return i;
        }
    }
    root = Value(changed);
    return std::nullopt;
}

/// RFC 7396, section 2.
inline Value reference_merge(Value target, const Value& patch) {
    if (!holds<Object>(patch)) {
        return holds<Undefined>(patch) ? target : patch;
    }
    if (!holds<Object>(target)) {
        target = Value(Object());
    }
    for (const auto& [name, value] : get<Object>(patch)) {
        if (holds<Null>(value)) {
            get<Object>(target).erase(name);
        } else if (!holds<Undefined>(value)) {
            target[name] = Value(reference_merge(target[name], value));
        }
    }
    return target;
}

} // namespace foundation::json::test

#endif
