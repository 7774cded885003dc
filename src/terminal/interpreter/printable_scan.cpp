#include "terminal/interpreter/printable_scan.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace qxterm {

std::size_t printableRunPlain(const char* text, std::size_t length) {
    std::size_t count = 0;
    while (count < length && isPrintable(static_cast<unsigned char>(text[count]))) ++count;
    return count;
}

std::size_t printableRun(const char* text, std::size_t length) {
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t ones = 0x0101010101010101U;
        constexpr std::uint64_t highBits = 0x8080808080808080U;
        constexpr std::uint64_t above31 = 0xE0E0E0E0E0E0E0E0U;
        std::size_t at = 0;
        for (; at + 8 <= length; at += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, text + at, 8);
            // The lowest byte that is zero raises its high bit exactly; bytes behind it may do so by a
            // borrow.
            const std::uint64_t controls = word & above31;
            const std::uint64_t inverted = ~word;
            const std::uint64_t found =
                (((controls - ones) & ~controls) | ((inverted - ones) & ~inverted)) & highBits;
            if (found != 0) return at + static_cast<std::size_t>(std::countr_zero(found)) / 8;
        }
        return at + printableRunPlain(text + at, length - at);
    } else {
        return printableRunPlain(text, length);
    }
}

}  // namespace qxterm
