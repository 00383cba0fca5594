/// @file
/// Reports what large values cost: time, and the most memory the process has had.
///
/// Usage: large_values
///
/// Each case runs in a process of its own: an array of ten million numbers, an object of a million
/// members, a string of 1 GiB, and a text of more than 4 GiB onto a stream that only counts. The
/// program needs up to 4 GiB of memory. The exit status is 1 if a text has a wrong length.
#include <foundation/json/json.hpp>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

using namespace foundation::json;

class CountingBuffer : public std::streambuf {
public:
    std::uint64_t count() const { return count_; }

private:
    int_type overflow(int_type byte) override {
        ++count_;
        return traits_type::not_eof(byte);
    }

    std::streamsize xsputn(const char*, std::streamsize size) override {
        count_ += static_cast<std::uint64_t>(size);
        return size;
    }

    std::uint64_t count_ = 0;
};

std::uint64_t length_of_text(const Value& value) {
    CountingBuffer counter;
    std::ostream stream(&counter);
    Serializer().write(stream, value);
    return counter.count();
}

constexpr std::size_t mebibyte = std::size_t{1} << 20;

struct Case {
    const char* name;
    Value (*make)();
    std::uint64_t length; ///< of the text
};

const Case cases[] = {
    {"an array of 10,000,000 numbers",
     [] {
         Value value = std::vector<Value>();
         for (int i = 0; i < 10000000; ++i) {
             value.push(1.5);
         }
         return value;
     },
     // The numbers, the commas between them, and the brackets.
     30000000 + 9999999 + 2},
    {"an object of 1,000,000 members",
     [] {
         Value value = std::map<std::string, Value>();
         for (int i = 0; i < 1000000; ++i) {
             value["member " + std::to_string(1000000 + i)] = true;
         }
         return value;
     },
     // Names of 14 bytes in quotes, colons and words; commas; braces.
     1000000 * (16 + 1 + 4) + 999999 + 2},
    {"a string of 1 GiB", [] { return Value(std::string(1024 * mebibyte, 'x')); },
     1024 * mebibyte + 2},
    {"a text of more than 4 GiB",
     [] {
         // Every byte becomes six: \u0001.
         Value value = std::vector<Value>();
         for (int i = 0; i < 11; ++i) {
             value.push(std::string(64 * mebibyte, '\x01'));
         }
         return value;
     },
     11 * (6 * 64 * mebibyte + 2) + 10 + 2},
};

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Runs a case. Returns whether its text has the right length.
bool run(const Case& large) {
    const auto start = std::chrono::steady_clock::now();
    const Value value = large.make();
    const double made = seconds_since(start);
    const std::uint64_t length = length_of_text(value);
    const double written = seconds_since(start) - made;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%-32s %8.2f %8.2f %10ld %12llu\n", large.name, made, written,
                usage.ru_maxrss / 1024, static_cast<unsigned long long>(length));
    if (length != large.length) {
        std::printf("    the text should be %llu bytes long\n",
                    static_cast<unsigned long long>(large.length));
    }
    return length == large.length;
}

} // namespace

int main() {
    std::printf("%-32s %8s %8s %10s %12s\n", "", "make, s", "write, s", "peak, MiB", "bytes");
    bool right = true;
    for (const Case& large : cases) {
        std::fflush(stdout);
        const pid_t child = fork();
        if (child == 0) {
            const bool good = run(large);
            std::fflush(stdout);
            _exit(good ? 0 : 1);
        }
        int status = 1;
        if (child < 0 || waitpid(child, &status, 0) < 0 || status != 0) {
            std::printf("%s failed\n", large.name);
            right = false;
        }
    }
    return right ? 0 : 1;
}
