// Parsing texts from streams and files, and values one after the other from a stream.
#include "support/describe.hpp"
#include "support/piecewise_stream.hpp"

#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <process.h>
#else
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ios>
#include <istream>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace foundation::json::test {
namespace {

const std::string document = "[1, \"two\", {\"three\": [4, 5.5]}, null]";
const std::string compact = "[1,\"two\",{\"three\":[4,5.5]},null]";

// ---- One document ----------------------------------------------------------------------------

TEST(ParseStream, ReadsToTheEndInPiecesOfEverySize) {
    for (const std::size_t piece : {1U, 2U, 3U, 7U, 100U}) {
        PiecewiseStream stream(document, piece);
        EXPECT_EQ(test::content_text(parse(stream)), compact) << piece;
        EXPECT_TRUE(stream.eof());
        EXPECT_FALSE(stream.fail());
    }
}

TEST(ParseStream, ReadsTextsOfEveryLength) {
    for (std::size_t size = 4090; size < 20000; size = size < 4105 ? size + 1 : size + 997) {
        const std::string text(size, 'x');
        PiecewiseStream stream('"' + text + '"', 1000);
        EXPECT_EQ(parse(stream), Value(text)) << size;
    }
}

TEST(ParseStream, ReadsFromThePositionOfTheStream) {
    std::istringstream stream("skipped [1]");
    std::string word;
    stream >> word;
    EXPECT_EQ(test::content_text(parse(stream)), "[1]");
    std::istringstream faulty("skipped\n[1 2]");
    std::getline(faulty, word);
    try {
        parse(faulty);
        ADD_FAILURE();
    } catch (const ParserException& error) {
        EXPECT_EQ(error.get_byte_position(), 3u);
        EXPECT_EQ(error.get_line_number(), 1u);
    }
}

TEST(ParseStream, IgnoresSkipwsAndThrowsNothingAtTheEnd) {
    std::istringstream stream("  \" a b \"  ");
    stream.exceptions(std::ios_base::eofbit | std::ios_base::failbit | std::ios_base::badbit);
    EXPECT_EQ(parse(stream), Value(" a b "));
    EXPECT_TRUE(stream.eof());
}

TEST(ParseStream, AFailureAfterAnyByteIsNotTakenForTheEnd) {
    for (std::size_t size = 0; size <= document.size(); ++size) {
        const std::string text = document.substr(0, size);
        PiecewiseStream throwing(text, 3, StreamFailure::by_throwing);
        EXPECT_THROW(parse(throwing), BufferFailure) << size;
        EXPECT_TRUE(throwing.bad());
        PiecewiseStream bad(text, 3, StreamFailure::by_turning_bad);
        EXPECT_THROW(parse(bad), std::ios_base::failure) << size;
        EXPECT_TRUE(bad.bad());
    }
}

/// The message for a stream that is not good, without the text that the standard library adds.
std::string refusal(std::istream& stream) {
    try {
        parse(stream);
    } catch (const std::ios_base::failure& error) {
        const std::string what = error.what();
        return what.substr(0, what.find(':'));
    }
    return "was read";
}

TEST(ParseStream, AStreamThatIsNotGoodIsNotRead) {
    const std::string failed =
        "the stream to read from has failed, or is of a file that could not be opened";
    std::istringstream stream("1");
    stream.setstate(std::ios_base::failbit);
    EXPECT_EQ(refusal(stream), failed);
    std::ifstream missing("/no/such/file");
    EXPECT_EQ(refusal(missing), failed);
    std::istream no_buffer(nullptr);
    EXPECT_EQ(refusal(no_buffer), failed);
}

// Whatever the stream itself would throw.
TEST(ParseStream, AStreamThatIsNotGoodHasItsOwnMessage) {
    using std::ios_base;
    const std::string failed =
        "the stream to read from has failed, or is of a file that could not be opened";
    for (const auto exceptions : {ios_base::failbit, ios_base::badbit, ios_base::eofbit,
                                  ios_base::failbit | ios_base::badbit | ios_base::eofbit}) {
        std::istringstream at_end("1");
        parse(at_end);
        EXPECT_THROW(at_end.exceptions(exceptions | ios_base::eofbit), ios_base::failure);
        EXPECT_EQ(refusal(at_end), "the stream to read from is at its end already");
        EXPECT_TRUE(at_end.fail()) << "as after every read from a stream at its end";

        std::istringstream stream("1");
        stream.setstate(ios_base::failbit);
        EXPECT_THROW(stream.exceptions(exceptions | ios_base::failbit), ios_base::failure);
        EXPECT_EQ(refusal(stream), failed);
        Value value;
        try {
            ValueStream(stream).next(value);
            ADD_FAILURE() << "was read";
        } catch (const ios_base::failure& error) {
            EXPECT_EQ(std::string(error.what()).substr(0, failed.size()), failed);
        }
    }
}

#ifndef _LIBCPP_VERSION // there, what the tied stream throws leaves the one that is read unchanged

/// Fails to flush, which a stream that is tied to it notices.
class Unflushable : public std::stringbuf {
    int sync() override { throw BufferFailure(); }
};

TEST(ParseStream, AStreamWhoseTiedStreamFailsHasItsOwnMessage) {
    using std::ios_base;
    for (const auto exceptions : {ios_base::goodbit, ios_base::failbit}) {
        Unflushable buffer;
        std::ostream tied(&buffer);
        tied.exceptions(ios_base::badbit);
        std::istringstream with_tie("1");
        with_tie.tie(&tied);
        with_tie.exceptions(exceptions);
        EXPECT_EQ(refusal(with_tie),
                  "the stream to read from has failed, or is of a file that could not be opened");
    }
}

#endif

TEST(ParseStream, AStreamAtItsEndIsNotReadAgain) {
    std::istringstream stream("1");
    parse(stream);
    EXPECT_EQ(refusal(stream), "the stream to read from is at its end already");
}

// ---- Files -----------------------------------------------------------------------------------

class ParseFile : public testing::Test {
protected:
    ParseFile()
        : folder_(std::filesystem::temp_directory_path() /
                  ("foundation_json_parser_tests." + std::to_string(getpid()))) {
        std::filesystem::create_directories(folder_);
    }
    ~ParseFile() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
        return folder_ / name;
    }

