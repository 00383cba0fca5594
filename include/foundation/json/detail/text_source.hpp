/// @file
/// Documents as what converters read from, for the library's other headers. Not for programs: what
/// is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_TEXT_SOURCE_HPP
#define FOUNDATION_JSON_DETAIL_TEXT_SOURCE_HPP

#include <foundation/json/detail/checks.hpp>
#include <foundation/json/detail/converters.hpp>
#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/start.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json::detail {

// ---- What is compiled ----------------------------------------------------------------------

class DocumentReader;
class ErrorCollector;

/// Reads an object of some type from a document.
/// @param at       where its value begins
/// @param target   the object
/// @param base     an object of the same type, as TextSource has it, or null
/// @param pointer  for a member, the address of the `Type Class::*`, or of its CheckedPointer
/// @return the position behind the value
using ReadAny = const char* (*)(DocumentReader& reader, const char* at, void* target,
                                const void* base, const void* pointer);

/// Makes an object equal to another one of its type.
using CopyAny = void (*)(void* target, const void* base);

/// A member of a class as it is read from a document.
struct TextMember {
    const char* text;   ///< `"name":`; sixteen bytes from each of its bytes on may be read
    std::uint32_t size; ///< of it; 0 if names of this kind are not compared so
    std::uint32_t is_required;
    ReadAny read;
    CopyAny copy;
    const void* pointer; ///< for the function that reads
};

/// The members of a class, for compiled functions.
struct TextMembers {
    std::size_t version; ///< of this structure: its size
    NameTable names;
    const TextMember* members;
    std::uint64_t required; ///< a bit for each of the first 64
    const MemberTable* table;
};

/// A member of an object, by which the rest of the object is told apart.
struct TagOf {
    std::string_view member;
    const NameTable& names; ///< that its value may be
};

/// Uses a source that can be read from more than once.
/// @param number  that of the tag's name, if there is a tag
using UseAgain = void (*)(DocumentReader& reader, const char* at, const void* use,
                          std::size_t number);

/// Reads a document from its begin to its end, the parts of it in their order.
///
/// Functions take the position where they begin to read and return the one behind, so that it stays
/// in a register. There are two classes of readers. One reads text, and whatever is not as wanted
/// ends all of it by an exception, of a type that nobody else knows. Then another one goes through
/// the value of that text, finds out what is wrong, and where; its positions are no text.
///
/// Programs call its functions by their positions in the class: new ones come behind the others.
class DocumentReader {
public:
    /// A position, and an integer before it.
    template <class Integer>
    struct Behind {
        const char* at;
        Integer number;
    };

    DocumentReader(const DocumentReader&) = delete;
    DocumentReader& operator=(const DocumentReader&) = delete;

    [[nodiscard]] virtual const char* read(const char* at, bool& target) = 0;
    [[nodiscard]] virtual const char* read(const char* at, std::string& target) = 0;
    [[nodiscard]] virtual const char* read(const char* at, double& target) = 0;
    [[nodiscard]] virtual const char* read(const char* at, float& target) = 0;
    [[nodiscard]] virtual const char* read(const char* at, long double& target) = 0;
    [[nodiscard]] virtual const char* read_value(const char* at, Value& target) = 0;
    [[nodiscard]] virtual const char* read_array(const char* at, std::vector<Value>& target) = 0;
    [[nodiscard]] virtual const char* read_object(const char* at,
                                                  std::map<std::string, Value>& target) = 0;
    [[nodiscard]] virtual Behind<long long> read_signed(const char* at, long long least,
                                                        long long most) = 0;
    [[nodiscard]] virtual Behind<unsigned long long> read_unsigned(const char* at,
                                                                   unsigned long long most) = 0;
    [[nodiscard]] virtual Behind<std::size_t> read_enumerator(const char* at,
                                                              const NameTable& names) = 0;
    /// The number is 0 if there is another value than null.
    [[nodiscard]] virtual Behind<std::size_t> read_null(const char* at) = 0;
    [[nodiscard]] virtual const char* expect_null(const char* at) = 0;

    static constexpr std::size_t any_length = static_cast<std::size_t>(-1);

    /// Goes to the first element.
    ///
    /// The number is 0 if the array has none, and has been read. Otherwise it is how many elements
    /// are expected: of text, an estimate of at most 64 from arrays before; the length, if
    /// knows_lengths().
    /// @param length  wanted, as far as it is known
    [[nodiscard]] virtual Behind<std::size_t> begin_array(const char* at, std::size_t length) = 0;
    [[nodiscard]] virtual bool knows_lengths() const noexcept = 0;
    /// @param length  of an array that has been read, if it is not as expected
    virtual void expect_length(std::size_t length) noexcept = 0;
    /// Goes to the next element. The number is 0 if the array has ended.
    [[nodiscard]] virtual Behind<std::size_t> next_element(const char* at) = 0;

