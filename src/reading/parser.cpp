#include "reading/parser.hpp"

#include "text/byte_block.hpp"

#include <boost/variant/get.hpp>

#include <algorithm>
#include <tuple>
#include <utility>

namespace foundation::json::detail {

namespace {

template <class Content>
Content& content_of(Value& value) {
    return boost::strict_get<Content>(ValueAccess::variant(value));
}

/// Makes room for more elements: exactly for these if the array is empty.
void reserve_more(Array& array, std::size_t count) {
    const std::size_t size = array.size() + count;
    if (size > array.capacity()) {
        array.reserve(array.empty() ? size : std::max(size, 2 * array.capacity()));
    }
}

/// Makes room for a length that was counted, if there is memory for it. The length may be any
/// number where the text turns out to be no array.
void reserve_if_possible(Array& array, std::size_t length) {
    try {
        array.reserve(length);
    } catch (...) {
        // The array grows as it is read.
    }
}

/// Up to so many bytes, a text and its value are in the processor's caches. Measured.
constexpr std::ptrdiff_t short_text = 65536;

/// A double holds each whole number up to this exactly.
constexpr std::uint64_t largest_exact = std::uint64_t{1} << 53;

} // namespace

inline void Parser::add_pending(const PendingElement& element) {
    pending_.push(element);
    if (pending_.full()) {
        make_room();
    }
}

// Sinks take the values that have been read: an ElementSink for the innermost open array, a
// MemberSink for the innermost open object, a RootSink for the value of the whole text. They take
// an array or object while it is empty, and open it.

class Parser::ElementSink {
public:
    explicit ElementSink(Parser& parser) noexcept : parser_(parser) {}

    template <class Content>
    void operator()(const Content& content) const {
        parser_.add_pending(PendingElement(content));
    }

    void open_array() const { parser_.open(parser_.arrays_.push()); }
    void open_object() const { parser_.open_.open(parser_.objects_.push()); }

private:
    Parser& parser_;
};

class Parser::MemberSink {
public:
    MemberSink(Parser& parser, const StringToken& name) noexcept : parser_(parser), name_(name) {}

    template <class Content>
    void operator()(const Content& content) const {
        insert(content);
    }

    void operator()(const StringToken& token) const {
        decode(token, content_of<std::string>(insert(parser_.no_text_)));
    }

    void open_array() const { parser_.open(content_of<Array>(insert(parser_.no_elements_))); }

    void open_object() const {
        parser_.open_.open(content_of<Object>(insert(parser_.no_members_)));
    }

private:
    template <class Content>
    Value& insert(const Content& content) const {
        return parser_.insert(parser_.open_.object(), name_, content);
    }

    Parser& parser_;
    const StringToken& name_;
};

class Parser::RootSink {
public:
    RootSink(Parser& parser, Value& root) noexcept : parser_(parser), root_(root) {}

    template <class Content>
    void operator()(const Content& content) const {
        root_ = Value(content);
    }

    void operator()(const StringToken& token) const {
        root_ = Value(parser_.no_text_);
        decode(token, content_of<std::string>(root_));
    }

    void open_array() const {
        root_ = Value(parser_.no_elements_);
        parser_.open(content_of<Array>(root_));
    }

