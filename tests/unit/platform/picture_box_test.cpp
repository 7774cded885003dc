#include "platform/picture_box.h"

#include "platform/event_loop.h"
#include "platform/headless/display.h"
#include "platform/headless/picture_box.h"
#include "platform/headless_fixture.h"

namespace qxterm::test::picture_box_test {
namespace {

constinit Form form{"frmPicture", FormKind::dialog, 1, ""};
PictureBox box{form, "picTest", 1};

/// Column and row, columns and rows.
std::string areaText(const CellArea& area) {
    return std::to_string(area.column) + "," + std::to_string(area.row) + " " + std::to_string(area.columns) +
           "x" + std::to_string(area.rows);
}

/// 640 x 400 pixels: 80 x 25 cells of 8 x 16.
class PictureBoxTest : public HeadlessTest {
protected:
    void SetUp() override {
        HeadlessTest::SetUp();
        headless::setRecording("window", false);
        box.onPaint.connect("paint", [] { lines.push_back("paint " + areaText(box.clipBox())); });
        box.onPaintMessage.connect("message", [] { lines.emplace_back("message"); });
        form.show();
        box.move({0, 0, 640 * 15, 400 * 15});
        box.setFontSize(10);
        setCells(8, 16);
        eventLoop::doEvents();
        lines.clear();
    }
    static void setCells(std::int32_t width, std::int32_t height) {
        std::array<std::int32_t, pictureColumns> advances{};
        advances.fill(width);
        box.setCellSize(width, height, advances);
    }
};

TEST_F(PictureBoxTest, MeasuresOfTheThreeFontSizesInTwips) {
    headless::setDisplay(1024, 768, 12);
    const auto measures = [](float points) {
        box.setFontSize(points);
        return std::pair{box.textWidth("M"), box.textHeight("M")};
    };
    EXPECT_EQ(measures(9), (std::pair{7 * 12, 15 * 12}));
    EXPECT_EQ(measures(10), (std::pair{8 * 12, 16 * 12}));
    EXPECT_EQ(measures(11), (std::pair{9 * 12, 18 * 12}));
}

TEST_F(PictureBoxTest, RefreshPaintsTheWholeAtTheNextTurnOfTheLoop) {
    box.refresh();
    box.refresh();
    EXPECT_TRUE(taken().empty());
    eventLoop::doEvents();
    EXPECT_EQ(taken(), (Lines{"paint 0,0 80x25"}));
    eventLoop::doEvents();
    EXPECT_TRUE(taken().empty());
}

TEST_F(PictureBoxTest, UpdatePaintsWhatIsInvalidAndNothingElse) {
    box.invalidate({0, 22, 80, 2});
    box.update();
    box.scroll(0, 23, -2);
    box.update();
    EXPECT_EQ(taken(), (Lines{"paint 0,22 80x2"}));
}

TEST_F(PictureBoxTest, TheHookSeesTheInvalidCellsBeforeTheyAreErased) {
    box.onPaintMessage.connect("message", [] {
        lines.push_back(std::string{"message "} + (box.invalidAt(0, 23) ? "in" : "out") + " " +
                        (box.invalidAt(0, 6) ? "in" : "out") + " " + box.picture().at(0, 23).text());
    });
    box.attachMessageHook(true);
    box.drawText(23, 0, "x", {});
    box.invalidate({0, 23, 80, 1});
    box.update();
    EXPECT_EQ(taken(), (Lines{"message in out x", "paint 0,23 80x1"}));
    EXPECT_FALSE(box.invalidAt(0, 23));
    EXPECT_FALSE(box.picture().at(0, 23).drawn());
}

TEST_F(PictureBoxTest, APaintErasesItsAreaAndDrawsOnNoOther) {
    const auto drawRows = [] {
        for (std::int32_t row = 0; row < 2; ++row) {
            box.drawText(row, 0, "ne", {});
        }
    };
    box.drawText(0, 0, "old", {});
    box.onPaint.connect("paint", drawRows);
    box.invalidate({0, 1, 80, 1});
    box.update();
    const Picture& cells = box.picture();
    EXPECT_EQ(cells.at(0, 0).text(), 'o');
    EXPECT_EQ(cells.at(0, 1).text(), 'n');
    EXPECT_FALSE(cells.at(2, 1).drawn());
    drawRows();  // outside of the paint
    EXPECT_EQ(cells.at(0, 0).text(), 'n');
}

TEST_F(PictureBoxTest, WhatWasInvalidMovesAlongWithAScroll) {
    box.invalidate({0, 22, 80, 1});
    box.scroll(0, 23, -1);
    box.update();
    EXPECT_EQ(taken(), (Lines{"paint 0,21 80x2"}));
}

TEST_F(PictureBoxTest, NothingIsPaintedWhileTheFormIsHidden) {
    form.unload();
    form.load();
    box.refresh();
    box.update();
    eventLoop::doEvents();
    EXPECT_TRUE(taken().empty());
    form.show();
    eventLoop::doEvents();
    EXPECT_EQ(taken().size(), 1U);
}

TEST_F(PictureBoxTest, AnotherSizeNeedsPainting) {
    box.move({15, 15, 640 * 15, 400 * 15});
    eventLoop::doEvents();
    EXPECT_TRUE(taken().empty());
    box.move({0, 0, 560 * 15, 375 * 15});
    eventLoop::doEvents();
    EXPECT_EQ(taken(), (Lines{"paint 0,0 80x25"}));
}

TEST_F(PictureBoxTest, CallsAreRecordedInPixelsWithTheirColours) {
    headless::setRecording("draw", true);
    box.drawText(1, 1, "\x10k", {.fg = 2, .bg = 1, .bold = true, .font = TextFont::terminal});
    box.fill({0, 0, 1, 1}, Raster::whiteness);
    box.setBackground(4);
    box.clear({0, 0, 1, 1});
    box.invert({0, 0, 1, 1}, Inversion::cursor);
    box.invert({2, 1, 1, 1}, Inversion::underlineCursor);
    box.scroll(0, 23, -1);
    box.underline(1, 1, 2);
    EXPECT_EQ(taken(),
              (Lines{"draw op=text x=8 y=16 w=16 h=16 text=jk fg=2 bg=1 bold=true font=terminal",
                     "draw op=fill x=0 y=0 w=8 h=16 colour=7", "draw op=fill x=0 y=0 w=8 h=16 colour=4",
                     "draw op=invert x=0 y=0 w=8 h=16", "draw op=invert x=16 y=30 w=8 h=2",
                     "draw op=scroll x=0 y=0 w=640 h=384 dx=0 dy=-16", "draw op=line x=8 y=30 w=16 h=1"}));
}

// 18 pixels at 15 twips: 2 x 270 twips less an eighth of 270, 33, are 507 twips, 33 whole pixels.
TEST_F(PictureBoxTest, TheLineUnderACellIsReckonedInTwips) {
    EXPECT_EQ(underlineTop(1, 18, 15), 33);
    EXPECT_EQ(underlineTop(0, 16, 15), 14);
    EXPECT_EQ(underlineTop(24, 15, 12), 373);
}

TEST_F(PictureBoxTest, CallsAreCountedFromTheFirstClearingOn) {
    headless::clearDrawCounts();
    box.drawText(0, 0, "abc", {});
    box.drawText(0, 0, "de", {});
    box.fill({0, 0, 1, 1}, Raster::blackness);
    const headless::DrawCounts& counts = headless::drawCounts();
    EXPECT_EQ(counts.text, 2U);
    EXPECT_EQ(counts.characters, 5U);
    EXPECT_EQ(counts.fill, 1U);
    EXPECT_EQ(counts.scroll, 0U);
}

TEST_F(PictureBoxTest, CellsOfAnotherSizeHaveNothingDrawnOnThem) {
    box.drawText(0, 0, "a", {});
    setCells(8, 16);
    EXPECT_TRUE(box.picture().at(0, 0).drawn());
    setCells(7, 15);
    EXPECT_FALSE(box.picture().at(0, 0).drawn());
}

TEST_F(PictureBoxTest, AFrameTakesTheChangesWithIt) {
    (void)box.takeFrame();
    EXPECT_FALSE(box.changed());
    box.drawText(0, 0, "a", {});
    EXPECT_TRUE(box.changed());
    (void)box.takeFrame();
    EXPECT_FALSE(box.changed());
    box.refresh();
    EXPECT_TRUE(box.changed());
}

TEST_F(PictureBoxTest, NothingIsDrawnWhileTheFormIsNotLoaded) {
    form.unload();
    box.drawText(0, 0, "a", {});
    form.show();
    EXPECT_FALSE(box.picture().at(0, 0).drawn());
}

TEST_F(PictureBoxTest, AFormThatGoesWhileItPaintsComesBackWhole) {
    box.onPaint.connect("paint", [] {
        form.unload();
        form.load();
    });
    box.invalidate({3, 4, 5, 6});
    box.update();
    EXPECT_FALSE(box.changed());
    EXPECT_EQ(areaText(box.clipBox()), "0,0 80x25");
    box.drawText(0, 0, "a", {});
    EXPECT_TRUE(box.picture().at(0, 0).drawn());
}

TEST_F(PictureBoxTest, EveryChangeIsOneForTheNextFrame) {
    const std::array<void (*)(), 9> changes{
        [] { box.setBackground(7); },
        [] { box.underline(1, 2, 3); },
        [] {
            box.fill({0, 0, 1, 1}, Raster::whiteness);
        },
        [] {
            box.clear({0, 0, 1, 1});
        },
        [] {
            box.invert({0, 0, 1, 1}, Inversion::selection);
        },
        [] { box.scroll(0, 5, 1); },
        [] {
            box.invalidate({0, 0, 1, 1});
        },
        [] { box.update(); },
        [] { setCells(9, 18); },
    };
    for (std::size_t n = 0; n < changes.size(); ++n) {
        (void)box.takeFrame();
        EXPECT_FALSE(box.changed()) << n;
        changes[n]();
        EXPECT_TRUE(box.changed()) << n;
    }
}

}  // namespace
}  // namespace qxterm::test::picture_box_test