    std::filesystem::path path(const std::string& name) const { return folder_ / name; }

private:
    std::filesystem::path folder_;
};

std::string system_error_of(const std::filesystem::path& path) {
    try {
        parse_file(path);
    } catch (const std::system_error& error) {
        return error.what();
    }
    return "was read";
}

TEST_F(ParseFile, ReadsRegularFiles) {
    EXPECT_EQ(test::content_text(parse_file(write("a.json", document))), compact);
    EXPECT_EQ(test::content_text(parse_file(write("long", "\"" + std::string(100000, 'x') + "\"")))
                  .size(),
              100002u);
    ParseOptions options;
    options.comments = true;
    EXPECT_EQ(parse_file(write("b", "1 // one"), options), Value(1));
    EXPECT_THROW(parse_file(write("empty", "")), ParserException);
}

#ifndef _WIN32

TEST_F(ParseFile, ReadsFilesWhoseSizeIsNotThatOfTheirText) {
    // A file whose content the kernel generates when it is read.
    const Value value = parse_file("/proc/sys/kernel/pid_max");
    EXPECT_GE(static_cast<int>(value), 300);
}

TEST_F(ParseFile, ReadsPipes) {
    const std::filesystem::path pipe = path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&pipe] {
        std::ofstream stream(pipe, std::ios::binary);
        for (const char byte : document) {
            stream << byte << std::flush;
        }
    });
    const Value value = parse_file(pipe);
    writer.join();
    EXPECT_EQ(test::content_text(value), compact);
}

