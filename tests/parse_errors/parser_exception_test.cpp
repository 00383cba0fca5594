// The exception of a reader: what it carries, and what copies and moves leave behind.
#include <foundation/json/parse_errors.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::json::test {
namespace {

using testing::AllOf;
using testing::Property;
using testing::Throws;
using testing::ThrowsMessage;

const char* const long_text =
    "a piece of input too long to be stored within a string object itself";

ParserException first() {
    return {"the first message", MISSING_ARRAY_CLOSE, 101, 7, 12, 5, long_text};
}

ParserException second() {
    return {"a second message, longer than the first", EMPTY_INPUT, 0, 1, 2, 3, "short"};
}

/// Everything an exception carries, in one comparable object.
struct Fields {
    std::string message;
    ParseResult parse_result;
    std::size_t byte_position;
    std::size_t line_number;
    std::size_t column;
    std::size_t quoted_byte_position;
    std::string quoted_text;
};

void expect_fields(const ParserException& e, const Fields& fields) {
    EXPECT_EQ(e.what(), fields.message);
    EXPECT_EQ(e.get_parse_result(), fields.parse_result);
    EXPECT_EQ(e.get_byte_position(), fields.byte_position);
    EXPECT_EQ(e.get_line_number(), fields.line_number);
    EXPECT_EQ(e.get_column(), fields.column);
    EXPECT_EQ(e.get_quoted_byte_position(), fields.quoted_byte_position);
    EXPECT_EQ(e.get_quoted_text(), fields.quoted_text);
}

const Fields first_fields{"the first message", MISSING_ARRAY_CLOSE, 101, 7, 12, 5, long_text};
const Fields first_fields_after_move{"the first message", MISSING_ARRAY_CLOSE, 101, 7, 12, 5, ""};
const Fields second_fields{
    "a second message, longer than the first", EMPTY_INPUT, 0, 1, 2, 3, "short"};
const Fields second_fields_after_move{
    "a second message, longer than the first", EMPTY_INPUT, 0, 1, 2, 3, ""};

TEST(ParserException, CarriesWhatItIsGiven) {
    expect_fields(first(), first_fields);
    expect_fields(second(), second_fields);
}

TEST(ParserException, CarriesTheWholeRangeOfPositionsAndAnyCode) {
    constexpr std::size_t max = static_cast<std::size_t>(-1);
    expect_fields(ParserException("", NO_PARSE_ERROR, 0, 0, 0, 0, ""),
                  {"", NO_PARSE_ERROR, 0, 0, 0, 0, ""});
    expect_fields(
        ParserException("m", static_cast<ParseResult>(-1), max, max - 1, max - 2, max - 3, "q"),
        {"m", static_cast<ParseResult>(-1), max, max - 1, max - 2, max - 3, "q"});
}

TEST(ParserException, KeepsZeroBytesOfTheQuotedText) {
    const std::string quoted("a\0b", 3);
    EXPECT_EQ(ParserException("", EMPTY_INPUT, 0, 1, 1, 0, quoted).get_quoted_text(), quoted);
}

TEST(ParserException, DoesNotMakeUpAMessage) {
    EXPECT_STREQ(ParserException("", EMPTY_INPUT, 1, 2, 3, 4, "quoted").what(), "");
}

TEST(ParserException, KeepsCopiesOfTheStringsItIsGiven) {
    std::string message("message");
    std::string quoted("quoted");
    const ParserException e(message, EMPTY_INPUT, 0, 1, 1, 0, quoted);
    message = "changed";
    quoted = "changed";
    expect_fields(e, {"message", EMPTY_INPUT, 0, 1, 1, 0, "quoted"});
}

TEST(ParserException, GivesACopyOfTheQuotedText) {
    const ParserException e = first();
    std::string text = e.get_quoted_text();
    text += " changed";
    text[0] = '!';
    EXPECT_EQ(e.get_quoted_text(), long_text);
}

// ---- Thrown and caught -------------------------------------------------------------------------

TEST(ParserException, IsCaughtAsItselfAndAsItsBases) {
    try {
        throw first();
    } catch (const ParserException& e) {
        expect_fields(e, first_fields);
    }
    const auto throw_first = [] { throw first(); };
    EXPECT_THAT(throw_first, ThrowsMessage<std::runtime_error>("the first message"));
    EXPECT_THAT(throw_first, ThrowsMessage<std::exception>("the first message"));
}

TEST(ParserException, SurvivesAnExceptionPointer) {
    const std::exception_ptr stored = std::make_exception_ptr(first());
    for (int i = 0; i != 2; ++i) {
        EXPECT_THAT([&] { std::rethrow_exception(stored); },
                    Throws<ParserException>(AllOf(
                        Property(&ParserException::get_line_number, 7u),
                        Property(&ParserException::get_quoted_text, std::string(long_text)))));
    }
}

TEST(ParserException, IsDestroyedThroughItsBase) {
    std::unique_ptr<std::exception> base = std::make_unique<ParserException>(first());
    EXPECT_STREQ(base->what(), "the first message");
    base.reset();
    static_assert(std::has_virtual_destructor_v<ParserException>);
}

// ---- Copies ------------------------------------------------------------------------------------

TEST(ParserException, ACopyIsEqualAndLeavesTheSourceAsItIs) {
    const ParserException source = first();
    const ParserException copy(source);
    expect_fields(copy, first_fields);
    expect_fields(source, first_fields);
}

TEST(ParserException, ACopyOutlivesItsSource) {
    auto source = std::make_unique<ParserException>(first());
    const ParserException copy(*source);
    source.reset();
    expect_fields(copy, first_fields);
}

TEST(ParserException, CopyAssignmentReplacesEverything) {
    const ParserException source = first();
    ParserException target = second();
    ParserException& result = (target = source);
    EXPECT_EQ(&result, &target);
    expect_fields(target, first_fields);
    expect_fields(source, first_fields);

    const ParserException back = second();
    target = back;
    expect_fields(target, second_fields);
}

TEST(ParserException, CopyAssignmentToItselfChangesNothing) {
    ParserException e = first();
    const ParserException& same = e;
    ParserException& result = (e = same);
    EXPECT_EQ(&result, &e);
    expect_fields(e, first_fields);
}

// ---- Moves -------------------------------------------------------------------------------------

TEST(ParserException, AMoveTakesTheQuotedTextAndNothingElse) {
    ParserException long_source = first();
    const ParserException long_target(std::move(long_source));
    expect_fields(long_target, first_fields);
    expect_fields(long_source, first_fields_after_move);

    ParserException short_source = second();
    const ParserException short_target(std::move(short_source));
    expect_fields(short_target, second_fields);
    expect_fields(short_source, second_fields_after_move);
}

TEST(ParserException, MoveAssignmentTakesTheQuotedTextAndNothingElse) {
    ParserException long_source = first();
    ParserException target = second();
    ParserException& result = (target = std::move(long_source));
    EXPECT_EQ(&result, &target);
    expect_fields(target, first_fields);
    expect_fields(long_source, first_fields_after_move);

    ParserException short_source = second();
    target = std::move(short_source);
    expect_fields(target, second_fields);
    expect_fields(short_source, second_fields_after_move);
}

TEST(ParserException, MoveAssignmentToItselfChangesNothing) {
    ParserException e = first();
    ParserException& same = e;
    ParserException& result = (e = std::move(same));
    EXPECT_EQ(&result, &e);
    expect_fields(e, first_fields);

    ParserException with_short_text = second();
    ParserException& same_again = with_short_text;
    with_short_text = std::move(same_again);
    expect_fields(with_short_text, second_fields);
}

TEST(ParserException, MovesWithoutThrowing) {
    static_assert(std::is_nothrow_move_constructible_v<ParserException>);
    static_assert(std::is_nothrow_move_assignable_v<ParserException>);
    static_assert(std::is_nothrow_destructible_v<ParserException>);
    static_assert(std::is_copy_constructible_v<ParserException>);
    static_assert(std::is_copy_assignable_v<ParserException>);
    static_assert(!std::is_default_constructible_v<ParserException>);
    static_assert(std::is_convertible_v<ParserException*, std::runtime_error*>);
    static_assert(std::is_same_v<decltype(first().get_quoted_text()), std::string>);
    static_assert(std::is_same_v<decltype(first().get_parse_result()), ParseResult>);
    static_assert(std::is_same_v<decltype(first().get_byte_position()), std::size_t>);
    static_assert(std::is_same_v<decltype(first().get_line_number()), std::size_t>);
    static_assert(std::is_same_v<decltype(first().get_column()), std::size_t>);
    static_assert(std::is_same_v<decltype(first().get_quoted_byte_position()), std::size_t>);
}

} // namespace
} // namespace foundation::json::test
