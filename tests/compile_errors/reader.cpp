// What reader.hpp refuses to compile, and the sentence that says why.
#include <foundation/json/reader.hpp>

#include <string>
#include <string_view>
#include <utility>

using namespace foundation::json;

std::string text;
const std::string constant;
Reader of_string(text);
Reader of_constant(constant, ParseOptions());
Reader of_view(std::string_view("1"));
Reader of_literal("1");

// An expected sentence is one line, however long.
// clang-format off

// refused AStringThatIsGoneAtOnceCannotBeRead: deleted
Reader a(std::string("1"));

// refused AStringThatIsMovedCannotBeRead: deleted
Reader b(std::move(text));

// refused AConstantThatIsGoneAtOnceCannotBeRead: deleted
const std::string make();
Reader c(make(), ParseOptions());

// refused AReaderIsNotCopied: deleted
Reader d(of_view);

// refused ABooleanIsNoNumber: number: a truth value is no number: write get<bool>(value)
bool e = of_view.number<bool>();
