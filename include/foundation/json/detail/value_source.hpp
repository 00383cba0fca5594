/// @file
/// A Value as what converters read from, for the library's other headers. Not for programs: what is
/// here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_VALUE_SOURCE_HPP
#define FOUNDATION_JSON_DETAIL_VALUE_SOURCE_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/checks.hpp>
#include <foundation/json/detail/location.hpp>
#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/sources.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/members.hpp>

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace foundation::json::detail {

// ---- What is compiled ----------------------------------------------------------------------

/// What one call of to() goes by.
struct Session {
    const ConvertOptions& options;
    std::string key; // of the lookup under way, kept for its memory
};

/// Reads a value into a member of an object.
/// @param pointer  the address of the member's `Type Class::*`
using ReadMember = void (*)(void* object, const void* pointer, const Value& value,
                            const Location& location, Session& session);

/// Finds the members of an object that a table names.
/// @param found   gets the address of each member that is there and not Undefined, by its number in
///                the table; all null before
/// @throws ConversionError  the value is no object, a required member is missing, or one is unknown
FOUNDATION_JSON_EXPORT void find_members(const MemberTable& table, const Value** found,
                                         const Value& value, const Location& location,
                                         Session& session);

/// Reads the members of an object, in the order of their table.
/// @param found  room for as many addresses as there are members, all null
/// @throws ConversionError  as find_members()
FOUNDATION_JSON_EXPORT void read_members(const MemberTable& table, const ReadMember* readers,
                                         void* object, const Value** found, const Value& value,
                                         const Location& location, Session& session);

/// The number of the enumerator whose name a value is.
/// @throws ConversionError  the value is no string, or no such name
[[nodiscard]] FOUNDATION_JSON_EXPORT std::size_t
find_enumerator(const NameTable& names, const Value& value, const Location& location);

/// The number of the name that a member of an object is.
/// @param rest  becomes the object without that member
/// @throws ConversionError  the value is no object, or the member is missing or no such name
[[nodiscard]] FOUNDATION_JSON_EXPORT std::size_t take_tag(std::string_view member,
                                                          const NameTable& names,
                                                          const Value& value,
                                                          const Location& location, Value& rest);

/// The content of type T, or an error at the location.
template <class T>
const T& content_at(const Value& value, const Location& location) {
    const T* const content = json::get_if<T>(&value);
    if (content == nullptr) {
        detail::fail_type(location, value, static_cast<Kind>(traits<T>::order));
    }
    return *content;
}

inline bool is_nothing(const Value& value) noexcept {
    return json::kind_of(value) == Kind::null || json::kind_of(value) == Kind::undefined;
}

/// The member of an object that is read into.
/// @param pointer  the address of the member's `Type Class::*`
template <class T, class Class, class Type>
Type& member_of(void* object, const void* pointer) noexcept {
    const auto member = *static_cast<Type Class::*const*>(pointer);
    return static_cast<T*>(object)->*member;
}

// ---- The source ----------------------------------------------------------------------------

class ValueElements;
class ValueMembers;

/// A value at a location.
class ValueSource {
public:
    static constexpr bool known_lengths = true;

    template <class Container>
    static constexpr bool reads_whole = false;

    ValueSource(const Value& value, const Location& location, Session& session) noexcept
        : value_(value), location_(location), session_(session) {}

    template <class T>
    [[FOUNDATION_JSON_GNU(always_inline)]] inline void read(T& target) const {
        target = detail::content_at<T>(value_, location_);
    }
    void read(Value& target) const { target = value_; }

    template <class T>
    [[FOUNDATION_JSON_GNU(always_inline)]] inline void read_number(T& target) const {
        try {
            target = json::number<T>(value_);
        } catch (...) {
            detail::fail_number(location_, value_);
        }
    }

    std::size_t enumerator(const NameTable& names) const {
        return detail::find_enumerator(names, value_, location_);
    }

    bool read_nothing() const noexcept { return detail::is_nothing(value_); }
    void expect_nothing() const {
        if (!read_nothing()) {
            detail::fail_type(location_, value_, Kind::null);
        }
    }

    template <class T>
    void read_members(T& target) const;

    ValueElements elements() const;
    ValueElements elements(std::size_t length) const;
    ValueMembers members() const;

    /// @param part_of  gives the address of a part of it
    template <class Whole, class PartOf>
    static constexpr const void* part(const PartOf&) noexcept {
        return nullptr;
    }

    template <class Optional>
    void read_present(Optional& target) const {
        detail::read_from(target.emplace(), value_, location_, session_);
    }

    template <class Use>
    void use_again(const Use& use) const {
        use(*this);
    }

    template <class Use>
    void use_tagged(std::string_view member, const NameTable& names, const Use& use) const {
        Value rest;
        const std::size_t number = detail::take_tag(member, names, value_, location_, rest);
        use(ValueSource(rest, location_, session_), number);
    }

    [[noreturn]] void fail(const std::string& problem) const { detail::fail(location_, problem); }
    [[noreturn]] void fail_current() const { detail::fail_current(location_); }
    std::string problem() const { return detail::problem_at(location_); }

    const Value& value() const noexcept { return value_; }
    const Location& location() const noexcept { return location_; }
    Session& session() const noexcept { return session_; }

private:
    const Value& value_;
    const Location& location_;
    Session& session_;
};

/// The elements of an array.
class ValueElements {
public:
    [[FOUNDATION_JSON_GNU(always_inline)]] explicit inline ValueElements(const ValueSource& source)
        : location_(source.location()),
          session_(source.session()),
          elements_(detail::content_at<Array>(source.value(), source.location())) {}

    std::size_t size() const noexcept { return elements_.size(); }

    /// Goes on to the next element. @return false if there is none
    bool next() noexcept { return ++index_ != elements_.size(); }

    /// Goes on to an element that must be there, as it is among elements of a known length.
    void take() noexcept { ++index_; }

    /// Checks that there is no further one among these.
    void finish() const noexcept {}

    template <class T>
    void read(T& element, const void* = nullptr) const {
        const Location location(location_, index_);
        detail::read_from(element, elements_[index_], location, session_);
    }

    [[noreturn]] void fail(const char* problem) const {
        detail::fail(Location(location_, index_), problem);
    }

private:
    const Location& location_;
    Session& session_;
    const Array& elements_;
    std::size_t index_ = static_cast<std::size_t>(-1);
};

/// The members of an object.
class ValueMembers {
public:
    explicit ValueMembers(const ValueSource& source)
        : location_(source.location()),
          session_(source.session()),
          object_(detail::content_at<Object>(source.value(), source.location())),
          next_(object_.begin()) {}

    /// Goes on to the next member. @return false if there is none
    bool next() noexcept {
        present_ = next_;
        if (present_ == object_.end()) {
            return false;
        }
        ++next_;
        return true;
    }

    const std::string& name() const noexcept { return present_->first; }

    template <class T>
    void read(T& member) const {
        const Location location(location_, name());
        detail::read_from(member, present_->second, location, session_);
    }

    [[noreturn]] void fail(const char* problem) const {
        detail::fail(Location(location_, name()), problem);
    }

private:
    const Location& location_;
    Session& session_;
    const Object& object_;
    Object::const_iterator next_;
    Object::const_iterator present_{};
};

inline ValueSource source_of(const Value& value, const Location& location,
                             Session& session) noexcept {
    return {value, location, session};
}

inline ValueElements ValueSource::elements() const {
    return ValueElements(*this);
}

inline ValueElements ValueSource::elements(std::size_t length) const {
    const ValueElements result(*this);
    if (result.size() != length) {
        detail::fail_length(location_, result.size(), length);
    }
    return result;
}

inline ValueMembers ValueSource::members() const {
    return ValueMembers(*this);
}

/// What the check of a member says of what has been read into it.
template <class T, class Class, class Type, class Check>
std::string sentence_of_member(const void* object, const void* pointer, const Location& location) {
    const auto& checked = *static_cast<const CheckedPointer<Class, Type, Check>*>(pointer);
    try {
        return detail::sentence_of(checked.check, static_cast<const T*>(object)->*checked.pointer);
    } catch (const std::exception&) {
        detail::fail_current(location);
    }
}

/// Reads the members that T has of type Type, declared in Class.
template <class T, class Class, class Type>
struct ValueMemberReader {
    static void read(void* object, const void* pointer, const Value& value,
                     const Location& location, Session& session) {
        if constexpr (detail::require_changeable<Type>()) {
            detail::read_from(detail::member_of<T, Class, Type>(object, pointer), value, location,
                              session);
        }
    }

    static constexpr ReadMember entry = &read;

    /// The same with a check.
    template <class Check>
    struct Checked {
        static void read(void* object, const void* pointer, const Value& value,
                         const Location& location, Session& session) {
            ValueMemberReader::read(object, pointer, value, location, session);
            const std::string sentence =
                detail::sentence_of_member<T, Class, Type, Check>(object, pointer, location);
            if (!sentence.empty()) {
                detail::fail(location, sentence);
            }
        }

        static constexpr ReadMember entry = &read;
    };
};

template <class T>
void ValueSource::read_members(T& target) const {
    const Value* found[MembersOf<T>::count + 1] = {}; // there are no arrays of length 0
    detail::read_members(member_table<T>, member_entries<T, ReadMember, ValueMemberReader>.entries,
                         std::addressof(target), found, value_, location_, session_);
}

} // namespace foundation::json::detail

#endif
/// @endcond
