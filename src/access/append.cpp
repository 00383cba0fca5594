#include "access/append.hpp"

#include <algorithm>
#include <stdexcept>

namespace foundation::json::detail {

namespace {

void append_in_place(Array& elements, const Value* values, std::size_t count) {
    if (count == 1) {
        elements.push_back(*values);
        return;
    }
    const std::size_t old_size = elements.size();
    try {
        std::for_each(values, values + count,
                      [&](const Value& value) { elements.push_back(value); });
    } catch (...) {
        elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(old_size), elements.end());
        throw;
    }
}

std::size_t grown_capacity(const Array& elements, std::size_t count) {
    if (count > elements.max_size() - elements.size()) {
        throw std::length_error("foundation::json: array too long");
    }
    const std::size_t needed = elements.size() + count;
    const bool can_double = elements.capacity() <= elements.max_size() / 2;
    return can_double ? std::max(needed, 2 * elements.capacity()) : elements.max_size();
}

/// Appends an empty value of the visited kind, or the visited number itself: what can be exchanged
/// with the visited content without failing.
class AppendCounterpart : public boost::static_visitor<> {
public:
    explicit AppendCounterpart(Array& elements) noexcept : elements_(elements) {}

    template <class Scalar>
    void operator()(const Scalar& scalar) const {
        elements_.emplace_back(scalar);
    }

    void operator()(const std::string&) const { elements_.emplace_back(std::string()); }
    void operator()(const Array&) const { elements_.emplace_back(Array()); }
    void operator()(const Object&) const { elements_.emplace_back(Object()); }

private:
    Array& elements_;
};

void append_growing(Array& elements, const Value* values, std::size_t count) {
    // A Value's move may throw, so moving the elements over one by one could fail half way. Instead
    // all that can throw comes first, and the exchange of contents, which cannot, comes last.
    Array grown;
    grown.reserve(grown_capacity(elements, count));
    for (const Value& element : elements) {
        visit(AppendCounterpart(grown), element);
    }
    append_in_place(grown, values, count);
    for (std::size_t i = 0; i != elements.size(); ++i) {
        grown[i].swap(elements[i]);
    }
    elements.swap(grown);
}

} // namespace

void append(Array& elements, const Value* values, std::size_t count) {
    if (count <= elements.capacity() - elements.size()) {
        append_in_place(elements, values, count);
    } else {
        append_growing(elements, values, count);
    }
}

} // namespace foundation::json::detail
