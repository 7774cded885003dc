#include "platform/headless/recorder.h"

#include <set>

namespace qxterm::headless {

void (*recordsDrawingChanged)() = nullptr;

namespace {

constexpr std::string_view drawKind = "draw";

Sink currentSink = nullptr;
bool drawingOn = false;

std::set<std::string, std::less<>>& switchedOff() {
    static std::set<std::string, std::less<>> kinds;
    return kinds;
}

void tellChange() {
    if (recordsDrawingChanged != nullptr) recordsDrawingChanged();
}

}  // namespace

void setSink(Sink sink) {
    currentSink = sink;
    tellChange();
}

Sink sink() { return currentSink; }

void setRecording(std::string_view kind, bool on) {
    if (kind == drawKind) {
        drawingOn = on;
        tellChange();
    } else if (on) {
        switchedOff().erase(std::string{kind});
    } else {
        switchedOff().emplace(kind);
    }
}

bool recording(std::string_view kind) {
    return kind == drawKind ? drawingOn : switchedOff().find(kind) == switchedOff().end();
}

bool recordsDrawing() { return drawingOn && currentSink != nullptr; }

void record(std::string_view kind, Fields fields) {
    if (currentSink == nullptr || !recording(kind)) return;
    const OwnMemory own;
    currentSink({std::string{kind}, std::move(fields)});
}

void resetRecorder() {
    currentSink = nullptr;
    drawingOn = false;
    switchedOff().clear();
    tellChange();
}

}  // namespace qxterm::headless
