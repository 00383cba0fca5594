/// @file
/// The pieces of a layout and their order, independent of the output.
#include "serialization/layout.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace foundation::json::detail {
namespace {

/// An output that records the pieces of a text. For numbers, strings, line ends and spaces it
/// records the call.
class PieceRecorder {
public:
    struct Cursor {};

    Cursor text(Cursor, const char* piece) { return add(piece); }
    Cursor number(Cursor, FloatingBits<double> bits) { return add(bits.number(), " as double"); }
    Cursor number(Cursor, FloatingBits<float> bits) { return add(bits.number(), " as float"); }
    Cursor number(Cursor, long long value) { return add(value, " as int64"); }
    Cursor number(Cursor, unsigned long long value) { return add(value, " as uint64"); }
    Cursor string(Cursor, const std::string& text) { return add("string " + text); }
    Cursor line_end(Cursor) { return add("line end"); }
    Cursor spaces(Cursor, std::size_t count) { return add(count, " spaces"); }

    std::vector<std::string> pieces;

private:
    template <class Number>
    Cursor add(Number number, const char* kind) {
        return add(std::to_string(static_cast<long long>(number)) + kind);
    }
    Cursor add(const std::string& piece) {
        pieces.push_back(piece);
        return {};
    }
};

using Pieces = std::vector<std::string>;

template <Layout layout>
Pieces pieces_of(const Value& value) {
    PieceRecorder output;
    LayoutWriter<PieceRecorder, layout>(output).write({}, value);
    return output.pieces;
}

Pieces compact(const Value& value) {
    return pieces_of<Layout::fixed>(value);
}

Pieces pretty(const Value& value) {
    return pieces_of<Layout::fixed_pretty>(value);
}

TEST(LayoutWriter, WritesAValueWithoutItemsAsOnePiece) {
    const struct {
        Value value;
        Pieces pieces;
    } rows[] = {
        {Undefined(), {}},      {Null(), {"null"}},      {true, {"true"}},
        {false, {"false"}},     {1, {"1 as double"}},    {"text", {"string text"}},
        {2.0f, {"2 as float"}}, {-3LL, {"-3 as int64"}}, {4ULL, {"4 as uint64"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(compact(row.value), row.pieces);
        EXPECT_EQ(pretty(row.value), row.pieces);
    }
}

TEST(LayoutWriter, PutsCommasBetweenElements) {
    EXPECT_EQ(compact(Array{}), (Pieces{"[", "]"}));
    EXPECT_EQ(compact(Array{true}), (Pieces{"[", "true", "]"}));
    EXPECT_EQ(compact(Array{true, Array{}, Undefined(), "a"}),
              (Pieces{"[", "true", ",", "[", "]", ",", ",", "string a", "]"}));
}

TEST(LayoutWriter, PutsAColonBehindEachName) {
    EXPECT_EQ(compact(Object{}), (Pieces{"{", "}"}));
    EXPECT_EQ(compact(Object{{"a", true}, {"b", Object{{"c", Undefined()}}}}),
              (Pieces{"{", "string a", ":", "true", ",", "string b", ":", "{", "string c", ":", "}",
                      "}"}));
}

TEST(LayoutWriter, PutsItemsOnLinesOfTheirOwn) {
    EXPECT_EQ(pretty(Array{true, Object{{"a", Null()}}}),
              (Pieces{"[", "line end", "4 spaces", "true", ",", "line end", "4 spaces", "{",
                      "line end", "8 spaces", "string a", ":", "null", "line end", "4 spaces", "}",
                      "line end", "0 spaces", "]"}));
}

TEST(LayoutWriter, PutsIndentationBetweenEmptyBrackets) {
    EXPECT_EQ(pretty(Array{}), (Pieces{"[", "0 spaces", "]"}));
    EXPECT_EQ(pretty(Array{Object{}}), (Pieces{"[", "line end", "4 spaces", "{", "4 spaces", "}",
                                               "line end", "0 spaces", "]"}));
}

} // namespace
} // namespace foundation::json::detail
