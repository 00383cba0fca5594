/// @file
/// How further types are converted: representations, smart pointers, variants, multimaps, paths and
/// views. converters.hpp includes this header. Not for programs: what is here may change in every
/// version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_MORE_CONVERTERS_HPP
#define FOUNDATION_JSON_DETAIL_MORE_CONVERTERS_HPP

#include <foundation/json/detail/checks.hpp>
#include <foundation/json/detail/converters.hpp>

#include <exception>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::json::detail {

// ---- Errors --------------------------------------------------------------------------------

template <class T>
std::string shown(const T& object) {
    WriteOptions options;
    options.not_finite = WriteOptions::NotFinite::string;
    options.bad_utf8 = WriteOptions::BadUtf8::replace;
    return detail::write_text(detail::any_object(object), options);
}

// ---- Representations -----------------------------------------------------------------------

template <class Result, class Parameter>
std::decay_t<Parameter> parameter_of(Result (*)(Parameter));

template <class T, class = void>
inline constexpr bool has_to = false;
template <class T>
inline constexpr bool
    has_to<T, std::void_t<decltype(representation<T>::to(std::declval<const T&>()))>> = true;

template <class T, class = void>
inline constexpr bool has_from = false;
template <class T>
inline constexpr bool
    has_from<T, std::void_t<decltype(detail::parameter_of(&representation<T>::from))>> = true;

template <class T>
struct Converter<T, Category::represented> {

    template <class... From>
    static T make(From&... from) {
        static_assert(has_from<T>, "to read this type, its foundation::json::representation needs "
                                   "a function: static T from(const Other&)");
        if constexpr (has_from<T>) {
            using Parameter = decltype(detail::parameter_of(&representation<T>::from));
            constexpr bool is_view = std::is_same_v<Parameter, std::string_view>;
            using Read = std::conditional_t<is_view, std::string, Parameter>;
            const std::size_t noted = detail::source_of(from...).noted();
            auto content = detail::make_from<Read>(from...);
            detail::source_of(from...).fail_since(noted);
            try {
                return representation<T>::from(std::move(content));
            } catch (const std::exception&) {
                detail::source_of(from...).fail_current();
            }
        }
    }

    template <class... From>
    static void read(T& target, From&... from) {
        target = make(from...);
    }

    template <class Sink>
    static void write(Sink& sink, const T& content, const Start&) {
        static_assert(has_to<T>, "to write this type, its foundation::json::representation needs a "
                                 "function: static Other to(const T&)");
        if constexpr (has_to<T>) {
            using Written = std::decay_t<decltype(representation<T>::to(content))>;
            using Known =
                std::conditional_t<std::is_same_v<Written, const char*>, std::string_view, Written>;
            write_as<Known>(sink, content);
        }
    }

private:
    template <class Written, class Sink>
    static void write_as(Sink& sink, const T& content) {
        Made<Written> made;
        try {
            made.object.emplace(representation<T>::to(content));
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception&) {
            sink.fail_current();
        }
        if constexpr (std::is_same_v<Written, Value>) {
            if (detail::is_undefined(*made.object)) {
                sink.put_null();
                return;
            }
        }
        Converter<Written>::template write<Sink>(sink, *made.object,
                                                 detail::start_of_new<Written>());
    }
};

// ---- Smart pointers ------------------------------------------------------------------------

/// Null is no object.
template <class Pointer>
struct PointerConverter {
    using T = typename Pointer::element_type;

    template <class... From>
    static void read(Pointer& target, From&... from) {
        const auto& source = detail::source_of(from...);
        if constexpr (detail::require_default<T>()) {
            if (source.read_nothing()) {
                target.reset();
                return;
            }
            Made<T> made;
            Converter<Made<T>>::read(made, from...);
            target = Pointer(new T(std::move(*made.object)));
        }
    }

    template <class Sink>
    static void write(Sink& sink, const Pointer& content, const Start&) {
        if (detail::is_empty(content)) {
            sink.put_null();
        } else {
            Converter<T>::template write<Sink>(sink, *content, detail::start_of_new<T>());
        }
    }
};

template <class T>
struct Converter<std::unique_ptr<T>, Category::other> : PointerConverter<std::unique_ptr<T>> {};

template <class T>
struct Converter<std::shared_ptr<T>, Category::other> : PointerConverter<std::shared_ptr<T>> {};

// ---- Variants ------------------------------------------------------------------------------

