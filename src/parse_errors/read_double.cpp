#include "parse_errors/read_double.hpp"

#include <fast_float/fast_float.h>

#include <system_error>

namespace foundation::json::detail {

double read_double(const char* text, std::size_t count) noexcept {
    double number = 0;
    const auto [end, error] = fast_float::from_chars(text, text + count, number);
    return error == std::errc::invalid_argument ? 0 : number;
}

} // namespace foundation::json::detail