    void open_object() const {
        root_ = Value(parser_.no_members_);
        parser_.open_.open(content_of<Object>(root_));
    }

private:
    Parser& parser_;
    Value& root_;
};

/// Skips blanks and, where they are allowed, comments.
inline const char* Parser::skip_space(const char* place) const {
    const auto is_token = [](char byte) {
        return static_cast<unsigned char>(byte) > ' ' && byte != '/';
    };
    if (end_ - place >= 2) {
        if (is_token(*place)) {
            return place;
        }
        if (*place == ' ' && is_token(place[1])) {
            return place + 1;
        }
    }
    return skip_long_space(place);
}

// ---- Structure -------------------------------------------------------------------------------

/// Skips to the first element or name of a container. @return false if the container ends instead
inline bool Parser::find_first(const char*& place, char close) const {
    place = skip_space(place);
    return !is_at(place, close);
}

/// Skips to the next element or name of a container. @return false if the container ends instead
[[gnu::always_inline]] inline bool Parser::find_next(const char*& place, char close) const {
    place = skip_space(place);
    if (is_at(place, ',')) {
        place = skip_space(place + 1);
        return !options_.trailing_commas || !is_at(place, close);
    }
    if (!is_at(place, close)) {
        errors_.no_separator(place, opening(place));
    }
    return false;
}

void Parser::read(Value& root) {
    if (end_ - begin_ > short_text) {
        // An allocation of this size lets the C library join the memory that was freed before.
        // Taken piece by piece, from wherever it is, it would make a large value slow to read and
        // destroy.
        pending_.grow();
    }
    const char* place = skip_space(begin_);
    const RootSink sink(*this, root);
    place = is_opening(place) ? open_container(place, sink) : read_scalar(place, sink, false);
    while (!open_.empty()) {
        place = open_.is_array() ? read_elements(place) : read_members(place);
    }
    const char* const value_end = place;
    place = skip_space(place);
    if (place != end_) {
        errors_.after_value(place, value_end);
    }
}

/// Reads elements of the innermost open array, until it ends or another container begins.
const char* Parser::read_elements(const char* place) {
    bool after_comma = std::exchange(child_closed_, false);
    bool more = after_comma ? find_next(place, ']') : find_first(place, ']');
    while (more) {
        element_ = place;
        if (place != end_ && begins_number(*place)) {
            place = read_number(place, ElementSink(*this));
        } else if (is_opening(place)) {
            return open_container(place, ElementSink(*this));
        } else {
            place = read_scalar(place, ElementSink(*this), after_comma);
        }
        more = find_next(place, ']');
        after_comma = true;
    }
    close_array(place);
    return place + 1;
}

/// As read_elements(), for the members of the innermost open object.
const char* Parser::read_members(const char* place) {
    bool after_comma = std::exchange(child_closed_, false);
    bool more = after_comma ? find_next(place, '}') : find_first(place, '}');
    while (more) {
        if (!is_at(place, '"')) {
            errors_.no_name(place, opening(place), after_comma);
        }
        const StringToken name = read_name(place);
        place = skip_space(name.end + 1);
        if (!is_at(place, ':')) {
            errors_.no_colon(place, opening(place));
        }
        place = skip_space(place + 1);
        if (is_opening(place)) {
            return open_container(place, MemberSink(*this, name));
        }
        place = read_scalar(place, MemberSink(*this, name), false);
        more = find_next(place, '}');
        after_comma = true;
    }
    close_object(place);
    return place + 1;
}

StringToken Parser::read_name(const char* place) {
    const StringToken name = scan_string<Block>(place + 1, end_);
    if (name.error != StringError::none) {
        errors_.bad_string(name);
    }
    if (options_.duplicate_names == ParseOptions::DuplicateNames::error) {
        std::string decoded;
        decode(name, decoded);
        if (open_.object().count(decoded) != 0) {
            errors_.duplicate_name(place, name);
        }
    }
    return name;
}

// ---- Values ----------------------------------------------------------------------------------

template <class Sink>
const char* Parser::open_container(const char* place, const Sink& sink) {
    if (open_.depth() >= options_.max_depth) {
        errors_.too_deep(place);
    }
    if (*place == '[') {
        sink.open_array();
    } else {
        sink.open_object();
    }
    return place + 1;
}

/// Reads a value that is neither array nor object; throws if there is none.
template <class Sink>
const char* Parser::read_scalar(const char* place, const Sink& sink, bool after_comma) {
    if (place == end_) {
        errors_.no_value(place, opening(place), after_comma);
    }
    switch (*place) {
    case '"': {
        const StringToken token = scan_string<Block>(place + 1, end_);
        if (token.error != StringError::none) {
            errors_.bad_string(token);
        }
        sink(token);
        return token.end + 1;
    }
    case 'n':
        return read_word(place, "null", Null(), sink);
    case 't':
        return read_word(place, "true", true, sink);
    case 'f':
        return read_word(place, "false", false, sink);
    default:
        if (!begins_number(*place)) {
            errors_.no_value(place, opening(place), after_comma);
        }
        return read_number(place, sink);
    }
}

template <std::size_t Size, class Content, class Sink>
const char* Parser::read_word(const char* begin, const char (&word)[Size], Content content,
                              const Sink& sink) {
    const char* place = begin;
    for (std::size_t i = 0; i != Size - 1; ++i, ++place) {
        if (!is_at(place, word[i])) {
            errors_.bad_word(begin, place);
        }
    }
    if (place != end_ && continues_word(*place)) {
        errors_.bad_word(begin, place);
    }
    sink(content);
    return place;
}

/// Reads a number of the most frequent form.
/// @return null if it has many digits or an exponent, or lies near the end of the text
template <class Sink>
[[gnu::always_inline]] inline const char* Parser::read_usual_number(const char* place,
                                                                    const Sink& sink) {
    const bool negative = *place == '-';
    if (end_ - place <= usual_number_room) {
        return nullptr;
    }
    const UsualNumber token = scan_usual_number(place + (negative ? 1 : 0));
    if (token.end == nullptr) {
        return nullptr;
    }
    double number = 0;
    if (token.exponent == 0 || token.digits == 0) {
        if (token.digits > largest_exact) {
            return nullptr;
        }
        number = static_cast<double>(static_cast<std::int64_t>(token.digits));
    } else if (nearest_normal(token.digits, token.exponent, number) != Rounding::decided) {
        return nullptr;
    }
    sink(negative ? -number : number);
    return token.end;
}

template <class Sink>
inline const char* Parser::read_number(const char* place, const Sink& sink) {
    const char* const end = read_usual_number(place, sink);
    return end != nullptr ? end : read_any_number(place, sink);
}

template <class Sink>
[[gnu::noinline]] const char* Parser::read_any_number(const char* place, const Sink& sink) {
    const NumberToken token = scan_number(place, end_);
    if (token.error != NO_PARSE_ERROR) {
        errors_.bad_number(token);
    }
    double number = 0;
    if (token.whole && token.magnitude.digits <= largest_exact) { // these are all its digits
        number = static_cast<double>(static_cast<std::int64_t>(token.magnitude.digits));
        number = token.negative ? -number : number;
    } else if (token.whole && options_.integers == ParseOptions::Integers::exact) {
        take_large_integer(place, token, sink);
        return token.end;
    } else if (!number_value(place, token, number)) {
        errors_.too_large(place, token.end);
    }
    sink(number);
    return token.end;
}

template <class Sink>
void Parser::take_large_integer(const char* place, const NumberToken& token, const Sink& sink) {
    constexpr std::uint64_t most_negative = std::uint64_t{1} << 63;
    const auto magnitude = whole_number(place + (token.negative ? 1 : 0), token.end);
    if (magnitude && !is_exact_double(*magnitude)) {
        if (*magnitude < most_negative) {
            const auto number = static_cast<long long>(*magnitude);
            return sink(token.negative ? -number : number);
        }
        if (!token.negative) {
            return sink(static_cast<unsigned long long>(*magnitude));
        }
    }
    double number = 0;
    if (!number_value(place, token, number)) {
        errors_.too_large(place, token.end);
    }
    sink(number);
}

template <class Content>
Value& Parser::insert(Object& members, const StringToken& name, const Content& content) {
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

void Parser::open(Array& array) {
    open_.open(array, pending_.size());
}

void Parser::close_array(const char* end) {
    Array& array = open_.array();
    take_pending(array, open_.first_pending());
    close(end, PendingElement(&array));
}

void Parser::close_object(const char* end) {
    close(end, PendingElement(&open_.object()));
}

/// @param closed  the innermost open container, for the array that it may be an element of
void Parser::close(const char* end, const PendingElement& closed) {
    open_.close();
    child_closed_ = true;
    if (!open_.empty() && open_.is_array()) {
        element_ = end + 1;
        add_pending(closed);
        // add_pending() hardly ever finds the stack full here, since the elements of the closed
        // container have just left it.
        if (pending_.size() - open_.first_pending() >= ArrayLengths::least) {
            make_room();
        }
    }
}

/// Finds the opening bracket of the innermost open container. Only errors ask for it: the
/// containers do not keep it, which would take a word for each.
/// @param place  behind what has been read
/// @return null if no container is open
[[gnu::noinline]] const char* Parser::opening(const char* place) const {
    const char* result = nullptr;
    std::size_t depth = 0;
    for (const char* at = skip_space(begin_); at < place; at = skip_space(at)) {
        switch (*at) {
        case '[':
        case '{':
            ++depth;
            result = depth == open_.depth() ? at : result;
            ++at;
            break;
        case ']':
        case '}':
            --depth;
            ++at;
            break;
        case '"':
            at = scan_string<Block>(at + 1, end_).end + 1;
            break;
        default:
            ++at;
            break;
        }
    }
    return result;
}

// ---- Elements --------------------------------------------------------------------------------

/// Moves the pending elements of the innermost open array into it, if there are many. Otherwise
/// makes room for one more pending element.
[[gnu::noinline]] void Parser::make_room() {
    const std::size_t count = pending_.size() - open_.first_pending();
    if (count < ArrayLengths::least || count < pending_.size() / 2) {
        if (pending_.full()) {
            pending_.grow();
        }
        return;
    }
    Array& array = open_.array();
    if (array.capacity() == 0) {
        reserve_if_possible(array, lengths_.length(element_, count - 1));
    }
    take_pending(array, open_.first_pending());
}

/// Moves the pending elements from index `first` on into an array.
void Parser::take_pending(Array& array, std::size_t first) {
    using Kind = PendingElement::Kind;
    const PendingElement* element = pending_.begin() + first;
    const PendingElement* const end = pending_.end();
    reserve_more(array, static_cast<std::size_t>(end - element));
    for (; element != end; ++element) {
        if (element->tag.kind() == Kind::number) {
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
void Parser::take(Array& array, const PendingElement& element) {
    using Kind = PendingElement::Kind;
    switch (element.tag.kind()) {
    case Kind::null:
        array.emplace_back(Null());
        break;
    case Kind::boolean:
        array.emplace_back(element.boolean);
        break;
    case Kind::int64:
        array.emplace_back(element.int64);
        break;
    case Kind::uint64:
        array.emplace_back(element.uint64);
        break;
    case Kind::string:
    case Kind::escaped_string: {
        const StringToken token{element.text, element.text + element.tag.size(), StringError::none,
                                element.tag.kind() == Kind::escaped_string};
        decode(token, content_of<std::string>(array.emplace_back(no_text_)));
        break;
    }
    case Kind::array:
        content_of<Array>(array.emplace_back(no_elements_)).swap(*element.array);
        arrays_.pop();
        break;
    default:
        content_of<Object>(array.emplace_back(no_members_)).swap(*element.object);
        objects_.pop();
        break;
    }
}

// ---- Between values --------------------------------------------------------------------------

const char* Parser::skip_long_space(const char* place) const {
    for (;;) {
        place = skip_blanks<Block>(place, end_);
        if (!options_.comments || !is_at(place, '/')) {
            return place;
        }
        const char* const begin = place;
        place = skip_comment(place);
        if (place == begin) {
            return place;
        }
    }
}

/// @return the same place if no comment begins there
const char* Parser::skip_comment(const char* place) const {
    if (end_ - place < 2 || (place[1] != '/' && place[1] != '*')) {
        return place;
    }
    const char* const begin = place;
    const bool to_line_end = place[1] == '/';
    for (place += 2; place != end_;) {
        if (to_line_end && *place == '\n') {
            return place + 1;
        }
        if (!to_line_end && *place == '*' && is_at(place + 1, '/')) {
            return place + 2;
        }
        const Utf8Sequence sequence =
            is_ascii(*place) ? Utf8Sequence{1, true} : utf8_sequence(place, end_);
        place += sequence.length;
        if (!sequence.complete) {
            errors_.bad_comment(place, begin);
        }
    }
    if (!to_line_end) {
        errors_.bad_comment(place, begin);
    }
    return place;
}

} // namespace foundation::json::detail
