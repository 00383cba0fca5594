/// @file
/// JSON text as what converters read from, for the library's other headers. Not for programs: what
/// is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_TEXT_SOURCE_HPP
#define FOUNDATION_JSON_DETAIL_TEXT_SOURCE_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/converters.hpp>
#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/number_parts.hpp>
#include <foundation/json/detail/start.hpp>
#include <foundation/json/export.hpp>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::detail {

// ---- What is compiled ----------------------------------------------------------------------

class DocumentReader;

/// Reads a member of an object from a document.
/// @param at       where its value begins
/// @param base     an object of the same class, as TextSource has it, or null
/// @param pointer  the address of the member's `Type Class::*`
/// @return the position behind the value
using ReadTextMember = const char* (*)(DocumentReader& reader, const char* at, void* object,
                                       const void* base, const void* pointer);

/// Makes a member of an object equal to that of another object of the same class.
/// @param base  that object; null changes nothing
/// @return the address of the member
using ResetMember = void* (*)(void* object, const void* base, const void* pointer);

/// A member of a class as it is read from a document.
struct TextMember {
    const char* text;   ///< `"name":`; sixteen bytes from each of its bytes on may be read
    std::uint32_t size; ///< of it; 0 if names of this kind are not compared so
    std::uint32_t is_required;
    ReadTextMember read;
    ResetMember reset;
    const void* pointer; ///< the address of the member's `Type Class::*`
};

/// The members of a class, for compiled functions.
struct TextMembers {
    std::size_t version; ///< of this structure: its size
    NameTable names;
    const TextMember* members;
    std::uint64_t required; ///< a bit for each of the first 64
};

/// Reads a document from its begin to its end, the parts of it in their order.
///
/// Functions take the position where they begin to read and return the one behind, so that it stays
/// in a register.
///
/// What is not as wanted ends all of it by an exception, of a type that nobody else knows: what is
/// wrong is found out by reading the document once more, in another way.
class FOUNDATION_JSON_PARSER_EXPORT DocumentReader {
public:
    /// A position, and an integer before it.
    template <class Integer>
    struct Behind {
        const char* at;
        Integer number;
    };

    DocumentReader(const DocumentReader&) = delete;
    DocumentReader& operator=(const DocumentReader&) = delete;

    [[nodiscard]] const char* read(const char* at, bool& target);
    [[nodiscard]] const char* read(const char* at, std::string& target);
    [[nodiscard]] const char* read(const char* at, Value& target);
    [[nodiscard]] const char* read(const char* at, double& target);
    [[nodiscard]] const char* read_number(const char* at, NumberContent& target);
    [[nodiscard]] Behind<long long> read_signed(const char* at, long long least, long long most);
    [[nodiscard]] Behind<unsigned long long> read_unsigned(const char* at, unsigned long long most);
    [[nodiscard]] Behind<std::size_t> read_enumerator(const char* at, const NameTable& names);
    /// @return the position behind null, or where it was if there is another value
    [[nodiscard]] const char* read_null(const char* at);

    /// Goes to the first element. The number is how many elements are expected, as an estimate of
    /// at most 64 from arrays before; 0 if the array has none, and has been read.
    [[nodiscard]] Behind<std::size_t> begin_array(const char* at);
    /// @param length  of an array that has been read, if it is not as expected
    void expect_length(std::size_t length) noexcept;
    /// Goes to the next element. The number is 0 if the array has ended.
    [[nodiscard]] Behind<std::size_t> next_element(const char* at);

    /// Reads an array of numbers.
    [[nodiscard]] const char* read(const char* at, std::vector<double>& target);
    [[nodiscard]] const char* read(const char* at, std::vector<int>& target);

    /// Goes to the value of the first member. The number is 0 if the object has none.
    [[nodiscard]] Behind<std::size_t> begin_object(const char* at, std::string& name);
    /// Goes to the value of the next member. The number is 0 if the object has ended.
    [[nodiscard]] Behind<std::size_t> next_member(const char* at, std::string& name);

    /// An object of a class.
    /// @param base  null or, if the object is not new, the one that has what is not read
    [[nodiscard]] const char* read_members(const char* at, const TextMembers& members, void* object,
                                           const void* base);

    /// What the conversion goes by.
    const ConvertOptions& options() const noexcept;

