#include "platform/picture_box.h"

#include <string>

#include "platform/headless/display.h"
#include "platform/headless/native.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {

namespace detail {
Drawing drawing = Drawing::cells;
DrawCounts counts;
}  // namespace detail

namespace {

void recordArea(const char* op, const PixelRect& area, Fields more = {}) {
    Fields fields{{"op", op}, {"x", area.left}, {"y", area.top}, {"w", area.width()}, {"h", area.height()}};
    fields.insert(fields.end(), more.begin(), more.end());
    record("draw", std::move(fields));
}

void recordText(const Picture& picture, const PixelRect& cells, std::string_view text, TextFont font) {
    const bool terminal = font == TextFont::terminal;
    std::string stored{text};
    if (terminal) {
        for (char& c : stored) c = storedCharacter(c);
    }
    recordArea("text", cells,
               {{"text", std::move(stored)},
                {"fg", picture.textColour},
                {"bg", picture.textBackground},
                {"bold", picture.bold},
                {"font", terminal ? "terminal" : "normal"}});
}

[[gnu::noinline]] void drawText(Picture& picture, const PixelRect& cells, std::string_view text,
                                TextFont font, const std::int32_t* advances) {
    if (recordsDrawing()) recordText(picture, cells, text, font);
    if (detail::drawing == Drawing::cells) {
        picture.grid.drawText(cells, text, advances,
                              {font, picture.bold, picture.textColour, picture.textBackground});
    }
}

[[gnu::noinline]] void drawLine(Picture& picture, std::int32_t x, std::int32_t y, std::int32_t width) {
    if (recordsDrawing()) recordArea("line", {x, y, x + width, y + 1});
    if (detail::drawing == Drawing::cells) picture.grid.drawLine(x, y, width);
}

}  // namespace

void setDrawing(Drawing drawing) { detail::drawing = drawing; }

const DrawCounts& drawCounts() { return detail::counts; }

void clearDrawCounts() { detail::counts = {}; }

void resetDrawing() {
    detail::drawing = Drawing::cells;
    detail::counts = {};
}

const CellGrid& cellsOf(const PictureBox& box) { return box.native->picture->grid; }

std::uint8_t backgroundOf(const PictureBox& box) { return box.native->picture->background; }

CellMeasures measuresAt(float points) {
    if (points == 9.0F) return {7, 15};
    if (points == 11.0F) return {9, 18};
    return {8, 16};
}

}  // namespace qxterm::headless

namespace qxterm {

using headless::detail::counts;

namespace {

[[nodiscard]] bool drawsCells() { return headless::detail::drawing == headless::Drawing::cells; }

/// True while a caller's own cost is measured: a text or a line is counted, and that is all.
[[nodiscard]] bool onlyCounts() { return !drawsCells() && !headless::recordsDrawing(); }

}  // namespace

void PictureBox::setFontName(std::string_view /*face*/) {}

void PictureBox::setFontSize(float points) {
    if (native == nullptr) return;
    native->picture->points = points;
    const headless::CellMeasures cell = headless::measuresAt(points);
    native->picture->grid.setMeasures(cell.width, cell.height);
}

void PictureBox::setFontBold(bool bold) {
    if (native != nullptr) native->picture->bold = bold;
}

std::int32_t PictureBox::textHeight(std::string_view /*text*/) const {
    return native == nullptr ? 0 : headless::toTwips(headless::measuresAt(native->picture->points).height);
}

std::int32_t PictureBox::textWidth(std::string_view text) const {
    if (native == nullptr) return 0;
    const auto length = static_cast<std::int32_t>(text.size());
    return headless::toTwips(headless::measuresAt(native->picture->points).width * length);
}

void PictureBox::createTerminalFont(std::int32_t /*height*/, std::int32_t /*width*/) {}

void PictureBox::deleteTerminalFont() {}

std::int32_t PictureBox::scaleWidth() const { return native == nullptr ? 0 : native->place.width; }

std::int32_t PictureBox::scaleHeight() const { return native == nullptr ? 0 : native->place.height; }

void PictureBox::setColourTable(const std::array<Rgb, 8>& /*table*/) {}

void PictureBox::setBackground(std::uint8_t index) {
    if (native != nullptr) native->picture->background = index;
}

void PictureBox::setTextColour(std::uint8_t index) {
    if (native != nullptr) native->picture->textColour = index;
}

void PictureBox::setTextBackground(std::uint8_t index) {
    if (native != nullptr) native->picture->textBackground = index;
}

void PictureBox::setOpaque(bool opaque) {
    if (native != nullptr) native->picture->opaque = opaque;
}

void PictureBox::drawText(const PixelRect& cells, std::string_view text, TextFont font,
                          const std::int32_t* advances) {
    if (native == nullptr) return;
    ++counts.text;
    counts.characters += text.size();
    if (onlyCounts()) return;
    headless::drawText(*native->picture, cells, text, font, advances);
}

void PictureBox::fill(const PixelRect& area, Raster raster) {
    if (native == nullptr) return;
    ++counts.fill;
    const std::uint8_t colour = raster == Raster::whiteness ? 7 : 0;
    if (headless::recordsDrawing()) headless::recordArea("fill", area, {{"colour", colour}});
    if (drawsCells()) native->picture->grid.fill(area, colour);
}

void PictureBox::clear(const PixelRect& area) {
    if (native == nullptr) return;
    ++counts.clear;
    const std::uint8_t colour = native->picture->background;
    if (headless::recordsDrawing()) headless::recordArea("fill", area, {{"colour", colour}});
    if (drawsCells()) native->picture->grid.fill(area, colour);
}

void PictureBox::invert(const PixelRect& area, Inversion of) {
    if (native == nullptr) return;
    ++counts.invert;
    if (headless::recordsDrawing()) headless::recordArea("invert", area);
    if (drawsCells()) native->picture->grid.invert(area, of);
}

void PictureBox::drawLine(std::int32_t x, std::int32_t y, std::int32_t width) {
    if (native == nullptr) return;
    ++counts.line;
    if (onlyCounts()) return;
    headless::drawLine(*native->picture, x, y, width);
}

}  // namespace qxterm
