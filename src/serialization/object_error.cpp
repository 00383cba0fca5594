// What is wrong with an object that could not be written, and where.
#include "serialization/member_order.hpp"
#include "serialization/object_text.hpp"
#include "serialization/object_value.hpp"
#include "serialization/write_problems.hpp"
#include "serialization/write_value.hpp"
#include "text/location.hpp"

#include <foundation/json/convert.hpp>
#include <foundation/json/write.hpp>

#include <exception>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace foundation::json::detail {

namespace {

/// Goes through an object without writing anything, but keeps track of the location, and throws at
/// the first problem. It looks for problems of one kind only, in the order in which from(), or
/// write() of the value that from() makes, comes to them.
class ObjectErrorLocator final : public TextSink {
public:
    enum class Problems { of_conversion, of_text };

    ObjectErrorLocator(Problems problems, const std::string& pointer, std::size_t depth,
                       const WriteOptions& options)
        : looks_at_text_(problems == Problems::of_text),
          in_utf16_(looks_at_text_ && options.member_order == WriteOptions::MemberOrder::utf16),
          pointer_(pointer),
          is_root_(depth == 0),
          options_(options) {}

    void put_null() override {}
    void put(bool) override {}
    void put(const float& number) override { check(FloatingBits<float>(number)); }
    void put(const double& number) override { check(FloatingBits<double>(number)); }
    void put(long long number) override { check(number); }
    void put(unsigned long long number) override { check(number); }

    void put_string(std::string_view text) override {
        if (looks_at_text_ && !is_writable_string(text, options_)) {
            throw WriteError(pointer(steps_.size()), problem_of_string(text));
        }
    }

    void put_value(const Value& value) override {
        if (looks_at_text_ && is_root_ && steps_.empty() && holds<Undefined>(value)) {
            throw WriteError(pointer(0), undefined_problem);
        }
        check_content(value);
    }
    void put_array(const std::vector<Value>& elements) override { check_content(elements); }
    void put_object(const std::map<std::string, Value>& members) override {
        check_content(members);
    }

    void element(std::size_t index) override {
        if (index == 0) {
            steps_.push_back({std::nullopt, 0});
        }
        steps_.back().index = index;
    }
    void end_array(std::size_t count) override { leave(count != 0); }
    void put_plain(PlainType type, const void* elements, std::size_t count) override;

    void member(std::size_t index, std::string_view name) override {
        if (index == 0) {
            steps_.push_back({name, 0});
        }
        begin_name(name);
    }
    void end_object(std::size_t count) override { leave(count != 0); }
    bool sorts(MapOrder order) override {
        return looks_at_text_ && (in_utf16_ || order != MapOrder::by_bytes);
    }
    void sort_names(NamedPart* parts, std::size_t count) override {
        sort_parts(parts, count, in_utf16_);
    }

    void write_members(const TextTable& table, const void* object, const void* const* parts,
                       const Start& start) override;
    void begin_member(const SinkMember& member) override {
        begin_name(static_cast<const MemberTable*>(member.place)->names.names[member.number]);
    }

    void put_member(const SinkMember& member, PlainType type, const void* address) override {
        begin_member(member);
        put_scalar(type, address);
    }

    void put_tagged_object(std::string_view member, std::string_view tag,
                           const AnyObject& object) override {
        put_value(find_tagged_value(member, tag, object));
    }

    [[noreturn]] void fail_enumerator(const std::string& number, const NameTable& names) override {
        const std::string at = pointer(steps_.size());
        detail::fail_enumerator(Location(at), number, names);
    }
    [[noreturn]] void fail_current() override {
        const std::string at = pointer(steps_.size());
        detail::fail_current(Location(at));
    }

private:
    /// Where it is in an array or object.
    struct Step {
        std::optional<std::string_view> name; ///< none in an array
        std::size_t index;
    };

    template <class Number>
    void check(Number number) const {
        if (looks_at_text_ && !is_writable(number, options_)) {
            throw WriteError(pointer(steps_.size()), problem_of(number));
        }
    }

    template <class Content>
    void check_content(const Content& content) const {
        if (looks_at_text_) {
            find_write_error(pointer(steps_.size()), content, options_);
        }
    }

    void begin_name(std::string_view name) {
        if (looks_at_text_ && !is_writable_string(name, options_)) {
            throw WriteError(pointer(steps_.size() - 1), problem_of_name(name));
        }
        steps_.back().name = name;
    }

    void leave(bool has_items) {
        if (has_items) {
            steps_.pop_back();
        }
    }

    Value find_tagged_value(std::string_view member, std::string_view tag, const AnyObject& object);
    void put_scalar(PlainType type, const void* address);
    std::string pointer(std::size_t count) const;

    const bool looks_at_text_;
    const bool in_utf16_;
    const std::string& pointer_;
    const bool is_root_;
    const WriteOptions& options_;
    std::vector<Step> steps_;
};

Value ObjectErrorLocator::find_tagged_value(std::string_view member, std::string_view tag,
                                            const AnyObject& object) {
    try {
        return tagged_value(member, tag, object);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        fail_current();
    }
}

/// Only types that may have no text.
void ObjectErrorLocator::put_scalar(PlainType type, const void* address) {
    switch (type) {
    case PlainType::float32:
        return put(*static_cast<const float*>(address));
    case PlainType::float64:
        return put(*static_cast<const double*>(address));
    case PlainType::int64:
        return put(static_cast<long long>(object_at<std::int64_t>(address)));
    case PlainType::uint64:
        return put(static_cast<unsigned long long>(object_at<std::uint64_t>(address)));
    case PlainType::string:
        return put_string(*static_cast<const std::string*>(address));
    default:
        return;
    }
}

void ObjectErrorLocator::put_plain(PlainType type, const void* elements, std::size_t count) {
    const auto* address = static_cast<const char*>(elements);
    for (std::size_t i = 0; i < count; ++i) {
        element(i);
        put_scalar(type, address);
        address += size_of(type);
    }
    end_array(count);
}

void ObjectErrorLocator::write_members(const TextTable& table, const void* object,
                                       const void* const* parts, const Start& start) {
    const MemberTable& members = *table.members;
    const MemberOrder order(members, in_utf16_);
    steps_.push_back({std::nullopt, 0});
    for (std::size_t i = 0; i < members.names.count; ++i) {
        const std::size_t number = in_utf16_ ? order[i] : members.names.sorted[i];
        const TextMemberEntry& entry = table.entries[number];
        const SinkMember member{
            *this, object, members.pointers[number],          members.required[number],
            start, number, const_cast<MemberTable*>(&members)};
        if (entry.type != PlainType::none) {
            begin_member(member);
            put_scalar(entry.type, parts[number]);
        } else {
            entry.write(member);
        }
    }
    steps_.pop_back();
}

/// @param count  how many steps lead to the location
std::string ObjectErrorLocator::pointer(std::size_t count) const {
    std::string result = pointer_;
    for (std::size_t i = 0; i != count; ++i) {
        if (steps_[i].name) {
            append_name_token(result, *steps_[i].name);
        } else {
            append_index_token(result, steps_[i].index);
        }
    }
    return result;
}

} // namespace

void throw_object_error(const std::string& pointer, const AnyObject& object, std::size_t depth,
                        const WriteOptions& options) {
    using Problems = ObjectErrorLocator::Problems;
    for (const Problems problems : {Problems::of_conversion, Problems::of_text}) {
        ObjectErrorLocator locator(problems, pointer, depth, options);
        object.write(locator, object.object);
    }
    throw WriteError(pointer, "the object changed while it was written");
}

} // namespace foundation::json::detail
