#include <algorithm>

#include "platform/headless/display.h"
#include "platform/headless/native.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/recorder.h"
#include "platform/picture_box.h"

namespace qxterm::headless {

bool paintsWaiting = false;

namespace {

void invalidate(Picture& picture, const PixelRect& area) {
    if (area.empty()) return;
    const bool known = std::any_of(picture.invalid.begin(), picture.invalid.end(),
                                   [&](const PixelRect& other) { return area.within(other); });
    if (!known) picture.invalid.push_back(area);
    paintsWaiting = true;
}

PixelRect wholeOf(const Control::Native& native) {
    return {0, 0, toPixels(native.place.width), toPixels(native.place.height)};
}

PixelRect around(const std::vector<PixelRect>& areas) {
    PixelRect box = areas.front();
    for (const PixelRect& area : areas) {
        box = {std::min(box.left, area.left), std::min(box.top, area.top), std::max(box.right, area.right),
               std::max(box.bottom, area.bottom)};
    }
    return box;
}

PixelRect common(const PixelRect& a, const PixelRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

[[nodiscard]] bool drawsCells() { return detail::drawing == Drawing::cells; }

/// Limits drawing to the areas of a paint for as long as it lasts.
class PaintInProgress {
public:
    PaintInProgress(PictureBox& box, std::vector<PixelRect> areas)
        : box_{box},
          native_{box.native},
          outerAreas_{std::move(areas)},
          outer_{box.native->picture->inPaint} {
        Picture& picture = *native_->picture;
        std::swap(picture.painting, outerAreas_);
        picture.inPaint = true;
        picture.grid.setClip(&picture.painting);
    }
    ~PaintInProgress() {
        if (box_.native != native_) return;  // the form was unloaded while it painted
        Picture& picture = *native_->picture;
        std::swap(picture.painting, outerAreas_);
        picture.inPaint = outer_;
        picture.grid.setClip(outer_ ? &picture.painting : nullptr);
        if (picture.invalid.capacity() == 0) {  // a paint for each scroll need not ask for memory each time
            outerAreas_.clear();
            picture.invalid.swap(outerAreas_);
        }
    }
    PaintInProgress(const PaintInProgress&) = delete;
    PaintInProgress& operator=(const PaintInProgress&) = delete;

private:
    PictureBox& box_;
    Control::Native* native_;
    std::vector<PixelRect> outerAreas_;
    bool outer_;
};

}  // namespace

void uncover(PictureBox& box) {
    if (box.native != nullptr) invalidate(*box.native->picture, wholeOf(*box.native));
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

}  // namespace qxterm::headless

namespace qxterm {

void PictureBox::scroll(const PixelRect& area, std::int32_t dy) {
    if (native == nullptr || area.empty() || dy == 0) return;
    ++headless::detail::counts.scroll;
    if (headless::recordsDrawing()) {
        headless::record("draw", {{"op", "scroll"},
                                  {"x", area.left},
                                  {"y", area.top},
                                  {"w", area.width()},
                                  {"h", area.height()},
                                  {"dx", 0},
                                  {"dy", dy}});
    }
    headless::Picture& picture = *native->picture;
    if (headless::drawsCells()) picture.grid.scroll(area, dy);
    const std::vector<PixelRect> before = picture.invalid;
    for (const PixelRect& old : before) {  // what was invalid moves along with the pixels
        const PixelRect part = headless::common(old, area);
        if (part.empty()) continue;
        headless::invalidate(
            picture, headless::common({part.left, part.top + dy, part.right, part.bottom + dy}, area));
    }
    PixelRect exposed = area;
    if (dy < 0) {
        exposed.top = std::max(area.top, area.bottom + dy);
    } else {
        exposed.bottom = std::min(area.bottom, area.top + dy);
    }
    headless::invalidate(picture, exposed);
}

void PictureBox::update() {
    if (native == nullptr || !form_.visible() || !visible_) return;
    if (native->picture->invalid.empty()) return;
    if (hooked_) onPaintMessage.raise();
    if (native == nullptr) return;
    std::vector<PixelRect> areas;
    areas.swap(native->picture->invalid);
    if (areas.empty()) return;
    if (headless::drawsCells()) {
        for (const PixelRect& area : areas) native->picture->grid.erase(area);
    }
    const headless::PaintInProgress paint{*this, std::move(areas)};
    onPaint.raise();
}

void PictureBox::refresh() { headless::uncover(*this); }

PixelRect PictureBox::clipBox() const {
    if (native == nullptr) return {};
    return native->picture->inPaint ? headless::around(native->picture->painting)
                                    : headless::wholeOf(*native);
}

bool PictureBox::invalidAt(std::int32_t x, std::int32_t y) const {
    if (native == nullptr) return false;
    return std::any_of(native->picture->invalid.begin(), native->picture->invalid.end(),
                       [&](const PixelRect& area) {
                           return x >= area.left && x < area.right && y >= area.top && y < area.bottom;
                       });
}

void PictureBox::attachMessageHook(bool attached) { hooked_ = attached; }

}  // namespace qxterm
