/// @file
/// The exception of conversions. convert.hpp and read.hpp include this header.
#ifndef FOUNDATION_JSON_CONVERSION_ERROR_HPP
#define FOUNDATION_JSON_CONVERSION_ERROR_HPP

#include <foundation/json/export.hpp>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace foundation::json {

/// One of the errors of a conversion.
struct ConversionProblem {
    std::string pointer;    ///< the location, as a JSON Pointer, not escaped
    std::string message;    ///< what is wrong there, without the location
    std::size_t line = 0;   ///< in the document, from 1, if it is an error of read(); else 0
    std::size_t column = 0; ///< the same
};

/// The exception of a conversion. what() begins with the location, "at /servers/3/port: " or "at
/// the root: "; quotes, backslashes and control bytes in it are escaped as in a JSON string.
///
/// With the option max_errors, it may report several errors; then what() has a line for each:
///
///     ConvertOptions options;
///     options.max_errors = 20;
///     try {
///         const auto server = to<Server>(value, options);
///     } catch (const ConversionError& error) {
///         for (const ConversionProblem& problem : error.errors()) {
///             std::cout << problem.pointer << " - " << problem.message << '\n';
///         }
///     }
///
/// You can throw it from checks of your own, too.
class FOUNDATION_JSON_EXPORT ConversionError : public std::runtime_error {
public:
    /// @param pointer  the location, as a JSON Pointer (RFC 6901)
    /// @param problem  what what() says after the location
    /// @throws std::bad_alloc if memory runs out
    ConversionError(std::string pointer, const std::string& problem);

    /// Several errors as one exception.
    /// @param errors    one or more, in the order of their lines in what()
    /// @param cuts_off  whether there may be more, so that what() ends with a line that says so
    /// @throws std::invalid_argument if there is no error
    /// @throws std::bad_alloc if memory runs out
    explicit ConversionError(std::vector<ConversionProblem> errors, bool cuts_off = false);

    ConversionError(const ConversionError&) = default;            ///< never throws
    ConversionError& operator=(const ConversionError&) = default; ///< never throws
    ~ConversionError() override;

    /// The location as a JSON Pointer, not escaped: from the value that was converted or, if a
    /// pointer was given, from its root. The empty string is the root. Of several errors, that of
    /// the first.
    const std::string& pointer() const noexcept { return errors_->front().pointer; }

    /// All errors: one, unless the option max_errors allows more. Those of to() come in the order
    /// of the conversion, those of read() in the order of the document.
    /// @return valid as long as this exception or a copy of it
    const std::vector<ConversionProblem>& errors() const noexcept { return *errors_; }

    /// Whether the conversion ended early, after as many errors as max_errors allows or after 4 MiB
    /// of pointers and messages, so that there may be more errors.
    bool is_cut_off() const noexcept { return is_cut_off_; }

private:
    std::shared_ptr<const std::vector<ConversionProblem>> errors_; // so that copies cannot throw
    bool is_cut_off_ = false;
};

} // namespace foundation::json

#endif
