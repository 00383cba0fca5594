// What convert.hpp refuses to compile, and the sentence that says why.
#include <foundation/json/convert.hpp>

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

using namespace foundation::json;

const Value value;

struct Plain {
    int a = 0;
    int b = 0;
    int function() const { return a; }
};

struct Other {
    int c = 0;
};

struct Base {
    int a = 0;
};

struct Derived : Base {
    int b = 0;
};

struct NoDefault {
    explicit NoDefault(int number) : a(number) {}
    int a;
};

struct Const {
    const int a = 0;
};

struct Holder {
    Plain plain;
    std::vector<const char*> texts;
};

struct OwnMap {
    using key_type = std::string;
    using mapped_type = int;
};

enum class Colour { red, green };

// Mistakes are also found among many. This table stays right.
struct Many {
    int a = 0, b = 0, c = 0, d = 0, e = 0, f = 0, g = 0, h = 0, i = 0, j = 0;
};

template <>
inline constexpr auto foundation::json::members<NoDefault> = std::tuple(required("a",
                                                                                 &NoDefault::a));

// An expected sentence is one line, however long.
// clang-format off

// refused AClassNeedsATable: to convert this type, specialise foundation::json::members for it: table(required(name, member), defaulted(name, member), ...)
Plain a = to<Plain>(value);

// refused AClassToBeWrittenNeedsATable: to convert this type, specialise foundation::json::members for it: table(required(name, member), defaulted(name, member), ...)
Value b = from(Plain());

// refused AClassWithinOthersNeedsATable: to convert this type, specialise foundation::json::members for it
auto c = to<std::map<std::string, std::optional<std::vector<Plain>>>>(value);

// refused AClassInATupleNeedsATable: to convert this type, specialise foundation::json::members for it
Value d = from(std::tuple<int, Plain>());

// refused AMapIsByString: a map cannot be converted unless its keys are std::string, since they become names of members
auto e = to<std::map<int, int>>(value);

// refused AMapToBeWrittenIsByString: a map cannot be converted unless its keys are std::string
Value e2 = from(std::unordered_map<Colour, int>());

// refused AMultimapIsByString: a multimap cannot be converted unless its keys are std::string, since they become names of members
auto e3 = to<std::multimap<int, int>>(value);

// refused AnUnorderedMultimapIsByString: a multimap cannot be converted unless its keys are std::string
Value e4 = from(std::unordered_multimap<int, int>());

// refused AnotherMapIsNotConverted: of maps, only std::map and std::unordered_map can be converted
auto e5 = to<OwnMap>(value);

// refused APointerWithADeleterIsNotConverted: a pointer, reference, view or C array cannot be converted: use std::string for a string
auto f = to<std::unique_ptr<int, void (*)(int*)>>(value);

// refused AWeakPointerIsNotConverted: to convert this type, specialise foundation::json::members for it
auto f2 = from(std::weak_ptr<int>());

// refused AClassToBeWrittenAsTextNeedsATable: to convert this type, specialise foundation::json::members for it
std::string f5 = write(Plain());

// refused APlacedPointeeNeedsATable: to convert this type, specialise foundation::json::members for it
auto f6 = to<std::shared_ptr<Plain>>(value);

// refused AnAlternativeNeedsATable: to convert this type, specialise foundation::json::members for it
auto f7 = to<std::variant<int, Plain>>(value);

// refused ARepresentationThatIsReadNeedsFrom: to read this type, its foundation::json::representation needs a function: static T from(const Other&)
template <>
struct foundation::json::representation<Plain> {
    static int to(const Plain& plain) { return plain.a; }
};
Plain f8 = to<Plain>(value);

// refused ARepresentationThatIsWrittenNeedsTo: to write this type, its foundation::json::representation needs a function: static Other to(const T&)
template <>
struct foundation::json::representation<Plain> {
    static Plain from(int number) { return {number, 0}; }
};
Value f9 = from(Plain());

// refused EachAlternativeHasAName: foundation::json::alternatives has to be tagged(member, {name, ...}), with a name for each alternative of the variant
template <>
inline constexpr auto foundation::json::members<Base> = table(required("a", &Base::a));
template <>
inline constexpr auto foundation::json::members<Derived> = table(members<Base>);
template <>
inline constexpr auto foundation::json::alternatives<std::variant<Base, Derived>> = tagged("type", {"base"});
auto f10 = to<std::variant<Base, Derived>>(value);

