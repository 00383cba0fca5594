/// @file
/// A stream buffer that makes few, large writes of what a stream is given, flushes or not.
#ifndef JSON_FORMAT_LARGE_PIECES_HPP
#define JSON_FORMAT_LARGE_PIECES_HPP

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <streambuf>
#include <string>
#include <system_error>
#include <vector>

namespace json_format {

/// Passes text on to a C file a buffer at a time. A flush of the stream passes nothing on, so text
/// in pretty layout, which flushes at every line end, takes hardly more system calls than compact.
///
///     LargePieces pieces(file);
///     std::ostream stream(&pieces);
///     serializer.write(stream, value);
///     pieces.finish("cannot write report.json");
class LargePieces : public std::streambuf {
public:
    /// The file belongs to the caller, and must stay open until finish().
    explicit LargePieces(std::FILE* file) : file_(file), buffer_(1 << 16) { begin_piece(); }

    /// Passes on what is left, and flushes the file: at the end, since what is left is lost without
    /// it, and wherever somebody may wait for the text.
    /// @throws std::system_error that begins with `failure`, for the first error there was
    void finish(const std::string& failure) {
        pass_on();
        if (error_ == 0 && std::fflush(file_) != 0) {
            error_ = errno;
        }
        if (error_ != 0) {
            throw std::system_error(error_, std::generic_category(), failure);
        }
    }

protected:
    /// After an error this fails, and the stream goes bad.
    int_type overflow(int_type byte) override {
        pass_on();
        if (error_ != 0) {
            return traits_type::eof();
        }
        return traits_type::eq_int_type(byte, traits_type::eof())
                   ? traits_type::not_eof(byte)
                   : sputc(traits_type::to_char_type(byte));
    }

    int sync() override { return 0; }

private:
    void begin_piece() { setp(buffer_.data(), buffer_.data() + buffer_.size()); }

    void pass_on() {
        const auto size = static_cast<std::size_t>(pptr() - pbase());
        begin_piece();
        if (error_ == 0 && std::fwrite(buffer_.data(), 1, size, file_) != size) {
            error_ = errno;
        }
    }

    std::FILE* file_;
    std::vector<char> buffer_;
    int error_ = 0;
};

} // namespace json_format

#endif
