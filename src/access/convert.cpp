// What conversion to a caller's own types and back needs besides the types: locations, errors,
// members by their names.
#include <foundation/json/convert.hpp>

#include "access/excerpt.hpp"
#include "access/find_name.hpp"
#include "access/nouns.hpp"
#include "text/location.hpp"
#include "value/value_access.hpp"

#include <foundation/json/detail/quoted.hpp>

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json {

namespace {

std::vector<ConversionProblem> one_problem(std::string pointer, const std::string& message) {
    std::vector<ConversionProblem> result(1);
    result[0].pointer = std::move(pointer);
    result[0].message = message;
    return result;
}

std::string lines_of(const std::vector<ConversionProblem>& errors, bool cuts_off) {
    std::string result;
    for (const ConversionProblem& error : errors) {
        result += result.empty() ? "" : "\n";
        result += detail::describe_location(error.pointer) + error.message;
    }
    return cuts_off ? result + '\n' + detail::cut_off_line(errors.size()) : result;
}

} // namespace

ConversionError::ConversionError(std::string pointer, const std::string& problem)
    : ConversionError(one_problem(std::move(pointer), problem)) {}

ConversionError::ConversionError(std::vector<ConversionProblem> errors, bool cuts_off)
    : std::runtime_error(lines_of(errors, cuts_off)), is_cut_off_(cuts_off) {
    if (errors.empty()) {
        throw std::invalid_argument("foundation::json::ConversionError: there is no error");
    }
    errors_ = std::make_shared<const std::vector<ConversionProblem>>(std::move(errors));
}

ConversionError::~ConversionError() = default;

namespace detail {

bool is_undefined(const Value& value) noexcept {
    return kind_of(value) == Kind::undefined;
}

// ---- Locations and errors -------------------------------------------------------------------

std::string Location::pointer() const {
    std::string result;
    append_to(result);
    return result;
}

void Location::append_to(std::string& pointer) const {
    if (outer_ == nullptr) {
        pointer += name();
        return;
    }
    outer_->append_to(pointer);
    if (name_ == nullptr) {
        append_index_token(pointer, number_);
    } else {
        append_name_token(pointer, name());
    }
}

namespace {

/// `head` and the quoted names, if there are any: `; known are "a", "b"`.
std::string list_of(const char* head, const NameTable& names) {
    std::string result;
    for (std::size_t i = 0; i < names.count; ++i) {
        result += i == 0 ? head : ", ";
        result += detail::quoted(names.names[i]);
    }
    return result;
}

} // namespace

void fail(const Location& location, const std::string& problem) {
    throw ConversionError(location.pointer(), problem);
}

namespace {

/// Errors within the value at a location.
ConversionError located_within(const std::string& pointer, const ConversionError& error) {
    std::vector<ConversionProblem> errors = error.errors();
    for (ConversionProblem& problem : errors) {
        problem.pointer.insert(0, pointer);
    }
    return ConversionError(std::move(errors), error.is_cut_off());
}

} // namespace

void fail_current(const Location& location) {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const ConversionError& error) {
        throw located_within(location.pointer(), error);
    } catch (const std::exception& error) {
        fail(location, error.what());
    }
}

std::string problem_at(const Location& location) {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const ConversionError& error) {
        return error.pointer() == location.pointer() ? error.errors().front().message
                                                     : error.what();
    } catch (const std::exception& error) {
        return error.what();
    }
}

void fail_type(const Location& location, const Value& value, Kind wanted) {
    const std::string shown = excerpt(value);
    std::string problem = shown + " is ";
    if (shown != noun_for(kind_of(value))) {
        problem += noun_for(kind_of(value)) + std::string(", ");
    }
    fail(location, problem + "not " + noun_for(wanted));
}

void fail_number(const Location& location, const Value& value) {
    try {
        throw;
    } catch (const std::out_of_range& error) {
        fail(location, error.what());
    } catch (const std::runtime_error&) {
        fail_type(location, value, Kind::number);
    }
}

void fail_length(const Location& location, std::size_t length, std::size_t wanted) {
    fail(location,
         "the array has length " + std::to_string(length) + ", not " + std::to_string(wanted));
}

void fail_enumerator(const Location& location, const std::string& number, const NameTable& names) {
    fail(location, "the enumerator " + number + " has no name" + list_of("; named are ", names));
}

// ---- Several errors --------------------------------------------------------------------------

struct ErrorCollector::Errors {
    std::vector<ConversionProblem> list;
    std::size_t bytes = 0; ///< of the strings in it
    bool is_cut_off = false;
};

ErrorCollector::ErrorCollector(const ConvertOptions& options) noexcept
    : max_errors_(options.max_errors) {}
ErrorCollector::~ErrorCollector() = default;