// refused NamesOfAlternativesDiffer: foundation::json::alternatives names two alternatives the same
template <>
inline constexpr auto foundation::json::members<Base> = table(required("a", &Base::a));
template <>
inline constexpr auto foundation::json::members<Derived> = table(members<Base>);
template <>
inline constexpr auto foundation::json::alternatives<std::variant<Base, Derived>> = tagged("type", {"a", "a"});
auto f11 = to<std::variant<Base, Derived>>(value);

// refused ACheckTakesTheMember: a check of a member takes the member, or what is in it, and gives a std::string: what is wrong, or nothing
inline std::string check_text(const std::string& text) { return text; }
template <>
inline constexpr auto foundation::json::members<Plain> = table(required("a", &Plain::a, &check_text));
Plain f12 = to<Plain>(value);

// refused AConstOptionalIsNamedWithoutConst: name the type without const and volatile
auto f4 = to<const std::optional<int>>(value);

// refused AClassWithoutNamedMembersIsReplaced: table(required(name, member), defaulted(name, member), ...), or use another type, such as Value, in its place
auto f3 = to<std::chrono::milliseconds>(value);

// refused AnEnumerationNeedsATable: to convert this enumeration, specialise foundation::json::enumerators for it: table<E>({{enumerator, name}, ...})
Colour g = to<Colour>(value);

// refused AnEnumerationToBeWrittenNeedsATable: to convert this enumeration, specialise foundation::json::enumerators for it: table<E>({{enumerator, name}, ...})
Value h = from(Colour::red);

// refused ACharacterPointerIsNotConverted: a pointer, reference, view or C array cannot be converted: use std::string for a string, std::vector or std::array for elements, std::optional for what may be missing
auto i = to<const char*>(value);

// refused AStringViewIsNotRead: a view can be written, but not read, since nobody would own its text: use std::string
auto j = to<std::string_view>(value);

// refused AReferenceIsNotConverted: a pointer, reference, view or C array cannot be converted: use std::string for a string
auto& k = to<std::string&>(value);

// refused ALiteralIsNotConverted: a pointer, reference, view or C array cannot be converted: use std::string for a string
Value l = from("text");

// refused AConstTypeIsNotConverted: name the type without const and volatile
const int m = to<const int>(value);

// refused ACharacterIsNotConverted: a character cannot be converted: use std::string for a string, signed char or unsigned char for a number
char n = to<char>(value);

// refused AWideCharacterIsNotConverted: a character cannot be converted: use std::string for a string, signed char or unsigned char for a number
Value o = from(L'x');

// refused WhatIsReadNeedsADefault: to convert a Value to this type, give it a default constructor: an object is made first, and then its members are read
auto p = to<NoDefault>(value);

// refused AnElementNeedsADefault: to convert a Value to this type, give it a default constructor: an object is made first, and then its members are read
auto q = to<std::vector<NoDefault>>(value);

// refused AnOptionalNeedsADefault: to convert a Value to this type, give it a default constructor: an object is made first, and then its members are read
auto r = to<std::optional<NoDefault>>(value);

// refused AMappedTypeNeedsADefault: to convert a Value to this type, give it a default constructor: an object is made first, and then its members are read
auto s = to<std::map<std::string, NoDefault>>(value);

// refused AFallbackNeedsATable: to convert this type, specialise foundation::json::members for it
Plain t = to_or(value, "/a", Plain());

// refused ATableIsATable: foundation::json::members has to be a table(...) of what required(name, member) and defaulted(name, member) return
template <>
inline constexpr auto foundation::json::members<Plain> = required("a", &Plain::a);
Plain u = to<Plain>(value);

// refused ATableToWriteIsATable: foundation::json::members has to be a table(...) of what required(name, member) and defaulted(name, member) return
template <>
inline constexpr auto foundation::json::members<Plain> = std::tuple(&Plain::a);
Value v = from(Plain());

// refused AMemberIsOfTheClass: foundation::json::members names a member of another class, which is no base of this one
template <>
inline constexpr auto foundation::json::members<Plain> = std::tuple(required("a", &Plain::a), required("c", &Other::c));
Plain w = to<Plain>(value);

