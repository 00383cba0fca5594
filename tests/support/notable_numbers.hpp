/// @file
/// Numbers, by their bits, whose text is likely to be wrong if arithmetic behaves unusually.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_NOTABLE_NUMBERS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_NOTABLE_NUMBERS_HPP

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

namespace foundation::json::test {

template <class Number>
using WordOf = std::conditional_t<sizeof(Number) == 8, std::uint64_t, std::uint32_t>;

/// To be used by memcpy alone where the number may be a signalling NaN and the machine an i386.
template <class Number>
Number number_of(WordOf<Number> word) {
    Number number;
    std::memcpy(&number, &word, sizeof number);
    return number;
}

template <class Number>
std::vector<WordOf<Number>> notable_words();

/// Of both signs.
template <class Word>
std::vector<Word> with_negatives(std::vector<Word> words) {
    const std::size_t count = words.size();
    for (std::size_t i = 0; i < count; ++i) {
        words.push_back(words[i] | Word{1} << (8 * sizeof(Word) - 1));
    }
    return words;
}

template <>
inline std::vector<std::uint64_t> notable_words<double>() {
    return with_negatives<std::uint64_t>({
        0x0000000000000000, // 0
        0x0000000000000001, // the smallest subnormal
        0x000049A22DC398AC, // 4E-310
        0x0008000000000000, // subnormal, the highest bit
        0x000FFFFFFFFFFFFF, // the largest subnormal
        0x0010000000000000, // the smallest normal
        0x0010000000000001, // and its neighbour
        0x3E60000000000000, // 2^-25, half way between two texts
        0x3F1A36E2EB1C432D, // 0.0001
        0x3FB999999999999A, // 0.1
        0x3FD3333333333334, // 0.1 + 0.2
        0x3FF0000000000000, // 1
        0x412E847F00000000, // 999999.5
        0x412E848000000000, // 1000000
        0x430C6BF526340000, // 1E15
        0x431FFFFFFFFFFFFE, // 2^51 - 0.5
        0x432FFFFFFFFFFFFF, // 2^52 - 0.5
        0x4330000000000001, // 2^52 + 1
        0x44B52D02C7E14AF6, // 1E23, whose text lies half way to the next
        0x7FEFFFFFFFFFFFFF, // the largest
        0x7FF0000000000000, // infinity
        0x7FF0000000000001, // a signalling NaN
        0x7FF7FFFFFFFFFFFF, // another
        0x7FF8000000000000, // a quiet NaN
        0x7FFFFFFFFFFFFFFF, // another
    });
}

template <>
inline std::vector<std::uint32_t> notable_words<float>() {
    return with_negatives<std::uint32_t>({
        0x00000000, // 0
        0x00000001, // the smallest subnormal
        0x000116C2, // about 1E-40
        0x00400000, // subnormal, the highest bit
        0x007FFFFF, // the largest subnormal
        0x00800000, // the smallest normal
        0x00800001, // and its neighbour
        0x38800000, // 2^-14, half way between two texts
        0x3DCCCCCC, // below 0.1
        0x3DCCCCCD, // 0.1
        0x3F800000, // 1
        0x497423F0, // 999999
        0x497423FF, // 999999.9375, half way between two texts
        0x49742400, // 1000000
        0x4AFFFFFF, // 8388607.5
        0x4B000001, // 8388609
        0x7E967699, // 1E38
        0x7F7FFFFE, // next to the largest
        0x7F7FFFFF, // the largest
        0x7F800000, // infinity
        0x7F800001, // a signalling NaN
        0x7FBFFFFF, // another
        0x7FC00000, // a quiet NaN
        0x7FFFFFFF, // another
    });
}

} // namespace foundation::json::test

#endif
