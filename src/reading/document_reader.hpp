/// @file
/// Reads a document into objects of a caller's types: what is behind a DocumentReader.
#ifndef FOUNDATION_JSON_SRC_READING_DOCUMENT_READER_HPP
#define FOUNDATION_JSON_SRC_READING_DOCUMENT_READER_HPP

#include "grammar/cursor.hpp"
#include "grammar/whole_text.hpp"

#include <foundation/json/content.hpp>
#include <foundation/json/detail/number_parts.hpp>
#include <foundation/json/detail/text_source.hpp>
#include <foundation/json/read_options.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace foundation::json::detail {

/// What a document is not as wanted by: thrown instead of any description of it.
struct NotAsWanted {};

/// The rest of a text from its position on that a fast way may look at without counting bytes.
constexpr std::size_t room_behind = 128;

/// Reads the parts of one document.
///
/// Most documents repeat themselves: the same indentation at the same depth, the same names in the
/// same order in all objects of a class. What comes next is predicted from that and compared with
/// the text; what is there instead is read, and predicted from then on.
class DocumentCore final : public DocumentReader {
public:
    /// @param fast_end  before this, room_behind bytes from each position on may be read
    DocumentCore(std::string_view text, const char* fast_end, const ReadOptions& options) noexcept
        : fast_end_(fast_end), options_(options), cursor_(options, text) {}

    const char* begin(const char* at) { return skip_other_space(at); }
    void finish(const char* at) { cursor_.expect_end(at, at[-1]); }

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
    bool knows_lengths() const noexcept override { return false; }
    void expect_length(std::size_t length) noexcept override;
    Behind<std::size_t> next_element(const char* at) override;

    Behind<std::size_t> begin_object(const char* at, std::string& name) override;
    Behind<std::size_t> next_member(const char* at, std::string& name) override;
    const char* read_members(const char* at, const TextMembers& members, void* object,
                             const void* const* parts, const void* base) override;

    const char* use_again(const char* at, const TagOf* tag, UseAgain function,
                          const void* use) override;

    std::string problem(const char*) override { give_up(); }

    std::size_t noted() const noexcept override { return 0; }
    ErrorCollector* collect_errors(ErrorCollector*) noexcept override { return nullptr; }
    bool read_or_note(const char*, ReadAny, void*) override { give_up(); }
    void report(const char*, std::string_view) override { give_up(); }

    Defaults& defaults() noexcept override { return defaults_; }

    std::size_t expect_more(const char* first, const char* at,
                            std::size_t count) const noexcept override;

private:
    void throw_problem(const char*, std::string_view) override { give_up(); }
    void throw_current(const char*) override { throw; }
    void throw_noted() override { give_up(); }

    static constexpr std::int32_t unknown = -1;
    static constexpr std::size_t most_numbers = 64; ///< that are collected for a vector

    /// A name that is expected in objects of a class.
    struct Step {
        const char* text; ///< `"name":`, as TextMember has it
        std::uint32_t size;
        std::int32_t number; ///< in the table, or unknown
    };

    /// The names that objects of a class have had so far, in their order.
    struct Shape {
        const TextMembers* members;
        std::vector<Step> steps;
    };

    /// A position among the names of an object.
    struct Expected {
        Shape* shape; ///< null as long as the order is that of the table
        std::size_t step;
    };

    /// A name that has been read.
    struct Found {
        const char* at; ///< behind it
        Expected next;
        std::int32_t number; ///< of the member, or unknown
    };

    /// An object of a class that is read.
    struct Target {
        const TextMembers& members;
        const void* object;
        const void* const* parts; ///< the addresses of the members
        const void* base;         ///< as TextSource has it

        const void* base_of(const void* part) const noexcept;
    };

    bool is_fast(const char* at) const noexcept { return at < fast_end_; }
    bool is_at(const char* at, char byte) const noexcept { return cursor_.is_at(at, byte); }
    char byte_at(const char* at) const noexcept { return at != cursor_.end() ? *at : '\0'; }

    /// Whether a whole number stays what it is.
    bool is_exact(std::uint64_t number) const noexcept {
        return number <= largest_exact || options_.integers == ParseOptions::Integers::exact;
    }

    static bool is_token(char byte) noexcept {
        return static_cast<unsigned char>(byte) > ' ' && byte != '/';
    }
    static bool is_text_at(const char* at, const char* text, std::uint32_t size) noexcept;

    const char* skip_space(const char* at);
    const char* skip_usual_space(const char* at);
    const char* skip_other_space(const char* at);
    const char* skip_space_before_value(const char* at);
    const char* skip_usual_space_before_value(const char* at);
    static bool is_indentation(const char* at, std::size_t size) noexcept;
    bool begin_container(const char*& at, char open, char close);
    const char* separate(const char* at, char close, bool& more);
    const char* separate_otherwise(const char* at, char close, bool& more);

    template <class Seen>
    const char* read_class(const char* at, const Target& target);
    Found read_name(const char* at, const Target& target, Expected expected);
    Found find_member(const char* at, const Target& target, Expected expected);
    const char* read_in_order(const char* at, const Target& target, std::size_t& step, bool& more);
    const char* read_member(const char* at, const Target& target, std::size_t number);
    Shape& shape_of(const Target& target);
    Shape* find_shape(const TextMembers& members) const noexcept;
    const char* read_map_name(const char* at, std::string& name);

    const char* read_double(const char* at, double& target);
    const char* read_any_number(const char* at, NumberContent& target);
    template <class Number>
    const char* read_rare_number(const char* at, Number& target);
    Behind<long long> read_signed_number(const char* at, long long least, long long most);
    template <class Content>
    const char* read_content(const char* at, Content& target);
    template <class T>
    const char* read_numbers(const char* at, std::vector<T>& target);
    template <class T>
    void add_numbers(const T (&numbers)[most_numbers], std::vector<T>& target, const char* at);
    bool next_item(const char*& at, char close);
    const char* read_number(const char* at, double& target);
    const char* read_number(const char* at, int& target);

    template <std::size_t Size>
    const char* word(const char* at, const char (&word)[Size]);
    StringToken string(const char* at);
    StringToken long_string(const char* at);

    const char* skip_value(const char* at);
    const char* skip_scalar(const char* at);
    const char* skip_name(const char* at);

    const char* const fast_end_;
    std::size_t depth_ = 0;
    const ReadOptions& options_;
    Cursor<WholeText> cursor_;
    static constexpr std::size_t depths = 64;

    unsigned char indentation_[depths] = {}; ///< whitespace expected at each depth, in bytes
    unsigned char lengths_[depths] = {};     ///< of arrays expected at each depth
    const char* first_number_ = nullptr;     ///< of the array of numbers that is read
    bool has_long_room_ = false;             ///< whether that got it
    std::vector<std::unique_ptr<Shape>> shapes_;
    Defaults defaults_;
};

} // namespace foundation::json::detail

#endif
