/// @file
/// The preconditions that a hardened build checks: it ends the program where another build has
/// undefined behaviour. In a build that is not hardened, nothing here is executed.
#ifndef FOUNDATION_JSON_SRC_VALUE_HARDENING_HPP
#define FOUNDATION_JSON_SRC_VALUE_HARDENING_HPP

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace foundation::json::detail {

#ifdef FOUNDATION_JSON_HARDENED
inline constexpr bool hardened = true;
#else
inline constexpr bool hardened = false;
#endif

/// An index must be that of an element.
inline void require_index([[maybe_unused]] std::size_t index, [[maybe_unused]] std::size_t size) {
    if constexpr (hardened) {
        if (index >= size) {
            // Shown as signed, since an index out of range often was a negative int.
            std::fprintf(stderr, "foundation::json: index %td is out of range of %zu elements\n",
                         static_cast<std::ptrdiff_t>(index), size);
            std::abort();
        }
    }
}

/// A text must not be null.
/// @return the text
inline const char* require_text(const char* text) {
    if constexpr (hardened) {
        if (text == nullptr) {
            std::fputs("foundation::json: a string is a null pointer\n", stderr);
            std::abort();
        }
    }
    return text;
}

} // namespace foundation::json::detail

#endif
