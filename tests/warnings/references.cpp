// References to temporaries that are destroyed at the end of the expression, of which clang++
// warns; and references to objects that live longer.
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>

using namespace foundation::json;

Value make();
const Value& give();

void references_to_what_is_gone(const Value& key, Value& named) {
    const Value& by_name = make()["a"];                // clang++ warns: dangling|temporary
    const Value& by_string = make()[std::string("a")]; // clang++ warns: dangling|temporary
    const Value& by_int = make()[0];                   // clang++ warns: dangling|temporary
    const Value& by_size = make()[std::size_t{0}];     // clang++ warns: dangling|temporary
    const Value& by_key = make()[key];                 // clang++ warns: dangling|temporary
    const Value& in_const =
        static_cast<const Value&>(Value())["a"];      // clang++ warns: dangling|temporary
    const Value& deeper = make()["a"][0]["b"];        // clang++ warns: dangling|temporary
    const double& content = get<double>(make()["a"]); // clang++ warns: dangling|temporary
    const double& constant =
        get<double>(static_cast<const Value&>(make())); // clang++ warns: dangling|temporary
    const bool* flag = get_if<bool>(&make()["a"]);      // clang++ warns: dangling|temporary
    for (Value& element : get<Array>(make()["a"])) {    // clang++ warns: dangling|temporary
    }
    const auto right = named || Value(8080);         // clang++ warns: dangling|temporary
    const auto left = make() || named;               // clang++ warns: dangling|temporary
    const Value::Or both(named, Value(1));           // clang++ warns: dangling|temporary
    const Value::OrVisitor visitor(Value(1), named); // clang++ warns: dangling|temporary
    const Value::push_visitor pusher(Value(1));      // clang++ warns: dangling|temporary
    const Value& assigned = (Value() = named);       // clang++ warns: dangling|temporary
    const Value& swapped = Value().swap(named);      // clang++ warns: dangling|temporary
    const Element& chain = (Element(1), Element(2)); // clang++ warns: dangling|temporary
    const Property& term = (Property("a") = 1);      // clang++ warns: dangling|temporary
    const Property& terms =
        (Property("a") = 1, Property("b") = 2); // clang++ warns: dangling|temporary
}

void references_to_what_stays(Value& named, const Value& constant) {
    const Value& member = named["a"];
    const Value& from_text = constant[std::string("a")];
    const Value& by_temporary_key = constant[Value("a")];
    const Value& given = give()["a"][0];
    const Value copy = make()["a"];
    const Value chosen = make() || Value(1);
    const Value& standing = named || constant;
    const auto choice = named || constant;
    const Value::push_visitor pusher(named);
    Value& assigned = (named = constant);
    Value& from_temporary = (named = Value(1));
    Value temporary;
    Value& swapped = named.swap(temporary);
    const Element chain(1);
    const Element& longer = (chain, Element(2));
    const Value list((Element(1), Element(2)));
    const int integer = int(make()["a"]);
    const std::string text = get<std::string>(make()["a"]);
    const int whole = number<int>(make()["a"]);
    const Kind kind = kind_of(make());
    double& content = get<double>(named["a"]);
}
