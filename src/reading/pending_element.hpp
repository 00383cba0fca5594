/// @file
/// Elements that have been read, but are not in their array yet.
#ifndef FOUNDATION_JSON_SRC_READING_PENDING_ELEMENT_HPP
#define FOUNDATION_JSON_SRC_READING_PENDING_ELEMENT_HPP

#include "grammar/strings.hpp"

#include <foundation/json/content.hpp>

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

/// An element that has been read, but is not in its array yet.
///
/// Values that hold containers are expensive to move, so the elements of an array are made once it
/// is known how many there are. Until then a string stays in the text, and the reader owns a
/// container.
struct PendingElement {
    enum class Type : std::uint8_t {
        null,
        boolean,
        number,
        int64,
        uint64,
        string,
        escaped_string,
        array,
        object,
    };

    explicit PendingElement(Null) noexcept : boolean(false), tag(Type::null) {}
    explicit PendingElement(bool value) noexcept : boolean(value), tag(Type::boolean) {}
    explicit PendingElement(double value) noexcept : number(value), tag(Type::number) {}
    explicit PendingElement(long long value) noexcept : int64(value), tag(Type::int64) {}
    explicit PendingElement(unsigned long long value) noexcept : uint64(value), tag(Type::uint64) {}
    /// @param base  the string stays at its offset from here
    PendingElement(const StringToken& token, const char* base) noexcept
        : offset(static_cast<std::size_t>(token.text - base)),
          tag(token.escaped ? Type::escaped_string : Type::string, token.size()) {}
    explicit PendingElement(Array* value) noexcept : array(value), tag(Type::array) {}
    explicit PendingElement(Object* value) noexcept : object(value), tag(Type::object) {}

    /// The string that is pending.
    StringToken token(const char* base) const noexcept {
        const char* const text = base + offset;
        return {text, text + tag.size(), StringError::none, tag.type() == Type::escaped_string};
    }

    /// The type and, for a string, its size in the text, in one word.
    class Tag {
    public:
        Tag() = default;
        explicit Tag(Type type, std::size_t size = 0) noexcept
            : bits_(std::uint64_t{size} << 8 | static_cast<std::uint64_t>(type)) {}

        Type type() const noexcept { return static_cast<Type>(bits_ & 0xFF); }
        std::size_t size() const noexcept { return static_cast<std::size_t>(bits_ >> 8); }

    private:
        std::uint64_t bits_;
    };

    PendingElement() = default;

    union {
        bool boolean;
        double number;
        long long int64;
        unsigned long long uint64;
        std::size_t offset;
        Array* array;
        Object* object;
    };
    Tag tag;
};

} // namespace foundation::json::detail

#endif
