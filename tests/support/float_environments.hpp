/// @file
/// Floating-point environments: the one that a program starts with, and all the others that the
/// machine offers.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_FLOAT_ENVIRONMENTS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_FLOAT_ENVIRONMENTS_HPP

#include <cfenv>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace foundation::json::test {

/// Sets the environment that a program starts with, with all flags clear.
inline void set_default_environment() {
    std::fesetenv(FE_DFL_ENV);
#if defined(_WIN32)
    _mm_setcsr(0x1F80); // which the environment of Windows is without
#endif
}

/// Restores the environment, flags included, when destroyed.
class EnvironmentKeeper {
public:
    EnvironmentKeeper() {
        std::fegetenv(&environment_);
#if defined(_WIN32)
        register_ = _mm_getcsr();
#endif
    }
    EnvironmentKeeper(const EnvironmentKeeper&) = delete;
    EnvironmentKeeper& operator=(const EnvironmentKeeper&) = delete;
    ~EnvironmentKeeper() {
        std::fesetenv(&environment_);
#if defined(_WIN32)
        _mm_setcsr(register_);
#endif
    }

private:
    std::fenv_t environment_{};
#if defined(_WIN32)
    unsigned register_ = 0;
#endif
};

/// The environment that a program starts with, in the direction of std::fegetround(), until
/// destroyed. Arithmetic in it belongs into a function that is not inlined.
class DefaultArithmetic {
public:
    DefaultArithmetic() {
        const int direction = std::fegetround();
        set_default_environment();
        std::fesetround(direction);
    }

private:
    EnvironmentKeeper keeper_;
};

/// The directions of std::fesetround(), the usual one first.
inline const std::vector<int>& directions() {
    static const std::vector<int> all = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    return all;
}

/// Sets the direction in which the C library rounds, until destroyed.
class ScopedRounding {
public:
    explicit ScopedRounding(int direction) : succeeded_(std::fesetround(direction) == 0) {}

    bool succeeded() const { return succeeded_; }

private:
    EnvironmentKeeper keeper_;
    bool succeeded_;
};

// ---- What only the machine has -----------------------------------------------------------------

// A setting is a control register as it shall be, or rather those bits of it that a program may set
// without std::fesetround() knowing.

using MachineSetting = std::uint32_t;

#if defined(__x86_64__)

constexpr const char* machine_register = "MXCSR";
constexpr MachineSetting settable_bits = 0xFFC0;
constexpr MachineSetting usual_setting = 0x1F80;
constexpr MachineSetting zeroing_results = 0x8000;
constexpr MachineSetting zeroing_operands = 0x40;
constexpr MachineSetting trapping = 0;
constexpr MachineSetting not_trapping = 0x1F80;

inline MachineSetting whole_register() {
    return _mm_getcsr();
}

inline void set_whole_register(MachineSetting value) {
    _mm_setcsr(value);
}

/// Every rounding mode, flush-to-zero, denormals-are-zero, and each trap.
inline std::vector<MachineSetting> imaginable_settings() {
    std::vector<MachineSetting> result;
    for (MachineSetting setting = 0; setting <= settable_bits; setting += 0x40) {
        result.push_back(setting);
    }
    return result;
}

#elif defined(__aarch64__)

constexpr const char* machine_register = "FPCR";
constexpr MachineSetting settable_bits = 0x03009F00; // default NaN, flush to zero, traps
constexpr MachineSetting usual_setting = 0;
constexpr MachineSetting zeroing_results = 0x01000000;
constexpr MachineSetting zeroing_operands = 0x01000000;
constexpr MachineSetting trapping = 0x9F00;
constexpr MachineSetting not_trapping = 0;

inline MachineSetting whole_register() {
    std::uint64_t result = 0;
    __asm__ volatile("mrs %0, fpcr" : "=r"(result));
    return static_cast<MachineSetting>(result);
}

inline void set_whole_register(std::uint64_t value) {
    __asm__ volatile("msr fpcr, %0" : : "r"(value));
}

inline std::vector<MachineSetting> imaginable_settings() {
    std::vector<MachineSetting> result;
    for (const MachineSetting traps :
         {0x0000, 0x0100, 0x0200, 0x0400, 0x0800, 0x1000, 0x8000, 0x9F00}) {
        for (MachineSetting others = 0; others < 4; ++others) {
            result.push_back(traps | others << 24);
        }
    }
    return result;
}

#else

constexpr MachineSetting zeroing_results = 0;
constexpr MachineSetting zeroing_operands = 0;
constexpr MachineSetting trapping = 0;
constexpr MachineSetting not_trapping = 0;

#if defined(__i386__)

constexpr const char* machine_register = "x87 control word";
constexpr MachineSetting settable_bits = 0x0300; // the precision of results
constexpr MachineSetting usual_setting = 0x0300;

inline MachineSetting whole_register() {
    std::uint16_t result = 0;
    __asm__ volatile("fnstcw %0" : "=m"(result));
    return result;
}

