// What content.hpp refuses to compile, and the sentence that says why.
#include <foundation/json/content.hpp>

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

using namespace foundation::json;

Value value;
const Value constant;

enum class Colour { red };

// An expected sentence is one line, however long.
// clang-format off

// refused AnIntIsReadByNumber: no Value holds this type of number: write number<T>(value), which converts, as in number<int>(value)
int a = get<int>(value);

// refused ALongIsReadByNumber: no Value holds this type of number: write number<T>(value), which converts, as in number<int>(value)
const long* b = get_if<long>(&constant);

// refused AnUnsignedCharIsHeldByNoValue: no Value holds this type of number: write number<T>(value), which converts, as in number<int>(value)
bool c = holds<unsigned char>(value);

// refused ACharacterPointerIsReadAsString: a Value holds text as std::string: write get<std::string>(value)
const char* d = get<const char*>(value);

// refused AStringViewIsReadAsString: a Value holds text as std::string: write get<std::string>(value)
const std::string_view* e = get_if<std::string_view>(&constant);

// refused AVectorOfIntIsHeldByNoValue: no Value holds this type: write Undefined, Null, bool, double, std::string, Array, Object, float, long long or unsigned long long
std::vector<int>& f = get<std::vector<int>>(value);

// refused AValueHoldsNoValue: no Value holds this type: write Undefined, Null, bool
bool g = holds<Value>(value);

// refused ConstFollowsTheValue: write the type without const, volatile and &: the result is const if the value is
const double& h = get<const double>(value);

// refused TheResultIsAReferenceAnyway: write the type without const, volatile and &: the result is const if the value is
std::string& i = get<std::string&>(value);

// refused ContentOfATemporaryIsNotReferredTo: bind
std::string& j = get<std::string>(Value("x"));

// refused ContentOfAMovedValueIsOfOneType: no Value holds this type of number: write number<T>(value), which converts, as in number<int>(value)
auto k = get<int>(std::move(value));

// refused ContentOfATemporaryIsNoReferenceAnyway: write the type without const, volatile and &: the result is const if the value is
std::string k2 = get<std::string&>(Value("x"));

// refused ContentOfAConstTemporaryIsOfOneType: a Value holds text as std::string: write get<std::string>(value)
const char* k3 = get<const char*>(std::move(constant));

// refused ContentOfAConstantDoesNotChange: const
void l() { get<double>(constant) = 1; }

// refused AVisitorTakesUndefined: visit: the callable does not take Undefined
struct NotUndefined {
    void operator()(Undefined) const = delete;
    template <class Other> void operator()(const Other&) const {}
};
void m() { visit(NotUndefined(), value); }

// refused AVisitorTakesObjects: visit: the callable does not take Object
struct NotObject {
    void operator()(const Object&) const = delete;
    template <class Other> void operator()(const Other&) const {}
};
void n() { visit(NotObject(), constant); }

// refused AVisitorTakesConstants: visit: the callable does not take std::string
struct Changing {
    void operator()(std::string&) const {}
    void operator()(Undefined) const {}
    void operator()(Null) const {}
    void operator()(bool) const {}
    void operator()(double) const {}
    void operator()(const Array&) const {}
    void operator()(const Object&) const {}
    void operator()(float) const {}
    void operator()(long long) const {}
    void operator()(unsigned long long) const {}
};
void o() { visit(Changing(), constant); }

// refused AVisitorHasOneResult: visit: the callable returns different types for different kinds: give all of them the same one
void p() { visit([](const auto& content) { return content; }, value); }

// refused AVisitorByValueHasOneResult: visit: the callable returns different types for different kinds: give all of them the same one
void p2() { visit([](auto content) { return content; }, constant); }

// refused AVisitorByReferenceHasOneResult: visit: the callable returns different types for different kinds: give all of them the same one
void p3() { visit([](auto& content) -> auto& { return content; }, value); }

// refused AVisitorOfATemporaryHasOneResult: visit: the callable returns different types for different kinds: give all of them the same one
void p4() { visit([](auto&& content) { return content; }, Value(1)); }

// refused AVisitorThatChoosesHasOneResult: visit: the callable returns different types for different kinds: give all of them the same one
void p5() { visit([](auto content) { if constexpr (std::is_same_v<decltype(content), double>) { return 1; } else { return false; } }, value); }

// refused AVisitorRefersToNoTemporary: visit: the result may refer into a temporary: give the value a name first
const Value& q = visit([](const auto&) -> const Value& { return constant; }, Value(1));

// refused ABoolIsNoNumber: number: a truth value is no number: write get<bool>(value)
bool r = number<bool>(value);

// refused ACharacterIsNoNumber: number: write an integer type of at most 64 bits, such as int or std::int8_t, rather than a character type
char s = number<char>(value);

// refused AnEnumerationIsNoNumber: number: write an integer type, and convert the number to the enumeration
Colour t = number<Colour>(value);

// refused ATextIsNoNumber: number: write an integer type or a floating-point type
std::string u = number<std::string>(value);

// refused ANumberIsNotConst: number: write the type without const, volatile and &
const int v = number<const int>(value);

// refused ATruthValueIsNoInteger: integer: for a truth value write Value(flag)
Value w = integer(true);

// refused ACharacterIsNoInteger: integer: convert to an integer type of at most 64 bits first
Value x = integer('x');

// refused AWideCharacterIsNoInteger: integer: convert to an integer type of at most 64 bits first
Value y = integer(u'x');

// refused AnEnumerationIsNoInteger: integer: convert the enumeration to its underlying type first
Value z = integer(Colour::red);

// refused ADoubleIsNoInteger: integer: for a floating-point number write Value(number)
Value aa = integer(1.0);

// refused ATextIsNoInteger: integer: takes an integer
Value bb = integer("1");
