#include "serialization/new_file.hpp"

#include "system/files.hpp"
#include "text/visible_name.hpp"

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

std::string failure_text(const fs::path& path) {
    return "cannot write '" + visible_name(path) + "'";
}

[[noreturn]] void fail(const fs::path& path, int error, const char* why = "") {
    throw std::system_error(error, std::generic_category(), failure_text(path) + why);
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
                  static_cast<unsigned long>(system::process_id()), count++,
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
bool look_at(const fs::path& path, const fs::path& target, system::Status& status) {
    if (system::look_at(target, status) < 0) {
        return false; // whatever else is wrong shows when the new file is made
    }
    if (system::is_folder(status)) {
        fail(path, EISDIR);
    }
    if (!system::is_regular(status)) {
        fail(path, EOPNOTSUPP, ", which is not a regular file");
    }
    // Replacing a file takes no permission to write to it, but ignoring its protection would be a
    // surprise.
    check(path, system::check_writable(target));
    return true;
}

fs::path target_of(const fs::path& path) {
    // The system would take what the path begins with.
    if (path.native().find(fs::path::value_type()) != fs::path::string_type::npos) {
        fail(path, EINVAL);
    }
    return follow_links(path);
}

} // namespace

NewFile::NewFile(const fs::path& path, fs::path target) noexcept
    : path_(path), target_(std::move(target)) {}

// From the end of the other constructor on, the destructor cleans up.
NewFile::NewFile(const fs::path& path) : NewFile(path, target_of(path)) {
    system::Status old{};
    const bool replaces = look_at(path_, target_, old);
    open(replaces);
    if (replaces) {
        // Before there is a byte in it.
        check(path_, system::take_over_permissions(descriptor_, old));
    }
}

NewFile::~NewFile() {
    if (descriptor_ >= 0) {
        system::close(descriptor_);
    }
    if (!own_path_.empty()) {
        std::error_code ignored;
        fs::remove(own_path_, ignored);
    }
}

void NewFile::open(bool replaces) {
    // Nobody else may look into a file until it has the permissions of the old one.
    do {
        fs::path own_path = target_.parent_path() / unlikely_name();
        descriptor_ = uninterrupted([&] { return system::open_new(own_path, replaces); });
        if (descriptor_ >= 0) {
            own_path_.swap(own_path); // which does not throw
        }
    } while (descriptor_ < 0 && errno == EEXIST);
    check(path_, descriptor_);
}

void NewFile::write(const char* bytes, std::size_t size) {
    while (size != 0) {
        const std::int64_t count =
            uninterrupted([&] { return system::write(descriptor_, bytes, size); });
        check(path_, count);
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
}

void NewFile::take_place() {
    check(path_, uninterrupted([&] { return system::flush_to_disk(descriptor_); }));
    // A file that is closed stays closed, even if that fails.
    check(path_, system::close(std::exchange(descriptor_, -1)));
    std::error_code error;
    fs::rename(own_path_, target_, error);
    if (error) {
        throw std::system_error(error, failure_text(path_));
    }
    own_path_.clear();
}

} // namespace foundation::json::detail
