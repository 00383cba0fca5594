// The sum of a member over a document larger than memory: by a Reader, which makes no values at
// all, and by Records, which parse one element of an array at a time.
#include <foundation/json/json.hpp>
#include <foundation/json/number.hpp>
#include <foundation/json/reader.hpp>
#include <foundation/json/records.hpp>

#include <fstream>
#include <iostream>

using namespace foundation::json;

/// All members of this name, wherever they are.
double sum_by_tokens(std::istream& stream) {
    Reader reader(stream);
    double sum = 0;
    while (reader.next() != Token::end) {
        if (reader.token() == Token::name && reader.string() == "price") {
            reader.next();
            sum += reader.number<double>();
        }
    }
    return sum;
}

/// The member of each element of an array.
double sum_by_records(std::istream& stream) {
    Records<Value> lines(stream, Framing::elements("/lines"));
    double sum = 0;
    for (Value line; lines.next(line);) {
        sum += number<double>(line["price"]);
    }
    return sum;
}

int main(int, char** arguments) {
    std::ifstream file(arguments[1]);
    std::cout << sum_by_tokens(file) << '\n';
    file.clear();
    file.seekg(0);
    std::cout << sum_by_records(file) << '\n';
}
