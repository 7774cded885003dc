#include "platform/headless/picture_box.h"

#include <string>

#include "platform/backend.h"
#include "platform/display.h"
#include "platform/headless/display.h"
#include "platform/headless/failures.h"
#include "platform/headless/forms.h"
#include "platform/headless/native.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {

bool paintsWaiting = false;

namespace {

/// Size of a cell on the display in pixels, as the program last set it: one picture box has cells.
CellMeasures cell{};
bool counting = false;
DrawCounts counts;

void recordArea(const char* op, const PixelRect& area, Fields more = {}) {
    Fields fields{{"op", op}, {"x", area.left}, {"y", area.top}, {"w", area.width()}, {"h", area.height()}};
    fields.insert(fields.end(), more.begin(), more.end());
    record("draw", std::move(fields));
}

PixelRect pixelsOf(const CellArea& area) {
    return {area.column * cell.width, area.row * cell.height, (area.column + area.columns) * cell.width,
            (area.row + area.rows) * cell.height};
}

/// Counts drawing calls, and records them as what they come to in pixels.
class Watcher final : public DrawingWatcher {
public:
    void text(std::int32_t row, std::int32_t column, std::string_view text, const TextLook& look) override {
        ++counts.text;
        counts.characters += text.size();
        if (!recordsDrawing()) return;
        const bool terminal = look.font == TextFont::terminal;
        std::string stored{text};
        if (terminal) {
            for (char& c : stored) c = storedCharacter(c);
        }
        recordArea("text", pixelsOf({column, row, static_cast<std::int32_t>(text.size()), 1}),
                   {{"text", std::move(stored)},
                    {"fg", look.fg},
                    {"bg", look.bg},
                    {"bold", look.bold},
                    {"font", terminal ? "terminal" : "normal"}});
    }
    void underline(std::int32_t row, std::int32_t column, std::int32_t count) override {
        ++counts.line;
        if (!recordsDrawing()) return;
        const std::int32_t top = underlineTop(row, cell.height, display::twipsPerPixelY());
        recordArea("line", {column * cell.width, top, (column + count) * cell.width, top + 1});
    }
    void blank(Area kind, const CellArea& area, std::uint8_t colour) override {
        ++(kind == Area::fill ? counts.fill : counts.clear);
        if (recordsDrawing()) recordArea("fill", pixelsOf(area), {{"colour", colour}});
    }
    void invert(const CellArea& area, Inversion of) override {
        ++counts.invert;
        if (!recordsDrawing()) return;
        PixelRect pixels = pixelsOf(area);
        if (of == Inversion::underlineCursor) pixels.top = pixels.bottom - underlineCursorHeight;
        recordArea("invert", pixels);
    }
    void scroll(std::int32_t first, std::int32_t last, std::int32_t by) override {
        ++counts.scroll;
        if (!recordsDrawing()) return;
        recordArea("scroll", pixelsOf({0, first, pictureColumns, last - first + 1}),
                   {{"dx", 0}, {"dy", by * cell.height}});
    }
};

Watcher watcher;

/// Watches drawing calls while they are counted or recorded.
void watchDrawing() { drawingWatcher = counting || recordsDrawing() ? &watcher : nullptr; }

[[maybe_unused]] const bool tied = (recordsDrawingChanged = watchDrawing, true);

}  // namespace

const DrawCounts& drawCounts() { return counts; }

void clearDrawCounts() {
    counts = {};
    counting = true;
    watchDrawing();
}

void resetDrawing() {
    counts = {};
    counting = false;
    watchDrawing();
}

CellMeasures measuresAt(float points) {
    if (points == 9.0F) return {7, 15};
    if (points == 11.0F) return {9, 18};
    return {8, 16};
}

void deliverPaints() {
    paintsWaiting = false;
    const std::vector<Form*> forms = visibleForms();
    for (Form* form : forms) {
        for (Control* control = form->firstControl(); control != nullptr; control = control->next()) {
            if (control->kind() == ControlKind::pictureBox) static_cast<PictureBox*>(control)->update();
        }
    }
}

void uncover(PictureBox& box) { box.invalidate(allCells); }

}  // namespace qxterm::headless

namespace qxterm {

void backend::pictureChanged(PictureBox& /*box*/) {}

void backend::paintWaits(PictureBox& /*box*/) { headless::paintsWaiting = true; }

void backend::cellSizeChanged(PictureBox& /*box*/, std::int32_t width, std::int32_t height,
                              const std::array<std::int32_t, pictureColumns>& /*advances*/) {
    headless::cell = {width, height};
}

void PictureBox::setFontName(std::string_view face) {
    if (native != nullptr) native->face = face;
}

void PictureBox::setFontSize(float points) {
    if (native != nullptr) native->points = points;
}

std::int32_t PictureBox::textHeight(std::string_view /*text*/) const {
    if (native == nullptr) return 0;
    if (headless::fails(headless::Point::pictureMeasure)) return usualHeight(native->points);
    return headless::toTwips(headless::measuresAt(native->points).height);
}

std::int32_t PictureBox::textWidth(std::string_view text) const {
    if (native == nullptr) return 0;
    const auto length = static_cast<std::int32_t>(text.size());
    if (headless::fails(headless::Point::pictureMeasure)) return usualWidth(native->points) * length;
    return headless::toTwips(headless::measuresAt(native->points).width * length);
}

void PictureBox::createTerminalFont(std::int32_t /*height*/, std::int32_t /*width*/) {}

void PictureBox::deleteTerminalFont() {}

std::int32_t PictureBox::scaleWidth() const { return native == nullptr ? 0 : native->place.width; }

std::int32_t PictureBox::scaleHeight() const { return native == nullptr ? 0 : native->place.height; }

void PictureBox::setColourTable(const std::array<Rgb, 8>& /*table*/) {}

void PictureBox::setOpaque(bool /*opaque*/) {}

}  // namespace qxterm
