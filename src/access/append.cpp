#include "access/append.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

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
    return std::min(std::max(needed, 2 * elements.capacity()), elements.max_size());
}

/// Swaps values with as many others from which they were moved, or which were moved from them.
/// Moving keeps the kind, so this cannot fail.
void exchange(Value* values, const Value* values_end, Value* others) noexcept {
    for (; values != values_end; ++values, ++others) {
        values->swap(*others);
    }
}

/// Moves values to the end of an array with sufficient capacity. If anything throws, they stay
/// where they were.
void move_over(Array& target, Array& values) {
    const std::size_t old_size = target.size();
    try {
        for (Value& value : values) {
            target.push_back(std::move(value));
        }
    } catch (...) {
        exchange(target.data() + old_size, target.data() + target.size(), values.data());
        throw;
    }
}

void append_growing(Array& elements, const Value* values, std::size_t count) {
    Array grown;
    grown.reserve(grown_capacity(elements, count));
    // Copies before moves, since the copied values may be among those that are moved.
    Array copies(values, values + count);
    move_over(grown, elements);
    try {
        move_over(grown, copies);
    } catch (...) {
        exchange(elements.data(), elements.data() + elements.size(), grown.data());
        throw;
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
