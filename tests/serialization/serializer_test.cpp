/// @file
/// The Serializer's layout, its reuse, and that it writes nothing around the text.
#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {
namespace {

using Array = std::vector<Value>;
using Object = std::map<std::string, Value>;

const char compact_text[] = R"({"a":[1,true]})";
const char pretty_text[] = "{\n"
                           "    \"a\":[\n"
                           "        1,\n"
                           "        true\n"
                           "    ]\n"
                           "}";

Value sample() {
    return Object{{"a", Array{1, true}}};
}

std::string written_by(Serializer& serializer, const Value& value) {
    std::ostringstream stream;
    serializer.write(stream, value);
    return stream.str();
}

TEST(Serializer, WritesCompactTextUnlessToldOtherwise) {
    Serializer serializer;
    EXPECT_FALSE(serializer.pretty_print());
    EXPECT_EQ(written_by(serializer, sample()), compact_text);
}

TEST(Serializer, WritesPrettyTextOnceThatIsSet) {
    Serializer serializer;
    serializer.pretty_print(true);
    EXPECT_TRUE(serializer.pretty_print());
    EXPECT_EQ(written_by(serializer, sample()), pretty_text);
}

TEST(Serializer, KeepsItsLayoutForLaterWrites) {
    Serializer serializer;
    serializer.pretty_print(true);
    EXPECT_EQ(written_by(serializer, sample()), pretty_text);
    EXPECT_EQ(written_by(serializer, sample()), pretty_text);
    EXPECT_TRUE(serializer.pretty_print());
}

TEST(Serializer, ReturnsToCompactLayout) {
    Serializer serializer;
    serializer.pretty_print(true);
    serializer.pretty_print(false);
    EXPECT_FALSE(serializer.pretty_print());
    EXPECT_EQ(written_by(serializer, sample()), compact_text);
}

TEST(Serializer, SettingTheSameLayoutTwiceDoesNotToggleIt) {
    Serializer serializer;
    serializer.pretty_print(true);
    serializer.pretty_print(true);
    EXPECT_TRUE(serializer.pretty_print());
}

TEST(Serializer, EachHasALayoutOfItsOwn) {
    Serializer pretty;
    Serializer compact;
    pretty.pretty_print(true);
    EXPECT_EQ(written_by(compact, sample()), compact_text);
    EXPECT_EQ(written_by(pretty, sample()), pretty_text);
}

TEST(Serializer, ACopyHasTheSameLayoutAndIsIndependent) {
    Serializer original;
    original.pretty_print(true);
    Serializer copy = original;
    EXPECT_TRUE(copy.pretty_print());
    copy.pretty_print(false);
    EXPECT_TRUE(original.pretty_print());
    original = copy;
    EXPECT_FALSE(original.pretty_print());
}

TEST(Serializer, TheFreeFunctionsIgnoreTheLayoutOfSerializers) {
    Serializer serializer;
    serializer.pretty_print(true);
    EXPECT_EQ(serialize(sample()), compact_text);
    serializer.pretty_print(false);
    EXPECT_EQ(pretty_print(sample()), pretty_text);
}

TEST(Serializer, WritesNothingBeforeOrAfterTheText) {
    for (const bool pretty : {false, true}) {
        Serializer serializer;
        serializer.pretty_print(pretty);
        std::ostringstream stream;
        stream << "<";
        serializer.write(stream, sample());
        stream << ">";
        const std::string text = pretty ? pretty_text : compact_text;
        EXPECT_EQ(stream.str(), "<" + text + ">");
    }
}

TEST(Serializer, WritesAScalarWithoutALineEndInEitherLayout) {
    for (const bool pretty : {false, true}) {
        Serializer serializer;
        serializer.pretty_print(pretty);
        EXPECT_EQ(written_by(serializer, "x"), "\"x\"");
        EXPECT_EQ(written_by(serializer, Undefined()), "");
    }
}

TEST(Serializer, WritesAnyNumberOfValuesOntoOneStream) {
    Serializer serializer;
    std::ostringstream stream;
    serializer.write(stream, 1);
    serializer.write(stream, "x");
    serializer.pretty_print(true);
    serializer.write(stream, Array{Null()});
    serializer.write(stream, Array{});
    EXPECT_EQ(stream.str(), "1\"x\"[\n    null\n][]");
}

TEST(Serializer, StartsEveryWriteAtTheLeftMargin) {
    Serializer serializer;
    serializer.pretty_print(true);
    EXPECT_EQ(written_by(serializer, Array{Value(Array{})}), "[\n    [    ]\n]");
    EXPECT_EQ(written_by(serializer, Array{}), "[]");
}

TEST(Serializer, WritesOntoSeveralStreams) {
    Serializer serializer;
    std::ostringstream first;
    std::ostringstream second;
    serializer.write(first, 1);
    serializer.write(second, 2);
    serializer.write(first, 3);
    EXPECT_EQ(first.str(), "13");
    EXPECT_EQ(second.str(), "2");
}

TEST(Serializer, WritesAtThePositionOfTheStream) {
    std::stringstream stream("0123456789");
    stream.seekp(3);
    Serializer().write(stream, Array{1});
    EXPECT_EQ(stream.str(), "012[1]6789");
}

TEST(Serializer, OnlyReadsTheValue) {
    const Value value = sample();
    const Value& child = value["a"][1];
    static_cast<void>(serialize(value));
    static_cast<void>(pretty_print(value));
    EXPECT_EQ(value, sample());
    EXPECT_EQ(&value["a"][1], &child);
    static_assert(std::is_same_v<decltype(serialize(std::declval<const Value&>())), std::string>);
    static_assert(
        std::is_same_v<decltype(pretty_print(std::declval<const Value&>())), std::string>);
}

/// Switches a serializer to the other layout as soon as it writes anything.
class Meddler : public std::streambuf {
public:
    explicit Meddler(Serializer& serializer, bool pretty)
        : serializer_(serializer), pretty_(pretty) {}

    const std::string& text() const { return text_; }

protected:
    int_type overflow(int_type byte) override {
        serializer_.pretty_print(pretty_);
        text_ += traits_type::to_char_type(byte);
        return byte;
    }

private:
    Serializer& serializer_;
    bool pretty_;
    std::string text_;
};

TEST(Serializer, AWriteInProgressKeepsTheLayoutItStartedWith) {
    for (const bool pretty : {false, true}) {
        Serializer serializer;
        serializer.pretty_print(pretty);
        Meddler buffer(serializer, !pretty);
        std::ostream stream(&buffer);
        serializer.write(stream, sample());
        EXPECT_EQ(buffer.text(), pretty ? pretty_text : compact_text);
        EXPECT_EQ(serializer.pretty_print(), !pretty);
    }
}

} // namespace
} // namespace foundation::json
