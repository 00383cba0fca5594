// The writer as callers see it: it chooses the output for a stream or string.
#include <foundation/json/serializer.hpp>

#include "serialization/buffered_output.hpp"
#include "serialization/layout.hpp"
#include "serialization/stream_output.hpp"

#include <ostream>
#include <streambuf>
#include <utility>

namespace foundation::json {

namespace {

template <class Output>
auto write_layout(Output& output, typename Output::Cursor at, const Value& value, bool pretty) {
    using detail::Layout;
    return pretty ? detail::LayoutWriter<Output, Layout::fixed_pretty>(output).write(at, value)
                  : detail::LayoutWriter<Output, Layout::fixed>(output).write(at, value);
}

/// Whether the last piece of a value's text is a single byte, a bracket or a quotation mark, which
/// BufferedStreamOutput::finish() needs: it inserts the last byte by itself, so that a stream which
/// fails there is left as if it had failed at the last piece.
struct LastPieceIsOneByte : boost::static_visitor<bool> {
    bool operator()(const std::string&) const { return true; }
    bool operator()(const Array&) const { return true; }
    bool operator()(const Object&) const { return true; }

    template <class Other>
    bool operator()(const Other&) const {
        return false;
    }
};

void write_value(std::ostream& stream, const Value& value, bool pretty) {
    if (visit(LastPieceIsOneByte(), value) && detail::fast_number_text_applies() &&
        detail::BufferedStreamOutput::applies_to(stream)) {
        detail::BufferedStreamOutput output(stream);
        output.finish(write_layout(output, output.start(), value, pretty));
    } else {
        detail::StreamOutput output(stream);
        write_layout(output, {}, value, pretty);
    }
}

/// The buffer of a string stream that reports running out of memory: those of some standard
/// libraries only fail.
class TextBuffer : public std::streambuf {
public:
    std::string take() { return std::move(text_); }

protected:
    int_type overflow(int_type byte) override {
        text_ += traits_type::to_char_type(byte); // streams never pass the end of file
        return byte;
    }

    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        text_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }

private:
    std::string text_;
};

/// The text as a new string stream would contain it, but reports running out of memory.
std::string to_string_by_stream(const Value& value, bool pretty) {
    TextBuffer buffer;
    std::ostream stream(&buffer);
    detail::StreamOutput output(stream, detail::StreamOutput::Failure::silent);
    write_layout(output, {}, value, pretty);
    return buffer.take();
}

std::string to_string(const Value& value, bool pretty) {
    if (detail::fast_number_text_applies()) {
        detail::StringOutput output;
        const char* const end = write_layout(output, output.start(), value, pretty);
        if (!output.depends_on_locale()) {
            return output.take(end);
        }
    }
    return to_string_by_stream(value, pretty);
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
