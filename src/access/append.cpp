#include "access/append.hpp"

#include <algorithm>
#include <stdexcept>

namespace foundation::json::detail {

namespace {

/// Appends an empty value of the visited kind, to exchange with the one visited.
class AppendEmpty : public boost::static_visitor<> {
public:
    explicit AppendEmpty(Array& elements) noexcept : elements_(elements) {}

    template <class Content>
    void operator()(const Content&) const {
        elements_.emplace_back(Content());
    }

private:
    Array& elements_;
};

void append_in_place(Array& elements, const Value* values, std::size_t count) {
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

} // namespace

void append(Array& elements, const Value* values, std::size_t count) {
    if (count <= elements.capacity() - elements.size()) {
        append_in_place(elements, values, count);
        return;
    }
    // A Value's move may throw, so moving the elements over one by one could fail half way. Instead
    // everything that can throw comes first, and the exchange with empty values of the same kinds,
    // which cannot, comes last.
    Array grown;
    grown.reserve(grown_capacity(elements, count));
    for (const Value& element : elements) {
        visit(AppendEmpty(grown), element);
    }
    append_in_place(grown, values, count);
    for (std::size_t i = 0; i != elements.size(); ++i) {
        grown[i].swap(elements[i]);
    }
    elements.swap(grown);
}

} // namespace foundation::json::detail
