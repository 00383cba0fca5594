/// @file
/// Reads the text of one value into a Value.
#ifndef FOUNDATION_JSON_SRC_READING_PARSER_HPP
#define FOUNDATION_JSON_SRC_READING_PARSER_HPP

#include "grammar/errors.hpp"
#include "grammar/strings.hpp"
#include "reading/array_lengths.hpp"
#include "reading/open_containers.hpp"
#include "reading/stack.hpp"
#include "value/value_access.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace foundation::json::detail {

/// An element that has been read, but is not in its array yet.
///
/// Values that hold containers are expensive to move, so the parser makes the elements of an array
/// once it knows how many there are. Until then a string stays in the text, and the parser owns a
/// container.
struct PendingElement {
    enum class Kind : std::uint8_t {
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

    explicit PendingElement(Null) noexcept : boolean(false), tag(Kind::null) {}
    explicit PendingElement(bool value) noexcept : boolean(value), tag(Kind::boolean) {}
    explicit PendingElement(double value) noexcept : number(value), tag(Kind::number) {}
    explicit PendingElement(long long value) noexcept : int64(value), tag(Kind::int64) {}
    explicit PendingElement(unsigned long long value) noexcept : uint64(value), tag(Kind::uint64) {}
    explicit PendingElement(const StringToken& token) noexcept
        : text(token.text),
          tag(token.escaped ? Kind::escaped_string : Kind::string, token.size()) {}
    explicit PendingElement(Array* value) noexcept : array(value), tag(Kind::array) {}
    explicit PendingElement(Object* value) noexcept : object(value), tag(Kind::object) {}

    /// The kind and, for a string, its size in the text, in one word.
    class Tag {
    public:
        Tag() = default;
        explicit Tag(Kind kind, std::size_t size = 0) noexcept
            : bits_(std::uint64_t{size} << 8 | static_cast<std::uint64_t>(kind)) {}

        Kind kind() const noexcept { return static_cast<Kind>(bits_ & 0xFF); }
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
        const char* text;
        Array* array;
        Object* object;
    };
    Tag tag;
};

/// Reads one value; another one takes another parser.
///
/// It keeps open containers on a stack of its own, so nesting takes none of the thread's stack.
class Parser {
public:
    /// @param text  must outlive the parser, and so must the options
    Parser(std::string_view text, const ParseOptions& options)
        : Parser(text, text, TextPosition(), options) {
        if (text.substr(0, byte_order_mark.size()) == byte_order_mark) {
            begin_ += byte_order_mark.size();
        }
    }

    /// @param value    the part of the text to read
    /// @param context  the text as far as it is known, for errors to quote
    /// @param begin    where the context begins in the whole input
    Parser(std::string_view value, std::string_view context, const TextPosition& begin,
           const ParseOptions& options)
        : begin_(value.data()),
          end_(value.data() + value.size()),
          options_(options),
          errors_(context, begin, options),
          lengths_(end_, options.comments) {}

    /// Reads the value of the whole text.
    /// @param root  Undefined; unspecified after an exception
    void read(Value& root);

private:
    class ElementSink;
    class MemberSink;
    class RootSink;

    // Functions that read take the place where they begin and return the one behind what they read.

    const char* read_elements(const char* place);
    const char* read_members(const char* place);
    bool find_first(const char*& place, char close) const;
    bool find_next(const char*& place, char close) const;
    StringToken read_name(const char* place);

    template <class Sink>
    const char* open_container(const char* place, const Sink& sink);
    template <class Sink>
    const char* read_scalar(const char* place, const Sink& sink, bool after_comma);
    template <std::size_t Size, class Content, class Sink>
    const char* read_word(const char* begin, const char (&word)[Size], Content content,
                          const Sink& sink);
    template <class Sink>
    const char* read_number(const char* place, const Sink& sink);
    template <class Sink>
    const char* read_usual_number(const char* place, const Sink& sink);
    template <class Sink>
    const char* read_any_number(const char* place, const Sink& sink);
    template <class Sink>
    void take_large_integer(const char* place, const NumberToken& token, const Sink& sink);

    void open(Array& array);
    void add_pending(const PendingElement& element);
    void make_room();
    void close_array(const char* end);
    void close_object(const char* end);
    void close(const char* end, const PendingElement& closed);
    const char* opening(const char* place) const;
    void take_pending(Array& array, std::size_t first);
    void take(Array& array, const PendingElement& element);

    template <class Content>
    Value& insert(Object& members, const StringToken& name, const Content& content);

    const char* skip_space(const char* place) const;
    const char* skip_long_space(const char* place) const;
    const char* skip_comment(const char* place) const;
    bool is_at(const char* place, char byte) const noexcept {
        return place != end_ && *place == byte;
    }
    /// Whether an array or object begins at a place.
    bool is_opening(const char* place) const noexcept {
        return is_at(place, '[') || is_at(place, '{');
    }

    const char* begin_;
    const char* end_;
    const ParseOptions& options_;
    Errors errors_;

    OpenContainers open_;
    bool child_closed_ = false; ///< whether the last thing read is the end of a container
    Stack<PendingElement> pending_;
    const char* element_ = nullptr;  ///< where the element begins that becomes pending, or ends
    ArrayLengths lengths_;           ///< of arrays with too many elements to be pending at once
    ContainerStack<Array> arrays_;   ///< open or pending arrays that are elements of arrays
    ContainerStack<Object> objects_; ///< the same for objects

    const Array no_elements_;
    const Object no_members_;
    const std::string no_text_;
};

} // namespace foundation::json::detail

#endif
