#include "serialization/object_text.hpp"

#include "number/digits.hpp"
#include "number/shortest_number_text.hpp"
#include "serialization/member_order.hpp"
#include "serialization/object_value.hpp"
#include "serialization/write_problems.hpp"
#include "serialization/write_value.hpp"

#include <foundation/json/content.hpp>

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>

namespace foundation::json::detail {

namespace {

/// Writes objects. The cursor is in a register within each function.
class ObjectWriter final : public TextSink {
public:
    ObjectWriter(TextOutput& output, char* at, std::size_t depth) noexcept
        : output_(output),
          at_(at),
          depth_(depth),
          sorts_(output.options().member_order == WriteOptions::MemberOrder::utf16),
          is_indented_(output.is_indented()),
          has_big_integers_(output.options().big_integers == WriteOptions::BigIntegers::digits) {}

    char* cursor() const noexcept { return at_; }

    void put_null() override { at_ = put_nothing(output_.room(at_, 8)); }
    void put(bool flag) override { at_ = put_flag(output_.room(at_, 8), flag); }
    void put(const float& number) override {
        at_ = output_.number(at_, FloatingBits<float>(number));
    }
    void put(const double& number) override {
        at_ = output_.number(at_, FloatingBits<double>(number));
    }
    void put(long long number) override { at_ = output_.number(at_, number); }
    void put(unsigned long long number) override { at_ = output_.number(at_, number); }
    void put_string(std::string_view text) override { at_ = output_.string(at_, text); }

    void put_value(const Value& value) override {
        if (depth_ == 0 && holds<Undefined>(value)) {
            throw Unwritable();
        }
        at_ = write_content(output_, at_, value, depth_);
    }
    void put_array(const std::vector<Value>& elements) override {
        at_ = write_content(output_, at_, elements, depth_);
    }
    void put_object(const std::map<std::string, Value>& members) override {
        at_ = write_content(output_, at_, members, depth_);
    }

    void element(std::size_t index) override { at_ = begin_item(at_, index == 0, '['); }
    void end_array(std::size_t count) override { at_ = end_items(at_, count == 0, '[', ']'); }
    void put_plain(PlainType type, const void* elements, std::size_t count) override;

    void member(std::size_t index, std::string_view name) override {
        at_ = output_.name(begin_item(at_, index == 0, '{'), name);
    }
    void end_object(std::size_t count) override { at_ = end_items(at_, count == 0, '{', '}'); }
    bool sorts(MapOrder order) override { return sorts_ || order == MapOrder::none; }
    void sort_names(NamedPart* parts, std::size_t count) override {
        sort_parts(parts, count, sorts_);
    }

    void write_members(const TextTable& table, const void* object, const void* const* parts,
                       const Start& start) override;
    void begin_member(const SinkMember& member) override;
    void put_member(const SinkMember& member, PlainType type, const void* address) override;

    void put_tagged_object(std::string_view member, std::string_view tag,
                           const AnyObject& object) override;

    [[noreturn]] void fail_enumerator(const std::string&, const NameTable&) override {
        throw Unwritable();
    }
    [[noreturn]] void fail_current() override { throw Unwritable(); }

private:
    /// An object whose members are written.
    struct OpenObject {
        const TextTable& table;
        char separator; ///< what precedes the next member: a comma, or the bracket
    };

    /// For a name that is prepared, and a clean string.
    static constexpr std::size_t room_of_member = 256 + TextOutput::clean_size + 64;
    static_assert(room_of_member <= TextOutput::minimum_room);

    char* begin_item(char* at, bool is_first, char bracket);
    char* end_items(char* at, bool is_empty, char bracket, char end);
    void write_sorted(SinkMember& member, const void* const* parts);
    void write_in_order(OpenObject& open, SinkMember& member, const void* const* parts);
    void write_member(OpenObject& open, SinkMember& member, const void* const* parts);
    void write_other_member(const OpenObject& open, SinkMember& member);
    char* put_name(char* at, OpenObject& object, const TextMemberEntry& entry, std::size_t number);
    char* put_other_name(char* at, OpenObject& object, std::size_t number);
    static char* put_nothing(char* at);
    static char* put_flag(char* at, bool flag);
    template <class Integer>
    char* put_integer(char* at, Integer number);
    char* put_scalar(char* at, PlainType type, const void* address);
    char* put_text(char* at, const std::string& text);