    /// Reads an array of numbers.
    [[nodiscard]] virtual const char* read(const char* at, std::vector<double>& target) = 0;
    [[nodiscard]] virtual const char* read(const char* at, std::vector<int>& target) = 0;

    /// Goes to the value of the first member. The number is 0 if the object has none.
    [[nodiscard]] virtual Behind<std::size_t> begin_object(const char* at, std::string& name) = 0;
    /// Goes to the value of the next member. The number is 0 if the object has ended.
    [[nodiscard]] virtual Behind<std::size_t> next_member(const char* at, std::string& name) = 0;

    /// An object of a class.
    /// @param parts  the addresses of its members
    /// @param base   null or, if the object is not new, the one that has what is not read
    [[nodiscard]] virtual const char* read_members(const char* at, const TextMembers& members,
                                                   void* object, const void* const* parts,
                                                   const void* base) = 0;

    /// Calls a function with a reader of the same value that knows it as a whole.
    /// @param tag  null or, if the function is to read the rest of an object, what it is told by
    [[nodiscard]] virtual const char* use_again(const char* at, const TagOf* tag, UseAgain function,
                                                const void* use) = 0;

    /// What the exception under way says of the value that is there.
    [[nodiscard]] virtual std::string problem(const char* at) = 0;

    /// Whether the conversion goes on after errors, which are noted.
    bool notes_errors() const noexcept { return notes_errors_; }
    [[nodiscard]] virtual std::size_t noted() const noexcept = 0;
    /// Has errors noted, or thrown if there is no collector. @return the one before
    virtual ErrorCollector* collect_errors(ErrorCollector* collector) noexcept = 0;
    /// @return whether the object has been read; if not, the errors are noted
    virtual bool read_or_note(const char* at, ReadAny function, void* target) = 0;
    /// Fails at the value that is there, or notes the error.
    virtual void report(const char* at, std::string_view problem) = 0;

    /// The default objects of this document's classes.
    virtual Defaults& defaults() noexcept = 0;

