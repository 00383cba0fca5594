/// @file
/// JSON text out of values: Serializer onto a stream, serialize and pretty_print into a string.
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
/// Compact text has no whitespace outside strings. Pretty text puts every element and member on a
/// line of its own, four spaces per level. Members come in the byte-wise order of their names.
/// Worth knowing: Undefined writes nothing, yet its separators stay (`[1,,2]`); numbers of the
/// double kind take the exponent form from one million (`1.0E+6`); NaN and the infinities become
/// the strings "NaN", "Inf" and "-Inf"; a solidus is written `\/`; an empty container in pretty
/// layout holds its own indentation between its brackets.
///
/// Strings are written byte for byte, without a look at their encoding. To make values, include
/// value.hpp; this header only takes them by reference.
#ifndef FOUNDATION_JSON_SERIALIZER_HPP
#define FOUNDATION_JSON_SERIALIZER_HPP

#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>

#include <iosfwd>
#include <string>

namespace foundation::json {

/// Writes values onto streams, in compact or pretty layout.
///
/// Bound to no stream: one Serializer may write any number of values onto any streams.
class FOUNDATION_JSON_EXPORT Serializer {
public:
    /// A serializer of compact text.
    Serializer();
    ~Serializer();
    Serializer(const Serializer&) = default;            ///< copies the layout
    Serializer& operator=(const Serializer&) = default; ///< copies the layout

    /// Chooses the layout of later writes: pretty if true, compact if false.
    void pretty_print(bool pretty);

    /// Whether later writes are in pretty layout.
    [[nodiscard]] bool pretty_print() const;

    /// Writes the text of a value, with nothing before or after it.
    ///
    /// Pretty layout flushes the stream at every line end. The stream's state is never tested: text
    /// written onto a failed stream is lost, and exceptions the caller has enabled on the stream
    /// pass through. A field width pads the first piece of text, as the stream's fill and
    /// adjustment say, and is used up. The other flags and the locale shape the int64 and uint64
    /// kinds and the digits of `\u` escapes; after such an escape the stream's fill character stays
    /// the digit zero. Numbers of the double and float kind follow the radix character of the
    /// process's C locale and the rounding direction of std::fegetround(), and nothing else of the
    /// floating-point environment: neither a treatment of subnormal numbers as zero nor traps. They
    /// raise no flag.
    ///
    /// @param stream  where the text goes
    /// @param value   what to write; only read
    /// @throws std::bad_alloc if there is no memory for indentation. A stream that runs out of
    ///         memory itself goes bad, and throws only if told to.
    /// @complexity linear in the length of the text; recursion as deep as the nesting.
    void write(std::ostream& stream, const Value& value);

private:
    bool pretty_;
};

/// The compact text of a value.
///
/// The text is what Serializer writes onto a fresh std::ostringstream. The global C++ locale shapes
/// the int64 and uint64 kinds, their digits and their grouping; the digits of `\u` escapes; and, in
/// pretty_print(), the line ends, which its std::ctype facet may widen to another character. Where
/// such a facet throws while an integer is formatted, the text ends there without an exception, as
/// that stream keeps it to itself; what is thrown where a line end is widened passes.
/// @throws std::bad_alloc if memory runs out, also within a facet
/// @complexity linear in the length of the text; recursion as deep as the nesting.
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string serialize(const Value& value);

/// The pretty text of a value, otherwise as serialize(). Mind that indentation makes the text of
/// deeply nested values long: its length grows with the square of the depth.
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string pretty_print(const Value& value);

} // namespace foundation::json

#endif