    TextOutput& output_;
    char* at_;
    std::size_t depth_;
    const bool sorts_;
    const bool is_indented_;
    const bool has_big_integers_; ///< they are written as all others
};

// ---- Values --------------------------------------------------------------------------------

// These are inlined: a value takes less time than a call that saves registers.

// They are given a cursor with room for the value, for a clean string at least.

[[gnu::always_inline]] inline char* ObjectWriter::put_nothing(char* at) {
    std::copy_n("null", 4, at);
    return at + 4;
}

[[gnu::always_inline]] inline char* ObjectWriter::put_flag(char* at, bool flag) {
    std::copy_n(flag ? "true" : "fals", 4, at);
    at[4] = 'e';
    return at + (flag ? 4 : 5);
}

[[gnu::always_inline]] inline char* ObjectWriter::put_text(char* at, const std::string& text) {
    if (!output_.copies_clean(at, text)) {
        return output_.other_string(at, text);
    }
    *at = '"';
    at += 1 + text.size();
    *at = '"';
    return at + 1;
}

template <class Integer>
[[gnu::always_inline]] inline char* ObjectWriter::put_integer(char* at, Integer number) {
    return is_big(number) && !has_big_integers_ ? output_.number(at, number)
                                                : quick_integer_text(at, number);
}

[[gnu::always_inline]] inline char* ObjectWriter::put_scalar(char* at, PlainType type,
                                                             const void* address) {
    switch (type) {
    case PlainType::boolean:
        return put_flag(at, object_at<bool>(address));
    case PlainType::float32:
        return output_.number(at, FloatingBits<float>(*static_cast<const float*>(address)));
    case PlainType::float64:
        return output_.number(at, FloatingBits<double>(*static_cast<const double*>(address)));
    case PlainType::int8:
        return quick_integer_text(at, static_cast<long long>(object_at<std::int8_t>(address)));
    case PlainType::int16:
        return quick_integer_text(at, static_cast<long long>(object_at<std::int16_t>(address)));
    case PlainType::int32:
        return quick_integer_text(at, static_cast<long long>(object_at<std::int32_t>(address)));
    case PlainType::int64:
        return put_integer(at, static_cast<long long>(object_at<std::int64_t>(address)));
    case PlainType::uint8:
        return quick_integer_text(
            at, static_cast<unsigned long long>(object_at<std::uint8_t>(address)));
    case PlainType::uint16:
        return quick_integer_text(
            at, static_cast<unsigned long long>(object_at<std::uint16_t>(address)));
    case PlainType::uint32:
        return quick_integer_text(
            at, static_cast<unsigned long long>(object_at<std::uint32_t>(address)));
    case PlainType::uint64:
        return put_integer(at, static_cast<unsigned long long>(object_at<std::uint64_t>(address)));
    case PlainType::string:
        return put_text(at, *static_cast<const std::string*>(address));
    case PlainType::none:
        break;
    }
    return at;
}

// ---- Arrays and maps -----------------------------------------------------------------------

/// Writes what precedes an item: a bracket or comma, and the beginning of a line.
char* ObjectWriter::begin_item(char* at, bool is_first, char bracket) {
    at = output_.room(at, 1);
    *at++ = is_first ? bracket : ',';
    depth_ += is_first ? 1 : 0;
    return is_indented_ ? output_.line(at, depth_) : at;
}

char* ObjectWriter::end_items(char* at, bool is_empty, char bracket, char end) {
    if (is_empty) {
        at = output_.room(at, 2);
        *at++ = bracket;
    } else {
        --depth_;
        at = output_.room(is_indented_ ? output_.line(at, depth_) : at, 1);
    }
    *at++ = end;
    return at;
}

void ObjectWriter::put_plain(PlainType type, const void* elements, std::size_t count) {
    const std::size_t size = size_of(type);
    const auto* address = static_cast<const char*>(elements);
    char* at = at_;
    for (std::size_t i = 0; i < count; ++i) {
        at = output_.room(at, room_of_member);
        if (i == 0 || is_indented_) {
            at = output_.room(begin_item(at, i == 0, '['), room_of_member);
        } else {
            *at++ = ',';
        }
        at = put_scalar(at, type, address);
        address += size;
    }
    at_ = end_items(at, count == 0, '[', ']');
}

// ---- Objects of classes --------------------------------------------------------------------

/// Writes what precedes the value of a member.
/// @return the cursor, with room for a clean string
[[gnu::always_inline]] inline char* ObjectWriter::put_name(char* at, OpenObject& object,
                                                           const TextMemberEntry& entry,
                                                           std::size_t number) {
    at = output_.room(at, room_of_member);
    if (entry.name_size == 0 || is_indented_) {
        return put_other_name(at, object, number);
    }
    // Most names fit a few words, and a copy of a constant size takes no call.
    constexpr std::size_t words = 32;
    std::memcpy(at, entry.name, words);
    for (std::size_t copied = words; copied < entry.name_size; copied += words) {
        std::memcpy(at + copied, entry.name + copied, words);
    }
    *at = object.separator;
    object.separator = ',';
    return at + entry.name_size;
}

[[gnu::noinline]] char* ObjectWriter::put_other_name(char* at, OpenObject& object,
                                                     std::size_t number) {
    *at++ = object.separator;
    object.separator = ',';
    if (is_indented_) {
        at = output_.line(at, depth_);
    }
    at = output_.name(at, object.table.members->names.names[number]);
    return output_.room(at, room_of_member);
}

void ObjectWriter::write_members(const TextTable& table, const void* object,
                                 const void* const* parts, const Start& start) {
    OpenObject open{table, '{'};
    SinkMember member{*this, object, nullptr, false, start, 0, &open};
    ++depth_;
    if (sorts_) {
        write_sorted(member, parts);
    } else {
        write_in_order(open, member, parts);
    }
    char* at = at_;
    --depth_;
    if (open.separator == ',' && is_indented_) {
        at = output_.line(at, depth_);
    }
    at = output_.room(at, 2);
    at[0] = '{';
    at += open.separator == '{' ? 1 : 0;
    *at = '}';
    at_ = at + 1;
}

/// Writes members in the order of the table. The cursor stays in a register from one plain member
/// to the next.
[[gnu::always_inline]] inline void
ObjectWriter::write_in_order(OpenObject& open, SinkMember& member, const void* const* parts) {
    const std::size_t count = open.table.members->names.count;
    const TextMemberEntry* const entries = open.table.entries;
    char* at = at_;
    for (std::size_t number = 0; number < count; ++number) {
        const TextMemberEntry& entry = entries[number];
        if (entry.type != PlainType::none) {
            at = put_scalar(put_name(at, open, entry, number), entry.type, parts[number]);
        } else {
            at_ = at;
            member.number = number;
            write_other_member(open, member);
            at = at_;
        }
    }
    at_ = at;
}

[[gnu::always_inline]] inline void ObjectWriter::write_other_member(const OpenObject& open,
                                                                    SinkMember& member) {
    member.pointer = open.table.members->pointers[member.number];
    member.is_required = open.table.members->required[member.number];
    open.table.entries[member.number].write(member);
}

[[gnu::noinline]] void ObjectWriter::write_sorted(SinkMember& member, const void* const* parts) {
    auto& open = *static_cast<OpenObject*>(member.place);
    const MemberOrder order(*open.table.members, true);
    for (std::size_t i = 0; i < open.table.members->names.count; ++i) {
        member.number = order[i];
        write_member(open, member, parts);
    }
}

void ObjectWriter::write_member(OpenObject& open, SinkMember& member, const void* const* parts) {
    const std::size_t number = member.number;
    const TextMemberEntry& entry = open.table.entries[number];
    if (entry.type != PlainType::none) {
        at_ = put_scalar(put_name(at_, open, entry, number), entry.type, parts[number]);
    } else {
        write_other_member(open, member);
    }
}

void ObjectWriter::put_member(const SinkMember& member, PlainType type, const void* address) {
    auto& open = *static_cast<OpenObject*>(member.place);
    char* const at = put_name(at_, open, open.table.entries[member.number], member.number);
    at_ = type == PlainType::none ? put_nothing(at) : put_scalar(at, type, address);
}

void ObjectWriter::begin_member(const SinkMember& member) {
    auto& open = *static_cast<OpenObject*>(member.place);
    at_ = put_name(at_, open, open.table.entries[member.number], member.number);
}

void ObjectWriter::put_tagged_object(std::string_view member, std::string_view tag,
                                     const AnyObject& object) {
    Value value;
    try {
        value = tagged_value(member, tag, object);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        fail_current();
    }
    put_value(value);
}

} // namespace

// ---- Whole objects -------------------------------------------------------------------------

char* write_object(TextOutput& output, char* at, const AnyObject& object, std::size_t depth) {
    ObjectWriter writer(output, at, depth);
    object.write(writer, object.object);
    return writer.cursor();
}

char* write_root(TextOutput& output, char* at, const AnyObject& object) {
    try {
        return write_object(output, at, object, 0);
    } catch (const Unwritable&) {
        throw_object_error("", object, 0, output.options());
    }
}

} // namespace foundation::json::detail
