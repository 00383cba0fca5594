// The main function of the test programs. With --gtest_brief=1, as ctest starts them, a test that
// fails prints its first failures and no more, however often its loops come by.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <sstream>
#include <string>

namespace {

constexpr int shown_failures = 2;
constexpr int shown_lines = 12;
constexpr std::size_t shown_width = 400;

/// The beginning of a message, and of each of its lines.
std::string shortened(const std::string& message) {
    std::istringstream lines(message);
    std::string result;
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (++count > shown_lines) {
            return result + "...\n";
        }
        if (line.size() > shown_width) {
            line = line.substr(0, shown_width) + "...";
        }
        result += line + '\n';
    }
    return result;
}

class FirstFailures : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo&) override { failures_ = 0; }

    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.failed() && ++failures_ <= shown_failures) {
            const char* const file = result.file_name();
            std::printf("%s:%d: Failure\n%s", file != nullptr ? file : "unknown file",
                        result.line_number(), shortened(result.message()).c_str());
        }
    }

    void OnTestEnd(const testing::TestInfo& test) override {
        if (failures_ > shown_failures) {
            std::printf("and %d more failures of %s.%s\n", failures_ - shown_failures,
                        test.test_suite_name(), test.name());
        }
        std::fflush(stdout);
    }

private:
    int failures_ = 0;
};

} // namespace

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    if (GTEST_FLAG_GET(brief)) {
        testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
        delete listeners.Release(listeners.default_result_printer());
        listeners.Append(new FirstFailures);
    }
    return RUN_ALL_TESTS();
}
