#include "platform/event_loop.h"

#include "platform/headless/clock.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/modal.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {

void (*yieldHook)() = nullptr;

namespace {

bool programEnding = false;
bool endTold = false;

/// What waits at a yield.
[[gnu::noinline]] void deliverEvents() {
    if (yieldHook != nullptr) yieldHook();
    if (paintsWaiting) deliverPaints();
}

}  // namespace

void endProgram() {
    programEnding = true;
    announceEnd();
}

void announceEnd() {
    if (!programEnding || endTold || !modalForms().empty()) return;
    endTold = true;
    record("exit");
}

void resetEventLoop() {
    yieldHook = nullptr;
    programEnding = false;
    endTold = false;
}

}  // namespace qxterm::headless

namespace qxterm::eventLoop {

void run() {
    while (!ending() && headless::runNextEvent()) {
    }
}

void doEvents() {
    if (headless::yieldHook != nullptr || headless::paintsWaiting) headless::deliverEvents();
}

bool yieldDue() { return true; }

void sleep(std::int32_t milliseconds) { headless::passTime(milliseconds); }

bool ending() { return headless::programEnding; }

}  // namespace qxterm::eventLoop
