// Running out of memory while a value is converted or misused: the value stays as it was, and the
// lack of memory takes the place of the error that would have been reported.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/values_of_each_kind.hpp"

#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>

namespace foundation::json::test {
namespace {

TEST(ConversionOutOfMemory, FromStringToIntLeavesTheStringAsItWas) {
    struct Operands {
        Value text;
        std::optional<int> number;
    };
    const std::string description = "JSON string \"   -12 and more text than fits in place\"";
    const std::size_t failures = fail_each_allocation(
        [] {
            return Operands{"   -12 and more text than fits in place", std::nullopt};
        },
        [](Operands& o) { o.number = static_cast<int>(o.text); },
        [&](const Operands& o) {
            EXPECT_FALSE(o.number.has_value());
            EXPECT_EQ(describe(o.text), description);
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.number, -12);
            EXPECT_EQ(describe(o.text), description);
        });
    EXPECT_GT(failures, 0u);
}

/// Misuses the value, with every allocation failing in turn. Expects std::bad_alloc or the error,
/// and nothing else.
template <class Misuse>
std::size_t failures_of(const Sample& sample, Misuse misuse) {
    struct Operands {
        Value value;
        bool rejected;
    };
    return fail_each_allocation(
        [&] {
            return Operands{sample.value, false};
        },
        [&](Operands& o) {
            try {
                misuse(o.value);
            } catch (const std::runtime_error&) {
                o.rejected = true;
            }
        },
        [&](const Operands& o) {
            EXPECT_FALSE(o.rejected);
            EXPECT_EQ(describe(o.value), sample.description);
        },
        [&](const Operands& o) {
            EXPECT_TRUE(o.rejected);
            EXPECT_EQ(describe(o.value), sample.description);
        });
}

TEST(MisuseOutOfMemory, ChangesNothing) {
    for (const Sample& sample : one_of_each_kind()) {
        SCOPED_TRACE(sample.kind);
        if (sample.kind != "JSON boolean") {
            EXPECT_GT(
                failures_of(sample, [](Value& v) { static_cast<void>(static_cast<bool>(v)); }), 0u);
        }
        if (sample.kind != "JSON array") {
            EXPECT_GT(failures_of(sample, [](Value& v) { v[0]; }), 0u);
            EXPECT_GT(failures_of(sample, [](Value& v) { static_cast<void>(v.length()); }), 0u);
            EXPECT_GT(failures_of(sample, [](Value& v) { v.push("x"); }), 0u);
        }
        if (sample.kind != "JSON object") {
            EXPECT_GT(failures_of(sample, [](Value& v) { v["x"]; }), 0u);
        }
        if (sample.is_container() || sample.kind == "int64") {
            EXPECT_GT(failures_of(sample, [](Value& v) { static_cast<void>(static_cast<int>(v)); }),
                      0u);
        }
    }
}

} // namespace
} // namespace foundation::json::test
