/// @file
/// Value: a JSON value in memory, and the tags Null and Undefined.
///
///     Value v(std::map<std::string, Value>{}); // an object
///     v["name"] = "x";                         // inserts the member, then assigns
///     v["list"] = std::vector<Value>{1, true}; // an array of a double and a bool
///     v["list"].push(Null());                  // -> [1,true,null]
///     int n = int(v["list"][0]);               // -> 1
///     Value port = v["port"] || Value(8080);   // a default for what is missing or empty
///
/// A Value holds exactly one of ten kinds: Undefined, Null, bool, double, string, array, object,
/// float, int64 and uint64. An int becomes a double, the number kind of JSON. Only assignment and
/// swap change the kind: indexing never turns a value into an array or object, and misuse throws
/// std::runtime_error, whose message names both kinds.
///
/// A Value is a plain value type: copies are deep and independent; any number of threads may read
/// one value at once, and a write needs exclusive access. Copying, comparing,
/// serializing and destroying recurse once per level of nesting.
///
/// To build large values without copying children, push or insert an empty value and swap the
/// finished child into it:
///
///     parent.push(Value());
///     parent[parent.length() - 1].swap(child);
#ifndef FOUNDATION_JSON_VALUE_HPP
#define FOUNDATION_JSON_VALUE_HPP

#include <foundation/json/export.hpp>

#include <boost/variant/recursive_wrapper.hpp>
#include <boost/variant/static_visitor.hpp>
#include <boost/variant/variant.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace foundation::json {

class Value;

namespace detail {
struct ValueAccess;
}

/// The tag of JSON null.
///
/// The default constructors of both tags are not noexcept, and must not become so: that makes bool
/// the alternative to which a Value falls back when an assignment runs out of memory.
struct FOUNDATION_JSON_EXPORT Null {
    Null();
    [[nodiscard]] bool operator==(const Null&) const noexcept; ///< true
    [[nodiscard]] bool operator!=(const Null&) const noexcept; ///< false
    [[nodiscard]] bool operator<(const Null&) const noexcept;  ///< false
};

/// The tag of an absent value. Neither equal nor unequal to itself.
struct FOUNDATION_JSON_EXPORT Undefined {
    Undefined();
    [[nodiscard]] bool operator==(const Undefined&) const noexcept; ///< false
    [[nodiscard]] bool operator!=(const Undefined&) const noexcept; ///< false
    [[nodiscard]] bool operator<(const Undefined&) const noexcept;  ///< false
};

/// Properties of a native type: `name`, its name in messages, and `order`, its rank when values of
/// different kinds are ordered. Defined for the types that a Value may hold, and for int: messages
/// name it as the target of a conversion, and its order is that of double, because a Value built
/// from an int holds a double.
template <class T>
struct traits;

