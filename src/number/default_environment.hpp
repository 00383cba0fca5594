/// @file
/// The floating-point environment that programs start with, but for the caller's rounding
/// direction, set for a while.
#ifndef FOUNDATION_JSON_SRC_NUMBER_DEFAULT_ENVIRONMENT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_DEFAULT_ENVIRONMENT_HPP

#include <cfenv>

namespace foundation::json::detail {

/// Sets the default floating-point environment, but keeps the rounding direction of
/// std::fegetround(). The destructor restores the caller's environment: flags, traps, and other
/// settings of the machine, such as flushing subnormal numbers to zero.
///
/// Compilers may move arithmetic across both changes. So put the computation into a function that
/// is not inlined and takes its numbers by reference.
class DefaultEnvironmentButRounding {
public:
    DefaultEnvironmentButRounding() noexcept {
        const int direction = std::fegetround();
        std::fegetenv(&callers_);
        std::fesetenv(FE_DFL_ENV);
        std::fesetround(direction);
    }
    DefaultEnvironmentButRounding(const DefaultEnvironmentButRounding&) = delete;
    DefaultEnvironmentButRounding& operator=(const DefaultEnvironmentButRounding&) = delete;
    ~DefaultEnvironmentButRounding() { std::fesetenv(&callers_); }

private:
    std::fenv_t callers_;
};

} // namespace foundation::json::detail

#endif
