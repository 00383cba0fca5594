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
    Cursor name(Cursor, const std::string& name) { return add("name " + name); }
    Cursor line(Cursor, std::size_t depth) { return add(depth, " levels"); }

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

// ---- The fixed layouts ---------------------------------------------------------------------

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

TEST(LayoutWriter, PutsAColonAfterEachName) {
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

// ---- The layouts of JSON.stringify ---------------------------------------------------------

/// @param sorts  whether members are sorted by UTF-16
Pieces pieces_at(const Value& value, Layout layout, bool sorts = false, std::size_t depth = 0) {
    PieceRecorder output;
    if (layout == Layout::compact) {
        LayoutWriter<PieceRecorder, Layout::compact>(output, sorts, depth).write({}, value);
    } else {
        LayoutWriter<PieceRecorder, Layout::indented>(output, sorts, depth).write({}, value);
    }
    return output.pieces;
}

TEST(LayoutWriter, WritesUndefinedAsNullOrNotAtAll) {
    const Undefined none;
    EXPECT_EQ(pieces_at(Undefined(), Layout::compact), Pieces{"null"});
    EXPECT_EQ(pieces_at(Array{none, true, none}, Layout::compact),
              (Pieces{"[", "null", ",", "true", ",", "null", "]"}));
    EXPECT_EQ(pieces_at(Object{{"a", none}}, Layout::indented), (Pieces{"{", "}"}));
    EXPECT_EQ(pieces_at(Object{{"a", none}, {"b", true}, {"c", none}}, Layout::compact),
              (Pieces{"{", "name b", "true", "}"}));
    EXPECT_EQ(pieces_at(Object{{"a", true}, {"b", none}, {"c", false}}, Layout::compact),
              (Pieces{"{", "name a", "true", ",", "name c", "false", "}"}));
}

TEST(LayoutWriter, PutsItemsOnLinesAtTheirLevel) {
    EXPECT_EQ(pieces_at(Array{true, Object{{"a", Array{}}}}, Layout::indented),
              (Pieces{"[", "1 levels", "true", ",", "1 levels", "{", "2 levels", "name a", "[", "]",
                      "1 levels", "}", "0 levels", "]"}));
    EXPECT_EQ(pieces_at(Array{true}, Layout::indented, false, 3),
              (Pieces{"[", "4 levels", "true", "3 levels", "]"}));
    EXPECT_EQ(pieces_at(Array{}, Layout::indented, false, 3), (Pieces{"[", "]"}));
}

TEST(LayoutWriter, SortsMembersByUtf16IfAskedTo) {
    const Value value(Object{
        {"\xF0\x9F\x99\x82", Object{{"b", true}}}, {"\xEF\xBC\xA1", true}, {"a", Undefined()}});
    EXPECT_EQ(pieces_at(value, Layout::compact),
              (Pieces{"{", "name \xEF\xBC\xA1", "true", ",", "name \xF0\x9F\x99\x82", "{", "name b",
                      "true", "}", "}"}));
    EXPECT_EQ(pieces_at(value, Layout::compact, true),
              (Pieces{"{", "name \xF0\x9F\x99\x82", "{", "name b", "true", "}", ",",
                      "name \xEF\xBC\xA1", "true", "}"}));
    EXPECT_EQ(pieces_at(Object{{"\xF0\x9F\x99\x82", true}}, Layout::indented, true),
              (Pieces{"{", "1 levels", "name \xF0\x9F\x99\x82", "true", "0 levels", "}"}));
    EXPECT_EQ(pieces_at(Object{{"\xF0\x9F\x99\x82", Undefined()}}, Layout::indented, true),
              (Pieces{"{", "}"}));
}

} // namespace
} // namespace foundation::json::detail
