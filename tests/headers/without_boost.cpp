// What structs and their texts need is neither Value nor Boost, whatever standard types they have.
#include <foundation/json/chrono.hpp>
#include <foundation/json/members.hpp>
#include <foundation/json/read.hpp>
#include <foundation/json/write_file.hpp>
#include <foundation/json/write_types.hpp>

#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

struct Circle {
    double radius = 1;
};

struct Square {
    float side = 1;
};

using Shape = std::variant<Circle, Square>;
using Setting = std::variant<std::monostate, bool, std::string, std::vector<int>>;

enum class Level { low, high };

class Code {
public:
    explicit Code(int number) : number_(number) {}
    int number() const { return number_; }

private:
    int number_;
};

struct Everything {
    std::string name;
    int port = 1;
    Level level = Level::low;
    std::vector<Circle> circles;
    std::vector<Code> codes;
    std::array<long double, 2> pair{};
    std::tuple<bool, unsigned> both;
    std::optional<std::string> title;
    std::map<std::string, std::vector<double>> lists;
    std::unordered_map<std::string, Square> squares;
    std::unordered_set<int> numbers;
    std::multimap<std::string, int> groups;
    std::unique_ptr<Circle> circle;
    std::filesystem::path path;
    std::chrono::system_clock::time_point time;
    Shape shape;
    Setting setting;
};

template <>
inline constexpr auto foundation::json::members<Circle> = table(required("radius",
                                                                         &Circle::radius));
template <>
inline constexpr auto foundation::json::members<Square> = table(required("side", &Square::side));
template <>
inline constexpr auto foundation::json::alternatives<Shape> = tagged("type", {"circle", "square"});
template <>
inline constexpr auto foundation::json::enumerators<Level> = table<Level>({{Level::low, "low"},
                                                                           {Level::high, "high"}});
template <>
struct foundation::json::representation<Code> {
    static int to(const Code& code) { return code.number(); }
    static Code from(int number) { return Code(number); }
};
template <>
inline constexpr auto foundation::json::members<Everything> = table(
    required("name", &Everything::name), defaulted("port", &Everything::port, in_range(1, 65535)),
    defaulted("level", &Everything::level), defaulted("circles", &Everything::circles),
    defaulted("codes", &Everything::codes), defaulted("pair", &Everything::pair),
    defaulted("both", &Everything::both), defaulted("title", &Everything::title),
    defaulted("lists", &Everything::lists), defaulted("squares", &Everything::squares),
    defaulted("numbers", &Everything::numbers), defaulted("groups", &Everything::groups),
    defaulted("circle", &Everything::circle), defaulted("path", &Everything::path),
    defaulted("time", &Everything::time), defaulted("shape", &Everything::shape),
    defaulted("setting", &Everything::setting));

std::string copy(const std::string& text, const std::filesystem::path& file) {
    using namespace foundation::json;
    try {
        const auto object = read<Everything>(text);
        write_file(file, object);
        return write(read_file<Everything>(file), WriteOptions::indented(2));
    } catch (const ReadError& error) {
        return describe(error);
    } catch (const ParserException& error) {
        return describe(error, "text");
    }
}
