/// @file
/// simdjson: a document that can only be read, of a parser that owns it; and On-Demand, which walks
/// over a text. It needs some bytes of memory behind a text, so it copies a std::string first.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_SIMDJSON_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_SIMDJSON_HPP

#include "documents.hpp"

#include <simdjson.h>

#include <memory>
#include <string>

namespace {

struct Contender {
    struct Value {
        std::unique_ptr<simdjson::dom::parser> parser;
        simdjson::dom::element root;
    };
    static constexpr const char* name = "simdjson";
    static constexpr bool is_this_library = false;
    static constexpr bool has_tokens = true;

    static Value parse(const std::string& text) {
        Value value{std::make_unique<simdjson::dom::parser>(), {}};
        value.root = value.parser->parse(text).value();
        return value;
    }
    static std::string serialize(const Value& value) { return simdjson::minify(value.root); }

    static bench::ContentSums walk_tokens(const std::string& text) {
        static simdjson::ondemand::parser parser; // keeps its memory, as its documentation advises
        const simdjson::padded_string padded(text);
        simdjson::ondemand::document document = parser.iterate(padded);
        bench::ContentSums sums;
        add(document.get_value().value(), sums);
        return sums;
    }

private:
    static void add(simdjson::ondemand::value value, bench::ContentSums& sums) {
        using Type = simdjson::ondemand::json_type;
        ++sums.values;
        switch (value.type().value()) {
        case Type::array:
            for (auto element : value.get_array()) {
                add(element.value(), sums);
            }
            break;
        case Type::object:
            for (auto field : value.get_object()) {
                add(field.value().value(), sums);
            }
            break;
        case Type::number:
            sums.sum += value.get_double().value();
            break;
        case Type::string:
            sums.string_bytes += value.get_string().value().size();
            break;
        case Type::boolean:
            static_cast<void>(value.get_bool().value());
            break;
        case Type::null:
            static_cast<void>(value.is_null());
            break;
        }
    }
};

} // namespace

#endif
