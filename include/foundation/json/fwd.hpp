/// @file
/// Declarations of the classes, for headers that do no more than pass values on by reference.
///
///     #include <foundation/json/fwd.hpp>
///
///     void save(const foundation::json::Value& settings);
///
/// That costs a compiler next to nothing, where value.hpp brings in the containers and the variant
/// that a value is made of. Declarations of the caller's own would stand in the way of changes
/// here.
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
