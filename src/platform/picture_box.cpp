#include "platform/picture_box.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/backend.h"

namespace qxterm {

DrawingWatcher* drawingWatcher = nullptr;

namespace {

constexpr std::uint8_t black = 0;
constexpr std::uint8_t white = 7;

}  // namespace

/// Limits drawing to the cells of a paint for as long as it lasts. A paint may bring another one about.
class PictureBox::Paint {
public:
    explicit Paint(PictureBox& box) : box_{box}, outerCells_{box.painting_}, outer_{box.inPaint_} {
        box.painting_ = std::exchange(box.invalid_, CellSet{});
        box.inPaint_ = true;
        box.picture_.erase(box.painting_);
        box.picture_.setClip(&box.painting_);
    }
    ~Paint() {
        if (box_.loads_ != loads_) return;  // the form was unloaded while it painted
        box_.painting_ = outerCells_;
        box_.inPaint_ = outer_;
        box_.picture_.setClip(outer_ ? &box_.painting_ : nullptr);
    }
    Paint(const Paint&) = delete;
    Paint& operator=(const Paint&) = delete;

private:
    PictureBox& box_;
    CellSet outerCells_;
    bool outer_;
    std::uint32_t loads_ = box_.loads_;
};

void PictureBox::noteFirstChange() {
    changed_ = true;
    backend::pictureChanged(*this);
}

inline void PictureBox::noteChange() {
    if (!changed_) [[unlikely]]
        noteFirstChange();
}

void PictureBox::tellText(std::int32_t row, std::int32_t column, std::string_view text,
                          const PictureCell& look) {
    drawingWatcher->text(row, column, text, look.look());
    if (look.underlined()) drawingWatcher->underline(row, column, static_cast<std::int32_t>(text.size()));
}

void PictureBox::setCellSize(std::int32_t width, std::int32_t height,
                             const std::array<std::int32_t, pictureColumns>& advances) {
    if (width != cellWidth_ || height != cellHeight_) {
        cellWidth_ = width;
        cellHeight_ = height;
        CellSet all;
        all.add(allCells);
        picture_.erase(all);
        noteChange();
    }
    backend::cellSizeChanged(*this, width, height, advances);
}

void PictureBox::setBackground(std::uint8_t index) {
    background_ = index;
    if (native != nullptr) noteChange();
}

void PictureBox::underline(std::int32_t row, std::int32_t column, std::int32_t count) {
    if (native == nullptr) return;
    if (drawingWatcher != nullptr) [[unlikely]]
        drawingWatcher->underline(row, column, count);
    picture_.underline(row, column, count);
    noteChange();
}

void PictureBox::fill(const CellArea& area, Raster raster) {
    if (native == nullptr) return;
    const std::uint8_t colour = raster == Raster::whiteness ? white : black;
    if (drawingWatcher != nullptr) [[unlikely]]
        drawingWatcher->blank(DrawingWatcher::Area::fill, area, colour);
    picture_.fill(area, colour);
    noteChange();
}

void PictureBox::clear(const CellArea& area) {
    if (native == nullptr) return;
    if (drawingWatcher != nullptr) [[unlikely]]
        drawingWatcher->blank(DrawingWatcher::Area::clear, area, background_);
    picture_.fill(area, background_);
    noteChange();
}

void PictureBox::invert(const CellArea& area, Inversion of) {
    if (native == nullptr) return;
    if (drawingWatcher != nullptr) [[unlikely]]
        drawingWatcher->invert(area, of);
    picture_.invert(area, of);
    noteChange();
}

void PictureBox::scroll(std::int32_t first, std::int32_t last, std::int32_t by) {
    if (native == nullptr || last < first || by == 0) return;
    if (drawingWatcher != nullptr) [[unlikely]]
        drawingWatcher->scroll(first, last, by);
    picture_.scroll(first, last, by);
    invalid_.follow(first, last, by);
    noteChange();
}

void PictureBox::update() {
    if (native == nullptr || invalid_.empty() || !form_.visible() || !visible_) return;
    if (hooked_) onPaintMessage.raise();
    if (native == nullptr || invalid_.empty()) return;
    const Paint paint{*this};
    noteChange();
    onPaint.raise();
}

void PictureBox::invalidate(const CellArea& area) {
    if (native == nullptr) return;
    invalid_.add(area);
    noteChange();
    backend::paintWaits(*this);
}

CellArea PictureBox::clipBox() const {
    if (native == nullptr) return {};
    return inPaint_ ? painting_.bounds() : allCells;
}

Picture& PictureBox::takeFrame() {
    changed_ = false;
    return picture_;
}

void PictureBox::resetPicture() {
    ++loads_;
    picture_.reset();
    invalid_.clear();
    painting_.clear();
    inPaint_ = false;
    changed_ = false;
}

namespace {

/// Of a fixed-pitch font: the height of a line, and the width of a character, in hundredths of its size.
constexpr float lineShare = 120;
constexpr float widthShare = 60;
constexpr float twipsPerPoint = 20;

std::int32_t shareOf(float points, float hundredths) {
    return static_cast<std::int32_t>(points * twipsPerPoint * hundredths / 100);
}

}  // namespace

std::int32_t usualHeight(float points) { return shareOf(points, lineShare); }

std::int32_t usualWidth(float points) { return shareOf(points, widthShare); }

std::int32_t underlineTop(std::int32_t row, std::int32_t cellHeight, std::int32_t twipsPerPixel) {
    const std::int32_t height = cellHeight * twipsPerPixel;
    return ((row + 1) * height - height / 8) / twipsPerPixel;
}

}  // namespace qxterm
