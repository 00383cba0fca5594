// Representations, smart pointers, variants, sets, multimaps, paths, views, and the checks of
// members.
#include "convert/conversion_error.hpp"
#include "support/describe.hpp"
#include "support/represented.hpp"
#include "support/write_outcome.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/write.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::json {
namespace {

using namespace represented;
using test::conversion_error;
using test::describe;

/// The text, after it has been made sure that the value has the same and reads back the same.
template <class T>
std::string text_of(const T& object) {
    WriteOptions sorted;
    sorted.member_order = WriteOptions::MemberOrder::utf16;
    const Value value = from(object);
    EXPECT_EQ(write(object, sorted), write(value, sorted));
    EXPECT_EQ(describe(from(to<T>(value))), describe(value));
    return write(object);
}

template <class T>
std::string error_of(const Value& value, ConvertOptions options = {}) {
    return conversion_error([&] { static_cast<void>(to<T>(value, options)); });
}

const Value code("abcd");
const Value bad_code("abc");

// ---- Representations -----------------------------------------------------------------------

TEST(Representations, AreWrittenAndReadInsteadOfTheType) {
    EXPECT_EQ(text_of(Code("abcd")), "\"abcd\"");
    EXPECT_EQ(text_of(Size(3, 4)), R"({"width":3,"height":4})");
    EXPECT_EQ(to<Size>(Value(Object{{"width", 5}, {"height", 6}})).height(), 6);
    EXPECT_EQ(text_of(std::vector<Code>{Code("abcd"), Code("efgh")}), R"(["abcd","efgh"])");
    EXPECT_EQ(text_of(std::map<std::string, Code>{{"a", Code("abcd")}}), R"({"a":"abcd"})");
    EXPECT_EQ(text_of(std::optional<Code>(Code("abcd"))), "\"abcd\"");
    EXPECT_EQ(text_of(std::optional<Code>()), "null");
    EXPECT_EQ(text_of(std::set<Code>{Code("efgh"), Code("abcd")}), R"(["abcd","efgh"])");
    EXPECT_EQ(text_of(Any{Value(Array{1, "a"})}), R"([1,"a"])");
}

TEST(Representations, OfUndefinedAreNull) {
    EXPECT_EQ(write(Any{}), "null");
    EXPECT_EQ(describe(from(Any{})), "JSON null null");
}

TEST(Representations, GiveTheirExceptionsTheLocation) {
    EXPECT_EQ(error_of<Code>(bad_code), "at the root: a code has 4 characters");
    EXPECT_EQ(error_of<Code>(Value(7)), "at the root: 7 is a number, not a string");
    EXPECT_EQ(error_of<std::vector<Code>>(Array{code, bad_code}), "at /1: a code has 4 characters");
    EXPECT_EQ(error_of<std::set<Code>>(Array{code, code}),
              "at /1: the set has this element already");
    EXPECT_EQ((error_of<std::map<std::string, Code>>(Object{{"a", bad_code}})),
              "at /a: a code has 4 characters");
    EXPECT_EQ(error_of<Parcel>(Object{{"other", bad_code}}), "at /other: a code has 4 characters");
    EXPECT_EQ(error_of<std::vector<Size>>(Array{Object{{"width", 101}, {"height", 1}}}),
              "at /0/width: 101 is not within 0 to 100");
    EXPECT_EQ(error_of<std::vector<Any>>(Array{1, true}), "at /1/inner/1: is too deep");
}

TEST(Representations, ThatCannotBeWrittenTellTheLocation) {
    const std::vector<Size> sizes{Size(1, 1), Size(-1, 1)};
    const std::string message = "at /1: the size is negative";
    EXPECT_EQ(conversion_error([&] { static_cast<void>(from(sizes)); }), message);
    EXPECT_EQ(conversion_error([&] { static_cast<void>(write(sizes)); }), message);
}

// ---- Smart pointers ------------------------------------------------------------------------

TEST(SmartPointers, AreNullOrWhatTheyPointTo) {
    EXPECT_EQ(text_of(std::shared_ptr<int>()), "null");
    EXPECT_EQ(text_of(std::make_shared<int>(7)), "7");
    EXPECT_EQ(text_of(std::make_unique<Code>("abcd")), "\"abcd\"");
    const auto read = to<std::unique_ptr<int>>(Value(Null()));
    EXPECT_EQ(read, nullptr);
    EXPECT_EQ(to<std::shared_ptr<int>>(Value(Object{}), "/a"), nullptr);
}

TEST(SmartPointers, MakeTrees) {
    Tree tree{"a", std::make_unique<Tree>(Tree{"b", nullptr, nullptr}), nullptr};
    EXPECT_EQ(text_of(tree), R"({"name":"a","left":{"name":"b"}})");
    tree.right = std::make_shared<Tree>(Tree{"c", nullptr, std::make_shared<Tree>()});
    EXPECT_EQ(text_of(tree),
              R"({"name":"a","left":{"name":"b"},"right":{"name":"c","right":{"name":""}}})");
    EXPECT_EQ(error_of<Tree>(Object{{"name", "a"}, {"left", Object{{"name", 1}}}}),
              "at /left/name: 1 is a number, not a string");
}

// ---- Variants ------------------------------------------------------------------------------

using Mixed = std::variant<std::monostate, int, std::string, std::vector<int>, std::vector<Code>>;

TEST(Variants, AreTheFirstAlternativeThatFits) {
    EXPECT_EQ(text_of(Mixed(7)), "7");
    EXPECT_EQ(text_of(Mixed(std::vector<int>{1, 2})), "[1,2]");
    EXPECT_EQ(text_of(Mixed()), "null");
    EXPECT_EQ(to<Mixed>(Value("a")).index(), 2U);
    EXPECT_EQ(to<Mixed>(Value(Null())).index(), 0U);
    EXPECT_EQ(to<Mixed>(Value(Array{})).index(), 3U);
    EXPECT_EQ(to<Mixed>(Value(Array{code})).index(), 4U);
}

TEST(Variants, TellWhyNoAlternativeFits) {
    EXPECT_EQ(error_of<Mixed>(Value(0.5)),
              "at the root: no alternative fits: 0.5 is a number, not null; 0.5 is not a whole "
              "number; 0.5 is a number, not a string; 0.5 is a number, not an array; 0.5 is a "
              "number, not an array");
    EXPECT_EQ((error_of<std::vector<std::variant<bool, std::vector<Code>>>>(
                  Array{true, Array{bad_code}})),
              "at /1: no alternative fits: [\"abc\"] is an array, not a boolean; at /1/0: a code "
              "has 4 characters");
}

TEST(Variants, WithoutAValueCannotBeWritten) {
    std::variant<int, Code> variant;
    EXPECT_THROW(variant.emplace<Code>("abc"), std::invalid_argument);
    ASSERT_TRUE(variant.valueless_by_exception());
    EXPECT_THROW(static_cast<void>(write(variant)), ConversionError);
    EXPECT_THROW(static_cast<void>(from(variant)), ConversionError);
}

TEST(TaggedVariants, AreToldApartByAMember) {
    EXPECT_EQ(text_of(Shape(Circle{2})), R"({"radius":2,"type":"circle"})");
    EXPECT_EQ(text_of(std::vector<Shape>{Square{3, "red"}, Square{}}),
              R"([{"colour":"red","side":3,"type":"square"},{"side":1,"type":"square"}])");
    const Value square = Object{{"type", "square"}, {"side", 4}};
    const ConvertOptions strict{ConvertOptions::UnknownMembers::error};
    EXPECT_EQ(std::get<Square>(to<Shape>(square, strict)).side, 4);
}

TEST(TaggedVariants, TellWhatIsWrong) {
    EXPECT_EQ(error_of<Shape>(Value(7)), "at the root: 7 is a number, not an object");
    EXPECT_EQ(error_of<Shape>(Object{{"side", 1}}),
              "at the root: the required member \"type\" is missing");
    EXPECT_EQ(error_of<Shape>(Object{{"type", "cube"}}),
              "at /type: the enumerator \"cube\" is unknown; known are \"circle\", \"square\"");
    EXPECT_EQ(error_of<std::vector<Shape>>(Array{Object{{"type", "circle"}, {"radius", "a"}}}),
              "at /0/radius: \"a\" is a string, not a number");
    EXPECT_EQ(error_of<Shape>(Object{{"type", "circle"}, {"radius", 1}, {"side", 1}},
                              {ConvertOptions::UnknownMembers::error}),
              "at /side: the member \"side\" is unknown; known are \"radius\"");
}

TEST(TaggedVariants, FailWithTheirLocationWhenTheyAreWritten) {
    const std::vector<Shape> shapes{Circle{std::numeric_limits<double>::infinity()}};
    EXPECT_EQ(test::write_error([&] { static_cast<void>(write(shapes)); }),
              "at /0/radius: Infinity is not a JSON number: the option not_finite allows it");
}

// ---- Further containers --------------------------------------------------------------------

TEST(Multisets, MayHaveAnElementTwice) {
    EXPECT_EQ(text_of(std::multiset<int>{2, 1, 2}), "[1,2,2]");
    EXPECT_EQ(text_of(std::unordered_multiset<int>{2, 2}), "[2,2]");
    EXPECT_EQ(text_of(std::unordered_set<std::string>{"a"}), R"(["a"])");
    EXPECT_EQ(error_of<std::unordered_set<int>>(Array{1, 1}),
              "at /1: the set has this element already");
}

TEST(Multimaps, HaveAnArrayForEachName) {
    EXPECT_EQ(text_of(std::multimap<std::string, int>{{"b", 3}, {"a", 1}, {"a", 2}}),
              R"({"a":[1,2],"b":[3]})");
    EXPECT_EQ(text_of(std::unordered_multimap<std::string, bool>{{"b", true}, {"a", false}}),
              R"({"a":[false],"b":[true]})");
    EXPECT_EQ((error_of<std::multimap<std::string, int>>(Object{{"a", Array{1, "x"}}})),
              "at /a/1: \"x\" is a string, not a number");
}

// ---- Strings -------------------------------------------------------------------------------

TEST(Paths, AreStrings) {
    EXPECT_EQ(text_of(std::filesystem::path("/tmp/a b")), "\"/tmp/a b\"");
    EXPECT_EQ(to<std::filesystem::path>(Value("a/b")), std::filesystem::path("a/b"));
    EXPECT_EQ(error_of<std::filesystem::path>(Value(7)),
              "at the root: 7 is a number, not a string");
}

TEST(StringViews, AreWritten) {
    const std::vector<std::string_view> views{"a", "\n"};
    EXPECT_EQ(write(views), R"(["a","\n"])");
    EXPECT_EQ(describe(from(views)), R"(JSON array ["a","\n"])");
}

// ---- All together --------------------------------------------------------------------------

TEST(Representations, StandWithinEachOther) {
    const std::string text =
        R"({"code":"abcd","other":"efgh","codes":["ijkl"],"by_name":{"a":"mnop"},"set":["abcd"],)"
        R"("label":[1],"shape":{"side":2,"type":"square"},"path":"p","many":{"a":[1,2]},)"
        R"("numbers":[1,1],"words":["w"]})";
    Parcel parcel;
    parcel.code = Code("abcd");
    parcel.other = Code("efgh");
    parcel.codes = {Code("ijkl")};
    parcel.by_name = {{"a", Code("mnop")}};
    parcel.set = {Code("abcd")};
    parcel.label = std::vector<int>{1};
    parcel.shape = Square{2, {}};
    parcel.path = "p";
    parcel.many = {{"a", 1}, {"a", 2}};
    parcel.numbers = {1, 1};
    parcel.words = {"w"};
    EXPECT_EQ(text_of(parcel), text);
}

// ---- Checks --------------------------------------------------------------------------------

TEST(Checks, AcceptWhatTheyAllow) {
    EXPECT_EQ(to<Checked>(Object{{"port", 1}, {"share", 0}, {"even", "ab"}}).port, 1);
    EXPECT_EQ(to<Checked>(Object{{"port", 65535}, {"share", 1}}).share, 1.0);
    EXPECT_EQ(to<Checked>(Object{{"port", 1}, {"share", Null()}}).share, std::nullopt);
    EXPECT_EQ(write(to<Checked>(Object{{"port", 80}})), R"({"port":80,"even":"","big":7})");
}

TEST(Checks, SayWhatTheyRefuse) {
    EXPECT_EQ(error_of<Checked>(Object{{"port", 0}}), "at /port: 0 is not within 1 to 65535");
    EXPECT_EQ(error_of<Checked>(Object{{"port", 65536}}),
              "at /port: 65536 is not within 1 to 65535");
    EXPECT_EQ(error_of<Checked>(Object{{"port", 1}, {"share", 1.5}}),
              "at /share: 1.5 is not within 0 to 1");
    EXPECT_EQ(error_of<Checked>(Object{{"port", 1}, {"share", std::nan("")}}),
              "at /share: \"NaN\" is not within 0 to 1");
    EXPECT_EQ(error_of<Checked>(Object{{"port", 1}, {"even", "a"}}), "at /even: the length is odd");
    EXPECT_EQ(error_of<Checked>(Object{{"port", 1}, {"even", "throw"}}),
              "at /even: the check has thrown");
    EXPECT_EQ(error_of<Checked>(Object{{"port", "a"}}),
              "at /port: \"a\" is a string, not a number");
    EXPECT_EQ(error_of<Checked>(Object{}), "at the root: the required member \"port\" is missing");
}

} // namespace
} // namespace foundation::json
