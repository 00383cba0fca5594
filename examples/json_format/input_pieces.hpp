/// @file
/// A stream buffer that reads a file, a pipe or a terminal, and tells errors from the end.
#ifndef JSON_FORMAT_INPUT_PIECES_HPP
#define JSON_FORMAT_INPUT_PIECES_HPP

#include "system.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <streambuf>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace json_format {

/// Reads from a file descriptor what is there, up to a buffer at a time, and waits only where
/// nothing is. An error is an exception: std::ifstream would make it look like the end.
///
///     InputPieces pieces(standard_input, "cannot read <stdin>", [](std::size_t) {});
///     std::istream stream(&pieces);
///     const Value value = parse(stream);
class InputPieces : public std::streambuf {
public:
    /// The descriptor belongs to the caller.
    /// @param failure      what the std::system_error begins with that an error is
    /// @param before_read  is called before every call of the system, which may have to wait, with
    ///                     the number of bytes of the last one
    InputPieces(int descriptor, std::string failure, std::function<void(std::size_t)> before_read)
        : descriptor_(descriptor),
          failure_(std::move(failure)),
          before_read_(std::move(before_read)),
          buffer_(1 << 16) {}

protected:
    int_type underflow() override {
        before_read_(static_cast<std::size_t>(egptr() - eback()));
        std::int64_t size = 0;
        do {
            size = json_format::read_file(descriptor_, buffer_.data(), buffer_.size());
        } while (size < 0 && errno == EINTR);
        if (size < 0) {
            throw std::system_error(errno, std::generic_category(), failure_);
        }
        setg(buffer_.data(), buffer_.data(), buffer_.data() + size);
        return size == 0 ? traits_type::eof() : traits_type::to_int_type(buffer_[0]);
    }

private:
    int descriptor_;
    std::string failure_;
    std::function<void(std::size_t)> before_read_;
    std::vector<char> buffer_;
};

} // namespace json_format

#endif
