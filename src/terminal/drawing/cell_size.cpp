#include "terminal/drawing/cell_size.h"

#include <algorithm>

#include "config/profile_record.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

namespace {

constexpr std::int16_t usualTwips = 15;  // at 96 dots per inch

}  // namespace

std::int32_t lineHeight = 0;
std::int32_t charWidth = 0;
std::int16_t screenWidthPixels = 0;
std::int16_t screenHeightPixels = 0;
std::array<std::int32_t, screenColumns + 1> charAdvances{};
PixelRect scrollRect;
std::int16_t g_iTwipsX = usualTwips;
std::int16_t g_iTwipsY = usualTwips;

namespace {

/// charAdvances without the entry that is not used.
std::array<std::int32_t, screenColumns> advancesFromFirst() {
    std::array<std::int32_t, screenColumns> advances{};
    std::copy(charAdvances.begin() + 1, charAdvances.end(), advances.begin());
    return advances;
}

constexpr std::int32_t barPadding = 3;  // pixels around and between the function-key buttons
constexpr std::int32_t groupGap = 10;   // pixels more between buttons 4 and 5

std::int32_t toPixels(std::int32_t twips, std::int32_t twipsPerPixel) {
    return (twips + twipsPerPixel / 2) / twipsPerPixel;
}

/// Height of the function-key bar in pixels: two lines of text on each button.
std::int32_t keyBarHeight() { return 2 * lineHeight + 4 * barPadding; }

void placeKeyBar(std::int32_t top, std::int32_t width, bool shown) {
    constexpr auto keys = static_cast<std::int32_t>(functionKeyCount);
    const std::int32_t space = width - groupGap - (keys + 1) * barPadding;
    for (std::int32_t key = 0; key < keys; ++key) {
        Button& button = CScmdfkey[static_cast<std::size_t>(key)];
        const std::int32_t left =
            space * key / keys + (key + 1) * barPadding + (key >= keys / 2 ? groupGap : 0);
        const std::int32_t buttonWidth = space * (key + 1) / keys - space * key / keys;
        button.move({left * g_iTwipsX, (top + barPadding) * g_iTwipsY, buttonWidth * g_iTwipsX,
                     (keyBarHeight() - 2 * barPadding) * g_iTwipsY});
        button.setVisible(shown);
    }
}

}  // namespace

void setTwipsPerPixel(std::int16_t x, std::int16_t y) {
    g_iTwipsX = x;
    g_iTwipsY = y;
}

void resetCellSize() {
    lineHeight = 0;
    charWidth = 0;
    screenWidthPixels = 0;
    screenHeightPixels = 0;
    charAdvances = {};
    scrollRect = {};
    setTwipsPerPixel(usualTwips, usualTwips);
}

void setScrollRect() {
    trapped("setScrollRect", [] {
        scrollRect = {0, regionTop * lineHeight, screenWidthPixels, (regionBottom + 1) * lineHeight};
    });
}

void layOutWindow() {
    trapped("layOutWindow", [] {
        const bool shown = modeSet(mode::keyBarShown);
        const TwipsRect screen = picterm.place();
        const std::int32_t width = screen.width + vscterm.place().width;
        placeKeyBar(toPixels(screen.height, g_iTwipsY), toPixels(width, g_iTwipsX), shown);
        frmterm.setClientSize(width, screen.height + (shown ? keyBarHeight() * g_iTwipsY : 0));
    });
}

void calcSize(PictureBox& picture, ScrollBar& bar) {
    trapped("calcSize", [&] {
        picture.setFontSize(CurrentProfile.fontSize);
        lineHeight = picture.textHeight("M");
        charWidth = picture.textWidth("M");
        picture.move({0, 0, screenColumns * charWidth, screenRows * lineHeight});
        bar.move({screenColumns * charWidth, 0, bar.place().width, screenRows * lineHeight});
        // The mouse's place is divided by a cell's size.
        lineHeight = std::max(toPixels(lineHeight, g_iTwipsY), 1);
        charWidth = std::max(toPixels(charWidth, g_iTwipsX), 1);
        layOutWindow();
        charAdvances.fill(charWidth);
        picture.setCellSize(charWidth, lineHeight, advancesFromFirst());
        picture.createTerminalFont(lineHeight, charWidth);
        screenHeightPixels = toInt16(picture.scaleHeight() / g_iTwipsY);
        screenWidthPixels = toInt16(picture.scaleWidth() / g_iTwipsX);
        setScrollRect();
    });
}

void resizeScreen() {
    calcSize(picterm, vscterm);
    picterm.refresh();
}

}  // namespace qxterm