bool ErrorCollector::note_current() {
    // Of the strings of all errors: long names may be repeated in many pointers.
    constexpr std::size_t most_bytes = 4 << 20;
    try {
        throw;
    } catch (const ConversionError& error) {
        if (errors_ == nullptr) {
            errors_ = std::make_unique<Errors>();
        }
        ++noted_;
        errors_->is_cut_off = errors_->is_cut_off || error.is_cut_off();
        for (const ConversionProblem& problem : error.errors()) {
            errors_->list.push_back(problem);
            errors_->bytes += problem.pointer.size() + problem.message.size();
            if (errors_->list.size() == max_errors_ || errors_->bytes > most_bytes) {
                errors_->is_cut_off = true;
                return false;
            }
        }
    }
    return true;
}

void ErrorCollector::fail() {
    // Whoever catches this within the conversion notes the errors again.
    Errors errors = std::exchange(*errors_, {});
    throw ConversionError(std::move(errors.list), errors.is_cut_off);
}

void note_current(Session& session) {
    ErrorCollector* const collector = session.collector;
    if (collector == nullptr) {
        throw;
    }
    if (!collector->note_current()) {
        session.collector = nullptr; // what is thrown now passes through all converters
        collector->fail();
    }
}

void report(const Location& location, const std::string& problem, Session& session) {
    try {
        fail(location, problem);
    } catch (const ConversionError&) {
        note_current(session);
    }
}

// ---- Names -----------------------------------------------------------------------------------

std::size_t find_enumerator(const NameTable& names, const Value& value, const Location& location) {
    const auto& name = content_at<std::string>(value, location);
    const std::size_t found = find_name(names, name);
    if (found == names.count) {
        fail(location, "the enumerator " + detail::quoted(name) + " is unknown" +
                           list_of("; known are ", names));
    }
    return found;
}

// ---- Members ---------------------------------------------------------------------------------

namespace {

std::string missing(std::string_view name) {
    return "the required member " + detail::quoted(name) + " is missing";
}

std::string unknown(std::string_view name, const NameTable& names) {
    return "the member " + detail::quoted(name) + " is unknown" + list_of("; known are ", names);
}

/// Finds the members of an object that a table names.
///
/// All are found before any is read: the object has them in the order of their names, but they are
/// read in that of the table.
class MemberFinder {
public:
    /// @param found  gets the address of each member that is there and not Undefined, by its number
    ///               in the table
    MemberFinder(const MemberTable& table, const Object& object, const Value** found) noexcept
        : table_(table), object_(object), found_(found) {}

    void find(const Location& location, Session& session) {
        // One lookup takes about as long as a few steps from one member to the next.
        if (object_.size() / 4 < table_.names.count) {
            find_in_order();
        } else {
            find_each(session.key);
        }
        if (known_ != object_.size() &&
            session.options.unknown_members == ConvertOptions::UnknownMembers::error) {
            refuse_unknown(location);
        }
        if (present_ != table_.names.count) {
            check_required(location);
        }
    }

private:
    void find_in_order() noexcept {
        const NameTable names = table_.names;
        const Value** const found = found_;
        std::size_t known = 0;
        std::size_t undefined = 0;
        std::size_t i = 0;
        auto member = object_.begin();
        while (i < names.count && member != object_.end()) {
            const std::uint32_t number = names.sorted[i];
            const std::string_view name = names.names[number];
            if (member->first == name) {
                ++known;
                if (kind_of(member->second) != Kind::undefined) {
                    found[number] = &member->second;
                } else {
                    ++undefined;
                }
                ++i;
                ++member;
            } else if (comes_before(member->first, name)) {
                ++member;
            } else {
                ++i;
            }
        }
        known_ = known;
        present_ = known - undefined;
    }

    void find_each(std::string& key) {
        for (std::size_t i = 0; i < table_.names.count; ++i) {
            key.assign(table_.names.names[i]);
            const auto member = object_.find(key);
            if (member != object_.end()) {
                take(member->second, i);
            }
        }
    }

    void take(const Value& value, std::size_t number) noexcept {
        ++known_;
        if (kind_of(value) != Kind::undefined) {
            ++present_;
            found_[number] = &value;
        }
    }

    void check_required(const Location& location) const {
        for (std::size_t i = 0; i < table_.names.count; ++i) {
            if (table_.required[i] && found_[i] == nullptr) {
                fail(location, missing(table_.names.names[i]));
            }
        }
    }

    [[noreturn]] void refuse_unknown(const Location& location) const {
        auto member = object_.begin();
        while (find_name(table_.names, member->first) != table_.names.count) {
            ++member;
        }
        fail(Location(location, member->first), unknown(member->first, table_.names));
    }

