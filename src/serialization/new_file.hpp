/// @file
/// A file that takes the place of another one once it is complete.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_NEW_FILE_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_NEW_FILE_HPP

#include <cstddef>
#include <filesystem>

namespace foundation::json::detail {

/// Every failure is a std::system_error, "cannot write '<path>': " and the system's reason. The
/// destructor removes a file that has not taken its place.
class NewFile {
public:
    /// Makes an empty file beside the one that the path leads to, with the permissions of that one,
    /// if there is one.
    explicit NewFile(const std::filesystem::path& path);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    void write(const char* bytes, std::size_t size);

    /// Waits until the bytes are on the disk, and puts the file in the place of the old one.
    void take_place();

private:
    /// Only sets the members.
    NewFile(const std::filesystem::path& path, std::filesystem::path target) noexcept;

    void open(bool replaces);

    const std::filesystem::path& path_; ///< as the caller gives it, for messages
    std::filesystem::path target_;      ///< where symbolic links lead to
    std::filesystem::path own_path_;    ///< empty if there is nothing to remove
    int descriptor_ = -1;
};

} // namespace foundation::json::detail

#endif
