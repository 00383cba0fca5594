/// @file
/// How deep the current operation is within a value.
#ifndef FOUNDATION_JSON_SRC_VALUE_NESTING_HPP
#define FOUNDATION_JSON_SRC_VALUE_NESTING_HPP

namespace foundation::json::detail {

/// Counts the levels of nesting of copies, assignments and destructions in this thread, by living
/// as long as each.
///
/// Left to variants, vectors and maps, these operations take a few hundred bytes of stack for every
/// level. That is the fastest way and does for ordinary values. What lies beyond the ordinary
/// levels goes by functions of ours that take little stack.
class NestingLevel {
public:
    NestingLevel() noexcept { ++level; }
    ~NestingLevel() { --level; }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;

    /// Whether an operation within this one would be beyond the ordinary levels.
    static bool at_last_ordinary() noexcept { return level >= ordinary_levels; }

    /// Whether this one is.
    bool beyond_ordinary() const noexcept { return level > ordinary_levels; }

private:
    static constexpr int ordinary_levels = 100;

    // Initial-exec, since the general way to a thread's variable costs more than copying a number.
    [[gnu::tls_model("initial-exec")]] inline static thread_local int level = 0;
};

} // namespace foundation::json::detail

#endif
