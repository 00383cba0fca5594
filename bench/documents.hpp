/// @file
/// The documents of the benchmarks: JSON text, generated or from a folder; and their contents.
#ifndef FOUNDATION_JSON_BENCH_DOCUMENTS_HPP
#define FOUNDATION_JSON_BENCH_DOCUMENTS_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// A JSON document. All contenders read the same text, each with its own reader.
struct Document {
    std::string name;
    std::string text;
};

/// The documents of this build: by name those of its folder of documents, or else three generated
/// ones. "records" is text in many languages with some numbers, "catalogue" many small objects of
/// integers, "coordinates" pairs of doubles of up to 17 digits.
///
/// The generated ones are the same in every run and on every machine.
/// @throws std::runtime_error if the folder holds no document
const std::vector<Document>& documents();

/// The same, and generated ones with other contents that programs often write: "URLs" has hardly
/// anything but URLs, "small objects" have three members, "scripts" is text of many scripts.
const std::vector<Document>& written_documents();

/// Those of documents(), and generated ones of other shapes: "small objects" and "scripts" as
/// above, "wide records" of 60 members, "unordered" records in Cyrillic whose names are in no
/// order, a deep and indented "configuration", and arrays of "big integers".
const std::vector<Document>& parsed_documents();

/// Documents of the types in own_structs.hpp: the named one of the folder of documents, or a
/// generated one.
const Document& trade_document();
const Document& people_document();
const Document& coordinates_document();
const Document& catalogue_document();

/// A generated document of about that many bytes, with parts of all three kinds.
std::string document_of_size(std::size_t bytes);

/// Whether two texts stand for the same value. Numbers may differ in the last bits, since not every
/// reader finds the nearest double.
/// @throws foundation::json::ParserException if one of them is not JSON text
bool same_value(std::string_view a, std::string_view b);

/// The number of values in a document, the number of bytes in its strings, without names of
/// members, and the sum of its numbers.
struct ContentSums {
    std::size_t values = 0;
    std::size_t string_bytes = 0;
    double sum = 0;
};
ContentSums content_sums(const std::string& text);

/// Two versions of a document, and a patch.
struct Versions {
    std::string before;
    std::string after;      ///< with other content in ten places, spread over the document
    std::string operations; ///< 100 of them, in 25 places, which leave the first version as it was
};
Versions versions_of(const std::string& text);

/// Pseudo-random numbers that are the same in every run.
class Sequence {
public:
    std::uint64_t next();
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }
    /// From 0 up to 1, all 53 bits in use.
    double fraction() { return static_cast<double>(next() >> 11) * 0x1p-53; }

private:
    std::uint64_t state_ = 0;
};

} // namespace bench

#endif
