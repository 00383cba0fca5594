// JSON text for other programs, piece by piece.
#include <foundation/json/write.hpp>

#include "serialization/object_text.hpp"
#include "serialization/text_output.hpp"
#include "serialization/write_problems.hpp"
#include "serialization/write_value.hpp"
#include "serialization/writer_target.hpp"
#include "text/location.hpp"
#include "text/utf16_order.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace foundation::json {

namespace detail {

namespace {

/// What comes next in a text.
enum class Expected { value, element, name, member, nothing, nothing_more };

/// What is said of a call that does not fit.
constexpr const char* problems[] = {
    " where a value is expected",
    " where a value or end() is expected",
    " where name() or end() is expected",
    " where a value is expected",
    " after the end of the text: finish() begins another",
    " after an error, which has broken the text off",
};

/// An array or object that has begun.
struct Level {
    bool is_object;
    bool is_named;           ///< whether a name has been given
    std::size_t count;       ///< of the elements or members so far
    std::size_t name_begins; ///< of the last member, among the names
};

/// The arrays and objects that have begun, the outermost first. The first few take no memory of
/// their own.
class Levels {
public:
    std::size_t size() const noexcept { return size_; }

    const Level& operator[](std::size_t depth) const noexcept {
        return depth < few ? first_[depth] : rest_[depth - few];
    }

    Level& back() noexcept { return size_ <= few ? first_[size_ - 1] : rest_.back(); }
    const Level& back() const noexcept { return (*this)[size_ - 1]; }

    void push(const Level& level) {
        if (size_ < few) {
            first_[size_] = level;
        } else {
            rest_.push_back(level);
        }
        ++size_;
    }

    void pop() noexcept {
        if (size_ > few) {
            rest_.pop_back();
        }
        --size_;
    }

private:
    static constexpr std::size_t few = 6;

    std::size_t size_ = 0;
    Level first_[few];
    std::vector<Level> rest_;
};

/// The names of the members that lead to the present level, one behind the other.
class Names {
public:
    std::string_view from_to(std::size_t begin, std::size_t end) const {
        return std::string_view(bytes_).substr(begin, end - begin);
    }

    /// Where the last name ends.
    std::size_t end() const noexcept { return end_; }

    /// Puts a name in the place of those from `begin` on.
    void put(std::size_t begin, std::string_view name) {
        end_ = begin + name.size();
        if (end_ > bytes_.size()) {
            bytes_.resize(end_ <= bytes_.capacity() ? bytes_.capacity() : 2 * end_);
        }
        std::copy(name.begin(), name.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(begin));
    }

    void remove_from(std::size_t begin) noexcept { end_ = begin; }

private:
    std::string bytes_; ///< those behind the end are of no use
    std::size_t end_ = 0;
};

} // namespace

class WriterState {
public:
    template <class Target>
    WriterState(Target& target, const WriteOptions& options)
        : target_(target),
          output_(target_, target_.start(), options),
          at_(target_.start().begin),
          sorts_(options.member_order == WriteOptions::MemberOrder::utf16) {}

    void put(const Null&);
    void put(bool flag);
    void put(std::string_view text);
    void put(const Value& value);
    void put(const AnyObject& object);
    template <class Number>
    void put_number(Number number);
    template <class Content>
    void put_content(const Content& content);
    void raw(std::string_view json);
    void name(std::string_view name);
    void begin(bool object);
    void end();
    void finish();

private:
    using Cursor = TextOutput::Cursor;

    void begin_value(const char* call);
    void end_value();
    void separate(std::size_t count);
    void check_order(std::string_view name) const;
    void withdraw_name();
    std::string_view last_name(std::size_t depth) const;
    std::string pointer(std::size_t depth) const;
    [[noreturn]] void refuse(const char* call) const;
    [[noreturn]] void fail(std::size_t depth, const std::string& problem) const;

