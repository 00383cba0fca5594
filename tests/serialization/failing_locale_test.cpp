/// @file
/// Texts in strings where a facet of the global locale throws: the same as on a new
/// std::ostringstream, which swallows what insertions throw. Only std::bad_alloc is thrown.
#include "support/locales.hpp"
#include "support/tree.hpp"
#include "support/write_as.hpp"

#include <foundation/json/serializer.hpp>
#include <foundation/json/value.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <ios>
#include <iterator>
#include <locale>
#include <map>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>

namespace foundation::json {
namespace {

using test::Elements;
using test::Layout;
using test::ScopedGlobalLocale;
using test::text_of;
using test::Tree;

constexpr Layout layouts[] = {Layout::compact, Layout::pretty};

// ---- Facets that throw ---------------------------------------------------------------------

/// What a facet does at one of its calls.
enum class Fault { none, exception, stream_failure, not_an_exception, out_of_memory, bad_iterator };

/// Counts down to the call that fails, for all facets of a type.
class Countdown {
public:
    /// @param call     the one that fails, from 1; 0 for none
    /// @param lasting  whether all later ones fail too
    void start(Fault fault, int call, bool lasting) {
        fault_ = call > 0 ? fault : Fault::none;
        left_ = call;
        lasting_ = lasting;
    }