template <class Variant>
inline constexpr bool is_tagged =
    !std::is_same_v<std::remove_cv_t<decltype(alternatives<Variant>)>, NoTable>;

/// What does not depend on how alternatives are told apart.
template <class... Types>
struct VariantWriter {
    using Variant = std::variant<Types...>;

    template <class Sink>
    static void require_alternative(Sink& sink, const Variant& content) {
        if (content.valueless_by_exception()) {
            try {
                throw std::bad_variant_access();
            } catch (const std::exception&) {
                sink.fail_current();
            }
        }
    }

    template <class Sink>
    static void write_alternative(Sink& sink, const Variant& content) {
        require_alternative(sink, content);
        std::visit(
            [&sink](const auto& alternative) {
                using T = std::decay_t<decltype(alternative)>;
                Converter<T>::template write<Sink>(sink, alternative, detail::start_of_new<T>());
            },
            content);
    }
};

/// The first alternative that accepts what is there.
template <class... Types>
struct FirstAlternative : VariantWriter<Types...> {
    using Variant = std::variant<Types...>;

    template <class... From>
    static void read(Variant& target, From&... from) {
        detail::source_of(from...).use_again([&target](const auto& source) {
            std::string problems;
            if (!read_any(target, source, problems, std::index_sequence_for<Types...>())) {
                source.fail("no alternative fits: " + problems);
            }
        });
    }

    template <class Sink>
    static void write(Sink& sink, const Variant& content, const Start&) {
        FirstAlternative::write_alternative(sink, content);
    }

private:
    template <class Source, std::size_t... I>
    static bool read_any(Variant& target, const Source& source, std::string& problems,
                         std::index_sequence<I...>) {
        return (read_as<I, Types>(target, source, problems) || ...);
    }

    template <std::size_t I, class T, class Source>
    static bool read_as(Variant& target, const Source& source, std::string& problems) {
        if constexpr (detail::require_default<T>()) {
            [[maybe_unused]] const auto trial = source.trial();
            try {
                target.template emplace<I>(detail::make_from<T>(source));
                return true;
            } catch (const std::exception&) {
                problems += problems.empty() ? "" : "; ";
                problems += source.problem();
            }
        }
        return false;
    }
};

template <class Table>
inline constexpr std::size_t tagged_count = 0;
template <std::size_t Count>
inline constexpr std::size_t tagged_count<Tagged<Count>> = Count;

/// The names of the alternatives, as a table of names needs them.
template <class Variant>
struct AlternativesOf {
    static constexpr std::size_t count = std::variant_size_v<Variant>;
    static constexpr const std::string_view* names = alternatives<Variant>.names;
};

template <class Variant>
inline constexpr NameTable alternative_table{AlternativesOf<Variant>::names,
                                             sorted<AlternativesOf<Variant>>,
                                             AlternativesOf<Variant>::count};

/// Refuses, at compile time, alternatives with a mistake in them.
template <class Variant>
constexpr bool require_alternatives() {
    constexpr bool named = tagged_count<std::remove_cv_t<decltype(alternatives<Variant>)>> ==
                           std::variant_size_v<Variant>;
    static_assert(named,
                  "foundation::json::alternatives has to be tagged(member, {name, ...}), with "
                  "a name for each alternative of the variant");
    if constexpr (named) {
        constexpr bool differ =
            detail::find_repeated<AlternativesOf<Variant>>() == std::variant_size_v<Variant>;
        static_assert(differ, "foundation::json::alternatives names two alternatives the same");
        return differ;
    } else {
        return false;
    }
}

/// The alternative that a member names.
template <class... Types>
struct TaggedAlternative : VariantWriter<Types...> {
    using Variant = std::variant<Types...>;

    template <class... From>
    static void read(Variant& target, From&... from) {
        if constexpr (detail::require_alternatives<Variant>()) {
            detail::source_of(from...).use_tagged(
                alternatives<Variant>.member, alternative_table<Variant>,
                [&target](const auto& rest, std::size_t number) {
                    read_number(target, rest, number, std::index_sequence_for<Types...>());
                });
        }
    }

    template <class Sink>
    static void write(Sink& sink, const Variant& content, const Start&) {
        if constexpr (detail::require_alternatives<Variant>()) {
            TaggedAlternative::require_alternative(sink, content);
            const std::string_view tag = AlternativesOf<Variant>::names[content.index()];
            std::visit(
                [&sink, tag](const auto& alternative) {
                    sink.put_tagged(alternatives<Variant>.member, tag, alternative);
                },
                content);
        }
    }

private:
    template <class Source, std::size_t... I>
    static void read_number(Variant& target, const Source& source, std::size_t number,
                            std::index_sequence<I...>) {
        (read_if<I, Types>(target, source, number), ...);
    }

