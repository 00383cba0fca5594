// A missing member is Undefined before static objects are constructed and after they are destroyed.
#include "support/describe.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace foundation::json {
namespace {

std::string kind_of_missing_member() {
    const Value object(std::map<std::string, Value>{{"a", 1}});
    return test::kind_name(object["missing"]);
}

bool report_at_exit = false;

/// Looks up a missing member both before the library's own static objects are constructed and after
/// they are destroyed.
struct EarliestAndLatest {
    EarliestAndLatest() : kind_at_start(kind_of_missing_member()) {}

    ~EarliestAndLatest() {
        if (report_at_exit) {
            std::fprintf(stderr, "a missing member is %s\n", kind_of_missing_member().c_str());
        }
    }

    std::string kind_at_start;
};

[[gnu::init_priority(101)]] EarliestAndLatest earliest_and_latest;

TEST(UndefinedConstantLifetime, IsThereBeforeStaticObjectsAreConstructed) {
    EXPECT_EQ(earliest_and_latest.kind_at_start, "undefined");
}

[[noreturn]] void exit_and_report() {
    report_at_exit = true;
    std::exit(0);
}

TEST(UndefinedConstantLifetime, IsThereAfterStaticObjectsAreDestroyed) {
    EXPECT_EXIT(exit_and_report(), testing::ExitedWithCode(0), "^a missing member is undefined\n$");
}

} // namespace
} // namespace foundation::json
