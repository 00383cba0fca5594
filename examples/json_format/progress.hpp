/// @file
/// How far reading has come, on a terminal.
#ifndef JSON_FORMAT_PROGRESS_HPP
#define JSON_FORMAT_PROGRESS_HPP

#include "system.hpp"

#include <chrono>
#include <cstdio>
#include <string>

namespace json_format {

/// A number of bytes with a unit, such as 64.0 MB.
inline std::string with_unit(double bytes) {
    const char* const units[] = {"bytes", "kB", "MB", "GB", "TB"};
    int unit = 0;
    for (; bytes >= 1000 && unit != 4; ++unit) {
        bytes /= 1000;
    }
    char text[40];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, units[unit]);
    return text;
}

/// What there is to say: the bytes that were read and, if the size of the input is known, the share
/// and how long the rest takes at this speed.
/// @param size     0 if it is not known
/// @param seconds  since reading began
inline std::string progress_line(double bytes, double size, double seconds) {
    if (size <= 0 || bytes <= 0 || bytes > size) {
        return with_unit(bytes) + " read";
    }
    char rest[60];
    std::snprintf(rest, sizeof rest, ", %.0f %%, %.0f s left", 100 * bytes / size,
                  seconds * (size - bytes) / bytes);
    return with_unit(bytes) + " of " + with_unit(size) + rest;
}

/// Shows the progress of work that takes long on standard error, if that is a terminal.
class Progress {
public:
    /// @param input  the descriptor of the file that is read
    explicit Progress(int input)
        : is_shown_(has_terminal()), size_(static_cast<double>(size_of_file(input))) {}
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { clear(); }

    /// More bytes have been read.
    void add(std::size_t bytes) {
        bytes_ += static_cast<double>(bytes);
        const auto now = Clock::now();
        if (is_shown_ && now >= next_) {
            next_ = now + std::chrono::milliseconds(200);
            const std::chrono::duration<double> spent = now - begin_;
            has_line_ = true;
            std::fprintf(stderr, "\r%s\033[K", progress_line(bytes_, size_, spent.count()).c_str());
        }
    }

    /// Takes the line away, before something else is written to the terminal.
    void clear() {
        if (has_line_) {
            std::fputs("\r\033[K", stderr);
            has_line_ = false;
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    bool is_shown_;
    double size_; ///< 0 if it is not known
    bool has_line_ = false;
    double bytes_ = 0;
    Clock::time_point begin_ = Clock::now();
    Clock::time_point next_ = begin_ + std::chrono::seconds(1); ///< shorter work shows nothing
};

} // namespace json_format

#endif
