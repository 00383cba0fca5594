/// @file
/// Types that are converted by a representation, a variant or a check.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_REPRESENTED_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_REPRESENTED_HPP

#include <filesystem>

#include <foundation/json/convert.hpp>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

namespace represented {

/// Has no default constructor.
class Code {
public:
    explicit Code(std::string text) : text_(std::move(text)) {
        if (text_.size() != 4) {
            throw std::invalid_argument("a code has 4 characters");
        }
    }
    const std::string& text() const { return text_; }
    bool operator==(const Code& other) const { return text_ == other.text_; }
    bool operator<(const Code& other) const { return text_ < other.text_; }

private:
    std::string text_;
};

/// Has getters, and no member that could be named.
class Size {
public:
    Size(int width, int height) : width_(width), height_(height) {}
    int width() const { return width_; }
    int height() const { return height_; }

private:
    int width_;
    int height_;
};

struct SizeTable {
    int width = 0;
    int height = 0;
};

/// A type whose functions give what they like.
struct Any {
    foundation::json::Value value;
};

struct Circle {
    double radius = 1;
};
struct Square {
    double side = 1;
    std::optional<std::string> colour;
};
using Shape = std::variant<Circle, Square>;

struct Tree {
    std::string name;
    std::unique_ptr<Tree> left;
    std::shared_ptr<Tree> right;
};

struct Parcel {
    Code code{"none"};
    std::optional<Code> other;
    std::vector<Code> codes;
    std::map<std::string, Code> by_name;
    std::set<Code> set;
    std::variant<int, std::string, std::vector<int>> label;
    Shape shape;
    std::filesystem::path path;
    std::multimap<std::string, int> many;
    std::multiset<int> numbers;
    std::unordered_set<std::string> words;
};

struct Checked {
    int port = 1;
    std::optional<double> share;
    std::string even;
    unsigned long long big = 7;
};

} // namespace represented

namespace foundation::json {

template <>
struct representation<represented::Code> {
    static const std::string& to(const represented::Code& code) { return code.text(); }
    static represented::Code from(const std::string& text) { return represented::Code(text); }
};

template <>
inline constexpr auto members<represented::SizeTable> =
    table(required("width", &represented::SizeTable::width, in_range(0, 100)),
          required("height", &represented::SizeTable::height));

template <>
struct representation<represented::Size> {
    static represented::SizeTable to(const represented::Size& size) {
        if (size.width() < 0) {
            throw std::range_error("the size is negative");
        }
        return {size.width(), size.height()};
    }
    static represented::Size from(const represented::SizeTable& size) {
        return {size.width, size.height};
    }
};

template <>
struct representation<represented::Any> {
    static Value to(const represented::Any& any) { return any.value; }
    static represented::Any from(Value value) {
        if (kind_of(value) == Kind::boolean) {
            throw ConversionError("/inner/1", "is too deep");
        }
        return {std::move(value)};
    }
};

template <>
inline constexpr auto members<represented::Circle> = table(required("radius",
                                                                    &represented::Circle::radius));
template <>
inline constexpr auto
    members<represented::Square> = table(required("side", &represented::Square::side),
                                         defaulted("colour", &represented::Square::colour));
template <>
inline constexpr auto alternatives<represented::Shape> = tagged("type", {"circle", "square"});

template <>
inline constexpr auto
    members<represented::Tree> = table(required("name", &represented::Tree::name),
                                       defaulted("left", &represented::Tree::left),
                                       defaulted("right", &represented::Tree::right));

template <>
inline constexpr auto members<represented::Parcel> = table(
    defaulted("code", &represented::Parcel::code), defaulted("other", &represented::Parcel::other),
    defaulted("codes", &represented::Parcel::codes),
    defaulted("by_name", &represented::Parcel::by_name),
    defaulted("set", &represented::Parcel::set), defaulted("label", &represented::Parcel::label),
    defaulted("shape", &represented::Parcel::shape), defaulted("path", &represented::Parcel::path),
    defaulted("many", &represented::Parcel::many),
    defaulted("numbers", &represented::Parcel::numbers),
    defaulted("words", &represented::Parcel::words));

namespace test {

inline std::string check_even(const std::string& text) {
    if (text == "throw") {
        throw std::runtime_error("the check has thrown");
    }
    return text.size() % 2 == 0 ? "" : "the length is odd";
}

} // namespace test

template <>
inline constexpr auto members<represented::Checked> =
    table(required("port", &represented::Checked::port, in_range(1, 65535)),
          defaulted("share", &represented::Checked::share, in_range(0, 1)),
          defaulted("even", &represented::Checked::even, &test::check_even),
          defaulted("big", &represented::Checked::big, in_range(-1, 18446744073709551615ULL)));

} // namespace foundation::json

#endif
