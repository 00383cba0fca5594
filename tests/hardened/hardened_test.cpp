// A hardened build stops at an index out of range and at a null text, and says why. Otherwise it is
// like any other.
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::test {
namespace {

Value three() {
    return std::vector<Value>{1, "two", Null()};
}

/// A null pointer that the compiler does not recognize.
const char* null_text() {
    static const char* volatile text = nullptr;
    return text;
}

TEST(HardenedDeathTest, StopsAtAnIndexOutOfRange) {
    Value array = three();
    const Value& constant = array;
    const char* const at_three = "foundation::json: index 3 is out of range of 3 elements";
    const char* const at_minus_one = "foundation::json: index -1 is out of range of 3 elements";
    EXPECT_DEATH(array[3], at_three);
    EXPECT_DEATH(array[std::size_t{3}], at_three);
    EXPECT_DEATH(array[Value(3)], at_three);
    EXPECT_DEATH(static_cast<void>(constant[3]), at_three);
    EXPECT_DEATH(static_cast<void>(constant[std::size_t{3}]), at_three);
    EXPECT_DEATH(static_cast<void>(constant[Value(3.9)]), at_three);
    EXPECT_DEATH(array[-1], at_minus_one);
    EXPECT_DEATH(static_cast<void>(constant[-1]), at_minus_one);
    EXPECT_DEATH(array[std::numeric_limits<std::size_t>::max()], at_minus_one);
    EXPECT_DEATH(array[Value(-1)], at_minus_one);
    EXPECT_DEATH(Value(std::vector<Value>{})[0], "index 0 is out of range of 0 elements");
    EXPECT_DEATH(array[1000000], "index 1000000 is out of range of 3 elements");
}

TEST(HardenedDeathTest, StopsAtANullString) {
    Value object(std::map<std::string, Value>{{"a", 1}});
    const char* const message = "foundation::json: a string is a null pointer";
    EXPECT_DEATH(static_cast<void>(Value(null_text())), message);
    EXPECT_DEATH(object = null_text(), message);
    EXPECT_DEATH(object[null_text()], message);
    EXPECT_DEATH(static_cast<void>(std::as_const(object)[null_text()]), message);
}

TEST(Hardened, ChangesNothingForCorrectCalls) {
    Value array = three();
    EXPECT_EQ(int(array[0]), 1);
    EXPECT_EQ(array[1], Value("two"));
    EXPECT_EQ(array[std::size_t{2}], Value(Null()));
    EXPECT_EQ(std::as_const(array)[Value(2.9)], Value(Null()));
    EXPECT_EQ(&array[Value(-0.5)], &array[0]);
    Value object(std::map<std::string, Value>{{"a", 1}, {"", 2}});
    EXPECT_EQ(int(object["a"]), 1);
    EXPECT_EQ(int(object[""]), 2);
    EXPECT_THROW(object[5], std::runtime_error) << "the kind comes before the index";
    EXPECT_THROW(array["a"], std::runtime_error);
    EXPECT_EQ(Value(""), Value(std::string()));
}

} // namespace
} // namespace foundation::json::test
