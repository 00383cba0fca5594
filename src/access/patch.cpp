// Patches (RFC 6902) and merge patches (RFC 7396), applied; and operations built in code.
#include <foundation/json/patch.hpp>

#include "access/draft.hpp"
#include "access/nouns.hpp"

#include <foundation/json/detail/quoted.hpp>
#include <foundation/json/pointer.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

namespace foundation::json {

PatchError::PatchError(std::size_t index, std::string path, const std::string& message)
    : std::runtime_error(message),
      index_(index),
      path_(std::make_shared<const std::string>(std::move(path))) {}

PatchError::PatchError(const PatchError&) noexcept = default;
PatchError& PatchError::operator=(const PatchError&) noexcept = default;
PatchError::~PatchError() = default;

std::size_t PatchError::index() const noexcept {
    return index_;
}

const std::string& PatchError::path() const noexcept {
    return *path_;
}

namespace {

using detail::Draft;
using detail::quoted;
using detail::Target;

// Content to be put somewhere: a copy, or the content of a value that may be moved from.

Value& content_of(Draft& draft, const Value& value) {
    return draft.own(value);
}

Value& content_of(Draft&, Value& value) {
    return value;
}

// ---- Patches -------------------------------------------------------------------------------

/// An operation, as far as it has been understood.
template <class AnyValue>
struct Operation {
    std::size_t index;
    std::string_view name = {};
    std::string_view path = {};
    std::string_view from = {};
    AnyValue* value = nullptr;

    [[noreturn]] void fail(const std::string& reason) const {
        std::string message = "operation " + std::to_string(index);
        if (!name.empty()) {
            (message += " (") += name;
            (message += ' ') += detail::quoted(path) + ')';
        }
        throw PatchError(index, std::string(path), message + ": " + reason);
    }
};

/// What there is to know of the operations of one name.
template <class AnyValue>
struct Rule {
    std::string_view name;
    bool has_from;
    bool has_value;
    void (*apply)(Draft&, const Operation<AnyValue>&);
};

template <class AnyValue>
constexpr Rule<AnyValue> rules[] = {
    {"add", false, true,
     [](Draft& draft, const auto& operation) {
         const Target target = draft.locate(operation.path);
         draft.insert(target, content_of(draft, *operation.value));
     }},
    {"remove", false, false,
     [](Draft& draft, const auto& operation) { draft.take(draft.existing(operation.path)); }},
    {"replace", false, true,
     [](Draft& draft, const auto& operation) {
         const Target target = draft.existing(operation.path);
         draft.put(target, content_of(draft, *operation.value));
     }},
    {"move", true, false,
     [](Draft& draft, const auto& operation) { draft.move(operation.from, operation.path); }},
    {"copy", true, false,
     [](Draft& draft, const auto& operation) { draft.copy(operation.from, operation.path); }},
    {"test", false, true,
     [](Draft& draft, const auto& operation) {
         const Target target = draft.existing(operation.path);
         if (!draft.is_equivalent(*target.value, *operation.value)) {
             throw PointerError(std::string(operation.path), "the test finds another value");
         }
     }},
};

/// Reads the members of operations.
template <class AnyValue>
class OperationReader {
public:
    OperationReader(std::size_t index, AnyValue& value)
        : operation_{index}, members_(get_if<Object>(&value)) {
        if (members_ == nullptr) {
            operation_.fail(std::string("it is ") + detail::noun_for(kind_of(value)) +
                            ", not an object");
        }
    }

    /// @return the rule for the operation that was read
    const Rule<AnyValue>& read() {
        const std::string_view name = text("op");
        const auto rule = std::find_if(std::begin(rules<AnyValue>), std::end(rules<AnyValue>),
                                       [&](const auto& known) { return known.name == name; });
        if (rule == std::end(rules<AnyValue>)) {
            operation_.fail(detail::quoted(name) +
                            " is no operation; known are add, remove, replace, "
                            "move, copy, test");
        }
        operation_.path = text("path");
        operation_.name = rule->name;
        if (rule->has_from) {
            operation_.from = text("from");
        }
        if (rule->has_value) {
            operation_.value = &member("value");
        }
        return *rule;
    }

    const Operation<AnyValue>& operation() const noexcept { return operation_; }

private:
    AnyValue& member(const char* name) const {
        const auto found = members_->find(name);
        if (found == members_->end()) {
            operation_.fail("the member " + detail::quoted(name) + " is missing");
        }
        return found->second;
    }