    const MemberTable& table_;
    const Object& object_;
    const Value** found_;
    std::size_t known_ = 0;   // members of the object that the table names
    std::size_t present_ = 0; // those of them that are not Undefined
};

/// @param target  Undefined, so that there is nothing to destroy
template <class Container>
Container& make(Value& target, Container container) {
    auto& variant = ValueAccess::variant(target);
    try {
        new (&variant) ValueAccess::Variant(std::move(container));
    } catch (...) {
        new (&variant) ValueAccess::Variant(Undefined());
        throw;
    }
    return ValueAccess::content<Container>(target);
}

/// Notes all that is wrong with the names of an object, in which MemberFinder has found an error.
void note_names(const MemberTable& table, const Value** found, const Object& object,
                const Location& location, Session& session) {
    const NameTable& names = table.names;
    for (const auto& [name, value] : object) {
        const std::size_t number = find_name(names, name);
        if (number != names.count) {
            found[number] = kind_of(value) != Kind::undefined ? &value : nullptr;
        } else if (session.options.unknown_members == ConvertOptions::UnknownMembers::error) {
            report(Location(location, name), unknown(name, names), session);
        }
    }
    for (std::size_t i = 0; i < names.count; ++i) {
        if (table.required[i] && found[i] == nullptr) {
            report(location, missing(names.names[i]), session);
        }
    }
}

/// Reads the members after one that cannot be read.
void read_rest(std::size_t next, const MemberTable& table, const ReadMember* readers, void* object,
               const Value* const* found, const Location& location, Session& session) {
    for (std::size_t i = next; i < table.names.count; ++i) {
        if (found[i] != nullptr) {
            try {
                readers[i](object, table.pointers[i], *found[i],
                           Location(location, table.names.names[i]), session);
            } catch (const ConversionError&) {
                note_current(session);
            }
        }
    }
}

} // namespace

void find_members(const MemberTable& table, const Value** found, const Value& value,
                  const Location& location, Session& session) {
    const auto& source = content_at<Object>(value, location);
    try {
        MemberFinder(table, source, found).find(location, session);
    } catch (const ConversionError&) {
        if (session.collector == nullptr) {
            throw;
        }
        note_names(table, found, source, location, session);
    }
}

void read_members(const MemberTable& table, const ReadMember* readers, void* object,
                  const Value** found, const Value& value, const Location& location,
                  Session& session) {
    find_members(table, found, value, location, session);
    // Errors are caught outside of the loop, and what follows them is done elsewhere: so what has
    // no errors takes no more time.
    const MemberTable members = table;
    std::size_t i = 0;
    try {
        for (; i < members.names.count; ++i) {
            if (found[i] != nullptr) {
                readers[i](object, members.pointers[i], *found[i],
                           Location(location, members.names.names[i]), session);
            }
        }
    } catch (const ConversionError&) {
        note_current(session);
        read_rest(i + 1, table, readers, object, found, location, session);
    }
}

std::size_t take_tag(std::string_view member, const NameTable& names, const Value& value,
                     const Location& location, Value& rest) {
    const std::string name(member);
    const auto& object = content_at<Object>(value, location);
    const auto found = object.find(name);
    if (found == object.end() || is_undefined(found->second)) {
        fail(location, missing(name));
    }
    const std::size_t number = find_enumerator(names, found->second, Location(location, name));
    rest = value;
    get<Object>(rest).erase(name);
    return number;
}

void write_members(const MemberTable& table, const WriteMember* writers, const void* object,
                   Value& target, const Start& start, const Location& location,
                   Defaults& defaults) {
    Object& members = make_object(target);
    // In the order of the names, in which the members of an object are added the fastest.
    for (std::size_t i = 0; i < table.names.count; ++i) {
        const std::size_t number = table.names.sorted[i];
        const Location member_location(location, table.names.names[number]);
        writers[number]({members, object, table.pointers[number], table.required[number], start,
                         member_location, defaults});
    }
}

Array& make_array(Value& target, std::size_t size) {
    return make(target, Array(size));
}

Object& make_object(Value& target) {
    return make(target, Object());
}

Value& add_member(Object& object, std::string_view name) {
    return object
        .emplace_hint(object.end(), std::piecewise_construct, std::forward_as_tuple(name),
                      std::tuple<>())
        ->second;
}

// ---- JSON Pointers ---------------------------------------------------------------------------

namespace {

/// Throws if the last value on an incomplete way is of a type that cannot have what comes next.
void check_end(const PathLookup& way) {
    const Kind kind = kind_of(*way.last);
    if (kind != Kind::object && !(kind == Kind::array && looks_like_index(way.next))) {
        fail_type(Location(way.reached), *way.last, Kind::object);
    }
}

} // namespace

const Value* find_checked(const Value& root, std::string_view pointer) {
    const PathLookup way = follow(root, pointer);
    if (way.is_complete) {
        return way.last;
    }
    check_end(way);
    return nullptr;
}

const Value* find_present(const Value& root, std::string_view pointer) {
    const PathLookup way = follow(root, pointer);
    if (is_nothing(*way.last)) {
        return nullptr;
    }
    if (way.is_complete) {
        return way.last;
    }
    check_end(way);
    return nullptr;
}

} // namespace detail

} // namespace foundation::json
