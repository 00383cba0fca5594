// Representations, smart pointers, variants, checks: read from text as from a value.
#include "support/represented.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/read.hpp>
#include <foundation/json/write.hpp>

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace foundation::json {
namespace {

using namespace represented;

/// The object's text, or the error without its position.
template <class T>
std::string outcome_of_read(const std::string& text, const ReadOptions& options) {
    try {
        return write(read<T>(text, options));
    } catch (const ConversionError& error) {
        const std::string what = error.what();
        return what.substr(what.find("at "));
    }
}

template <class T>
std::string outcome_of_to(const std::string& text, const ReadOptions& options) {
    try {
        return write(to<T>(parse(text, options), options));
    } catch (const ConversionError& error) {
        return error.what();
    }
}

template <class T>
void expect_same(const std::string& text) {
    for (const auto unknown :
         {ConvertOptions::UnknownMembers::ignore, ConvertOptions::UnknownMembers::error}) {
        ReadOptions options;
        options.unknown_members = unknown;
        EXPECT_EQ(outcome_of_read<T>(text, options), outcome_of_to<T>(text, options)) << text;
    }
}

TEST(ReadRepresented, IsTheSameAsFromAValue) {
    for (const char* const text :
         {R"("abcd")", R"("abc")", "7", R"(["abcd"])", R"({"a":"abcd"})", "null"}) {
        expect_same<Code>(text);
        expect_same<std::optional<Code>>(text);
        expect_same<std::vector<Code>>(text);
        expect_same<std::map<std::string, Code>>(text);
        expect_same<std::unique_ptr<Code>>(text);
        expect_same<std::variant<int, Code, std::vector<Code>>>(text);
    }
    for (const char* const text :
         {R"({"type":"circle","radius":1})", R"({"radius":2,"type":"circle"})",
          R"({"type":"circle","radius":1,"side":1})", R"({"type":"cube"})", R"({"radius":2})",
          R"({"type":"square","side":"a"})", R"({"type":"square","side":1,"colour":null})", "[]"}) {
        expect_same<Shape>(text);
        expect_same<std::vector<Shape>>(std::string("[") + text + "]");
    }
    for (const char* const text :
         {R"({"name":"a"})", R"({"name":"a","left":null,"right":{"name":"b"}})",
          R"({"name":"a","left":{"name":"b","left":{"name":1}}})", R"({"left":{}})"}) {
        expect_same<Tree>(text);
    }
    for (const char* const text :
         {R"({"port":1})", R"({"port":0})", R"({"port":65536,"share":2})",
          R"({"port":1,"share":null,"even":"ab"})", R"({"port":1,"even":"a"})",
          R"({"port":1,"even":"throw"})", R"({"share":1,"port":65535,"x":1})"}) {
        expect_same<Checked>(text);
    }
    for (const char* const text :
         {R"({"code":"abcd","codes":["abcd","efgh"],"label":"x","many":{"a":[1,2]},"path":"/a"})",
          R"({"set":["abcd","abcd"]})", R"({"words":["a","b","a"]})", R"({"numbers":[2,1,2]})",
          R"({"by_name":{"a":"abcd","b":"x"}})", R"({"many":{"a":1}})", R"({"label":{}})"}) {
        expect_same<Parcel>(text);
    }
}

TEST(ReadRepresented, TellsThePosition) {
    try {
        static_cast<void>(read<std::vector<Code>>("[\"abcd\",\n \"abc\"]"));
        FAIL();
    } catch (const ReadError& error) {
        EXPECT_STREQ(error.what(), "2:2: at /1: a code has 4 characters");
    }
}

} // namespace
} // namespace foundation::json
