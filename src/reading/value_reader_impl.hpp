/// @file
/// The members of ValueReader, for the two sources that make them for one kind of input each. In
/// one source, compilers would inline less of both.
#ifndef FOUNDATION_JSON_SRC_READING_VALUE_READER_IMPL_HPP
#define FOUNDATION_JSON_SRC_READING_VALUE_READER_IMPL_HPP

#include "reading/value_reader.hpp"

#include "value/value_access.hpp"

#include <boost/variant/get.hpp>

#include <algorithm>
#include <tuple>
#include <utility>

namespace foundation::json::detail {

template <class Content>
Content& content_of(Value& value) {
    return boost::strict_get<Content>(ValueAccess::variant(value));
}

/// Makes room for more elements: exactly for these if the array is empty.
inline void reserve_more(Array& array, std::size_t count) {
    const std::size_t size = array.size() + count;
    if (size > array.capacity()) {
        array.reserve(array.empty() ? size : std::max(size, 2 * array.capacity()));
    }
}

/// Makes room for a length that was counted, if there is memory for it.
inline void reserve_if_possible(Array& array, std::size_t length) {
    try {
        array.reserve(length);
    } catch (...) {
        // The array grows as it is read.
    }
}

/// Up to so many bytes, a text and its value are in the processor's caches. Measured.
constexpr std::ptrdiff_t short_text = 65536;

template <class Input>
inline const char* ValueReader<Input>::base() const noexcept {
    if constexpr (Input::refills) {
        return cursor_.input().kept();
    } else {
        return cursor_.input().begin();
    }
}

template <class Input>
inline void ValueReader<Input>::add_pending(const PendingElement& element) {
    pending_.push(element);
    if (pending_.full()) {
        make_room();
    }
}

// Sinks take the values that have been read: an ElementSink for the innermost open array, a
// MemberSink for the innermost open object, a RootSink for the value itself. They take an array or
// object while it is empty, and open it.

template <class Input>
class ValueReader<Input>::ElementSink {
public:
    explicit ElementSink(ValueReader& reader) noexcept : reader_(reader) {}

    template <class Content>
    void operator()(const Content& content) const {
        reader_.add_pending(PendingElement(content));
    }

    void operator()(const StringToken& token) const {
        reader_.add_pending(PendingElement(token, reader_.base()));
    }

    void open_array(const char* at) const { reader_.open(reader_.arrays_.push(), at); }
    void open_object(const char* at) const { reader_.open(reader_.objects_.push(), at); }

private:
    ValueReader& reader_;
};

template <class Input>
class ValueReader<Input>::MemberSink {
public:
    MemberSink(ValueReader& reader, const StringToken& name) noexcept
        : reader_(reader), name_(name) {
        if constexpr (Input::refills) {
            offset_ = name.text - reader.base();
        }
    }

    template <class Content>
    void operator()(const Content& content) const {
        if (Value* const before = again()) {
            *before = Value(content);
        } else {
            insert(content);
        }
    }

    void operator()(const StringToken& token) const {
        if (Value* const before = again()) {
            decode(token, reader_.string_again(*before, token));
        } else {
            decode(token, content_of<std::string>(insert(reader_.no_text_)));
        }
    }

    void open_array(const char* at) const {
        if (Value* const before = again()) {
            reader_.open_array_again(*before, at);
        } else {
            reader_.open(content_of<Array>(insert(reader_.no_elements_)), at);
        }
    }

    void open_object(const char* at) const {
        if (Value* const before = again()) {
            reader_.open_object_again(*before, at);
        } else {
            reader_.open(content_of<Object>(insert(reader_.no_members_)), at);
        }
    }

private:
    /// The name, which may have moved while the value was read.
    decltype(auto) name() const noexcept {
        if constexpr (Input::refills) {
            StringToken name = name_;
            name.text = reader_.base() + offset_;
            name.end = name.text + name_.size();
            return name;
        } else {
            return (name_);
        }
    }

    /// The member with content from before, if there is some.
    Value* again() const {
        return reader_.open_.top().object == reader_.reused_ ? reader_.member_again(name())
                                                             : nullptr;
    }