    /// Fails at the value that is there.
    [[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_PARSER_EXPORT void
    fail(const char* at, std::string_view problem);
    /// The same because of the exception under way.
    [[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_PARSER_EXPORT void
    fail_current(const char* at);
    /// Throws what has been noted.
    [[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_PARSER_EXPORT void fail_noted();
    /// What is not as wanted, of a text.
    [[noreturn, FOUNDATION_JSON_GNU(cold)]] FOUNDATION_JSON_PARSER_EXPORT static void give_up();

    /// How many elements more there may be in an array, if they are like those that were read; 0 if
    /// that is not to be told.
    /// @param first  where the first of those begins
    /// @param at     where the next element begins
    /// @param count  how many were read
    [[nodiscard]] virtual std::size_t expect_more(const char* first, const char* at,
                                                  std::size_t count) const noexcept = 0;

protected:
    /// As fail() and fail_current(): compilers believe no virtual function that it does not return.
    virtual void throw_problem(const char* at, std::string_view problem) = 0;
    virtual void throw_current(const char* at) = 0;
    virtual void throw_noted() = 0;

    DocumentReader() = default;
    ~DocumentReader() = default;

    bool notes_errors_ = false;
};

/// As long as it lives, errors are thrown rather than noted.
class TextTrial {
public:
    explicit TextTrial(DocumentReader& reader) noexcept
        : reader_(reader), collector_(reader.collect_errors(nullptr)) {}
    TextTrial(const TextTrial&) = delete;
    TextTrial& operator=(const TextTrial&) = delete;
    ~TextTrial() { reader_.collect_errors(collector_); }

private:
    DocumentReader& reader_;
    ErrorCollector* const collector_;
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

/// Reads objects of a type, wherever they are.
template <class T>
const char* read_any(DocumentReader& reader, const char* at, void* target, const void* base,
                     const void*);

/// Makes an object equal to another one.
template <class T>
void copy_any(void* target, const void* base) {
    if constexpr (std::is_copy_assignable_v<T>) {
        *static_cast<T*>(target) = *static_cast<const T*>(base);
    } else {
        DocumentReader::give_up();
    }
}

/// Members of the same type share its function.
template <class T, class Class, class Type>
struct TextMemberReader {
    static constexpr ReadAny find() {
        if constexpr (detail::require_changeable<Type>()) {
            return &detail::read_any<std::remove_cv_t<Type>>;
        } else {
            return nullptr;
        }
    }
    static constexpr ReadAny entry = find();

    /// The same with a check.
    template <class Check>
    struct Checked {
        static const char* read(DocumentReader& reader, const char* at, void* target,
                                const void* base, const void* pointer) {
            const std::size_t noted = reader.notes_errors() ? reader.noted() : 0;
            const char* const behind = entry_of_member(reader, at, target, base, nullptr);
            if (reader.notes_errors() && reader.noted() != noted) {
                return behind;
            }
            const auto& checked = *static_cast<const CheckedPointer<Class, Type, Check>*>(pointer);
            std::string sentence;
            try {
                sentence = detail::sentence_of(checked.check, *static_cast<const Type*>(target));
            } catch (const std::exception&) {
                reader.fail_current(at);
            }
            if (!sentence.empty()) {
                reader.fail(at, sentence);
            }
            return behind;
        }
        static constexpr ReadAny entry_of_member = TextMemberReader::entry;
        static constexpr ReadAny entry = &read;
    };
};

template <class T, class Class, class Type>
struct TextMemberCopier {
    static constexpr CopyAny entry = &detail::copy_any<std::remove_cv_t<Type>>;
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
                                 member_entries<T, ReadAny, TextMemberReader>.entries[i],
                                 member_entries<T, CopyAny, TextMemberCopier>.entries[i],
                                 MembersOf<T>::collected.pointers[i]};
            result.required |= std::uint64_t{required && i < 64} << (i % 64);
            text += size;
        }
        return result;
    }
    static constexpr List collected = collect();

    static constexpr TextMembers table{sizeof(TextMembers), member_table<T>.names,
                                       collected.members, collected.required, &member_table<T>};
};

// ---- The source ----------------------------------------------------------------------------

class TextElements;
class TextObject;

/// The value that a DocumentReader is at. It has the members that sources.hpp describes.
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

    template <class T>
    void read(T& target) const {
        if constexpr (std::is_same_v<T, Value>) {
            at_ = reader_.read_value(at_, target);
        } else if constexpr (std::is_same_v<T, std::vector<Value>>) {
            at_ = reader_.read_array(at_, target);
        } else if constexpr (std::is_same_v<T, std::map<std::string, Value>>) {
            at_ = reader_.read_object(at_, target);
        } else {
            at_ = reader_.read(at_, target);
        }
    }

    template <class T>
    void read_number(T& target) const {
        using Limits = std::numeric_limits<T>;
        if constexpr (std::is_floating_point_v<T>) {
            at_ = reader_.read(at_, target);
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

    bool read_nothing() const { return go_behind(reader_.read_null(at_)) != 0; }
    void expect_nothing() const { at_ = reader_.expect_null(at_); }

    template <class T>
    void read_members(T& target) const {
        const void* parts[MembersOf<T>::count + 1]; // there are no arrays of length 0
        parts[MembersOf<T>::count] = nullptr;
        PartCollector<T> collector(target, parts);
        detail::visit_members(json::members<T>, collector);
        at_ = reader_.read_members(at_, TextMembersOf<T>::table, std::addressof(target), parts,
                                   base_);
    }

    template <class Use>
    void use_again(const Use& use) const {
        use_again(nullptr, [&use](const TextSource& source, std::size_t) { use(source); });
    }

    template <class Use>
    void use_tagged(std::string_view member, const NameTable& names, const Use& use) const {
        const TagOf tag{member, names};
        use_again(&tag, use);
    }

    /// Reads the value that is there, or notes why it cannot be read. @return whether it was read
    template <class T>
    [[FOUNDATION_JSON_GNU(noinline)]] bool read_or_note(T& target) const {
        return reader_.read_or_note(at_, &detail::read_any<T>, std::addressof(target));
    }

    /// As long as the result lives, errors are thrown rather than noted.
    TextTrial trial() const { return TextTrial(reader_); }

    [[noreturn]] void fail(const std::string& problem) const { reader_.fail(at_, problem); }
    [[noreturn]] void fail_current() const { reader_.fail_current(at_); }
    std::string problem() const { return reader_.problem(at_); }

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

    template <class T>
    void read_new(T& target) const {
        read_part(target, nullptr); // the base is one of what is made of it
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
            return reader_.defaults().template find<T>().object;
        } else {
            return &reader_;
        }
    }

    /// How many errors have been noted: none of a text, whose reading an error ends.
    std::size_t noted() const { return reader_.notes_errors() ? reader_.noted() : 0; }
    void fail_since(std::size_t noted) const {
        if (this->noted() != noted) {
            reader_.fail_noted();
        }
    }

    DocumentReader& reader() const noexcept { return reader_; }
    const void* base() const noexcept { return base_; }

private:
    template <class Use>
    void use_again(const TagOf* tag, const Use& use) const {
        at_ = reader_.use_again(
            at_, tag,
            [](DocumentReader& reader, const char* at, const void* function, std::size_t number) {
                const TextSource source(reader, at, nullptr);
                (*static_cast<const Use*>(function))(source, number);
            },
            std::addressof(use));
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

/// Whether a long vector has no room for `count` more elements.
template <class T, class Allocator>
bool needs_long_room(const std::vector<T, Allocator>& target, std::size_t count = 1) {
    constexpr std::size_t least = std::size_t{0x3FFF} / sizeof(T) + 1; // in 16 KiB
    return target.capacity() - target.size() < count && target.size() >= least;
}

/// Makes room in a long vector of unknown length.
///
/// One that doubles takes up to three times its memory as it grows. This one gets room for what the
/// rest of the text seems to have, at first for a sixteenth of it: the more has been read, the
/// better is the estimate, and the less is copied late. So memory is in proportion to the text.
/// @param first   where the first of the elements that have been added begins
/// @param before  how many elements there were before that one
/// @param at      where the next element begins
/// @return whether there is more room
template <class T, class Allocator>
[[FOUNDATION_JSON_GNU(noinline)]] bool
get_long_room(std::vector<T, Allocator>& target, const DocumentReader& reader, const char* first,
              std::size_t before, const char* at) {
    const std::size_t size = target.size();
    const std::size_t more = reader.expect_more(first, at, size - before);
    if (more == 0) {
        return false;
    }
    const std::size_t least = size + size / 4;
    std::size_t room = size + more;
    if (room / 16 > size) {
        room /= 16;
    }
    try {
        target.reserve(room < least ? least : room);
        return true;
    } catch (...) {
        return false; // it grows by itself
    }
}

/// Gives back what has been far too much.
template <class T, class Allocator>
void return_long_room(std::vector<T, Allocator>& target) {
    if (target.capacity() - target.size() > target.size() / 2) {
        target.shrink_to_fit();
    }
}

/// Whether a failed attempt to get room leaves the elements as they are.
template <class Container>
inline constexpr bool may_get_long_room = false;
template <class T, class Allocator>
inline constexpr bool may_get_long_room<std::vector<T, Allocator>> =
    std::is_nothrow_move_constructible_v<T>;
template <class Allocator>
inline constexpr bool may_get_long_room<std::vector<bool, Allocator>> = false;

/// The elements of an array.
class TextElements {
public:
    explicit TextElements(const TextSource& source, std::size_t length = DocumentReader::any_length)
        : source_(source),
          expected_(source.go_behind(source.reader().begin_array(source.at(), length))),
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
    bool read(T& element, const void* base = nullptr) const {
        if (source_.reader().notes_errors()) {
            return source_.read_or_note(element);
        }
        source_.read_part(element, base);
        return true;
    }

    /// Reads all of them into a container, whose elements may be used again.
    template <class Container>
    void read_all(Container& target) const {
        using T = typename Container::value_type;
        if constexpr (!std::is_move_constructible_v<T>) {
            read_known(target); // a vector of such must know its length first
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

    void report(const char* problem) const { source_.reader().report(source_.at(), problem); }

private:
    bool go_on() const {
        return source_.go_behind(source_.reader().next_element(source_.at())) != 0;
    }

    template <class Container>
    void read_known(Container& target) const {
        if (!source_.reader().knows_lengths()) {
            DocumentReader::give_up();
        }
        target = Container(expected_, target.get_allocator());
        for (auto& element : target) {
            read(element);
            static_cast<void>(go_on());
        }
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
        if constexpr (may_get_long_room<Container>) {
            const char* const first = source_.at();
            const std::size_t before = target.size();
            bool has_room = false;
            for (; more; more = go_on()) {
                if (detail::needs_long_room(target)) {
                    has_room = detail::get_long_room(target, source_.reader(), first, before,
                                                     source_.at());
                }
                read(target.emplace_back());
            }
            if (has_room) {
                detail::return_long_room(target);
            }
        } else {
            for (; more; more = go_on()) {
                read(target.emplace_back());
            }
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
    bool read(T& member) const {
        if (source_.reader().notes_errors()) {
            return source_.read_or_note(member);
        }
        source_.read_part(member, nullptr);
        return true;
    }

    void report(const char* problem) const { source_.reader().report(source_.at(), problem); }

private:
    const TextSource& source_;
    std::string name_;
    bool more_;
    bool begun_ = false;
};

inline TextElements TextSource::elements() const {
    return TextElements(*this);
}

inline TextElements TextSource::elements(std::size_t length) const {
    return TextElements(*this, length);
}

inline TextObject TextSource::members() const {
    return TextObject(*this);
}

template <class T>
const char* read_any(DocumentReader& reader, const char* at, void* target, const void* base,
                     const void*) {
    const TextSource source(reader, at, base);
    detail::read_from(*static_cast<T*>(target), source);
    return source.at();
}

} // namespace foundation::json::detail

#endif
/// @endcond
