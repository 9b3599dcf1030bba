#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vantrel::fuzz {

/// Choices made from a string of bytes, one after the other. When the bytes are used up every choice is the
/// first one. The same bytes always make the same choices.
class Input {
public:
    explicit Input(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    bool isEmpty() const { return rest_.empty(); }

    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const std::uint8_t first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    /// Below `count`, which is neither 0 nor more than 65536.
    std::size_t below(std::size_t count) {
        const std::size_t number = count <= 256 ? byte() : byte() | byte() << 8;
        return number % count;
    }

    template <class List>
    const auto& oneOf(const List& list) {
        return list[below(std::size(list))];
    }

    bool flag() { return (byte() & 1) != 0; }

    std::uint64_t number() {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < sizeof bits; ++i) bits = bits << 8 | byte();
        return bits;
    }

    /// A size of the kind that file systems have: small ones are as likely as enormous ones.
    std::int64_t size() {
        const std::uint64_t bits = number() & INT64_MAX;
        return static_cast<std::int64_t>(bits >> below(63));
    }

    /// At most `limit` bytes of any value.
    std::string bytes(std::size_t limit);

    /// All that is left.
    std::string rest() { return bytes(rest_.size()); }

    /// Up to `limit` pieces: plain letters, digits and signs, characters that are hard to handle (combining,
    /// right-to-left, bidirectional controls, without a glyph), and sequences that are not UTF-8.
    std::string text(std::size_t limit);

    /// A name as a folder can hold it: 1 to 255 bytes without slash and zero byte, neither "." nor "..".
    std::string name(std::size_t pieces);

private:
    std::span<const std::uint8_t> rest_;
};

}  // namespace vantrel::fuzz
