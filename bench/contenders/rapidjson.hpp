/// @file
/// RapidJSON: a document owns a pool from which it allocates all its values. Objects are lists of
/// members: a lookup is a linear search, and an insertion does not search for an equal key.
#ifndef FOUNDATION_JSON_BENCH_CONTENDERS_RAPIDJSON_HPP
#define FOUNDATION_JSON_BENCH_CONTENDERS_RAPIDJSON_HPP

#include "documents.hpp"
#include "tasks/records.hpp"

#define RAPIDJSON_HAS_STDSTRING 1
#include <rapidjson/document.h>
#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Contender {
    using Value = rapidjson::Document;
    static constexpr const char* name = "RapidJSON";
    static constexpr bool has_pretty_layout = true;
    static constexpr bool is_this_library = false;
    static constexpr bool has_writer = true;
    static constexpr bool converts = false;
    static constexpr bool patches = false;
    static constexpr bool has_tokens = true;

    /// Takes the tokens of a text.
    struct Walk : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Walk> {
        bench::ContentSums sums;

        bool Default() { return ++sums.values != 0; }
        bool add(double number) {
            sums.sum += number;
            return Default();
        }
        bool Int(int number) { return add(number); }
        bool Uint(unsigned number) { return add(number); }
        bool Int64(std::int64_t number) { return add(static_cast<double>(number)); }
        bool Uint64(std::uint64_t number) { return add(static_cast<double>(number)); }
        bool Double(double number) { return add(number); }
        bool String(const char*, rapidjson::SizeType length, bool) {
            sums.string_bytes += length;
            return Default();
        }
        bool Key(const char*, rapidjson::SizeType, bool) { return true; }
        bool EndObject(rapidjson::SizeType) { return true; }
        bool EndArray(rapidjson::SizeType) { return true; }
    };
    static bench::ContentSums walk_tokens(const std::string& text) {
        Walk walk;
        rapidjson::Reader reader;
        rapidjson::StringStream stream(text.c_str());
        if (!reader
                 .Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(
                     stream, walk)) {
            throw std::runtime_error("RapidJSON cannot read the text");
        }
        return walk.sums;
    }

    /// The text stays in the buffer it was written into.
    class Text {
    public:
        operator std::string_view() const { return {buffer_.GetString(), buffer_.GetSize()}; }
        rapidjson::StringBuffer& buffer() { return buffer_; }

    private:
        rapidjson::StringBuffer buffer_;
    };

    static Value parse(const std::string& text) {
        Value value;
        value.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(
            text);
        if (value.HasParseError()) {
            throw std::runtime_error("RapidJSON cannot read the text");
        }
        return value;
    }
    static Text serialize(const Value& value) {
        Text text;
        rapidjson::Writer<rapidjson::StringBuffer> writer(text.buffer());
        value.Accept(writer);
        return text;
    }
    static Text pretty_print(const Value& value) {
        Text text;
        rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(text.buffer());
        value.Accept(writer);
        return text;
    }
    static void write(std::ostream& stream, const Value& value) {
        rapidjson::OStreamWrapper wrapper(stream);
        rapidjson::Writer<rapidjson::OStreamWrapper> writer(wrapper);
        value.Accept(writer);
    }

    static Text write_records(const std::vector<bench::Record>& records) {
        Text text;
        rapidjson::Writer<rapidjson::StringBuffer> writer(text.buffer());
        writer.StartArray();
        for (const bench::Record& record : records) {
            writer.StartObject();
            writer.Key("id");
            writer.Int(record.id);
            writer.Key("name");
            writer.String(record.name);
            writer.Key("price");
            writer.Double(record.price);
            writer.Key("paid");
            writer.Bool(record.paid);
            writer.Key("timestamp");
            writer.Int64(record.timestamp);
            writer.Key("coordinates");
            writer.StartArray();
            for (const double coordinate : record.coordinates) {
                writer.Double(coordinate);
            }
            writer.EndArray();
            writer.EndObject();
        }
        writer.EndArray();
        return text;
    }

    static Value copy(const Value& value) {
        Value result;
        result.CopyFrom(value, result.GetAllocator());
        return result;
    }
    static bool equal(const Value& a, const Value& b) { return a == b; }

    static Value array() { return Value(rapidjson::kArrayType); }
    static void push(Value& array, double item) { array.PushBack(item, array.GetAllocator()); }
    static void push(Value& array, long long item) {
        array.PushBack(rapidjson::Value(static_cast<std::int64_t>(item)), array.GetAllocator());
    }
    static void push(Value& array, const std::string& item) {
        array.PushBack(rapidjson::Value(item, array.GetAllocator()), array.GetAllocator());
    }
    static void push(Value& array, const Value& item) {
        array.PushBack(rapidjson::Value(item, array.GetAllocator()), array.GetAllocator());
    }

    static Value object() { return Value(rapidjson::kObjectType); }
    static void insert(Value& object, const std::string& key, int number) {
        object.AddMember(rapidjson::Value(key, object.GetAllocator()), rapidjson::Value(number),
                         object.GetAllocator());
    }

    using Node = rapidjson::Value;
    static std::size_t size_of_string(const Node& node) {
        // Takes as long as reading the text itself.
        return node.GetString() != nullptr ? node.GetStringLength() : 0;
    }
    static double number(const Node& node) { return node.GetDouble(); }
    template <class Leaves>
    static void find_leaves(Node& node, Leaves& leaves) {
        if (node.IsArray()) {
            for (Node& element : node.GetArray()) {
                find_leaves(element, leaves);
            }
        } else if (node.IsObject()) {
            for (auto& member : node.GetObject()) {
                find_leaves(member.value, leaves);
            }
        } else if (node.IsString()) {
            leaves.strings.push_back(&node);
        } else if (node.IsNumber()) {
            node.SetDouble(node.GetDouble());
            leaves.numbers.push_back(&node);
        }
    }

    static std::size_t walk(const Node& node) {
        std::size_t result = 1;
        if (node.IsArray()) {
            for (const Node& element : node.GetArray()) {
                result += walk(element);
            }
        } else if (node.IsObject()) {
            for (const auto& member : node.GetObject()) {
                result += walk(member.value);
            }
        } else if (node.IsString()) {
            result += node.GetStringLength();
        }
        return result;
    }

    static int number(const Value& object, const std::string& key) {
        return object.FindMember(key)->value.GetInt();
    }
};

} // namespace

#endif
