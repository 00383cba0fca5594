/// @file
/// Tables of members and enumerators as constant arrays, for the library's other headers. Not for
/// programs: what is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_MEMBER_ARRAYS_HPP
#define FOUNDATION_JSON_DETAIL_MEMBER_ARRAYS_HPP

#include <foundation/json/members.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace foundation::json::detail {

/// Names, for functions that are compiled without knowing the type they belong to.
struct NameTable {
    const std::string_view* names;
    const std::uint32_t* sorted; // the numbers of the names, in the order of the names
    std::size_t count;
};

/// A table of members, likewise.
struct MemberTable {
    NameTable names;
    const bool* required;
    const void* const* pointers; // the address of each `Type Class::*`
};

template <class T>
inline constexpr bool has_members =
    !std::is_same_v<std::remove_cv_t<decltype(members<T>)>, NoTable>;

template <class T>
inline constexpr bool has_enumerators =
    !std::is_same_v<std::remove_cv_t<decltype(enumerators<T>)>, NoTable>;

// ---- The order of names --------------------------------------------------------------------

// Names are sorted by merging, and each round of it is a constant of its own: compilers limit the
// number of steps that they take for one constant.

template <std::size_t Count>
struct Order {
    std::uint32_t numbers[Count + 1]; // there are no arrays of length 0
};

/// As operator<, in fewer steps.
constexpr bool comes_before(std::string_view a, std::string_view b) {
    const std::size_t shorter = a.size() < b.size() ? a.size() : b.size();
    const char* const left = a.data();
    const char* const right = b.data();
    std::size_t i = 0;
    while (i < shorter && left[i] == right[i]) {
        ++i;
    }
    return i == shorter
               ? a.size() < b.size()
               : static_cast<unsigned char>(left[i]) < static_cast<unsigned char>(right[i]);
}

constexpr std::size_t first_run = 8;

/// The order within each run of a few names, by insertion.
template <std::size_t Count>
constexpr Order<Count> order_of_runs(const std::string_view* names) {
    Order<Count> order{};
    for (std::size_t i = 0; i < Count; ++i) {
        std::size_t j = i;
        for (; j % first_run != 0 && detail::comes_before(names[i], names[order.numbers[j - 1]]);
             --j) {
            order.numbers[j] = order.numbers[j - 1];
        }
        order.numbers[j] = static_cast<std::uint32_t>(i);
    }
    return order;
}

/// The order within runs of twice the length.
template <std::size_t Count>
constexpr Order<Count> merged(const std::string_view* names, const Order<Count>& runs,
                              std::size_t length) {
    Order<Count> order{};
    for (std::size_t begin = 0; begin < Count; begin += 2 * length) {
        const std::size_t middle = begin + length < Count ? begin + length : Count;
        const std::size_t end = middle + length < Count ? middle + length : Count;
        std::size_t first = begin;
        std::size_t second = middle;
        for (std::size_t i = begin; i < end; ++i) {
            const bool takes_second =
                first == middle ||
                (second != end &&
                 detail::comes_before(names[runs.numbers[second]], names[runs.numbers[first]]));
            order.numbers[i] = runs.numbers[takes_second ? second++ : first++];
        }
    }
    return order;
}

/// @tparam Names  has the members `names` and `count`
template <class Names, std::size_t Length>
struct Sorted {
    static constexpr Order<Names::count> order =
        detail::merged<Names::count>(Names::names, Sorted<Names, Length / 2>::order, Length / 2);
};

template <class Names>
struct Sorted<Names, first_run> {
    static constexpr Order<Names::count> order = detail::order_of_runs<Names::count>(Names::names);
};

constexpr std::size_t length_of_last_run(std::size_t count) {
    std::size_t length = first_run;
    while (length < count) {
        length *= 2;
    }
    return length;
}

template <class Names>
inline constexpr const std::uint32_t* sorted =
    Sorted<Names, detail::length_of_last_run(Names::count)>::order.numbers;

/// The number of a name that occurs twice; the count of all names if there is none.
template <class Names>
constexpr std::size_t find_repeated() {
    const std::uint32_t* const order = sorted<Names>;
    for (std::size_t i = 1; i < Names::count; ++i) {
        if (!detail::comes_before(Names::names[order[i - 1]], Names::names[order[i]])) {
            return order[i];
        }
    }
    return Names::count;
}

// ---- Members -------------------------------------------------------------------------------

/// Calls a visitor with each member of a table. Not by a fold: compilers limit the length of those.
/// @return true
template <class Class, class Type, class Visitor>
constexpr bool visit_members(const Member<Class, Type>& member, Visitor& visitor) {
    visitor(member);
    return true;
}

