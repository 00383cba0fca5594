// Values as messages show them.
#include "access/excerpt.hpp"
#include "number/number_parts.hpp"
#include "text/utf8.hpp"

#include <foundation/json/detail/quoted.hpp>
#include <foundation/json/number.hpp>

#include <cstddef>
#include <string_view>

namespace foundation::json::detail {

namespace {

constexpr std::size_t longest_excerpt = 40;
constexpr std::string_view ellipsis = "...";

/// The length of the character at the start of a text; 1 for a byte that is not UTF-8.
std::size_t length_of_character(std::string_view text) noexcept {
    if (is_ascii(text.front())) {
        return 1;
    }
    const Utf8Sequence sequence = utf8_sequence(text.data(), text.data() + text.size());
    return sequence.complete ? sequence.length : 1;
}

/// A string in quotes, cut between characters to a room of 5 bytes or more.
std::string excerpt_of(std::string_view text, std::size_t room) {
    std::string result = "\"";
    std::size_t cut = result.size(); // where the ellipsis and the quote still fit
    while (!text.empty()) {
        const std::size_t length = length_of_character(text);
        append_escaped(result, text.substr(0, length));
        text.remove_prefix(length);
        if (result.size() + 1 > room) {
            result.resize(cut);
            result += ellipsis;
            break;
        }
        if (result.size() + ellipsis.size() + 1 <= room) {
            cut = result.size();
        }
    }
    return result += '"';
}

/// Shows content within an array or object; of a container, only whether it is empty.
class InnerExcerpt {
public:
    explicit InnerExcerpt(std::size_t room) noexcept : room_(room) {}

    std::string operator()(Undefined) const { return "undefined"; }
    std::string operator()(Null) const { return "null"; }
    std::string operator()(bool flag) const { return flag ? "true" : "false"; }
    std::string operator()(const std::string& text) const { return excerpt_of(text, room_); }
    std::string operator()(const Array& elements) const {
        return elements.empty() ? "[]" : "[...]";
    }
    std::string operator()(const Object& members) const { return members.empty() ? "{}" : "{...}"; }

    template <class Number>
    std::string operator()(const Number& number) const {
        return text_of(parts_of(number), std::is_same_v<Number, float>);
    }

private:
    std::size_t room_;
};

/// Appends elements or members, until what is left of the room would not suffice for one.
/// @param show  gives the text of one, in a room of at least 5 bytes; a longer text does not fit
template <class Container, class Show>
std::string excerpt_of(const Container& container, char opening, char closing, const Show& show) {
    std::string result(1, opening);
    std::size_t left = container.size();
    for (const auto& item : container) {
        --left;
        const std::size_t behind = left == 0 ? 1 : 1 + ellipsis.size() + 1;
        const std::size_t used = result.size() + behind;
        const std::size_t room = used < longest_excerpt ? longest_excerpt - used : 0;
        const std::string text = room < 5 ? std::string() : show(item, room);
        if (text.empty() || text.size() > room) {
            result += ellipsis;
            break;
        }
        result += text;
        if (left != 0) {
            result += ',';
        }
    }
    return result += closing;
}

/// Shows the content of a value.
struct Excerpt {
    std::string operator()(const Array& elements) const {
        return excerpt_of(elements, '[', ']', [](const Value& element, std::size_t room) {
            return visit(InnerExcerpt(room), element);
        });
    }

    std::string operator()(const Object& members) const {
        return excerpt_of(members, '{', '}', [](const auto& member, std::size_t room) {
            // A colon and at least 5 bytes of the value follow the name.
            if (room < 11) {
                return std::string();
            }
            std::string text = excerpt_of(member.first, room - 6) + ':';
            const std::size_t left = room - text.size();
            const std::string value = visit(InnerExcerpt(left), member.second);
            return text += value.size() <= left ? value : ellipsis;
        });
    }

    template <class Scalar>
    std::string operator()(const Scalar& content) const {
        return InnerExcerpt(longest_excerpt)(content);
    }
};

} // namespace

std::string excerpt(const Value& value) {
    return visit(Excerpt(), value);
}

} // namespace foundation::json::detail