    /// Whether this call fails in another way than by an exception.
    bool call() {
        if (fault_ == Fault::none || --left_ > 0 || (left_ < 0 && !lasting_)) {
            return false;
        }
        switch (fault_) {
        case Fault::exception:
            throw std::runtime_error("a facet's");
        case Fault::stream_failure:
            throw std::ios_base::failure("a facet's");
        case Fault::not_an_exception:
            throw 42;
        case Fault::out_of_memory:
            throw std::bad_alloc();
        default:
            return true;
        }
    }

private:
    Fault fault_ = Fault::none;
    int left_ = 0;
    bool lasting_ = false;
};

Countdown integers;
Countdown characters;
Countdown punctuation;

/// Writes half an integer before it fails.
class FailingNumPut : public std::num_put<char> {
protected:
    iter_type do_put(iter_type out, std::ios_base& stream, char fill, long number) const override {
        return put(out, stream, fill, number);
    }
    iter_type do_put(iter_type out, std::ios_base& stream, char fill,
                     long long number) const override {
        return put(out, stream, fill, number);
    }
    iter_type do_put(iter_type out, std::ios_base& stream, char fill,
                     unsigned long long number) const override {
        return put(out, stream, fill, number);
    }

private:
    template <class Number>
    iter_type put(iter_type out, std::ios_base& stream, char fill, Number number) const {
        *out++ = '<';
        if (integers.call()) {
            return std::ostreambuf_iterator<char>(static_cast<std::streambuf*>(nullptr));
        }
        return std::num_put<char>::do_put(out, stream, fill, number);
    }
};

/// Fails to widen line feeds and fill characters.
class FailingCtype : public std::ctype<char> {
protected:
    char do_widen(char c) const override {
        characters.call();
        return c;
    }
    const char* do_widen(const char* first, const char* last, char* out) const override {
        characters.call();
        std::copy(first, last, out);
        return last;
    }
};

class FailingPunctuation : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override {
        punctuation.call();
        return "\3";
    }
};

/// Made anew for every text, since a locale does not ask its facets again for what it has cached.
std::locale failing_locale() {
    const std::locale with_integers(std::locale::classic(), new FailingNumPut);
    const std::locale with_characters(with_integers, new FailingCtype);
    return {with_characters, new FailingPunctuation};
}

// ---- Outcomes ------------------------------------------------------------------------------

template <class Make>
std::string outcome_of(Make make) {
    try {
        return make();
    } catch (const std::bad_alloc&) {
        return "(out of memory)";
    } catch (const std::ios_base::failure&) {
        return "(a stream's failure)";
    } catch (const std::runtime_error& error) {
        return std::string("(") + error.what() + ")";
    } catch (int number) {
        return "(" + std::to_string(number) + ")";
    }
}

std::string text_on_new_stream(const Tree& tree, Layout layout) {
    std::ostringstream stream;
    test::ReferenceWriter(stream, layout == Layout::pretty).write(tree);
    return stream.str();
}

struct Faults {
    Fault kind;
    int integer;
    int character;
    int grouping;
    bool lasting = false;
};

void start(const Faults& faults) {
    integers.start(faults.kind, faults.integer, faults.lasting);
    characters.start(faults.kind, faults.character, faults.lasting);
    punctuation.start(faults.kind, faults.grouping, faults.lasting);
}

void stop() {
    start({Fault::none, 0, 0, 0});
}

/// Every kind of piece that depends on a facet: integers, escapes, line ends.
const Tree document{Elements{
    {1234567LL},
    {std::string("a\x01z\x1F/")},
    {Elements{{7654321ULL}, {0.5}, {Elements{}}}},
    {2.5f},
    {-1LL},
    {std::string("end")},
}};

std::string text_of_library(const Value& value, Layout layout, const Faults& faults) {
    const ScopedGlobalLocale global(failing_locale());
    start(faults);
    const std::string outcome = outcome_of([&] { return text_of(value, layout); });
    stop();
    return outcome;
}

std::string text_of_stream(const Tree& tree, Layout layout, const Faults& faults) {
    const ScopedGlobalLocale global(failing_locale());
    start(faults);
    const std::string outcome = outcome_of([&] { return text_on_new_stream(tree, layout); });
    stop();
    return outcome;
}

/// Whether a stream asks for characters as soon as it is made, or only when it needs them, which
/// depends on the standard library.
bool asks_for_characters_when_made() {
    const ScopedGlobalLocale global(failing_locale());
    start({Fault::exception, 0, 1, 0});
    const std::string outcome = outcome_of([] { return std::ostringstream().str(); });
    stop();
    return outcome == "(a facet's)";
}

// ---- Tests ---------------------------------------------------------------------------------

TEST(FailingFacet, OfIntegersEndsTheTextThere) {
    const Value value = test::to_value(document);
    for (const Fault fault :
         {Fault::exception, Fault::stream_failure, Fault::not_an_exception, Fault::bad_iterator}) {
        EXPECT_EQ(text_of_library(value, Layout::compact, {fault, 1, 0, 0}), "[<");
        EXPECT_EQ(text_of_library(value, Layout::compact, {fault, 2, 0, 0}), "[<1'234'567,\"a\\u<");
        EXPECT_EQ(text_of_library(value, Layout::compact, {fault, 4, 0, 0}),
                  R"([<1'234'567,"a\u<0001z\u<001f\/",[<)");
        EXPECT_EQ(text_of_library(value, Layout::pretty, {fault, 1, 0, 0}), "[\n    <");
    }
}

TEST(FailingFacet, OfFillCharactersEndsTheTextThere) {
    const Value value = std::vector<Value>{true, 1234567ULL, false};
    const char* const expected = asks_for_characters_when_made() ? "(a facet's)" : "[true,";
    EXPECT_EQ(text_of_library(value, Layout::compact, {Fault::exception, 0, 1, 0}), expected);
}

TEST(FailingFacet, OfLineEndsThrowsToTheCallerSinceNoInsertionCatchesIt) {
    const Value value = std::vector<Value>{true};
    EXPECT_EQ(text_of_library(value, Layout::pretty, {Fault::exception, 0, 1, 0}), "(a facet's)");
    EXPECT_EQ(text_of_library(value, Layout::pretty, {Fault::not_an_exception, 0, 1, 0}), "(42)");
    const char* const compact = asks_for_characters_when_made() ? "(a facet's)" : "[true]";
    EXPECT_EQ(text_of_library(value, Layout::compact, {Fault::exception, 0, 1, 0}), compact);
}

TEST(FailingFacet, ThrowsToTheCallerAlsoAfterTheTextHasEnded) {
    const Tree tree{Elements{{1LL}, {std::string("\x01")}}};
    const Faults faults{Fault::exception, 0, 1, 0, true};
    EXPECT_EQ(text_of_stream(tree, Layout::compact, faults), "(a facet's)");
    EXPECT_EQ(text_of_library(test::to_value(tree), Layout::compact, faults), "(a facet's)");
}

TEST(FailingFacet, ThatRunsOutOfMemoryThrowsBadAllocToTheCaller) {
    const Value value = test::to_value(document);
    for (const Layout layout : layouts) {
        for (int call = 1; call <= 5; ++call) {
            EXPECT_EQ(text_of_library(value, layout, {Fault::out_of_memory, call, 0, 0}),
                      "(out of memory)");
        }
        EXPECT_EQ(text_of_library(value, layout, {Fault::out_of_memory, 0, 1, 0}),
                  "(out of memory)");
    }
}

/// Each call of a facet fails, and each pair of calls of different facets. The standard library
/// decides when it calls the facet for punctuation.
TEST(FailingFacet, HasTheSameEffectAsOnANewStringStream) {
    const Tree trees[] = {
        document,
        {1LL},
        {std::string("\x01")},
        {Elements{{1LL}, {std::string("\x01")}, {2ULL}}},
        {Elements{{std::string("\x01")}, {1LL}, {2ULL}}},
    };
    std::map<std::string, int> outcomes;
    for (const Tree& tree : trees) {
        const Value value = test::to_value(tree);
        for (const Layout layout : layouts) {
            for (const Fault fault : {Fault::exception, Fault::stream_failure,
                                      Fault::not_an_exception, Fault::bad_iterator}) {
                for (int call = 0; call < 8 * 4 * 4 * 2; ++call) {
                    const Faults faults{fault, call % 8, call / 8 % 4, call / 32 % 4, call >= 128};
                    const std::string expected = text_of_stream(tree, layout, faults);
                    ++outcomes[expected];
                    ASSERT_EQ(text_of_library(value, layout, faults), expected)
                        << "call " << faults.integer << " for integers, " << faults.character
                        << " for characters, " << faults.grouping << " for punctuation";
                }
            }
        }
    }
    EXPECT_GT(outcomes["(a facet's)"], 100);
    EXPECT_GT(outcomes["(a stream's failure)"], 100);
    EXPECT_GT(outcomes["(42)"], 100);
    EXPECT_GT(outcomes["[<1'234'567,\"a\\u<"], 10);
}

} // namespace
} // namespace foundation::json
