/// @file
/// write_file(): a new file takes the place of the old one, or everything stays as it was.
#include <foundation/json/write.hpp>

#include "support/temporary_folder.hpp"
#include "support/write_outcome.hpp"

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <system_error>

namespace foundation::json {
namespace {

namespace fs = std::filesystem;
using test::content_of;
using test::make_file;
using test::TemporaryFolder;
using Names = std::set<std::string>;

Value some_value() {
    return Object{{"a", Array{1, "x"}}};
}

constexpr const char* some_text = "{\"a\":[1,\"x\"]}\n";

mode_t mode_of(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

ino_t inode_of(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_ino;
}

/// The what() of the std::system_error that write_file() throws.
std::string system_error_of(const fs::path& path, const Value& value = some_value()) {
    try {
        write_file(path, value);
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().category(), std::generic_category());
        return error.what();
    }
    return "(no std::system_error was thrown)";
}

// ---- Files that are written ----------------------------------------------------------------

TEST(WriteFile, MakesAFileOfTheTextAndALineEnd) {
    const TemporaryFolder folder;
    write_file(folder / "a.json", some_value());
    EXPECT_EQ(content_of(folder / "a.json"), some_text);
    write_file(folder / "b.json", some_value(), WriteOptions::indented(2));
    EXPECT_EQ(content_of(folder / "b.json"), "{\n  \"a\": [\n    1,\n    \"x\"\n  ]\n}\n");
    EXPECT_EQ(folder.names(), (Names{"a.json", "b.json"}));
}

TEST(WriteFile, WritesLargeTexts) {
    const TemporaryFolder folder;
    Array elements;
    for (int i = 0; i < 50000; ++i) {
        elements.emplace_back(i / 8.0);
    }
    elements.emplace_back(std::string(300000, 'x'));
    elements.emplace_back(std::string(100000, '\n'));
    write_file(folder / "a.json", elements);
    EXPECT_EQ(content_of(folder / "a.json"), write(elements) + "\n");
}

TEST(WriteFile, ReplacesAFile) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.json";
    make_file(path, std::string(1000, '?'));
    const ino_t old = inode_of(path);
    std::ifstream reader(path);
    write_file(path, some_value());
    EXPECT_EQ(content_of(path), some_text);
    EXPECT_NE(inode_of(path), old);
    EXPECT_EQ(folder.names(), Names{"a.json"});
    // Whoever reads the old file goes on with it.
    EXPECT_EQ(reader.get(), '?');
}

TEST(WriteFile, TakesARelativePath) {
    const TemporaryFolder folder;
    const fs::path previous = fs::current_path();
    fs::current_path(folder.path());
    write_file("a.json", some_value());
    fs::current_path(previous);
    EXPECT_EQ(content_of(folder / "a.json"), some_text);
}

TEST(WriteFile, TakesTheLongestNameThereIs) {
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    write_file(folder / name, some_value());
    EXPECT_EQ(folder.names(), Names{name});
}

// ---- Permissions ---------------------------------------------------------------------------

TEST(WriteFile, GivesANewFileThePermissionsThatTheProcessGivesNewFiles) {
    const TemporaryFolder folder;
    for (const mode_t mask : {022U, 077U, 0U, 027U}) {
        const fs::path path = folder / "a.json";
        const mode_t previous = ::umask(mask);
        write_file(path, some_value());
        ::umask(previous);
        EXPECT_EQ(mode_of(path), 0666 & ~mask);
        fs::remove(path);
    }
}

TEST(WriteFile, KeepsThePermissionsOfTheOldFile) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.json";
    for (const mode_t mode : {0600U, 0640U, 0644U, 0664U, 0777U, 0200U}) {
        make_file(path, "old");
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        write_file(path, some_value());
        EXPECT_EQ(mode_of(path), mode);
    }
}

TEST(WriteFile, KeepsTheOwnerOfTheOldFileWhereItMay) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.json";
    make_file(path, "old");
    if (::chown(path.c_str(), 65534, 65533) != 0) {
        GTEST_SKIP() << "only root may give files away";
    }
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    write_file(path, some_value());
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534U);
    EXPECT_EQ(status.st_gid, 65533U);
    EXPECT_EQ(mode_of(path), 0640U);
}

// ---- Symbolic links ------------------------------------------------------------------------

TEST(WriteFile, FollowsSymbolicLinks) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "inner");
    make_file(folder / "inner/a.json", "old");
    fs::create_symlink("inner/a.json", folder / "relative");
    fs::create_symlink(folder / "relative", folder / "absolute");
    write_file(folder / "absolute", some_value());
    EXPECT_EQ(content_of(folder / "inner/a.json"), some_text);
    EXPECT_TRUE(fs::is_symlink(folder / "relative"));
    EXPECT_TRUE(fs::is_symlink(folder / "absolute"));
    EXPECT_EQ(folder.names(), (Names{"absolute", "inner", "relative"}));
}

TEST(WriteFile, MakesTheFileThatASymbolicLinkLeadsTo) {
    const TemporaryFolder folder;
    fs::create_symlink("a.json", folder / "link");
    write_file(folder / "link", some_value());
    EXPECT_EQ(content_of(folder / "a.json"), some_text);
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
}

TEST(WriteFile, FollowsFortySymbolicLinksAndNoMore) {
    const TemporaryFolder folder;
    fs::create_symlink("a.json", folder / "1");
    for (int i = 2; i <= 41; ++i) {
        fs::create_symlink(std::to_string(i - 1), folder / std::to_string(i));
    }
    write_file(folder / "40", some_value());
    EXPECT_EQ(content_of(folder / "a.json"), some_text);
    const fs::path path = folder / "41";
    EXPECT_EQ(system_error_of(path),
              "cannot write '" + path.string() + "': Too many levels of symbolic links");
}

