/// @file
/// The export macro. Everything in the shared library is hidden except what carries
/// FOUNDATION_JSON_EXPORT, so the library's interface is exactly what its headers declare.
#ifndef FOUNDATION_JSON_EXPORT_HPP
#define FOUNDATION_JSON_EXPORT_HPP

#define FOUNDATION_JSON_EXPORT __attribute__((visibility("default")))

#endif
