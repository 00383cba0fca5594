// Running out of memory while JSON text is written for other programs: to a string, onto a stream,
// to a file, and piece by piece.
#include "support/allocation_failures.hpp"
#include "support/describe.hpp"
#include "support/fixed_stream.hpp"
#include "support/temporary_folder.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/write.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>

namespace foundation::json::test {
namespace {

/// A document whose text takes several buffers, and has members to be sorted.
Value long_document() {
    Array elements(300, Value(std::string(300, 'x') + "/\x01\xC3\xA9"));
    elements.emplace_back(Object{{"\xF0\x9F\x99\x82", 1}, {"\xEF\xBC\xA1", Array{0.5}}});
    elements.emplace_back(std::string(10000, 'y'));
    return elements;
}

const WriteOptions all_options[] = {WriteOptions(), WriteOptions::indented(2),
                                    WriteOptions::canonical()};

TEST(WriteOutOfMemory, MakesNoStringAtAll) {
    for (const WriteOptions& options : all_options) {
        struct Operands {
            Value value;
            std::string text;
        };
        const std::string expected = write(long_document(), options);
        const std::size_t failures = fail_each_allocation(
            [] {
                return Operands{long_document(), "untouched"};
            },
            [&](Operands& o) { o.text = write(o.value, options); },
            [&](const Operands& o) {
                EXPECT_EQ(o.text, "untouched");
                EXPECT_EQ(describe(o.value), describe(long_document()));
            },
            [&](const Operands& o) { EXPECT_EQ(o.text, expected); });
        EXPECT_GE(failures, 10U);
    }
}

TEST(WriteOutOfMemory, NeedsTheResultAloneForShortTexts) {
    const Value value(Object{{"a", Array{1, 2.5, "some text", Null()}}, {"b", 123456789LL}});
    EXPECT_EQ(allocations_of([&] { static_cast<void>(write(value)); }), 1U);
    EXPECT_EQ(allocations_of([&] { static_cast<void>(write(value, WriteOptions::indented(2))); }),
              1U);
    EXPECT_EQ(allocations_of([&] { static_cast<void>(write(1)); }), 0U);
}

TEST(WriteOutOfMemory, ThrowsBadAllocWhereAnErrorCannotBeReported) {
    const Value value(Object{{"a", Array{1, Object{{std::string(100, 'n'), std::nan("")}}}}});
    const std::size_t failures =
        fail_each_allocation([] { return 0; },
                             [&](int&) {
                                 try {
                                     static_cast<void>(write(value));
                                     ADD_FAILURE() << "nothing was thrown";
                                 } catch (const WriteError& error) {
                                     if (error.pointer() != "/a/1/" + std::string(100, 'n')) {
                                         throw std::logic_error("another location");
                                     }
                                 }
                             },
                             [](int) {}, [](int) {});
    EXPECT_GE(failures, 3U);
}

TEST(WriteOntoStreamOutOfMemory, CannotHappenToAStreamThatHasAllItNeeds) {
    const Value value = long_document();
    const std::string text = write(value);
    FixedStream stream(text.size());
    EXPECT_EQ(allocations_of([&] { write(stream, value); }), 0U);
    EXPECT_EQ(stream.text(), text);
}

TEST(WriteOntoStreamOutOfMemory, LeavesABeginningWhereMembersAreSorted) {
    struct Operands {
        Value value;
        std::unique_ptr<FixedStream> stream;
    };
    const std::string text = write(long_document(), WriteOptions::canonical());
    std::unique_ptr<FixedStream> another;
    const std::size_t failures = fail_each_allocation(
        [&] {
            another = std::make_unique<FixedStream>(text.size());
            return Operands{long_document(), std::make_unique<FixedStream>(text.size())};
        },
        [&](Operands& o) {
            if (!o.stream->text().empty()) {
                o.stream.swap(another); // tried again
            }
            write(*o.stream, o.value, WriteOptions::canonical());
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.stream->text(), text.substr(0, o.stream->text().size()));
            EXPECT_LT(o.stream->text().size(), text.size());
        },
        [&](const Operands& o) {
            EXPECT_EQ(o.stream->text(), text);
            EXPECT_TRUE(o.stream->good());
        });
    EXPECT_GE(failures, 1U);
}

TEST(WriteFileOutOfMemory, LeavesTheOldFileAndNothingElse) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("a.json", folder / "link");
    const std::filesystem::path path = folder / "link";
    const Value value = long_document();
    const std::size_t failures = fail_each_allocation(
        [&] {
            make_file(folder / "a.json", "old");
            return 0;
        },
        [&](int&) { write_file(path, value); },
        [&](int) {
            EXPECT_EQ(content_of(folder / "a.json"), "old");
            EXPECT_EQ(folder.names(), (std::set<std::string>{"a.json", "link"}));
        },
        [&](int) {
            EXPECT_EQ(content_of(folder / "a.json"), write(value) + "\n");
            EXPECT_EQ(folder.names(), (std::set<std::string>{"a.json", "link"}));
        });
    EXPECT_GE(failures, 3U);
}

// ---- Piece by piece ------------------------------------------------------------------------

void write_pieces(Writer& writer) {
    writer.begin_object();
    for (int i = 0; i < 12; ++i) {
        writer.name("level " + std::to_string(i)).begin_array().value(i).begin_object();
    }
    writer.name(std::string(9000, 'n')).value(std::string(9000, 's'));
    for (int i = 0; i < 12; ++i) {
        writer.end().end();
    }
    writer.end();
}

TEST(WriterOutOfMemory, BreaksTheTextOff) {
    std::string expected;
    {
        Writer writer(expected);
        write_pieces(writer);
    }
    const std::size_t failures = fail_each_allocation(
        [] { return std::string(); },
        [](std::string& text) {
            text.clear();
            Writer writer(text);
            write_pieces(writer);
        },
        [&](const std::string& text) { EXPECT_EQ(text, expected.substr(0, text.size())); },
        [&](const std::string& text) { EXPECT_EQ(text, expected); });
    EXPECT_GE(failures, 5U);
}

TEST(WriterOutOfMemory, LetsNoCallFollow) {
    std::string text;
    Writer writer(text);
    writer.begin_object();
    const std::string name(20000, 'n');
    {
        const FailingAllocation failing(1, Failing::once);
        EXPECT_THROW(writer.name(name), std::bad_alloc);
        EXPECT_TRUE(failing.happened());
    }
    EXPECT_THROW(writer.name("a"), std::logic_error);
}

TEST(Allocations, OfAWriterDoNotGrowWithTheText) {
    FixedStream stream(10'000'000);
    Writer writer(stream);
    const auto write_some = [&](int count) {
        for (int i = 0; i < count; ++i) {
            writer.begin_object()
                .name("number")
                .value(i / 8.0)
                .name("text")
                .value("some text")
                .end();
        }
    };
    writer.begin_array();
    write_some(1000);
    EXPECT_EQ(allocations_of([&] { write_some(100'000); }), 0U);
    writer.end();
    EXPECT_TRUE(stream.good());
    EXPECT_GT(stream.text().size(), 3'000'000U);
}

TEST(Allocations, OfAWriterOfAShortTextAreOneBesideTheText) {
    std::string text;
    text.reserve(1000);
    EXPECT_EQ(allocations_of([&] {
                  Writer(text)
                      .begin_object()
                      .name("id")
                      .value(7)
                      .name("tags")
                      .begin_array()
                      .value("a")
                      .end()
                      .end();
              }),
              1U);
}

} // namespace
} // namespace foundation::json::test
