/// @file
/// Reading documents straight into own types. The first bytes choose a type and options, and where
/// the rest is cut into a text and another one; converting the parsed text has to give the same.
#include "expect.hpp"
#include "input.hpp"

#include "support/read_types.hpp"

#include <cstdint>
#include <string>

namespace foundation::json::fuzz {
namespace {

ReadOptions options_of(Input& input) {
    const std::uint8_t bits = input.byte();
    ReadOptions options;
    options.comments = (bits & 1) != 0;
    options.trailing_commas = (bits & 2) != 0;
    if ((bits & 4) != 0) {
        options.unknown_members = ConvertOptions::UnknownMembers::error;
    }
    if ((bits & 8) != 0) {
        options.duplicate_names = ParseOptions::DuplicateNames::error;
    }
    if ((bits & 16) != 0) {
        options.integers = ParseOptions::Integers::as_double;
    }
    if ((bits & 32) != 0) {
        options.max_depth = input.below(8);
    }
    if ((bits & 64) != 0) {
        options.max_errors = input.below(5);
    }
    return options;
}

void check(Input input) {
    static const auto subjects = test::reads::subjects();
    const test::reads::Subject& subject = subjects[input.below(subjects.size())];
    const ReadOptions options = options_of(input);
    // Of a long document, most is far from its end.
    const bool is_long = input.flag();
    const std::string other = subject.texts[input.below(subject.texts.size())];
    std::string text = input.text(100000);
    text.insert(0, is_long ? 1100 : 0, ' ');
    text.append(is_long ? 200 : 0, ' ');
    const test::reads::Outcomes outcomes = subject.outcomes(text, options, other);
    expect_equal(outcomes.read, outcomes.converted, "what read() gives");
    expect_equal(outcomes.read_again, outcomes.converted, "what read_into() gives");
}

} // namespace
} // namespace foundation::json::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    foundation::json::fuzz::check({data, size});
    return 0;
}
