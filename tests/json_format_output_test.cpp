/// @file
/// How json_format writes its text, in how many system calls and with what errors; how it words its
/// progress.
#include <large_pieces.hpp>
#include <progress.hpp>

#include <foundation/json/json.hpp>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace foundation::json;
using json_format::LargePieces;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// A connection that keeps the data of each system call separate.
class Packets {
public:
    Packets() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends_.data()), 0); }
    ~Packets() {
        close(ends_[0]);
        close_writing_end();
    }
    Packets(const Packets&) = delete;
    Packets& operator=(const Packets&) = delete;

    int writing_end() const { return ends_[1]; }

    void close_writing_end() {
        if (ends_[1] >= 0) {
            close(ends_[1]);
            ends_[1] = -1;
        }
    }

    /// Everything that was written; waits until all writing ends are closed.
    std::vector<std::string> all() { return take(0); }

    /// Everything that has been written so far.
    std::vector<std::string> waiting() { return take(MSG_DONTWAIT); }

private:
    std::vector<std::string> take(int flags) const {
        std::vector<std::string> packets;
        std::vector<char> buffer(1 << 20);
        for (;;) {
            const ssize_t size = recv(ends_[0], buffer.data(), buffer.size(), flags);
            if (size <= 0) {
                return packets;
            }
            packets.emplace_back(buffer.data(), static_cast<std::size_t>(size));
        }
    }

    std::array<int, 2> ends_{-1, -1};
};

std::string joined(const std::vector<std::string>& packets) {
    std::string text;
    for (const std::string& packet : packets) {
        text += packet;
    }
    return text;
}

/// A C file that writes into packets, which stay open after it is closed.
File file_into(const Packets& packets) {
    return {fdopen(dup(packets.writing_end()), "wb"), &std::fclose};
}

int error_of_finish(LargePieces& pieces) {
    try {
        pieces.finish("cannot write it");
    } catch (const std::system_error& error) {
        EXPECT_EQ(std::string(error.what()).rfind("cannot write it: ", 0), 0U) << error.what();
        return error.code().value();
    }
    return 0;
}

TEST(LargePieces, AreNotWrittenWhenTheStreamIsFlushed) {
    Packets packets;
    const File file = file_into(packets);
    LargePieces pieces(file.get());
    std::ostream stream(&pieces);
    stream << "one\n" << std::flush << "two\n" << std::flush;
    EXPECT_TRUE(stream.good());
    std::fflush(file.get());
    EXPECT_EQ(packets.waiting(), std::vector<std::string>{});

    pieces.finish("cannot write it");
    EXPECT_EQ(packets.waiting(), std::vector<std::string>{"one\ntwo\n"});
}

TEST(LargePieces, KeepEveryByteAtItsPosition) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        text += static_cast<char>(i % 251);
    }
    for (const std::size_t step : {1UL, 7UL, 65'535UL, 65'536UL, 65'537UL, 100'000UL}) {
        const File file(std::tmpfile(), &std::fclose);
        LargePieces pieces(file.get());
        std::ostream stream(&pieces);
        for (std::size_t at = 0; at < text.size(); at += step) {
            stream << text.substr(at, step);
        }
        pieces.finish("cannot write it");
        std::rewind(file.get());
        std::string read(text.size() + 1, '\0');
        read.resize(std::fread(read.data(), 1, read.size(), file.get()));
        EXPECT_TRUE(read == text) << step;
    }
}

TEST(LargePieces, ReportAnErrorOfTheLastPieceAtTheEnd) {
    const File file(std::fopen("/dev/full", "wb"), &std::fclose);
    LargePieces pieces(file.get());
    std::ostream stream(&pieces);
    stream << "text";
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(error_of_finish(pieces), ENOSPC);
}

TEST(LargePieces, MakeTheStreamBadAtAnError) {
    const File file(std::fopen("/dev/full", "wb"), &std::fclose);
    LargePieces pieces(file.get());
    std::ostream stream(&pieces);
    stream << std::string(1'000'000, 'x');
    EXPECT_TRUE(stream.bad());
    errno = 0;
    EXPECT_EQ(error_of_finish(pieces), ENOSPC);
}

TEST(LargePieces, ReportAnErrorAfterWhichWritingWorksAgain) {
    Packets packets;
    ASSERT_EQ(fcntl(packets.writing_end(), F_SETFL, O_NONBLOCK), 0);
    const File file = file_into(packets);
    LargePieces pieces(file.get());
    std::ostream stream(&pieces);
    while (stream.good()) {
        stream << std::string(1'000'000, 'x'); // until the connection is full
    }
    packets.waiting(); // there is room again
    stream.clear();
    stream << "what follows the gap";
    EXPECT_EQ(error_of_finish(pieces), EAGAIN);
    std::fflush(file.get());
    EXPECT_EQ(joined(packets.waiting()).find("what follows"), std::string::npos);
}

/// The output of the program for a file: a string for each system call.
std::vector<std::string> writes_of_program(std::vector<std::string> arguments) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    Packets packets;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, packets.writing_end(), STDOUT_FILENO);
    pid_t program = 0;
    EXPECT_EQ(posix_spawn(&program, argv[0], &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    packets.close_writing_end();
    std::vector<std::string> writes = packets.all();
    int status = -1;
    EXPECT_EQ(waitpid(program, &status, 0), program);
    EXPECT_EQ(status, 0);
    return writes;
}

TEST(JsonFormatProgram, WritesPrettyTextInAFewLargePieces) {
    const Value ones(std::vector<Value>(100'000, Value(1)));
    const std::string name = testing::TempDir() + "json_format_output_test.json";
    std::ofstream(name) << serialize(ones);

    const std::vector<std::string> compact = writes_of_program({JSON_FORMAT_PROGRAM, name});
    EXPECT_TRUE(joined(compact) == serialize(ones) + '\n');
    EXPECT_LT(compact.size(), 20U); // 0.2 MB

    const std::vector<std::string> pretty =
        writes_of_program({JSON_FORMAT_PROGRAM, "--pretty", name});
    EXPECT_TRUE(joined(pretty) == pretty_print(ones) + '\n');
    EXPECT_LT(pretty.size(), 50U); // 0.7 MB in 100,002 lines
    std::remove(name.c_str());
}

TEST(JsonFormatProgress, SaysHowMuchWasReadAndHowLongTheRestTakes) {
    const struct {
        double bytes;
        double size;
        double seconds;
        std::string line;
    } cases[] = {
        {0, 0, 2, "0 bytes read"},
        {999, 0, 2, "999 bytes read"},
        {1000, 0, 2, "1.0 kB read"},
        {64.04e6, 0, 2, "64.0 MB read"},
        {5e16, 0, 2, "50000.0 TB read"},
        {1.2e9, 10e9, 12, "1.2 GB of 10.0 GB, 12 %, 88 s left"},
        {10e9, 10e9, 100, "10.0 GB of 10.0 GB, 100 %, 0 s left"},
        {0, 10e9, 100, "0 bytes read"},
        {11e9, 10e9, 100, "11.0 GB read"}, // the file has grown
    };
    for (const auto& [bytes, size, seconds, line] : cases) {
        EXPECT_EQ(json_format::progress_line(bytes, size, seconds), line);
    }
}

} // namespace
