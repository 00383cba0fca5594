/// @file
/// The floating-point environment that programs start with, set for a while.
#ifndef FOUNDATION_JSON_SRC_NUMBER_DEFAULT_ENVIRONMENT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_DEFAULT_ENVIRONMENT_HPP

#include <cfenv>

namespace foundation::json::detail {

/// Sets the default floating-point environment: subnormal numbers are not flushed to zero, and
/// nothing traps. The destructor restores the caller's environment with its flags.
///
/// Compilers may move arithmetic across both changes. So put the computation into a function that
/// is not inlined and takes its numbers by reference.
class DefaultEnvironment {
public:
    /// @param rounding  the rounding direction to set; that of std::fegetround() keeps the caller's
    explicit DefaultEnvironment(int rounding = FE_TONEAREST) noexcept {
        std::fegetenv(&callers_);
        std::fesetenv(FE_DFL_ENV);
        if (rounding != FE_TONEAREST) {
            std::fesetround(rounding);
        }
    }
    DefaultEnvironment(const DefaultEnvironment&) = delete;
    DefaultEnvironment& operator=(const DefaultEnvironment&) = delete;
    ~DefaultEnvironment() { std::fesetenv(&callers_); }

private:
    std::fenv_t callers_;
};

} // namespace foundation::json::detail

#endif
