#include "serialization/object_value.hpp"

#include "serialization/object_text.hpp"
#include "text/location.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/detail/location.hpp>
#include <foundation/json/detail/member_arrays.hpp>

#include <string>
#include <utility>
#include <vector>

namespace foundation::json::detail {

namespace {

/// Collects what is written.
class ValueCollector final : public TextSink {
public:
    explicit ValueCollector(Value& root) noexcept : next_(&root) {}

    void put_null() override { *next_ = Value(Null()); }
    void put(bool flag) override { *next_ = Value(flag); }
    void put(const float& number) override { *next_ = Value(number); }
    void put(const double& number) override { *next_ = Value(number); }
    void put(long long number) override { *next_ = Value(number); }
    void put(unsigned long long number) override { *next_ = Value(number); }
    void put_string(std::string_view text) override { *next_ = Value(std::string(text)); }
    void put_value(const Value& value) override { *next_ = value; }
    void put_array(const std::vector<Value>& elements) override { *next_ = Value(elements); }
    void put_object(const std::map<std::string, Value>& members) override {
        *next_ = Value(members);
    }

    void element(std::size_t index) override;
    void end_array(std::size_t count) override { end(count, Array()); }
    void put_plain(PlainType type, const void* elements, std::size_t count) override;

    void member(std::size_t index, std::string_view name) override;
    void end_object(std::size_t count) override { end(count, Object()); }
    bool sorts(MapOrder) override { return false; }
    void sort_names(NamedPart*, std::size_t) override {}

    void write_members(const TextTable& table, const void* object, const void* const* parts,
                       const Start& start) override;
    void begin_member(const SinkMember& written) override {
        go_to_member(static_cast<const MemberTable*>(written.place)->names.names[written.number]);
    }
    void put_member(const SinkMember& written, PlainType type, const void* address) override {
        begin_member(written);
        put_plain_object(type, address);
    }

    void put_tagged_object(std::string_view name, std::string_view tag,
                           const AnyObject& object) override;

    [[noreturn]] void fail_enumerator(const std::string& number, const NameTable& names) override {
        const std::string at = pointer();
        detail::fail_enumerator(Location(at), number, names);
    }
    [[noreturn]] void fail_current() override {
        const std::string at = pointer();
        detail::fail_current(Location(at));
    }

private:
    /// An array or object that has got a part already.
    struct Open {
        Value* value;
        std::string name;
    };

    template <class Content>
    void begin(Content content) {
        *next_ = Value(std::move(content));
        open_.push_back({next_, {}});
    }
    template <class Content>
    void end(std::size_t count, Content nothing) {
        if (count == 0) {
            *next_ = Value(std::move(nothing));
        } else {
            open_.pop_back();
        }
    }
    void go_to_member(std::string_view name) {
        open_.back().name = name;
        next_ = &get<Object>(*open_.back().value)[open_.back().name];
    }
    template <class T>
    const T& plain(const void* address) noexcept {
        return *static_cast<const T*>(address);
    }
    void put_plain_object(PlainType type, const void* address);
    std::string pointer() const;

    Value* next_; ///< where the next value goes
    std::vector<Open> open_;
};

void ValueCollector::element(std::size_t index) {
    if (index == 0) {
        begin(Array());
    }
    auto& elements = get<Array>(*open_.back().value);
    elements.emplace_back();
    next_ = &elements.back();
}

void ValueCollector::member(std::size_t index, std::string_view name) {
    if (index == 0) {
        begin(Object());
    }
    go_to_member(name);
}

void ValueCollector::put_plain_object(PlainType type, const void* address) {
    switch (type) {
    case PlainType::boolean:
        return put(object_at<bool>(address));
    case PlainType::float32:
        return put(plain<float>(address));
    case PlainType::float64:
        return put(plain<double>(address));
    case PlainType::int8:
        return put(static_cast<long long>(object_at<std::int8_t>(address)));
    case PlainType::int16:
        return put(static_cast<long long>(object_at<std::int16_t>(address)));
    case PlainType::int32:
        return put(static_cast<long long>(object_at<std::int32_t>(address)));
    case PlainType::int64:
        return put(static_cast<long long>(object_at<std::int64_t>(address)));
    case PlainType::uint8:
        return put(static_cast<unsigned long long>(object_at<std::uint8_t>(address)));
    case PlainType::uint16:
        return put(static_cast<unsigned long long>(object_at<std::uint16_t>(address)));
    case PlainType::uint32:
        return put(static_cast<unsigned long long>(object_at<std::uint32_t>(address)));
    case PlainType::uint64:
        return put(static_cast<unsigned long long>(object_at<std::uint64_t>(address)));
    case PlainType::string:
        return put_string(plain<std::string>(address));
    case PlainType::none:
        return put_null();
    }
}

void ValueCollector::put_plain(PlainType type, const void* elements, std::size_t count) {
    const auto* address = static_cast<const char*>(elements);
    for (std::size_t i = 0; i < count; ++i) {
        element(i);
        put_plain_object(type, address);
        address += size_of(type);
    }
    end_array(count);
}

void ValueCollector::write_members(const TextTable& table, const void* object,
                                   const void* const* parts, const Start& start) {
    const MemberTable& members = *table.members;
    begin(Object());
    for (std::size_t number = 0; number < members.names.count; ++number) {
        const TextMemberEntry& entry = table.entries[number];
        const SinkMember written{
            *this, object, members.pointers[number],          members.required[number],
            start, number, const_cast<MemberTable*>(&members)};
        if (entry.type != PlainType::none) {
            put_member(written, entry.type, parts[number]);
        } else {
            entry.write(written);
        }
    }
    open_.pop_back();
}

void ValueCollector::put_tagged_object(std::string_view name, std::string_view tag,
                                       const AnyObject& object) {
    try {
        *next_ = tagged_value(name, tag, object);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        fail_current();
    }
}

/// Where the next value goes.
std::string ValueCollector::pointer() const {
    std::string result;
    for (const Open& open : open_) {
        if (const auto* const elements = get_if<Array>(open.value)) {
            append_index_token(result, elements->size() - 1);
        } else {
            append_name_token(result, open.name);
        }
    }
    return result;
}

} // namespace

Value tagged_value(std::string_view member, std::string_view tag, const AnyObject& object) {
    Value result;
    ValueCollector collector(result);
    object.write(collector, object.object);
    get<Object>(result)[std::string(member)] = Value(std::string(tag));
    return result;
}

} // namespace foundation::json::detail
