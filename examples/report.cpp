// A report made from records: totals by region, and the records that cannot be used.
#include <foundation/json/content.hpp>
#include <foundation/json/json.hpp>

#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <utility>

using namespace foundation::json;

struct Total {
    long long units = 0;
    double revenue = 0;
};

// The rows are many, and moved to where they belong.
Value report_of(const Array& records) {
    std::map<std::string, Total> totals;
    Array skipped;
    for (const Value& record : records) {
        try {
            const auto units = number<long long>(record["units"]);
            const auto revenue = number<double>(record["revenue"]);
            Total& total = totals[get<std::string>(record["region"])];
            total.units += units;
            total.revenue += revenue;
        } catch (const std::exception& error) {
            skipped.push_back((Property("record") = record, Property("reason") = error.what()));
        }
    }

    Array rows;
    for (const auto& [region, total] : totals) {
        rows.push_back((Property("region") = region, Property("units") = integer(total.units),
                        Property("revenue") = total.revenue));
    }
    Value report((Property("rows") = Array(), Property("skipped") = Array()));
    get<Array>(report["rows"]) = std::move(rows);
    get<Array>(report["skipped"]) = std::move(skipped);
    return report;
}

int main() {
    const Array records = {
        (Property("region") = "North", Property("units") = 1200, Property("revenue") = 30600.5),
        (Property("region") = "South/East", Property("units") = 980LL, Property("revenue") = 24990),
        (Property("region") = "North", Property("units") = 300, Property("revenue") = 7500),
        (Property("region") = "West", Property("units") = 2.5, Property("revenue") = 60),
        (Property("region") = Null(), Property("units") = 1, Property("revenue") = 20),
    };
    std::cout << pretty_print(report_of(records)) << '\n';
}
