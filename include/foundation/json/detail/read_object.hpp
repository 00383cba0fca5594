/// @file
/// How Reader and Records are told to read other types than Value, for the library's other headers.
/// Not for programs: what is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_READ_OBJECT_HPP
#define FOUNDATION_JSON_DETAIL_READ_OBJECT_HPP

#include <foundation/json/fwd.hpp>

#include <string_view>

namespace foundation::json {
struct ReadOptions;
}

namespace foundation::json::detail {

/// An object of another type than Value that is read.
struct ReadObject {
    void* object;
    /// Reads it from a text. @return false if it has to be converted from the value of the text
    bool (*read)(void* object, std::string_view text, const ReadOptions& options);
    /// @throws ConversionError
    void (*convert)(void* object, const Value& value, const ReadOptions& options);
};

/// How objects of a type are read. read.hpp defines it: include that header to read other types
/// than Value.
template <class T>
struct ObjectReader;

} // namespace foundation::json::detail

#endif
/// @endcond
