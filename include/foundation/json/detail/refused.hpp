/// @file
/// What follows a refusal at compile time, for the library's other headers. Not for programs: what
/// is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_REFUSED_HPP
#define FOUNDATION_JSON_DETAIL_REFUSED_HPP

namespace foundation::json::detail {

/// Stands where a static_assert has refused a type, so that the compiler says nothing else. Nothing
/// calls it, and there is no definition.
[[noreturn]] void refused();

} // namespace foundation::json::detail

#endif
/// @endcond
