/// @file
/// JSON text for other programs. The first bytes are the options; what follows is a value, which is
/// written to a string and onto a stream, whole and by its parts; or a sequence of calls of a
/// Writer, of which any may not fit.
#include "expect.hpp"
#include "input.hpp"
#include "tree_reader.hpp"

#include "support/stringify.hpp"
#include "support/write_outcome.hpp"

#include <foundation/json/write.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

namespace foundation::json::fuzz {
namespace {

WriteOptions read_options(Input& input) {
    const unsigned choices = input.bits<std::uint16_t>();
    const auto choice = [choices](unsigned shift, unsigned count) {
        return (choices >> shift & 3) % count;
    };
    WriteOptions options;
    options.indent = static_cast<unsigned>(input.below(13));
    options.ascii = (choices & 1) != 0;
    options.escape_slash = (choices & 2) != 0;
    options.not_finite = static_cast<WriteOptions::NotFinite>(choice(2, 3));
    options.bad_utf8 = static_cast<WriteOptions::BadUtf8>(choice(4, 3));
    options.big_integers = static_cast<WriteOptions::BigIntegers>(choice(6, 3));
    options.member_order = static_cast<WriteOptions::MemberOrder>(choice(8, 2));
    return options;
}

// ---- Values --------------------------------------------------------------------------------

bool is_good(const std::string& name) {
    return test::stringified(name) != "error at ";
}

bool has_good_names(const Value& value) {
    if (const auto* const elements = get_if<Array>(&value)) {
        return std::all_of(elements->begin(), elements->end(), has_good_names);
    }
    const auto* const members = get_if<Object>(&value);
    return members == nullptr ||
           std::all_of(members->begin(), members->end(), [](const auto& member) {
               return is_good(member.first) && has_good_names(member.second);
           });
}

/// Writes a value by the calls for its parts.
void write_parts(Writer& writer, const Value& value) {
    if (const auto* const elements = get_if<Array>(&value)) {
        writer.begin_array();
        for (const Value& element : *elements) {
            write_parts(writer, element);
        }
        writer.end();
    } else if (const auto* const members = get_if<Object>(&value)) {
        writer.begin_object();
        for (const auto& [name, member] : *members) {
            // A Writer cannot know in time that a name is left out.
            if (!holds<Undefined>(member) || is_good(name)) {
                writer.name(name);
                write_parts(writer, member);
            }
        }
        writer.end();
    } else {
        visit([&](const auto& content) { writer.value(content); }, value);
    }
}

void check_value(WriteOptions options, const Value& value) {
    if (!has_good_names(value)) {
        // They have no position in the order of UTF-16.
        options.member_order = WriteOptions::MemberOrder::as_given;
    }
    const std::string expected = test::stringified(value, options);
    expect_equal(test::text_or_location([&] { return write(value, options); }), expected,
                 "the text");
    std::ostringstream stream;
    expect_equal(test::text_or_location([&] {
                     write(stream, value, options);
                     return stream.str();
                 }),
                 expected, "the text onto a stream");
    if (options.member_order == WriteOptions::MemberOrder::as_given) {
        std::string text;
        expect_equal(test::text_or_location([&] {
                         Writer writer(text, options);
                         write_parts(writer, value);
                         writer.finish();
                         return text;
                     }),
                     expected, "the text by its parts");
    }
}

// ---- Calls ---------------------------------------------------------------------------------

/// What a Writer has to do, in the plainest way: compact text without names that repeat.
class WriterModel {
public:
    /// @return whether the call fits
    bool value(const std::string& text) {
        if (!begin_value()) {
            return false;
        }
        text_ += text;
        end_value();
        return true;
    }

    bool begin(char bracket) {
        if (!begin_value()) {
            return false;
        }
        text_ += bracket;
        open_.push_back(bracket);
        is_first_ = true;
        return true;
    }

    bool name(const std::string& name) {
        if (open_.empty() || open_.back() != '{' || has_name_) {
            return false;
        }
        before_name_ = text_.size();
        text_ += is_first_ ? "" : ",";
        text_ += test::stringified(name) + ":";
        has_name_ = true;
        return true;
    }

    bool undefined() {
        if (has_name_) {
            text_.resize(before_name_);
            has_name_ = false;
            return true;
        }
        return !open_.empty() && value("null");
    }

    bool end() {
        if (open_.empty() || has_name_) {
            return false;
        }
        text_ += open_.back() == '{' ? '}' : ']';
        open_.pop_back();
        end_value();
        return true;
    }

    bool finish() {
        const bool fits = is_complete_;
        is_complete_ = false;
        return fits;
    }

    /// Whether Undefined would be an error, not a misuse.
    bool is_at_root() const { return open_.empty() && !is_complete_; }

    bool is_complete() const { return is_complete_; }
    const std::string& text() const { return text_; }

private:
    bool begin_value() {
        if (is_complete_ || (!open_.empty() && open_.back() == '{' && !has_name_)) {
            return false;
        }
        text_ += has_name_ || is_first_ || open_.empty() ? "" : ",";
        has_name_ = false;
        return true;
    }

    void end_value() {
        is_first_ = false;
        is_complete_ = open_.empty();
    }

    std::string text_;
    std::string open_;
    std::size_t before_name_ = 0;
    bool is_first_ = true;
    bool has_name_ = false;
    bool is_complete_ = false;
};

template <class Call>
bool fits(Call call) {
    try {
        call();
        return true;
    } catch (const std::logic_error&) {
        return false;
    }
}

void check_call(Input& input, Writer& writer, WriterModel& model) {
    const std::string text = "n" + std::to_string(input.below(200) * (input.flag() ? 1 : 100'000));
    const auto same = [](bool actual, bool expected) {
        expect_equal(actual, expected, "whether a call fits");
    };
    switch (input.below(9)) {
    case 0:
        return same(fits([&] { writer.begin_array(); }), model.begin('['));
    case 1:
        return same(fits([&] { writer.begin_object(); }), model.begin('{'));
    case 2:
    case 3:
        return same(fits([&] { writer.end(); }), model.end());
    case 4:
    case 5:
        return same(fits([&] { writer.name(text); }), model.name(text));
    case 6:
        return same(fits([&] { writer.value(text); }), model.value('"' + text + '"'));
    case 7:
        return same(fits([&] { writer.finish(); }), model.finish());
    default:
        if (!model.is_at_root()) {
            same(fits([&] { writer.value(Undefined()); }), model.undefined());
        }
    }
}

void check_calls(Input& input) {
    std::string text;
    std::ostringstream stream;
    const bool onto_stream = input.flag();
    Writer to_string(text);
    Writer to_stream(stream);
    WriterModel model;
    while (!input.empty()) {
        check_call(input, onto_stream ? to_stream : to_string, model);
        if (model.is_complete()) {
            expect_equal(onto_stream ? stream.str() : text, model.text(), "the text by calls");
        }
    }
}

void check(Input input) {
    const WriteOptions options = read_options(input);
    if (input.below(4) == 3) {
        check_calls(input);
    } else {
        check_value(options, test::to_value(TreeReader(input).tree()));
    }
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace foundation::json::fuzz;
    check(Input(data, size));
    return 0;
}
