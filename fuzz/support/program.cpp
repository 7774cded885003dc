#include "support/program.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "connection/transport_controls.h"
#include "headless-session/session.h"
#include "platform/headless/recorder.h"
#include "support/target.h"
#include "terminal/interpreter/sequences.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"

namespace qxterm::fuzz {
namespace {

std::vector<std::string> sent;

/// What a host can bring about outside the terminal: answers, error boxes and the bell. It reaches no file,
/// no program, no clipboard and no other connection.
constexpr std::array<std::string_view, 3> withinReach{"send", "box", "beep"};

void keepSends(const headless::Record& record) {
    require(std::ranges::find(withinReach, record.kind) != withinReach.end(),
            "the host reaches nothing but the terminal");
    if (record.kind != "send") return;
    for (const auto& [name, value] : record.fields) {
        if (name == "bytes") sent.push_back(std::get<std::string>(value));
    }
}

/// Keeps what is sent from now on, and lets nothing happen that a host must not bring about.
void watchSends() {
    sent.clear();
    headless::setSink(keepSends);
}

void checkRows() {
    std::array<bool, screenRows> seen{};
    for (const std::int32_t record : rowMap) {
        require(record >= 0 && record < screenRows, "rowMap holds record numbers");
        require(!seen[static_cast<std::size_t>(record)], "rowMap holds each record once");
        seen[static_cast<std::size_t>(record)] = true;
    }
}

void checkLine(const ScreenLine& line) {
    require(line.lineFlags >= 0 && line.lineFlags <= 7, "line flags");
    require(line.dirtyLast >= -1 && line.dirtyLast < screenColumns, "dirtyLast lies in the line");
    require((line.lineFlags & lineFlag::draw) == 0, "nothing waits to be drawn");
    for (std::size_t at = 1; at < line.attrs.size(); ++at) {
        const int word = line.attrs[at];
        require((word & 0xFF) < 64 && ((word >> 8) & 15) < 8 && ((word >> 12) & 15) < 8, "attribute words");
    }
}

}  // namespace

void startProgram() {
    headless::startProgram();
    watchSends();
}

void startSession() {
    headless::startSession();
    watchSends();
    require(comnet2.connected(), "the session is up");
}

const std::vector<std::string>& sends() { return sent; }

void checkTerminal() {
    require(inputBusy == 0, "the interpreter has ended");
    require(curRow >= 0 && curRow <= statusRow, "the cursor's row exists");
    // A back tab whose product overflows leaves the cursor where the rounding before it had brought it.
    constexpr int lowest = -8;
    if (curRow == statusRow) {
        require(curCol >= lowest && curCol <= INT16_MAX, "the status-row command took a 16-bit column");
    } else {
        require(curCol >= lowest && curCol <= screenColumns, "the cursor's column exists");
    }
    require(regionTop >= 0 && regionTop < regionBottom && regionBottom < pageRows, "the region's rows");
    require(pendingCount >= 0 && pendingCount <= static_cast<std::int16_t>(pendingCapacity),
            "the pending run");
    require(pendingScrolls == 0, "no scroll waits");
    require(scrollbackTop >= 1 && scrollbackTop <= liveView, "the scrollback's first line");
    require(carryOver.size() <= static_cast<std::size_t>(longestCarry), "the carried text");
    require(lastChar.size() <= 1, "the last character");
    require(recordsToDraw == 0, "no record waits to be drawn");
    checkRows();
    for (const ScreenLine& line : screenLines) checkLine(line);
}

}  // namespace qxterm::fuzz
