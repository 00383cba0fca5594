/// @file
/// The fixed format: Serializer writes values to a stream, serialize and pretty_print return a
/// string. Every version 1.x writes the same bytes. For other programs there is write.hpp.
///
///     Value v((Property("a") = (Element(1), Element(true))));
///     std::cout << serialize(v) << '\n'; // -> {"a":[1,true]}
///
///     Serializer serializer;
///     serializer.pretty_print(true);
///     serializer.write(std::cout, v);
///     // ->
///     // {
///     //     "a":[
///     //         1,
///     //         true
///     //     ]
///     // }
///
/// Compact layout has no whitespace outside strings. Pretty layout has every element and member on
/// a line of its own, indented by four spaces per level. Members come in the byte-wise order of
/// their names. Undefined is written as nothing, but its separators stay (`[1,,2]`); doubles and
/// floats have an exponent from one million on (`1.0E+6`); NaN and the infinities become the
/// strings "NaN", "Inf" and "-Inf"; a slash is written `\/`; in pretty layout an empty container
/// has its own indentation between its brackets.
///
/// Strings are written byte for byte, whatever their encoding. To make values, include
/// value.hpp; this header only takes them by reference.
#ifndef FOUNDATION_JSON_SERIALIZER_HPP
#define FOUNDATION_JSON_SERIALIZER_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>

#include <iosfwd>
#include <string>

namespace foundation::json {

/// Writes values to streams, in compact or pretty layout. One Serializer can write any number of
/// values to any streams.
class FOUNDATION_JSON_EXPORT Serializer {
public:
    /// A serializer in compact layout.
    Serializer();
    ~Serializer();
    Serializer(const Serializer&) = default;            ///< copies the layout
    Serializer& operator=(const Serializer&) = default; ///< copies the layout

    /// Sets the layout of later writes: pretty if true, compact if false.
    void pretty_print(bool pretty);

    /// Whether the layout is pretty.
    [[nodiscard]] bool pretty_print() const;

    /// Serializes a value, with nothing before or after it.
    ///
    /// Pretty layout flushes the stream at every line end. The stream's state is not tested:
    /// output to a failed stream is lost, and exceptions that are enabled on the stream are
    /// thrown. A field width pads the first token, with the stream's fill and adjustment,
    /// and is then reset. The other flags and the stream's locale affect int64 and uint64 and the
    /// digits of `\u` escapes; after such an escape the stream's fill character stays `0`. Doubles
    /// and floats have the decimal separator of the C locale and are rounded in the direction of
    /// std::fegetround(). Nothing else of the floating-point environment has an effect, neither
    /// flushing subnormal numbers to zero nor traps, and serializing raises no floating-point flag.
    ///
    /// @param stream  where to write
    /// @param value   what to write
    /// @throws std::bad_alloc if there is no memory for the indentation. If the stream itself runs
    ///         out of memory, it sets badbit, and throws only if enabled.
    /// @complexity linear in the length of the output; recursion as deep as the nesting.
    void write(std::ostream& stream, const Value& value);

private:
    bool pretty_;
};

/// A value in compact layout.
///
/// The string is what Serializer writes to a new std::ostringstream. The global C++ locale affects
/// the digits and grouping of int64 and uint64, the digits of `\u` escapes and, in pretty_print(),
/// the line ends, which its std::ctype facet may widen to another character. If a facet throws
/// while an integer is formatted, the string ends there without an exception, as with that stream;
/// an exception while a line end is widened is thrown.
/// @throws std::bad_alloc if memory runs out, also within a facet
/// @complexity linear in the length of the output; recursion as deep as the nesting.
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string serialize(const Value& value);

/// A value in pretty layout, otherwise like serialize(). Indentation makes the output of deeply
/// nested values long: its length grows with the square of the depth.
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string pretty_print(const Value& value);

} // namespace foundation::json

#endif
