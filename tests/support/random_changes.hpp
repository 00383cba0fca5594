/// @file
/// Random values that have much in common, and random changes of values.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_CHANGES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_CHANGES_HPP

#include "support/reference_patch.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace foundation::json::test {

class RandomChanges {
public:
    explicit RandomChanges(std::uint64_t seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }
    bool once_in(std::size_t times) { return below(times) == 0; }

    /// Names that occur often, and those that must be escaped.
    std::string name() {
        static const char* const names[] = {
            "a", "b", "c", "0", "-", "", "~", "/", "a name too long for a string's own storage"};
        return names[once_in(4) ? below(9) : below(3)];
    }

    Value scalar() {
        switch (below(12)) {
        case 0:
            return Null();
        case 1:
            return once_in(2);
        case 2:
            return Undefined();
        case 3:
            return static_cast<float>(below(4));
        case 4:
            return static_cast<long long>(below(4)) - 1;
        case 5:
            return static_cast<unsigned long long>(below(4));
        case 6:
            return name();
        case 7:
            return "x";
        case 8:
            return notable_number();
        default:
            return static_cast<double>(below(4));
        }
    }

    Value value(std::size_t levels = 3) {
        switch (below(levels != 0 ? 5 : 2)) {
        case 2:
        case 3:
            return array(levels - 1);
        case 4:
            return object(levels - 1);
        default:
            return scalar();
        }
    }

    /// The same value but for a few changes.
    void change(Value& root) {
        for (std::size_t changes = below(once_in(4) ? 12 : 4); changes != 0; --changes) {
            change_once(root);
        }
    }

    /// A pointer that leads to a value, or to none.
    std::string pointer(const Value& root) {
        std::string result;
        const Value* value = &root;
        while (!once_in(4)) {
            std::string token = once_in(12) ? name() : std::string();
            const Value* child = nullptr;
            if (const auto* const elements = get_if<Array>(value)) {
                const std::size_t index = below(elements->size() + 1);
                child = index != elements->size() ? &(*elements)[index] : nullptr;
                token = once_in(8) && token.empty() ? "-" : std::to_string(index);
            } else if (const auto* const members = get_if<Object>(value);
                       members != nullptr && !members->empty()) {
                auto member = members->begin();
                std::advance(member, static_cast<std::ptrdiff_t>(below(members->size())));
                child = &member->second;
                token = token.empty() ? member->first : token;
            }
            result += '/';
            for (const char c : token) {
                result += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
            }
            if (child == nullptr) {
                return once_in(6) ? result + "/a" : result;
            }
            value = child;
        }
        return result;
    }

private:
    /// Numbers that kinds of numbers cannot all represent.
    Value notable_number() {
        switch (below(8)) {
        case 0:
            return 9007199254740992.0;
        case 1:
            return 9007199254740993LL;
        case 2:
            return 18446744073709551615ULL;
        case 3:
            return 18446744073709551616.0;
        case 4:
            return 0.1f;
        case 5:
            return 0.1;
        case 6:
            return -0.0;
        default:
            return std::nan("");
        }
    }

    Array array(std::size_t levels) {
        Array result;
        const bool long_one = levels == 0 && once_in(8);
        for (std::size_t size = below(long_one ? 60 : 6); size != 0; --size) {
            result.push_back(value(levels));
        }
        return result;
    }

    Object object(std::size_t levels) {
        Object result;
        for (std::size_t size = below(5); size != 0; --size) {
            result[name()] = value(levels);
        }
        return result;
    }

    void change_once(Value& value) {
        if (auto* const elements = get_if<Array>(&value); elements != nullptr && !once_in(8)) {
            change_elements(*elements);
        } else if (auto* const members = get_if<Object>(&value);
                   members != nullptr && !once_in(8)) {
            Value& member = (*members)[name()];
            if (once_in(4)) {
                member = Undefined();
            } else {
                change_once(member);
            }
        } else {
            value = this->value(2);
        }
    }

    void change_elements(Array& elements) {
        const std::size_t index = below(elements.size() + 1);
        const auto place = elements.begin() + static_cast<std::ptrdiff_t>(index);
        if (index == elements.size() || once_in(3)) {
            elements.insert(place, value(1));
        } else if (once_in(2)) {
            elements.erase(place);
        } else {
            change_once(*place);
        }
    }

    std::mt19937_64 random_;
};

/// An operation of a patch that fits a value, mostly.
inline Value random_operation(RandomChanges& random, const Value& root) {
    const std::string path = random.pointer(root);
    switch (random.below(12)) {
    case 0:
    case 1:
    case 2:
        return operation::add(path, random.value(2));
    case 3:
    case 4:
        return operation::remove(path);
    case 5:
    case 6:
        return operation::replace(path, random.value(2));
    case 7:
    case 8:
        return operation::move(random.pointer(root), path);
    case 9:
        return operation::copy(random.pointer(root), path);
    default:
        const Value* const value = find(root, path);
        return operation::test(path, value != nullptr ? *value : random.value(1));
    }
}

/// A patch that fits a value, but for a few operations; the value is changed accordingly.
inline Array random_operations(RandomChanges& random, Value value) {
    Array operations;
    for (std::size_t count = random.below(12); count > 0; --count) {
        operations.push_back(random_operation(random, value));
        const bool fails = reference_patch(value, Array{operations.back()}).has_value();
        if (fails && !random.once_in(8)) {
            operations.pop_back();
        }
    }
    return operations;
}

} // namespace foundation::json::test

#endif
