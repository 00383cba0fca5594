/// @file
/// UTF-16 text to text in a named encoding. The one encoding that is used is UTF-8.
#ifndef FOUNDATION_JSON_SRC_PARSE_ERRORS_UTF16_CONVERTER_HPP
#define FOUNDATION_JSON_SRC_PARSE_ERRORS_UTF16_CONVERTER_HPP

#include <string>

namespace foundation::json::detail {

/// A converter to one encoding. It keeps nothing between calls: threads may share it.
class Utf16Converter {
public:
    /// @param encoding    the name of the encoding: "UTF-8"
    /// @param substitute  what becomes of an unpaired surrogate: true substitutes U+FFFD, false
    ///                    throws
    /// @throws std::invalid_argument naming the encoding if it is another one
    Utf16Converter(const std::string& encoding, bool substitute);

    /// The text in the converter's encoding.
    /// @throws std::range_error if the text cannot be converted; std::bad_alloc
    std::string convert(const std::u16string& text) const;

private:
    bool substitute_;
};

} // namespace foundation::json::detail

#endif
