/// @file
/// What the system offers for files, by the same names on every system: calls of POSIX, or those of
/// Windows that come nearest.
///
/// Each call returns a negative number, and sets errno, if it fails. A signal may interrupt it,
/// with the error EINTR.
#ifndef FOUNDATION_JSON_SRC_SYSTEM_FILES_HPP
#define FOUNDATION_JSON_SRC_SYSTEM_FILES_HPP

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#include <share.h>

#include <algorithm>
#else
#include <unistd.h>
#endif

namespace foundation::json::detail::system {

#ifdef _WIN32

using Status = struct _stat64;

// A call transfers less than 2 GiB.
inline unsigned piece(std::size_t size) noexcept {
    return static_cast<unsigned>(std::min(size, std::size_t{1} << 30));
}

inline int open(const std::filesystem::path& path, int flags, int permissions) noexcept {
    int descriptor = -1;
    const int error = ::_wsopen_s(&descriptor, path.c_str(), flags | _O_BINARY | _O_NOINHERIT,
                                  _SH_DENYNO, permissions);
    if (error != 0) {
        errno = error;
        return -1;
    }
    return descriptor;
}

inline int open_to_read(const std::filesystem::path& path) noexcept {
    return system::open(path, _O_RDONLY, 0);
}

inline int open_new(const std::filesystem::path& path, bool /*for_the_owner_alone*/) noexcept {
    return system::open(path, _O_WRONLY | _O_CREAT | _O_EXCL, _S_IREAD | _S_IWRITE);
}

inline std::int64_t read(int descriptor, char* out, std::size_t size) noexcept {
    return ::_read(descriptor, out, piece(size));
}

inline std::int64_t write(int descriptor, const char* bytes, std::size_t size) noexcept {
    return ::_write(descriptor, bytes, piece(size));
}

inline int close(int descriptor) noexcept {
    return ::_close(descriptor);
}

inline int flush_to_disk(int descriptor) noexcept {
    return ::_commit(descriptor);
}

inline int look_at(int descriptor, Status& status) noexcept {
    return ::_fstat64(descriptor, &status);
}

inline int look_at(const std::filesystem::path& path, Status& status) noexcept {
    return ::_wstat64(path.c_str(), &status);
}

inline bool is_regular(const Status& status) noexcept {
    return (status.st_mode & _S_IFMT) == _S_IFREG;
}

inline bool is_folder(const Status& status) noexcept {
    return (status.st_mode & _S_IFMT) == _S_IFDIR;
}

/// Whether this process may write to a file.
inline int check_writable(const std::filesystem::path& path) noexcept {
    return ::_waccess(path.c_str(), 2);
}

/// A new file belongs to this process, and inherits its permissions from its folder.
inline int take_over_permissions(int /*descriptor*/, const Status& /*old*/) noexcept {
    return 0;
}

inline long process_id() noexcept {
    return ::_getpid();
}

#else

using Status = struct stat;

inline int open_to_read(const std::filesystem::path& path) noexcept {
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

/// Fails where there is a file already.
inline int open_new(const std::filesystem::path& path, bool for_the_owner_alone) noexcept {
    const mode_t mode = for_the_owner_alone ? 0600 : 0666;
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

inline std::int64_t read(int descriptor, char* out, std::size_t size) noexcept {
    return ::read(descriptor, out, size);
}

inline std::int64_t write(int descriptor, const char* bytes, std::size_t size) noexcept {
    return ::write(descriptor, bytes, size);
}

inline int close(int descriptor) noexcept {
    return ::close(descriptor);
}

inline int flush_to_disk(int descriptor) noexcept {
    return ::fsync(descriptor);
}

inline int look_at(int descriptor, Status& status) noexcept {
    return ::fstat(descriptor, &status);
}

inline int look_at(const std::filesystem::path& path, Status& status) noexcept {
    return ::stat(path.c_str(), &status);
}

inline bool is_regular(const Status& status) noexcept {
    return S_ISREG(status.st_mode);
}

inline bool is_folder(const Status& status) noexcept {
    return S_ISDIR(status.st_mode);
}

/// Whether this process may write to a file.
inline int check_writable(const std::filesystem::path& path) noexcept {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS);
}

/// Gives a file the owner, the group and the permissions of another one.
inline int take_over_permissions(int descriptor, const Status& old) noexcept {
    // Giving it away comes first, since that takes permissions away. A process that may not give
    // files away keeps this one.
    [[maybe_unused]] const int group_given = ::fchown(descriptor, ~uid_t{0}, old.st_gid);
    [[maybe_unused]] const int owner_given = ::fchown(descriptor, old.st_uid, ~gid_t{0});
    return ::fchmod(descriptor, old.st_mode & 07777);
}

inline long process_id() noexcept {
    return ::getpid();
}

#endif

} // namespace foundation::json::detail::system

#endif
