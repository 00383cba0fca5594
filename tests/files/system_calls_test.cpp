/// @file
/// write_file() where system calls fail, are interrupted, or write less than they are given. This
/// program replaces the functions of the C library that it calls.
#include <foundation/json/write.hpp>

#include "support/temporary_folder.hpp"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace {

/// What happens to the calls of one function.
struct Trouble {
    std::string function; ///< empty: no trouble
    int error = 0;
    int after = 0; ///< so many calls succeed before
    int times = 1; ///< how many calls fail then
    bool short_writes = false;
};

Trouble trouble;
std::vector<std::string> calls;
bool is_watching = false;

/// Notes a call, and says whether it shall fail.
bool fails(const char* function) {
    if (!is_watching) {
        return false;
    }
    calls.emplace_back(function);
    if (trouble.function != function || trouble.after-- > 0 || trouble.times <= 0) {
        return false;
    }
    --trouble.times;
    errno = trouble.error;
    return true;
}

} // namespace

// Past the C library's own functions, which these replace.

extern "C" int open(const char* path, int flags, ...) {
    std::va_list list;
    va_start(list, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;
    va_end(list);
    return fails("open") ? -1
                         : static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

extern "C" ssize_t write(int file, const void* bytes, std::size_t size) {
    if (fails("write")) {
        return -1;
    }
    const std::size_t count =
        is_watching && trouble.short_writes ? std::min<std::size_t>(size, 7) : size;
    return ::syscall(SYS_write, file, bytes, count);
}

extern "C" int fchmod(int file, mode_t mode) noexcept {
    return fails("fchmod") ? -1 : static_cast<int>(::syscall(SYS_fchmod, file, mode));
}

extern "C" int fchown(int file, uid_t owner, gid_t group) noexcept {
    return fails("fchown") ? -1 : static_cast<int>(::syscall(SYS_fchown, file, owner, group));
}

extern "C" int fsync(int file) {
    return fails("fsync") ? -1 : static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" int close(int file) {
    // Also where it fails, the file is closed.
    const auto result = static_cast<int>(::syscall(SYS_close, file));
    return fails("close") ? -1 : result;
}

extern "C" int rename(const char* from, const char* to) noexcept {
    return fails("rename")
               ? -1
               : static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0U));
}

namespace foundation::json {
namespace {

using test::content_of;
using Names = std::set<std::string>;

/// Watches the system calls as long as it exists.
class Watch {
public:
    explicit Watch(const Trouble& expected) {
        trouble = expected;
        calls.clear();
        is_watching = true;
    }
    ~Watch() { is_watching = false; }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
};

const Value& large_value() {
    static const Value value(Array(5000, "some text of a certain length"));
    return value;
}

/// The files that this process has open.
std::size_t open_files() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

TEST(WriteFileCalls, ComeInAnOrderThatLeavesAlwaysOneCompleteFile) {
    const test::TemporaryFolder folder;
    {
        const Watch watch({});
        write_file(folder / "a.json", 1);
    }
    EXPECT_EQ(calls, (std::vector<std::string>{"open", "write", "fsync", "close", "rename"}));
    {
        const Watch watch({});
        write_file(folder / "a.json", large_value());
    }
    EXPECT_EQ(calls, (std::vector<std::string>{"open", "fchown", "fchown", "fchmod", "write",
                                               "write", "write", "fsync", "close", "rename"}));
}

TEST(WriteFileCalls, LeaveNoTraceWhereOneFails) {
    const struct {
        Trouble trouble;
        const char* reason;
    } rows[] = {
        {{"open", EMFILE}, "Too many open files"},
        {{"open", EROFS}, "Read-only file system"},
        {{"fchmod", EPERM}, "Operation not permitted"},
        {{"write", ENOSPC}, "No space left on device"},
        {{"write", ENOSPC, 1}, "No space left on device"},
        {{"write", EDQUOT, 2}, "Disk quota exceeded"},
        {{"write", EIO}, "Input/output error"},
        {{"fsync", EIO}, "Input/output error"},
        {{"close", EIO}, "Input/output error"},
        {{"close", EINTR}, "Interrupted system call"},
        {{"rename", EBUSY}, "Device or resource busy"},
    };
    for (const auto& [expected, reason] : rows) {
        SCOPED_TRACE(expected.function + ": " + reason);
        const test::TemporaryFolder folder;
        const std::string path = (folder / "a.json").string();
        test::make_file(path, "old");
        const std::size_t files = open_files();
        std::string message;
        {
            const Watch watch(expected);
            try {
                write_file(path, large_value());
            } catch (const std::system_error& error) {
                message = error.what();
            }
        }
        EXPECT_EQ(message, "cannot write '" + path + "': " + reason);
        EXPECT_EQ(content_of(path), "old");
        EXPECT_EQ(folder.names(), Names{"a.json"});
        EXPECT_EQ(open_files(), files);
    }
}

TEST(WriteFileCalls, AreMadeAgainWhenASignalInterruptsThem) {
    for (const char* const function : {"open", "write", "fsync"}) {
        const test::TemporaryFolder folder;
        {
            const Watch watch({function, EINTR, 0, 3});
            write_file(folder / "a.json", large_value());
        }
        EXPECT_EQ(std::count(calls.begin(), calls.end(), function),
                  3 + (std::strcmp(function, "write") == 0 ? 3 : 1));
        EXPECT_EQ(content_of(folder / "a.json"), write(large_value()) + "\n");
    }
}

TEST(WriteFileCalls, GoOnWhereLessIsWritten) {
    const test::TemporaryFolder folder;
    {
        Trouble some;
        some.short_writes = true;
        const Watch watch(some);
        write_file(folder / "a.json", large_value());
    }
    EXPECT_GT(std::count(calls.begin(), calls.end(), "write"), 10000);
    EXPECT_EQ(content_of(folder / "a.json"), write(large_value()) + "\n");
}

TEST(WriteFileCalls, TakeAnotherNameForTheNewFileWhereOneIsTaken) {
    const test::TemporaryFolder folder;
    {
        const Watch watch({"open", EEXIST, 0, 5});
        write_file(folder / "a.json", 1);
    }
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "open"), 6);
    EXPECT_EQ(content_of(folder / "a.json"), "1\n");
    EXPECT_EQ(folder.names(), Names{"a.json"});
}

TEST(WriteFileCalls, MayFailToGiveTheFileAway) {
    const test::TemporaryFolder folder;
    test::make_file(folder / "a.json", "old");
    {
        const Watch watch({"fchown", EPERM, 0, 2});
        write_file(folder / "a.json", 1);
    }
    EXPECT_EQ(content_of(folder / "a.json"), "1\n");
}

} // namespace
} // namespace foundation::json
