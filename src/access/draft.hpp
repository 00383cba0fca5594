/// @file
/// Changes of a value that take effect together or not at all, also when memory runs out.
#ifndef FOUNDATION_JSON_SRC_ACCESS_DRAFT_HPP
#define FOUNDATION_JSON_SRC_ACCESS_DRAFT_HPP

#include "access/pointer_steps.hpp"

#include <foundation/json/content.hpp>

#include <cstddef>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::json::detail {

/// Where a step leads within a draft.
struct Target {
    Value* parent; ///< the array or object; null where the target is the root itself
    Value* value;  ///< what is there; null for nothing

    std::size_t index = 0; ///< in an array; its length behind the last element
    std::string name;      ///< in an object
};

/// A value that has been put somewhere.
struct Placed {
    Target target;
    Value* value;
};

/// A value to which content can be moved without memory for a container.
Value empty_for(const Value& content);

/// Changes of a value, which a destructor takes back unless they were committed.
///
/// Undoing must not allocate, but moving an array or object to a Value that holds something else
/// does. So nothing is moved there before all memory is at hand:
///
/// - Objects are changed at once. Their members move as nodes, which needs no memory in either
///   direction.
/// - The elements of an array stay where they are. A list of pointers says which are to be its
///   elements; commit() first makes empty elements of the right kinds, then moves the content.
/// - Content is exchanged only between values for which that takes no memory.
///
/// What was removed or replaced lives as long as the draft, and so do the addresses of arrays and
/// objects: a value is moved by exchanging the pointers to its containers.
class Draft {
public:
    explicit Draft(Value& root) noexcept : target_(root), root_(&root) {}
    ~Draft();
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    Target at_root() const noexcept { return {nullptr, root_, 0, {}}; }

    /// A member of an object, be it there or not.
    Target member(Value& object, std::string name) const;

    /// The target of the next step. All up to there must exist.
    /// @throws PointerError
    Target next(const Target& from, PointerSteps& steps) const;

    /// The target of a pointer. All but the last step must lead to values.
    /// @throws PointerError, std::invalid_argument
    Target locate(std::string_view pointer) const;

    /// The target of a pointer that leads to a value.
    /// @throws PointerError, std::invalid_argument
    Target existing(std::string_view pointer) const;

    /// A value that lives as long as the draft: content to be put somewhere.
    Value& own(Value&& content) { return own_.emplace_back(std::move(content)); }
    Value& own(const Value& content) { return own_.emplace_back(content); }

    /// Replaces what is at the target, or adds an element or member.
    /// @param content  loses its content, and gets it back if the draft is not committed; must
    ///                 outlive the draft
    /// @return the content where it is, as long as nothing is committed
    Value& put(const Target& target, Value& content);

    /// As put(), but in an array it inserts.
    Value& insert(const Target& target, Value& content);

    /// Removes what is at the target.
    /// @return a value that lives as long as the draft
    Value& take(const Target& target);

    /// Takes the value at one pointer and inserts it at another.
    /// @throws PointerError, std::invalid_argument
    Placed move(std::string_view from, std::string_view to);

    /// Inserts a copy of the value at one pointer at another.
    /// @throws PointerError, std::invalid_argument
    Placed copy(std::string_view from, std::string_view to);

    /// Exchanges content between values of the same kind, or neither of which is a container.
    void exchange(Value& one, Value& other);

    /// A deep copy of a value within the draft.
    Value copy_of(const Value& value) const;

    /// Whether a value within the draft is equivalent to one without.
    bool is_equivalent(const Value& value, const Value& other) const noexcept;

    /// Makes the changes final. If anything throws, they can still be taken back.
    void commit();

private:
    /// What is to become of an array: so many of its first elements, then others. Elements that
    /// come from behind the first are in the order in which they were.
    struct ElementList {
        std::size_t old_size;
        std::size_t kept;
        std::vector<Value*> rest;
        Array fresh = {}; ///< takes the array's place, if it is not empty

        std::size_t size() const noexcept { return kept + rest.size(); }
    };
    using ElementLists = std::map<Array*, ElementList>;

    struct Exchanged {
        Value* one;
        Value* other;
    };
    struct Inserted {
        Object* members;
        const std::string* name; ///< of the member itself
    };
    struct Removed {
        Object* members;
        Object::node_type member;
    };
    using Change = std::variant<Exchanged, Inserted, Removed>;

    struct DraftView;

    const ElementList* list_of(const Array& elements) const noexcept;
    std::size_t size_of(const Array& elements) const noexcept;
    Value& element_of(const Array& elements, std::size_t index) const noexcept;
    ElementList& list_from(Array& elements, std::size_t first);
    Value& put_element(Array& elements, std::size_t index, Value& content);
    Value& put_member(Object& members, const Target& target, Value& content);
    Value& remove_member(Object& members, const std::string& name);
    Value& taken_out(const Array& elements, Value& element);
    Value& park(Value& value);

    void reserve_changes(std::size_t count);
    void take_back() noexcept;

    void prepare(Array& elements, ElementList& list) const;
    void prepare_root();

    Value& target_;
    Value* root_;
    std::list<Value> own_;
    ElementLists lists_;
    std::vector<Change> changes_;
    bool is_committed_ = false;
};

} // namespace foundation::json::detail

#endif
