#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>

#include "terminal/interpreter/printable_scan.h"

namespace qxterm::printable_run_test {
namespace {

TEST(PrintableRun, Counts32To254) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const std::size_t expected = byte >= 32 && byte <= 254 ? 1 : 0;
        EXPECT_EQ(printableRunPlain(&c, 1), expected) << byte;
        EXPECT_EQ(printableRun(&c, 1), expected) << byte;
    }
}

// One byte of every value at every place of a text of every length, the text at every alignment; what stands
// around it is printable, so a read past the end would be counted.
TEST(PrintableRun, AgreesWithTheByteLoopEverywhere) {
    alignas(16) char store[64];
    for (std::size_t alignment = 0; alignment < 8; ++alignment) {
        for (std::size_t length = 0; length <= 40; ++length) {
            char* const text = store + alignment;
            for (std::size_t place = 0; place < length; ++place) {
                for (int byte = 0; byte < 256; ++byte) {
                    std::fill(std::begin(store), std::end(store), 'x');
                    text[place] = static_cast<char>(byte);
                    const std::size_t expected = byte >= 32 && byte != 255 ? length : place;
                    ASSERT_EQ(printableRun(text, length), expected)
                        << "byte " << byte << " at " << place << " of " << length << ", alignment "
                        << alignment;
                }
            }
        }
    }
}

TEST(PrintableRun, FirstOfSeveralControlsEndsIt) {
    std::mt19937 random{20};
    for (int round = 0; round < 200000; ++round) {
        std::string text(random() % 41, '\0');
        for (char& c : text) c = static_cast<char>(random() % 4 == 0 ? random() % 256 : 32 + random() % 223);
        ASSERT_EQ(printableRun(text.data(), text.size()), printableRunPlain(text.data(), text.size()))
            << round;
    }
}

TEST(PrintableRun, EmptyTextHasNone) {
    EXPECT_EQ(printableRun("x", 0), 0U);
    EXPECT_EQ(printableRunPlain("x", 0), 0U);
}

}  // namespace
}  // namespace qxterm::printable_run_test
