/// @file
/// Macros for attributes of declarations: export, warnings about lifetimes, speed, debug
/// information.
///
/// The export macros: everything in the shared libraries is hidden except what carries
/// FOUNDATION_JSON_EXPORT or, of the parser, FOUNDATION_JSON_PARSER_EXPORT, so the libraries'
/// interface is exactly what their headers declare. The static libraries come with
/// FOUNDATION_JSON_STATIC defined: a shared library made of them does not export these names as its
/// own. On Windows, a name is exported where its library is built, and imported everywhere else.
#ifndef FOUNDATION_JSON_EXPORT_HPP
#define FOUNDATION_JSON_EXPORT_HPP

#if defined(FOUNDATION_JSON_STATIC)
#define FOUNDATION_JSON_EXPORT
#define FOUNDATION_JSON_PARSER_EXPORT
#elif defined(_WIN32)
#ifdef foundation_json_EXPORTS
#define FOUNDATION_JSON_EXPORT __declspec(dllexport)
#else
#define FOUNDATION_JSON_EXPORT __declspec(dllimport)
#endif
#ifdef foundation_json_parser_EXPORTS
#define FOUNDATION_JSON_PARSER_EXPORT __declspec(dllexport)
#else
#define FOUNDATION_JSON_PARSER_EXPORT __declspec(dllimport)
#endif
#else
/// Marks what the shared library exports.
#define FOUNDATION_JSON_EXPORT __attribute__((visibility("default")))
/// Marks what the shared library of the parser exports.
#define FOUNDATION_JSON_PARSER_EXPORT FOUNDATION_JSON_EXPORT
#endif

#ifdef __has_cpp_attribute
#if __has_cpp_attribute(clang::lifetimebound)
#define FOUNDATION_JSON_LIFETIME_BOUND [[clang::lifetimebound]]
#endif
#endif
#ifndef FOUNDATION_JSON_LIFETIME_BOUND
/// Marks what a result refers to, after a parameter or, for the object itself, after a member
/// function. A compiler that knows such an attribute, as clang++ does, warns where the result is
/// kept for longer than that: `const Value& name = make_record()["name"];`.
#define FOUNDATION_JSON_LIFETIME_BOUND
#endif

#ifdef __GNUC__
/// An attribute of g++ and clang++ for speed: `[[FOUNDATION_JSON_GNU(cold)]]`. Other compilers,
/// which would warn of it, see none.
#define FOUNDATION_JSON_GNU(attribute) gnu::attribute
#else
#define FOUNDATION_JSON_GNU(attribute)
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
