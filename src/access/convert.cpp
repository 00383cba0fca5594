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
#include <new>

namespace foundation::json {

ConversionError::ConversionError(std::string pointer, const std::string& problem)
    : std::runtime_error(detail::describe_location(pointer) + problem),
      pointer_(std::make_shared<const std::string>(std::move(pointer))) {}

ConversionError::~ConversionError() = default;

namespace detail {

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

/// What an error says after its location.
std::string problem_of(const ConversionError& error) {
    const std::string what = error.std::runtime_error::what(); // not that of a derived class
    return what.substr(describe_location(error.pointer()).size());
}

} // namespace

void fail_current(const Location& location) {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const ConversionError& error) {
        throw ConversionError(location.pointer() + error.pointer(), problem_of(error));
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
        return error.pointer() == location.pointer() ? problem_of(error) : error.what();
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
                fail(location, "the required member " + detail::quoted(table_.names.names[i]) +
                                   " is missing");
            }
        }
    }

    [[noreturn]] void refuse_unknown(const Location& location) const {
        auto member = object_.begin();
        while (find_name(table_.names, member->first) != table_.names.count) {
            ++member;
        }
        fail(Location(location, member->first), "the member " + detail::quoted(member->first) +
                                                    " is unknown" +
                                                    list_of("; known are ", table_.names));
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

} // namespace

void read_members(const MemberTable& table, const ReadMember* readers, void* object,
                  const Value** found, const Value& value, const Location& location,
                  Session& session) {
    MemberFinder(table, content_at<Object>(value, location), found).find(location, session);
    const MemberTable members = table;
    for (std::size_t i = 0; i < members.names.count; ++i) {
        if (found[i] != nullptr) {
            readers[i](object, members.pointers[i], *found[i],
                       Location(location, members.names.names[i]), session);
        }
    }
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
