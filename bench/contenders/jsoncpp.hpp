/// @file
/// JsonCpp: arrays and objects alike are ordered maps. Its writer is told to leave UTF-8 as it is
/// rather than to escape it.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_JSONCPP_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_JSONCPP_HPP

#include <json/json.h>

#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

namespace {

struct Contender {
    using Value = Json::Value;
    using Text = std::string;
    static constexpr const char* name = "JsonCpp";
    static constexpr bool has_pretty_layout = true;
    static constexpr bool is_this_library = false;
    static constexpr bool has_writer = false;
    static constexpr bool converts = false;
    static constexpr bool patches = false;
    static constexpr bool has_tokens = false;

    static Value parse(const std::string& text) {
        const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
        Value value;
        if (!reader->parse(text.data(), text.data() + text.size(), &value, nullptr)) {
            throw std::runtime_error("JsonCpp cannot read the text");
        }
        return value;
    }
    static Text serialize(const Value& value) { return Json::writeString(compact(), value); }
    static Text pretty_print(const Value& value) { return Json::writeString(pretty(), value); }
    static void write(std::ostream& stream, const Value& value) {
        const std::unique_ptr<Json::StreamWriter> writer(compact().newStreamWriter());
        writer->write(value, &stream);
    }

    static Value copy(const Value& value) { return value; }
    static bool equal(const Value& a, const Value& b) { return a == b; }

    static Value array() { return Value(Json::arrayValue); }
    template <class Item>
    static void push(Value& array, const Item& item) {
        array.append(item);
    }
    static void push(Value& array, long long item) { array.append(Json::Int64{item}); }

    static Value object() { return Value(Json::objectValue); }
    static void insert(Value& object, const std::string& key, int number) { object[key] = number; }

    using Node = Value;
    static std::size_t size_of_string(const Node& node) {
        const char* begin = nullptr;
        const char* end = nullptr;
        node.getString(&begin, &end);
        return static_cast<std::size_t>(end - begin);
    }
    static double number(const Node& node) { return node.asDouble(); }
    template <class Leaves>
    static void find_leaves(Node& node, Leaves& leaves) {
        if (node.isArray() || node.isObject()) {
            for (Node& child : node) {
                find_leaves(child, leaves);
            }
        } else if (node.isString()) {
            leaves.strings.push_back(&node);
        } else if (node.isNumeric()) {
            node = node.asDouble();
            leaves.numbers.push_back(&node);
        }
    }

    static std::size_t walk(const Node& node) {
        std::size_t result = 1;
        if (node.isArray() || node.isObject()) {
            for (const Node& child : node) {
                result += walk(child);
            }
        } else if (node.isString()) {
            result += size_of_string(node);
        }
        return result;
    }

    static int number(const Value& object, const std::string& key) {
        return object.find(key.data(), key.data() + key.size())->asInt();
    }

private:
    static const Json::StreamWriterBuilder& pretty() {
        static const Json::StreamWriterBuilder builder = [] {
            Json::StreamWriterBuilder result;
            result["emitUTF8"] = true;
            return result;
        }();
        return builder;
    }
    static const Json::StreamWriterBuilder& compact() {
        static const Json::StreamWriterBuilder builder = [] {
            Json::StreamWriterBuilder result = pretty();
            result["indentation"] = "";
            return result;
        }();
        return builder;
    }
};

} // namespace

#endif
