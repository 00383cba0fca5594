/// @file
/// How deep the current operation is within a value.
#ifndef FOUNDATION_JSON_SRC_VALUE_NESTING_HPP
#define FOUNDATION_JSON_SRC_VALUE_NESTING_HPP

namespace foundation::json::detail {

/// Counts the levels of nesting of copies, assignments and destructions in this thread: one object
/// exists per level.
///
/// Variants, vectors and maps by themselves need a few hundred bytes of stack for every level. That
/// is the fastest way, and sufficient for ordinary values. Deeper levels are handled by functions
/// of this library that need little stack.
class NestingLevel {
public:
    NestingLevel() noexcept { ++level; }
    ~NestingLevel() { --level; }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;

    /// Whether this one is beyond the ordinary levels.
    bool beyond_ordinary() const noexcept { return level > ordinary_levels; }

private:
    static constexpr int ordinary_levels = 100;

    // Initial-exec, since the general access to a thread's variable costs more than copying a
    // number.
    [[gnu::tls_model("initial-exec")]] inline static thread_local int level = 0;
};

} // namespace foundation::json::detail

#endif
