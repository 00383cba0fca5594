/// @file
/// Values through a TextOutput: the choice of the layout, and the errors with their locations.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_WRITE_VALUE_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_WRITE_VALUE_HPP

#include "serialization/text_output.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/write.hpp>

#include <cstddef>
#include <string>

namespace foundation::json::detail {

/// Writes a value, or the content of one that is an array or object. Undefined is null.
///
/// @param depth  how many levels of arrays and objects are around the value
/// @return the cursor behind it
/// @throws Unwritable  the options do not allow something in it
char* write_content(TextOutput& output, char* at, const Value& value, std::size_t depth);
char* write_content(TextOutput& output, char* at, const Array& elements, std::size_t depth);
char* write_content(TextOutput& output, char* at, const Object& members, std::size_t depth);

/// Throws what is wrong with a value that could not be written.
/// @param pointer  the location of the value
[[noreturn]] void throw_write_error(const std::string& pointer, const Value& value,
                                    const WriteOptions& options);
[[noreturn]] void throw_write_error(const std::string& pointer, const Array& elements,
                                    const WriteOptions& options);
[[noreturn]] void throw_write_error(const std::string& pointer, const Object& members,
                                    const WriteOptions& options);

/// Throws what is wrong with a value, if anything is.
/// @param pointer  the location of the value
void find_write_error(const std::string& pointer, const Value& value, const WriteOptions& options);
void find_write_error(const std::string& pointer, const Array& elements,
                      const WriteOptions& options);
void find_write_error(const std::string& pointer, const Object& members,
                      const WriteOptions& options);

/// Writes a value that stands alone.
/// @throws WriteError  the options do not allow something in it, or it is Undefined
char* write_root(TextOutput& output, char* at, const Value& value);

} // namespace foundation::json::detail

#endif
