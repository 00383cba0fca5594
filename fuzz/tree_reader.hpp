/// @file
/// Values out of the input of a fuzz target.
#ifndef FOUNDATION_JSON_FUZZ_TREE_READER_HPP
#define FOUNDATION_JSON_FUZZ_TREE_READER_HPP

#include "input.hpp"

#include "support/tree.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <utility>

namespace foundation::json::fuzz {

using test::Tree;

class TreeReader {
public:
    explicit TreeReader(Input& input) : input_(input) {}

    Tree tree(std::size_t levels = 6);

private:
    /// A text of input bytes. One text may be repeated, so that it reaches the end of a buffer.
    std::string text();
    Tree array(std::size_t levels);
    Tree object(std::size_t levels);
    Tree nest(std::size_t levels);
    bool used_up() { return nodes_ >= most_nodes; }

    // Limits, so that no input takes long.
    static constexpr std::size_t most_nodes = 80;
    static constexpr std::size_t longest_text = 10'000;

    Input& input_;
    std::size_t nodes_ = 0;
    bool has_long_text_ = false;
    bool has_deep_nest_ = false;
};

inline Tree TreeReader::tree(std::size_t levels) {
    static const double numbers[] = {0.0,
                                     -0.0,
                                     0.1,
                                     999999.5,
                                     1e6,
                                     -2.5e-5,
                                     1e100,
                                     std::numeric_limits<double>::quiet_NaN(),
                                     std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity()};
    ++nodes_;
    switch (input_.below(levels > 0 && !used_up() ? 16 : 11)) {
    case 0:
        return {Undefined()};
    case 1:
        return {Null()};
    case 2:
        return {input_.flag()};
    case 3:
        return {input_.one_of(numbers)};
    case 4:
        return {input_.bits<double>()};
    case 5:
        return {input_.bits<float>()};
    case 6:
        return {input_.bits<long long>()};
    case 7:
        return {static_cast<long long>(input_.bits<std::int8_t>()) * 1000};
    case 8:
        return {input_.bits<unsigned long long>()};
    case 9:
    case 10:
        return {text()};
    case 11:
    case 12:
        return array(levels - 1);
    case 13:
    case 14:
        return object(levels - 1);
    default:
        return nest(levels - 1);
    }
}

inline std::string TreeReader::text() {
    std::string result = input_.text(input_.below(24));
    if (!result.empty() && !has_long_text_ && input_.below(16) == 15) {
        has_long_text_ = true;
        const std::string piece = result;
        const std::size_t length = input_.bits<std::uint16_t>() % longest_text;
        while (result.size() < length) {
            result += piece;
        }
    }
    return result;
}

inline Tree TreeReader::array(std::size_t levels) {
    test::Elements elements;
    for (std::size_t count = input_.below(8); count > 0 && !used_up(); --count) {
        elements.push_back(tree(levels));
    }
    return {elements};
}

inline Tree TreeReader::object(std::size_t levels) {
    std::map<std::string, Tree> by_name;
    for (std::size_t count = input_.below(6); count > 0 && !used_up(); --count) {
        const std::string name = text();
        by_name[name] = tree(levels);
    }
    test::Members members;
    for (const auto& [name, value] : by_name) {
        members.push_back({name, value});
    }
    return {members};
}

/// Deep enough for an indentation longer than one block of spaces.
inline Tree TreeReader::nest(std::size_t levels) {
    Tree result = tree(levels);
    const std::size_t levels_more = input_.below(has_deep_nest_ ? 4 : 90);
    has_deep_nest_ = has_deep_nest_ || levels_more >= 4;
    for (std::size_t count = levels_more; count > 0; --count) {
        result = Tree{test::Elements{std::move(result)}};
    }
    return result;
}

} // namespace foundation::json::fuzz

#endif
