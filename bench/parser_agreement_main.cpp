// Usage: foundation_json_parser_agreement FOLDER [COUNT [SEED]]
// Damages texts, the files of a folder among them, and compares whether the parser and two other
// libraries accept each of them. The program counts the differences that have a known reason; it
// prints any other, and fails.
#include "documents.hpp"

#include <foundation/json/parse.hpp>

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

// ---- Verdicts --------------------------------------------------------------------------------

bool parser_accepts(const std::string& text) {
    try {
        const foundation::json::Value value = foundation::json::parse(text);
        return true;
    } catch (const foundation::json::ParserException&) {
        return false;
    }
}

bool nlohmann_accepts(const std::string& text) {
    return nlohmann::json::accept(text);
}

bool rapidjson_accepts(const std::string& text) {
    constexpr unsigned flags =
        rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::Document document;
    return !document.Parse<flags>(text.data(), text.size()).HasParseError();
}

// ---- Reasons for different verdicts ----------------------------------------------------------

/// Whether the text has an escape for half a surrogate pair without the other half.
bool has_lone_surrogate(const std::string& text) {
    const auto unit = [&text](std::size_t at) {
        if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u') {
            return 0UL;
        }
        return std::strtoul(text.substr(at + 2, 4).c_str(), nullptr, 16);
    };
    const auto within = [](unsigned long number, unsigned long first) {
        return number >= first && number < first + 0x400;
    };
    for (std::size_t at = text.find('\\'); at < text.size(); at = text.find('\\', at)) {
        const bool first = within(unit(at), 0xD800);
        if (first && within(unit(at + 6), 0xDC00)) {
            at += 12;
        } else if (first || within(unit(at), 0xDC00)) {
            return true;
        } else {
            at += 2;
        }
    }
    return false;
}

bool has_zero_byte(const std::string& text) {
    return text.find('\0') != std::string::npos;
}

bool begins_with_part_of_mark(const std::string& text) {
    std::size_t count = 0;
    for (const char byte : std::string_view("\xEF\xBB\xBF")) {
        count += count < text.size() && text[count] == byte ? 1 : 0;
    }
    return count == 1 || count == 2;
}

/// Where numbers begin, if the text is JSON.
std::vector<std::size_t> numbers(const std::string& text) {
    const auto is_digit = [](char byte) { return byte >= '0' && byte <= '9'; };
    std::vector<std::size_t> result;
    for (std::size_t at = 0; at != text.size(); ++at) {
        if (is_digit(text[at]) && (at == 0 || !is_digit(text[at - 1]))) {
            result.push_back(at);
        }
    }
    return result;
}

bool has_infinite_number(const std::string& text) {
    const std::vector<std::size_t> all = numbers(text);
    return std::any_of(all.begin(), all.end(), [&text](std::size_t at) {
        return std::isinf(std::strtod(&text[at], nullptr));
    });
}

bool has_zero_with_large_exponent(const std::string& text) {
    const std::vector<std::size_t> all = numbers(text);
    return std::any_of(all.begin(), all.end(), [&text](std::size_t at) {
        const std::size_t letter = text.find_first_not_of("0.", at);
        return letter < text.size() && (text[letter] == 'e' || text[letter] == 'E') &&
               std::strtol(&text[letter + 1], nullptr, 10) > 308;
    });
}

struct Reason {
    const char* description;
    bool (*other)(const std::string&); ///< whether the other library accepts a text
    bool parser;                       ///< the parser's verdict
    bool (*applies)(const std::string& text);
};

const std::array<Reason, 7> reasons{{
    {"nlohmann refuses an escape for half a surrogate pair, the parser takes it for U+FFFD",
     nlohmann_accepts, true, has_lone_surrogate},
    {"RapidJSON refuses an escape for half a surrogate pair, the parser takes it for U+FFFD",
     rapidjson_accepts, true, has_lone_surrogate},
    {"nlohmann takes a zero byte for the end of the text, the parser refuses it", nlohmann_accepts,
     false, has_zero_byte},
    {"RapidJSON takes a zero byte for the end of the text, the parser refuses it",
     rapidjson_accepts, false, has_zero_byte},
    {"RapidJSON skips parts of a byte order mark, the parser refuses them", rapidjson_accepts,
     false, begins_with_part_of_mark},
    {"RapidJSON takes a number a little too large for infinity, the parser refuses it",
     rapidjson_accepts, false, has_infinite_number},
    {"RapidJSON refuses zero times a large power of ten, the parser takes it for zero",
     rapidjson_accepts, true, has_zero_with_large_exponent},
}};

// ---- Texts --------------------------------------------------------------------------------------

/// Texts that together have every kind of token.
const std::array<const char*, 16> samples{
    R"([1,2,{"a":[true,false,null],"b":"x\u00e9\ud83d\ude00y"}])",
    R"({"k":-0.5e+10,"l":{},"m":[]})",
    "\"h\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80\"",
    "  [ 1 , 2 ]\n",
    "-12.5e-3",
    "1.7976931348623157e308",
    "[0,-0,0.0,1E400,1e-400,123456789012345678901234567890]",
    R"([[[[]]],{"":{}},"\"\\\/\b\f\n\r\t"])",
    "{\n    \"name\": \"value\",\n    \"other\": [\n        12345678,\n        0.25\n    ]\n}\n",
    "\xEF\xBB\xBF{\"mark\":1}",
    R"(["\ud800","\udc00\ud800","\uD83D\uDE00","\u0000","\uffff"])",
    "\"\xEF\xBF\xBF\xF4\x8F\xBF\xBF\xED\x9F\xBF\xEE\x80\x80\xE0\xA0\x80\"",
    "nulltruefalse",
    "[null,true,false]",
    "{\"a\":1,\"a\":2,\"\\u0061\":3}",
    "\"a string of more than sixteen bytes, and of more than thirty-two\"",
};