inline void set_whole_register(MachineSetting value) {
    const auto word = static_cast<std::uint16_t>(value);
    __asm__ volatile("fldcw %0" : : "m"(word));
}

inline std::vector<MachineSetting> imaginable_settings() {
    return {0x0000, 0x0200, 0x0300};
}

#else

constexpr const char* machine_register = "no register";
constexpr MachineSetting settable_bits = 0;
constexpr MachineSetting usual_setting = 0;

inline MachineSetting whole_register() {
    return 0;
}

inline void set_whole_register(MachineSetting) {}

inline std::vector<MachineSetting> imaginable_settings() {
    return {0};
}

#endif
#endif

inline MachineSetting machine_setting() {
    return whole_register() & settable_bits;
}

inline void set_machine(MachineSetting setting) {
    set_whole_register((whole_register() & ~settable_bits) | setting);
}

inline bool zeroes_results(MachineSetting setting) {
    return (setting & zeroing_results) != 0;
}

inline bool zeroes_operands(MachineSetting setting) {
    return (setting & zeroing_operands) != 0;
}

/// Of machines other than x86-64, these bits cannot be set.
inline int rounding(MachineSetting setting) {
    constexpr int directions[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};
    return directions[setting >> 13 & 3];
}

inline MachineSetting without_traps(MachineSetting setting) {
    return (setting & ~trapping) | not_trapping;
}

/// Makes the processor treat subnormal operands and results as zero, if it can, until destroyed.
class ScopedFlushToZero {
public:
    ScopedFlushToZero() { set_machine(machine_setting() | zeroing_results | zeroing_operands); }

private:
    EnvironmentKeeper keeper_;
};

/// What arithmetic reveals about its environment.
struct Behaviour {
    bool zeroes_results;
    bool zeroes_operands;
    int rounding;
};

[[gnu::noinline]] inline Behaviour observed_behaviour() {
    const volatile double least_normal = DBL_MIN;
    const volatile double subnormal = DBL_MIN / 4;
    const volatile double half = 0.5;
    const volatile double one = 1;
    const volatile double tiny = 0x1p-60;
    const volatile double minus_one = -1;
    const volatile double halved = least_normal * half;
    const volatile double scaled = subnormal * 0x1p100;
    const volatile double above = one + tiny;
    const volatile double below = minus_one - tiny;
    const volatile double less = one - tiny;
    return {halved == 0, scaled == 0,
            above > one         ? FE_UPWARD
            : below < minus_one ? FE_DOWNWARD
            : less < one        ? FE_TOWARDZERO
                                : FE_TONEAREST};
}

/// Whether a setting has an effect on this machine. Emulators accept some that have none.
inline bool is_offered(MachineSetting setting) {
    const EnvironmentKeeper keeper;
    set_machine(setting);
    const bool accepted = machine_setting() == setting;
    set_machine(without_traps(setting));
    const Behaviour observed = observed_behaviour();
    return accepted && observed.zeroes_results == zeroes_results(setting) &&
           observed.zeroes_operands == zeroes_operands(setting) &&
           observed.rounding == rounding(setting);
}

/// The settings that work on this machine; at least one.
inline const std::vector<MachineSetting>& machine_settings() {
    static const std::vector<MachineSetting> offered = [] {
        const EnvironmentKeeper keeper;
        set_default_environment();
        std::vector<MachineSetting> result;
        for (const MachineSetting setting : imaginable_settings()) {
            if (is_offered(setting)) {
                result.push_back(setting);
            }
        }
        return result;
    }();
    return offered;
}

// ---- Environments ------------------------------------------------------------------------------

struct Environment {
    int direction;          ///< of std::fesetround()
    bool traps;             ///< every exception ends the program, where <fenv.h> has that
    MachineSetting setting; ///< set last of all
};

inline std::string name_of(const Environment& environment) {
    char text[100];
    std::snprintf(text, sizeof text, "direction %x, traps %s, %s %x",
                  static_cast<unsigned>(environment.direction), environment.traps ? "on" : "off",
                  machine_register, static_cast<unsigned>(environment.setting));
    return text;
}

/// Every combination of what the machine offers.
template <class Visit>
void for_each_environment(Visit visit) {
    for (const int direction : directions()) {
        for (const bool traps : {false, true}) {
            for (const MachineSetting setting : machine_settings()) {
                visit(Environment{direction, traps, setting});
            }
        }
    }
}

/// Calls a function in an environment, with all flags clear, and restores the caller's. The
/// function does no arithmetic of its own. It is not inlined, so that none of the caller's gets
/// there.
/// @return the flags that are set in the end
template <class Body>
[[gnu::noinline]] int flags_raised_in(const Environment& environment, Body body) {
    const EnvironmentKeeper keeper;
    set_default_environment();
    std::fesetround(environment.direction);
#if defined(__GLIBC__)
    if (environment.traps) {
        feenableexcept(FE_ALL_EXCEPT);
    }
#endif
    set_machine(environment.setting);
    body();
    return std::fetestexcept(FE_ALL_EXCEPT);
}

} // namespace foundation::json::test

#endif
