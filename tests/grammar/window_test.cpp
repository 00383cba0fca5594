// The window on the text of a stream.
#include "grammar/window.hpp"
#include "support/every_way.hpp"
#include "support/piecewise_stream.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <ios>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::detail {
namespace {

using test::PiecewiseStream;

/// Text that shows where it was taken from.
std::string numbered_lines(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += std::to_string(i) + (i % 3 == 0 ? "\xC3\xA9\n" : " ");
    }
    return text;
}

std::string to_text(const TextPosition& position) {
    return test::to_text({position.byte, position.line, position.column});
}

/// Reads so much that a byte of the input is there, which may be its end; goes on there.
const char* go_to_byte(Window& window, std::size_t byte) {
    const char* at = window.at();
    for (;;) {
        const auto there = static_cast<std::size_t>(window.end() - at);
        const std::size_t missing = byte - window.byte_of(at);
        if (missing <= there) {
            window.go_to(at + missing);
            return window.at();
        }
        at = window.end();
        window.go_to(at);
        if (!window.refill(at)) {
            throw std::logic_error("the input is shorter");
        }
    }
}

TEST(Window, GivesTheTextOfAStreamInPiecesOfAnySize) {
    const std::string text = numbered_lines(200000);
    for (const std::size_t piece : {1U, 7U, 1000U, 65536U, 1000000U}) {
        PiecewiseStream stream(text, piece);
        Window window(&stream);
        window.begin();
        std::string found(window.at(), window.end());
        for (const char* at = window.end(); window.refill(at); at = window.end()) {
            EXPECT_EQ(window.at(), at);
            EXPECT_GT(window.end(), at);
            found.append(at, window.end());
        }
        EXPECT_TRUE(found == text) << piece;
        const char* at = window.end();
        EXPECT_FALSE(window.refill(at)) << "the end stays the end";
        EXPECT_EQ(at, window.end());
        EXPECT_TRUE(stream.eof());
    }
}

TEST(Window, WaitsForTheFirstByteAlone) {
    PiecewiseStream stream("abc", 1, test::StreamFailure::by_throwing);
    Window window(&stream);
    window.begin();
    EXPECT_EQ(stream.taken(), 1U);
    const char* at = window.at();
    const char* token = at;
    EXPECT_TRUE(window.refill(++at, token));
    EXPECT_EQ(stream.taken(), 2U);
    EXPECT_EQ(std::string(token, window.end()), "ab");
    EXPECT_EQ(at, token + 1);
}

TEST(Window, BeginSkipsAByteOrderMarkThatArrivesInPieces) {
    const struct {
        std::string text;
        std::size_t mark;
    } cases[] = {{"\xEF\xBB\xBFx", 3},
                 {"\xEF\xBB\xBF", 3},
                 {"\xEF\xBBx", 0},
                 {"\xEF\xBB", 0},
                 {"\xEF", 0},
                 {"x", 0},
                 {"", 0}};
    for (const auto& c : cases) {
        for (std::size_t piece = 1; piece != 5; ++piece) {
            PiecewiseStream stream(c.text, piece);
            Window window(&stream);
            window.begin();
            EXPECT_EQ(window.byte_of(window.at()), c.mark) << c.text;
        }
        Window whole{std::string_view(c.text)};
        whole.begin();
        EXPECT_EQ(whole.byte_of(whole.at()), c.mark);
        test::InterruptedBuffer buffer(c.text);
        std::istream stream(&buffer);
        Window interrupted(&stream);
        test::until_not_interrupted(stream, [&] { interrupted.begin(); });
        EXPECT_EQ(interrupted.byte_of(interrupted.at()), c.mark);
    }
}