template <class Class, class Type, class Check, class Visitor>
constexpr bool visit_members(const CheckedMember<Class, Type, Check>& member, Visitor& visitor) {
    visitor(member);
    return true;
}

template <class... Members, class Visitor>
constexpr bool visit_members(const std::tuple<Members...>& table, Visitor& visitor) {
    return std::apply(
        [&](const Members&... each) {
            return detail::all_of({true, detail::visit_members(each, visitor)...});
        },
        table);
}

template <std::size_t... Numbers, class... Parts, class Visitor>
constexpr bool visit_members(const Table<std::index_sequence<Numbers...>, Parts...>& table,
                             Visitor& visitor) {
    return detail::all_of(
        {true, detail::visit_members(static_cast<const NumberedPart<Numbers, Parts>&>(table).part,
                                     visitor)...});
}

constexpr std::size_t sum_of(std::initializer_list<std::size_t> numbers) {
    std::size_t sum = 0;
    for (const std::size_t number : numbers) {
        sum += number;
    }
    return sum;
}

/// How many members there are in a part of a table.
template <class Part>
inline constexpr std::size_t member_count = 1;
template <class... Members>
inline constexpr std::size_t member_count<std::tuple<Members...>> = sizeof...(Members);
template <class Numbers, class... Parts>
inline constexpr std::size_t
    member_count<Table<Numbers, Parts...>> = detail::sum_of({0, member_count<Parts>...});

/// What a table says of its members but for their types, in their order.
template <class T, std::size_t Count>
struct CollectedMembers {
    std::string_view names[Count + 1] = {}; // there are no arrays of length 0
    bool required[Count + 1] = {};
    const void* pointers[Count + 1] = {};
    bool belong = true; // whether all are members of T
    std::size_t used = 0;

    template <class Class, class Type>
    constexpr void operator()(const Member<Class, Type>& member) {
        add(member.name, member.is_required, &member.pointer, std::is_base_of_v<Class, T>);
    }

    template <class Class, class Type, class Check>
    constexpr void operator()(const CheckedMember<Class, Type, Check>& member) {
        add(member.name, member.is_required, &member.checked, std::is_base_of_v<Class, T>);
    }

    constexpr void add(std::string_view name, bool is_required, const void* pointer, bool belongs) {
        names[used] = name.empty() ? "" : name; // data() is not null
        required[used] = is_required;
        pointers[used] = pointer;
        belong = belong && belongs;
        ++used;
    }
};

/// The table of T as arrays.
template <class T>
struct MembersOf {
    static constexpr std::size_t count = member_count<std::remove_cv_t<decltype(members<T>)>>;

    static constexpr CollectedMembers<T, count> collect() {
        CollectedMembers<T, count> result;
        detail::visit_members(members<T>, result);
        return result;
    }
    static constexpr CollectedMembers<T, count> collected = collect();
    static constexpr const std::string_view* names = collected.names;
};

/// The same, for compiled functions.
template <class T>
inline constexpr MemberTable member_table{
    {MembersOf<T>::names, sorted<MembersOf<T>>, MembersOf<T>::count},
    MembersOf<T>::collected.required,
    MembersOf<T>::collected.pointers};

/// The entry of a member with a check: another one if the check makes a difference to it.
template <class EntryOfMember, class Check, class = void>
struct CheckedEntry : EntryOfMember {};
template <class EntryOfMember, class Check>
struct CheckedEntry<EntryOfMember, Check,
                    std::void_t<typename EntryOfMember::template Checked<Check>>>
    : EntryOfMember::template Checked<Check> {};

/// One entry for each member of T: `EntryOf<T, Class, Type>::entry`, such as a function that reads
/// members of that type. Members of the same type share it. If a check makes a difference to it,
/// there is an `EntryOf<T, Class, Type>::Checked<Check>::entry`, too.
template <class T, class Entry, template <class, class, class> class EntryOf>
struct MemberEntries {
    Entry entries[MembersOf<T>::count + 1] = {};
    std::size_t used = 0;

    template <class Class, class Type>
    constexpr void operator()(const Member<Class, Type>&) {
        entries[used] = EntryOf<T, Class, Type>::entry;
        ++used;
    }

    template <class Class, class Type, class Check>
    constexpr void operator()(const CheckedMember<Class, Type, Check>&) {
        entries[used] = CheckedEntry<EntryOf<T, Class, Type>, Check>::entry;
        ++used;
    }

