/// @file
/// A write onto a stream or into a string as one call that takes the layout.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_WRITE_AS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_WRITE_AS_HPP

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <ostream>
#include <string>

namespace foundation::json::test {

enum class Layout { compact, pretty };

inline void write(std::ostream& stream, const Value& value, Layout layout = Layout::compact) {
    Serializer serializer;
    serializer.pretty_print(layout == Layout::pretty);
    serializer.write(stream, value);
}

/// The text onto a stream in its default state.
inline std::string text_of(const Value& value, Layout layout) {
    return layout == Layout::pretty ? pretty_print(value) : serialize(value);
}

} // namespace foundation::json::test

#endif