TEST(Window, KeepsATokenAndTheTextThatIsToBeKept) {
    const std::string text = numbered_lines(400000);
    for (const bool keeps : {false, true}) {
        PiecewiseStream stream(text, 1000);
        Window window(&stream);
        window.begin();
        const char* token = go_to_byte(window, 100);
        if (keeps) {
            window.keep(token);
            token = go_to_byte(window, 5000);
        }
        const char* at = token + 10;
        for (std::size_t size = 10; size < 300000;) {
            ASSERT_TRUE(window.refill(at, token));
            size = static_cast<std::size_t>(window.end() - token);
            ASSERT_EQ(at - token, 10);
            ASSERT_EQ(window.at(), token);
            ASSERT_EQ(window.byte_of(token), keeps ? 5000U : 100U);
        }
        EXPECT_TRUE(std::string_view(token, 300000) ==
                    std::string_view(text).substr(keeps ? 5000 : 100, 300000));
        if (keeps) {
            EXPECT_TRUE(std::string_view(window.kept(), 300000) ==
                        std::string_view(text).substr(100, 300000));
            window.release();
        }
        EXPECT_EQ(window.kept(), nullptr);
    }
}

TEST(Window, KeepsALineForErrorsBeforeWhatIsNeeded) {
    const std::string text = numbered_lines(300000);
    PiecewiseStream stream(text, 777);
    Window window(&stream);
    window.begin();
    for (std::size_t byte = 0; byte < 290000; byte += 3001) {
        const char* const at = go_to_byte(window, byte);
        const Context context = window.context();
        const auto before = static_cast<std::size_t>(at - context.text.data());
        EXPECT_GE(before, std::min(byte, most_quoted));
        EXPECT_EQ(context.begin.byte, byte - before);
        EXPECT_TRUE(context.text ==
                    std::string_view(text).substr(byte - before, context.text.size()));
    }
}

TEST(Window, LocatesBytesInAnyOrder) {
    const std::string text = "\xEF\xBB\xBF" + numbered_lines(200000);
    PiecewiseStream stream(text, 5000);
    Window window(&stream);
    window.begin();
    EXPECT_EQ(to_text(window.locate(window.at())), "3=1:1");
    for (std::size_t byte = 100; byte < 195000; byte += 4999) {
        const char* const at = go_to_byte(window, byte);
        for (const std::ptrdiff_t offset : {0, -90, -5, -50, 0}) {
            const auto place = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(byte) + offset);
            ASSERT_EQ(to_text(window.locate(at + offset)),
                      test::to_text(test::plain_position(text, place)));
            ASSERT_EQ(window.byte_of(at + offset), place);
            ASSERT_EQ(window.at_byte(place), at + offset);
        }
    }
    EXPECT_EQ(window.at_byte(0), window.context().text.data()) << "the nearest that is there";
    EXPECT_EQ(window.at_byte(1000000000), window.end());
}

/// Records what a window gives up.
class Listener final : public WindowListener {
public:
    void forget(const Context& context, const char* end) override {
        if (throws) {
            throw std::bad_alloc();
        }
        EXPECT_EQ(context.begin.byte, text.size());
        text.append(context.text.data(), end);
    }

    std::string text;
    bool throws = false;
};

TEST(Window, TellsItsListenerWhatItIsAboutToDrop) {
    const std::string text = numbered_lines(300000);
    PiecewiseStream stream(text, 4000);
    Window window(&stream);
    Listener listener;
    window.set_listener(&listener);
    window.begin();
    for (std::size_t byte = 0; byte < 290000; byte += 999) {
        const char* const at = go_to_byte(window, byte);
        ASSERT_EQ(listener.text.size(), window.context().begin.byte);
        ASSERT_GE(static_cast<std::size_t>(at - window.context().text.data()),
                  std::min(byte, most_quoted));
    }
    EXPECT_TRUE(listener.text == text.substr(0, listener.text.size()));
    EXPECT_GT(listener.text.size(), 200000U);
}

