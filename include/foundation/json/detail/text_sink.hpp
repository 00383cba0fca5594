/// @file
/// Where objects are written as JSON text: what write_types.hpp and the compiled library tell each
/// other. Not for programs: what is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_TEXT_SINK_HPP
#define FOUNDATION_JSON_DETAIL_TEXT_SINK_HPP

#include <foundation/json/detail/member_arrays.hpp>
#include <foundation/json/detail/start.hpp>
#include <foundation/json/export.hpp>
#include <foundation/json/fwd.hpp>
#include <foundation/json/write_options.hpp>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace foundation::json::detail {

class TextSink;

template <class T>
constexpr bool is_character() {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return !std::is_same_v<T, std::make_signed_t<T>> &&
               !std::is_same_v<T, std::make_unsigned_t<T>>;
    } else {
        return false;
    }
}

// ---- Plain types ---------------------------------------------------------------------------

/// The types whose objects the compiled library writes by itself.
enum class PlainType : std::uint8_t {
    none,
    boolean,
    float32,
    float64,
    int8,
    int16,
    int32,
    int64,
    uint8,
    uint16,
    uint32,
    uint64,
    string,
};

template <class T>
constexpr PlainType plain_integer() {
    constexpr bool is_signed = std::is_signed_v<T>;
    switch (sizeof(T)) {
    case 1:
        return is_signed ? PlainType::int8 : PlainType::uint8;
    case 2:
        return is_signed ? PlainType::int16 : PlainType::uint16;
    case 4:
        return is_signed ? PlainType::int32 : PlainType::uint32;
    case 8:
        return is_signed ? PlainType::int64 : PlainType::uint64;
    default:
        return PlainType::none;
    }
}

template <class T>
constexpr PlainType plain_type() {
    if constexpr (std::is_same_v<T, bool>) {
        return PlainType::boolean;
    } else if constexpr (std::is_same_v<T, float>) {
        return PlainType::float32;
    } else if constexpr (std::is_same_v<T, double>) {
        return PlainType::float64;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return PlainType::string;
    } else if constexpr (std::is_integral_v<T> && !detail::is_character<T>()) {
        return detail::plain_integer<T>();
    } else {
        return PlainType::none;
    }
}

// ---- Members -------------------------------------------------------------------------------

/// A member of an object that is written as text, or left out.
struct SinkMember {
    TextSink& target;
    const void* object;  ///< that has it
    const void* pointer; ///< the address of the member's `Type Class::*`
    bool is_required;
    const Start& start; ///< what to() starts from in the object
    std::size_t number; ///< in the table
    void* place;        ///< known to the sink

    Defaults& defaults() const noexcept;

    /// Begins the member.
    /// @return where to write its value
    TextSink& sink() const;
};

using WriteTextMember = void (*)(const SinkMember& member);

/// A member of a class, as the compiled library writes it.
struct TextMemberEntry {
    const char* name;        ///< a comma, and the name with its quotes and a colon
    std::uint32_t name_size; ///< of that; 0 if the options decide how the name is written
    PlainType type;
    WriteTextMember write; ///< if the type is not plain; writes the member or leaves it out
};

/// A table of members, as the compiled library writes objects by it.
struct TextTable {
    std::uint32_t version;       ///< 1
    std::uint32_t size_of_entry; ///< sizeof(TextMemberEntry)
    const MemberTable* members;
    const TextMemberEntry* entries;
};

/// An element of a map, whose names are to be sorted.
struct NamedPart {
    std::string_view name;
    const void* part;
};

/// In which order a map has its names.
enum class MapOrder {
    by_bytes, ///< that of a Value
    own,      ///< by another rule
    none      ///< any
};

// ---- The sink ------------------------------------------------------------------------------

/// An object of any type.
struct AnyObject {
    const void* object;
    void (*write)(TextSink& sink, const void* object);
};

