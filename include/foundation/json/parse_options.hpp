/// @file
/// The settings of the parser. parse.hpp and read.hpp include this header.
#ifndef FOUNDATION_JSON_PARSE_OPTIONS_HPP
#define FOUNDATION_JSON_PARSE_OPTIONS_HPP

#include <cstddef>

namespace foundation::json {

/// What the parser accepts, and how it represents that.
struct ParseOptions {
    /// How deep arrays and objects may nest. Parsing needs no stack for depth, but copying,
    /// comparing, serializing and destroying a value do: 100,000 levels are safe on a stack of
    /// 8 MiB.
    std::size_t max_depth = 1000;

    /// What becomes of a whole number without point and exponent that no double represents exactly,
    /// such as 9007199254740993.
    enum class Integers {
        exact,    ///< int64, else uint64, if one of these holds it
        as_double ///< the nearest double, as all other numbers
    };
    Integers integers = Integers::exact; ///< by default such numbers keep all digits

    /// What becomes of members of an object with the same name. Names are compared after
    /// unescaping.
    enum class DuplicateNames {
        last_wins, ///< the last value replaces the earlier ones
        error      ///< a ParserException
    };
    DuplicateNames duplicate_names = DuplicateNames::last_wins; ///< by default none is an error

    /// Whether `// to the end of the line` and `/* this */` are allowed wherever whitespace is.
    bool comments = false;

    /// Whether a comma may follow the last element or member.
    bool trailing_commas = false;
};

} // namespace foundation::json

#endif