    WriterTarget target_;
    TextOutput output_;
    Cursor at_;
    bool sorts_;
    Expected expected_ = Expected::value;
    Levels levels_;
    Names names_;
};

// ---- Pieces --------------------------------------------------------------------------------

// Whatever writes is preceded by `expected_ = Expected::nothing_more`, which stays if it fails.

void WriterState::begin_value(const char* call) {
    const Expected expected = expected_;
    if (expected == Expected::name || expected >= Expected::nothing) {
        refuse(call);
    }
    expected_ = Expected::nothing_more;
    if (expected == Expected::element) {
        separate(levels_.back().count);
    }
    target_.release();
}

void WriterState::end_value() {
    if (levels_.size() == 0) {
        target_.finish(at_);
        at_ = target_.start().begin;
        expected_ = Expected::nothing;
        return;
    }
    Level& level = levels_.back();
    ++level.count;
    expected_ = level.is_object ? Expected::name : Expected::element;
}

/// Writes what stands between items, and before the first.
void WriterState::separate(std::size_t count) {
    if (count != 0) {
        at_ = output_.text(at_, ",");
    }
    if (output_.is_indented()) {
        at_ = output_.line(at_, levels_.size());
    }
}

void WriterState::put(const Null&) {
    begin_value("value()");
    at_ = output_.text(at_, "null");
    end_value();
}

void WriterState::put(bool flag) {
    begin_value("value()");
    at_ = flag ? output_.text(at_, "true") : output_.text(at_, "false");
    end_value();
}

void WriterState::put(std::string_view text) {
    begin_value("value()");
    try {
        at_ = output_.string(at_, text);
    } catch (const Unwritable&) {
        fail(levels_.size(), problem_of_string(text));
    }
    end_value();
}

template <class Number>
void WriterState::put_number(Number number) {
    begin_value("value()");
    try {
        at_ = output_.number(at_, number);
    } catch (const Unwritable&) {
        fail(levels_.size(), problem_of(number));
    }
    end_value();
}

/// For values, arrays and objects.
template <class Content>
void WriterState::put_content(const Content& content) {
    begin_value("value()");
    try {
        at_ = write_content(output_, at_, content, levels_.size());
    } catch (const Unwritable&) {
        throw_write_error(pointer(levels_.size()), content, output_.options());
    }
    end_value();
}

void WriterState::put(const Value& value) {
    if (!holds<Undefined>(value) || expected_ == Expected::element) {
        put_content(value);
    } else if (expected_ == Expected::member) {
        withdraw_name();
    } else {
        begin_value("value()");
        fail(0, undefined_problem);
    }
}

void WriterState::put(const AnyObject& object) {
    begin_value("value()");
    try {
        at_ = write_object(output_, at_, object, levels_.size());
    } catch (const Unwritable&) {
        throw_object_error(pointer(levels_.size()), object, levels_.size(), output_.options());
    }
    end_value();
}

void WriterState::raw(std::string_view json) {
    begin_value("raw()");
    at_ = output_.raw(at_, json);
    end_value();
}

void WriterState::begin(bool object) {
    begin_value(object ? "begin_object()" : "begin_array()");
    at_ = object ? output_.text(at_, "{") : output_.text(at_, "[");
    levels_.push({object, false, 0, names_.end()});
    expected_ = object ? Expected::name : Expected::element;
}

void WriterState::end() {
    if (expected_ != Expected::element && expected_ != Expected::name) {
        refuse("end()");
    }
    expected_ = Expected::nothing_more;
    const Level level = levels_.back();
    levels_.pop();
    names_.remove_from(level.name_begins);
    if (level.count != 0 && output_.is_indented()) {
        at_ = output_.line(at_, levels_.size());
    }
    at_ = level.is_object ? output_.text(at_, "}") : output_.text(at_, "]");
    end_value();
}

void WriterState::finish() {
    if (expected_ != Expected::nothing) {
        refuse("finish()");
    }
    expected_ = Expected::value;
}

// ---- Names ---------------------------------------------------------------------------------

void WriterState::name(std::string_view name) {
    if (expected_ != Expected::name) {
        refuse("name()");
    }
    expected_ = Expected::nothing_more;
    if (sorts_) {
        check_order(name);
    }
    Level& level = levels_.back();
    target_.hold(at_);
    separate(level.count);
    try {
        at_ = output_.name(at_, name);
    } catch (const Unwritable&) {
        fail(levels_.size() - 1, problem_of_name(name));
    }
    level.is_named = true;
    names_.put(level.name_begins, name);
    expected_ = Expected::member;
}

void WriterState::check_order(std::string_view name) const {
    const std::string_view previous = last_name(levels_.size() - 1);
    if (levels_.back().is_named && !is_less_in_utf16(previous, name)) {
        fail(levels_.size() - 1, problem_of_order(previous, name));
    }
}

/// Of a member whose value is Undefined.
void WriterState::withdraw_name() {
    at_ = target_.held();
    target_.release();
    expected_ = Expected::name;
}

/// The name of the last member of an object.
/// @param depth  how many levels are around it
std::string_view WriterState::last_name(std::size_t depth) const {
    const bool is_last = depth + 1 == levels_.size();
    const std::size_t end = is_last ? names_.end() : levels_[depth + 1].name_begins;
    return names_.from_to(levels_[depth].name_begins, end);
}

// ---- Errors --------------------------------------------------------------------------------

/// The location of the present item at a level.
/// @param depth  how many arrays and objects lead to it
std::string WriterState::pointer(std::size_t depth) const {
    std::string result;
    for (std::size_t i = 0; i != depth; ++i) {
        if (levels_[i].is_object) {
            append_name_token(result, last_name(i));
        } else {
            append_index_token(result, levels_[i].count);
        }
    }
    return result;
}

void WriterState::refuse(const char* call) const {
    const bool is_before_name = expected_ == Expected::name;
    const std::size_t depth = levels_.size() - (is_before_name ? 1 : 0);
    throw std::logic_error(describe_location(pointer(depth)) + call +
                           problems[static_cast<int>(expected_)]);
}

void WriterState::fail(std::size_t depth, const std::string& problem) const {
    throw WriteError(pointer(depth), problem);
}

} // namespace detail

