// What write.hpp refuses to compile, and the sentence that says why.
#include <foundation/json/write.hpp>

#include <string>
#include <vector>

using namespace foundation::json;

std::string text;
Writer writer(text);

enum class Colour { red };
struct Point {
    int x;
};
const std::vector<int> numbers;
int seven = 7;

// An expected sentence is one line, however long.
// clang-format off

// refused ACharacterIsNeitherStringNorNumber: a character is neither a string nor a number in JSON: write std::string(1, c) or int(c)
void a() { writer.value('c'); }

// refused AWideCharacterIsNeither: a character is neither a string nor a number in JSON: write std::string(1, c) or int(c)
void b() { writer.value(u'c'); }

// refused ALongDoubleIsNoNumberOfJson: a Writer does not know this type: write bool, a number, a string, nullptr, Null, Undefined, Value, Array or Object
void c() { writer.value(1.0L); }

// refused APointerIsNoBool: a Writer does not know this type: write bool, a number, a string, nullptr, Null, Undefined, Value, Array or Object
void d() { writer.value(&seven); }

// refused AnEnumerationHasNoText: a Writer does not know this type: write bool, a number, a string
void e() { writer.value(Colour::red); }

// refused AStructHasNoText: a Writer does not know this type: write bool, a number, a string
void f() { writer.value(Point{1}); }

// refused AVectorOfIntHasNoText: a Writer does not know this type: write bool, a number, a string
void g() { writer.value(numbers); }

// refused AWriterIsNotCopied: deleted
Writer h(writer);

// refused TheFileIsNotTheValue: no matching function for call
std::string i = write("a.json", Value(1));