template <>
struct FOUNDATION_JSON_EXPORT traits<Undefined> {
    static const char* const name; ///< "undefined"
    static const int order = 0;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<Null> {
    static const char* const name; ///< "JSON null"
    static const int order = 1;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<bool> {
    static const char* const name; ///< "JSON boolean"
    static const int order = 2;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<double> {
    static const char* const name; ///< "JSON number"
    static const int order = 3;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<std::string> {
    static const char* const name; ///< "JSON string"
    static const int order = 4;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<std::vector<Value>> {
    static const char* const name; ///< "JSON array"
    static const int order = 5;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<std::map<std::string, Value>> {
    static const char* const name; ///< "JSON object"
    static const int order = 6;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<float> {
    static const char* const name; ///< "float"
    static const int order = 7;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<int> {
    static const char* const name; ///< "int"
    static const int order = 3;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<long long> {
    static const char* const name; ///< "int64"
    static const int order = 8;
};

template <>
struct FOUNDATION_JSON_EXPORT traits<unsigned long long> {
    static const char* const name; ///< "uint64"
    static const int order = 9;
};

/// @cond
namespace detail {

/// A list of types.
template <class... Types>
struct TypeList {
    static constexpr int size = sizeof...(Types);

    template <class T>
    static constexpr bool contains = (std::is_same_v<T, Types> || ...);

    /// An instance of a template with the types, each as another template says.
    template <template <class...> class List, template <class> class Each>
    using As = List<typename Each<Types>::type...>;
};

/// What values hold: the one list of the kinds, in their order.
using Contents = TypeList<Undefined, Null, bool, double, std::string, std::vector<Value>,
                          std::map<std::string, Value>, float, long long, unsigned long long>;

/// Whether T is what a Value of some kind holds.
template <class T>
inline constexpr bool is_content = Contents::contains<T>;

/// Selects the constructor of Value::UNDEFINED.
struct ZeroBytes {
    constexpr explicit ZeroBytes(int) noexcept {} // nothing converts to it, not even {}
};

/// How a variant holds content: containers of values behind a pointer.
template <class T>
struct Stored {
    using type = T;
};
template <>
struct Stored<std::vector<Value>> {
    using type = boost::recursive_wrapper<std::vector<Value>>;
};
template <>
struct Stored<std::map<std::string, Value>> {
    using type = boost::recursive_wrapper<std::map<std::string, Value>>;
};

} // namespace detail
/// @endcond

/// A JSON value. See value.hpp for a tour.
///
/// Members throw only what is listed with them, and std::bad_alloc where they make a copy of a
/// string: of a `const char*` that is looked up, or to read a number from it. In messages the kinds
/// have the names of traits<T>::name: "undefined", "JSON null", "JSON boolean", "JSON number",
/// "JSON string", "JSON array", "JSON object", "float", "int64" and "uint64".
class FOUNDATION_JSON_STANDALONE_DEBUG FOUNDATION_JSON_EXPORT Value {
public:
    class Or;
    class OrVisitor;
    class HasProperty;
    class push_visitor;

    /// @name Construction
    /// Scalars and tags are stored within the value, in constant time and without allocation.
    /// Strings, arrays and objects are copied, in time linear in their whole size, which may throw
    /// std::bad_alloc.
    /// @{

    Value();                                   ///< Undefined
    Value(const Undefined&);                   ///< Undefined
    Value(const Null&);                        ///< Null
    Value(bool flag);                          ///< bool
    Value(int number);                         ///< double: there is no integer kind for int
    Value(double number);                      ///< double; NaN and the infinities are kept
    Value(float number);                       ///< float, not widened
    Value(long long number);                   ///< int64
    Value(unsigned long long number);          ///< uint64
    Value(const char* text);                   ///< string; NUL-terminated, not null
    Value(const std::string& text);            ///< string; may contain zero bytes
    Value(const std::vector<Value>& elements); ///< array of deep copies
    Value(const std::map<std::string, Value>& members); ///< object of deep copies
    Value(const Value& other);                          ///< a deep copy

    /// Takes over the other's content, in constant time. The other keeps its kind: a string, array
    /// or object becomes empty, any other content stays.
    /// @throws std::bad_alloc for an array or object, which needs a new, empty container; then the
    ///         other is unchanged
    Value(Value&& other);

    ~Value(); ///< linear in the whole size of the content
    /// @}

    /// @name Assignment and swap
    /// @{

    /// Makes this value a deep copy of the other.
    ///
    /// Arrays are assigned element by element, like a std::vector: while the capacity suffices,
    /// elements keep their addresses, at any depth.
    ///
    /// Assigning a value to itself does nothing. The other may be within this value if it is
    /// neither an array nor an object: `v = v["name"]` is fine for a string or a number. Otherwise
    /// it is undefined behaviour if one is within the other, since the old content would be
    /// destroyed before the new is copied. Instead of `v = v["child"]` use `v = Value(v["child"])`,
    /// and instead of `v["child"] = v` use `v["child"] = Value(v)`.
    ///
    /// If memory runs out, the kinds decide what this value is then:
    /// - the other is a string: unchanged;
    /// - both are arrays, or both objects: of the same kind, with unspecified content;
    /// - the kind would have become array or object: a bool, false.
    ///
    /// @throws std::bad_alloc memory runs out; see above for the value that is left
    /// @complexity linear in the size of both.
    Value& operator=(const Value& other) FOUNDATION_JSON_LIFETIME_BOUND;

    /// Takes over the other's content.
    ///
    /// Two arrays or two objects exchange their containers: the other then holds what this value
    /// held. If the kinds differ, a string, array or object becomes empty. Assigning a value to
    /// itself does nothing. It is undefined behaviour if one is within the other, even a string:
    /// instead of `v = std::move(v["name"])` use `v = Value(std::move(v["name"]))`.
    ///
    /// @throws std::bad_alloc if the kind becomes array or object; then this value is a bool,
    ///         false, and the other is unchanged
    /// @complexity constant, plus the destruction of this value's old content.
    Value& operator=(Value&& other) FOUNDATION_JSON_LIFETIME_BOUND;

    /// Exchanges two values, in constant time.
    ///
    /// Values of the same kind exchange their content in place: nothing is allocated, and elements
    /// and members keep their addresses.
    /// @param other  must not be within this value, nor this value within it
    /// @return this value
    /// @throws std::bad_alloc if the kinds differ and one of them is array or object. Then either
    ///         both are unchanged; or the other's content is lost, one of the two holds the content
    ///         of this value, and the remaining one is a bool, false.
    Value& swap(Value& other) FOUNDATION_JSON_LIFETIME_BOUND;
    /// @}

    /// @name Conversion
    /// @{

    /// The value of a bool. No other kind counts as true or false; see operator|| for that.
    /// @throws std::runtime_error "invalid conversion: <kind> to JSON boolean" for other kinds
    [[nodiscard]] explicit operator bool() const;

    /// An int from a value: 0 for Undefined and Null, 0 or 1 for a bool; a double is truncated
    /// toward zero (NaN gives -2147483648); a string gives the integer that it begins with, as
    /// std::istringstream extracts it in the global locale (0 if there is none, the nearest limit
    /// if it is out of range).
    /// @throws std::bad_alloc memory runs out, for a string
    /// @throws boost::numeric::negative_overflow a double is out of range; a std::bad_cast
    /// @throws boost::numeric::positive_overflow the same
    /// @throws std::runtime_error "invalid conversion: <kind> to int" for the other kinds,
    ///         including float, int64 and uint64
    [[nodiscard]] explicit operator int() const;
    /// @}

    /// @name Comparison
    /// @{

    /// Whether both have the same kind and equal content. Numbers of different kinds are not equal.
    /// Undefined and NaN are equal to nothing, so a value that holds one is not equal to itself.
    /// @complexity linear in the size of the smaller; ends at the first difference.
    [[nodiscard]] bool operator==(const Value& other) const noexcept;

    /// Exactly `!(*this == other)`.
    [[nodiscard]] bool operator!=(const Value& other) const noexcept;

    /// Orders values of different kinds by traits<T>::order alone, values of one kind by content:
    /// numbers by value, strings byte-wise, arrays and objects lexicographically.
    /// @complexity linear in the size of the smaller; ends at the first difference.
    [[nodiscard]] bool operator<(const Value& other) const noexcept;
    /// @}

    /// @name Indexing
    /// The references that indexing returns point into this value and stay valid as those of
    /// std::vector and std::map do: until the array grows, or the value is assigned (see the copy
    /// assignment) or destroyed.
    /// @{

    /// The member of an object. A missing member is inserted, as Undefined. To insert
    /// nothing, use the const overloads or hasOwnProperty().
    /// @throws std::runtime_error "invalid conversion: <kind> to JSON object" for other kinds
    /// @throws std::bad_alloc     memory runs out; nothing was inserted
    /// @complexity logarithmic in the number of members
    Value& operator[](const std::string& key) FOUNDATION_JSON_LIFETIME_BOUND;
    /// The same; the name is NUL-terminated. A null pointer is undefined behaviour.
    Value& operator[](const char* key) FOUNDATION_JSON_LIFETIME_BOUND;

    /// The element of an array. The index is not checked: outside 0 to length() - 1 the behaviour
    /// is undefined; only a hardened build of the library checks it.
    /// @throws std::runtime_error "invalid conversion: <kind> to JSON array" for other kinds
    /// @complexity constant
    Value& operator[](int index) FOUNDATION_JSON_LIFETIME_BOUND;
    Value& operator[](std::size_t index) FOUNDATION_JSON_LIFETIME_BOUND; ///< the same

    /// The element or member, by the key's kind: a double, truncated toward zero, is an index; a
    /// string is a name.
    /// @throws std::runtime_error "Undefined value" if the key is of any other kind, int64 and
    ///         uint64 included; else as the overloads above
    Value& operator[](const Value& key) FOUNDATION_JSON_LIFETIME_BOUND;

    /// Like the non-const overloads, but a missing member is not inserted: the result is then a
    /// constant Undefined value, always the same one, which exists as long as the library does.
    /// @throws std::bad_alloc memory runs out, for a `const char*` that is long
    [[nodiscard]] const Value&
    operator[](const std::string& key) const FOUNDATION_JSON_LIFETIME_BOUND;
    /// The same; a null pointer is undefined behaviour.
    [[nodiscard]] const Value& operator[](const char* key) const FOUNDATION_JSON_LIFETIME_BOUND;
    /// As the non-const overload.
    [[nodiscard]] const Value& operator[](int index) const FOUNDATION_JSON_LIFETIME_BOUND;
    /// As the non-const overload.
    [[nodiscard]] const Value& operator[](std::size_t index) const FOUNDATION_JSON_LIFETIME_BOUND;
    /// By the key's kind, inserting nothing.
    [[nodiscard]] const Value& operator[](const Value& key) const FOUNDATION_JSON_LIFETIME_BOUND;
    /// @}

    /// @name Arrays and objects
    /// @{

    /// The number of elements of an array. Constant time.
    /// @throws std::runtime_error "json::Value::length not supported for values of type:<kind>" for
    ///         other kinds, strings and objects included
    [[nodiscard]] std::size_t length() const;

    /// Appends a copy of v to an array. v may be this array itself or one of its elements.
    /// @throws std::runtime_error "json::Value::push not supported for values of type: <kind>" for
    ///         other kinds
    /// @throws std::bad_alloc     memory runs out; then the array is unchanged
    /// @throws std::length_error  the array would be too long; the same
    /// @complexity the copy of v, plus amortized constant time; growth moves elements and never
    /// copies their content.
    void push(const Value& v);

    /// Whether this is an object with a member of that name, even an Undefined one. False for every
    /// other kind. Allocates nothing.
    /// @complexity logarithmic in the number of members
    [[nodiscard]] bool hasOwnProperty(const std::string& key) const;
    /// @}

    /// @name Fallback
    /// @{

    /// `a || b` is b if a is Undefined, Null, false, a double zero or an empty string, else a.
    /// Empty arrays and objects, and zeros of the kinds float, int64 and uint64, are kept.
    /// Nothing is copied: convert or copy the result within the same expression.
    ///
    ///     Value name = record["name"] || Value("unnamed"); // copies at once: safe
    ///
    /// The right operand must be a Value: with a plain number or string the call is ambiguous.
    [[nodiscard]] Or operator||(const Value& right FOUNDATION_JSON_LIFETIME_BOUND) const noexcept
        FOUNDATION_JSON_LIFETIME_BOUND;
    /// @}

private:
    using Variant = detail::Contents::As<boost::variant, detail::Stored>;

    friend struct detail::ValueAccess;

    /// Undefined, as a constant: all bytes are zero.
    constexpr explicit Value(detail::ZeroBytes) noexcept : zero_bytes_{} {}

    /// The Undefined value that const lookups of missing members return. Its all-zero bytes are
    /// that value from the start, without a constructor at run time, and stay so after its
    /// destructor.
    static const Value UNDEFINED;

    // In a union, so that its destructor is not called for scalars.
    union {
        Variant variant_;
        unsigned char zero_bytes_[sizeof(Variant)];
    };
};

/// What `a || b` returns: references to both operands, and the choice between them.
class FOUNDATION_JSON_EXPORT Value::Or {
public:
    /// Refers to both.
    Or(const Value& left FOUNDATION_JSON_LIFETIME_BOUND,
       const Value& right FOUNDATION_JSON_LIFETIME_BOUND) noexcept;

    /// The chosen operand itself, not a copy; lives as long as that operand does.
    [[nodiscard]] operator const Value&() const noexcept;

private:
    const Value* left_;
    const Value* right_;
};

/// The choice behind Value::Or, as a visitor of the left operand's content.
class FOUNDATION_JSON_EXPORT Value::OrVisitor : public boost::static_visitor<const Value&> {
public:
    /// Refers to both.
    OrVisitor(const Value& left FOUNDATION_JSON_LIFETIME_BOUND,
              const Value& right FOUNDATION_JSON_LIFETIME_BOUND) noexcept;

    [[nodiscard]] const Value& left() const noexcept; ///< the left operand

    [[nodiscard]] const Value& operator()(const Null&) const noexcept;      ///< right
    [[nodiscard]] const Value& operator()(const Undefined&) const noexcept; ///< right
    [[nodiscard]] const Value& operator()(bool b) const noexcept;           ///< left if true
    [[nodiscard]] const Value& operator()(double d) const noexcept;         ///< left unless zero
    /// left unless empty
    [[nodiscard]] const Value& operator()(const std::string& s) const noexcept;

    /// left, whatever content of the other kinds it is
    template <class Other, class = std::enable_if_t<detail::is_content<Other>>>
    [[nodiscard]] const Value& operator()(const Other&) const noexcept {
        return left();
    }

private:
    const Value* left_;
    const Value* right_;
};

/// Value::hasOwnProperty() as a predicate: whether content is an object with a given member.
class FOUNDATION_JSON_EXPORT Value::HasProperty : public boost::static_visitor<bool> {
public:
    /// Looks for that name. Copying it may throw std::bad_alloc, here and in the copy operations.
    explicit HasProperty(const std::string& name);
    HasProperty(const HasProperty& other);                ///< asks for the same name
    HasProperty(HasProperty&& other) noexcept;            ///< leaves the other with an empty name
    HasProperty& operator=(const HasProperty& other);     ///< asks for the same name
    HasProperty& operator=(HasProperty&& other) noexcept; ///< leaves the other with an empty name
    ~HasProperty();

    /// Whether there is a member of that name; logarithmic in the number of members.
    [[nodiscard]] bool operator()(const std::map<std::string, Value>& members) const;

    /// The same for an object; false for other kinds. An argument that converts to a Value, such as
    /// a builder or the result of `a || b`, counts as that Value.
    [[nodiscard]] bool operator()(const Value& value) const;

    /// false for content of the other kinds: only an object has members
    template <class Other, class = std::enable_if_t<detail::is_content<Other>>>
    [[nodiscard]] bool operator()(const Other&) const noexcept {
        return false;
    }

private:
    std::string name_;
};

/// The visitor behind Value::push(): appends a copy of a value to an array.
class FOUNDATION_JSON_EXPORT Value::push_visitor : public boost::static_visitor<> {
public:
    /// Refers to v, which must outlive the visitor.
    explicit push_visitor(const Value& v FOUNDATION_JSON_LIFETIME_BOUND) noexcept;

    /// Appends; as Value::push().
    void operator()(std::vector<Value>& elements) const;

    /// @name Every kind but arrays
    /// Throws, as Value::push() does on it.
    /// @{
    void operator()(const Undefined&) const;                    ///< throws
    void operator()(const Null&) const;                         ///< throws
    void operator()(bool) const;                                ///< throws
    void operator()(double) const;                              ///< throws
    void operator()(const std::string&) const;                  ///< throws
    void operator()(const std::map<std::string, Value>&) const; ///< throws
    void operator()(float) const;                               ///< throws
    void operator()(long long) const;                           ///< throws
    void operator()(unsigned long long) const;                  ///< throws
    /// @}

private:
    const Value* value_;
};

} // namespace foundation::json

#endif