    static constexpr MemberEntries collect() {
        MemberEntries result;
        detail::visit_members(members<T>, result);
        return result;
    }
};

template <class T, class Entry, template <class, class, class> class EntryOf>
inline constexpr MemberEntries<T, Entry, EntryOf>
    member_entries = MemberEntries<T, Entry, EntryOf>::collect();

/// Refuses the name of two members; compilers show it with the error.
template <char... Name>
constexpr bool refuse_name_of_two_members() {
    constexpr bool refused = sizeof...(Name) == std::size_t(-1);
    static_assert(refused, "foundation::json::members names two members the same");
    return refused;
}

template <class T, std::size_t Number, std::size_t... I>
constexpr bool refuse_name_of_two_members(std::index_sequence<I...>) {
    return detail::refuse_name_of_two_members<MembersOf<T>::names[Number][I]...>();
}

/// Refuses, at compile time, a table of members with a mistake in it.
template <class T>
constexpr bool require_members() {
    constexpr bool valid = is_table<std::remove_cv_t<decltype(members<T>)>>;
    static_assert(valid, "foundation::json::members has to be a table(...) of what required(name, "
                         "member) and defaulted(name, member) return");
    if constexpr (valid) {
        constexpr bool belong = MembersOf<T>::collected.belong;
        static_assert(belong, "foundation::json::members names a member of another class, which is "
                              "no base of this one");
        constexpr std::size_t repeated = detail::find_repeated<MembersOf<T>>();
        if constexpr (repeated != MembersOf<T>::count) {
            return detail::refuse_name_of_two_members<T, repeated>(
                std::make_index_sequence<MembersOf<T>::names[repeated].size()>());
        } else {
            return belong;
        }
    } else {
        return false;
    }
}

// ---- Enumerators ---------------------------------------------------------------------------

template <class E, class Table>
inline constexpr std::size_t enumerator_count = 0;
template <class E, std::size_t Count>
inline constexpr std::size_t enumerator_count<E, std::array<std::pair<E, const char*>, Count>> =
    Count;

template <class E, class Table>
inline constexpr bool is_enumerator_table = false;
template <class E, std::size_t Count>
inline constexpr bool is_enumerator_table<E, std::array<std::pair<E, const char*>, Count>> = true;

/// The names of E's enumerators as an array.
template <class E>
struct EnumeratorsOf {
    static constexpr std::size_t count =
        enumerator_count<E, std::remove_cv_t<decltype(enumerators<E>)>>;

    struct Names {
        std::string_view names[count + 1] = {}; // there are no arrays of length 0
    };

    static constexpr Names collect() {
        Names result;
        for (std::size_t i = 0; i < count; ++i) {
            result.names[i] = enumerators<E>[i].second;
        }
        return result;
    }
    static constexpr Names collected = collect();
    static constexpr const std::string_view* names = collected.names;
};

/// The same, for compiled functions.
template <class E>
inline constexpr NameTable enumerator_table{EnumeratorsOf<E>::names, sorted<EnumeratorsOf<E>>,
                                            EnumeratorsOf<E>::count};

/// Refuses the name of two enumerators; compilers show it with the error.
template <char... Name>
constexpr bool refuse_name_of_two_enumerators() {
    constexpr bool refused = sizeof...(Name) == std::size_t(-1);
    static_assert(refused, "foundation::json::enumerators has the same name twice");
    return refused;
}

template <class E, std::size_t Number, std::size_t... I>
constexpr bool refuse_name_of_two_enumerators(std::index_sequence<I...>) {
    return detail::refuse_name_of_two_enumerators<EnumeratorsOf<E>::names[Number][I]...>();
}

/// Refuses, at compile time, a table of names with a mistake in it.
template <class E>
constexpr bool require_enumerators() {
    constexpr bool valid = is_enumerator_table<E, std::remove_cv_t<decltype(enumerators<E>)>>;
    static_assert(valid, "foundation::json::enumerators has to be a table<E>({{enumerator, "
                         "name}, ...}) with E this enumeration, or a std::array of std::pair<E, "
                         "const char*>");
    if constexpr (valid) {
        constexpr std::size_t repeated = detail::find_repeated<EnumeratorsOf<E>>();
        if constexpr (repeated != EnumeratorsOf<E>::count) {
            return detail::refuse_name_of_two_enumerators<E, repeated>(
                std::make_index_sequence<EnumeratorsOf<E>::names[repeated].size()>());
        } else {
            return true;
        }
    } else {
        return false;
    }
}

} // namespace foundation::json::detail

#endif
/// @endcond
