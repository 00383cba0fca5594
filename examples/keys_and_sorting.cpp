// Values are ordered: they can be sorted and be the keys of a map. Kinds come first, in the order
// Undefined, null, bool, double, string, array, object, float, int64, uint64; then the content.
#include <foundation/json/json.hpp>

#include <algorithm>
#include <iostream>
#include <map>
#include <string>
#include <vector>

using namespace foundation::json;

void sort_mixed_values() {
    std::vector<Value> values = {"pear",       10,    Null(), true,  (Element(1), Element(2)),
                                 2.5,          "fig", 2,      false, "Fig",
                                 (Element(1)), 7LL};
    std::sort(values.begin(), values.end());
    std::cout << serialize(values) << '\n';
}

// A map finds equal values, whatever they hold. NaN must stay out: it is in no order.
void count_equal_values() {
    const std::vector<Value> seen = {
        "a",    1,     "a", (Element("a"), Element(1)), 1LL, 1.0, (Element("a"), Element(1)),
        Null(), Null()};
    std::map<Value, int> counts;
    for (const Value& value : seen) {
        ++counts[value];
    }
    for (const auto& [value, count] : counts) {
        std::cout << serialize(value) << " x " << count << '\n';
    }
}

// An order of one's own, by a member of each record.
void sort_records_by_name() {
    std::vector<Value> records = {(Property("name") = "Ida", Property("age") = 41),
                                  (Property("name") = "Bo", Property("age") = 7)};
    std::sort(records.begin(), records.end(),
              [](const Value& a, const Value& b) { return a["name"] < b["name"]; });
    std::cout << serialize(records) << '\n';
}

int main() {
    sort_mixed_values();
    count_equal_values();
    sort_records_by_name();
}