// ---- Errors --------------------------------------------------------------------------------

TEST(WriteFile, NamesTheFileAndTheReason) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "inner");
    fs::create_symlink("loop", folder / "loop");
    make_file(folder / "a.json", "old");
    const Names names = folder.names();
    const struct {
        std::string name;
        const char* reason;
    } rows[] = {
        {"none/a.json", "No such file or directory"},
        {"a.json/b.json", "Not a directory"},
        {"inner", "Is a directory"},
        {"inner/", "Is a directory"},
        {"none/", "No such file or directory"},
        {"loop", "Too many levels of symbolic links"},
        {std::string(256, 'n'), "File name too long"},
    };
    for (const auto& [name, reason] : rows) {
        const std::string path = folder.path().string() + "/" + name;
        EXPECT_EQ(system_error_of(path), "cannot write '" + path + "': " + reason);
    }
    EXPECT_EQ(system_error_of(""), "cannot write '': No such file or directory");
    EXPECT_EQ(folder.names(), names);
    EXPECT_TRUE(fs::is_empty(folder / "inner"));
}

TEST(WriteFile, RefusesAPathWithANul) {
    const TemporaryFolder folder;
    const std::string path = (folder / "a.json").string();
    EXPECT_EQ(system_error_of(path + std::string("\0.b", 3)),
              "cannot write '" + path + "\\u0000.b': Invalid argument");
    EXPECT_EQ(folder.names(), Names{});
}

TEST(WriteFile, RefusesWhatIsNotARegularFile) {
    const TemporaryFolder folder;
    const fs::path pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(system_error_of(pipe), "cannot write '" + pipe.string() +
                                         "', which is not a regular file: Operation not supported");
    EXPECT_EQ(system_error_of("/dev/null"),
              "cannot write '/dev/null', which is not a regular file: Operation not supported");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(folder.names(), Names{"pipe"});
}

TEST(WriteFile, LeavesTheOldFileWhereTheValueHasNoText) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.json";
    make_file(path, "old");
    Array large(20000, "some text of a certain length");
    large.emplace_back(std::nan(""));
    EXPECT_EQ(test::write_error([&] { write_file(path, large); }),
              "at /20000: NaN is not a JSON number: the option not_finite allows it");
    EXPECT_EQ(test::write_error([&] { write_file(folder / "b.json", Value()); }),
              "at the root: Undefined has no JSON text");
    EXPECT_EQ(content_of(path), "old");
    EXPECT_EQ(folder.names(), Names{"a.json"});
}

/// Runs a function in a process of its own, as a user without special rights.
/// @return what it returns
template <class Function>
int as_nobody(Function function) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool is_root = ::geteuid() == 0;
        if (is_root && (::setgid(65534) != 0 || ::setuid(65534) != 0)) {
            ::_exit(99);
        }
        ::_exit(function());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

/// Whether a user without rights of his own can list the folder, where those around it allow that.
bool is_open_to_nobody(const TemporaryFolder& folder) {
    return as_nobody([&] { return ::access(folder.path().c_str(), R_OK | X_OK) == 0 ? 0 : 1; }) ==
           0;
}

/// Whether write_file() throws a system_error of that code and leaves no trace in the folder.
int fails_without_trace(const TemporaryFolder& folder, const fs::path& path, std::errc code) {
    const Names names = folder.names();
    try {
        write_file(path, some_value());
    } catch (const std::system_error& error) {
        return error.code() == std::make_error_condition(code) && folder.names() == names ? 0 : 1;
    }
    return 2;
}

TEST(WriteFile, LeavesAReadOnlyFolderAsItIs) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.json";
    make_file(path, "old");
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    if (!is_open_to_nobody(folder)) {
        GTEST_SKIP() << "the folder of temporary files is not open to everybody";
    }
    EXPECT_EQ(as_nobody([&] {
                  return fails_without_trace(folder, path, std::errc::permission_denied) +
                         fails_without_trace(folder, folder / "b.json",
                                             std::errc::permission_denied);
              }),
              0);
    EXPECT_EQ(content_of(path), "old");
}

TEST(WriteFile, DoesNotReplaceAFileThatIsWriteProtected) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.json";
    make_file(path, "old");
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    if (!is_open_to_nobody(folder)) {
        GTEST_SKIP() << "the folder of temporary files is not open to everybody";
    }
    EXPECT_EQ(
        as_nobody([&] { return fails_without_trace(folder, path, std::errc::permission_denied); }),
        0);
    EXPECT_EQ(content_of(path), "old");
}

TEST(WriteFile, LeavesTheOldFileWhereTheDiskIsFull) {
    const TemporaryFolder folder;
    const Array large(20000, "some text of a certain length");
    // A file system of 64 kB, in a name space of the process's own.
    const pid_t child = ::fork();
    if (child == 0) {
        if (::unshare(CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER)) != 0 ||
            ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=64k") != 0) {
            ::_exit(99);
        }
        make_file(folder / "a.json", "old");
        try {
            write_file(folder / "a.json", large);
        } catch (const std::system_error& error) {
            ::_exit(error.code() == std::errc::no_space_on_device &&
                            content_of(folder / "a.json") == "old" &&
                            folder.names() == Names{"a.json"}
                        ? 0
                        : 1);
        }
        ::_exit(2);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 99) {
        GTEST_SKIP() << "this process may not mount a file system";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
} // namespace foundation::json
