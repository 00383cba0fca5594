/// @file
/// Blocks of sixteen bytes of text, which find their whitespace, quotes, brackets and so on.
#ifndef FOUNDATION_JSON_SRC_TEXT_BYTE_BLOCK_HPP
#define FOUNDATION_JSON_SRC_TEXT_BYTE_BLOCK_HPP

#include "text/byte_vector.hpp"
#include "text/escapes.hpp"

#include <cstddef>
#include <cstdint>

namespace foundation::json::detail {

/// The bytes that are special by a rule.
template <class Rule, class Bytes>
Bytes special_bytes(const Bytes& bytes) noexcept {
    constexpr unsigned char last_control = 0x1F;
    const Bytes quotes = bytes.equal_to('"') | bytes.equal_to('\\');
    const Bytes special = (Rule::stops_beyond_ascii ? bytes.at_most_or_beyond_ascii(last_control)
                                                    : bytes.at_most(last_control)) |
                          quotes;
    return Rule::escapes_solidus ? special | bytes.equal_to('/') : special;
}

/// All bits of sixteen bytes, then none of sixteen more: from an index on, what keeps the first
/// bytes of a block.
constexpr char keep_first[32] = "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF";

/// Sixteen bytes of text, which find the first byte of a class.
template <class Bytes>
class BlockOf {
public:
    static constexpr std::size_t size = 16;

    /// A set of the bytes of a block.
    using Mask = typename Bytes::Mask;

    explicit BlockOf(const char* from) noexcept : bytes_(from) {}

    /// Of two words that are adjacent in memory.
    BlockOf(std::uint64_t first, std::uint64_t second) noexcept : bytes_(first, second) {}

    void store(char* out) const noexcept { bytes_.store(out); }

    /// All bytes but spaces, tabs, line feeds and carriage returns.
    Mask not_blank() const noexcept {
        const Bytes blanks = (bytes_.equal_to(' ') | bytes_.equal_to('\n')) |
                             (bytes_.equal_to('\r') | bytes_.equal_to('\t'));
        return blanks.mask().complement();
    }

    /// The bytes that another block has otherwise.
    Mask differing(const BlockOf& other) const noexcept {
        return bytes_.equal_to(other.bytes_).mask().complement();
    }

    /// All bytes but spaces.
    Mask not_space() const noexcept { return bytes_.equal_to(' ').mask().complement(); }

    /// The bytes that are special by a rule.
    template <class Rule>
    Mask special() const noexcept {
        return special_bytes<Rule>(bytes_).mask();
    }

    /// The bytes of a string that cannot be skipped: quotes, backslashes, control bytes and all
    /// beyond ASCII.
    Mask special_in_string() const noexcept {
        return special<EscapeRule<Solidus::raw, BeyondAscii::special>>();
    }

    /// The same without those beyond ASCII.
    Mask special_in_utf8() const noexcept {
        return special<EscapeRule<Solidus::raw, BeyondAscii::plain>>();
    }

    /// The value of each decimal digit, and more than 9 for any other byte.
    BlockOf digit_values() const noexcept { return BlockOf(bytes_.digit_values()); }

    /// The bytes that are no values of digits.
    Mask not_digit_values() const noexcept { return bytes_.at_most(9).mask().complement(); }

    /// The number of sixteen digits that have these values, with zeros in place of all but the
    /// first ones.
    std::uint64_t decimal(std::size_t count) const noexcept {
        return (bytes_ & Bytes(keep_first + size - count)).decimal();
    }

    bool is_ascii() const noexcept { return bytes_.is_ascii(); }

    friend BlockOf operator|(const BlockOf& left, const BlockOf& right) noexcept {
        return BlockOf(left.bytes_ | right.bytes_);
    }

    /// Quotes, slashes, commas and brackets.
    Mask structural() const noexcept {
        const Bytes lower = bytes_.in_lower_case(); // [ and ] become { and }
        const Bytes brackets = lower.equal_to('{') | lower.equal_to('}');
        return ((brackets | bytes_.equal_to(',')) | (bytes_.equal_to('"') | bytes_.equal_to('/')))
            .mask();
    }

private:
    explicit BlockOf(Bytes bytes) noexcept : bytes_(bytes) {}

    Bytes bytes_;
};

using Block = BlockOf<Vector>;
using PortableBlock = BlockOf<PortableVector>;

} // namespace foundation::json::detail

#endif