    template <class Content>
    Value& insert(const Content& content) const {
        return reader_.insert(*reader_.open_.top().object, name(), content);
    }

    ValueReader& reader_;
    const StringToken& name_;
    std::ptrdiff_t offset_ = 0;
};

template <class Input>
class ValueReader<Input>::RootSink {
public:
    RootSink(ValueReader& reader, Value& root) noexcept : reader_(reader), root_(root) {}

    template <class Content>
    void operator()(const Content& content) const {
        root_ = Value(content);
    }

    void operator()(const StringToken& token) const {
        decode(token, reader_.string_again(root_, token));
    }

    void open_array(const char* at) const { reader_.open_array_again(root_, at); }
    void open_object(const char* at) const { reader_.open_object_again(root_, at); }

private:
    ValueReader& reader_;
    Value& root_;
};

// ---- Memory from before ----------------------------------------------------------------------

template <class Input>
const char* ValueReader<Input>::read_again(const char* at, Reuse& reuse) {
    reuse.restart();
    reuse_ = &reuse;
    reused_ = nullptr;
    return read(at, reuse.value);
}

/// @return null if there is no member with content from before
template <class Input>
[[gnu::noinline]] Value* ValueReader<Input>::member_again(const StringToken& name) {
    decode(name, reuse_->name());
    return reuse_->member_for(*open_.top().object);
}

template <class Input>
[[gnu::noinline]] std::string& ValueReader<Input>::string_again(Value& before,
                                                                const StringToken& token) {
    if (!holds<std::string>(before)) {
        before = Value(no_text_);
    }
    auto& text = content_of<std::string>(before);
    if (text.capacity() > std::max(Reuse::most_characters, 2 * token.size())) {
        std::string().swap(text); // assignment would keep the room
    }
    return text;
}

template <class Input>
[[gnu::noinline]] void ValueReader<Input>::open_array_again(Value& before, const char* at) {
    if (holds<Array>(before) && content_of<Array>(before).capacity() <= Reuse::most_elements) {
        content_of<Array>(before).clear();
    } else {
        before = Value(no_elements_);
    }
    open(content_of<Array>(before), at);
}

template <class Input>
[[gnu::noinline]] void ValueReader<Input>::open_object_again(Value& before, const char* at) {
    if (!holds<Object>(before)) {
        before = Value(no_members_);
        open(content_of<Object>(before), at);
        return;
    }
    auto& object = content_of<Object>(before);
    open(object, at);
    reuse_->open(object);
    reused_ = &object;
}

/// Closes an object from before, which is the value itself or a member of another such object.
template <class Input>
[[gnu::noinline]] void ValueReader<Input>::close_reused(const char* end) {
    reuse_->close();
    close(end, PendingElement(open_.top().object));
    reused_ = open_.empty() ? nullptr : open_.top().object;
}

// ---- Structure -------------------------------------------------------------------------------

template <class Input>
const char* ValueReader<Input>::read(const char* at, Value& root) {
    if (cursor_.end() - at > short_text) {
        // An allocation of this size lets the C library join the memory that was freed before.
        // Taken piece by piece, from wherever it is, it would make a large value slow to read and
        // destroy.
        pending_.grow();
    }
    child_closed_ = false;
    const RootSink sink(*this, root);
    at = cursor_.is_opening(at) ? open_container(at, sink) : read_scalar(at, sink, false);
    while (!open_.empty()) {
        at = open_.top().is_array() ? read_elements(at) : read_members(at);
    }
    return at;
}

/// Reads elements of the innermost open array, until it ends or another container begins.
template <class Input>
const char* ValueReader<Input>::read_elements(const char* at) {
    const auto opening_of = [this] { return opening(); };
    bool after_comma = std::exchange(child_closed_, false);
    bool more = after_comma ? cursor_.find_next(at, ']', opening_of) : cursor_.find_first(at, ']');
    while (more) {
        element_ = at;
        if (at != cursor_.end() && begins_number(*at)) {
            at = read_number(at, ElementSink(*this));
        } else if (cursor_.is_opening(at)) {
            return open_container(at, ElementSink(*this));
        } else {
            at = read_scalar(at, ElementSink(*this), after_comma);
        }
        more = cursor_.find_next(at, ']', opening_of);
        after_comma = true;
    }
    close_array(at);
    return at + 1;
}

/// As read_elements(), for the members of the innermost open object.
template <class Input>
const char* ValueReader<Input>::read_members(const char* at) {
    const auto opening_of = [this] { return opening(); };
    bool after_comma = std::exchange(child_closed_, false);
    bool more = after_comma ? cursor_.find_next(at, '}', opening_of) : cursor_.find_first(at, '}');
    while (more) {
        const StringToken name = cursor_.name(at, opening_of, after_comma);
        if (cursor_.options().duplicate_names == ParseOptions::DuplicateNames::error) {
            check_duplicate(name);
        }
        const MemberSink sink(*this, name);
        at = cursor_.skip_space(cursor_.colon(cursor_.skip_space(name.end + 1), opening_of));
        if (cursor_.is_opening(at)) {
            return open_container(at, sink);
        }
        at = read_scalar(at, sink, false);
        more = cursor_.find_next(at, '}', opening_of);
        after_comma = true;
    }
    close_object(at);
    return at + 1;
}

template <class Input>
[[gnu::noinline]] void ValueReader<Input>::check_duplicate(const StringToken& name) {
    std::string decoded;
    decode(name, decoded);
    if (open_.top().object->count(decoded) != 0) {
        cursor_.fail_duplicate(name);
    }
}

// ---- Values ----------------------------------------------------------------------------------

template <class Input>
template <class Sink>
const char* ValueReader<Input>::open_container(const char* at, const Sink& sink) {
    const char* const behind = cursor_.open(at, depth_ + open_.size());
    if (*at == '[') {
        sink.open_array(at);
    } else {
        sink.open_object(at);
    }
    return behind;
}

/// Reads a value that is neither array nor object; throws if there is none.
template <class Input>
template <class Sink>
const char* ValueReader<Input>::read_scalar(const char* at, const Sink& sink, bool after_comma) {
    switch (at != cursor_.end() ? *at : '\0') {
    case '"': {
        const StringToken token = cursor_.string(at);
        sink(token);
        return token.end + 1;
    }
    case 'n':
        at = cursor_.word(at, "null");
        sink(Null());
        return at;
    case 't':
        at = cursor_.word(at, "true");
        sink(true);
        return at;
    case 'f':
        at = cursor_.word(at, "false");
        sink(false);
        return at;
    default:
        if (at == cursor_.end() || !begins_number(*at)) {
            cursor_.fail_without_value(
                at, [this] { return opening(); }, after_comma);
        }
        return read_number(at, sink);
    }
}

template <class Input>
template <class Sink>
inline const char* ValueReader<Input>::read_number(const char* at, const Sink& sink) {
    double number = 0;
    const char* const end = cursor_.usual_number(at, number);
    if (end == nullptr) {
        return read_any_number(at, sink);
    }
    sink(number);
    return end;
}

template <class Input>
template <class Sink>
[[gnu::noinline]] const char* ValueReader<Input>::read_any_number(const char* at,
                                                                  const Sink& sink) {
    const NumberToken token = cursor_.number(at);
    const bool exact = cursor_.options().integers == ParseOptions::Integers::exact;
    switch (const NumberContent content = content_of_number(at, token, exact); content.type) {
    case NumberContent::Type::too_large:
        cursor_.fail_too_large(at, token.end);
    case NumberContent::Type::int64:
        sink(content.int64);
        break;
    case NumberContent::Type::uint64:
        sink(content.uint64);
        break;
    default:
        sink(content.number);
        break;
    }
    return token.end;
}

template <class Input>
template <class Content>
Value& ValueReader<Input>::insert(Object& members, const StringToken& name,
                                  const Content& content) {
    const std::size_t size = members.size();
    Object::iterator member;
    if (name.escaped) {
        std::string decoded;
        decode(name, decoded);
        member = members.emplace_hint(members.end(), std::move(decoded), content);
    } else {
        member = members.emplace_hint(members.end(), std::piecewise_construct,
                                      std::forward_as_tuple(name.text, name.size()),
                                      std::forward_as_tuple(content));
    }
    if (members.size() == size) {
        member->second = Value(content);
    }
    return member->second;
}

// ---- Containers ------------------------------------------------------------------------------

template <class Input>
inline void ValueReader<Input>::push(const Open& container) {
    if (open_.full()) {
        open_.grow();
    }
    open_.push(container);
}

template <class Input>
void ValueReader<Input>::open(Array& array, const char* at) {
    push({{&array}, pending_.size(), static_cast<std::size_t>(at - base())});
}

template <class Input>
void ValueReader<Input>::open(Object& object, const char* at) {
    Open container{{nullptr}, Open::no_array, static_cast<std::size_t>(at - base())};
    container.object = &object;
    push(container);
}

template <class Input>
void ValueReader<Input>::close_array(const char* end) {
    Array& array = *open_.top().array;
    take_pending(array, open_.top().first_pending);
    close(end, PendingElement(&array));
}

template <class Input>
void ValueReader<Input>::close_object(const char* end) {
    if (open_.top().object == reused_) {
        close_reused(end);
        return;
    }
    close(end, PendingElement(open_.top().object));
}

/// @param closed  the innermost open container, for the array that it may be an element of
template <class Input>
void ValueReader<Input>::close(const char* end, const PendingElement& closed) {
    open_.pop();
    child_closed_ = true;
    if (!open_.empty() && open_.top().is_array()) {
        element_ = end + 1;
        add_pending(closed);
        // add_pending() hardly ever finds the stack full here, since the elements of the closed
        // container have just left it.
        if (pending_.size() - open_.top().first_pending >= ArrayLengths::least) {
            make_room();
        }
    }
}

/// The opening bracket of the innermost open container.
template <class Input>
[[gnu::noinline]] Opening ValueReader<Input>::opening() const {
    if (open_.empty()) {
        return {};
    }
    const char* const at = base() + open_.top().opening;
    return {*at, cursor_.input().context().position_of(at)};
}

// ---- Elements --------------------------------------------------------------------------------

/// Moves the pending elements of the innermost open array into it, if there are many. Otherwise
/// makes room for one more pending element.
template <class Input>
[[gnu::noinline]] void ValueReader<Input>::make_room() {
    const std::size_t count = pending_.size() - open_.top().first_pending;
    if (Input::refills || count < ArrayLengths::least || count < pending_.size() / 2) {
        if (pending_.full()) {
            pending_.grow();
        }
        return;
    }
    Array& array = *open_.top().array;
    if (array.capacity() == 0) {
        reserve_if_possible(
            array, lengths_.length(element_, cursor_.end(), count - 1, depth_ + open_.size()));
    }
    take_pending(array, open_.top().first_pending);
}

/// Moves the pending elements from index `first` on into an array.
template <class Input>
void ValueReader<Input>::take_pending(Array& array, std::size_t first) {
    using Type = PendingElement::Type;
    const PendingElement* element = pending_.begin() + first;
    const PendingElement* const end = pending_.end();
    reserve_more(array, static_cast<std::size_t>(end - element));
    for (; element != end; ++element) {
        if (element->tag.type() == Type::number) {
            array.emplace_back(element->number);
        } else {
            take(array, *element);
        }
    }
    pending_.shrink(first);
    pending_.release();
    arrays_.release();
    objects_.release();
}

/// Moves one pending element that is no double into an array.
template <class Input>
void ValueReader<Input>::take(Array& array, const PendingElement& element) {
    using Type = PendingElement::Type;
    switch (element.tag.type()) {
    case Type::null:
        array.emplace_back(Null());
        break;
    case Type::boolean:
        array.emplace_back(element.boolean);
        break;
    case Type::int64:
        array.emplace_back(element.int64);
        break;
    case Type::uint64:
        array.emplace_back(element.uint64);
        break;
    case Type::string:
    case Type::escaped_string:
        decode(element.token(base()), content_of<std::string>(array.emplace_back(no_text_)));
        break;
    case Type::array:
        content_of<Array>(array.emplace_back(no_elements_)).swap(*element.array);
        arrays_.pop();
        break;
    default:
        content_of<Object>(array.emplace_back(no_members_)).swap(*element.object);
        objects_.pop();
        break;
    }
}

} // namespace foundation::json::detail

#endif
