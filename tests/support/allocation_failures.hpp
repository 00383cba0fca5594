/// @file
/// What happens when memory runs out, tested for every single allocation of an operation.
///
///     struct Operands { Value target; Value source; };
///
///     const std::size_t failures = fail_each_allocation(
///         [] { return Operands{1.5, "a text too long for a string's own storage"}; },
///         [](Operands& o) { o.target = o.source; },
///         [](const Operands& o) { EXPECT_EQ(describe(o.target), "JSON number 1.5"); });
///     EXPECT_EQ(failures, 1u);
///
/// The operation runs again and again, each time on new operands, while the first, the second, the
/// third ... of its allocations fails, until it gets through without a failure; all of that twice,
/// first with a single allocation failing, then with all that follow failing too. After each
/// failure
///  - the operands must be in the state that the caller expects,
///  - the operation must succeed when it is tried once more,
///  - and once the operands are gone, nothing may be left allocated.
///
/// Expectations belong into the checks, not into the operation: they allocate as well.
///
/// Only the programs whose sources include allocation_failures.cpp can use this: it replaces the
/// allocation functions. All of it is for tests with a single thread.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_ALLOCATION_FAILURES_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_ALLOCATION_FAILURES_HPP

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>
#include <utility>

namespace foundation::json::test {

/// How many allocations have been made, and how many of them not released yet.
std::size_t total_allocations() noexcept;
std::size_t live_allocations() noexcept;

/// How many bytes are in use that were allocated, and how many were at most since the last restart.
/// Whatever an allocation got beyond what it had asked for counts.
std::size_t live_bytes() noexcept;
std::size_t peak_bytes() noexcept;
void restart_peak() noexcept;

/// How many bytes an operation has in use at most, besides those that were in use before.
template <class Operation>
std::size_t peak_bytes_of(Operation&& operation) {
    const std::size_t before = live_bytes();
    restart_peak();
    std::forward<Operation>(operation)();
    return peak_bytes() - before;
}

/// How many allocations an operation makes.
template <class Operation>
std::size_t allocations_of(Operation&& operation) {
    const std::size_t before = total_allocations();
    std::forward<Operation>(operation)();
    return total_allocations() - before;
}

enum class Failing {
    once,         ///< only one allocation fails
    from_then_on, ///< it and all that follow
};

/// While it lives, the n-th allocation from its construction on fails.
class FailingAllocation {
public:
    FailingAllocation(std::size_t n, Failing mode) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether an allocation has failed.
    bool happened() const noexcept;
};

/// While it lives, a function is called once, before the first allocation of at least so many
/// bytes.
class WatchedAllocation {
public:
    WatchedAllocation(std::size_t size, void (*function)()) noexcept;
    ~WatchedAllocation();
    WatchedAllocation(const WatchedAllocation&) = delete;
    WatchedAllocation& operator=(const WatchedAllocation&) = delete;
};

namespace detail {

/// Whether the standard library releases all memory after a failure. In libc++ 14, a vector that
/// fails to copy an element while it is constructed keeps its storage.
#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 15000
constexpr bool standard_library_leaks = true;
#else
constexpr bool standard_library_leaks = false;
#endif

/// More allocations than this are expected of no operation.
constexpr std::size_t most_failures = 10000;

enum class Outcome {
    succeeded, ///< no allocation failed
    failed,    ///< std::bad_alloc was thrown
    absorbed,  ///< an allocation failed, and yet nothing was thrown
};

/// How many expectations have failed in the current test.
inline int failed_expectations() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

/// Runs the operation while its n-th allocation fails.
template <class Operation, class Operands>
Outcome attempt(Operation& operation, Operands& operands, std::size_t n, Failing mode) {
    const FailingAllocation failing(n, mode);
    try {
        operation(operands);
        return failing.happened() ? Outcome::absorbed : Outcome::succeeded;
    } catch (const std::bad_alloc&) {
        return Outcome::failed;
    }
}

/// An attempt on new operands with everything that is expected of it.
template <class MakeOperands, class Operation, class CheckAfterFailure, class CheckAfterSuccess>
Outcome attempt_and_check(MakeOperands& make_operands, Operation& operation,
                          CheckAfterFailure& check_after_failure,
                          CheckAfterSuccess& check_after_success, std::size_t n, Failing mode) {
    const testing::ScopedTrace trace(
        __FILE__, __LINE__,
        "allocation " + std::to_string(n) +
            (mode == Failing::once ? " fails" : " and all after it fail"));
    const int failed_before = failed_expectations();
    const std::size_t live_before = live_allocations();
    Outcome outcome = Outcome::failed;
    {
        auto operands = make_operands();
        outcome = attempt(operation, operands, n, mode);
        if (outcome == Outcome::failed) {
            check_after_failure(operands);
            EXPECT_NO_THROW(operation(operands)) << "when tried again";
        }
        check_after_success(operands, outcome);
    }
    // An expectation that has failed is on record, in memory that stays allocated.
    if (failed_expectations() == failed_before &&
        !(standard_library_leaks && outcome != Outcome::succeeded)) {
        EXPECT_EQ(live_allocations(), live_before) << "something was leaked, or released twice";
    }
    return outcome;
}

template <class MakeOperands, class Operation, class CheckAfterFailure, class CheckAfterSuccess>
std::size_t attempt_all(MakeOperands& make_operands, Operation& operation,
                        CheckAfterFailure& check_after_failure,
                        CheckAfterSuccess& check_after_success) {
    {
        // What the run-time library allocates once and keeps is no leak, and would fail only once.
        auto operands = make_operands();
        operation(operands);
    }
    const int failed_before = failed_expectations();
    std::size_t failures = 0;
    for (const Failing mode : {Failing::once, Failing::from_then_on}) {
        failures = 0;
        while (attempt_and_check(make_operands, operation, check_after_failure, check_after_success,
                                 failures + 1, mode) != Outcome::succeeded) {
            ++failures;
            EXPECT_LT(failures, most_failures) << "the operation never gets through";
            if (failed_expectations() != failed_before) {
                return failures; // once is enough
            }
        }
    }
    return failures;
}

} // namespace detail

/// Runs `operation(operands)` with each of its allocations failing in turn; see above.
///
/// @param make_operands        returns new operands, of any one type
/// @param operation            takes the operands by reference; must throw std::bad_alloc whenever
///                             an allocation fails
/// @param check_after_failure  takes the operands; expects the state promised after a failure
/// @return how many allocations could fail; zero means that nothing was tried out
template <class MakeOperands, class Operation, class CheckAfterFailure>
[[nodiscard]] std::size_t fail_each_allocation(MakeOperands make_operands, Operation operation,
                                               CheckAfterFailure check_after_failure) {
    const auto expect_nothing_absorbed = [](auto&, detail::Outcome outcome) {
        EXPECT_NE(outcome, detail::Outcome::absorbed) << "the failure went unnoticed";
    };
    return detail::attempt_all(make_operands, operation, check_after_failure,
                               expect_nothing_absorbed);
}

/// As above, and checks what the operation achieves. It may then do without an allocation that
/// fails, as long as it achieves the same.
///
/// @param check_after_success  takes the operands; expects the state after the operation returned,
///                             be it at once, in spite of a failure, or when tried again
template <class MakeOperands, class Operation, class CheckAfterFailure, class CheckAfterSuccess>
[[nodiscard]] std::size_t fail_each_allocation(MakeOperands make_operands, Operation operation,
                                               CheckAfterFailure check_after_failure,
                                               CheckAfterSuccess check_after_success) {
    const auto check = [&](auto& operands, detail::Outcome) { check_after_success(operands); };
    return detail::attempt_all(make_operands, operation, check_after_failure, check);
}

} // namespace foundation::json::test

#endif
