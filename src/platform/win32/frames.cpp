#include "platform/win32/frames.h"

#include <algorithm>
#include <cstdint>

#include "platform/backend.h"
#include "platform/win32/clock.h"
#include "platform/win32/message_window.h"
#include "platform/win32/picture_native.h"
#include "platform/win32/screen_watchers.h"

// When pictures are shown. The program's own loop shows them when it is about to wait and, while output
// flows, between two blocks. But menus, message boxes and dragged scroll bars run loops of the system's, in
// which no code of the program's is at its end: so the first change of a picture also posts a message, and if
// that comes too early for a new frame, a timer ticks until nothing changes any more.

namespace qxterm {
namespace win32 {
namespace {

// Microseconds. Drawing may take a third of the time, yet thirty frames a second have to be seen.
constexpr std::int64_t shortestFrame = 16000;
constexpr std::int64_t longestFrame = 33000;
constexpr std::int64_t costShare = 3;
constexpr UINT tickPeriod = 16;  // milliseconds

std::int64_t lastShown = 0;
std::int64_t lastCost = 0;
bool showing = false;
bool posted = false;
bool ticking = false;

[[nodiscard]] bool anyChanged() {
    for (const Form* form : loadedForms()) {
        for (Control* control = form->firstControl(); control != nullptr; control = control->next()) {
            if (control->kind() == ControlKind::pictureBox && static_cast<PictureBox*>(control)->changed())
                return true;
        }
    }
    return false;
}

void showAll() {
    for (const Form* form : loadedForms()) {
        for (Control* control = form->firstControl(); control != nullptr; control = control->next()) {
            if (control->kind() != ControlKind::pictureBox || control->native == nullptr) continue;
            auto& box = static_cast<PictureBox&>(*control);
            box.update();
            // The paint may have unloaded the form, and the list of forms with it.
            if (box.native == nullptr) return;
            nativeOf(box)->presenter.show(box);
            screenShown(box);
        }
    }
}

[[nodiscard]] std::int64_t frameLength() {
    return std::clamp(costShare * lastCost, shortestFrame, longestFrame);
}

void stopTicking() {
    if (!ticking) return;
    ticking = false;
    KillTimer(messageWindow(), timerFrames);
}

void frameMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    posted = false;
    showPicturesIfDue(false);
    if (ticking || !anyChanged()) return;
    ticking = SetTimer(messageWindow(), timerFrames, tickPeriod, nullptr) != 0;
}

void tick(UINT /*message*/, WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam != timerFrames) return;
    if (anyChanged()) {
        showPicturesIfDue(false);
    } else if (microseconds() - lastShown > longestFrame) {
        stopTicking();
    }
}

}  // namespace

void showPictures() {
    if (showing || !anyChanged()) return;
    showing = true;
    const std::int64_t begin = microseconds();
    showAll();
    lastShown = microseconds();
    lastCost = lastShown - begin;
    showing = false;
}

void showPicturesIfDue(bool inBlock) {
    const std::int64_t length = inBlock ? longestFrame : frameLength();
    if (microseconds() - lastShown >= length) showPictures();
}

}  // namespace win32

void backend::pictureChanged(PictureBox& /*box*/) {
    using namespace win32;
    static const bool subscribed =
        (handleMessages(wmFrame, wmFrame, frameMessage), handleMessages(WM_TIMER, WM_TIMER, tick), true);
    (void)subscribed;
    if (posted || ticking) return;
    posted = PostMessageA(messageWindow(), wmFrame, 0, 0) != 0;
}

void backend::paintWaits(PictureBox& /*box*/) {}  // carried out before the next frame

}  // namespace qxterm
