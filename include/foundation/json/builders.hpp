/// @file
/// Arrays and objects as expressions.
///
/// A chain of Element terms becomes an array, a chain of Property terms an object:
///
///     Value list((Element(1), Element("two"), Element(Null())));  // -> [1,"two",null]
///     Value record((Property("id") = 7, Property("name") = "x")); // -> {"id":7,"name":"x"}
///
/// The parentheses matter: the comma must be the operator, not a separator of arguments. A chain
/// wrapped once more nests:
///
///     Value nested((Element(1), Element((Element(2), Element(3))))); // -> [1,[2,3]]
///     Value object((Property("a") = (Property("b") = true)));        // -> {"a":{"b":true}}
///
/// Copying an Element and assigning a Property nest: `Element e2(e)` holds one array of e's
/// elements. If a chain contains a name twice, the first wins; if one Property is assigned
/// twice, the last assignment wins.
///
/// Builders copy their operands, at every step. Use them for small literals in code, and
/// Value::push() and Value::operator[] for large data.
///
/// The comma and the assignment change even a const builder. So threads must not share a builder,
/// not even by const reference, as they may a Value.
#ifndef FOUNDATION_JSON_BUILDERS_HPP
#define FOUNDATION_JSON_BUILDERS_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/value.hpp>

#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace foundation::json {

/// A term of an array.
///
/// Unless stated otherwise, the members of both builders copy their operands or content, take
/// time linear in its size, and may throw std::bad_alloc, which leaves everything unchanged.
class FOUNDATION_JSON_EXPORT Element {
public:
    /// A chain of one element, a copy of v.
    explicit Element(const Value& v);

    /// A chain of one element, which is the array of the other's elements: it nests.
    Element(const Element& other);

    /// Replaces the elements by copies of the other's: no nesting.
    /// @throws std::bad_alloc then this chain holds unspecified elements
    Element& operator=(const Element& other) FOUNDATION_JSON_LIFETIME_BOUND = default;

    ~Element();

    /// Appends copies of the other's elements, in order; `e, e` doubles e.
    /// @return this chain; valid as long as the left operand, mostly a temporary
    /// @throws std::bad_alloc    memory runs out; then this chain is unchanged
    /// @throws std::length_error the array would be too long; the same
    /// @complexity linear in the other's size, amortized; elements already held are not copied.
    const Element& operator,(const Element& other) const FOUNDATION_JSON_LIFETIME_BOUND;

    /// An array of copies of the elements. The chain keeps its elements and may be converted again.
    [[nodiscard]] operator Value() const;

private:
    // Chaining must work on the temporaries that make up a chain, so it is a const operation.
    mutable std::vector<Value> elements_;
};

/// A term of an object: a name to assign to, and the members collected so far.
class FOUNDATION_JSON_EXPORT Property {
public:
    /// A term without members. If nothing is assigned to it, it converts to an empty object.
    explicit Property(const std::string& name);

    /// A plain copy.
    Property(const Property& other);

    ~Property();

    /// Makes a copy of v the member of this term's name, replacing an earlier one.
    /// @return this term
    /// @throws std::bad_alloc then this term is unchanged
    const Property& operator=(const Value& v) const FOUNDATION_JSON_LIFETIME_BOUND;

    /// Makes an object of the other's members the member of this term's name: it nests. The other's
    /// name is not used.
    /// @return this term
    /// @throws std::bad_alloc then this term is unchanged
    const Property& operator=(const Property& other) const FOUNDATION_JSON_LIFETIME_BOUND;

    /// Adds copies of those members of the other whose names this term does not contain yet.
    /// @return this term; valid as long as the left operand, mostly a temporary
    /// @throws std::bad_alloc then this term is unchanged
    const Property& operator,(const Property& other) const FOUNDATION_JSON_LIFETIME_BOUND;

    /// An object of copies of the members. The term keeps its members and may be converted again.
    [[nodiscard]] operator Value() const;

private:
    // As in Element: the temporaries that make up a chain must be assignable.
    mutable std::map<std::string, Value> members_;
    std::string name_;
};

namespace detail {

/// Whether a comma between a builder and an operand on its right is the built-in one, although the
/// builder's may have been meant. A builder of the other class is left out if it is a temporary,
/// since returning it would copy it, and copying may nest.
template <class Builder, class Right>
inline constexpr bool drops_builder =
    std::is_convertible_v<Right, Value> && !std::is_convertible_v<Right, const Builder&> &&
    (std::is_lvalue_reference_v<Right> ||
     (std::is_copy_constructible_v<Right> && !std::is_base_of_v<Element, std::decay_t<Right>> &&
      !std::is_base_of_v<Property, std::decay_t<Right>>));

} // namespace detail

// clang-format takes the operator for a separator.
// clang-format off

/// Does what the built-in comma does, with a warning: `(Element(1), "two")` discards the element.
/// @return the right operand; a copy if it is a temporary
template <class Right, class = std::enable_if_t<detail::drops_builder<Element, Right>>>
[[deprecated("this comma drops the Element before it; write Element(...) behind it, too")]]
Right operator,(const Element&, Right&& right) {
    return static_cast<std::remove_reference_t<Right>&>(right);
}

/// The same for `(Property("a") = 1, "two")`.
template <class Right, class = std::enable_if_t<detail::drops_builder<Property, Right>>>
[[deprecated("this comma drops the Property before it; write Property(...) = behind it, too")]]
Right operator,(const Property&, Right&& right) {
    return static_cast<std::remove_reference_t<Right>&>(right);
}
// clang-format on

} // namespace foundation::json

#endif
