/// @file
/// What the headers put on declarations, as macros: export, warnings of lifetimes, debug
/// information.
///
/// The export macro: everything in the shared library is hidden except what carries
/// FOUNDATION_JSON_EXPORT, so the library's interface is exactly what its headers declare. The
/// static library comes with FOUNDATION_JSON_STATIC defined: a shared library made of it does not
/// export these names as its own.
#ifndef FOUNDATION_JSON_EXPORT_HPP
#define FOUNDATION_JSON_EXPORT_HPP

#ifdef FOUNDATION_JSON_STATIC
#define FOUNDATION_JSON_EXPORT
#else
/// Marks what the shared library exports.
#define FOUNDATION_JSON_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __has_cpp_attribute
#if __has_cpp_attribute(clang::lifetimebound)
#define FOUNDATION_JSON_LIFETIME_BOUND [[clang::lifetimebound]]
#endif
#endif
#ifndef FOUNDATION_JSON_LIFETIME_BOUND
/// Marks what a result refers to, behind a parameter or, for the object itself, behind a member
/// function. A compiler that knows such an attribute, as clang++ does, warns where the result is
/// kept for longer than that: `const Value& name = make_record()["name"];`.
#define FOUNDATION_JSON_LIFETIME_BOUND
#endif

#ifdef __has_attribute
#if __has_attribute(standalone_debug)
#define FOUNDATION_JSON_STANDALONE_DEBUG __attribute__((standalone_debug))
#endif
#endif
#ifndef FOUNDATION_JSON_STANDALONE_DEBUG
/// Marks a class that debug information describes wherever it is used. clang++ would leave out what
/// it expects in the debug information of the library, which need not be there.
#define FOUNDATION_JSON_STANDALONE_DEBUG
#endif

#endif
