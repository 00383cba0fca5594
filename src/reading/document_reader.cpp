#include "reading/document_reader.hpp"

#include "access/find_name.hpp"
#include "reading/bit_stack.hpp"
#include "reading/value_reader.hpp"
#include "reading/value_walker.hpp"
#include "system/compiler.hpp"
#include "text/byte_block.hpp"
#include "text/utf8_validation.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

namespace foundation::json::detail {

namespace {

/// A line feed and the indentation of the next line.
constexpr struct Indentation {
    static constexpr std::size_t longest = 2 * Block::size;
    char bytes[longest];
} indentation{{'\n', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ',
               ' ',  ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '}};

/// Which members of a class an object has had: at most 64.
class FewSeen {
public:
    explicit FewSeen(std::size_t) noexcept {}

    /// @return whether it has not been there before
    bool add(std::uint32_t number) noexcept {
        const std::uint64_t bit = std::uint64_t{1} << number;
        const bool is_new = (bits_ & bit) == 0;
        bits_ |= bit;
        return is_new;
    }
    /// The first ones of a class, of which it has had none before.
    void add_first(std::size_t count) noexcept {
        bits_ = count == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
    }
    bool has(std::size_t number) const noexcept { return (bits_ >> number & 1) != 0; }
    bool has_required(const TextMembers& members) const noexcept {
        return (bits_ & members.required) == members.required;
    }

private:
    std::uint64_t bits_ = 0;
};

/// The same for any number of members.
class ManySeen {
public:
    explicit ManySeen(std::size_t count) : seen_(count) {}

    bool add(std::uint32_t number) {
        const bool is_new = !seen_[number];
        seen_[number] = true;
        return is_new;
    }
    void add_first(std::size_t count) {
        std::fill_n(seen_.begin(), static_cast<std::ptrdiff_t>(count), true);
    }
    bool has(std::size_t number) const { return seen_[number]; }
    bool has_required(const TextMembers& members) const {
        for (std::size_t i = 0; i != seen_.size(); ++i) {
            if (members.members[i].is_required != 0 && !seen_[i]) {
                return false;
            }
        }
        return true;
    }

private:
    std::vector<bool> seen_;
};

/// Reads a whole number without a sign, of up to 18 digits.
/// @return null for any other number
[[gnu::always_inline]] inline const char* scan_few_whole(const char* from,
                                                         std::uint64_t& number) noexcept {
    const Block values = Block(from).digit_values();
    const auto others = values.not_digit_values();
    std::size_t count = Block::size;
    if (likely(!others.empty())) {
        count = others.first();
        const std::uint64_t word = load_first_lowest(from);
        if (count > 8) {
            const std::uint64_t next = load_first_lowest(from + 8) << (128 - 8 * count);
            number = eight_digits(word) * small_powers_of_10[static_cast<int>(count) - 8] +
                     eight_digits(next);
        } else if (likely(count != 0)) {
            number = eight_digits(word << (64 - 8 * count));
        } else {
            return nullptr;
        }
    } else {
        number = values.decimal(Block::size);
        count += static_cast<std::size_t>(scan_eight_digits(from + Block::size, number));
        if (count > 18) {
            return nullptr;
        }
    }
    const char* const end = from + count;
    const bool is_whole = *end == ',' || !continues_number(*end);
    return likely(is_whole && (*from != '0' || count == 1)) ? end : nullptr;
}

} // namespace

void DocumentReader::fail(const char* at, std::string_view problem) {
    throw_problem(at, problem);
    give_up();
}

void DocumentReader::fail_current(const char* at) {
    throw_current(at);
    give_up();
}

void DocumentReader::fail_noted() {
    throw_noted();
    give_up();
}

void DocumentReader::give_up() {
    throw NotAsWanted();
}

// ---- Space -----------------------------------------------------------------------------------

[[gnu::always_inline]] inline const char* DocumentCore::skip_space(const char* at) {
    return likely(is_fast(at)) ? skip_usual_space(at) : skip_other_space(at);
}

/// The same where the room behind a position before is not used up.
[[gnu::always_inline]] inline const char* DocumentCore::skip_usual_space(const char* at) {
    if (*at == '\n') {
        const std::size_t expected = indentation_[depth_ % depths];
        if (is_indentation(at, expected) && is_token(at[expected])) {
            return at + expected;
        }
        return skip_other_space(at);
    }
    if (is_token(*at)) {
        return at;
    }
    return *at == ' ' && is_token(at[1]) ? at + 1 : skip_other_space(at);
}

/// @param size  of a line feed and the spaces behind it
[[gnu::always_inline]] inline bool DocumentCore::is_indentation(const char* at,
                                                                std::size_t size) noexcept {
    const auto other = Block(at).differing(Block(indentation.bytes));
    if (!other.empty()) {
        return other.first() == size;
    }
    const auto next = Block(at + Block::size).differing(Block(indentation.bytes + Block::size));
    return !next.empty() && Block::size + next.first() == size;
}

[[gnu::noinline]] const char* DocumentCore::skip_other_space(const char* at) {
    const char* const end = cursor_.skip_space(at);
    if (static_cast<std::size_t>(end - at) < Indentation::longest) {
        indentation_[depth_ % depths] = static_cast<unsigned char>(end - at);
    }
    return end;
}

[[gnu::always_inline]] inline const char* DocumentCore::skip_space_before_value(const char* at) {
    return likely(is_fast(at)) ? skip_usual_space_before_value(at) : cursor_.skip_space(at);
}

/// The same where the room behind a position before is not used up.
[[gnu::always_inline]] inline const char*
DocumentCore::skip_usual_space_before_value(const char* at) {
    // Branches, since the processor predicts them, and need not know the byte to go on.
    if (is_token(*at)) {
        return at;
    }
    return *at == ' ' && likely(is_token(at[1])) ? at + 1 : cursor_.skip_space(at);
}

// ---- Structure -------------------------------------------------------------------------------

/// @return false if the container is empty, and has been read
[[gnu::always_inline]] inline bool DocumentCore::begin_container(const char*& at, char open,
                                                                 char close) {
    if (!is_at(at, open) || depth_ >= options_.max_depth) {
        give_up();
    }
    ++depth_;
    at = skip_space(at + 1);
    if (is_at(at, close)) {
        --depth_;
        ++at;
        return false;
    }
    return true;
}

DocumentReader::Behind<std::size_t> DocumentCore::begin_array(const char* at, std::size_t) {
    const std::size_t expected = lengths_[depth_ % depths];
    const bool has_elements = begin_container(at, '[', ']');
    return {at, has_elements ? std::max(expected, std::size_t{1}) : 0};
}

void DocumentCore::expect_length(std::size_t length) noexcept {
    constexpr std::size_t most = 64;
    lengths_[depth_ % depths] = static_cast<unsigned char>(std::min(length, most));
}

std::size_t DocumentCore::expect_more(const char* first, const char* at,
                                      std::size_t count) const noexcept {
    constexpr std::uint64_t parts = 256; // of a byte
    const auto read = static_cast<std::uint64_t>(at - first);
    const auto rest = static_cast<std::uint64_t>(cursor_.end() - at);
    if (count == 0) {
        return 0;
    }
    const std::uint64_t expected = rest * parts / (read * parts / count) + 1;
    // A little too much costs less than to grow once more.
    return static_cast<std::size_t>(expected + expected / 32);
}

/// Goes on behind an element or member.
/// @param more  whether there is another one; if not, the container has been closed
[[gnu::always_inline]] inline const char* DocumentCore::separate(const char* at, char close,
                                                                 bool& more) {
    if (likely(is_fast(at))) {
        if (*at == ',') {
            const char* const next = skip_usual_space(at + 1);
            if (likely(*next != close)) {
                more = true;
                return next;
            }
        } else {
            --depth_; // the space before a closing bracket is that of the lines around
            const char* const next = *at == close ? at : skip_usual_space(at);
            if (likely(*next == close)) {
                more = false;
                return next + 1;
            }
            ++depth_;
        }
    }
    return separate_otherwise(at, close, more);
}

/// The same for what is not usual.
[[gnu::noinline]] const char* DocumentCore::separate_otherwise(const char* at, char close,
                                                               bool& more) {
    if (!is_at(at, ',')) {
        if (!is_at(at, close)) {
            --depth_; // the space before a closing bracket is that of the lines around
            at = skip_space(at);
            ++depth_;
        }
        if (is_at(at, close)) {
            more = false;
            --depth_;
            return at + 1;
        }
        if (!is_at(at, ',')) {
            give_up();
        }
    }
    at = skip_space(at + 1);
    if (options_.trailing_commas && is_at(at, close)) {
        more = false;
        --depth_;
        return at + 1;
    }
    more = true;
    return at;
}

[[gnu::always_inline]] inline bool DocumentCore::next_item(const char*& at, char close) {
    bool more = false;
    at = separate(at, close, more);
    return more;
}

// ---- Scalars ---------------------------------------------------------------------------------

/// @param at  at the opening quote
[[gnu::always_inline]] inline StringToken DocumentCore::string(const char* at) {
    if (likely(is_fast(at))) {
        const char* const text = at + 1;
        const auto found = Block(text).special_in_string();
        if (likely(!found.empty())) {
            if (likely(text[found.first()] == '"')) {
                return {text, text + found.first()};
            }
        } else {
            const char* const next = text + Block::size;
            const auto further = Block(next).special_in_string();
            if (!further.empty() && next[further.first()] == '"') {
                return {text, next + further.first()};
            }
        }
    }
    return long_string(at);
}

/// The same for a string that may be long: finds its end first, and then checks its bytes.
[[gnu::noinline]] StringToken DocumentCore::long_string(const char* at) {
    StringToken token{at + 1, at + 1};
    Block all(0, 0); // the bytes of all blocks, also what is behind the string
    for (const char*& end = token.end; is_fast(end);) {
        const Block block(end);
        all = all | block;
        const auto found = block.special_in_utf8();
        if (found.empty()) {
            end += Block::size;
            continue;
        }
        end += found.first();
        if (*end == '"') {
            if (!all.is_ascii() && !is_utf8(token.text, end)) {
                give_up();
            }
            return token;
        }
        token.escaped = true;
        if (*end != '\\' || scan_escape(end, cursor_.end()) != StringError::none) {
            give_up();
        }
    }
    return cursor_.string(at);
}

const char* DocumentCore::read(const char* at, std::string& target) {
    if (!is_at(at, '"')) {
        give_up();
    }
    const StringToken token = string(at);
    if (likely(!token.escaped)) {
        target.assign(token.text, token.size());
    } else {
        decode(token, target);
    }
    return token.end + 1;
}

/// Reads a word.
/// @param at  at its first letter
template <std::size_t Size>
[[gnu::always_inline]] inline const char* DocumentCore::word(const char* at,
                                                             const char (&word)[Size]) {
    constexpr std::size_t few = 4; // at the end: the first letter is known
    constexpr std::size_t length = Size - 1;
    const char* const end = at + length;
    if (likely(is_fast(at) && std::memcmp(end - few, word + length - few, few) == 0 &&
               !continues_word(*end))) {
        return end;
    }
    return cursor_.word(at, word);
}

const char* DocumentCore::read(const char* at, bool& target) {
    target = is_at(at, 't');
    if (target) {
        return word(at, "true");
    }
    if (!is_at(at, 'f')) {
        give_up();
    }
    return word(at, "false");
}

DocumentReader::Behind<std::size_t> DocumentCore::read_null(const char* at) {
    if (is_at(at, 'n')) {
        return {word(at, "null"), 1};
    }
    return {at, 0};
}

const char* DocumentCore::expect_null(const char* at) {
    if (!is_at(at, 'n')) {
        give_up();
    }
    return word(at, "null");
}

[[gnu::noinline]] const char* DocumentCore::read_any_number(const char* at, NumberContent& target) {
    if (!begins_number(byte_at(at))) {
        give_up();
    }
    const NumberToken token = cursor_.number(at);
    const bool exact = options_.integers == ParseOptions::Integers::exact;
    target = content_of_number(at, token, exact);
    if (target.type == NumberContent::Type::too_large) {
        give_up();
    }
    return token.end;
}

[[gnu::always_inline]] inline const char* DocumentCore::read_double(const char* at,
                                                                    double& target) {
    if (likely(is_fast(at) && begins_number(*at))) {
        if (const char* const end = usual_number(at, target)) {
            return end;
        }
    }
    NumberContent content(0.0);
    at = read_any_number(at, content);
    target = to_number<double>(content);
    return at;
}

template <class Number>
const char* DocumentCore::read_rare_number(const char* at, Number& target) {
    NumberContent content(0.0);
    at = read_any_number(at, content);
    target = to_number<Number>(content);
    return at;
}

const char* DocumentCore::read(const char* at, double& target) {
    return read_double(at, target);
}

const char* DocumentCore::read(const char* at, float& target) {
    return read_rare_number(at, target);
}

const char* DocumentCore::read(const char* at, long double& target) {
    return read_rare_number(at, target);
}

[[gnu::always_inline]] inline DocumentReader::Behind<long long>
DocumentCore::read_signed_number(const char* at, long long least, long long most) {
    if (likely(is_fast(at))) {
        const bool negative = *at == '-';
        std::uint64_t magnitude = 0;
        const char* const end = scan_few_whole(at + (negative ? 1 : 0), magnitude);
        if (likely(end != nullptr && is_exact(magnitude))) {
            const auto number = static_cast<long long>(magnitude);
            const long long result = negative ? -number : number;
            if (likely(result >= least && result <= most)) {
                return {end, result};
            }
        }
    }
    NumberContent content(0.0);
    at = read_any_number(at, content);
    const auto number = to_number<long long>(content);
    if (number < least || number > most) {
        give_up();
    }
    return {at, number};
}

DocumentReader::Behind<long long> DocumentCore::read_signed(const char* at, long long least,
                                                            long long most) {
    return read_signed_number(at, least, most);
}

DocumentReader::Behind<unsigned long long> DocumentCore::read_unsigned(const char* at,
                                                                       unsigned long long most) {
    if (likely(is_fast(at))) {
        std::uint64_t number = 0;
        const char* const end = scan_few_whole(at, number);
        if (likely(end != nullptr && is_exact(number) && number <= most)) {
            return {end, number};
        }
    }
    NumberContent content(0.0);
    at = read_any_number(at, content);
    const auto number = to_number<unsigned long long>(content);
    if (number > most) {
        give_up();
    }
    return {at, number};
}

inline const char* DocumentCore::read_number(const char* at, double& target) {
    return read_double(at, target);
}

inline const char* DocumentCore::read_number(const char* at, int& target) {
    using Limits = std::numeric_limits<int>;
    const auto behind = read_signed_number(at, Limits::min(), Limits::max());
    target = static_cast<int>(behind.number);
    return behind.at;
}

/// Reads elements, which are collected before the vector gets them.
template <class T>
[[gnu::always_inline]] inline const char* DocumentCore::read_numbers(const char* at,
                                                                     std::vector<T>& target) {
    target.clear();
    if (!begin_container(at, '[', ']')) {
        return at;
    }
    first_number_ = at;
    has_long_room_ = false;
    T collected[most_numbers];
    std::size_t count = 0;
    bool more = true;
    while (more) {
        if (count == most_numbers) {
            add_numbers(collected, target, at);
            count = 0;
        }
        at = read_number(at, collected[count]);
        ++count;
        if (likely(is_fast(at)) && *at == ',' && begins_number(at[1])) {
            ++at;
        } else {
            at = separate(at, ']', more);
        }
    }
    // A loop takes less time for a few than a function that copies any number of bytes.
    constexpr std::size_t few = 8;
    if (count > few || !target.empty()) {
        target.insert(target.end(), collected, collected + count);
        if (has_long_room_) {
            return_long_room(target);
        }
        return at;
    }
    target.reserve(count);
    for (std::size_t i = 0; i != count; ++i) {
        target.push_back(collected[i]);
    }
    return at;
}

/// @param at  where the element behind those begins
template <class T>
[[gnu::noinline]] void DocumentCore::add_numbers(const T (&numbers)[most_numbers],
                                                 std::vector<T>& target, const char* at) {
    target.insert(target.end(), numbers, numbers + most_numbers);
    if (needs_long_room(target, most_numbers)) {
        has_long_room_ = get_long_room(target, *this, first_number_, 0, at);
    }
}

const char* DocumentCore::read(const char* at, std::vector<double>& target) {
    return read_numbers(at, target);
}

const char* DocumentCore::read(const char* at, std::vector<int>& target) {
    return read_numbers(at, target);
}

DocumentReader::Behind<std::size_t> DocumentCore::read_enumerator(const char* at,
                                                                  const NameTable& names) {
    if (!is_at(at, '"')) {
        give_up();
    }
    const StringToken token = string(at);
    std::string decoded;
    std::string_view name(token.text, token.size());
    if (token.escaped) {
        decode(token, decoded);
        name = decoded;
    }
    const std::size_t number = find_name(names, name);
    if (number == names.count) {
        give_up();
    }
    return {token.end + 1, number};
}

const char* DocumentCore::read_value(const char* at, Value& target) {
    target = Value();
    return ValueReader<WholeText>(cursor_, depth_).read(at, target);
}

template <class Content>
const char* DocumentCore::read_content(const char* at, Content& target) {
    Value value;
    at = read_value(at, value);
    auto* const content = get_if<Content>(&value);
    if (content == nullptr) {
        give_up();
    }
    target = std::move(*content);
    return at;
}

const char* DocumentCore::read_array(const char* at, Array& target) {
    return read_content(at, target);
}

const char* DocumentCore::read_object(const char* at, Object& target) {
    return read_content(at, target);
}

const char* DocumentCore::use_again(const char* at, const TagOf* tag, UseAgain function,
                                    const void* use) {
    Value value;
    at = read_value(at, value);
    ValueWalker walker(value, options_);
    static_cast<void>(walker.use_again(walker.begin(), tag, function, use));
    return at;
}

// ---- Objects of classes ----------------------------------------------------------------------

[[gnu::always_inline]] inline bool DocumentCore::is_text_at(const char* at, const char* text,
                                                            std::uint32_t size) noexcept {
    const auto other = Block(at).differing(Block(text));
    if (likely(size <= Block::size)) {
        return other.empty() ? size != 0 : other.first() >= size && size != 0;
    }
    if (!other.empty()) {
        return false;
    }
    for (std::size_t i = Block::size; i < size - Block::size; i += Block::size) {
        if (!Block(at + i).differing(Block(text + i)).empty()) {
            return false;
        }
    }
    const std::size_t last = size - Block::size; // overlaps the block before it
    return Block(at + last).differing(Block(text + last)).empty();
}

/// Reads the name of a member and the colon behind it, and skips the space behind that.
[[gnu::always_inline]] inline DocumentCore::Found
DocumentCore::read_name(const char* at, const Target& target, Expected expected) {
    if (expected.shape != nullptr && likely(is_fast(at)) &&
        likely(expected.step < expected.shape->steps.size())) {
        const Step& step = expected.shape->steps[expected.step];
        if (likely(is_text_at(at, step.text, step.size))) {
            return {skip_usual_space_before_value(at + step.size),
                    {expected.shape, expected.step + 1},
                    step.number};
        }
    }
    Found found = find_member(at, target, expected);
    found.at = skip_space_before_value(found.at);
    return found;
}

/// The same where another name comes than the one that is expected.
[[gnu::noinline]] DocumentCore::Found
DocumentCore::find_member(const char* at, const Target& target, Expected expected) {
    constexpr std::size_t looked_at = 8;
    constexpr std::size_t most_learned = 256;
    Shape& shape = expected.shape != nullptr ? *expected.shape : shape_of(target);
    expected.shape = &shape;
    std::vector<Step>& steps = shape.steps;
    if (is_fast(at)) {
        const std::size_t last = std::min(steps.size(), expected.step + looked_at);
        for (std::size_t i = expected.step; i < last; ++i) {
            if (is_text_at(at, steps[i].text, steps[i].size)) {
                return {at + steps[i].size, {&shape, i + 1}, steps[i].number};
            }
        }
    }
    const char* const begin = at;
    const auto no_opening = [] { return Opening(); };
    const StringToken token = cursor_.name(at, no_opening, false);
    std::string decoded;
    std::string_view name(token.text, token.size());
    if (token.escaped) {
        decode(token, decoded);
        name = decoded;
    }
    at = cursor_.colon(cursor_.skip_space(token.end + 1), no_opening);
    const NameTable& names = target.members.names;
    const std::size_t found = find_name(names, name);
    const bool is_known = found != names.count;
    if (!is_known && (options_.unknown_members == ConvertOptions::UnknownMembers::error ||
                      options_.duplicate_names == ParseOptions::DuplicateNames::error)) {
        give_up();
    }
    const std::int32_t number = is_known ? static_cast<std::int32_t>(found) : unknown;
    const auto size = static_cast<std::uint32_t>(at - begin);
    if (is_fast(begin) && size <= room_behind / 2 && steps.size() < most_learned) {
        steps.insert(steps.begin() +
                         static_cast<std::ptrdiff_t>(std::min(expected.step, steps.size())),
                     {begin, size, number});
        ++expected.step;
    }
    return {at, expected, number};
}

DocumentCore::Shape* DocumentCore::find_shape(const TextMembers& members) const noexcept {
    for (const auto& shape : shapes_) {
        if (shape->members == &members) {
            return shape.get();
        }
    }
    return nullptr;
}

/// The shape of a class, as its table has it at first.
[[gnu::noinline]] DocumentCore::Shape& DocumentCore::shape_of(const Target& target) {
    const TextMembers& members = target.members;
    if (Shape* const shape = find_shape(members)) {
        return *shape;
    }
    // If two names share a data member, the order of the table decides which one it keeps.
    std::vector<const void*> addresses(target.parts, target.parts + members.names.count);
    std::sort(addresses.begin(), addresses.end());
    if (std::adjacent_find(addresses.begin(), addresses.end()) != addresses.end()) {
        give_up();
    }
    auto shape = std::make_unique<Shape>();
    shape->members = &members;
    shape->steps.reserve(2 * members.names.count + 1);
    for (std::size_t i = 0; i != members.names.count; ++i) {
        const TextMember& member = members.members[i];
        shape->steps.push_back({member.text, member.size, static_cast<std::int32_t>(i)});
    }
    shapes_.push_back(std::move(shape));
    return *shapes_.back();
}

/// The part of the base that a member has in the object.
inline const void* DocumentCore::Target::base_of(const void* part) const noexcept {
    if (base == nullptr) {
        return nullptr;
    }
    return static_cast<const char*>(base) +
           (static_cast<const char*>(part) - static_cast<const char*>(object));
}

[[gnu::always_inline]] inline const char*
DocumentCore::read_member(const char* at, const Target& target, std::size_t number) {
    const TextMember& member = target.members.members[number];
    void* const part = const_cast<void*>(target.parts[number]);
    return member.read(*this, at, part, target.base_of(part), member.pointer);
}

/// Reads members as long as they come in the order of the table.
/// @param step  the number of the first member; then the number of those that have been read
/// @param more  whether there are more
[[gnu::always_inline]] inline const char*
DocumentCore::read_in_order(const char* at, const Target& target, std::size_t& step, bool& more) {
    const std::size_t count = target.members.names.count;
    for (; more && step != count && likely(is_fast(at)); ++step) {
        const TextMember& member = target.members.members[step];
        if (!likely(is_text_at(at, member.text, member.size))) {
            break;
        }
        at = skip_usual_space_before_value(at + member.size);
        at = read_member(at, target, step);
        at = separate(at, '}', more);
    }
    return at;
}

template <class Seen>
inline const char* DocumentCore::read_class(const char* at, const Target& target) {
    const TextMembers& members = target.members;
    Seen seen(members.names.count);
    if (begin_container(at, '{', '}')) {
        Expected expected{shapes_.empty() ? nullptr : find_shape(members), 0};
        bool more = true;
        if (expected.shape == nullptr) {
            at = read_in_order(at, target, expected.step, more);
            seen.add_first(expected.step);
        }
        while (more) {
            const Found found = read_name(at, target, expected);
            expected = found.next;
            if (likely(found.number != unknown)) {
                const auto number = static_cast<std::uint32_t>(found.number);
                if (!likely(seen.add(number))) {
                    give_up();
                }
                at = read_member(found.at, target, number);
            } else {
                at = skip_value(found.at);
            }
            at = separate(at, '}', more);
        }
    }
    if (!seen.has_required(members)) {
        give_up();
    }
    if (target.base != nullptr) {
        for (std::size_t i = 0; i != members.names.count; ++i) {
            if (!seen.has(i)) {
                shape_of(target); // checks that it shares no data member with another name
                void* const part = const_cast<void*>(target.parts[i]);
                members.members[i].copy(part, target.base_of(part));
            }
        }
    }
    return at;
}

// ---- Maps ------------------------------------------------------------------------------------

const char* DocumentCore::read_map_name(const char* at, std::string& name) {
    if (!is_at(at, '"')) {
        give_up();
    }
    const StringToken token = string(at);
    decode(token, name);
    const char* const end = token.end + 1;
    at = is_at(end, ':') ? end + 1
                         : cursor_.colon(cursor_.skip_space(end), [] { return Opening(); });
    return skip_space_before_value(at);
}

DocumentReader::Behind<std::size_t> DocumentCore::begin_object(const char* at, std::string& name) {
    if (!begin_container(at, '{', '}')) {
        return {at, 0};
    }
    return {read_map_name(at, name), 1};
}

DocumentReader::Behind<std::size_t> DocumentCore::next_member(const char* at, std::string& name) {
    if (!next_item(at, '}')) {
        return {at, 0};
    }
    return {read_map_name(at, name), 1};
}

// ---- What is skipped -------------------------------------------------------------------------

// It is checked as all else is.

[[gnu::always_inline]] inline const char* DocumentCore::skip_scalar(const char* at) {
    switch (byte_at(at)) {
    case '"':
        return string(at).end + 1;
    case 'n':
        return word(at, "null");
    case 't':
        return word(at, "true");
    case 'f':
        return word(at, "false");
    default:
        if (!begins_number(byte_at(at))) {
            give_up();
        }
        if (const char* const end = cursor_.skip_usual_number(at, skipped_number_room)) {
            return end;
        }
        NumberContent content(0.0);
        return read_any_number(at, content);
    }
}

[[gnu::always_inline]] inline const char* DocumentCore::skip_name(const char* at) {
    if (!is_at(at, '"')) {
        give_up();
    }
    const char* const end = string(at).end + 1;
    at = is_at(end, ':') ? end + 1
                         : cursor_.colon(cursor_.skip_space(end), [] { return Opening(); });
    return skip_space_before_value(at);
}

const char* DocumentCore::skip_value(const char* at) {
    const std::size_t depth = depth_;
    BitStack arrays; // of the containers that are open here
    for (;;) {
        if (is_at(at, '[') || is_at(at, '{')) {
            const bool is_array = *at == '[';
            const bool has_items = begin_container(at, *at, is_array ? ']' : '}');
            if (has_items) {
                arrays.push(is_array);
                at = is_array ? at : skip_name(at);
                continue;
            }
        } else {
            at = skip_scalar(at);
        }
        bool more = false;
        while (depth_ != depth && !more) {
            at = separate(at, arrays.top() ? ']' : '}', more);
            if (!more) {
                arrays.pop();
            }
        }
        if (!more) {
            return at;
        }
        at = arrays.top() ? at : skip_name(at);
    }
}

// ---- Calls from headers ------------------------------------------------------------------------

DocumentReader::Behind<std::size_t> DocumentCore::next_element(const char* at) {
    const bool more = next_item(at, ']');
    return {at, more ? std::size_t{1} : 0};
}

const char* DocumentCore::read_members(const char* at, const TextMembers& members, void* object,
                                       const void* const* parts, const void* base) {
    constexpr std::size_t few = 64;
    const Target target{members, object, parts, base};
    return likely(members.names.count <= few) ? read_class<FewSeen>(at, target)
                                              : read_class<ManySeen>(at, target);
}

} // namespace foundation::json::detail
