// Changes of a value that take effect together or not at all.
#include "access/draft.hpp"
#include "access/nouns.hpp"

#include "access/equivalent.hpp"
#include "value/append.hpp"

#include <foundation/json/detail/quoted.hpp>
#include <foundation/json/pointer.hpp>

#include <algorithm>
#include <functional>
#include <utility>

namespace foundation::json::detail {

namespace {

bool is_container(const Value& value) noexcept {
    return holds<Array>(value) || holds<Object>(value);
}

/// Whether content can be moved to a value without memory for a container.
bool takes(const Value& value, const Value& content) noexcept {
    return !is_container(content) || kind_of(value) == kind_of(content);
}

/// The same in both directions.
bool are_interchangeable(const Value& one, const Value& other) noexcept {
    return takes(one, other) && takes(other, one);
}

/// Appends such a value to an array that has room for it.
void append_empty_for(Array& elements, const Value& content) {
    if (holds<Array>(content)) {
        elements.emplace_back(Array());
    } else if (holds<Object>(content)) {
        elements.emplace_back(Object());
    } else {
        elements.emplace_back();
    }
}

/// Moves content to a value that takes it. Of containers, the pointers are exchanged.
void move_content(Value& target, Value& content) noexcept {
    target = std::move(content);
}

void exchange_content(Value& one, Value& other) noexcept {
    if (is_container(one)) {
        move_content(one, other);
    } else {
        one.swap(other);
    }
}

/// The index of an element, or the size of the array for any other value.
std::size_t index_in(const Array& elements, std::size_t size, const Value* value) noexcept {
    const std::less<> before; // also of pointers into different arrays
    const Value* const first = elements.data();
    return before(value, first) || !before(value, first + size)
               ? size
               : static_cast<std::size_t>(value - first);
}

PointerError length_error(std::string_view pointer, std::size_t length) {
    return PointerError(std::string(pointer), "the array has length " + std::to_string(length));
}

} // namespace

Value empty_for(const Value& content) {
    if (holds<Array>(content)) {
        return Array();
    }
    if (holds<Object>(content)) {
        return Object();
    }
    return {};
}

// ---- Looking -------------------------------------------------------------------------------

/// Sees values as they are to be.
struct Draft::DraftView {
    static constexpr bool has_lists = true;

    const ElementList* list_of(const Array& elements) const noexcept {
        return draft->list_of(elements);
    }