    template <std::size_t I, class T, class Source>
    static void read_if(Variant& target, const Source& source, std::size_t number) {
        static_assert(std::is_class_v<T>,
                      "an alternative with a tag has to be an object in JSON: a "
                      "class with a table of members");
        if constexpr (detail::require_default<T>()) {
            if (number == I) {
                target.template emplace<I>(detail::make_from<T>(source));
            }
        }
    }
};

template <class... Types>
struct Converter<std::variant<Types...>, Category::other>
    : std::conditional_t<is_tagged<std::variant<Types...>>, TaggedAlternative<Types...>,
                         FirstAlternative<Types...>> {};

template <>
struct Converter<std::monostate, Category::other> {
    template <class... From>
    static void read(std::monostate&, From&... from) {
        detail::source_of(from...).expect_nothing();
    }

    template <class Sink>
    static void write(Sink& sink, std::monostate, const Start&) {
        sink.put_null();
    }
};

// ---- Multimaps -----------------------------------------------------------------------------

/// An object that has an array for each name.
template <class Map>
struct MultimapConverter {
    using T = typename Map::mapped_type;
    using ByNames = std::map<std::string, std::vector<T>>;

    template <class... From>
    static void read(Map& target, From&... from) {
        const auto& source = detail::source_of(from...);
        auto by_names = detail::make_from<ByNames>(source);
        target.clear();
        for (auto& [name, elements] : by_names) {
            for (auto&& element : elements) {
                target.emplace(name, std::move(element));
            }
        }
    }

    template <class Sink>
    static void write(Sink& sink, const Map& content, const Start&) {
        ByNames by_names;
        for (const auto& [name, element] : content) {
            by_names[name].push_back(element);
        }
        Converter<ByNames>::template write<Sink>(sink, by_names, detail::start_of_new<ByNames>());
    }
};

template <class T, class Compare, class Allocator>
struct Converter<std::multimap<std::string, T, Compare, Allocator>, Category::other>
    : MultimapConverter<std::multimap<std::string, T, Compare, Allocator>> {};

template <class T, class Hash, class Equal, class Allocator>
struct Converter<std::unordered_multimap<std::string, T, Hash, Equal, Allocator>, Category::other>
    : MultimapConverter<std::unordered_multimap<std::string, T, Hash, Equal, Allocator>> {};

// ---- Strings of other types ----------------------------------------------------------------

/// Only written: nobody would own what is read.
template <>
struct Converter<std::string_view, Category::other> {
    template <class... From>
    static void read(std::string_view&, From&...) {
        static_assert(sizeof...(From) == 0, "a view can be written, but not read, since nobody "
                                            "would own its text: use std::string");
    }

    template <class Sink>
    static void write(Sink& sink, std::string_view content, const Start&) {
        sink.put_string(content);
    }
};

/// The characters of a text that is UTF-8.
inline std::u32string code_points_of(std::string_view text) {
    std::u32string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0xC0) {
            result += static_cast<char32_t>(byte & (byte >= 0xF0   ? 0x07
                                                    : byte >= 0xE0 ? 0x0F
                                                                   : 0x1F));
        } else if (byte >= 0x80 && !result.empty()) {
            result.back() = result.back() << 6 | (byte & 0x3FU);
        } else {
            result += byte;
        }
    }
    return result;
}

/// A std::filesystem::path, whose header takes compilers long and is not included here.
template <class Path>
struct PathConverter {
    template <class... From>
    static void read(Path& target, From&... from) {
        const auto& source = detail::source_of(from...);
        std::string text;
        source.read(text);
        if constexpr (std::is_same_v<typename Path::value_type, char>) {
            target = Path(std::move(text));
        } else {
            target = Path(detail::code_points_of(text));
        }
    }

    template <class Sink>
    static void write(Sink& sink, const Path& content, const Start&) {
        if constexpr (std::is_same_v<typename Path::value_type, char>) {
            sink.put_string(std::string_view(content.native()));
        } else {
            const auto text = content.u8string();
            sink.put_string(
                std::string_view(reinterpret_cast<const char*>(text.data()), text.size()));
        }
    }
};

template <class T>
struct Converter<T, Category::path> : PathConverter<T> {};

} // namespace foundation::json::detail

#endif
/// @endcond
