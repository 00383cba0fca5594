// Running out of memory where a reader reports an error or converts text.
#include "support/allocation_failures.hpp"

#include <foundation/json/parse_errors.hpp>
#include <foundation/json/text_helpers.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace foundation::json::test {
namespace {

const std::string long_text = "a piece of input too long to be stored within a string itself";

ParserException long_error() {
    return {"a message", MISSING_ARRAY_CLOSE, 101, 7, 12, 5, long_text};
}

ParserException short_error() {
    return {"another message", EMPTY_INPUT, 1, 2, 3, 4, "short"};
}

void expect_long_error(const ParserException& error) {
    EXPECT_STREQ(error.what(), "a message");
    EXPECT_EQ(error.get_parse_result(), MISSING_ARRAY_CLOSE);
    EXPECT_EQ(error.get_byte_position(), 101u);
    EXPECT_EQ(error.get_quoted_text(), long_text);
}

TEST(ParserExceptionOutOfMemory, IsNotMade) {
    const std::string message = "a message";
    const std::size_t failures = fail_each_allocation(
        [] { return std::optional<ParserException>(); },
        [&](auto& error) {
            error.emplace(message, MISSING_ARRAY_CLOSE, 101u, 7u, 12u, 5u, long_text);
        },
        [](const auto& error) { EXPECT_FALSE(error.has_value()); },
        [](const auto& error) { expect_long_error(*error); });
    EXPECT_GE(failures, 2u) << "the message and the quoted text";
}

TEST(ParserExceptionOutOfMemory, IsNotCopied) {
    const ParserException original = long_error();
    const std::size_t failures =
        fail_each_allocation([] { return std::optional<ParserException>(); },
                             [&](auto& error) { error.emplace(original); },
                             [&](const auto& error) {
                                 EXPECT_FALSE(error.has_value());
                                 expect_long_error(original);
                             },
                             [](const auto& error) { expect_long_error(*error); });
    EXPECT_GE(failures, 1u);
}

TEST(ParserExceptionOutOfMemory, KeepsItsQuotedTextWhenCopyAssignmentFails) {
    const ParserException source = long_error();
    const std::size_t failures = fail_each_allocation(
        [] { return short_error(); }, [&](ParserException& error) { error = source; },
        [&](const ParserException& error) {
            EXPECT_EQ(error.get_quoted_text(), "short");
            expect_long_error(source);
        },
        expect_long_error);
    EXPECT_EQ(failures, 1u);
}

TEST(ParserExceptionOutOfMemory, CannotHappenToMoves) {
    ParserException source = long_error();
    std::optional<ParserException> moved;
    EXPECT_EQ(allocations_of([&] { moved.emplace(std::move(source)); }), 0u);
    expect_long_error(*moved);
    ParserException target = short_error();
    EXPECT_EQ(allocations_of([&] { target = std::move(*moved); }), 0u);
    expect_long_error(target);
}

TEST(ParserExceptionOutOfMemory, KeepsItsQuotedTextWhenNoCopyOfItCanBeMade) {
    struct Operands {
        ParserException error;
        std::string text;
    };
    const std::size_t failures = fail_each_allocation(
        [] {
            return Operands{long_error(), "untouched"};
        },
        [](Operands& o) { o.text = o.error.get_quoted_text(); },
        [](const Operands& o) {
            EXPECT_EQ(o.text, "untouched");
            expect_long_error(o.error);
        },
        [](const Operands& o) { EXPECT_EQ(o.text, long_text); });
    EXPECT_EQ(failures, 1u);
}

TEST(ParserExceptionAllocations, OfEverythingElseAreNone) {
    const ParserException error = long_error();
    EXPECT_EQ(allocations_of([&] {
                  static_cast<void>(error.what());
                  static_cast<void>(error.get_parse_result());
                  static_cast<void>(error.get_byte_position());
                  static_cast<void>(error.get_line_number());
                  static_cast<void>(error.get_column());
                  static_cast<void>(error.get_quoted_byte_position());
                  static_cast<void>(get_parse_result_description(error.get_parse_result()));
              }),
              0u);
}

TEST(Utf16OutOfMemory, LeavesNoTextCutShort) {
    struct Operands {
        std::u16string units;
        std::string text;
    };
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        expected += "x\xC3\xA9\xE2\x82\xAC";
    }
    const std::size_t failures = fail_each_allocation(
        [] {
            Operands o{std::u16string(), "untouched"};
            for (int i = 0; i < 5000; ++i) {
                o.units += u"x\u00E9\u20AC";
            }
            return o;
        },
        [](Operands& o) {
            o.text = json::detail::u16_to_u8(o.units.data(), static_cast<int>(o.units.size()));
        },
        [](const Operands& o) {
            EXPECT_EQ(o.text, "untouched");
            EXPECT_EQ(o.units.size(), 15000u);
        },
        [&](const Operands& o) { EXPECT_EQ(o.text, expected); });
    EXPECT_GE(failures, 3u) << "a copy of the units, and a result that grows";
}

TEST(StringToDoubleAllocations, AreNone) {
    double number = 0;
    const std::string long_number = "0." + std::string(2000, '3');
    EXPECT_EQ(allocations_of([&] {
                  number += json::detail::string_to_double("1.5");
                  number += json::detail::string_to_double("1e-400");
                  number += json::detail::string_to_double("no number");
                  number += 3 * json::detail::string_to_double(long_number.c_str());
              }),
              0u);
    EXPECT_EQ(number, 2.5);
}

} // namespace
} // namespace foundation::json::test
