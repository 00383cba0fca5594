// Commas that drop a builder, of which a compiler warns; and commas that chain builders.
#include <foundation/json/builders.hpp>

using namespace foundation::json;

void commas_that_drop_a_builder(int number, const std::string& text, const Value& value) {
    const Value one((Element(1), "two"));                              // warns: drops the Element
    const Value two((Element(1), 2));                                  // warns: drops the Element
    const Value three((Element(1), Element(2), 3.5));                  // warns: drops the Element
    const Value four((Element(1), number));                            // warns: drops the Element
    const Value five((Element(1), text));                              // warns: drops the Element
    const Value six((Element(1), value));                              // warns: drops the Element
    const Value seven((Element(1), Value(2)));                         // warns: drops the Element
    const Value eight((Element(1), Property("a") = 2));                // warns: drops the Element
    const Value nine((Property("a") = 1, "two"));                      // warns: drops the Property
    const Value ten((Property("a"), Value(2)));                        // warns: drops the Property
    const Value eleven((Property("a") = 1, (Element(1), Element(2)))); // warns: drops the Property
}

void commas_that_chain(const Element& chain, const Property& term) {
    const Value list((Element(1), Element("two"), Element(Null())));
    const Value nested((Element(1), Element((Element(2), Element(3)))));
    const Value record((Property("id") = 7, Property("name") = (Property("first") = "x")));
    chain, Element(2), chain;
    term, term, (Property("b") = Element(1));
    int steps = 0;
    for (int i = 0; i != 3; chain, Element(i), static_cast<void>(++i)) {
        ++steps, ++steps;
    }
    const std::vector<Value> values{Element(1), 2, Property("a"), "text"};
}
