/// @file
/// Finds where in a value the text could not go on.
#ifndef FOUNDATION_JSON_SRC_SERIALIZATION_ERROR_LOCATOR_HPP
#define FOUNDATION_JSON_SRC_SERIALIZATION_ERROR_LOCATOR_HPP

#include "serialization/write_problems.hpp"
#include "text/location.hpp"

#include <foundation/json/write.hpp>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::detail {

/// An output of the layout that writes nothing, but keeps track of the location, and throws
/// WriteError at the first piece that the options do not allow. An output that does write would pay
/// for keeping track.
///
/// Nothing is inlined into the layout, whose recursion would need more stack.
class ErrorLocator {
public:
    /// Empty, since nothing is written.
    struct Cursor {};

    /// @param pointer  the location of the value
    ErrorLocator(std::string pointer, const WriteOptions& options)
        : pointer_(std::move(pointer)), options_(options) {}

    [[gnu::noinline]] Cursor text(Cursor at, const char* piece) {
        if (*piece == '[' || *piece == '{') {
            steps_.push_back({nullptr, 0});
        } else if (*piece == ']' || *piece == '}') {
            steps_.pop_back();
        } else if (*piece == ',') {
            ++steps_.back().index;
        }
        return at;
    }

    template <class Number>
    [[gnu::noinline]] Cursor number(Cursor at, Number number) const {
        if (!is_writable(number, options_)) {
            fail(steps_.size(), problem_of(number));
        }
        return at;
    }

    [[gnu::noinline]] Cursor string(Cursor at, const std::string& text) const {
        if (!is_writable_string(text, options_)) {
            fail(steps_.size(), problem_of_string(text));
        }
        return at;
    }

    [[gnu::noinline]] Cursor name(Cursor at, const std::string& name) {
        if (!is_writable_string(name, options_)) {
            fail(steps_.size() - 1, problem_of_name(name));
        }
        steps_.back().name = &name;
        return at;
    }

private:
    /// Where it is in an array or object.
    struct Step {
        const std::string* name; ///< null in an array
        std::size_t index;
    };

    /// @param count  how many steps lead to the location
    [[noreturn]] void fail(std::size_t count, const std::string& problem) const {
        std::string pointer = pointer_;
        for (std::size_t i = 0; i != count; ++i) {
            if (steps_[i].name != nullptr) {
                append_name_token(pointer, *steps_[i].name);
            } else {
                append_index_token(pointer, steps_[i].index);
            }
        }
        throw WriteError(std::move(pointer), problem);
    }

    std::string pointer_;
    const WriteOptions& options_;
    std::vector<Step> steps_;
};

} // namespace foundation::json::detail

#endif
