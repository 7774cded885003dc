// Every parameter of a rendition, whatever the attribute was before.

#include <array>
#include <string>

#include "platform/headless/clock.h"
#include "terminal/drawing/drawing.h"
#include "terminal/model/input_busy.h"
#include "terminal/terminal_fixture.h"
#include "timers/timer_registry.h"

namespace qxterm::rendition_test {
namespace {

class Rendition : public test::TerminalTest {
protected:
    /// What the window shows in the first three cells, after the paints that wait.
    static std::string firstCells() {
        if (headless::paintsWaiting) headless::deliverPaints();
        return {cell(0, 0).text(), cell(1, 0).text(), cell(2, 0).text()};
    }
    /// The table of renditions: 1 shift-out, 2 bold, 4 underline, 8 blink, 16 reverse, 32 invisible.
    static AttrTriple expected(AttrTriple triple, int parameter) {
        const auto set = [&](int flags) { triple.flags = static_cast<std::int16_t>(triple.flags | flags); };
        const auto clear = [&](int flags) {
            triple.flags = static_cast<std::int16_t>(triple.flags & ~flags);
        };
        switch (parameter) {
            case 0: return {static_cast<std::int16_t>(triple.flags & 1), 7, 0};
            case 1: set(2); break;
            case 4: set(4); break;
            case 5: set(8); break;
            case 7: set(16); break;
            case 8: set(32); break;
            case 22: clear(63); break;
            case 24: clear(4); break;
            case 25: clear(8); break;
            case 27: clear(8 + 16); break;
            case 28: clear(32); break;
            case 39: triple.fg = 7; break;
            case 49: triple.bg = 0; break;
            default: break;
        }
        if (parameter >= 30 && parameter <= 37) triple.fg = static_cast<std::int16_t>(parameter - 30);
        if (parameter >= 40 && parameter <= 47) triple.bg = static_cast<std::int16_t>(parameter - 40);
        return triple;
    }
};

TEST_F(Rendition, EveryParameterFromAnyAttribute) {
    for (const AttrTriple before : {AttrTriple{63, 5, 3}, AttrTriple{0, 2, 6}, AttrTriple{1, 7, 7},
                                    AttrTriple{42, 1, 1}, AttrTriple{21, 6, 5}, AttrTriple{8, 0, 4}}) {
        for (int parameter = 0; parameter <= 110; ++parameter) {
            setCurrentAttr(before);
            host("\x1b[" + std::to_string(parameter) + "m");
            const AttrTriple wanted = expected(before, parameter);
            ASSERT_EQ(curAttr, wanted.flags) << parameter << " from " << before.flags;
            ASSERT_EQ(curFg, wanted.fg) << parameter << " from " << before.fg;
            ASSERT_EQ(curBg, wanted.bg) << parameter << " from " << before.bg;
        }
    }
}

TEST_F(Rendition, BlinkingTextGoesAndComesEachHalfSecond) {
    host("\x1b[5mAB\x1b[0mC");
    EXPECT_EQ(firstCells(), "ABC");
    for (int n = 0; n < 3; ++n) {
        headless::advance(500);
        EXPECT_EQ(firstCells(), "  C") << n;
        headless::advance(250);
        EXPECT_EQ(firstCells(), "  C") << n;
        headless::advance(250);
        EXPECT_EQ(firstCells(), "ABC") << n;
    }
    // In a reverse screen the cells are filled in white meanwhile.
    host("\x1b[?5h");
    headless::advance(500);
    EXPECT_EQ(firstCells(), "  C");
    EXPECT_EQ(cell(0, 0).bg(), 7);
    EXPECT_TRUE(textBlinkOff);
}

TEST_F(Rendition, TextDoesNotBlinkWhileABlockIsInterpreted) {
    host("\x1b[5mA");
    inputBusy = -1;
    headless::advance(500);
    EXPECT_EQ(firstCells(), "A  ");
    EXPECT_FALSE(textBlinkOff);
    inputBusy = 0;
    headless::advance(500);
    EXPECT_EQ(firstCells(), "   ");
}

}  // namespace
}  // namespace qxterm::rendition_test
