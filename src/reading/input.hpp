/// @file
/// Input: reads whole texts from streams and files, and sets the state of streams.
#ifndef FOUNDATION_JSON_SRC_READING_INPUT_HPP
#define FOUNDATION_JSON_SRC_READING_INPUT_HPP

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::detail {

/// A text that is read piece by piece. In one piece, it takes no more memory than its length.
class GrowingText {
public:
    /// @param expected  an estimate of the text's length
    explicit GrowingText(std::size_t expected) noexcept : expected_(expected) {}

    /// Where to write more of the text: room_size() bytes fit there, at least one.
    char* room();
    std::size_t room_size() const noexcept { return capacity_ - used_; }
    void add(std::size_t count) noexcept { used_ += count; }

    std::size_t size() const noexcept { return full_size_ + used_; }

    /// The whole text in one piece. No more may be added afterwards.
    std::string_view join();

private:
    struct Piece {
        std::unique_ptr<char[]> text;
        std::size_t size;
    };

    std::size_t expected_;
    std::vector<Piece> full_;
    std::size_t full_size_ = 0;
    std::unique_ptr<char[]> last_;
    std::size_t used_ = 0;
    std::size_t capacity_ = 0;
};

/// The rest of a stream.
/// @param most  how many bytes are wanted; one more is read, to find out whether there are more
GrowingText read_all(std::istream& stream, std::size_t most);

/// The content of a file.
/// @throws std::system_error with the file's name in its message
GrowingText read_file(const std::filesystem::path& path, std::size_t most);

} // namespace foundation::json::detail

#endif