    std::string_view text(const char* name) const {
        const Value& value = member(name);
        const auto* const content = get_if<std::string>(&value);
        if (content == nullptr) {
            operation_.fail("the member " + detail::quoted(name) + " is " +
                            detail::noun_for(kind_of(value)) + ", not a string");
        }
        return *content;
    }

    Operation<AnyValue> operation_;
    decltype(get_if<Object>(static_cast<AnyValue*>(nullptr))) members_;
};

template <class AnyValue>
void apply(Draft& draft, std::size_t index, AnyValue& value) {
    OperationReader<AnyValue> reader(index, value);
    const auto& rule = reader.read();
    try {
        rule.apply(draft, reader.operation());
    } catch (const PointerError& error) {
        reader.operation().fail(error.what());
    } catch (const std::invalid_argument& error) {
        reader.operation().fail(error.what());
    }
}

template <class AnyValue>
Value& patch_with(Value& root, AnyValue& operations) {
    auto* const elements = get_if<Array>(&operations);
    if (elements == nullptr) {
        throw PatchError(0, {},
                         std::string("the patch is ") + detail::noun_for(kind_of(operations)) +
                             ", not an array");
    }
    Draft draft(root);
    for (std::size_t i = 0; i < elements->size(); ++i) {
        apply(draft, i, (*elements)[i]);
    }
    draft.commit();
    return root;
}

// ---- Merge patches -------------------------------------------------------------------------

/// The target's value if that is an object, else a new object in its place.
Value& object_at(Draft& draft, const Target& target) {
    if (target.value != nullptr && holds<Object>(*target.value)) {
        return *target.value;
    }
    return draft.put(target, draft.own(Value(Object())));
}

template <class AnyValue>
void merge(Draft& draft, AnyValue& changes) {
    using Members = detail::ContentOf<AnyValue, Object>;
    // Not by recursion, since values may nest deeply.
    struct Pending {
        Value* object;
        Members* changes;
    };
    std::vector<Pending> pending;
    const auto change = [&](const Target& target, AnyValue& value) {
        if (auto* const members = get_if<Object>(&value)) {
            pending.push_back({&object_at(draft, target), members});
        } else if (!holds<Undefined>(value)) {
            draft.put(target, content_of(draft, value));
        }
    };
    change(draft.at_root(), changes);
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        for (auto& [name, value] : *next.changes) {
            const Target target = draft.member(*next.object, name);
            if (!holds<Null>(value)) {
                change(target, value);
            } else if (target.value != nullptr) {
                draft.take(target);
            }
        }
    }
}

template <class AnyValue>
Value& merge_with(Value& root, AnyValue& changes) {
    Draft draft(root);
    merge(draft, changes);
    draft.commit();
    return root;
}

// ---- Operations in code --------------------------------------------------------------------

Value operation_of(const char* name, std::string_view path) {
    detail::check_pointer(path);
    Value result{Object()};
    auto& members = get<Object>(result);
    members.emplace("op", name);
    members.emplace("path", std::string(path));
    return result;
}

Value operation_with(const char* name, std::string_view path, Value& value) {
    Value result = operation_of(name, path);
    get<Object>(result).emplace("value", std::move(value));
    return result;
}

Value operation_from(const char* name, std::string_view from, std::string_view path) {
    detail::check_pointer(from);
    Value result = operation_of(name, path);
    get<Object>(result).emplace("from", std::string(from));
    return result;
}

} // namespace

Value& patch(Value& root, const Value& operations) {
    return patch_with(root, operations);
}

Value& patch(Value& root, Value&& operations) {
    return patch_with(root, operations);
}

Value& merge_patch(Value& root, const Value& changes) {
    return merge_with(root, changes);
}

Value& merge_patch(Value& root, Value&& changes) {
    return merge_with(root, changes);
}

namespace operation {

Value add(std::string_view path, Value&& value) {
    return operation_with("add", path, value);
}

Value remove(std::string_view path) {
    return operation_of("remove", path);
}

Value replace(std::string_view path, Value&& value) {
    return operation_with("replace", path, value);
}

Value move(std::string_view from, std::string_view path) {
    return operation_from("move", from, path);
}

Value copy(std::string_view from, std::string_view path) {
    return operation_from("copy", from, path);
}

Value test(std::string_view path, Value&& value) {
    return operation_with("test", path, value);
}

} // namespace operation

} // namespace foundation::json
