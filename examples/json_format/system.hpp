/// @file
/// Files, standard streams and arguments, alike on every system.
#ifndef JSON_FORMAT_SYSTEM_HPP
#define JSON_FORMAT_SYSTEM_HPP

#include <fcntl.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#ifdef _WIN32
#include <io.h>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <filesystem>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace json_format {

constexpr int standard_input = 0;

#ifdef _WIN32

/// The arguments of the program, in UTF-8.
inline std::vector<std::string> arguments_of(int, char**) {
    int count = 0;
    wchar_t** const all = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> result;
    for (int i = 1; i < count; ++i) {
        result.push_back(std::filesystem::path(all[i]).u8string());
    }
    ::LocalFree(all);
    return result;
}

/// Has standard input and output take bytes as they are.
inline void take_all_bytes() {
    ::_setmode(standard_input, _O_BINARY);
    ::_setmode(::_fileno(stdout), _O_BINARY);
}

/// @return a descriptor; negative for an error, in errno
inline int open_file(const std::string& name) {
    return ::_wopen(std::filesystem::u8path(name).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

inline std::int64_t read_file(int descriptor, char* out, std::size_t size) {
    return ::_read(descriptor, out, static_cast<unsigned>(std::min<std::size_t>(size, 1 << 30)));
}

inline void close_file(int descriptor) {
    ::_close(descriptor);
}

/// @return 0 if the descriptor is not that of a file
inline std::int64_t size_of_file(int descriptor) {
    const std::int64_t size = ::_filelengthi64(descriptor);
    return size > 0 ? size : 0;
}

/// Whether somebody sees standard error.
inline bool has_terminal() {
    return ::_isatty(::_fileno(stderr)) != 0;
}

#else

/// The arguments of the program.
inline std::vector<std::string> arguments_of(int argc, char** argv) {
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

inline void take_all_bytes() {}

/// @return a descriptor; negative for an error, in errno
inline int open_file(const std::string& name) {
    return ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
}

inline std::int64_t read_file(int descriptor, char* out, std::size_t size) {
    return ::read(descriptor, out, size);
}

inline void close_file(int descriptor) {
    ::close(descriptor);
}

/// @return 0 if the descriptor is not that of a file
inline std::int64_t size_of_file(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

/// Whether somebody sees standard error.
inline bool has_terminal() {
    return ::isatty(STDERR_FILENO) != 0;
}

#endif

} // namespace json_format

#endif
