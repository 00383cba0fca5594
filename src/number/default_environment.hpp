/// @file
/// The floating-point environment that programs start with, set for a while.
#ifndef FOUNDATION_JSON_SRC_NUMBER_DEFAULT_ENVIRONMENT_HPP
#define FOUNDATION_JSON_SRC_NUMBER_DEFAULT_ENVIRONMENT_HPP

#include "system/compiler.hpp"

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
#ifdef FOUNDATION_JSON_MXCSR_APART
        callers_register_ = _mm_getcsr();
#endif
        std::fesetenv(FE_DFL_ENV);
#ifdef FOUNDATION_JSON_MXCSR_APART
        _mm_setcsr(0x1F80); // as programs start
#endif
        if (rounding != FE_TONEAREST) {
            std::fesetround(rounding);
        }
    }
    DefaultEnvironment(const DefaultEnvironment&) = delete;
    DefaultEnvironment& operator=(const DefaultEnvironment&) = delete;
    ~DefaultEnvironment() {
        std::fesetenv(&callers_);
#ifdef FOUNDATION_JSON_MXCSR_APART
        _mm_setcsr(callers_register_);
#endif
    }

private:
    std::fenv_t callers_;
#ifdef FOUNDATION_JSON_MXCSR_APART
    unsigned callers_register_;
#endif
};

/// Has arithmetic of doubles round to 53 bits. The x87 unit of old processors, which computes with
/// 64 bits, would round a second time when it stores the result. All else always does so.
class DoublePrecision {
#if defined(FOUNDATION_JSON_X87)
public:
    DoublePrecision() noexcept {
        asm volatile("fnstcw %0" : "=m"(callers_)); // NOLINT(hicpp-no-assembler)
        set((callers_ & ~precision_mask) | precision_of_double);
    }
    DoublePrecision(const DoublePrecision&) = delete;
    DoublePrecision& operator=(const DoublePrecision&) = delete;
    ~DoublePrecision() {
        set(callers_);
    }

private:
    static constexpr unsigned short precision_mask = 0x300;
    static constexpr unsigned short precision_of_double = 0x200;

    static void set(unsigned short control) noexcept {
        asm volatile("fldcw %0" : : "m"(control) : "memory"); // NOLINT(hicpp-no-assembler)
    }

    unsigned short callers_;
#endif
};

} // namespace foundation::json::detail

#endif
