/// @file
/// Random values with random options: the text, or the location of the first error, is that of the
/// plainest implementation.
#include <foundation/json/write.hpp>

#include "support/random_options.hpp"
#include "support/random_trees.hpp"
#include "support/repetitions.hpp"
#include "support/stringify.hpp"
#include "support/write_outcome.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace foundation::json {
namespace {

/// Whether all names of members are UTF-8.
bool has_good_names(const test::Tree& tree) {
    if (const auto* const elements = std::get_if<test::Elements>(&tree.content)) {
        return std::all_of(elements->begin(), elements->end(), has_good_names);
    }
    const auto* const members = std::get_if<test::Members>(&tree.content);
    return members == nullptr ||
           std::all_of(members->begin(), members->end(), [](const test::Member& member) {
               const std::vector<test::Character> name = test::characters_of(member.name);
               return has_good_names(member.value) &&
                      std::all_of(name.begin(), name.end(), [](const auto& c) { return c.good; });
           });
}

TEST(RandomWrite, HasTheTextOfThePlainestImplementation) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    std::size_t errors = 0;
    for (std::size_t i = test::test_repetitions(); i > 0 && !HasFailure(); --i) {
        const test::Tree tree = random.tree();
        const Value value = test::to_value(tree);
        WriteOptions options = test::random_options(random);
        if (!has_good_names(tree)) {
            // They have no place in the order of UTF-16, so it is open which is the first error.
            options.member_order = WriteOptions::MemberOrder::as_given;
        }
        const std::string expected = test::stringified(value, options);
        EXPECT_EQ(test::text_or_location([&] { return write(value, options); }), expected);
        EXPECT_EQ(test::text_or_location([&] {
                      std::ostringstream stream;
                      write(stream, value, options);
                      return stream.str();
                  }),
                  expected);
        errors += expected.rfind("error", 0) == 0 ? 1 : 0;
    }
    // Both outcomes have been tried.
    EXPECT_GT(errors, 0U);
    EXPECT_LT(errors, test::test_repetitions());
}

TEST(RandomWrite, TakesStringsOfAllLengths) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomTrees random(seed, test::RandomTrees::Kinds::all);
    const std::string pieces[] = {
        "a",    "plain text ", "\"",       "\n",           "\x01",
        "/",    "\\",          "\xC3\xA9", "\xE6\x97\xA5", "\xF0\x9F\x99\x82",
        "\x7F", "\xE9"};
    for (std::size_t i = test::test_repetitions() / 2; i > 0 && !HasFailure(); --i) {
        // Mostly good, and often of few sorts of pieces.
        const std::size_t sorts = 1 + random.below(random.once_in(4) ? 12 : 11);
        std::string text;
        for (std::size_t count = random.below(random.once_in(50) ? 3000 : 60); count > 0; --count) {
            text += pieces[random.below(sorts)];
        }
        const WriteOptions options = test::random_options(random);
        const Value value(Object{{text, text}});
        EXPECT_EQ(test::text_or_location([&] { return write(value, options); }),
                  test::stringified(value, options));
    }
}

} // namespace
} // namespace foundation::json