/// Takes an object piece by piece, in the order of the text.
///
/// Programs call its functions by their positions in the class: new ones come behind the others.
class TextSink {
public:
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;

    // Values.
    virtual void put_null() = 0;
    virtual void put(bool flag) = 0;
    virtual void put(const float& number) = 0;
    virtual void put(const double& number) = 0;
    virtual void put(long long number) = 0;
    virtual void put(unsigned long long number) = 0;
    virtual void put_string(std::string_view text) = 0;
    virtual void put_value(const Value& value) = 0;
    virtual void put_array(const std::vector<Value>& elements) = 0;
    virtual void put_object(const std::map<std::string, Value>& members) = 0;

    /// Arrays: element() before each element, end_array() behind the last.
    virtual void element(std::size_t index) = 0;
    virtual void end_array(std::size_t count) = 0;

    /// An array of objects of a plain type that lie one behind the other.
    virtual void put_plain(PlainType type, const void* elements, std::size_t count) = 0;

    /// Objects of maps, likewise.
    virtual void member(std::size_t index, std::string_view name) = 0;
    virtual void end_object(std::size_t count) = 0;
    /// Whether a map's names have to be sorted first.
    virtual bool sorts(MapOrder order) = 0;
    virtual void sort_names(NamedPart* parts, std::size_t count) = 0;

    /// Objects of classes.
    /// @param parts  the addresses of the members
    virtual void write_members(const TextTable& table, const void* object, const void* const* parts,
                               const Start& start) = 0;
    virtual void begin_member(const SinkMember& member) = 0;
    /// Writes a member of a plain type, or null if the type is none.
    virtual void put_member(const SinkMember& member, PlainType type, const void* address) = 0;

    /// Gives up, because of what a number is that no enumerator's name belongs to.
    [[noreturn]] virtual void fail_enumerator(const std::string& number,
                                              const NameTable& names) = 0;
    /// The same because of the exception under way.
    [[noreturn]] virtual void fail_current() = 0;

    /// Writes an object as an object of JSON with a further member.
    virtual void put_tagged_object(std::string_view member, std::string_view tag,
                                   const AnyObject& object) = 0;

    /// Writes the members of an object of a class.
    template <class T>
    void write_members_of(const T& object, const Start& start);

    template <class T>
    void put_tagged(std::string_view member, std::string_view tag, const T& object);

    Defaults& defaults() noexcept { return defaults_; }

    void put(int number) { put(static_cast<long long>(number)); }

    /// The elements of an array.
    class Elements {
    public:
        Elements(TextSink& sink, std::size_t /*count*/) noexcept : sink_(sink) {}

        TextSink& next() {
            sink_.element(index_);
            ++index_;
            return sink_;
        }

        void end() { sink_.end_array(index_); }

    private:
        TextSink& sink_;
        std::size_t index_ = 0;
    };

    /// The members of a map's object.
    class Members {
    public:
        explicit Members(TextSink& sink) noexcept : sink_(sink) {}

        TextSink& next(std::string_view name) {
            sink_.member(index_, name);
            ++index_;
            return sink_;
        }

        void end() { sink_.end_object(index_); }

    private:
        TextSink& sink_;
        std::size_t index_ = 0;
    };

    using Member = SinkMember;

protected:
    TextSink() noexcept = default;
    ~TextSink() = default;

private:
    Defaults defaults_;
};

inline Defaults& SinkMember::defaults() const noexcept {
    return target.defaults();
}

inline TextSink& SinkMember::sink() const {
    target.begin_member(*this);
    return target;
}

// ---- Tables --------------------------------------------------------------------------------

/// Whether a name is written the same by all options: all of it is ASCII, without escapes.
constexpr bool is_written_plainly(std::string_view name) {
    constexpr std::size_t most = 200; // so that a buffer has room for it
    bool plain = name.size() <= most;
    for (const char byte : name) {
        plain = plain && byte >= ' ' && byte < '\x7f' && byte != '"' && byte != '\\' && byte != '/';
    }
    return plain;
}

