/// @file
/// Flushes subnormal numbers to zero within a scope.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_SCOPED_FLUSH_TO_ZERO_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_SCOPED_FLUSH_TO_ZERO_HPP

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace foundation::json::test {

/// Makes the processor treat subnormal operands and results as zero, until destroyed. Has an effect
/// only on processors that it knows.
class ScopedFlushToZero {
public:
    ScopedFlushToZero(const ScopedFlushToZero&) = delete;
    ScopedFlushToZero& operator=(const ScopedFlushToZero&) = delete;

#ifdef __SSE2__
    ScopedFlushToZero() : previous_(_mm_getcsr()) {
        constexpr unsigned flush_to_zero = 0x8000;
        constexpr unsigned denormals_are_zero = 0x40;
        _mm_setcsr(previous_ | flush_to_zero | denormals_are_zero);
    }
    ~ScopedFlushToZero() {
        _mm_setcsr(previous_);
    }

private:
    unsigned previous_;
#else
    ScopedFlushToZero() = default;
#endif
};

} // namespace foundation::json::test

#endif
