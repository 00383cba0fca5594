#include "parser/parser.hpp"

#include "parser/byte_block.hpp"

#include <boost/variant/get.hpp>

#include <cstring>
#include <tuple>
#include <utility>

namespace foundation::json::detail {

namespace {

template <class Content>
Content& content_of(Value& value) {
    return boost::strict_get<Content>(ValueAccess::variant(value));
}

} // namespace

// Where a value goes that has been read: among the elements of the innermost open array, into the
// innermost open object, or to whoever asked for all of it. An array or object goes there empty,
// and is opened.

class Parser::ElementSink {
public:
    explicit ElementSink(Parser& parser) noexcept : parser_(parser) {}

    template <class Content>
    void operator()(const Content& content) const {
        parser_.pending_.emplace_back(content);
    }

    void open_array() const { parser_.open(parser_.arrays_.emplace_back()); }
    void open_object() const { parser_.open(parser_.objects_.emplace_back()); }

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
    void open_object() const { parser_.open(content_of<Object>(insert(parser_.no_members_))); }

private:
    template <class Content>
    Value& insert(const Content& content) const {
        return parser_.insert(*parser_.open_.back().object, name_, content);
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
        parser_.open(content_of<Object>(root_));
    }

private:
    Parser& parser_;
    Value& root_;
};

// ---- Structure -------------------------------------------------------------------------------

void Parser::read(Value& root) {
    skip_space();
    read_value(RootSink(*this, root), Within::document, false);
    while (!open_.empty()) {
        if (open_.back().array != nullptr) {
            read_elements();
        } else {
            read_members();
        }
    }
    skip_space();
    if (place_ != end_) {
        errors_.after_value(place_);
    }
}

/// Reads on in the innermost open array, until it is closed or another container is opened.
void Parser::read_elements() {
    const std::size_t depth = open_.size();
    bool after_comma = false;
    if (!child_closed_) {
        skip_space();
        if (at(']')) {
            return close_array();
        }
    }
    for (;;) {
        if (!std::exchange(child_closed_, false)) {
            read_value(ElementSink(*this), Within::array, after_comma);
            if (open_.size() != depth) {
                return;
            }
        }
        skip_space();
        if (at(']')) {
            return close_array();
        }
        if (!at(',')) {
            errors_.no_separator(place_, Within::array);
        }
        after_comma = true;
        ++place_;
        skip_space();
        if (options_.trailing_commas && at(']')) {
            return close_array();
        }
    }
}

/// As read_elements(), of an object.
void Parser::read_members() {
    const std::size_t depth = open_.size();
    bool after_comma = false;
    if (!child_closed_) {
        skip_space();
        if (at('}')) {
            return close_object();
        }
    }
    for (;;) {
        if (!std::exchange(child_closed_, false)) {
            if (!at('"')) {
                errors_.no_name(place_, after_comma);
            }
            read_member();
            if (open_.size() != depth) {
                return;
            }
        }
        skip_space();
        if (at('}')) {
            return close_object();
        }
        if (!at(',')) {
            errors_.no_separator(place_, Within::object);
        }
        after_comma = true;
        ++place_;
        skip_space();
        if (options_.trailing_commas && at('}')) {
            return close_object();
        }
    }
}

void Parser::read_member() {
    const StringToken name = read_name();
    skip_space();
    if (!at(':')) {
        errors_.no_colon(place_);
    }
    ++place_;
    skip_space();
    read_value(MemberSink(*this, name), Within::object, false);
}

StringToken Parser::read_name() {
    const char* const begin = place_;
    const StringToken name = scan_string<Block>(begin + 1, end_);
    if (name.error != StringError::none) {
        errors_.bad_string(name);
    }
    place_ = name.end + 1;
    if (options_.duplicate_names == ParseOptions::DuplicateNames::error) {
        std::string decoded;
        decode(name, decoded);
        if (open_.back().object->count(decoded) != 0) {
            errors_.duplicate_name(begin, name);
        }
    }
    return name;
}

// ---- Values ----------------------------------------------------------------------------------

template <class Sink>
void Parser::read_value(Sink sink, Within within, bool after_comma) {
    if (place_ == end_) {
        errors_.no_value(place_, within, after_comma);
    }
    switch (*place_) {
    case '[':
        check_depth();
        ++place_;
        return sink.open_array();
    case '{':
        check_depth();
        ++place_;
        return sink.open_object();
    case '"': {
        const StringToken token = scan_string<Block>(place_ + 1, end_);
        if (token.error != StringError::none) {
            errors_.bad_string(token);
        }
        place_ = token.end + 1;
        return sink(token);
    }
    case 'n':
        return read_word("null", Null(), sink);
    case 't':
        return read_word("true", true, sink);
    case 'f':
        return read_word("false", false, sink);
    default:
        if (*place_ != '-' && !is_digit(*place_)) {
            errors_.no_value(place_, within, after_comma);
        }
        read_number(sink);
    }
}

template <class Sink, class Content>
void Parser::read_word(const char* word, Content content, Sink sink) {
    const char* place = place_;
    for (const char* letter = word; *letter != '\0'; ++letter, ++place) {
        if (place == end_ || *place != *letter) {
            errors_.bad_word(place_, place);
        }
    }
    if (place != end_ && is_word(*place)) {
        errors_.bad_word(place_, place);
    }
    place_ = place;
    sink(content);
}

template <class Sink>
void Parser::read_number(Sink sink) {
    const NumberToken token = scan_number(place_, end_);
    if (token.error != NO_PARSE_ERROR) {
        errors_.bad_number(token);
    }
    constexpr std::uint64_t exact = std::uint64_t{1} << 53;
    if (token.whole && token.magnitude.digits <= exact && token.magnitude.exponent == 0) {
        const auto number = static_cast<double>(static_cast<std::int64_t>(token.magnitude.digits));
        place_ = token.end;
        return sink(token.negative ? -number : number);
    }
    read_large_number(token, sink);
}

template <class Sink>
void Parser::read_large_number(const NumberToken& token, Sink sink) {
    const char* const begin = std::exchange(place_, token.end);
    if (token.whole && options_.integers == ParseOptions::Integers::exact) {
        constexpr std::uint64_t most_negative = std::uint64_t{1} << 63;
        std::uint64_t magnitude = 0;
        if (whole_number(begin + (token.negative ? 1 : 0), token.end, magnitude) &&
            !is_exact_double(magnitude)) {
            if (magnitude < most_negative) {
                const auto number = static_cast<long long>(magnitude);
                return sink(token.negative ? -number : number);
            }
            if (!token.negative) {
                return sink(static_cast<unsigned long long>(magnitude));
            }
        }
    }
    double number = 0;
    if (!number_value(begin, token, number)) {
        errors_.too_large(begin, token.end);
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

void Parser::check_depth() const {
    if (open_.size() >= options_.max_depth) {
        errors_.too_deep(place_);
    }
}

void Parser::open(Array& array) {
    open_.push_back({&array, nullptr, pending_.size()});
}

void Parser::open(Object& object) {
    open_.push_back({nullptr, &object, 0});
}

void Parser::close_array() {
    const Open closed = open_.back();
    closed.array->reserve(pending_.size() - closed.first_pending);
    take_pending(*closed.array, closed.first_pending);
    open_.pop_back();
    if (!open_.empty() && open_.back().array != nullptr) {
        pending_.emplace_back(closed.array);
    }
    child_closed_ = true;
    ++place_;
}

void Parser::close_object() {
    Object* const closed = open_.back().object;
    open_.pop_back();
    if (!open_.empty() && open_.back().array != nullptr) {
        pending_.emplace_back(closed);
    }
    child_closed_ = true;
    ++place_;
}

/// Makes elements of all that are pending from one on.
void Parser::take_pending(Array& array, std::size_t first) {
    const auto begin = pending_.begin() + static_cast<std::ptrdiff_t>(first);
    for (auto element = begin; element != pending_.end(); ++element) {
        take(array, *element);
    }
    for (auto element = begin; element != pending_.end(); ++element) {
        if (element->tag.kind() == PendingElement::Kind::array) {
            arrays_.pop_back();
        } else if (element->tag.kind() == PendingElement::Kind::object) {
            objects_.pop_back();
        }
    }
    pending_.erase(begin, pending_.end());
}

void Parser::take(Array& array, const PendingElement& element) {
    using Kind = PendingElement::Kind;
    switch (element.tag.kind()) {
    case Kind::null:
        array.emplace_back(Null());
        break;
    case Kind::boolean:
        array.emplace_back(element.boolean);
        break;
    case Kind::number:
        array.emplace_back(element.number);
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
        break;
    case Kind::object:
        content_of<Object>(array.emplace_back(no_members_)).swap(*element.object);
        break;
    }
}

// ---- Between values --------------------------------------------------------------------------

/// Goes over blanks and, where they are allowed, comments.
void Parser::skip_space() {
    for (;;) {
        if (place_ != end_ && is_blank(*place_)) {
            place_ = skip_blanks<Block>(place_ + 1, end_);
        }
        if (!options_.comments || !at('/')) {
            return;
        }
        const char* const begin = place_;
        skip_comment();
        if (place_ == begin) {
            return; // what follows is none
        }
    }
}

void Parser::skip_comment() {
    if (end_ - place_ < 2 || (place_[1] != '/' && place_[1] != '*')) {
        return;
    }
    const bool to_line_end = place_[1] == '/';
    for (place_ += 2;;) {
        if (place_ == end_) {
            if (to_line_end) {
                return;
            }
            errors_.bad_comment(place_);
        }
        if (to_line_end ? *place_ == '\n'
                        : *place_ == '*' && end_ - place_ >= 2 && place_[1] == '/') {
            place_ += to_line_end ? 1 : 2;
            return;
        }
        if (is_ascii(*place_)) {
            ++place_;
            continue;
        }
        const Utf8Sequence sequence = utf8_sequence(place_, end_);
        place_ += sequence.length;
        if (!sequence.complete) {
            errors_.bad_comment(place_);
        }
    }
}

} // namespace foundation::json::detail
