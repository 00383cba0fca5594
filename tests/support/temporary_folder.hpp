/// @file
/// A folder of a test's own, which goes with it.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_TEMPORARY_FOLDER_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_TEMPORARY_FOLDER_HPP

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>

namespace foundation::json::test {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        const std::filesystem::path all = std::filesystem::temp_directory_path();
        do {
            path_ = all / ("foundation_json." + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// The names of what is in it, hidden files included.
    std::set<std::string> names() const {
        std::set<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            result.insert(entry.path().filename().string());
        }
        return result;
    }

private:
    std::filesystem::path path_;
};

inline std::string content_of(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

inline void make_file(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace foundation::json::test

#endif
