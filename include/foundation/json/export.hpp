/// @file
/// The export macro. Everything in the shared library is hidden except what carries
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

#endif
