/// @file
/// The rounding direction of floating-point arithmetic, changed for a while.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_SCOPED_ROUNDING_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_SCOPED_ROUNDING_HPP

#include <cfenv>

namespace foundation::json::test {

/// Sets the direction in which the C library rounds, until destroyed.
class ScopedRounding {
public:
    explicit ScopedRounding(int direction)
        : previous_(std::fegetround()), succeeded_(std::fesetround(direction) == 0) {}
    ScopedRounding(const ScopedRounding&) = delete;
    ScopedRounding& operator=(const ScopedRounding&) = delete;
    ~ScopedRounding() { std::fesetround(previous_); }

    bool succeeded() const { return succeeded_; }

private:
    int previous_;
    bool succeeded_;
};

} // namespace foundation::json::test

#endif
