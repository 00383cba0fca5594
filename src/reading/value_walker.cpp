#include "reading/value_walker.hpp"

#include <foundation/json/conversion_error.hpp>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace foundation::json::detail {

ValueWalker::ValueWalker(const Value& root, const ConvertOptions& options) : session_{options, {}} {
    Spot& spot = spots_.emplace_back();
    spot.depth = 0;
    spot.value = &root;
    spot.location.emplace(std::string_view());
}

/// The spot for a part of a value. There are as many as the type nests in the value.
ValueWalker::Spot& ValueWalker::spot_within(const Spot& outer) {
    const std::size_t depth = outer.depth + 1;
    if (depth == spots_.size()) {
        spots_.emplace_back().depth = depth;
    }
    return spots_[depth];
}

template <class Key>
void ValueWalker::go_to(Spot& spot, const Value& value, Key key) {
    spot.value = &value;
    spot.location.emplace(*spot_around(spot).location, key);
}

// ---- Scalars ---------------------------------------------------------------------------------

template <class Content>
const char* ValueWalker::read_content(const char* at, Content& target) {
    const Spot& spot = spot_at(at);
    target = content_at<Content>(*spot.value, *spot.location);
    return at;
}

template <class Number>
const char* ValueWalker::read_number(const char* at, Number& target) {
    const Spot& spot = spot_at(at);
    try {
        target = number<Number>(*spot.value);
    } catch (...) {
        fail_number(*spot.location, *spot.value);
    }
    return at;
}

/// @param lowest   the magnitude of the lowest number
/// @param highest  that of the highest
template <class Integer>
Integer ValueWalker::read_integer(const char* at, std::uint64_t lowest, std::uint64_t highest) {
    const Spot& spot = spot_at(at);
    try {
        const NumberParts parts = number_parts(*spot.value);
        const bool is_float = holds<float>(*spot.value);
        return integer_of<Integer>(parts.negative,
                                   magnitude_within(parts, is_float, lowest, highest));
    } catch (...) {
        fail_number(*spot.location, *spot.value);
    }
}

const char* ValueWalker::read(const char* at, bool& target) {
    return read_content(at, target);
}

const char* ValueWalker::read(const char* at, std::string& target) {
    return read_content(at, target);
}

const char* ValueWalker::read(const char* at, double& target) {
    return read_number(at, target);
}

const char* ValueWalker::read(const char* at, float& target) {
    return read_number(at, target);
}

const char* ValueWalker::read(const char* at, long double& target) {
    return read_number(at, target);
}

const char* ValueWalker::read_value(const char* at, Value& target) {
    target = *spot_at(at).value;
    return at;
}

const char* ValueWalker::read_array(const char* at, Array& target) {
    return read_content(at, target);
}

const char* ValueWalker::read_object(const char* at, Object& target) {
    return read_content(at, target);
}

DocumentReader::Behind<long long> ValueWalker::read_signed(const char* at, long long least,
                                                           long long most) {
    return {at, read_integer<long long>(at, 0 - static_cast<std::uint64_t>(least),
                                        static_cast<std::uint64_t>(most))};
}

DocumentReader::Behind<unsigned long long> ValueWalker::read_unsigned(const char* at,
                                                                      unsigned long long most) {
    return {at, read_integer<unsigned long long>(at, 0, most)};
}

DocumentReader::Behind<std::size_t> ValueWalker::read_enumerator(const char* at,
                                                                 const NameTable& names) {
    const Spot& spot = spot_at(at);
    return {at, find_enumerator(names, *spot.value, *spot.location)};
}

DocumentReader::Behind<std::size_t> ValueWalker::read_null(const char* at) {
    return {at, is_nothing(*spot_at(at).value) ? std::size_t{1} : 0};
}

const char* ValueWalker::expect_null(const char* at) {
    const Spot& spot = spot_at(at);
    if (!is_nothing(*spot.value)) {
        fail_type(*spot.location, *spot.value, Kind::null);
    }
    return at;
}

// ---- Arrays ----------------------------------------------------------------------------------

DocumentReader::Behind<std::size_t> ValueWalker::begin_array(const char* at, std::size_t length) {
    const Spot& outer = spot_at(at);
    const auto& array = content_at<Array>(*outer.value, *outer.location);
    if (length != any_length && length != array.size()) {
        fail_length(*outer.location, array.size(), length);
    }
    if (array.empty()) {
        return {at, 0};
    }
    Spot& spot = spot_within(outer);
    spot.index = 0;
    go_to(spot, array.front(), std::size_t{0});
    return {position_of(spot), array.size()};
}

