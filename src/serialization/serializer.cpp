#include <foundation/json/serializer.hpp>

#include "serialization/buffered_output.hpp"
#include "serialization/layout.hpp"
#include "serialization/stream_output.hpp"

#include <sstream>

namespace foundation::json {

namespace {

template <class Output>
auto write_layout(Output& output, typename Output::Cursor at, const Value& value, bool pretty) {
    return pretty ? detail::Layout<Output, true>(output).write(at, value)
                  : detail::Layout<Output, false>(output).write(at, value);
}

/// Whether the text of a value ends in a piece of one byte: a bracket or a quotation mark.
struct EndsInOneByte : boost::static_visitor<bool> {
    bool operator()(const std::string&) const { return true; }
    bool operator()(const Array&) const { return true; }
    bool operator()(const Object&) const { return true; }

    template <class Other>
    bool operator()(const Other&) const {
        return false;
    }
};

void write_value(std::ostream& stream, const Value& value, bool pretty) {
    if (detail::visit(EndsInOneByte(), value) && detail::fast_number_text_applies() &&
        detail::BufferedStreamOutput::applies_to(stream)) {
        detail::BufferedStreamOutput output(stream);
        output.finish(write_layout(output, output.start(), value, pretty));
    } else {
        detail::StreamOutput output(stream);
        write_layout(output, {}, value, pretty);
    }
}

bool global_locale_is_classic() {
    return std::locale() == std::locale::classic();
}

std::string to_string(const Value& value, bool pretty) {
    if (detail::fast_number_text_applies() && global_locale_is_classic()) {
        detail::StringOutput output;
        return output.take(write_layout(output, output.start(), value, pretty));
    }
    std::ostringstream stream;
    stream.exceptions(std::ios_base::badbit); // for want of memory, the only failure there is
    detail::StreamOutput output(stream);
    write_layout(output, {}, value, pretty);
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
