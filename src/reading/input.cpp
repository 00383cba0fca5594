#include "reading/input.hpp"

#include "grammar/streams.hpp"
#include "system/files.hpp"
#include "text/visible_name.hpp"

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

namespace {

/// How many bytes to read next, so that one more is read than wanted.
std::size_t wanted(const GrowingText& text, std::size_t most) noexcept {
    const std::size_t rest = most - text.size();
    return rest < text.room_size() ? rest + 1 : text.room_size();
}

} // namespace

GrowingText read_all(std::istream& stream, std::size_t most) {
    begin_reading(stream);
    GrowingText text(0);
    bool ended = false;
    try {
        while (!ended && text.size() <= most) {
            char* const room = text.room();
            const std::size_t size = wanted(text, most);
            const auto count = static_cast<std::size_t>(
                stream.rdbuf()->sgetn(room, static_cast<std::streamsize>(size)));
            text.add(count);
            ended = count != size;
        }
    } catch (...) {
        set_state(stream, std::ios_base::badbit);
        throw;
    }
    if (ended) {
        end_reading(stream);
    }
    return text;
}

// ---- Files -----------------------------------------------------------------------------------

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, int error, const char* why = "") {
    throw std::system_error(error, std::generic_category(),
                            "cannot read '" + visible_name(path) + "'" + why);
}

class File {
public:
    explicit File(const std::filesystem::path& path) : path_(path) {
        // The system would open what the name begins with.
        if (path.native().find(std::filesystem::path::value_type()) !=
            std::filesystem::path::string_type::npos) {
            fail(path, EINVAL);
        }
        do {
            descriptor_ = system::open_to_read(path);
        } while (was_interrupted(descriptor_));
        check(descriptor_);
    }
    ~File() { system::close(descriptor_); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// The length of a regular file; 0 for anything else.
    std::size_t size() const {
        system::Status status{}; // not that of a regular file, in case the call fails
        static_cast<void>(system::look_at(descriptor_, status));
        return system::is_regular(status) ? static_cast<std::size_t>(status.st_size) : 0;
    }

    /// Reads at most `size` bytes. @return how many; 0 at the end of the file
    std::size_t read(char* out, std::size_t size) const {
        std::int64_t count = 0;
        do {
            count = system::read(descriptor_, out, size);
        } while (was_interrupted(count));
        check(count);
        return static_cast<std::size_t>(count);
    }

private:
    /// Whether a signal has interrupted a system call.
    static bool was_interrupted(std::int64_t result) noexcept {
        return result < 0 && errno == EINTR;
    }

    void check(std::int64_t result) const {
        if (result < 0) {
            fail(path_, errno);
        }
    }

    const std::filesystem::path& path_;
    int descriptor_ = -1;
};

} // namespace

GrowingText read_file(const std::filesystem::path& path, std::size_t most) {
    const File file(path);
    const std::size_t size = file.size();
    GrowingText text(std::min(size, most));
    std::size_t count = 0;
    do {
        char* const room = text.room();
        count = file.read(room, wanted(text, most));
        text.add(count);
    } while (count != 0 && text.size() <= most);
    // A file that the system generates may hold less than its size; then its size stays as it was.
    if (count == 0 && std::max(text.size(), file.size()) < size) {
        fail(path, EIO, ", which became shorter meanwhile");
    }
    return text;
}

} // namespace foundation::json::detail
