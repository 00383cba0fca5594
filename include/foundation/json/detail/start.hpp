/// @file
/// What conversion to a type starts from, for the library's other headers. Not for programs: what
/// is here may change in every version.
/// @cond
#ifndef FOUNDATION_JSON_DETAIL_START_HPP
#define FOUNDATION_JSON_DETAIL_START_HPP

#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

namespace foundation::json::detail {

/// An object that to() would read into.
struct Found {
    const void* object = nullptr; ///< null if it is not known
    bool is_read = true;          ///< whether the type can be read at all
};

/// The default objects of classes, each made when it is asked for the first time.
class Defaults {
public:
    /// @throws std::bad_alloc memory runs out. Other exceptions of the constructor are kept back:
    ///         then the object is not known.
    template <class T>
    Found find() {
        if constexpr (std::is_default_constructible_v<T>) {
            for (const Entry* entry = first_.get(); entry != nullptr; entry = entry->next.get()) {
                if (entry->type == &EntryOf<T>::key) {
                    return {entry->object, true};
                }
            }
            auto entry = std::make_unique<EntryOf<T>>();
            entry->next = std::move(first_);
            first_ = std::move(entry);
            return {first_->object, true};
        } else {
            return {nullptr, false};
        }
    }

private:
    struct Entry {
        explicit Entry(const void* key) noexcept : type(key) {}
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        virtual ~Entry() = default;

        const void* type;
        const void* object = nullptr;
        std::unique_ptr<Entry> next;
    };

    template <class T>
    struct EntryOf : Entry {
        EntryOf() : Entry(&key) {
            try {
                object = std::addressof(made.emplace());
            } catch (const std::bad_alloc&) {
                throw;
            } catch (...) { // the object stays unknown
            }
        }

        static constexpr char key = 0;
        std::optional<T> made;
    };

    std::unique_ptr<Entry> first_;
};

/// What to() starts from at a location: a new object, or a part of what it starts from around that
/// location. Nothing is made before somebody asks for the object.
class Start {
public:
    using Find = Found (*)(const Start& start, Defaults& defaults);

    /// @param find   finds the object
    /// @param outer  what the object is a part of, if it is
    /// @param which  the address of the `Type Class::*` of the part; null for an element
    /// @param index  of the element
    explicit Start(Find find, const Start* outer = nullptr, const void* which = nullptr,
                   std::size_t index = 0) noexcept
        : find_(find), outer_(outer), which_(which), index_(index) {}

    Found object(Defaults& defaults) const { return find_(*this, defaults); }

    const Start& outer() const noexcept { return *outer_; }
    const void* which() const noexcept { return which_; }
    std::size_t index() const noexcept { return index_; }

private:
    Find find_;
    const Start* outer_;
    const void* which_;
    std::size_t index_;
};

/// Where to() reads into a new T.
template <class T>
Start new_object() noexcept {
    return Start([](const Start&, Defaults& defaults) { return defaults.find<T>(); });
}

/// Where to() reads into a member of a T, which has the type Type and is declared in Class.
template <class T, class Class, class Type>
Start part_of(const Start& outer, const void* member) noexcept {
    return Start(
        [](const Start& start, Defaults& defaults) {
            Found found = start.outer().object(defaults);
            if (found.object != nullptr) {
                const auto pointer = *static_cast<Type Class::*const*>(start.which());
                found.object = std::addressof(static_cast<const T*>(found.object)->*pointer);
            }
            return found;
        },
        &outer, member);
}

/// Where to() reads into an element of a std::array.
template <class Array>
Start element_of(const Start& outer, std::size_t index) noexcept {
    return Start(
        [](const Start& start, Defaults& defaults) {
            Found found = start.outer().object(defaults);
            if (found.object != nullptr) {
                found.object =
                    std::addressof((*static_cast<const Array*>(found.object))[start.index()]);
            }
            return found;
        },
        &outer, nullptr, index);
}

/// Where to() reads into an element of a std::pair or std::tuple.
template <class Tuple, std::size_t Index>
Start element_of(const Start& outer) noexcept {
    return Start(
        [](const Start& start, Defaults& defaults) {
            Found found = start.outer().object(defaults);
            if (found.object != nullptr) {
                found.object =
                    std::addressof(std::get<Index>(*static_cast<const Tuple*>(found.object)));
            }
            return found;
        },
        &outer);
}

} // namespace foundation::json::detail

#endif
/// @endcond