/// The names of T's members as they are in the text, one behind the other.
template <class T>
struct TextNames {
    static constexpr std::size_t count = MembersOf<T>::count;

    static constexpr std::size_t total_size() {
        std::size_t size = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string_view name = MembersOf<T>::names[i];
            size += detail::is_written_plainly(name) ? name.size() + 4 : 0;
        }
        return size;
    }

    /// Behind the names, so that the first bytes of each can be copied in words.
    static constexpr std::size_t spare = 32;

    struct Bytes {
        char bytes[total_size() + spare] = {};
    };

    static constexpr Bytes join() {
        Bytes result;
        std::size_t at = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string_view name = MembersOf<T>::names[i];
            if (!detail::is_written_plainly(name)) {
                continue;
            }
            result.bytes[at++] = ',';
            result.bytes[at++] = '"';
            for (const char byte : name) {
                result.bytes[at++] = byte;
            }
            result.bytes[at++] = '"';
            result.bytes[at++] = ':';
        }
        return result;
    }
    static constexpr Bytes joined = join();
};

/// @tparam WriterOf  `WriterOf<T, Class, Type>::entry` writes members of that type
template <class T, template <class, class, class> class WriterOf>
struct TextEntries {
    TextMemberEntry entries[MembersOf<T>::count + 1] = {}; // there are no arrays of length 0
    std::size_t used = 0;
    std::size_t names_used = 0;

    template <class Class, class Type>
    constexpr void operator()(const Member<Class, Type>& member) {
        add<Class, Type>(member.name);
    }

    template <class Class, class Type, class Check>
    constexpr void operator()(const CheckedMember<Class, Type, Check>& member) {
        add<Class, Type>(member.name);
    }

    template <class Class, class Type>
    constexpr void add(std::string_view name) {
        TextMemberEntry& entry = entries[used];
        entry.name = TextNames<T>::joined.bytes + names_used;
        if (detail::is_written_plainly(name)) {
            entry.name_size = static_cast<std::uint32_t>(name.size() + 4);
            names_used += entry.name_size;
        }
        using Plain = std::remove_cv_t<Type>;
        entry.type = detail::plain_type<Plain>();
        if constexpr (detail::plain_type<Plain>() == PlainType::none) {
            entry.write = WriterOf<T, Class, Type>::entry;
        }
        ++used;
    }

    static constexpr TextEntries collect() {
        TextEntries result;
        detail::visit_members(members<T>, result);
        return result;
    }
};

template <class T, template <class, class, class> class WriterOf>
inline constexpr TextEntries<T, WriterOf> text_entries = TextEntries<T, WriterOf>::collect();

template <class T, template <class, class, class> class WriterOf>
inline constexpr TextTable text_table{1, sizeof(TextMemberEntry), &member_table<T>,
                                      text_entries<T, WriterOf>.entries};

/// Lists the addresses of the members of an object.
template <class T>
class PartCollector {
public:
    PartCollector(const T& object, const void** parts) noexcept : object_(object), next_(parts) {}

    template <class Class, class Type>
    void operator()(const Member<Class, Type>& member) noexcept {
        *next_++ = std::addressof(object_.*member.pointer);
    }

    template <class Class, class Type, class Check>
    void operator()(const CheckedMember<Class, Type, Check>& member) noexcept {
        *next_++ = std::addressof(object_.*member.checked.pointer);
    }

private:
    const T& object_;
    const void** next_;
};

// ---- Whole objects -------------------------------------------------------------------------

/// As write() of an object. write_file.hpp has the one for files.
[[nodiscard]] FOUNDATION_JSON_EXPORT std::string write_text(const AnyObject& object,
                                                            const WriteOptions& options);
FOUNDATION_JSON_EXPORT void write_text(std::ostream& stream, const AnyObject& object,
                                       const WriteOptions& options);

} // namespace foundation::json::detail

#endif
/// @endcond
