/// @file
/// What reading from a standard stream does to its state.
#ifndef FOUNDATION_JSON_SRC_GRAMMAR_STREAMS_HPP
#define FOUNDATION_JSON_SRC_GRAMMAR_STREAMS_HPP

#include <ios>
#include <iosfwd>

namespace foundation::json::detail {

/// Checks that a stream can be read, as every input function does first.
/// @throws std::ios_base::failure the stream is not good
void begin_reading(std::istream& stream);

/// Sets eofbit, unless an error ended the reading.
/// @throws std::ios_base::failure the stream is bad
void end_reading(std::istream& stream);

/// Sets badbit or eofbit, and throws nothing, whatever the stream's exceptions() are.
void set_state(std::istream& stream, std::ios_base::iostate bits) noexcept;

} // namespace foundation::json::detail

#endif
