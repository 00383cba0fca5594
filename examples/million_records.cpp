// A million records of a file, one per line, read into one object after the other and summed. The
// memory in use is that of one record.
#include <foundation/json/read.hpp>
#include <foundation/json/records.hpp>

#include <cstdint>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

using namespace foundation::json;

struct Sale {
    std::uint64_t id = 0;
    std::string product;
    double price = 0;
    int amount = 1;
    std::vector<std::string> tags;
};

template <>
inline constexpr auto foundation::json::members<Sale> = table(required("id", &Sale::id),
                                                              required("product", &Sale::product),
                                                              required("price", &Sale::price),
                                                              defaulted("amount", &Sale::amount),
                                                              defaulted("tags", &Sale::tags));

void write_sales(const std::string& name, int count) {
    std::ofstream file(name);
    for (int i = 0; i != count; ++i) {
        file << R"({"id":)" << i << R"(,"product":"tea","price":)" << i % 100 << ".25";
        // Every fourth has no amount, and so an amount of one.
        file << (i % 4 == 0 ? "" : R"(,"amount":2)") << (i == 777 ? R"(,"tags":"new")" : "");
        file << "}\n";
    }
}

int main() {
    const std::string name = "sales.jsonl";
    write_sales(name, 1000000);

    std::ifstream file(name);
    Records<Sale> records(file, Framing::lines);
    Sale sale;
    int count = 0;
    double sum = 0;
    for (bool more = true; more;) {
        try {
            more = records.next(sale);
            if (more) {
                ++count;
                sum += sale.price * sale.amount;
            }
        } catch (const ReadError& error) { // the next record is read nevertheless
            std::cout << describe(error, name);
        }
    }
    std::cout << count << " records, " << static_cast<long long>(sum) << '\n';
}
