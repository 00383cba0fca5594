// Files of any name, written and replaced, on every system.
#include <foundation/json/json.hpp>
#include <foundation/json/write.hpp>

#include "support/temporary_folder.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

namespace foundation::json::test {
namespace {

namespace fs = std::filesystem;

TEST(WriteFile, TakesNamesBeyondAscii) {
    const TemporaryFolder folder;
    const fs::path path = folder.path() / fs::u8path("\xC3\xA4\xE6\x97\xA5.json"); // ä日
    write_file(path, Value((Element("a\n"), Element(1))), WriteOptions::indented(1));
    EXPECT_EQ(content_of(path), "[\n \"a\\n\",\n 1\n]\n") << "and no other line ends";
    write_file(path, Value("\x1A"));
    EXPECT_EQ(content_of(path), "\"\\u001a\"\n");
    write_file(path, Value(std::string(3000000, 'x')));
    EXPECT_EQ(content_of(path).size(), 3000003u);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1)
        << "no other file is left";
}

TEST(WriteFile, NamesAFileBeyondAsciiThatCannotBeWritten) {
    const TemporaryFolder folder;
    const fs::path path = folder.path() / fs::u8path("none-\xC3\xA4") / "file.json";
    try {
        write_file(path, Value(1));
        ADD_FAILURE() << "was written";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.what(),
                  "cannot write '" + path.u8string() + "': No such file or directory");
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
}

TEST(WriteFile, ReplacesNoFolder) {
    const TemporaryFolder folder;
    try {
        write_file(folder.path(), Value(1));
        ADD_FAILURE() << "was written";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::is_a_directory);
    }
    EXPECT_TRUE(folder.names().empty());
}

} // namespace
} // namespace foundation::json::test
