/// @file
/// Declarations of the classes of json.hpp, for headers that only pass values on by reference.
///
///     #include <foundation/json/fwd.hpp>
///
///     void save(const foundation::json::Value& settings);
///
/// This header compiles in almost no time, while value.hpp includes the containers and the variant
/// of a value. Do not write such declarations yourself: a later version may change them.
#ifndef FOUNDATION_JSON_FWD_HPP
#define FOUNDATION_JSON_FWD_HPP

namespace foundation::json {

class Element;
class ParserException;
class Property;
class Serializer;
class Value;
struct Null;
struct Undefined;

} // namespace foundation::json

#endif