TEST(Window, IsUnchangedAfterAnException) {
    const std::string text = numbered_lines(300000);
    test::InterruptedBuffer buffer(text, 4000);
    std::istream stream(&buffer);
    Window window(&stream);
    Listener listener;
    window.set_listener(&listener);
    test::until_not_interrupted(stream, [&] { window.begin(); });
    std::string found(window.at(), window.end());
    for (bool more = true; more;) {
        const char* at = window.end() - 1;
        const std::size_t byte = window.byte_of(at);
        const auto more_is_there = [&] { return window.refill(++at) || (--at, false); };
        try {
            listener.throws = !listener.throws;
            more = more_is_there();
        } catch (const std::bad_alloc&) {
            --at;
        } catch (const test::BufferFailure&) {
            EXPECT_TRUE(stream.bad());
            EXPECT_THROW(window.refill(at), std::ios_base::failure) << "while the stream is bad";
            stream.clear();
        }
        found.append(window.at_byte(found.size()), window.end());
        ASSERT_LE(window.byte_of(window.at()), byte + 1);
    }
    EXPECT_TRUE(found == text);
}

TEST(Window, AnErrorKnowsTheRestOfItsLineAndMovesNoText) {
    for (const std::size_t line_end : {0U, 1U, 100U, 160U, 161U, 162U, 1000U}) {
        for (const std::size_t piece : {1U, 3U, 1000U}) {
            const std::string text =
                "ab" + std::string(line_end, 'x') + "\n" + std::string(500, 'y');
            PiecewiseStream stream(text, piece);
            Window window(&stream);
            window.begin();
            const char* const at = go_to_byte(window, 2);
            const Context context = window.context_for_error(at);
            EXPECT_EQ(context.text.data(), at - 2);
            EXPECT_GE(context.text.size(), 2 + std::min<std::size_t>(line_end, quoted_behind));
            EXPECT_EQ(context.text, text.substr(0, context.text.size()));
            if (piece == 1) {
                EXPECT_EQ(stream.taken(), 2 + std::min<std::size_t>(line_end + 1, quoted_behind));
            }
        }
    }
    PiecewiseStream stream("ab", 1);
    Window window(&stream);
    window.begin();
    EXPECT_EQ(window.context_for_error(go_to_byte(window, 1)).text, "ab") << "at the end";
}

TEST(Window, ManyErrorsInATextNeverNeedMoreThanTheRoomThereIs) {
    const std::string text(200000, 'x');
    for (const bool settles : {false, true}) {
        PiecewiseStream stream(text, 1000);
        Window window(&stream);
        window.begin();
        // Up to the end of the window, byte by byte, as far as reading goes without moving the
        // text.
        for (std::size_t byte = 64000; byte != 66000; ++byte) {
            const std::size_t there = window.byte_of(window.end());
            if (byte > there) {
                break;
            }
            window.go_to(window.at_byte(byte));
            if (settles) {
                window.settle();
            }
            const Context context = window.context_for_error(window.at_byte(byte));
            ASSERT_EQ(window.byte_of(context.text.data() + context.text.size()),
                      window.byte_of(window.end()));
            if (settles) {
                ASSERT_GE(window.byte_of(window.end()), byte + quoted_behind);
            }
        }
        window.settle();
        go_to_byte(window, 150000);
        EXPECT_EQ(std::string(window.at(), 100), text.substr(0, 100));
    }
}

TEST(Window, LimitsTheLengthOfTexts) {
    PiecewiseStream stream("");
    const Window window(&stream, 5);
    const char text[] = "abcdefgh";
    EXPECT_EQ(window.most_kept(), 5U);
    EXPECT_EQ(window.limit_before(text, text), nullptr);
    EXPECT_EQ(window.limit_before(text, text + 5), nullptr);
    EXPECT_EQ(window.limit_before(text, text + 6), text + 5);
    const Window unlimited_window(&stream);
    EXPECT_EQ(unlimited_window.limit_before(text, text + 8), nullptr);
}

TEST(Window, OfATextInMemoryReadsNothing) {
    const std::string text = "abc";
    Window window{std::string_view(text)};
    EXPECT_EQ(window.at(), text.data());
    EXPECT_EQ(window.end(), text.data() + 3);
    const char* at = window.end();
    EXPECT_FALSE(window.refill(at));
    EXPECT_EQ(at, text.data() + 3);
    EXPECT_EQ(window.context_for_error(at).text, text);
    window.settle();
    EXPECT_EQ(window.end(), text.data() + 3);
    EXPECT_EQ(to_text(window.locate(at)), "3=1:4");
}

} // namespace
} // namespace foundation::json::detail
