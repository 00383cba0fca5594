// Random objects of many types have the text of the value that from() makes of them, or fail as it
// does, with all options.
#include "support/convertible_types.hpp"
#include "support/json_reader.hpp"
#include "support/random_objects.hpp"
#include "support/random_options.hpp"
#include "support/repetitions.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/write.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

namespace foundation::json {
namespace {

/// The text, or the error.
template <class Action>
std::string outcome(Action&& action) {
    try {
        return action();
    } catch (const ConversionError& error) {
        return "ConversionError " + error.pointer() + ": " + error.what();
    } catch (const WriteError& error) {
        return "WriteError " + error.pointer() + ": " + error.what();
    }
}

template <class T>
std::string text_onto_stream(const T& object, const WriteOptions& options) {
    return outcome([&] {
        std::ostringstream stream;
        write(stream, object, options);
        return stream.str();
    });
}

template <class T>
std::string text_by_writer(const T& object, const WriteOptions& options) {
    return outcome([&] {
        std::string text;
        Writer writer(text, options);
        writer.value(object).finish();
        return text;
    });
}

/// The same text by members in the order of their names.
std::string sorted(const std::string& text) {
    using namespace test;
    return write(JsonReader(text, Whitespace::allowed, DuplicateNames::last).read());
}

template <class T>
class RandomText : public testing::Test {};

TYPED_TEST_SUITE(RandomText, test::ConvertibleTypes, test::NameOfConvertibleType);

TYPED_TEST(RandomText, IsThatOfTheValue) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomObjects objects(seed, test::RandomObjects::Flaws::some);
    for (std::size_t round = test::test_repetitions() / 20; round > 0 && !this->HasFailure();
         --round) {
        const auto object = objects.make<TypeParam>();
        WriteOptions options = test::random_options(objects.random());
        const auto expected = [&] { return outcome([&] { return write(from(object), options); }); };
        const std::string by_bytes = expected();
        const std::string text = outcome([&] { return write(object, options); });
        if (by_bytes.find("Error ") == 0 || text.find("Error ") == 0) {
            EXPECT_EQ(text, by_bytes);
        }
        EXPECT_EQ(text.size(), by_bytes.size());
        EXPECT_EQ(text_onto_stream(object, options), text);
        EXPECT_EQ(text_by_writer(object, options), text);
        options.member_order = WriteOptions::MemberOrder::utf16;
        if (options.bad_utf8 == WriteOptions::BadUtf8::error) {
            EXPECT_EQ(outcome([&] { return write(object, options); }), expected());
        }
    }
}

TYPED_TEST(RandomText, HasTheMembersOfTheValue) {
    const std::uint64_t seed = test::random_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::RandomObjects objects(seed);
    WriteOptions options;
    options.bad_utf8 = WriteOptions::BadUtf8::replace;
    for (std::size_t round = test::test_repetitions() / 20; round > 0 && !this->HasFailure();
         --round) {
        const auto object = objects.make<TypeParam>();
        options.indent = static_cast<unsigned>(round % 3);
        EXPECT_EQ(sorted(write(object, options)), sorted(write(from(object), options)));
    }
}

} // namespace
} // namespace foundation::json
