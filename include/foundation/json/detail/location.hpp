/// @file
/// Where a conversion is, and how it fails there, for the library's other headers. Not for
/// programs: what is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_LOCATION_HPP
#define FOUNDATION_JSON_DETAIL_LOCATION_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/export.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// Where a conversion is, as a list from the innermost location outwards on the stack: it becomes a
/// JSON Pointer only if there is an error to report.
class Location {
public:
    explicit Location(std::string_view pointer) noexcept
        : outer_(nullptr), name_(pointer.data()), number_(pointer.size()) {}
    /// @param name  its data() is not null
    Location(const Location& outer, std::string_view name) noexcept
        : outer_(&outer), name_(name.data()), number_(name.size()) {}
    Location(const Location& outer, std::size_t index) noexcept
        : outer_(&outer), name_(nullptr), number_(index) {}
    Location(const Location&) = delete;
    Location& operator=(const Location&) = delete;

    /// The name of the member at this location.
    std::string_view name() const noexcept { return {name_, number_}; }

    [[nodiscard]] FOUNDATION_JSON_EXPORT std::string pointer() const;

private:
    void append_to(std::string& pointer) const;

    const Location* outer_;
    const char* name_;   // null for an element
    std::size_t number_; // the length of the name, or the index of the element
};

// All of these throw ConversionError.

[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
fail(const Location& location, const std::string& problem);

/// Says what the exception under way says; the location of a ConversionError is within this one.
/// What is no std::exception is passed on, and so is an exception that memory has run out.
[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
fail_current(const Location& location);

/// What the exception under way says, without the location if it is this one. An exception that
/// memory has run out is passed on.
[[nodiscard, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT std::string
problem_at(const Location& location);

/// Says that a value is of the wrong type: `"8080" is a string, not a number`.
[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
fail_type(const Location& location, const Value& value, Kind wanted);

/// Says what is wrong with a value that number() refused: its type, or what the exception under
/// way says. An exception that memory has run out is passed on.
[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
fail_number(const Location& location, const Value& value);

[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
fail_length(const Location& location, std::size_t length, std::size_t wanted);

/// @param number  of an enumerator that has no name
[[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_EXPORT void
fail_enumerator(const Location& location, const std::string& number, const NameTable& names);

} // namespace foundation::json::detail

#endif
/// @endcond
