#include "serialization/new_file.hpp"

#include "text/visible_name.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

namespace foundation::json::detail {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, int error, const char* why = "") {
    throw std::system_error(error, std::generic_category(),
                            "cannot write '" + visible_name(path) + "'" + why);
}

/// Calls a function again as long as signals interrupt it.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// The path that symbolic links lead to, whether there is a file or not.
fs::path follow_links(const fs::path& path) {
    constexpr int most_links = 40; // as in Linux
    fs::path result = path;
    std::error_code ignored;
    for (int count = 0; fs::is_symlink(fs::symlink_status(result, ignored)); ++count) {
        std::error_code error;
        const fs::path link = fs::read_symlink(result, error);
        if (error || count == most_links) {
            fail(path, error ? error.value() : ELOOP);
        }
        result = result.parent_path() / link; // just the link where that is absolute
    }
    return result;
}

/// A name for a file that is in nobody's way, most likely. Two threads or processes get different
/// ones.
std::string unlikely_name() {
    static std::atomic<unsigned> count{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    char name[80];
    std::snprintf(name, sizeof name, ".foundation_json.%lx.%x.%llx",
                  static_cast<unsigned long>(::getpid()), count++,
                  static_cast<unsigned long long>(now));
    return name;
}

/// Throws if a system call has failed.
template <class Result>
void check(const fs::path& path, Result result) {
    if (result < 0) {
        fail(path, errno);
    }
}

/// Finds out about a file that is to be replaced.
/// @return false if there is none
bool look_at(const fs::path& path, const fs::path& target, struct stat& status) {
    if (::stat(target.c_str(), &status) < 0) {
        return false; // whatever else is wrong shows when the new file is made
    }
    if (S_ISDIR(status.st_mode)) {
        fail(path, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(path, EOPNOTSUPP, ", which is not a regular file");
    }
    // Replacing a file takes no permission to write to it, but ignoring its protection would be a
    // surprise.
    check(path, ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS));
    return true;
}

fs::path target_of(const fs::path& path) {
    // The system would take what the path begins with.
    if (path.native().find('\0') != fs::path::string_type::npos) {
        fail(path, EINVAL);
    }
    return follow_links(path);
}

} // namespace

NewFile::NewFile(const fs::path& path, fs::path target) noexcept
    : path_(path), target_(std::move(target)) {}

// From the end of the other constructor on, the destructor cleans up.
NewFile::NewFile(const fs::path& path) : NewFile(path, target_of(path)) {
    struct stat old {};
    const bool replaces = look_at(path_, target_, old);
    open(replaces);
    if (replaces) {
        // Before there is a byte in it. Giving it away comes first, since that takes permissions
        // away. A process that may not give files away keeps this one.
        [[maybe_unused]] const int group_given = ::fchown(descriptor_, ~uid_t{0}, old.st_gid);
        [[maybe_unused]] const int owner_given = ::fchown(descriptor_, old.st_uid, ~gid_t{0});
        check(path_, ::fchmod(descriptor_, old.st_mode & 07777));
    }
}

NewFile::~NewFile() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
    if (!own_path_.empty()) {
        ::unlink(own_path_.c_str());
    }
}

void NewFile::open(bool replaces) {
    // Nobody else may look into a file until it has the permissions of the old one.
    const mode_t mode = replaces ? 0600 : 0666;
    do {
        fs::path own_path = target_.parent_path() / unlikely_name();
        descriptor_ = uninterrupted([&] {
            return ::open(own_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        });
        if (descriptor_ >= 0) {
            own_path_.swap(own_path); // which does not throw
        }
    } while (descriptor_ < 0 && errno == EEXIST);
    check(path_, descriptor_);
}

void NewFile::write(const char* bytes, std::size_t size) {
    while (size != 0) {
        const ssize_t count = uninterrupted([&] { return ::write(descriptor_, bytes, size); });
        check(path_, count);
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
}

void NewFile::take_place() {
    check(path_, uninterrupted([&] { return ::fsync(descriptor_); }));
    // A file that is closed stays closed, even if that fails.
    check(path_, ::close(std::exchange(descriptor_, -1)));
    check(path_, ::rename(own_path_.c_str(), target_.c_str()));
    own_path_.clear();
}

} // namespace foundation::json::detail
