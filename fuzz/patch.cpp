/// @file
/// Changes of values by JSON Pointers and patches. The bytes make two values, the second mostly the
/// first with changes, and operations for the first. A plain implementation does the same, one
/// operation after the other; and what leads from one value to the other must lead there.
#include "expect.hpp"
#include "input.hpp"

#include "support/reference_patch.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace foundation::json::fuzz {
namespace {

using test::are_identical;
using test::reference_equivalent;

// ---- Values ------------------------------------------------------------------------------------

const char* const names[] = {"a", "b", "", "0", "-", "~/", "01", "a name that is not a short one"};

Value scalar_from(Input& input) {
    switch (input.below(12)) {
    case 0:
        return Null();
    case 1:
        return true;
    case 2:
        return Undefined();
    case 3:
        return static_cast<float>(input.below(4));
    case 4:
        return static_cast<long long>(input.below(4));
    case 5:
        return static_cast<unsigned long long>(input.below(4));
    case 6:
        return input.one_of(names);
    case 7:
        return input.bits<double>();
    case 8:
        return input.bits<long long>();
    case 9:
        return input.bits<unsigned long long>();
    case 10:
        return input.bits<float>();
    default:
        return static_cast<double>(input.below(4));
    }
}

Value value_from(Input& input, unsigned levels) {
    const std::size_t choice = levels != 0 ? input.below(4) : 0;
    if (choice == 2) {
        Array elements;
        for (std::size_t size = input.below(input.below(8) == 7 ? 40 : 5); size != 0; --size) {
            elements.push_back(value_from(input, levels - 1));
        }
        return elements;
    }
    if (choice == 3) {
        Object members;
        for (std::size_t size = input.below(5); size != 0; --size) {
            members[input.one_of(names)] = value_from(input, levels - 1);
        }
        return members;
    }
    return scalar_from(input);
}

void change(Value& value, Input& input) {
    if (auto* const elements = get_if<Array>(&value); elements != nullptr && !elements->empty()) {
        const auto place =
            elements->begin() + static_cast<std::ptrdiff_t>(input.below(elements->size() % 256));
        switch (input.below(4)) {
        case 0:
            elements->erase(place);
            return;
        case 1:
            elements->insert(place, value_from(input, 1));
            return;
        case 2:
            elements->push_back(value_from(input, 1));
            return;
        default:
            change(*place, input);
            return;
        }
    }
    auto* const members = get_if<Object>(&value);
    if (members != nullptr && input.flag()) {
        change((*members)[input.one_of(names)], input);
    } else {
        value = value_from(input, 2);
    }
}

// ---- Pointers and operations -------------------------------------------------------------------

/// A step, escaped.
std::string step(const std::string& name) {
    std::string result = "/";
    for (const char c : name) {
        result += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
    return result;
}

std::string pointer_from(Input& input, const Value& root) {
    std::string result;
    const Value* value = &root;
    for (std::size_t steps = input.below(5); steps != 0; --steps) {
        if (input.below(16) == 0) {
            return result + step(input.one_of(names));
        }
        if (const auto* const elements = get_if<Array>(value)) {
            const std::size_t index = input.below(elements->size() % 256 + 1);
            result += step(std::to_string(index));
            if (index == elements->size()) {
                return result;
            }
            value = &(*elements)[index];
        } else if (const auto* const members = get_if<Object>(value)) {
            const std::string name = input.one_of(names);
            result += step(name);
            const auto found = members->find(name);
            if (found == members->end()) {
                return result;
            }
            value = &found->second;
        }
    }
    return result;
}

Value operation_from(Input& input, const Value& root) {
    const std::string path = pointer_from(input, root);
    switch (input.below(8)) {
    case 0:
        return operation::remove(path);
    case 1:
        return operation::replace(path, value_from(input, 2));
    case 2:
    case 3:
        return operation::move(pointer_from(input, root), path);
    case 4:
        return operation::copy(pointer_from(input, root), path);
    case 5: {
        const Value* const value = find(root, path);
        return operation::test(path, value != nullptr ? *value : Value());
    }
    default:
        return operation::add(path, value_from(input, 2));
    }
}

// ---- Checks ------------------------------------------------------------------------------------

void check_equivalence(const Value& a, const Value& b) {
    const bool expected = reference_equivalent(a, b);
    expect(equivalent(a, b) == expected, "equivalent() is right");
    expect(equivalent(b, a) == expected, "equivalent() is symmetric");
    expect(equivalent(a, a) == reference_equivalent(a, a), "equivalent() is right of one value");
}

void check_diff(const Value& a, const Value& b) {
    if (!reference_equivalent(b, b)) {
        return; // NaN
    }
    const Value operations = diff(a, b);
    Value patched = a;
    patch(patched, operations);
    expect(reference_equivalent(patched, b), "a patch gives the value it was made for");
    Value plain = a;
    expect(!test::reference_patch(plain, get<Array>(operations)), "a patch is one");
    expect(are_identical(plain, patched), "a patch does the same everywhere");
    try {
        const Value changes = merge_diff(a, b);
        Value merged = a;
        merge_patch(merged, changes);
        expect(reference_equivalent(merged, b), "a merge patch gives the value it was made for");
    } catch (const PointerError&) {
    }
}

void check_merge(const Value& a, const Value& b) {
    const Value expected = test::reference_merge(a, b);
    Value merged = a;
    merge_patch(merged, b);
    expect(are_identical(merged, expected), "a copied merge patch is applied");
    Value moved = a;
    merge_patch(moved, Value(b));
    expect(are_identical(moved, expected), "a merge patch is applied");
}

template <class Operations>
std::optional<std::size_t> failure_of_patch(Value& root, Operations&& operations) {
    try {
        patch(root, std::forward<Operations>(operations));
        return std::nullopt;
    } catch (const PatchError& error) {
        return error.index();
    }
}

void check_patch(const Value& root, Input& input) {
    Array list;
    Value state = root;
    for (std::size_t count = input.below(12); count != 0; --count) {
        list.push_back(operation_from(input, state));
        if (test::reference_patch(state, Array{list.back()}) && input.below(8) != 0) {
            list.pop_back();
        }
    }
    const Value operations = list;
    Value expected = root;
    const auto failure = test::reference_patch(expected, list);
    Value patched = root;
    expect(failure_of_patch(patched, operations) == failure, "the same operation fails");
    expect(are_identical(patched, expected), "a patch is applied, or nothing of it");
    Value taken = operations;
    Value other = root;
    expect(failure_of_patch(other, std::move(taken)) == failure, "the same operation fails again");
    expect(are_identical(other, expected),
           "a patch that may be taken is applied, or nothing of it");
    expect(!failure || are_identical(taken, operations), "a patch that fails keeps its values");
}

/// Makes a change, by the library and by the reference.
template <class Change, class Reference>
void check_change(const Value& root, Change make, Reference reference, const char* what) {
    Value changed = root;
    Value expected = root;
    std::optional<Value> result;
    std::optional<Value> expected_result;
    try {
        result = make(changed);
    } catch (const PointerError&) {
        expect(are_identical(changed, root), "a change that fails changes nothing");
    }
    try {
        expected_result = reference(expected);
    } catch (const test::ReferenceFailure&) {
        expected = Value(root);
    }
    expect(result.has_value() == expected_result.has_value(), what);
    expect(are_identical(changed, expected), what);
    expect(!result || are_identical(*result, *expected_result), what);
}

void check_changes(const Value& root, Input& input) {
    const std::string pointer = pointer_from(input, root);
    const std::string other = pointer_from(input, root);
    const Value value = value_from(input, 2);
    const auto tokens = test::tokens_of(pointer);
    const auto other_tokens = test::tokens_of(other);
    check_change(
        root, [&](Value& v) { return set(v, pointer, value); },
        [&](Value& v) {
            test::reference_set(v, tokens, value);
            return value;
        },
        "set() sets");
    check_change(
        root, [&](Value& v) { return insert(v, pointer, value); },
        [&](Value& v) {
            test::reference_add(v, tokens, value);
            return value;
        },
        "insert() inserts");
    check_change(
        root, [&](Value& v) { return erase(v, pointer); },
        [&](Value& v) { return test::reference_remove(v, tokens); }, "erase() erases");
    check_change(
        root, [&](Value& v) { return move(v, pointer, other); },
        [&](Value& v) {
            Value moved = test::reference_find(v, tokens);
            test::reference_move(v, tokens, other_tokens);
            return moved;
        },
        "move() moves");
    check_change(
        root, [&](Value& v) { return copy(v, pointer, other); },
        [&](Value& v) {
            Value copied = test::reference_find(v, tokens);
            test::reference_add(v, other_tokens, copied);
            return copied;
        },
        "copy() copies");
}

/// Patches of any content either are applied or say why not.
void check_any_patch(const Value& root, const Value& operations, const std::string& pointer) {
    Value patched = root;
    try {
        patch(patched, operations);
    } catch (const PatchError&) {
        expect(are_identical(patched, root), "what is no patch changes nothing");
    }
    try {
        set(patched, pointer, 1);
        expect(find(patched, pointer) != nullptr || pointer.find('-') != std::string::npos,
               "what was set is found");
    } catch (const PointerError&) {
    } catch (const std::invalid_argument&) {
        expect(pointer.front() != '/' || pointer.find('~') != std::string::npos,
               "a JSON Pointer is refused only for its first byte or a ~");
    }
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace foundation::json;
    fuzz::Input input(data, size);
    const Value root = fuzz::value_from(input, 3);
    Value other = root;
    if (input.below(8) == 0) {
        other = fuzz::value_from(input, 3);
    }
    for (std::size_t changes = input.below(6); changes != 0; --changes) {
        fuzz::change(other, input);
    }
    fuzz::check_equivalence(root, other);
    fuzz::check_diff(root, other);
    fuzz::check_merge(root, other);
    fuzz::check_patch(root, input);
    fuzz::check_changes(root, input);
    fuzz::check_any_patch(root, other, input.text(input.below(16)));
    return 0;
}
