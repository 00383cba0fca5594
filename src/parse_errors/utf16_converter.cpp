#include "parse_errors/utf16_converter.hpp"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <iterator>
#include <new>
#include <stdexcept>

namespace foundation::json::detail {

namespace {

/// Throws the exception for an ICU error: std::bad_alloc if memory ran out, else what `fallback`
/// throws.
template <class MakeError>
void check(UErrorCode status, MakeError fallback) {
    if (status == U_MEMORY_ALLOCATION_ERROR) {
        throw std::bad_alloc();
    }
    if (U_FAILURE(status)) {
        fallback();
    }
}

} // namespace

void Utf16Converter::Close::operator()(UConverter* converter) const noexcept {
    ucnv_close(converter);
}

Utf16Converter::Utf16Converter(const std::string& encoding, bool substitute) {
    UErrorCode status = U_ZERO_ERROR;
    converter_.reset(ucnv_open(encoding.c_str(), &status));
    check(status, [&] { throw std::invalid_argument("unknown encoding: " + encoding); });
    if (!substitute) {
        ucnv_setFromUCallBack(converter_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr,
                              nullptr, &status);
    }
}

std::string Utf16Converter::convert(const std::u16string& text) const {
    ucnv_resetFromUnicode(converter_.get());
    std::string result;
    const char16_t* source = text.data();
    const char16_t* const source_end = source + text.size();
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    // In pieces, since ICU's conversion in one call counts in 32 bits.
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        char piece[1024];
        char* target = piece;
        status = U_ZERO_ERROR;
        ucnv_fromUnicode(converter_.get(), &target, std::end(piece), &source, source_end, nullptr,
                         true, &status);
        result.append(piece, target);
    }
    check(status, [] { throw std::range_error("text cannot be converted"); });
    return result;
}

} // namespace foundation::json::detail
