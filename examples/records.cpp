// Records to JSON Lines, one per line, and back. A line that is no JSON, or no record, is reported
// and passed over.
#include <foundation/json/convert.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/write.hpp>

#include <cstdint>
#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::json;

struct Measurement {
    std::int64_t id = 0;
    std::string sensor;
    std::vector<double> values;
    std::optional<std::string> remark;
};

template <>
inline constexpr auto foundation::json::members<Measurement> =
    table(required("id", &Measurement::id), required("sensor", &Measurement::sensor),
          required("values", &Measurement::values), defaulted("remark", &Measurement::remark));

void write_lines(std::ostream& stream, const std::vector<Measurement>& records) {
    for (const Measurement& record : records) {
        write(stream, from(record));
        stream << '\n';
    }
}

// One record is held as a Value at a time, however long the stream is.
std::vector<Measurement> read_lines(std::istream& stream, std::ostream& log) {
    std::vector<Measurement> records;
    ValueStream values(stream);
    int count = 0;
    for (bool more = true; more;) {
        try {
            ++count;
            Value value;
            more = values.next(value);
            if (more) {
                records.push_back(to<Measurement>(value));
            }
        } catch (const ParserException& error) {
            log << describe(error, "records");
        } catch (const ConversionError& error) {
            log << "record " << count << ": " << error.what() << '\n';
        }
    }
    return records;
}

int main() {
    std::stringstream lines;
    write_lines(lines, {{9007199254740993, "north", {20.5, 21}, {}},
                        {7, "south/west", {}, "being \"tested\""}});
    std::cout << lines.str();

    lines << R"({"id": 8, "sensor": "east", "values": [19.25, "20"]}
{"id": 9, "sensor": }
{"id": 10, "sensor": "east", "values": [19.25, 20]}
)";
    for (const Measurement& record : read_lines(lines, std::cout)) {
        std::cout << record.id << ' ' << record.sensor << ' ' << record.values.size() << ' '
                  << record.remark.value_or("-") << '\n';
    }
}
