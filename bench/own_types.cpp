// What documents hold of the structs of the caller: by this library's values.
#include "documents.hpp"
#include "tasks/own_types_tables.hpp"

#include <foundation/json/parse.hpp>
#include <foundation/json/serializer.hpp>

namespace bench {

template <class T>
T content_of(const std::string& text) {
    return foundation::json::to<T>(foundation::json::parse(text));
}

template <class T>
bool is_same(const T& a, const T& b) {
    return same_value(foundation::json::serialize(foundation::json::from(a)),
                      foundation::json::serialize(foundation::json::from(b)));
}

template Trade content_of(const std::string& text);
template std::vector<Person> content_of(const std::string& text);
template ShortStatuses content_of(const std::string& text);
template FeatureCollection content_of(const std::string& text);
template Catalogue content_of(const std::string& text);

template bool is_same(const Trade& a, const Trade& b);
template bool is_same(const std::vector<Person>& a, const std::vector<Person>& b);
template bool is_same(const ShortStatuses& a, const ShortStatuses& b);
template bool is_same(const FeatureCollection& a, const FeatureCollection& b);
template bool is_same(const Catalogue& a, const Catalogue& b);

} // namespace bench
