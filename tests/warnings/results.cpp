// Results of which a compiler warns when they are ignored, and calls whose result may be ignored.
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>

using namespace foundation::json;

void ignored_results(const Value& v, Value& w, Serializer& serializer, const ParserException& e) {
    serialize(v);                              // warns: nodiscard|comparison
    pretty_print(v);                           // warns: nodiscard|comparison
    v.length();                                // warns: nodiscard|comparison
    v.hasOwnProperty("a");                     // warns: nodiscard|comparison
    v || w;                                    // warns: nodiscard|comparison
    v == w;                                    // warns: nodiscard|comparison
    v != w;                                    // warns: nodiscard|comparison
    v < w;                                     // warns: nodiscard|comparison
    v["a"];                                    // warns: nodiscard|comparison
    v[std::string("a")];                       // warns: nodiscard|comparison
    v[0];                                      // warns: nodiscard|comparison
    v[std::size_t{0}];                         // warns: nodiscard|comparison
    v[Value(0)];                               // warns: nodiscard|comparison
    v.operator bool();                         // warns: nodiscard|comparison
    v.operator int();                          // warns: nodiscard|comparison
    Value::HasProperty("a")(v);                // warns: nodiscard|comparison
    Value::HasProperty("a")(1.5f);             // warns: nodiscard|comparison
    Value::OrVisitor(v, w).left();             // warns: nodiscard|comparison
    Value::OrVisitor(v, w)(true);              // warns: nodiscard|comparison
    Value::OrVisitor(v, w)(1LL);               // warns: nodiscard|comparison
    Null() == Null();                          // warns: nodiscard|comparison
    Undefined() < Undefined();                 // warns: nodiscard|comparison
    Element(1).operator Value();               // warns: nodiscard|comparison
    Property("a").operator Value();            // warns: nodiscard|comparison
    serializer.pretty_print();                 // warns: nodiscard|comparison
    get_parse_result_description(EMPTY_INPUT); // warns: nodiscard|comparison
    e.get_parse_result();                      // warns: nodiscard|comparison
    e.get_byte_position();                     // warns: nodiscard|comparison
    e.get_line_number();                       // warns: nodiscard|comparison
    e.get_column();                            // warns: nodiscard|comparison
    e.get_quoted_byte_position();              // warns: nodiscard|comparison
    e.get_quoted_text();                       // warns: nodiscard|comparison
    kind_of(v);                                // warns: nodiscard|comparison
    name_of(Kind::null);                       // warns: nodiscard|comparison
    holds<bool>(v);                            // warns: nodiscard|comparison
    get<bool>(v);                              // warns: nodiscard|comparison
    get_if<bool>(&v);                          // warns: nodiscard|comparison
    get_if<bool>(&w);                          // warns: nodiscard|comparison
    number<int>(v);                            // warns: nodiscard|comparison
    integer(1);                                // warns: nodiscard|comparison
    detail::string_to_double("1");             // warns: nodiscard|comparison
    char16_t text[] = u"a";
    detail::u16_to_u8(text, 1); // warns: nodiscard|comparison
}

void results_that_may_be_ignored(Value& v, Value& w, Serializer& serializer, std::ostream& stream) {
    v["inserted"];
    v[0];
    v[Value("inserted")];
    v.push(w);
    v.swap(w);
    v = w;
    const Element chain(1);
    chain, Element(2);
    const Property term("a");
    term = 1;
    term, (Property("b") = 2);
    serializer.pretty_print(true);
    serializer.write(stream, v);
    static_cast<void>(serialize(v));
}