DocumentReader::Behind<std::size_t> ValueWalker::next_element(const char* at) {
    Spot& spot = spot_at(at);
    const Spot& outer = spot_around(spot);
    const auto& array = get<Array>(*outer.value);
    ++spot.index;
    if (spot.index == array.size()) {
        return {position_of(outer), 0};
    }
    go_to(spot, array[spot.index], spot.index);
    return {at, 1};
}

template <class T, class Read>
const char* ValueWalker::read_all(const char* at, std::vector<T>& target, const Read& read_one) {
    Behind<std::size_t> next = begin_array(at, any_length);
    target.clear();
    target.reserve(next.number);
    while (next.number != 0) {
        try {
            target.push_back(read_one(next.at));
        } catch (const ConversionError&) {
            note_current(session_);
        }
        next = next_element(next.at);
    }
    return at;
}

const char* ValueWalker::read(const char* at, std::vector<double>& target) {
    return read_all(at, target, [this](const char* from) {
        double number = 0;
        static_cast<void>(read(from, number));
        return number;
    });
}

const char* ValueWalker::read(const char* at, std::vector<int>& target) {
    using Limits = std::numeric_limits<int>;
    return read_all(at, target, [this](const char* from) {
        return static_cast<int>(read_signed(from, Limits::min(), Limits::max()).number);
    });
}

// ---- Objects ---------------------------------------------------------------------------------

void ValueWalker::go_to_member(Spot& spot, std::string& name) {
    go_to(spot, spot.member->second, std::string_view(spot.member->first));
    name = spot.member->first;
}

DocumentReader::Behind<std::size_t> ValueWalker::begin_object(const char* at, std::string& name) {
    const Spot& outer = spot_at(at);
    const auto& object = content_at<Object>(*outer.value, *outer.location);
    if (object.empty()) {
        return {at, 0};
    }
    Spot& spot = spot_within(outer);
    spot.member = object.begin();
    go_to_member(spot, name);
    return {position_of(spot), 1};
}

DocumentReader::Behind<std::size_t> ValueWalker::next_member(const char* at, std::string& name) {
    Spot& spot = spot_at(at);
    const Spot& outer = spot_around(spot);
    ++spot.member;
    if (spot.member == get<Object>(*outer.value).end()) {
        return {position_of(outer), 0};
    }
    go_to_member(spot, name);
    return {at, 1};
}

const char* ValueWalker::read_members(const char* at, const TextMembers& members, void*,
                                      const void* const* parts, const void*) {
    const Spot& outer = spot_at(at);
    std::vector<const Value*> found(members.names.count);
    find_members(*members.table, found.data(), *outer.value, *outer.location, session_);
    Spot& spot = spot_within(outer);
    for (std::size_t i = 0; i != found.size(); ++i) {
        if (found[i] != nullptr) {
            const TextMember& member = members.members[i];
            go_to(spot, *found[i], members.names.names[i]);
            try {
                static_cast<void>(member.read(*this, position_of(spot), const_cast<void*>(parts[i]),
                                              nullptr, member.pointer));
            } catch (const ConversionError&) {
                note_current(session_);
            }
        }
    }
    return at;
}

// ---- What is looked at more than once ----------------------------------------------------------

const char* ValueWalker::use_again(const char* at, const TagOf* tag, UseAgain function,
                                   const void* use) {
    if (tag == nullptr) {
        function(*this, at, use, 0);
        return at;
    }
    Spot& spot = spot_at(at);
    const Value& whole = *spot.value;
    Value rest;
    const std::size_t number = take_tag(tag->member, tag->names, whole, *spot.location, rest);
    spot.value = &rest;
    try {
        function(*this, at, use, number);
    } catch (...) {
        spot.value = &whole; // another alternative may be tried
        throw;
    }
    spot.value = &whole;
    return at;
}

// ---- Errors ----------------------------------------------------------------------------------

ErrorCollector* ValueWalker::collect_errors(ErrorCollector* collector) noexcept {
    notes_errors_ = collector != nullptr;
    return std::exchange(session_.collector, collector);
}

bool ValueWalker::read_or_note(const char* at, ReadAny function, void* target) {
    const std::size_t noted = session_.noted();
    try {
        static_cast<void>(function(*this, at, target, nullptr, nullptr));
    } catch (const ConversionError&) {
        note_current(session_);
    }
    return session_.noted() == noted;
}

void ValueWalker::report(const char* at, std::string_view problem) {
    detail::report(*spot_at(at).location, std::string(problem), session_);
}

void ValueWalker::throw_problem(const char* at, std::string_view problem) {
    detail::fail(*spot_at(at).location, std::string(problem));
}

void ValueWalker::throw_current(const char* at) {
    detail::fail_current(*spot_at(at).location);
}

std::string ValueWalker::problem(const char* at) {
    return problem_at(*spot_at(at).location);
}

} // namespace foundation::json::detail
