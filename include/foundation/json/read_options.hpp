/// @file
/// The settings of functions that read documents into your own types, and of Records. read.hpp and
/// records.hpp include this header.
#ifndef FOUNDATION_JSON_READ_OPTIONS_HPP
#define FOUNDATION_JSON_READ_OPTIONS_HPP

#include <foundation/json/members.hpp>
#include <foundation/json/parse_options.hpp>

#include <cstddef>

namespace foundation::json {

/// What a document may contain, and what becomes of it.
///
///     ReadOptions options;
///     options.comments = true;
///     options.unknown_members = ConvertOptions::UnknownMembers::error;
///     options.max_bytes = 1 << 20;
struct ReadOptions : ParseOptions, ConvertOptions {
    /// How long the text of a document or record may be. A longer one is an error, and is not kept
    /// in memory. With Framing::lines, that is the line without its end, even if it has no value;
    /// with Framing::elements(), it also limits each string, number and name before the array.
    std::size_t max_bytes = static_cast<std::size_t>(-1);
};

} // namespace foundation::json

#endif
