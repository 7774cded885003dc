#include <array>
#include <cstdint>

#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "config/user_profile.h"
#include "platform/headless/display.h"
#include "platform/headless/native.h"
#include "platform/headless/profile_strings.h"
#include "platform/main_form.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/line_record.h"

namespace qxterm::test::layout_test {
namespace {

using Place = std::array<std::int32_t, 4>;  ///< left, top, width, height; twips

/// The main window around its screen, at several resolutions and sizes of text.
class Layout : public ProgramTest {
protected:
    static constexpr std::int32_t scrollBar = 17;  // pixels

    static void startAt(std::int32_t width, std::int32_t height, std::int16_t twips) {
        headless::setDisplay(width, height, twips);
        vscterm.move({0, 0, scrollBar * twips, 0});
        start();
    }
    template <class Thing>
    static Place placeOf(const Thing& thing) {
        const TwipsRect place = thing.place();
        return {place.left, place.top, place.width, place.height};
    }
    /// The screen of 80 x 25 cells, the scroll bar beside it, and the window's inside, all in pixels.
    static void expectSizes(std::int32_t cellWidth, std::int32_t cellHeight, std::int32_t below,
                            std::int32_t twips) {
        const std::int32_t width = 80 * cellWidth;
        const std::int32_t height = 25 * cellHeight;
        EXPECT_EQ(placeOf(picterm), (Place{0, 0, width * twips, height * twips}));
        EXPECT_EQ(placeOf(vscterm), (Place{width * twips, 0, scrollBar * twips, height * twips}));
        const TwipsRect window = frmterm.place();
        EXPECT_EQ(window.width, (width + scrollBar) * twips);
        EXPECT_EQ(window.height, (height + below) * twips);
        EXPECT_EQ(screenWidthPixels, width);
        EXPECT_EQ(screenHeightPixels, height);
        EXPECT_EQ(charWidth, cellWidth);
        EXPECT_EQ(lineHeight, cellHeight);
    }
};

TEST_F(Layout, TheWindowIsSizedAroundTheScreen) {
    startAt(1024, 768, 15);
    expectSizes(9, 18, 0, 15);
}

TEST_F(Layout, AtAnotherResolutionTheSamePixelsAreFewerTwips) {
    startAt(1024, 768, 12);
    EXPECT_EQ(g_iTwipsX, 12);
    EXPECT_EQ(g_iTwipsY, 12);
    expectSizes(9, 18, 0, 12);
}

TEST_F(Layout, AProfileOfAnotherSizeResizesTheScreen) {
    startAt(1024, 768, 15);
    putProfile("little", {{"Font", "small"}});
    putProfile("middle", {{"Font", "medium"}});
    readUserProf("little");
    expectSizes(7, 15, 0, 15);
    readUserProf("middle");
    expectSizes(8, 16, 0, 15);
}

TEST_F(Layout, TheFaceFollowsTheLanguage) {
    startAt(1024, 768, 15);
    EXPECT_EQ(picterm.native->face, "Courier New");
    headless::resetAll();
    headless::setLanguage("jpn");
    startAt(1024, 768, 15);
    EXPECT_EQ(picterm.native->face, "QXTERM");
}

TEST_F(Layout, TheKeyBarStandsBelowTheScreen) {
    startAt(640, 480, 12);
    processInput("\x1b[?13l");
    // Two lines of 15 pixels on a button and three pixels four times: 42.
    expectSizes(7, 15, 42, 12);
    // Of 577 pixels 10 lie between the groups and 27 around and between the buttons; 540 are 67.5 for each.
    const std::array<std::int32_t, 8> lefts{3, 73, 144, 214, 295, 365, 436, 506};
    const std::array<std::int32_t, 8> widths{67, 68, 67, 68, 67, 68, 67, 68};
    for (std::size_t key = 0; key < 8; ++key) {
        EXPECT_EQ(placeOf(CScmdfkey[key]), (Place{lefts[key] * 12, 378 * 12, widths[key] * 12, 36 * 12}))
            << key;
        EXPECT_TRUE(CScmdfkey[key].visible()) << key;
    }
    processInput("\x1b[?13h");
    expectSizes(7, 15, 0, 12);
    for (const Button& button : CScmdfkey) EXPECT_FALSE(button.visible());
}

}  // namespace
}  // namespace qxterm::test::layout_test
