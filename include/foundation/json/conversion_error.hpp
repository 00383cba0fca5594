/// @file
/// The exception of conversions. convert.hpp and read.hpp include this header.
#ifndef FOUNDATION_JSON_CONVERSION_ERROR_HPP
#define FOUNDATION_JSON_CONVERSION_ERROR_HPP

#include <foundation/json/export.hpp>

#include <memory>
#include <stdexcept>
#include <string>

namespace foundation::json {

/// The exception of a conversion. what() begins with the location, "at /servers/3/port: " or "at
/// the root: "; quotes, backslashes and control bytes in it are escaped as in a JSON string.
///
/// You can throw it from checks of your own, too.
class FOUNDATION_JSON_EXPORT ConversionError : public std::runtime_error {
public:
    /// @param pointer  the location, as a JSON Pointer (RFC 6901)
    /// @param problem  what what() says after the location
    /// @throws std::bad_alloc if memory runs out
    ConversionError(std::string pointer, const std::string& problem);

    ConversionError(const ConversionError&) = default;            ///< never throws
    ConversionError& operator=(const ConversionError&) = default; ///< never throws
    ~ConversionError() override;

    /// The location as a JSON Pointer, not escaped: from the value that was converted or, if a
    /// pointer was given, from its root. The empty string is the root.
    const std::string& pointer() const noexcept { return *pointer_; }

private:
    std::shared_ptr<const std::string> pointer_; // shared, so that copies cannot throw
};

} // namespace foundation::json

#endif
