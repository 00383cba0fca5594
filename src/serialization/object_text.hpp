/// @file
/// Objects of a caller's own types through a TextOutput.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_OBJECT_TEXT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_OBJECT_TEXT_HPP

#include "serialization/text_output.hpp"

#include <foundation/json/detail/text_sink.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace foundation::json::detail {

/// The object at an address that is of that type, or one of its size.
template <class T>
T object_at(const void* address) noexcept {
    T object;
    std::memcpy(&object, address, sizeof object);
    return object;
}

/// The size of a plain type.
constexpr std::size_t size_of(PlainType type) noexcept {
    constexpr std::size_t sizes[] = {0, sizeof(bool),       4, 8, 1, 2, 4, 8, 1, 2, 4,
                                     8, sizeof(std::string)};
    return sizes[static_cast<int>(type)];
}

/// Writes an object.
///
/// @param depth  how many levels of arrays and objects are around it
/// @return the cursor behind it
/// @throws Unwritable  something in it has no text, or no value
/// @throws what functions of its types throw
char* write_object(TextOutput& output, char* at, const AnyObject& object, std::size_t depth);

/// Throws what is wrong with an object that could not be written: what from() throws or, if that
/// succeeds, what write() throws of the value.
/// @param pointer  the location of the object
/// @param depth    how many levels of arrays and objects are around it
[[noreturn]] void throw_object_error(const std::string& pointer, const AnyObject& object,
                                     std::size_t depth, const WriteOptions& options);

/// Writes an object that stands alone.
/// @throws ConversionError, WriteError  as throw_object_error()
char* write_root(TextOutput& output, char* at, const AnyObject& object);

} // namespace foundation::json::detail

#endif
