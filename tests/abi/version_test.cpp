// The version in the headers is that of the project.
#include <foundation/json/version.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

#if FOUNDATION_JSON_VERSION < 10000
#error "the version cannot be compared by the preprocessor"
#endif

TEST(Version, MacrosAgree) {
    EXPECT_EQ(FOUNDATION_JSON_VERSION, 10100);
    EXPECT_EQ(FOUNDATION_JSON_VERSION_MAJOR, 1);
    EXPECT_EQ(FOUNDATION_JSON_VERSION_MINOR, 1);
    EXPECT_EQ(FOUNDATION_JSON_VERSION_PATCH, 0);
    EXPECT_STREQ(FOUNDATION_JSON_VERSION_STRING, "1.1.0");
}

TEST(Version, IsThatOfTheBuild) {
    EXPECT_STREQ(FOUNDATION_JSON_VERSION_STRING, FOUNDATION_JSON_PROJECT_VERSION);
    EXPECT_EQ(std::to_string(FOUNDATION_JSON_VERSION_MAJOR) + '.' +
                  std::to_string(FOUNDATION_JSON_VERSION_MINOR) + '.' +
                  std::to_string(FOUNDATION_JSON_VERSION_PATCH),
              FOUNDATION_JSON_PROJECT_VERSION);
}

} // namespace
