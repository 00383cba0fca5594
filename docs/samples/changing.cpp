// The snippets of docs/changing.md, and of the tours in pointer.hpp and patch.hpp.
#include "snippet.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>
#include <foundation/json/parse.hpp>
#include <foundation/json/patch.hpp>
#include <foundation/json/pointer.hpp>

#include <iostream>
#include <utility>

using namespace foundation::json;

namespace {

void show_changes_by_pointer() {
    snippet("find");
    //! [find]
    const Value config = parse(R"({"servers": [{"port": 80}]})");
    const Value* port = find(config, "/servers/0/port"); // null where there is nothing
    std::cout << serialize(*port) << '\n';               // -> 80
    //! [find]

    snippet("set");
    //! [set]
    Value settings = parse(R"({"port": 80})");
    set(settings, "/port", 8080);
    std::cout << serialize(settings) << '\n'; // -> {"port":8080}
    //! [set]

    snippet("set missing");
    //! [set missing]
    Value fresh;
    set(fresh, "/servers/0/tags/-", "new");
    std::cout << serialize(fresh) << '\n'; // -> {"servers":[{"tags":["new"]}]}
    //! [set missing]

    snippet("insert");
    //! [insert]
    Value lines = parse(R"(["tea", "milk"])");
    insert(lines, "/1", "honey");
    std::cout << serialize(lines) << '\n'; // -> ["tea","honey","milk"]
    //! [insert]

    snippet("erase");
    //! [erase]
    Value order = parse(R"({"id": 7, "lines": ["tea", "milk"]})");
    Value first = erase(order, "/lines/0");
    std::cout << serialize(first) << ' ' << serialize(order) << '\n';
    // -> "tea" {"id":7,"lines":["milk"]}
    //! [erase]

    snippet("move");
    //! [move]
    Value record = parse(R"({"name": "Ada", "tags": ["a", "b"]})");
    move(record, "/name", "/tags/0");
    std::cout << serialize(record) << '\n'; // -> {"tags":["Ada","a","b"]}
    //! [move]

    snippet("copy");
    //! [copy]
    Value rooms = parse(R"([{"beds": 2}])");
    copy(rooms, "/0", "/-");
    std::cout << serialize(rooms) << '\n'; // -> [{"beds":2},{"beds":2}]
    //! [copy]

    snippet("moved in");
    //! [moved in]
    Value report{Object()};
    Value rows{Array(1000, Value(1))};
    set(report, "/rows", std::move(rows)); // copies nothing
    //! [moved in]
    std::cout << report["rows"].length() << '\n';

    snippet("pointer error");
    //! [pointer error]
    try {
        erase(order, "/lines/7/price");
    } catch (const PointerError& error) {
        std::cout << error.what() << '\n'; // -> at /lines/7: the array has length 1
    }
    //! [pointer error]
}

void show_patches() {
    snippet("patch");
    //! [patch]
    Value order = parse(R"({"id": 7, "lines": ["tea"]})");
    patch(order, parse(R"([{"op": "add", "path": "/lines/-", "value": "milk"}])"));
    std::cout << serialize(order) << '\n'; // -> {"id":7,"lines":["tea","milk"]}
    //! [patch]

    snippet("operations");
    //! [operations]
    patch(order, Array{operation::test("/id", 7), operation::remove("/lines/0"),
                       operation::add("/paid", true)});
    std::cout << serialize(order) << '\n'; // -> {"id":7,"lines":["milk"],"paid":true}
    //! [operations]

    snippet("patch error");
    //! [patch error]
    try {
        patch(order, Array{operation::remove("/lines/0"), operation::replace("/size", 2)});
    } catch (const PatchError& error) {
        std::cout << error.what() << '\n' << serialize(order) << '\n';
        // ->
        // operation 1 (replace "/size"): at /size: there is no value
        // {"id":7,"lines":["milk"],"paid":true}
    }
    //! [patch error]

    snippet("diff");
    //! [diff]
    Value changes = diff(parse(R"(["tea", "milk", "honey"])"), parse(R"(["tea", "honey"])"));
    std::cout << serialize(changes) << '\n'; // -> [{"op":"remove","path":"\/1"}]
    //! [diff]

    snippet("merge patch");
    //! [merge patch]
    Value config = parse(R"({"port": 80, "log": {"level": "info", "file": "a.log"}})");
    merge_patch(config, parse(R"({"port": 8080, "log": {"file": null}})"));
    std::cout << serialize(config) << '\n'; // -> {"log":{"level":"info"},"port":8080}
    //! [merge patch]

    snippet("merge diff");
    //! [merge diff]
    Value edits = merge_diff(parse(R"({"port": 80, "debug": true})"), parse(R"({"port": 8080})"));
    std::cout << serialize(edits) << '\n'; // -> {"debug":null,"port":8080}
    //! [merge diff]

    snippet("equivalent");
    //! [equivalent]
    const Value a = integer(7);
    const Value b = 7;
    std::cout << (a == b) << equivalent(a, b) << '\n'; // -> 01
    //! [equivalent]
}

void show_tour_of_pointers() {
    Value config = parse(R"({"servers": [{"port": 80, "tags": []}, {}]})");
    snippet("pointer tour");
    //! [pointer tour]
    const Value* port = find(config, "/servers/0/port"); // null where there is nothing
    set(config, "/servers/0/port", 8080);                // makes what is missing on the way
    insert(config, "/servers/0/tags/-", "new");          // at the end of an array
    Value old = erase(config, "/servers/1");             // gives what it took
    //! [pointer tour]
    std::cout << serialize(*port) << ' ' << serialize(old) << '\n';
    std::cout << serialize(config) << '\n';
}

void show_set() {
    snippet("set tour");
    //! [set tour]
    Value config;
    set(config, "/servers/0/host", "a.example"); // -> {"servers":[{"host":"a.example"}]}
    //! [set tour]
    std::cout << serialize(config) << '\n';
}

void show_other_changes() {
    Value order = parse(R"({"name": "Ada", "lines": [1, 2]})");
    snippet("insert tour");
    //! [insert tour]
    insert(order, "/lines/0", "tea"); // before all others
    insert(order, "/lines/-", "tea"); // at the end
    insert(order, "/paid", true);     // a member
    //! [insert tour]
    std::cout << serialize(order) << '\n';

    snippet("erase tour");
    //! [erase tour]
    Value first = erase(order, "/lines/0");
    //! [erase tour]
    std::cout << serialize(first) << serialize(order) << '\n';

    snippet("move tour");
    //! [move tour]
    move(order, "/lines/2", "/lines/0"); // the third comes first
    move(order, "/name", "/customer");   // a new name for a member
    //! [move tour]
    std::cout << serialize(order) << '\n';

    snippet("copy tour");
    //! [copy tour]
    copy(order, "/lines/0", "/lines/-");
    //! [copy tour]
    std::cout << serialize(order) << '\n';
}

void show_tour_of_patches() {
    Value order = parse(R"({"id": 7, "grams": 100, "note": "x", "lines": []})");
    const Value before = order;
    const Value after = parse(R"({"id": 7, "grams": 300, "note": "x", "lines": []})");
    snippet("patch tour");
    //! [patch tour]
    patch(order, parse(R"([{"op": "replace", "path": "/grams", "value": 250}])"));
    merge_patch(order, parse(R"({"grams": 250, "note": null})"));
    Value changes = diff(before, after); // patch(before, changes) is then equivalent to after
    //! [patch tour]
    std::cout << serialize(order) << serialize(changes) << '\n';

    snippet("operation tour");
    //! [operation tour]
    patch(order, Array{operation::test("/id", 7), operation::add("/lines/-", "tea")});
    //! [operation tour]
    std::cout << serialize(order) << '\n';
}

void show_patch_and_merge_patch() {
    Value config = parse(R"({"port": 80, "debug": true})");
    const Value before = config;
    snippet("patch function");
    //! [patch function]
    patch(config, Array{operation::replace("/port", 8080), operation::remove("/debug")});
    //! [patch function]
    std::cout << serialize(config) << '\n';

    const Value after = config;
    config = before;
    snippet("merge patch function");
    //! [merge patch function]
    merge_patch(config, (Property("port") = 8080, Property("debug") = Null()));
    //! [merge patch function]
    std::cout << serialize(config) << '\n';

    snippet("merge diff function");
    //! [merge diff function]
    Value changes = merge_diff(before, after); // -> {"debug":null,"port":8080}
    //! [merge diff function]
    std::cout << serialize(changes) << '\n';
}

void show_diff_and_equivalent() {
    snippet("diff function");
    //! [diff function]
    Value changes = diff(Array{1, 2, 3}, Array{1, 3}); // -> [{"op":"remove","path":"\/1"}]
    //! [diff function]
    std::cout << serialize(changes) << '\n';

    snippet("equivalent function");
    //! [equivalent function]
    bool same = equivalent(integer(7), 7); // true, and integer(7) == Value(7) is false
    //! [equivalent function]
    std::cout << same << '\n';
}

} // namespace

int main() {
    show_changes_by_pointer();
    show_patches();
    show_tour_of_pointers();
    show_set();
    show_other_changes();
    show_tour_of_patches();
    show_patch_and_merge_patch();
    show_diff_and_equivalent();
}