// ---- The interface -------------------------------------------------------------------------

Writer::Writer(std::ostream& stream, const WriteOptions& options)
    : state_(new detail::WriterState(stream, options)) {}

Writer::Writer(std::string& text, const WriteOptions& options)
    : state_(new detail::WriterState(text, options)) {}

Writer::~Writer() = default;

Writer& Writer::begin_object() {
    state_->begin(true);
    return *this;
}

Writer& Writer::begin_array() {
    state_->begin(false);
    return *this;
}

Writer& Writer::end() {
    state_->end();
    return *this;
}

Writer& Writer::name(std::string_view name) {
    state_->name(name);
    return *this;
}

Writer& Writer::raw(std::string_view json) {
    state_->raw(json);
    return *this;
}

void Writer::finish() {
    state_->finish();
}

void Writer::put(const Null& null) {
    state_->put(null);
}

void Writer::put(const Undefined& undefined) {
    state_->put(Value(undefined));
}

void Writer::put(bool flag) {
    state_->put(flag);
}

void Writer::put(const double& number) {
    state_->put_number(detail::FloatingBits<double>(number));
}

void Writer::put(const float& number) {
    state_->put_number(detail::FloatingBits<float>(number));
}

void Writer::put(long long number) {
    state_->put_number(number);
}

void Writer::put(unsigned long long number) {
    state_->put_number(number);
}

void Writer::put(std::string_view text) {
    state_->put(text);
}

void Writer::put(const Value& value) {
    state_->put(value);
}

void Writer::put(const Array& elements) {
    state_->put_content(elements);
}

void Writer::put(const Object& members) {
    state_->put_content(members);
}

void Writer::put(const detail::AnyObject& object) {
    state_->put(object);
}

} // namespace foundation::json