    /// The default objects of this document's classes.
    Defaults& defaults() noexcept;

    [[noreturn, FOUNDATION_JSON_GNU(cold)]] static void give_up();

protected:
    DocumentReader() = default;
    ~DocumentReader() = default;
};

// ---- Members -------------------------------------------------------------------------------

/// Whether a name stands in documents as it is: it needs no escapes, and no check of its bytes.
constexpr bool is_plain_name(std::string_view name) {
    constexpr std::size_t longest = 60;
    for (const char byte : name) {
        if (byte < ' ' || byte == '"' || byte == '\\' || byte > '~') {
            return false;
        }
    }
    return name.size() <= longest;
}

/// The names of the members of T as `"name":`, one behind the other.
template <class T>
struct MemberTexts {
    static constexpr std::size_t behind = 32;

    static constexpr std::size_t size() {
        std::size_t result = behind;
        for (std::size_t i = 0; i != MembersOf<T>::count; ++i) {
            result += MembersOf<T>::names[i].size() + 3;
        }
        return result;
    }

    struct Text {
        char bytes[size()];
    };

    static constexpr Text collect() {
        Text result{};
        char* out = result.bytes;
        for (std::size_t i = 0; i != MembersOf<T>::count; ++i) {
            *out++ = '"';
            for (const char byte : MembersOf<T>::names[i]) {
                *out++ = byte;
            }
            *out++ = '"';
            *out++ = ':';
        }
        return result;
    }
    static constexpr Text collected = collect();
};

template <class T, class Class, class Type>
struct TextMemberReader {
    static const char* read(DocumentReader& reader, const char* at, void* object, const void* base,
                            const void* pointer);
    static constexpr ReadTextMember entry = &read;

    /// The same with a check.
    template <class Check>
    struct Checked {
        static const char* read(DocumentReader& reader, const char* at, void* object,
                                const void* base, const void* pointer) {
            at = TextMemberReader::read(reader, at, object, base, pointer);
            const auto& checked = *static_cast<const CheckedPointer<Class, Type, Check>*>(pointer);
            const T& checked_object = *static_cast<const T*>(object);
            if (!detail::sentence_of(checked.check, checked_object.*checked.pointer).empty()) {
                DocumentReader::give_up();
            }
            return at;
        }
        static constexpr ReadTextMember entry = &read;
    };
};

template <class T, class Class, class Type>
struct MemberResetter {
    static void* reset(void* object, [[maybe_unused]] const void* base, const void* pointer) {
        Type& target = detail::member_of<T, Class, Type>(object, pointer);
        if (base != nullptr) {
            if constexpr (std::is_copy_assignable_v<Type>) {
                const auto member = *static_cast<Type Class::*const*>(pointer);
                target = static_cast<const T*>(base)->*member;
            } else {
                DocumentReader::give_up();
            }
        }
        return const_cast<std::remove_cv_t<Type>*>(std::addressof(target));
    }
    static constexpr ResetMember entry = &reset;
};

/// The members of T, for compiled functions.
template <class T>
struct TextMembersOf {
    static constexpr std::size_t count = MembersOf<T>::count;

    struct List {
        TextMember members[count + 1] = {}; // there are no arrays of length 0
        std::uint64_t required = 0;
    };

    static constexpr List collect() {
        List result;
        const char* text = MemberTexts<T>::collected.bytes;
        for (std::size_t i = 0; i != count; ++i) {
            const std::string_view name = MembersOf<T>::names[i];
            const bool required = MembersOf<T>::collected.required[i];
            const auto size = static_cast<std::uint32_t>(name.size() + 3);
            result.members[i] = {text,
                                 detail::is_plain_name(name) ? size : 0,
                                 required,
                                 member_entries<T, ReadTextMember, TextMemberReader>.entries[i],
                                 member_entries<T, ResetMember, MemberResetter>.entries[i],
                                 MembersOf<T>::collected.pointers[i]};
            result.required |= std::uint64_t{required && i < 64} << (i % 64);
            text += size;
        }
        return result;
    }
    static constexpr List collected = collect();

    static constexpr TextMembers table{sizeof(TextMembers), member_table<T>.names,
                                       collected.members, collected.required};
};

// ---- The source ----------------------------------------------------------------------------

class TextElements;
class TextObject;

