#include <foundation/json/serializer.hpp>

#include "serialization/layout.hpp"
#include "serialization/stream_output.hpp"

#include <sstream>

namespace foundation::json {

namespace {

void write_value(std::ostream& stream, const Value& value, bool pretty) {
    detail::StreamOutput output(stream);
    detail::visit(detail::WriteVisitor<detail::StreamOutput>(output, pretty, 0), value);
}

std::string to_string(const Value& value, bool pretty) {
    std::ostringstream stream;
    // All that can fail here is memory, and the stream must not swallow that.
    stream.exceptions(std::ios_base::badbit);
    write_value(stream, value, pretty);
    return stream.str();
}

} // namespace

Serializer::Serializer() : pretty_(false) {}

Serializer::~Serializer() = default;

void Serializer::pretty_print(bool pretty) {
    pretty_ = pretty;
}

bool Serializer::pretty_print() const {
    return pretty_;
}

void Serializer::write(std::ostream& stream, const Value& value) {
    write_value(stream, value, pretty_);
}

std::string serialize(const Value& value) {
    return to_string(value, false);
}

std::string pretty_print(const Value& value) {
    return to_string(value, true);
}

} // namespace foundation::json
