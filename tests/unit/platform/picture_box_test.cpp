#include "platform/picture_box.h"

#include "platform/event_loop.h"
#include "platform/headless/display.h"
#include "platform/headless/picture_box.h"
#include "platform/headless_fixture.h"

namespace qxterm::test {
namespace {

constinit Form form{"frmPicture", FormKind::dialog, 1, ""};
PictureBox box{form, "picTest", 1};

std::string areaText(const PixelRect& area) {
    return std::to_string(area.left) + "," + std::to_string(area.top) + "," + std::to_string(area.right) +
           "," + std::to_string(area.bottom);
}

/// 640 x 400 pixels at 10 points: 80 x 25 cells of 8 x 16.
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
        eventLoop::doEvents();
        lines.clear();
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
    EXPECT_EQ(taken(), (Lines{"paint 0,0,640,400"}));
    eventLoop::doEvents();
    EXPECT_TRUE(taken().empty());
}

TEST_F(PictureBoxTest, UpdatePaintsTheBandThatAScrollExposed) {
    box.scroll({0, 0, 640, 384}, -32);
    box.update();
    box.scroll({0, 16, 640, 384}, 16);
    box.update();
    box.update();
    EXPECT_EQ(taken(), (Lines{"paint 0,352,640,384", "paint 0,16,640,32"}));
}

TEST_F(PictureBoxTest, TheHookSeesTheInvalidAreaBeforeItIsErased) {
    box.onPaintMessage.connect("message", [] {
        lines.push_back(std::string{"message "} + (box.invalidAt(0, 383) ? "in" : "out") + " " +
                        (box.invalidAt(0, 100) ? "in" : "out"));
    });
    box.attachMessageHook(true);
    box.scroll({0, 0, 640, 384}, -16);
    box.update();
    EXPECT_EQ(taken(), (Lines{"message in out", "paint 0,368,640,384"}));
    EXPECT_FALSE(box.invalidAt(0, 383));
}

TEST_F(PictureBoxTest, APaintErasesItsAreaAndDrawsOnNoOther) {
    const auto drawRows = [] {
        for (std::int32_t row = 0; row < 2; ++row) {
            box.drawText({0, row * 16, 16, row * 16 + 16}, "new", TextFont::normal, nullptr);
        }
    };
    box.drawText({0, 0, 24, 16}, "old", TextFont::normal, nullptr);
    box.onPaint.connect("paint", drawRows);
    box.scroll({0, 16, 640, 32}, -16);  // exposes row 1 alone
    box.update();
    const headless::CellGrid& cells = headless::cellsOf(box);
    EXPECT_EQ(cells.at(0, 0).text, 'o');
    EXPECT_EQ(cells.at(0, 1).text, 'n');
    EXPECT_FALSE(cells.at(2, 1).drawn);
    drawRows();  // outside of the paint
    EXPECT_EQ(cells.at(0, 0).text, 'n');
}

TEST_F(PictureBoxTest, WhatWasInvalidMovesAlongWithAScroll) {
    box.scroll({0, 0, 640, 384}, -16);
    box.scroll({0, 0, 640, 384}, -16);
    box.update();
    EXPECT_EQ(taken(), (Lines{"paint 0,352,640,384"}));
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
    EXPECT_EQ(taken(), (Lines{"paint 0,0,560,375"}));
}

TEST_F(PictureBoxTest, CallsAreRecordedInPixelsWithTheirColours) {
    headless::setRecording("draw", true);
    box.setTextColour(2);
    box.setTextBackground(1);
    box.setFontBold(true);
    box.drawText({8, 16, 24, 32}, "\x10k", TextFont::terminal, nullptr);
    box.fill({0, 0, 8, 16}, Raster::whiteness);
    box.setBackground(4);
    box.clear({0, 0, 8, 16});
    box.invert({0, 0, 8, 16}, Inversion::cursor);
    box.scroll({0, 0, 640, 384}, -16);
    box.drawLine(8, 30, 16);
    EXPECT_EQ(taken(),
              (Lines{"draw op=text x=8 y=16 w=16 h=16 text=jk fg=2 bg=1 bold=true font=terminal",
                     "draw op=fill x=0 y=0 w=8 h=16 colour=7", "draw op=fill x=0 y=0 w=8 h=16 colour=4",
                     "draw op=invert x=0 y=0 w=8 h=16", "draw op=scroll x=0 y=0 w=640 h=384 dx=0 dy=-16",
                     "draw op=line x=8 y=30 w=16 h=1"}));
}

TEST_F(PictureBoxTest, CountingOnlyLeavesTheCellsAlone) {
    headless::setDrawing(headless::Drawing::countOnly);
    headless::clearDrawCounts();
    box.drawText({0, 0, 24, 16}, "abc", TextFont::normal, nullptr);
    box.drawText({0, 0, 16, 16}, "de", TextFont::normal, nullptr);
    box.fill({0, 0, 8, 16}, Raster::blackness);
    const headless::DrawCounts& counts = headless::drawCounts();
    EXPECT_EQ(counts.text, 2U);
    EXPECT_EQ(counts.characters, 5U);
    EXPECT_EQ(counts.fill, 1U);
    EXPECT_EQ(counts.scroll, 0U);
    EXPECT_FALSE(headless::cellsOf(box).at(0, 0).drawn);
}

}  // namespace
}  // namespace qxterm::test