/// Interrupts a thread by signals again and again during its lifetime.
class Interruptions {
public:
    explicit Interruptions(pthread_t thread) {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        sigaction(SIGUSR1, &action, &before_);
        sender_ = std::thread([this, thread] {
            while (!done_) {
                pthread_kill(thread, SIGUSR1);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
    }
    ~Interruptions() {
        done_ = true;
        sender_.join();
        sigaction(SIGUSR1, &before_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

private:
    struct sigaction before_ {};
    std::atomic<bool> done_{false};
    std::thread sender_;
};

TEST_F(ParseFile, GoesOnAfterSignals) {
    const std::filesystem::path pipe = path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const Interruptions interruptions(pthread_self());
    const auto pause = [] { std::this_thread::sleep_for(std::chrono::milliseconds(50)); };
    std::thread writer([&] {
        pause(); // while the pipe is being opened
        const int end = ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC);
        pause(); // while it is being read
        EXPECT_EQ(::write(end, document.data(), document.size()),
                  static_cast<ssize_t>(document.size()));
        ::close(end);
    });
    const Value value = parse_file(pipe);
    writer.join();
    EXPECT_EQ(serialize(value), compact);
}

TEST_F(ParseFile, ReadsStandardInput) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    ASSERT_EQ(::write(ends[1], document.data(), document.size()),
              static_cast<ssize_t>(document.size()));
    close(ends[1]);
    const int before = dup(0);
    dup2(ends[0], 0);
    const Value value = parse_file("/dev/stdin");
    dup2(before, 0);
    close(before);
    close(ends[0]);
    EXPECT_EQ(test::content_text(value), compact);
}

#endif

TEST_F(ParseFile, TakesNamesBeyondAscii) {
    const std::filesystem::path file = write("a", "[1]\x1A\r\n");
    const std::filesystem::path named =
        file.parent_path() / std::filesystem::u8path("\xC3\xA4\xE6\x97\xA5.json"); // ä日
    std::ofstream(named, std::ios::binary) << "[\"a\",\r\n" << std::string(100000, ' ') << "1]";
    EXPECT_EQ(parse_file(named), Value((Element("a"), Element(1))));
    // All bytes count: no end of the text but that of the file, and no change of line ends.
    try {
        parse_file(file);
        ADD_FAILURE() << "was accepted";
    } catch (const ParserException& error) {
        EXPECT_EQ(error.get_byte_position(), 3u);
    }
    std::filesystem::remove(named);
    EXPECT_EQ(system_error_of(named),
              "cannot read '" + named.u8string() + "': No such file or directory");
}

TEST_F(ParseFile, NamesAFileThatCannotBeRead) {
    EXPECT_EQ(system_error_of(path("none")),
              "cannot read '" + path("none").string() + "': No such file or directory");
    EXPECT_EQ(system_error_of(""), "cannot read '': No such file or directory");
#ifdef _WIN32
    const std::string no_folder = "Permission denied";
    const std::string no_name = "Invalid argument";
#else
    const std::string no_folder = "Is a directory";
    const std::string no_name = "No such file or directory";
#endif
    EXPECT_EQ(system_error_of(path(".")), "cannot read '" + path(".").string() + "': " + no_folder);
    EXPECT_EQ(system_error_of("/no/a\n\x1B\"\\"),
              "cannot read '/no/a\\u000a\\u001b\"\\': " + no_name);
}

// The system would read the file whose name ends there.
TEST_F(ParseFile, ReadsNoFileOfANameWithANul) {
    const std::string name = write("a.json", "1").string();
    EXPECT_EQ(system_error_of(name + std::string("\0.txt", 5)),
              "cannot read '" + name + "\\u0000.txt': Invalid argument");
    EXPECT_EQ(system_error_of(name + '\0'), "cannot read '" + name + "\\u0000': Invalid argument");
    EXPECT_EQ(system_error_of(std::string(1, '\0')), "cannot read '\\u0000': Invalid argument");
    try {
        parse_file(name + '\0');
        ADD_FAILURE() << "was read";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::invalid_argument);
    }
}

// ---- Values one after the other --------------------------------------------------------------

/// All values of a stream as compact text, and errors as their line, column and message.
std::vector<std::string> all_values(ValueStream values) {
    std::vector<std::string> result;
    Value value;
    for (bool more = true; more;) {
        try {
            more = values.next(value);
            if (more) {
                result.push_back(test::content_text(value));
            }
        } catch (const ParserException& error) {
            result.push_back(std::to_string(error.get_line_number()) + ':' +
                             std::to_string(error.get_column()) + ": " + error.what());
        }
    }
    return result;
}

std::vector<std::string> all_values(const std::string& text, std::size_t piece,
                                    const ParseOptions& options = {}) {
    PiecewiseStream stream(text, piece);
    return all_values(ValueStream(stream, options));
}

using Texts = std::vector<std::string>;

TEST(ValueStream, GivesValuesOneAfterTheOther) {
    for (const std::size_t piece : {1U, 2U, 5U, 1000U}) {
        EXPECT_EQ(all_values("", piece), Texts{});
        EXPECT_EQ(all_values(" \r\n\t", piece), Texts{});
        EXPECT_EQ(all_values("{\"a\":1}\n[2]\r\n\"3\"\n4\ntrue\nnull\n", piece),
                  (Texts{"{\"a\":1}", "[2]", "\"3\"", "4", "true", "null"}));
        EXPECT_EQ(all_values("{}{}[][]\"a\"\"b\"1 2 true[]null\"\"-1\"x\"", piece),
                  (Texts{"{}", "{}", "[]", "[]", "\"a\"", "\"b\"", "1", "2", "true", "[]", "null",
                         "\"\"", "-1", "\"x\""}));
        EXPECT_EQ(all_values("\n\n[1,\n2]\n\n\n12.5e1", piece), (Texts{"[1,2]", "125"}));
        EXPECT_EQ(all_values("\xEF\xBB\xBF[1]\n2", piece), (Texts{"[1]", "2"}));
        EXPECT_EQ(all_values("\"\\u00e9\\\"]\" [\"[\\\\\"]", piece),
                  (Texts{"\"\xC3\xA9\\\"]\"", "[\"[\\\\\"]"}));
    }
}

TEST(ValueStream, TakesTheOptions) {
    ParseOptions options;
    options.comments = true;
    options.trailing_commas = true;
    for (const std::size_t piece : {1U, 3U, 1000U}) {
        EXPECT_EQ(all_values("// a\n1 /* b */ [2, /*]*/ 3,] // c", piece, options),
                  (Texts{"1", "[2,3]"}));
        EXPECT_EQ(all_values("{\"a\"://\xC3\xA9\n1,}/***/2", piece, options),
                  (Texts{"{\"a\":1}", "2"}));
    }
    const char* const texts[] = {
        "[1] /* \xC3\xA9 *\xE3\x81\x82* */ [2 // c",
        "[ /x",
        "1 /",
        "[/* / * / */ 1]",
        "[1 /*",
        "[1] // \xFF",
        "[1] /* *\x80",
        "// one \xC3",
    };
    for (const std::string text : texts) {
        const Texts whole = all_values(text, 1000, options);
        for (const std::size_t piece : {1U, 2U, 3U}) {
            EXPECT_EQ(all_values(text, piece, options), whole) << text;
        }
    }
    EXPECT_EQ(
        all_values(texts[0], 1, options),
        (Texts{"[1]", "1:24: the text ends within the array that begins at line 1, column 17"}));
    EXPECT_EQ(all_values(texts[1], 1, options),
              (Texts{"1:4: found 'x' after '/': a comment begins with // or /*"}));
    options.max_depth = 1;
    EXPECT_EQ(
        all_values("[[1]]\n[1]", 3, options),
        (Texts{"1:2: nested deeper than 1 levels: the option max_depth is the limit", "[1]"}));
}

TEST(ValueStream, GoesOnWithTheNextLineAfterAnError) {
    for (const std::size_t piece : {1U, 2U, 7U, 1000U}) {
        EXPECT_EQ(all_values("1\n[1,x] 3\n2\n", piece),
                  (Texts{"1",
                         "2:4: found 'x' where a value should begin: strings are written in double "
                         "quotes",
                         "2"}));
        EXPECT_EQ(all_values("\"a\n\"b\"\n", piece),
                  (Texts{"1:3: the line ends before the closing quote of a string, where a line "
                         "end is written \\n",
                         "\"b\""}));
        EXPECT_EQ(all_values("[1\n2]\n3", piece),
                  (Texts{"2:1: a comma is missing before '2'", "3"}));
        EXPECT_EQ(all_values("1e999\n2", piece),
                  (Texts{"1:1: the number 1e999 is too large for a double", "2"}));
        EXPECT_EQ(all_values("nul\nnull", piece),
                  (Texts{"1:4: found 'nul' where null may be meant, or a string in double quotes",
                         "null"}));
        EXPECT_EQ(all_values("]\n}\n,\n1", piece),
                  (Texts{"1:1: found ']' without a '[' before it",
                         "2:1: found '}' without a '{' before it",
                         "3:1: found ',' where a value should begin", "1"}));
        EXPECT_EQ(all_values("1 x 2", piece),
                  (Texts{"1", "1:3: found 'x' where a value should begin: strings are written in "
                              "double quotes"}));
    }
}

TEST(ValueStream, FindsWhatCannotFollowANumber) {
    for (const std::string number : {"1", "0", "-20", "1.5", "1e5", "1.5E-7"}) {
        for (const std::string follower : {"+", "-", "_", "x"}) {
            for (const std::size_t piece : {1U, 1000U}) {
                const Texts found = all_values(number + follower + "\n2", piece);
                ASSERT_EQ(found.size(), 2U) << number << follower;
                const std::string place = "1:" + std::to_string(number.size() + 1) + ": ";
                EXPECT_EQ(found[0].substr(0, place.size()), place) << number << follower;
                EXPECT_EQ(found[1], "2") << number << follower;
            }
        }
    }
    for (const std::string number : {"1.5", "1e5", "0.25E+1"}) {
        const Texts found = all_values(number + ".\n2", 1);
        ASSERT_EQ(found.size(), 2U) << number;
        const std::string place = "1:" + std::to_string(number.size() + 1) + ": ";
        EXPECT_EQ(found[0].substr(0, place.size()), place) << number;
    }
}

TEST(ValueStream, GoesOnWithTheNextLineHoweverLongTheRestOfALineIs) {
    for (const std::size_t length : {0U, 1U, 159U, 160U, 161U, 1000U, 10000U}) {
        const std::string rest(length, ' ');
        for (std::size_t piece = 1; piece != 40; ++piece) {
            EXPECT_EQ(all_values("]" + rest + "\n2\n3", piece),
                      (Texts{"1:1: found ']' without a '[' before it", "2", "3"}))
                << length << " bytes in pieces of " << piece;
            EXPECT_EQ(all_values("1e999 " + rest + "x\n2\n3", piece),
                      (Texts{"1:1: the number 1e999 is too large for a double", "2", "3"}))
                << length << " bytes in pieces of " << piece;
        }
        EXPECT_EQ(all_values("]" + rest, 7), (Texts{"1:1: found ']' without a '[' before it"}))
            << length;
    }
}

TEST(ValueStream, LocatesEveryOneOfManyErrors) {
    std::string text;
    Texts expected;
    std::vector<std::size_t> positions;
    for (std::size_t i = 0; i != 200; ++i) {
        const std::string before(i * 7 % 400, i % 3 == 0 ? '\n' : ' ');
        text += before + "[\xC3\xA9 1]" + before;
        positions.push_back(text.size() - before.size() - 5);
        text += i % 5 == 0 ? "{}\n" : "\n[]\n";
    }
    for (const std::size_t piece : {1U, 100U, 100000U}) {
        PiecewiseStream stream(text, piece);
        ValueStream values(stream);
        Value value;
        for (const std::size_t position : positions) {
            for (bool failed = false; !failed;) {
                try {
                    ASSERT_TRUE(values.next(value));
                } catch (const ParserException& error) {
                    const std::string_view read = std::string_view(text).substr(0, position);
                    const std::size_t line_begin = read.rfind('\n') + 1; // 0 if there is none
                    EXPECT_EQ(error.get_byte_position(), position);
                    EXPECT_EQ(error.get_line_number(), 1 + static_cast<std::size_t>(std::count(
                                                               read.begin(), read.end(), '\n')));
                    EXPECT_EQ(error.get_column(), position - line_begin + 1);
                    EXPECT_EQ(error.get_quoted_byte_position(),
                              std::min<std::size_t>(position - line_begin, 160));
                    failed = true;
                }
            }
        }
    }
}

TEST(ValueStream, ATextThatEndsWithinAValueIsAnErrorAndThenTheEnd) {
    for (const std::size_t piece : {1U, 1000U}) {
        EXPECT_EQ(
            all_values("1\n[1,\n2", piece),
            (Texts{"1", "3:2: the text ends within the array that begins at line 2, column 1"}));
        EXPECT_EQ(
            all_values(std::string(2000, '\n') + "[1] [{\n", piece),
            (Texts{"[1]",
                   "2002:1: the text ends within the object that begins at line 2001, column 6"}));
        EXPECT_EQ(all_values("\"a", piece), (Texts{"1:3: the text ends within a string"}));
        EXPECT_EQ(all_values("12.", piece), (Texts{"1:4: the text ends within a number"}));
        EXPECT_EQ(all_values("tru", piece), (Texts{"1:4: the text ends within 'tru'"}));
    }
}

TEST(ValueStream, PositionsCountFromTheStartOfTheStream) {
    std::string text = "\xEF\xBB\xBF";
    for (int i = 0; i != 1000; ++i) {
        text += "{\"line\": \"\xC3\xA9\xC3\xA9\"} ";
        text += i % 10 == 9 ? "\n" : "";
    }
    text += "[true, x]";
    const std::size_t position = text.size() - 2;
    for (const std::size_t piece : {1U, 100U, 100000U}) {
        PiecewiseStream stream(text, piece);
        ValueStream values(stream);
        Value value;
        for (int i = 0; i != 1000; ++i) {
            ASSERT_TRUE(values.next(value));
        }
        try {
            values.next(value);
            ADD_FAILURE();
        } catch (const ParserException& error) {
            EXPECT_EQ(error.get_byte_position(), position);
            EXPECT_EQ(error.get_line_number(), 101u);
            EXPECT_EQ(error.get_column(), 8u);
            EXPECT_EQ(error.get_quoted_text(), "[true, x]");
            EXPECT_EQ(error.get_quoted_byte_position(), 7u);
        }
        EXPECT_FALSE(values.next(value));
    }
}

TEST(ValueStream, QuotesTheWholeLineOfAnError) {
    PiecewiseStream stream("1 2 [x, 3] 4\n5");
    ValueStream values(stream);
    Value value;
    ASSERT_TRUE(values.next(value));
    ASSERT_TRUE(values.next(value));
    try {
        values.next(value);
        ADD_FAILURE();
    } catch (const ParserException& error) {
        EXPECT_EQ(error.get_quoted_text(), "1 2 [x, 3] 4");
        EXPECT_EQ(error.get_quoted_byte_position(), 5u);
    }
    ASSERT_TRUE(values.next(value));
    EXPECT_EQ(value, Value(5));
}

TEST(ValueStream, TakesNoMoreThanAValueNeeds) {
    struct Case {
        std::string value;
        std::size_t behind; ///< bytes beyond the value that are needed to find its end
    };
    const Case cases[] = {{"[1]", 0}, {"{\"a\":[]}", 0}, {"\"a\"", 0}, {"12", 1}, {"true", 1}};
    for (const Case& c : cases) {
        // The buffer would throw at the byte after those.
        PiecewiseStream stream(c.value + std::string(c.behind, '\n'), 1,
                               StreamFailure::by_throwing);
        ValueStream values(stream);
        Value value;
        EXPECT_TRUE(values.next(value)) << c.value;
        EXPECT_EQ(test::content_text(value), c.value);
        EXPECT_THROW(values.next(value), BufferFailure);
        EXPECT_TRUE(stream.bad());
    }
}

TEST(ValueStream, AFailureIsNotTakenForTheEnd) {
    for (std::size_t size = 0; size <= document.size(); ++size) {
        PiecewiseStream bad(document.substr(0, size), 3, StreamFailure::by_turning_bad);
        ValueStream values(bad);
        Value value;
        if (size == document.size()) {
            EXPECT_TRUE(values.next(value));
        }
        EXPECT_THROW(values.next(value), std::ios_base::failure) << size;
        EXPECT_THROW(values.next(value), std::ios_base::failure) << size;
    }
}

TEST(ValueStream, RefusesTheSameUtf8AsTheParser) {
    for (int lead = 0x80; lead != 0x100; ++lead) {
        for (const int second : {0x22, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0}) {
            for (const char* const rest : {"", "\x80", "\x80\xBF", "\x80\x22"}) {
                const std::string text = std::string("\"") + static_cast<char>(lead) +
                                         static_cast<char>(second) + rest + '"';
                std::string expected;
                try {
                    expected = serialize(parse(text));
                } catch (const ParserException& error) {
                    expected = "1:" + std::to_string(error.get_column()) + ": " + error.what();
                }
                if (expected.find("after the end") == std::string::npos &&
                    expected.find("after a string") == std::string::npos) {
                    EXPECT_EQ(all_values(text, 1), Texts{expected}) << text;
                }
            }
        }
    }
}

TEST(ValueStream, AnErrorWhoseLineCannotBeReadIsReportedOnceTheStreamWorksAgain) {
    PiecewiseStream stream("[1 2", 1, StreamFailure::by_throwing);
    ValueStream values(stream);
    Value value;
    EXPECT_THROW(values.next(value), BufferFailure);
    EXPECT_THROW(values.next(value), std::ios_base::failure);
    std::stringbuf rest("] 3\n4");
    stream.rdbuf(&rest); // clears the state, too
    EXPECT_THROW(values.next(value), ParserException);
    EXPECT_TRUE(values.next(value));
    EXPECT_EQ(value, Value(4));
}

// ---- Limits ----------------------------------------------------------------------------------

const std::string too_long = "longer than 10 bytes: the argument max_bytes is the limit";

TEST(MaxBytes, RefusesATextThatIsLonger) {
    for (const std::size_t piece : {1U, 3U, 1000U}) {
        PiecewiseStream fits("[1,\n2,  3 ]", piece);
        EXPECT_EQ(parse(fits, {}, 11), Value((Element(1), Element(2), Element(3))));
        EXPECT_TRUE(fits.eof());
        PiecewiseStream longer("[1,\n2,  3 ]", piece);
        try {
            parse(longer, {}, 10);
            ADD_FAILURE() << "was accepted";
        } catch (const ParserException& error) {
            EXPECT_EQ(error.what(), too_long);
            EXPECT_EQ(error.get_parse_result(), UNEXPECTED_END_OF_INPUT);
            EXPECT_EQ(error.get_byte_position(), 10u);
            EXPECT_EQ(error.get_line_number(), 2u);
            EXPECT_EQ(error.get_column(), 7u);
        }
        EXPECT_TRUE(longer.good()) << "it is not at its end";
    }
    PiecewiseStream empty("", 1);
    EXPECT_THROW(parse(empty, {}, 0), ParserException);
    PiecewiseStream one("1", 1);
    EXPECT_EQ(parse(one, {}, 1), Value(1));
}

TEST(MaxBytes, TakesOneByteMoreThanTheLimitFromAStream) {
    PiecewiseStream stream("[1,2,3,4,5,6,7,8]", 1);
    EXPECT_THROW(parse(stream, {}, 10), ParserException);
    EXPECT_EQ(stream.get(), '6');
}

TEST_F(ParseFile, RefusesAFileThatIsLongerThanALimit) {
    const std::filesystem::path file = write("file", "[1, 2, 3]\n");
    EXPECT_EQ(parse_file(file, {}, 10), Value((Element(1), Element(2), Element(3))));
    try {
        parse_file(file, {}, 9);
        ADD_FAILURE() << "was accepted";
    } catch (const ParserException& error) {
        EXPECT_STREQ(error.what(), "longer than 9 bytes: the argument max_bytes is the limit");
        EXPECT_EQ(error.get_byte_position(), 9u);
    }
#ifndef _WIN32
    // Nothing that ends later is read.
    EXPECT_THROW(parse_file("/dev/zero", {}, 1000), ParserException);
#endif
}

TEST(MaxBytes, RefusesAValueOfAStreamThatIsLonger) {
    for (const std::size_t piece : {1U, 3U, 1000U}) {
        const auto values_of = [piece](const std::string& text) {
            PiecewiseStream stream(text, piece);
            return all_values(ValueStream(stream, {}, 10));
        };
        EXPECT_EQ(values_of("[1,2,3,4]\n        [1,2,3,45] \"12345678\" 1234567890\n"),
                  (Texts{"[1,2,3,4]", "[1,2,3,45]", "\"12345678\"", "1.23456789E+9"}));
        EXPECT_EQ(values_of("1\n [1,2,3,456]\n2"), (Texts{"1", "2:12: " + too_long, "2"}));
        EXPECT_EQ(values_of("\"123456789\"\n2"), (Texts{"1:11: " + too_long, "2"}));
        EXPECT_EQ(values_of("12345678901\n2"), (Texts{"1:11: " + too_long, "2"}));
        EXPECT_EQ(values_of("[          \n3]\n2"),
                  (Texts{"1:11: " + too_long, "3", "2:2: found ']' without a '[' before it", "2"}));
        // What is wrong within the limit is told, and not what is behind it.
        EXPECT_EQ(values_of("[1,2,x,4,5,6]\n2"),
                  (Texts{"1:6: found 'x' where a value should begin: strings are written in double "
                         "quotes",
                         "2"}));
        EXPECT_EQ(values_of("[1,2,3,4,5,x]\n2"), (Texts{"1:11: " + too_long, "2"}));
    }
}

TEST(ValueStream, LeavesTheCallersValueUnchangedWhereThereIsNone) {
    PiecewiseStream stream("x\n");
    ValueStream values(stream);
    Value value = "before";
    EXPECT_THROW(values.next(value), ParserException);
    EXPECT_FALSE(values.next(value));
    EXPECT_EQ(value, Value("before"));
}

TEST(ValueStream, AMovedStreamGoesOnWhereTheOtherWas) {
    PiecewiseStream stream("1 2 3 ");
    ValueStream values(stream);
    Value value;
    EXPECT_TRUE(values.next(value));
    ValueStream moved(std::move(values));
    EXPECT_TRUE(moved.next(value));
    EXPECT_EQ(value, Value(2));
    PiecewiseStream other("4");
    moved = ValueStream(other);
    EXPECT_TRUE(moved.next(value));
    EXPECT_EQ(value, Value(4));
}

#ifndef _WIN32

TEST(ValueStream, WaitsForNoMoreOfAPipeThanAValueAndItsLine) {
#ifdef _LIBCPP_VERSION
    GTEST_SKIP() << "a std::ifstream of libc++ waits until its buffer is full";
#endif
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    std::ifstream stream("/dev/fd/" + std::to_string(ends[0]));
    ValueStream values(stream);
    Value value;
    for (const std::string line : {"1\n", "[2]", "\"three\"", "{\"a\":\n[4]}", "true\n", "\n5 "}) {
        ASSERT_EQ(::write(ends[1], line.data(), line.size()), static_cast<ssize_t>(line.size()));
        ASSERT_TRUE(values.next(value)) << line;
    }
    ::close(ends[1]);
    EXPECT_FALSE(values.next(value));
    ::close(ends[0]);
}

#endif

} // namespace
} // namespace foundation::json::test
