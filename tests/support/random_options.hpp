/// @file
/// Random options of a text.
#ifndef FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_OPTIONS_HPP
#define FOUNDATION_JSON_TESTS_SUPPORT_RANDOM_OPTIONS_HPP

#include "support/random_trees.hpp"

#include <foundation/json/write.hpp>

#include <type_traits>

namespace foundation::json::test {

inline WriteOptions random_options(RandomTrees& random) {
    const auto any_of = [&random](const auto&... choices) {
        const std::common_type_t<std::decay_t<decltype(choices)>...> list[] = {choices...};
        return list[random.below(sizeof...(choices))];
    };
    using NotFinite = WriteOptions::NotFinite;
    using BadUtf8 = WriteOptions::BadUtf8;
    using BigIntegers = WriteOptions::BigIntegers;
    using MemberOrder = WriteOptions::MemberOrder;
    WriteOptions options;
    options.indent = any_of(0U, 0U, 1U, 2U, 4U, 12U);
    options.ascii = random.once_in(2);
    options.escape_slash = random.once_in(2);
    options.not_finite = any_of(NotFinite::error, NotFinite::null, NotFinite::string);
    options.bad_utf8 = any_of(BadUtf8::error, BadUtf8::replace, BadUtf8::keep);
    options.big_integers = any_of(BigIntegers::digits, BigIntegers::string, BigIntegers::as_double);
    // Names that are not UTF-8 have no place in the order of UTF-16.
    options.member_order = options.bad_utf8 == BadUtf8::error
                               ? any_of(MemberOrder::as_given, MemberOrder::utf16)
                               : MemberOrder::as_given;
    return options;
}

} // namespace foundation::json::test

#endif
