/// @file
/// A heap that other work has used, where new blocks do not lie next to each other.
#ifndef FOUNDATION_JSON_BENCH_TASKS_USED_HEAP_HPP
#define FOUNDATION_JSON_BENCH_TASKS_USED_HEAP_HPP

#include "documents.hpp"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace bench {

/// The heap of a program that has run for a long time: blocks of many sizes, most of them free.
class UsedHeap {
public:
    UsedHeap() {
        std::vector<std::unique_ptr<char[]>> blocks;
        for (int i = 0; i < 600'000; ++i) {
            blocks.emplace_back(new char[24 + 8 * sequence_.below(14)]);
        }
        for (std::size_t i = blocks.size(); i > 1; --i) {
            std::swap(blocks[i - 1], blocks[sequence_.below(i)]);
        }
        for (std::size_t i = 0; i < blocks.size(); i += 8) {
            used_.push_back(std::move(blocks[i]));
        }
    }

private:
    Sequence sequence_;
    std::vector<std::unique_ptr<char[]>> used_;
};

} // namespace bench

#endif
