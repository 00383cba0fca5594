/// @file
/// Reads the parts of a value as those of a document, to say what does not fit the type, and where.
#ifndef FOUNDATION_JSON_SRC_READING_VALUE_WALKER_HPP
#define FOUNDATION_JSON_SRC_READING_VALUE_WALKER_HPP

#include <foundation/json/content.hpp>
#include <foundation/json/detail/text_source.hpp>
#include <foundation/json/detail/value_source.hpp>
#include <foundation/json/members.hpp>

#include <cstddef>
#include <deque>
#include <optional>

namespace foundation::json::detail {

/// Gives what to() gives, with its errors. A position is the address of a Spot, and what is behind
/// a value has the same one.
class ValueWalker final : public DocumentReader {
public:
    ValueWalker(const Value& root, const ConvertOptions& options);

    /// The position of the root.
    const char* begin() const noexcept { return position_of(spots_.front()); }

    const char* read(const char* at, bool& target) override;
    const char* read(const char* at, std::string& target) override;
    const char* read(const char* at, double& target) override;
    const char* read(const char* at, float& target) override;
    const char* read(const char* at, long double& target) override;
    const char* read(const char* at, std::vector<double>& target) override;
    const char* read(const char* at, std::vector<int>& target) override;
    const char* read_value(const char* at, Value& target) override;
    const char* read_array(const char* at, Array& target) override;
    const char* read_object(const char* at, Object& target) override;
    Behind<long long> read_signed(const char* at, long long least, long long most) override;
    Behind<unsigned long long> read_unsigned(const char* at, unsigned long long most) override;
    Behind<std::size_t> read_enumerator(const char* at, const NameTable& names) override;
    Behind<std::size_t> read_null(const char* at) override;
    const char* expect_null(const char* at) override;

    Behind<std::size_t> begin_array(const char* at, std::size_t length) override;
    bool knows_lengths() const noexcept override { return true; }
    void expect_length(std::size_t) noexcept override {}
    Behind<std::size_t> next_element(const char* at) override;

    Behind<std::size_t> begin_object(const char* at, std::string& name) override;
    Behind<std::size_t> next_member(const char* at, std::string& name) override;
    const char* read_members(const char* at, const TextMembers& members, void* object,
                             const void* const* parts, const void* base) override;

    const char* use_again(const char* at, const TagOf* tag, UseAgain function,
                          const void* use) override;

    std::string problem(const char* at) override;

    std::size_t noted() const noexcept override { return session_.noted(); }
    ErrorCollector* collect_errors(ErrorCollector* collector) noexcept override;
    bool read_or_note(const char* at, ReadAny function, void* target) override;
    void report(const char* at, std::string_view problem) override;

    Defaults& defaults() noexcept override { return defaults_; }

    std::size_t expect_more(const char*, const char*, std::size_t) const noexcept override {
        return 0;
    }

private:
    void throw_problem(const char* at, std::string_view problem) override;
    void throw_current(const char* at) override;
    void throw_noted() override { session_.collector->fail(); }

    /// A value on the way from the root to the one that is read.
    struct Spot {
        std::size_t depth;
        const Value* value = nullptr;
        std::optional<Location> location;
        std::size_t index = 0;           ///< in the array around it, if it is an element
        Object::const_iterator member{}; ///< in the object around it, if it is of a map
    };

    static const char* position_of(const Spot& spot) noexcept {
        return reinterpret_cast<const char*>(&spot);
    }
    static Spot& spot_at(const char* at) noexcept {
        return *const_cast<Spot*>(reinterpret_cast<const Spot*>(at));
    }

    Spot& spot_within(const Spot& outer);
    const Spot& spot_around(const Spot& inner) const noexcept { return spots_[inner.depth - 1]; }
    template <class Key>
    void go_to(Spot& spot, const Value& value, Key key);
    void go_to_member(Spot& spot, std::string& name);

    template <class Content>
    const char* read_content(const char* at, Content& target);
    template <class Number>
    const char* read_number(const char* at, Number& target);
    template <class Integer>
    Integer read_integer(const char* at, std::uint64_t lowest, std::uint64_t highest);
    template <class T, class Read>
    const char* read_all(const char* at, std::vector<T>& target, const Read& read_one);

    Session session_;
    std::deque<Spot> spots_; ///< by depth; kept for its memory
    Defaults defaults_;
};

} // namespace foundation::json::detail

#endif
