// A report out of native data: Property and Element for its fixed frame, push and swap for its
// rows.
#include <foundation/json/json.hpp>

#include <iostream>
#include <string>
#include <vector>

using namespace foundation::json;

struct Sale {
    std::string region;
    long long units;
    double revenue;
};

Value row_of(const Sale& sale) {
    return (Property("region") = sale.region, Property("units") = sale.units,
            Property("revenue") = sale.revenue);
}

Value report_of(const std::string& title, const std::vector<Sale>& sales) {
    Value rows(std::vector<Value>{});
    long long units = 0;
    double revenue = 0;
    for (const Sale& sale : sales) {
        rows.push(row_of(sale));
        units += sale.units;
        revenue += sale.revenue;
    }
    Value report((Property("title") = title,
                  Property("columns") = (Element("region"), Element("units"), Element("revenue")),
                  Property("total") = (Property("units") = units, Property("revenue") = revenue)));
    // The rows may be many: they change hands, and nothing is copied.
    report["rows"].swap(rows);
    return report;
}

int main() {
    const std::vector<Sale> sales = {{"North", 1200, 30600.5}, {"South/East", 980, 24990}};
    std::cout << pretty_print(report_of("First quarter", sales)) << '\n';
}
