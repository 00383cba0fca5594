// A caller that is built outside the project. It uses every public header, catches what the library
// throws, and prints its results on one line.
#include <foundation/json/json.hpp>

#include <boost/numeric/conversion/cast.hpp>

#include <iostream>
#include <stdexcept>
#include <string>

namespace json = foundation::json;

namespace {

std::string conversion_error(const json::Value& value) {
    try {
        return std::to_string(int(value));
    } catch (const boost::numeric::positive_overflow&) {
        return "overflow";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

std::string parse_error() {
    try {
        throw json::ParserException("no value", json::EMPTY_INPUT, 0, 1, 1, 0, "");
    } catch (const json::ParserException& error) {
        return json::get_parse_result_description(error.get_parse_result());
    }
}

} // namespace

int main() {
    char16_t euro[] = {0x20AC};

    json::Value report((json::Property("array") = (json::Element(1), json::Element(json::Null()))));
    report["conversion"] = conversion_error("12 apples");
    report["invalid"] = conversion_error(1.0F);
    report["overflow"] = conversion_error(1e10);
    report["parsing"] = parse_error();
    report["text"] = json::detail::u16_to_u8(euro, 1);
    report["number"] = json::detail::string_to_double("0.5");

    const std::string expected = R"({"array":[1,null],"conversion":"12",)"
                                 R"("invalid":"invalid conversion: float to int","number":0.5,)"
                                 R"("overflow":"overflow",)"
                                 R"("parsing":"The given input sequence is empty",)"
                                 "\"text\":\"\xE2\x82\xAC\"}";
    const std::string text = json::serialize(report);
    std::cout << text << '\n';
    return text == expected ? 0 : 1;
}
