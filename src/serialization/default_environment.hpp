/// @file
/// The floating-point environment that programs start with, set for a while.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_DEFAULT_ENVIRONMENT_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_DEFAULT_ENVIRONMENT_HPP

#include <cfenv>

namespace foundation::json::detail {

/// Sets the environment that a program starts with, but for the rounding direction, which stays
/// what std::fegetround() says. When destroyed, restores the caller's: its flags, its traps, and
/// what else the machine has, such as a treatment of subnormal numbers as zero.
///
/// Compilers move arithmetic across the two changes. What is to be computed in between belongs into
/// a function that is not inlined and takes its numbers by reference.
class DefaultEnvironment {
public:
    DefaultEnvironment() noexcept {
        const int direction = std::fegetround();
        std::fegetenv(&callers_);
        std::fesetenv(FE_DFL_ENV);
        std::fesetround(direction);
    }
    DefaultEnvironment(const DefaultEnvironment&) = delete;
    DefaultEnvironment& operator=(const DefaultEnvironment&) = delete;
    ~DefaultEnvironment() { std::fesetenv(&callers_); }

private:
    std::fenv_t callers_;
};

} // namespace foundation::json::detail

#endif
