// Tests of the harness itself: it finds wrong states, leaks and unnoticed failures.
#include "support/allocation_failures.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace foundation::json::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const std::string long_text = "a text too long for a string's own storage";

struct Texts {
    std::string one;
    std::string two;
};

Texts no_texts() {
    return {};
}

void expect_nothing(const Texts&) {}

// The tests of the harness call the allocation functions directly, since compilers may leave out
// the allocations of new expressions and containers that nothing uses.
TEST(AllocationHarness, CountsEveryFormOfAllocation) {
    constexpr std::align_val_t wide{64};
    const std::size_t live_before = live_allocations();
    const auto allocations = allocations_of([] {
        ::operator delete(::operator new(3));
        ::operator delete[](::operator new[](3));
        ::operator delete(::operator new(3, std::nothrow), std::nothrow);
        ::operator delete[](::operator new[](3, std::nothrow), std::nothrow);
        ::operator delete(::operator new(3, wide), wide);
        ::operator delete[](::operator new[](3, wide), wide);
        ::operator delete(::operator new(3, wide, std::nothrow), wide, std::nothrow);
        ::operator delete[](::operator new[](3, wide, std::nothrow), wide, std::nothrow);
    });
    EXPECT_EQ(allocations, 8u);
    EXPECT_EQ(live_allocations(), live_before);
}

TEST(AllocationHarness, KnowsHowManyBytesAreInUseAndWereAtMost) {
    const std::size_t before = live_bytes();
    const std::size_t peak = peak_bytes_of([&] {
        ::operator delete(::operator new(30000));
        void* const kept = ::operator new(10000);
        EXPECT_GE(live_bytes() - before, 10000u);
        EXPECT_LT(live_bytes() - before, 11000u);
        ::operator delete(kept);
    });
    EXPECT_GE(peak, 30000u);
    EXPECT_LT(peak, 31000u);
    EXPECT_EQ(live_bytes(), before);
}

TEST(AllocationHarness, FailsOneAllocation) {
    const auto which_fail = [](Failing mode) {
        std::array<bool, 3> failed{};
        const FailingAllocation failing(2, mode);
        for (bool& fails : failed) {
            try {
                ::operator delete(::operator new(1));
            } catch (const std::bad_alloc&) {
                fails = true;
            }
        }
        return failed;
    };
    EXPECT_THAT(which_fail(Failing::once), ElementsAre(false, true, false));
    EXPECT_THAT(which_fail(Failing::from_then_on), ElementsAre(false, true, true));
    ::operator delete(::operator new(1));
}

TEST(AllocationHarness, ChecksEachFailureInBothModesAndEverySuccess) {
    std::vector<std::size_t> after_failure;
    std::vector<std::size_t> after_success;
    after_failure.reserve(100);
    after_success.reserve(100);
    const std::size_t failures = fail_each_allocation(
        no_texts,
        [](Texts& t) {
            t.one = long_text;
            t.two = long_text;
        },
        [&](const Texts& t) { after_failure.push_back(t.one.size() + t.two.size()); },
        [&](const Texts& t) { after_success.push_back(t.one.size() + t.two.size()); });
    EXPECT_EQ(failures, 2u);
    const std::size_t size = long_text.size();
    EXPECT_EQ(after_failure, (std::vector<std::size_t>{0, size, 0, size}));
    EXPECT_EQ(after_success, std::vector<std::size_t>(6, 2 * size));
}

/// The messages of all expectations that fail in a body; they do not fail the test.
template <class Body>
std::string reported_by(Body body) {
    testing::TestPartResultArray reports;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &reports);
        body();
    }
    std::string messages;
    for (int i = 0; i != reports.size(); ++i) {
        messages += reports.GetTestPartResult(i).message();
        messages += '\n';
    }
    return messages;
}

TEST(AllocationHarness, ReportsAWrongState) {
    const std::string report = reported_by([] {
        static_cast<void>(fail_each_allocation(
            no_texts,
            [](Texts& t) {
                t.one = long_text;
                t.two = long_text;
            },
            [](const Texts& t) { EXPECT_EQ(t.one, "") << "a wrong state"; }));
    });
    EXPECT_THAT(report, HasSubstr("a wrong state"));
    EXPECT_THAT(report, HasSubstr("allocation 2 fails"));
    EXPECT_THAT(report, Not(HasSubstr("allocation 1 fails")));
}

TEST(AllocationHarness, ReportsALeak) {
    if (detail::standard_library_leaks) {
        GTEST_SKIP() << "the standard library leaks by itself";
    }
    std::vector<std::unique_ptr<int>> leaked;
    leaked.reserve(100);
    const std::string report = reported_by([&] {
        static_cast<void>(fail_each_allocation(
            no_texts,
            [&](Texts& t) {
                leaked.push_back(std::make_unique<int>(1));
                t.one = long_text;
                leaked.pop_back();
            },
            expect_nothing));
    });
    EXPECT_THAT(report, HasSubstr("something was leaked"));
    EXPECT_THAT(report, HasSubstr("allocation 2 fails"));
    EXPECT_THAT(report, Not(HasSubstr("allocation 1 fails")));
}

TEST(AllocationHarness, ReportsAFailureThatGoesUnnoticed) {
    const auto absorb = [](Texts& t) {
        try {
            t.one = long_text;
        } catch (const std::bad_alloc&) {
        }
    };
    const std::string unchecked = reported_by(
        [&] { static_cast<void>(fail_each_allocation(no_texts, absorb, expect_nothing)); });
    EXPECT_THAT(unchecked, HasSubstr("the failure went unnoticed"));

    const std::string checked = reported_by([&] {
        static_cast<void>(
            fail_each_allocation(no_texts, absorb, expect_nothing, [](const Texts& t) {
                EXPECT_EQ(t.one, long_text) << "not achieved";
            }));
    });
    EXPECT_THAT(checked, HasSubstr("not achieved"));
}

TEST(AllocationHarness, ReportsAnOperationThatFailsAgain) {
    struct Fragile {
        bool broken = false;
    };
    const std::string report = reported_by([] {
        static_cast<void>(fail_each_allocation([] { return Fragile(); },
                                               [](Fragile& f) {
                                                   if (f.broken) {
                                                       throw std::runtime_error("broken");
                                                   }
                                                   try {
                                                       ::operator delete(::operator new(1));
                                                   } catch (const std::bad_alloc&) {
                                                       f.broken = true;
                                                       throw;
                                                   }
                                               },
                                               [](const Fragile&) {}));
    });
    EXPECT_THAT(report, HasSubstr("when tried again"));
}

} // namespace
} // namespace foundation::json::test
