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

class ErrorCollector;

/// What one call of to() goes by.
///
/// Without a collector, the first error is thrown through all converters. With one, those that read
/// members and elements catch it, note it and go on with the next; what they have read into is not
/// complete then, and must not be looked at.
struct Session {
    const ConvertOptions& options;
    std::string key; ///< of the lookup under way, kept for its memory
    ErrorCollector* collector = nullptr;

    /// How often errors have been noted.
    std::size_t noted() const noexcept;
};

/// The errors of one call of to().
class FOUNDATION_JSON_EXPORT ErrorCollector {
public:
    explicit ErrorCollector(const ConvertOptions& options) noexcept;
    ErrorCollector(const ErrorCollector&) = delete;
    ErrorCollector& operator=(const ErrorCollector&) = delete;
    ~ErrorCollector();

    /// Notes the errors of the ConversionError under way, and passes on any other exception.
    /// @return whether there may be more of them
    bool note_current();

    /// How often errors have been noted.
    std::size_t noted() const noexcept { return noted_; }

    /// Throws all errors, of which there is one at least, and forgets them.
    [[noreturn]] void fail();

private:
    struct Errors;
    std::unique_ptr<Errors> errors_;
    std::size_t max_errors_;
    std::size_t noted_ = 0;
};

inline std::size_t Session::noted() const noexcept {
    return collector != nullptr ? collector->noted() : 0;
}

/// As long as it lives, errors are thrown rather than noted.
class Trial {
public:
    explicit Trial(Session& session) noexcept
        : session_(session), collector_(std::exchange(session.collector, nullptr)) {}
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;
    ~Trial() { session_.collector = collector_; }

private:
    Session& session_;
    ErrorCollector* const collector_;
};

/// Notes the errors of the ConversionError under way. Passes it on if errors are not collected, and
/// any other exception; throws all errors if they are as many as allowed.
[[FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void note_current(Session& session);

/// Fails, or notes the error, as note_current() does.
[[FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
report(const Location& location, const std::string& problem, Session& session);

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

/// Reads an object, or notes why it cannot be read. @return whether it has been read
template <class T>
[[FOUNDATION_JSON_GNU(always_inline)]] inline bool
read_or_note(T& target, const Value& value, const Location& location, Session& session) {
    const std::size_t noted = session.noted();
    try {
        detail::read_from(target, value, location, session);
    } catch (...) {
        detail::note_current(session);
    }
    return session.noted() == noted;
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

    template <class T>
    void read_new(T& target) const {
        detail::read_from(target, value_, location_, session_);
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

    /// As long as the result lives, errors are thrown rather than noted.
    Trial trial() const { return Trial(session_); }

    /// How often errors have been noted.
    std::size_t noted() const noexcept { return session_.noted(); }
    /// Fails if errors have been noted since then.
    void fail_since(std::size_t noted) const {
        if (session_.noted() != noted) {
            session_.collector->fail();
        }
    }

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

    /// @return whether it has been read; else the session has noted why not
    template <class T>
    bool read(T& element, const void* = nullptr) const {
        return detail::read_or_note(element, elements_[index_], Location(location_, index_),
                                    session_);
    }

    /// Reports an error of the element.
    void report(const char* problem) const {
        detail::report(Location(location_, index_), problem, session_);
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

    /// @return whether it has been read; else the session has noted why not
    template <class T>
    bool read(T& member) const {
        return detail::read_or_note(member, present_->second, Location(location_, name()),
                                    session_);
    }

    /// Reports an error of the member.
    void report(const char* problem) const {
        detail::report(Location(location_, name()), problem, session_);
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
            const std::size_t noted = session.noted();
            ValueMemberReader::read(object, pointer, value, location, session);
            if (session.noted() != noted) {
                return;
            }
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
