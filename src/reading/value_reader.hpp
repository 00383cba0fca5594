/// @file
/// Reads the text of one value into a Value.
#ifndef FOUNDATION_JSON_SRC_READING_VALUE_READER_HPP
#define FOUNDATION_JSON_SRC_READING_VALUE_READER_HPP

#include "grammar/cursor.hpp"
#include "grammar/whole_text.hpp"
#include "grammar/window.hpp"
#include "reading/array_lengths.hpp"
#include "reading/pending_element.hpp"
#include "reading/reuse.hpp"
#include "reading/stack.hpp"

#include <cstddef>
#include <string>
#include <type_traits>

namespace foundation::json::detail {

/// Reads values one after the other. It cannot be used again after an exception.
///
/// It keeps open containers on a stack of its own, so nesting takes none of the thread's stack.
template <class Input>
class ValueReader {
public:
    /// @param cursor  its input and options must outlive the reader. A Window must keep the text
    ///                from each value on.
    /// @param depth   how many arrays and objects are open around the values
    explicit ValueReader(Cursor<Input>& cursor, std::size_t depth = 0) noexcept
        : cursor_(cursor), depth_(depth), lengths_(cursor.options()) {}

    /// Reads a value.
    /// @param at    where it begins; no space before it
    /// @param root  Undefined; unspecified after an exception
    /// @return the position behind it
    const char* read(const char* at, Value& root);

    /// Reads a value into one whose memory is used again, which is unspecified after an exception.
    const char* read_again(const char* at, Reuse& reuse);

private:
    class ElementSink;
    class MemberSink;
    class RootSink;

    /// An array or object that has been opened.
    struct Open {
        static constexpr std::size_t no_array = ~std::size_t{0};

        bool is_array() const noexcept { return first_pending != no_array; }

        union {
            Array* array;
            Object* object;
        };
        std::size_t first_pending; ///< of the elements of an array; no_array for an object
        std::size_t opening;       ///< the offset of the opening bracket
    };

    const char* read_elements(const char* at);
    const char* read_members(const char* at);
    void check_duplicate(const StringToken& name);

    template <class Sink>
    const char* open_container(const char* at, const Sink& sink);
    template <class Sink>
    const char* read_scalar(const char* at, const Sink& sink, bool after_comma);
    template <class Sink>
    const char* read_number(const char* at, const Sink& sink);
    template <class Sink>
    const char* read_any_number(const char* at, const Sink& sink);

    void open(Array& array, const char* at);
    void open(Object& object, const char* at);
    void push(const Open& container);
    void add_pending(const PendingElement& element);
    void make_room();
    void close_array(const char* end);
    void close_object(const char* end);
    void close(const char* end, const PendingElement& closed);

    Value* member_again(const StringToken& name);
    std::string& string_again(Value& before, const StringToken& token);
    void open_array_again(Value& before, const char* at);
    void open_object_again(Value& before, const char* at);
    void close_reused(const char* end);

    Opening opening() const;
    void take_pending(Array& array, std::size_t first);
    void take(Array& array, const PendingElement& element);

    template <class Content>
    Value& insert(Object& members, const StringToken& name, const Content& content);

    /// What offsets in the text count from.
    const char* base() const noexcept;

    /// A copy of a cursor on a whole text, which is small and so quicker to get at.
    std::conditional_t<Input::refills, Cursor<Input>&, Cursor<Input>> cursor_;
    const std::size_t depth_;
    Stack<Open> open_;
    bool child_closed_ = false; ///< whether the last thing read is the end of a container
    Stack<PendingElement> pending_;
    const char* element_ = nullptr;  ///< where the element begins that becomes pending, or ends
    ArrayLengths lengths_;           ///< of arrays with too many elements to be pending at once
    ContainerStack<Array> arrays_;   ///< open or pending arrays that are elements of arrays
    ContainerStack<Object> objects_; ///< the same for objects

    Reuse* reuse_ = nullptr;
    const Object* reused_ = nullptr; ///< the innermost object, if it is one from before

    const Array no_elements_;
    const Object no_members_;
    const std::string no_text_;
};

extern template class ValueReader<WholeText>;
extern template class ValueReader<Window>;

} // namespace foundation::json::detail

#endif
