// The memory that one contender's operations take; compiled once for each, with its header.
#include CONTENDER_HEADER

#include "counted_memory.hpp"
#include "memory.hpp"

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// Counts what is written and keeps nothing.
class CountingBuffer : public std::streambuf {
public:
    std::size_t count() const { return count_; }

protected:
    int_type overflow(int_type byte) override {
        count_ += traits_type::eq_int_type(byte, traits_type::eof()) ? 0 : 1;
        return traits_type::not_eof(byte);
    }
    std::streamsize xsputn(const char*, std::streamsize size) override {
        count_ += static_cast<std::size_t>(size);
        return size;
    }

private:
    std::size_t count_ = 0;
};

template <class MakeText>
void measure_text(bench::MemoryResult& result, MakeText make_text) {
    result.peak_bytes = bench::peak_memory([&] {
        const auto text = make_text();
        result.text_bytes = std::string_view(text).size();
    });
}

template <class Any>
std::vector<bench::MemoryResult> measure(const bench::Document& document) {
    const auto value = Any::parse(document.text);
    std::vector<bench::MemoryResult> results;
    const auto add = [&](const char* task) -> bench::MemoryResult& {
        return results.emplace_back(bench::MemoryResult{task, Any::name, 0, 0});
    };

    measure_text(add("serialize"), [&] { return Any::serialize(value); });
    if constexpr (Any::has_pretty_layout) {
        measure_text(add("pretty_print"), [&] { return Any::pretty_print(value); });
    }
    CountingBuffer buffer;
    std::ostream stream(&buffer);
    auto& written = add("write to a stream");
    written.peak_bytes = bench::peak_memory([&] { Any::write(stream, value); });
    written.text_bytes = buffer.count();
    return results;
}

const bool added = [] {
    bench::memory_contenders().push_back(measure<Contender>);
    return true;
}();

} // namespace