/// How many texts are generated, besides the samples.
constexpr std::size_t generated = 6;
constexpr std::size_t whole_texts = samples.size() + generated;

std::vector<std::string> sources(const std::filesystem::path& folder) {
    std::vector<std::string> result(samples.begin(), samples.end());
    for (std::size_t i = 1; i <= generated; ++i) {
        result.push_back(bench::document_of_size(100 * i));
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            std::ostringstream text;
            text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
            result.push_back(text.str());
        }
    }
    for (const bench::Document& document : bench::documents()) {
        result.push_back(document.text);
    }
    return result;
}

// ---- Damage ----------------------------------------------------------------------------------

class Damage {
public:
    Damage(const std::vector<std::string>& texts, std::uint64_t seed)
        : texts_(texts), random_(seed) {}

    std::string text() {
        const std::size_t first = below(2) == 0 ? whole_texts : texts_.size();
        std::string result = piece(texts_[below(first)], 600);
        for (std::size_t times = below(5); times != 0 && !result.empty(); --times) {
            damage(result);
        }
        return result;
    }

private:
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

    /// All of a short text, or a piece of a long one.
    std::string piece(const std::string& text, std::size_t most) {
        if (text.size() <= most) {
            return text;
        }
        return text.substr(below(text.size()), 1 + below(most));
    }

    char byte() {
        static constexpr std::string_view likely =
            "[]{},:\"\\/ \n\r\t0123456789-+.eEunltrfasdDcC8'*#\x00\x01\x1F\x7F\x80\xBF\xC0\xC2\xC3"
            "\xE0\xE2\xED\xEF\xBB\xF0\xF4\xF5\xFF\xA0\x9F\x90";
        return below(8) == 0 ? static_cast<char>(below(256)) : likely[below(likely.size())];
    }

    void damage(std::string& text) {
        const std::size_t place = below(text.size());
        switch (below(7)) {
        case 0:
            text[place] = byte();
            break;
        case 1:
            text.insert(place, 1, byte());
            break;
        case 2:
            text.erase(place, 1 + below(4));
            break;
        case 3:
            text.erase(place);
            break;
        case 4: // a piece of the same text
            text.insert(place, text.substr(below(text.size()), below(20)));
            break;
        case 5: // a piece of another text
            text.insert(place, piece(texts_[below(texts_.size())], 40));
            break;
        default: { // two bytes exchanged
            std::swap(text[place], text[below(text.size())]);
        }
        }
    }

    const std::vector<std::string>& texts_;
    std::mt19937_64 random_;
};

// ---- Comparison ------------------------------------------------------------------------------

struct Other {
    const char* name;
    bool (*accepts)(const std::string&);
};

const std::array<Other, 2> others{
    {{"nlohmann", nlohmann_accepts}, {"RapidJSON", rapidjson_accepts}}};

class Comparison {
public:
    void compare(const std::string& text) {
        const bool accepted = parser_accepts(text);
        accepted_ += accepted ? 1 : 0;
        for (const Other& other : others) {
            if (other.accepts(text) != accepted) {
                explain(text, accepted, other);
            }
        }
    }

    int report(std::size_t count) const {
        std::cout << count << " texts, of which the parser accepts " << accepted_ << '\n';
        for (const Reason& reason : reasons) {
            const auto found = explained_.find(&reason);
            std::cout << (found == explained_.end() ? 0 : found->second)
                      << " differences: " << reason.description << '\n';
        }
        std::cout << unexplained_ << " differences without a known reason\n";
        return unexplained_ == 0 ? 0 : 1;
    }

private:
    void explain(const std::string& text, bool accepted, const Other& other) {
        const auto* const reason =
            std::find_if(reasons.begin(), reasons.end(), [&](const Reason& r) {
                return r.other == other.accepts && r.parser == accepted && r.applies(text);
            });
        if (reason != reasons.end()) {
            ++explained_[reason];
            return;
        }
        ++unexplained_;
        if (unexplained_ <= 20) {
            std::cout << "the parser " << (accepted ? "accepts" : "refuses") << ", " << other.name
                      << " does not agree: " << escaped(text) << '\n';
        }
    }

    static std::string escaped(const std::string& text) {
        std::ostringstream result;
        for (const char byte : text) {
            if (byte >= ' ' && byte < 0x7F) {
                result << byte;
            } else {
                result << "\\x" << std::hex << (static_cast<unsigned>(byte) & 0xFF);
            }
        }
        return result.str();
    }

    std::size_t accepted_ = 0;
    std::map<const Reason*, std::size_t> explained_;
    std::size_t unexplained_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: foundation_json_parser_agreement FOLDER [COUNT [SEED]]\n";
        return 2;
    }
    const std::size_t count = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1'000'000;
    const std::uint64_t seed = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
    try {
        const std::vector<std::string> texts = sources(argv[1]);
        Damage damage(texts, seed);
        Comparison comparison;
        for (std::size_t i = 0; i != count; ++i) {
            comparison.compare(damage.text());
        }
        return comparison.report(count);
    } catch (const std::exception& error) {
        std::cerr << "foundation_json_parser_agreement: " << error.what() << '\n';
        return 1;
    }
}
