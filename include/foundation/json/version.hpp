/// @file
/// The version of the headers, for callers that compile with several versions.
///
///     #include <foundation/json/version.hpp>
///
///     #if FOUNDATION_JSON_VERSION < 10100
///     #error "foundation::json 1.1.0 or later is needed"
///     #endif
///
/// No other header includes this one. docs/versioning.md says what the numbers promise.
#ifndef FOUNDATION_JSON_VERSION_HPP
#define FOUNDATION_JSON_VERSION_HPP

/// The part that goes up when callers may have to change something.
#define FOUNDATION_JSON_VERSION_MAJOR 1
/// The part that goes up when something is added.
#define FOUNDATION_JSON_VERSION_MINOR 1
/// The part that goes up when bugs are fixed.
#define FOUNDATION_JSON_VERSION_PATCH 0

/// The version as one number, to be compared: 10203 is 1.2.3.
#define FOUNDATION_JSON_VERSION                                                                    \
    (FOUNDATION_JSON_VERSION_MAJOR * 10000 + FOUNDATION_JSON_VERSION_MINOR * 100 +                 \
     FOUNDATION_JSON_VERSION_PATCH)

/// The version as a string, "1.2.3".
#define FOUNDATION_JSON_VERSION_STRING "1.1.0"

#endif
