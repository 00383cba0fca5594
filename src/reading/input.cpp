#include "reading/input.hpp"

#include "text/characters.hpp"

#include <foundation/json/detail/quoted.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <istream>
#include <streambuf>
#include <string>
#include <system_error>
#include <utility>

namespace foundation::json::detail {

char* GrowingText::room() {
    constexpr std::size_t least_piece = 4096;
    if (used_ == capacity_) {
        if (last_ != nullptr) {
            full_.push_back({nullptr, used_});
            full_.back().text = std::move(last_);
            full_size_ += std::exchange(used_, 0);
            capacity_ = 0;
        }
        // One byte more than expected, to find the end of the text without another piece.
        const std::size_t size = full_.empty() ? std::max(expected_ + 1, least_piece)
                                               : std::max(full_size_ / 4, least_piece);
        last_.reset(new char[size]);
        capacity_ = size;
    }
    return last_.get() + used_;
}

std::string_view GrowingText::join() {
    if (!full_.empty()) {
        std::unique_ptr<char[]> all(new char[size()]);
        char* out = all.get();
        for (Piece& piece : full_) {
            std::memcpy(out, piece.text.get(), piece.size);
            out += piece.size;
            piece.text.reset();
        }
        if (used_ != 0) {
            std::memcpy(out, last_.get(), used_);
        }
        used_ = capacity_ = size();
        full_size_ = 0;
        full_.clear();
        last_ = std::move(all);
    }
    return {last_.get(), used_};
}

// ---- Streams ---------------------------------------------------------------------------------

void set_state(std::istream& stream, std::ios_base::iostate bits) noexcept {
    try {
        stream.setstate(bits);
    } catch (...) {
        // The stream has set its state before it throws.
    }
}

namespace {

/// Does what every input function does first.
/// @return whether the stream can be read; else failbit is set
bool prepare(std::istream& stream) {
    if (!stream.good()) {
        set_state(stream, std::ios_base::failbit);
        return false;
    }
    try {
        const std::istream::sentry sentry(stream, true); // flushes the stream that is tied to it
        return static_cast<bool>(sentry);
    } catch (const std::ios_base::failure&) {
        return false; // with another message than the one for the caller
    }
}

} // namespace

void begin_reading(std::istream& stream) {
    if (!prepare(stream)) {
        throw std::ios_base::failure(stream.eof() ? "the stream to read from is at its end already"
                                                  : "the stream to read from has failed, or is of "
                                                    "a file that could not be opened");
    }
}

void end_reading(std::istream& stream) {
    if (stream.bad()) {
        throw std::ios_base::failure("the stream cannot be read to its end");
    }
    set_state(stream, std::ios_base::eofbit);
}

GrowingText read_all(std::istream& stream) {
    begin_reading(stream);
    GrowingText text(0);
    try {
        do {
            char* const room = text.room();
            const std::streamsize count =
                stream.rdbuf()->sgetn(room, static_cast<std::streamsize>(text.room_size()));
            text.add(static_cast<std::size_t>(count));
        } while (text.room_size() == 0);
    } catch (...) {
        set_state(stream, std::ios_base::badbit);
        throw;
    }
    end_reading(stream);
    return text;
}

// ---- Files -----------------------------------------------------------------------------------

namespace {

/// The name of a file, with control bytes escaped as in a JSON string: NUL would end the message.
std::string visible_name(const std::filesystem::path& path) {
    std::string result;
    for (const char byte : path.string()) {
        if (is_control(byte)) {
            append_escaped(result, {&byte, 1});
        } else {
            result += byte;
        }
    }
    return result;
}

[[noreturn]] void fail(const std::filesystem::path& path, int error, const char* why = "") {
    throw std::system_error(error, std::generic_category(),
                            "cannot read '" + visible_name(path) + "'" + why);
}

class File {
public:
    explicit File(const std::filesystem::path& path) : path_(path) {
        // The system would open what the name begins with.
        if (path.native().find('\0') != std::string::npos) {
            fail(path, EINVAL);
        }
        do {
            descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        } while (was_interrupted(descriptor_));
        check(descriptor_);
    }
    ~File() { ::close(descriptor_); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// The length of a regular file; 0 for anything else.
    std::size_t size() const {
        struct stat status {}; // not that of a regular file, in case fstat fails
        static_cast<void>(::fstat(descriptor_, &status));
        return S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
    }

    /// Reads at most `size` bytes. @return how many; 0 at the end of the file
    std::size_t read(char* out, std::size_t size) const {
        ssize_t count = 0;
        do {
            count = ::read(descriptor_, out, size);
        } while (was_interrupted(count));
        check(count);
        return static_cast<std::size_t>(count);
    }

private:
    /// Whether a signal has interrupted a system call.
    static bool was_interrupted(ssize_t result) noexcept { return result < 0 && errno == EINTR; }

    void check(ssize_t result) const {
        if (result < 0) {
            fail(path_, errno);
        }
    }

    const std::filesystem::path& path_;
    int descriptor_ = -1;
};

} // namespace

GrowingText read_file(const std::filesystem::path& path) {
    const File file(path);
    const std::size_t size = file.size();
    GrowingText text(size);
    std::size_t count = 0;
    do {
        char* const room = text.room();
        count = file.read(room, text.room_size());
        text.add(count);
    } while (count != 0);
    // A file that the system generates may hold less than its size; then its size stays as it was.
    if (std::max(text.size(), file.size()) < size) {
        fail(path, EIO, ", which became shorter meanwhile");
    }
    return text;
}

} // namespace foundation::json::detail
