#include "support/whole_program.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/transport_controls.h"
#include "platform/event_loop.h"
#include "platform/headless/modal.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"
#include "support/target.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/sequences.h"
#include "terminal/model/attributes.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm::fuzz {
namespace {

Sends allowedSends = Sends::anything;

std::string textOf(const headless::Record& record, std::string_view name) {
    for (const auto& [key, value] : record.fields) {
        if (key == name && std::holds_alternative<std::string>(value)) return std::get<std::string>(value);
    }
    return {};
}

constexpr std::array<std::string_view, 18> knownKinds{
    "failed", "window",  "caption", "apptitle", "label",     "box",  "refused", "send", "socket",
    "serial", "process", "ini",     "trace",    "clipboard", "beep", "help",    "draw", "exit"};

void keepSend(const headless::Record& record) {
    const std::string to = textOf(record, "to");
    const std::string bytes = textOf(record, "bytes");
    require(to == "socket" ? comnet2.connected() : comser.portOpen(), "sent over what is open");
    require(allowedSends != Sends::nothing, "nothing is sent by this");
    if (allowedSends == Sends::answers) require(isTelnetAnswer(bytes), "only answers to options are sent");
}

void checkLine(const ScreenLine& line) {
    constexpr int flags = lineFlag::draw | lineFlag::whole | lineFlag::selected;
    require((line.lineFlags & ~flags) == 0, "line flags");
    require(line.dirtyLast >= -1, "the last dirty column");
    require(line.extent >= 0 && line.extent <= screenColumns, "the extent lies in the line");
    for (std::size_t at = 1; at < line.attrs.size(); ++at) {
        const int word = line.attrs[at];
        require((word & 0xFF) < 64 && ((word >> 8) & 15) < 8 && ((word >> 12) & 15) < 8, "attribute words");
    }
    for (std::size_t at = static_cast<std::size_t>(line.extent); at < line.text.size(); ++at) {
        require(line.text[at] == blankLine.text[at] && line.attrs[at + 1] == blankLine.attrs[at + 1],
                "behind its extent a line is blank");
    }
}

void checkTimers() {
    std::array<bool, timerSlots + 1> listed{};
    for (std::int16_t slot = timerHead; slot != 0; slot = timerTable[static_cast<std::size_t>(slot)].next) {
        require(slot > 0 && slot <= timerSlots, "the list of timers holds slots");
        const auto at = static_cast<std::size_t>(slot);
        require(!listed[at], "each slot stands in the list once");
        require(!timerTable[at].free, "a slot of the list is in use");
        listed[at] = true;
    }
    for (std::size_t at = 1; at < listed.size(); ++at)
        require(listed[at] != timerTable[at].free, "a slot that is in use stands in the list");
}

}  // namespace

void allowSends(Sends allowed) { allowedSends = allowed; }

void keepRecord(const headless::Record& record) {
    require(std::ranges::find(knownKinds, record.kind) != knownKinds.end(), "a record of a known kind");
    if (record.kind == "send") keepSend(record);
}

void checkMemory() {
    if (inputBusy != 0) return;  // a window that was opened from within a block
    require(curRow >= 0 && curRow <= statusRow, "the cursor's row exists");
    require(regionTop >= 0 && regionTop < regionBottom && regionBottom < pageRows, "the region's rows");
    require(pendingCount >= 0 && pendingCount <= static_cast<std::int16_t>(pendingCapacity),
            "the pending run");
    require(pendingScrolls >= 0, "scrolls that wait");
    require(scrollbackTop >= 1 && scrollbackTop <= liveView, "the scrollback's first line");
    require(carryOver.size() <= static_cast<std::size_t>(longestCarry), "the carried text");
    require(lastChar.size() <= 1, "the last character");
    std::array<bool, screenRows> seen{};
    for (const std::int32_t record : rowMap) {
        require(record >= 0 && record < screenRows, "rowMap holds record numbers");
        require(!seen[static_cast<std::size_t>(record)], "rowMap holds each record once");
        seen[static_cast<std::size_t>(record)] = true;
    }
    for (std::size_t record = 0; record < screenLines.size(); ++record) {
        const ScreenLine& line = screenLines[record];
        checkLine(line);
        const bool marked = ((recordsToDraw >> record) & 1U) != 0;
        require(marked == ((line.lineFlags & lineFlag::draw) != 0), "the set of records to draw");
    }
    if (!frmterm.loaded()) return;
    require(vscterm.value() >= 1 && vscterm.value() <= liveView, "the scroll bar's value");
}

void Leftovers::told(std::string_view line) {
    const auto plans = [line](std::string_view routine) {
        return line.find(routine) != std::string_view::npos;
    };
    if (plans("endSshHelpers")) helpers = true;
    if (plans("Form_QueryUnload")) attempt = true;
}

void checkSession(const Leftovers& allowed) {
    checkTimers();
    if (eventLoop::ending() || !headless::modalForms().empty()) return;
    if (g_bConnectActive || sessionStarted()) return;
    require(allowed.attempt || !headless::socketInUse(comnet2), "without a session the socket is closed");
    require(allowed.attempt || !comser.portOpen(), "without a session the port is closed");
    require(allowed.helpers || allowed.attempt || !sshHelperRecorded(), "without a session no helper runs");
}

void checkPicture() {
    if (!frmterm.visible() || modeSet(mode::drawingSuspended) || localPromptShown()) return;
    for (int row = 0; row < pictureRows; ++row) {
        const ScreenLine& line = row < pageRows ? virtualLine(vscterm.value() + row) : lineOnRow(statusRow);
        for (int column = 0; column < pictureColumns; ++column) {
            const PictureCell cell = picterm.picture().at(column, row);
            const int word = line.attrs[static_cast<std::size_t>(column) + 1];
            const bool used = column <= line.usedLength;
            const bool blank = !used || ((word & attrFlag::blink) != 0 && textBlinkOff);
            require(cell.text() == (blank ? ' ' : line.text[static_cast<std::size_t>(column)]),
                    "a paint shows the lines' characters");
            require(cell.underlined() == (!blank && (word & attrFlag::underline) != 0),
                    "a paint shows what is underlined");
        }
    }
}

bool isTelnetAnswer(std::string_view hex) {
    constexpr std::string_view terminalType = "fffa180051585445524dfff0";
    if (hex == terminalType || hex == "fffb18") return true;
    return hex.size() == 6 && hex.substr(0, 4) == "fffc";
}

}  // namespace qxterm::fuzz
