/// @file
/// UTF-16 text to text in a named encoding.
#ifndef FOUNDATION_JSON_SRC_PARSE_ERRORS_UTF16_CONVERTER_HPP
#define FOUNDATION_JSON_SRC_PARSE_ERRORS_UTF16_CONVERTER_HPP

#include <memory>
#include <string>

struct UConverter;

namespace foundation::json::detail {

/// A converter to one encoding. Two threads must not use it at once.
class Utf16Converter {
public:
    /// @param encoding    the name of the encoding, as ICU knows it
    /// @param substitute  what becomes of an unpaired surrogate (and of a character that the
    ///                    encoding lacks): true substitutes, in UTF-8 by U+FFFD; false throws
    /// @throws std::invalid_argument naming the encoding if it is unknown; std::bad_alloc
    Utf16Converter(const std::string& encoding, bool substitute);

    /// The text in the converter's encoding.
    /// @throws std::range_error if the text cannot be converted; std::bad_alloc
    std::string convert(const std::u16string& text) const;

private:
    struct Close {
        void operator()(UConverter* converter) const noexcept;
    };

    std::unique_ptr<UConverter, Close> converter_;
};

} // namespace foundation::json::detail

#endif
