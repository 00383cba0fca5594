// The syntax of JSON Pointers, and the exception of one that leads nowhere.
#include "access/pointer_steps.hpp"

#include <foundation/json/detail/quoted.hpp>
#include <foundation/json/pointer.hpp>

#include <stdexcept>
#include <utility>

namespace foundation::json {

PointerError::PointerError(std::string pointer, const std::string& problem)
    : std::runtime_error(detail::describe_location(pointer) + problem),
      pointer_(std::make_shared<const std::string>(std::move(pointer))) {}

PointerError::PointerError(const PointerError&) noexcept = default;
PointerError& PointerError::operator=(const PointerError&) noexcept = default;
PointerError::~PointerError() = default;

const std::string& PointerError::pointer() const noexcept {
    return *pointer_;
}

namespace detail {

namespace {

[[noreturn]] void refuse(std::string_view pointer, const char* reason) {
    throw std::invalid_argument(detail::quoted(pointer) + " is no JSON Pointer: " + reason);
}

} // namespace

void check_pointer(std::string_view pointer) {
    if (!pointer.empty() && pointer.front() != '/') {
        refuse(pointer, "it is not empty and does not begin with /");
    }
    for (std::size_t i = 0; i < pointer.size(); ++i) {
        if (pointer[i] == '~' &&
            (i + 1 == pointer.size() || (pointer[i + 1] != '0' && pointer[i + 1] != '1'))) {
            refuse(pointer, "~ is not followed by 0 or 1");
        }
    }
}

std::optional<std::size_t> index_of(std::string_view token, std::size_t length) noexcept {
    if (token == "-") {
        return length;
    }
    const bool has_leading_zero = token.size() > 1 && token.front() == '0';
    if (!looks_like_index(token) || has_leading_zero) {
        return std::nullopt;
    }
    std::size_t index = 0;
    for (const char digit : token) {
        index = index * 10 + static_cast<std::size_t>(digit - '0');
        if (index > length) {
            return length + 1; // before the index can overflow
        }
    }
    return index;
}

std::string_view PointerSteps::next() noexcept {
    const std::size_t begin = end_ + 1;
    const std::size_t slash = pointer_.find('/', begin);
    end_ = slash != std::string_view::npos ? slash : pointer_.size();
    return pointer_.substr(begin, end_ - begin);
}

} // namespace detail
} // namespace foundation::json