    const Draft* draft;
};

const Draft::ElementList* Draft::list_of(const Array& elements) const noexcept {
    const auto found = lists_.find(const_cast<Array*>(&elements));
    return found != lists_.end() ? &found->second : nullptr;
}

std::size_t Draft::size_of(const Array& elements) const noexcept {
    const ElementList* const list = list_of(elements);
    return list != nullptr ? list->size() : elements.size();
}

Value& Draft::element_of(const Array& elements, std::size_t index) const noexcept {
    const ElementList* const list = list_of(elements);
    return list == nullptr || index < list->kept ? const_cast<Value&>(elements[index])
                                                 : *list->rest[index - list->kept];
}

Target Draft::member(Value& object, std::string name) const {
    auto& members = get<Object>(object);
    const auto found = members.find(name);
    Value* const value = found != members.end() ? &found->second : nullptr;
    return {&object, value, 0, std::move(name)};
}

Target Draft::next(const Target& from, PointerSteps& steps) const {
    const std::string_view pointer = steps.walked();
    if (from.value == nullptr) {
        throw PointerError(std::string(pointer), "there is no value");
    }
    if (holds<Object>(*from.value)) {
        return member(*from.value, unescaped(steps.next()));
    }
    const auto* const elements = get_if<Array>(from.value);
    if (elements == nullptr) {
        throw PointerError(std::string(pointer), std::string("there is ") +
                                                     noun_for(kind_of(*from.value)) +
                                                     ", not an array or object");
    }
    const std::string_view token = steps.next();
    const std::size_t size = size_of(*elements);
    const auto index = index_of(token, size);
    if (!index) {
        throw PointerError(std::string(steps.walked()),
                           "the array has no element " + detail::quoted(unescaped(token)));
    }
    if (*index > size) {
        throw length_error(steps.walked(), size);
    }
    Value* const element = *index < size ? &element_of(*elements, *index) : nullptr;
    return {from.value, element, *index, {}};
}

Target Draft::locate(std::string_view pointer) const {
    PointerSteps steps(pointer);
    Target target = at_root();
    while (!steps.at_end()) {
        target = next(target, steps);
    }
    return target;
}

Target Draft::existing(std::string_view pointer) const {
    Target target = locate(pointer);
    if (target.value == nullptr) {
        if (holds<Array>(*target.parent)) {
            throw length_error(pointer, target.index);
        }
        throw PointerError(std::string(pointer), "there is no value");
    }
    return target;
}

Value Draft::copy_of(const Value& value) const {
    if (lists_.empty() || !is_container(value)) {
        return value;
    }
    // Not by recursion, since values may nest deeply.
    struct Pending {
        Value* copy; // an empty container
        const Value* original;
    };
    Value result = empty_for(value);
    std::vector<Pending> pending{{&result, &value}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        const auto copy_child = [&pending](Value& child, const Value& of) {
            if (is_container(of)) {
                pending.push_back({&child, &of});
            } else {
                child = of;
            }
        };
        if (const auto* const elements = get_if<Array>(next.original)) {
            auto& copies = get<Array>(*next.copy);
            const std::size_t size = size_of(*elements);
            copies.reserve(size);
            for (std::size_t i = 0; i < size; ++i) {
                const Value& element = element_of(*elements, i);
                append_empty_for(copies, element);
                copy_child(copies.back(), element);
            }
        } else {
            auto& copies = get<Object>(*next.copy);
            for (const auto& [name, member] : get<Object>(*next.original)) {
                copy_child(copies.emplace_hint(copies.end(), name, empty_for(member))->second,
                           member);
            }
        }
    }
    return result;
}

bool Draft::is_equivalent(const Value& value, const Value& other) const noexcept {
    return lists_.empty() ? equivalent_values(View(), value, other)
                          : equivalent_values(DraftView{this}, value, other);
}

// ---- Changing ------------------------------------------------------------------------------

void Draft::reserve_changes(std::size_t count) {
    if (changes_.capacity() - changes_.size() < count) {
        changes_.reserve(2 * changes_.size() + count);
    }
}

void Draft::exchange(Value& one, Value& other) {
    reserve_changes(1);
    exchange_content(one, other);
    changes_.emplace_back(Exchanged{&one, &other});
}

Draft::ElementList& Draft::list_from(Array& elements, std::size_t first) {
    auto& list =
        lists_.try_emplace(&elements, ElementList{elements.size(), elements.size(), {}, {}})
            .first->second;
    if (first < list.kept) {
        // One more for the change that asks for the list.
        list.rest.reserve(list.size() - first + 1);
        list.rest.insert(list.rest.begin(), list.kept - first, nullptr);
        for (std::size_t i = first; i < list.kept; ++i) {
            list.rest[i - first] = &elements[i];
        }
        list.kept = first;
    }
    return list;
}

/// Moves content to a value that lives as long as the draft, and lets it go back.
Value& Draft::park(Value& value) {
    Value& result = own_.emplace_back(empty_for(value));
    exchange(result, value);
    return result;
}

/// Content that is no longer to be in an array. In the array's own storage it would not last.
Value& Draft::taken_out(const Array& elements, Value& element) {
    const std::size_t size = list_of(elements)->old_size;
    return index_in(elements, size, &element) < size ? park(element) : element;
}

Value& Draft::put_element(Array& elements, std::size_t index, Value& content) {
    ElementList& list = list_from(elements, index);
    if (index == list.size()) {
        list.rest.push_back(&content);
    } else {
        Value*& element = list.rest[index - list.kept];
        taken_out(elements, *element);
        element = &content;
    }
    return content;
}

Value& Draft::remove_member(Object& members, const std::string& name) {
    reserve_changes(1);
    const auto member = members.find(name);
    Value& value = member->second;
    changes_.emplace_back(Removed{&members, members.extract(member)});
    return value;
}

Value& Draft::put_member(Object& members, const Target& target, Value& content) {
    Object single;
    single.emplace(target.name, empty_for(content));
    reserve_changes(3);
    if (target.value != nullptr) {
        remove_member(members, target.name);
    }
    auto& [name, value] = *members.insert(single.extract(single.begin())).position;
    changes_.emplace_back(Inserted{&members, &name});
    exchange(value, content);
    return value;
}

Value& Draft::put(const Target& target, Value& content) {
    if (target.value != nullptr && are_interchangeable(*target.value, content)) {
        exchange(*target.value, content);
        return *target.value;
    }
    if (target.parent == nullptr) {
        return *(root_ = &content);
    }
    if (auto* const members = get_if<Object>(target.parent)) {
        return put_member(*members, target, content);
    }
    return put_element(get<Array>(*target.parent), target.index, content);
}

Value& Draft::insert(const Target& target, Value& content) {
    auto* const elements = target.parent != nullptr ? get_if<Array>(target.parent) : nullptr;
    if (elements == nullptr) {
        return put(target, content);
    }
    ElementList& list = list_from(*elements, target.index);
    list.rest.insert(list.rest.begin() + static_cast<std::ptrdiff_t>(target.index - list.kept),
                     &content);
    return content;
}

Value& Draft::take(const Target& target) {
    if (target.parent == nullptr) {
        Value& nothing = own(Value());
        Value& content = park(*target.value);
        root_ = &nothing;
        return content;
    }
    if (auto* const members = get_if<Object>(target.parent)) {
        return remove_member(*members, target.name);
    }
    auto& elements = get<Array>(*target.parent);
    ElementList& list = list_from(elements, target.index);
    Value& content = taken_out(elements, *target.value);
    list.rest.erase(list.rest.begin() + static_cast<std::ptrdiff_t>(target.index - list.kept));
    return content;
}

Placed Draft::move(std::string_view from, std::string_view to) {
    const Target source = existing(from);
    check_pointer(to);
    if (from == to) {
        return {source, source.value};
    }
    if (to.size() > from.size() && to[from.size()] == '/' && to.substr(0, from.size()) == from) {
        throw PointerError(std::string(to), "a value cannot be moved into itself");
    }
    Value& value = take(source);
    Target target = locate(to);
    Value& placed = insert(target, value);
    return {std::move(target), &placed};
}

Placed Draft::copy(std::string_view from, std::string_view to) {
    Value& value = own(copy_of(*existing(from).value));
    Target target = locate(to);
    Value& placed = insert(target, value);
    return {std::move(target), &placed};
}

// ---- The end -------------------------------------------------------------------------------

Draft::~Draft() {
    if (!is_committed_) {
        take_back();
    }
}

void Draft::take_back() noexcept {
    struct Undo {
        void operator()(const Exchanged& change) const noexcept {
            exchange_content(*change.one, *change.other);
        }
        void operator()(const Inserted& change) const noexcept {
            change.members->erase(change.members->find(*change.name));
        }
        void operator()(Removed& change) const noexcept {
            change.members->insert(std::move(change.member));
        }
    };
    for (auto change = changes_.rbegin(); change != changes_.rend(); ++change) {
        std::visit(Undo(), *change);
    }
    for (auto& [elements, list] : lists_) {
        if (elements->size() > list.old_size) {
            elements->erase(elements->begin() + static_cast<std::ptrdiff_t>(list.old_size),
                            elements->end());
        }
    }
}

/// Makes the empty elements to which content is moved, at the end of the array if all others are
/// of the right kinds already.
void Draft::prepare(Array& elements, ElementList& list) const {
    const std::size_t size = list.size();
    bool in_place = size <= elements.capacity();
    for (std::size_t i = list.kept; in_place && i < std::min(size, list.old_size); ++i) {
        in_place = takes(elements[i], *list.rest[i - list.kept]);
    }
    if (in_place) {
        for (std::size_t i = list.old_size; i < size; ++i) {
            append_empty_for(elements, *list.rest[i - list.kept]);
        }
        return;
    }
    list.fresh.reserve(size > elements.capacity() ? grown_capacity(elements, size - list.old_size)
                                                  : elements.capacity());
    for (std::size_t i = 0; i < size; ++i) {
        append_empty_for(list.fresh, element_of(elements, i));
    }
}

void Draft::prepare_root() {
    if (root_ == &target_ || takes(target_, *root_)) {
        return;
    }
    Value empty = empty_for(*root_);
    Value& old = own(empty_for(target_));
    exchange_content(old, target_);
    try {
        target_ = std::move(empty);
    } catch (...) {
        // Of all that can fail, this alone cannot be taken back from a container.
        if (is_container(old)) {
            is_committed_ = true;
        } else {
            exchange_content(old, target_);
        }
        throw;
    }
}

namespace {

/// Moves content to the positions where a list of elements has it.
void move_in_place(Array& elements, std::size_t old_size, std::size_t kept,
                   const std::vector<Value*>& rest) noexcept {
    // First what moves to the front, front to back, then what moves to the back, back to front:
    // nothing is overwritten before it is moved.
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const std::size_t index = index_in(elements, old_size, rest[i]);
        if (index < old_size && index > kept + i) {
            move_content(elements[kept + i], elements[index]);
        }
    }
    for (std::size_t i = rest.size(); i-- > 0;) {
        const std::size_t index = index_in(elements, old_size, rest[i]);
        if (index < old_size && index < kept + i) {
            move_content(elements[kept + i], elements[index]);
        }
    }
    for (std::size_t i = 0; i < rest.size(); ++i) {
        if (index_in(elements, old_size, rest[i]) == old_size) {
            move_content(elements[kept + i], *rest[i]);
        }
    }
    elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(kept + rest.size()),
                   elements.end());
}

} // namespace

void Draft::commit() {
    for (auto& [elements, list] : lists_) {
        prepare(*elements, list);
    }
    prepare_root();
    // Nothing fails from here on.
    is_committed_ = true;
    for (auto& [elements, list] : lists_) {
        if (list.fresh.empty()) {
            move_in_place(*elements, list.old_size, list.kept, list.rest);
            continue;
        }
        for (std::size_t i = 0; i < list.fresh.size(); ++i) {
            move_content(list.fresh[i], element_of(*elements, i));
        }
        elements->swap(list.fresh);
    }
    if (root_ != &target_) {
        move_content(target_, *root_);
    }
}

} // namespace foundation::json::detail