/// The value that a DocumentReader is at. It has the members that value_source.hpp describes.
///
/// If what is read into is not new, the source has a base: an object of the same type as a new one
/// is, for what is not read. For a type that is never read in part, the base is any address.
class TextSource {
public:
    static constexpr bool known_lengths = false;

    template <class Container>
    static constexpr bool reads_whole = std::is_same_v<Container, std::vector<double>> ||
                                        std::is_same_v<Container, std::vector<int>>;

    TextSource(DocumentReader& reader, const char* at, const void* base) noexcept
        : reader_(reader), at_(at), base_(base) {}

    void read(bool& target) const { at_ = reader_.read(at_, target); }
    void read(std::string& target) const { at_ = reader_.read(at_, target); }
    void read(Value& target) const { at_ = reader_.read(at_, target); }
    void read(std::vector<double>& target) const { at_ = reader_.read(at_, target); }
    void read(std::vector<int>& target) const { at_ = reader_.read(at_, target); }
    void read(Array& target) const { read_content(target); }
    void read(Object& target) const { read_content(target); }

    template <class T>
    void read_number(T& target) const {
        using Limits = std::numeric_limits<T>;
        if constexpr (std::is_same_v<T, double>) {
            at_ = reader_.read(at_, target);
        } else if constexpr (std::is_floating_point_v<T>) {
            NumberContent content(0.0);
            at_ = reader_.read_number(at_, content);
            target = detail::to_number<T>(content);
        } else if constexpr (std::is_signed_v<T>) {
            target = static_cast<T>(
                go_behind(reader_.read_signed(at_, (Limits::min)(), (Limits::max)())));
        } else {
            target = static_cast<T>(go_behind(reader_.read_unsigned(at_, (Limits::max)())));
        }
    }

    std::size_t enumerator(const NameTable& names) const {
        return go_behind(reader_.read_enumerator(at_, names));
    }

    bool read_nothing() const {
        const char* const begin = at_;
        at_ = reader_.read_null(begin);
        return at_ != begin;
    }

    template <class T>
    void read_members(T& target) const {
        at_ = reader_.read_members(at_, TextMembersOf<T>::table, std::addressof(target), base_);
    }

    TextElements elements() const;
    TextElements elements(std::size_t length) const;
    TextObject members() const;

    template <class Whole, class PartOf>
    const void* part(const PartOf& part_of) const noexcept {
        if constexpr (has_start<Whole>) {
            return base_ == nullptr ? nullptr : part_of(*static_cast<const Whole*>(base_));
        } else {
            return base_;
        }
    }

    template <class Optional>
    void read_present(Optional& target) const {
        const void* const base =
            base_ != nullptr && target ? base_of_new<typename Optional::value_type>() : nullptr;
        if (base != nullptr) {
            read_part(*target, base);
        } else {
            read_part(target.emplace(), nullptr);
        }
    }

    /// Reads the value that is there into a part of what is read into.
    template <class T>
    void read_part(T& target, const void* base) const {
        const TextSource part(reader_, at_, base);
        detail::read_from(target, part);
        at_ = part.at_;
    }

    const char* at() const noexcept { return at_; }

    /// Goes on behind something. @return its number
    template <class Integer>
    Integer go_behind(const DocumentReader::Behind<Integer>& behind) const noexcept {
        at_ = behind.at;
        return behind.number;
    }
    void go_to(const char* at) const noexcept { at_ = at; }

    /// The base of elements that are used again; null if there is none.
    template <class T>
    const void* base_of_new() const {
        if constexpr (has_start<T>) {
            return detail::start_of_new<T>().object(reader_.defaults()).object;
        } else {
            return &reader_;
        }
    }

    const ConvertOptions& options() const noexcept { return reader_.options(); }
    DocumentReader& reader() const noexcept { return reader_; }
    const void* base() const noexcept { return base_; }

private:
    template <class Content>
    void read_content(Content& target) const {
        Value value;
        read(value);
        auto* const content = json::get_if<Content>(&value);
        if (content == nullptr) {
            DocumentReader::give_up();
        }
        target = std::move(*content);
    }

    DocumentReader& reader_;
    mutable const char* at_; ///< where it reads
    const void* base_;
};

template <class Container, class = void>
inline constexpr bool has_capacity = false;
template <class Container>
inline constexpr bool
    has_capacity<Container, std::void_t<decltype(std::declval<Container&>().reserve(0))>> = true;

