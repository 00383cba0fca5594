// Values within values: set, inserted, erased, moved and copied by JSON Pointers.
#include "access/draft.hpp"

#include <foundation/json/pointer.hpp>

#include <string>
#include <utility>

namespace foundation::json {

namespace {

using detail::Draft;
using detail::Placed;
using detail::Target;

/// Makes changes final.
/// @return the value that was placed, where it is then
Value& commit(Draft& draft, Value& root, const Placed& placed) {
    // Elements may move now; their array does not.
    Value* const parent = placed.target.parent;
    auto* const elements = parent != nullptr ? get_if<Array>(parent) : nullptr;
    draft.commit();
    if (parent == nullptr) {
        return root;
    }
    return elements != nullptr ? (*elements)[placed.target.index] : *placed.value;
}

} // namespace

Value& set(Value& root, std::string_view pointer, Value&& value) {
    Draft draft(root);
    detail::PointerSteps steps(pointer);
    Target target = draft.at_root();
    while (!steps.at_end()) {
        if (target.value == nullptr || holds<Undefined>(*target.value)) {
            Value container = detail::begins_array(steps.peek()) ? Value(Array()) : Value(Object());
            target.value = &draft.put(target, draft.own(std::move(container)));
        }
        target = draft.next(target, steps);
    }
    Value& placed = draft.put(target, value);
    return commit(draft, root, {std::move(target), &placed});
}

Value& insert(Value& root, std::string_view pointer, Value&& value) {
    Draft draft(root);
    Target target = draft.locate(pointer);
    Value& placed = draft.insert(target, value);
    return commit(draft, root, {std::move(target), &placed});
}

Value erase(Value& root, std::string_view pointer) {
    Value result;
    {
        Draft draft(root);
        Value& taken = draft.take(draft.existing(pointer));
        result = detail::empty_for(taken);
        draft.exchange(result, taken);
        draft.commit();
    }
    return result;
}

Value& move(Value& root, std::string_view from, std::string_view to) {
    Draft draft(root);
    return commit(draft, root, draft.move(from, to));
}

Value& copy(Value& root, std::string_view from, std::string_view to) {
    Draft draft(root);
    return commit(draft, root, draft.copy(from, to));
}

} // namespace foundation::json