// refused AMemberToWriteIsOfTheClass: foundation::json::members names a member of another class, which is no base of this one
template <>
inline constexpr auto foundation::json::members<Plain> = std::tuple(required("c", &Other::c));
Value x = from(Plain());

// refused NamesDiffer: foundation::json::members names two members the same
template <>
inline constexpr auto foundation::json::members<Plain> = std::tuple(required("a", &Plain::a), defaulted("a", &Plain::b));
Plain y = to<Plain>(value);

// refused NamesToWriteDiffer: foundation::json::members names two members the same
template <>
inline constexpr auto foundation::json::members<Plain> = std::tuple(required("a", &Plain::a), defaulted("a", &Plain::b));
Value z = from(Plain());

// refused NamesOfAnyLengthDiffer: foundation::json::members names two members the same
template <>
inline constexpr auto foundation::json::members<Many> = table(required("", &Many::a), required("b", &Many::b), required("c", &Many::c), required("d", &Many::d), required("e", &Many::e), required("f", &Many::f), required("g", &Many::g), required("h", &Many::h), required("i", &Many::i), required("", &Many::j));
Many many = to<Many>(value);

// refused TheErrorShowsTheNameOfTwoMembers: foundation::json::members names two members the same
// shown TheErrorShowsTheNameOfTwoMembers: 'h', 'o', 's', 't'
template <>
inline constexpr auto foundation::json::members<Plain> = table(required("host", &Plain::a), table(defaulted("host", &Plain::b)));
Plain y2 = to<Plain>(value);

// refused NamesOfABaseDiffer: foundation::json::members names two members the same
template <>
inline constexpr auto foundation::json::members<Base> = table(required("a", &Base::a));
template <>
inline constexpr auto foundation::json::members<Derived> = table(members<Base>, required("a", &Derived::b));
Derived derived = to<Derived>(value);

// refused ATableConsistsOfMembers: table() takes what required(name, member) and defaulted(name, member) return, and tables, such as members<Base>, that stand before it
auto no_table = table(required("a", &Plain::a), "b");

// refused ATableOfABaseStandsBefore: table() takes what required(name, member) and defaulted(name, member) return, and tables, such as members<Base>, that stand before it
auto no_base = table(foundation::json::members<Base>, required("b", &Derived::b));

// refused AFunctionIsNoMember: a table of members holds data members: give this one as &Class::data_member
auto function = required("function", &Plain::function);

// refused AConstMemberIsNotRead: a member that is const cannot be read into
template <>
inline constexpr auto foundation::json::members<Const> = std::tuple(required("a", &Const::a));
Const constant = to<Const>(value);

// refused AMemberOfAMemberIsConvertible: a pointer, reference, view or C array cannot be converted: use std::string for a string
template <>
inline constexpr auto foundation::json::members<Holder> = std::tuple(required("texts", &Holder::texts));
Holder holder = to<Holder>(value);

// refused EnumeratorsAreAnArray: foundation::json::enumerators has to be a table<E>({{enumerator, name}, ...}) with E this enumeration, or a std::array of std::pair<E, const char*>
template <>
inline constexpr auto foundation::json::enumerators<Colour> = std::tuple(std::pair{Colour::red, "red"});
Colour not_an_array = to<Colour>(value);

// refused EnumeratorsAreOfTheEnumeration: foundation::json::enumerators has to be a table<E>({{enumerator, name}, ...}) with E this enumeration, or a std::array of std::pair<E, const char*>
template <>
inline constexpr auto foundation::json::enumerators<Colour> = std::array{std::pair{0, "red"}};
Value not_of_the_enumeration = from(Colour::red);

// refused NamesInATableDiffer: foundation::json::enumerators has the same name twice
template <>
inline constexpr auto foundation::json::enumerators<Colour> = table<Colour>({{Colour::red, "red"}, {Colour::green, "red"}});
Value same_name = from(Colour::red);

// refused NamesOfEnumeratorsDiffer: foundation::json::enumerators has the same name twice
template <>
inline constexpr auto foundation::json::enumerators<Colour> = std::array{std::pair{Colour::red, "red"}, std::pair{Colour::green, "red"}};
Colour twice = to<Colour>(value);

// refused FindInATemporaryWouldDangle: find
const Value* dangling = find(Value(Array{1}), "/0");