/// The elements of an array.
class TextElements {
public:
    explicit TextElements(const TextSource& source)
        : source_(source),
          expected_(source.go_behind(source.reader().begin_array(source.at()))),
          more_(expected_ != 0) {}

    bool next() {
        if (!begun_) {
            begun_ = true;
        } else if (more_) {
            more_ = go_on();
        }
        return more_;
    }

    void take() {
        if (!next()) {
            DocumentReader::give_up();
        }
    }

    void finish() {
        if (next()) {
            DocumentReader::give_up();
        }
    }

    template <class T>
    void read(T& element, const void* base = nullptr) const {
        source_.read_part(element, base);
    }

    /// Reads all of them into a container, whose elements may be used again.
    template <class Container>
    void read_all(Container& target) const {
        using T = typename Container::value_type;
        if constexpr (!std::is_move_constructible_v<T>) {
            DocumentReader::give_up(); // a vector of such must know its length first
        } else {
            const void* base = nullptr;
            if (source_.base() != nullptr && !target.empty()) {
                base = source_.base_of_new<T>();
            }
            if constexpr (std::is_move_assignable_v<T>) {
                if (base != nullptr) {
                    read_again(target, base);
                    return;
                }
            }
            target.clear();
            if constexpr (has_capacity<Container>) {
                read_exactly(target);
            } else {
                read_more(target, more_);
            }
        }
    }

    [[noreturn]] static void fail(const char*) { DocumentReader::give_up(); }

private:
    bool go_on() const {
        return source_.go_behind(source_.reader().next_element(source_.at())) != 0;
    }

    template <class Container>
    void read_again(Container& target, const void* base) const {
        bool more = more_;
        auto element = target.begin();
        for (; more && element != target.end(); ++element) {
            read(*element, base);
            more = go_on();
        }
        target.erase(element, target.end());
        read_more(target, more);
    }

    template <class Container>
    void read_more(Container& target, bool more) const {
        for (; more; more = go_on()) {
            read(target.emplace_back());
        }
    }

    /// With room for as many elements as arrays before had.
    template <class Container>
    void read_exactly(Container& target) const {
        const bool reserves = expected_ > target.capacity();
        if (reserves) {
            target.reserve(expected_);
        }
        read_more(target, more_);
        if (target.size() != expected_) {
            source_.reader().expect_length(target.size());
            if (reserves && target.size() < expected_) {
                target.shrink_to_fit();
            }
        }
    }

    const TextSource& source_;
    std::size_t expected_;
    bool more_;
    bool begun_ = false;
};

/// The members of an object.
class TextObject {
public:
    explicit TextObject(const TextSource& source)
        : source_(source),
          more_(source.go_behind(source.reader().begin_object(source.at(), name_)) != 0) {}

    bool next() {
        if (!begun_) {
            begun_ = true;
        } else if (more_) {
            more_ = source_.go_behind(source_.reader().next_member(source_.at(), name_)) != 0;
        }
        return more_;
    }

    /// To be called once for each.
    std::string&& name() noexcept { return std::move(name_); }

    template <class T>
    void read(T& member) const {
        source_.read_part(member, nullptr);
    }

    [[noreturn]] static void fail(const char*) { DocumentReader::give_up(); }

private:
    const TextSource& source_;
    std::string name_;
    bool more_;
    bool begun_ = false;
};

inline TextElements TextSource::elements() const {
    return TextElements(*this);
}

inline TextElements TextSource::elements(std::size_t) const {
    return TextElements(*this);
}

inline TextObject TextSource::members() const {
    return TextObject(*this);
}

template <class T, class Class, class Type>
const char* TextMemberReader<T, Class, Type>::read(DocumentReader& reader, const char* at,
                                                   void* object, const void* base,
                                                   const void* pointer) {
    if constexpr (detail::require_changeable<Type>()) {
        if (base != nullptr) {
            const auto member = *static_cast<Type Class::*const*>(pointer);
            base = std::addressof(static_cast<const T*>(base)->*member);
        }
        const TextSource source(reader, at, base);
        detail::read_from(detail::member_of<T, Class, Type>(object, pointer), source);
        return source.at();
    }
}

} // namespace foundation::json::detail

#endif
/// @endcond
