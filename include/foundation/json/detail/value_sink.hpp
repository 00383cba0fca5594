/// @file
/// Where objects are written as a Value, for from(). Not for programs: what is here may change in
/// every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_VALUE_SINK_HPP
#define FOUNDATION_JSON_DETAIL_VALUE_SINK_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/converters.hpp>
#include <foundation/json/detail/location.hpp>
#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/start.hpp>
#include <foundation/json/export.hpp>

#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace foundation::json::detail {

class ValueSink;

/// A member of an object that is written, or left out.
struct WrittenMember {
    Object& target;
    const void* object;  ///< that has it
    const void* pointer; ///< the address of the member's `Type Class::*`
    bool is_required;
    const Start& start;       ///< what to() starts from in the object
    const Location& location; ///< that of the member, with its name
    Defaults& default_objects;

    Defaults& defaults() const noexcept { return default_objects; }

    /// Adds the member.
    /// @return where to write its value
    ValueSink sink() const;
};

using WriteMember = void (*)(const WrittenMember& member);

/// Makes a value, which must be Undefined, an object of the members of another object.
FOUNDATION_JSON_EXPORT void write_members(const MemberTable& table, const WriteMember* writers,
                                          const void* object, Value& target, const Start& start,
                                          const Location& location, Defaults& defaults);

/// Makes a value, which must be Undefined, an array of Undefined elements.
FOUNDATION_JSON_EXPORT Array& make_array(Value& target, std::size_t size);

/// Makes a value, which must be Undefined, an object without members.
FOUNDATION_JSON_EXPORT Object& make_object(Value& target);

/// The member of a name that an object does not have; the quickest if names come in order.
FOUNDATION_JSON_EXPORT Value& add_member(Object& object, std::string_view name);

/// Takes an object as a value, which must be Undefined, at a location.
class ValueSink {
public:
    ValueSink(Value& target, const Location& location, Defaults& defaults) noexcept
        : target_(target), location_(location), defaults_(defaults) {}

    void put_null() { target_ = Value(Null()); }
    void put_string(const std::string& text) { target_ = Value(text); }
    void put_string(std::string_view text) { target_ = Value(std::string(text)); }
    void put_string(const char* text) { target_ = Value(text); }
    void put_value(const Value& value) { target_ = value; }
    void put_array(const Array& elements) { target_ = Value(elements); }
    void put_object(const Object& members) { target_ = Value(members); }

    /// bool, int, float, double, long long and unsigned long long.
    template <class Scalar>
    void put(Scalar scalar) {
        target_ = Value(scalar);
    }

    class Part;

    /// The elements of an array.
    class Elements {
    public:
        Elements(ValueSink& sink, std::size_t count)
            : sink_(sink), elements_(detail::make_array(sink.target_, count)) {}

        Part next();
        void end() const noexcept {}

    private:
        ValueSink& sink_;
        Array& elements_;
        std::size_t index_ = 0;
    };

    /// The members of a map's object.
    class Members {
    public:
        explicit Members(ValueSink& sink)
            : sink_(sink), object_(detail::make_object(sink.target_)) {}

        Part next(std::string_view name);
        void end() const noexcept {}

    private:
        ValueSink& sink_;
        Object& object_;
    };

    using Member = WrittenMember;

    void write_members(const MemberTable& table, const WriteMember* writers, const void* object,
                       const Start& start) {
        detail::write_members(table, writers, object, target_, start, location_, defaults_);
    }

    template <class T>
    void write_members_of(const T& object, const Start& start) {
        write_members(member_table<T>,
                      member_entries<T, WriteMember, MemberWriters<ValueSink>::Of>.entries,
                      std::addressof(object), start);
    }

    /// Writes an object as an object of JSON with a further member.
    template <class T>
    void put_tagged(std::string_view member, std::string_view tag, const T& object) {
        try {
            const Location root{std::string_view()};
            Defaults defaults;
            ValueSink inner(target_, root, defaults);
            Converter<T>::write(inner, object, detail::start_of_new<T>());
            json::get<Object>(target_)[std::string(member)] = Value(std::string(tag));
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception&) {
            fail_current();
        }
    }

    [[noreturn]] void fail_enumerator(const std::string& number, const NameTable& names) {
        detail::fail_enumerator(location_, number, names);
    }

    [[noreturn]] void fail_current() { detail::fail_current(location_); }

private:
    Value& target_;
    const Location& location_;
    Defaults& defaults_;
};

/// @cond
struct LocationOfPart {
    template <class Key>
    LocationOfPart(const Location& outer, Key key) noexcept : location(outer, key) {}
    Location location;
};
/// @endcond

/// An element or member.
class ValueSink::Part : LocationOfPart, public ValueSink {
public:
    template <class Key>
    Part(Value& target, const ValueSink& outer, Key key) noexcept
        : LocationOfPart(outer.location_, key),
          ValueSink(target, LocationOfPart::location, outer.defaults_) {}
};

inline ValueSink::Part ValueSink::Elements::next() {
    const std::size_t index = index_++;
    return Part(elements_[index], sink_, index);
}

inline ValueSink::Part ValueSink::Members::next(std::string_view name) {
    return Part(detail::add_member(object_, name), sink_, name);
}

inline ValueSink WrittenMember::sink() const {
    return ValueSink(detail::add_member(target, location.name()), location, default_objects);
}

} // namespace foundation::json::detail

#endif
/// @endcond
