#include "terminal/interpreter.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>

#include "connection/telnet.h"
#include "diag/error_trap.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "terminal/attributes.h"
#include "terminal/control_sequences.h"
#include "terminal/cursor_commands.h"
#include "terminal/escape_sequences.h"
#include "terminal/function_keys.h"
#include "terminal/ordinary_run.h"
#include "terminal/printable_scan.h"
#include "terminal/screen_operations.h"
#include "terminal/scrolling.h"
#include "terminal/view/cursor.h"
#include "terminal/view/screen_controls.h"

namespace qxterm {
namespace {

namespace control {
constexpr unsigned char nul = 0;
constexpr unsigned char bell = 7;
constexpr unsigned char backspace = 8;
constexpr unsigned char tab = 9;
constexpr unsigned char lineFeed = 10;
constexpr unsigned char carriageReturn = 13;
constexpr unsigned char shiftOut = 14;
constexpr unsigned char shiftIn = 15;
constexpr unsigned char escape = 27;
constexpr unsigned char iac = 255;
}  // namespace control

/// Bytes without a line feed after which the interpreter yields all the same.
constexpr std::size_t longestStretch = 4096;

/// True while processInput works, also while one of its error boxes is open.
bool interpreting = false;
std::deque<std::string> waitingBlocks;

[[gnu::noinline]] void leaveScrollback() {
    vscterm.setValue(liveView);
    toggleCursor(hideCursor);
}

/// Any output brings the view back to the live screen.
void returnToLiveView() {
    if (vscterm.value() != liveView) [[unlikely]]
        leaveScrollback();
}

/// Lets paints, timers, keys and the user's commands in between. What is left of the block is dropped when
/// the program ends or another session begins meanwhile.
void yield(Interpretation& input) {
    if (eventLoop::yieldDue()) {
        layOutKeyBar();
        eventLoop::doEvents();
        if (input.stream == outputStream) returnToLiveView();
    }
    if (eventLoop::ending() || input.stream != outputStream) input.position = input.length();
}

void keepLast(char c) {
    if (lastChar.size() == 1) {
        lastChar[0] = c;
    } else {
        lastChar.assign(1, c);
    }
}

/// Appends a run for which there is room.
void appendPending(std::string_view run) {
    const auto waiting = static_cast<std::size_t>(pendingCount);
    if (run.size() == 1) {  // frequent, and not worth a call
        pendingText[waiting] = run.front();
    } else {
        std::memcpy(pendingText.data() + waiting, run.data(), run.size());
    }
    pendingCount = static_cast<std::int16_t>(waiting + run.size());
}

/// A run that comes to the right edge, or does not begin within the line.
[[gnu::noinline]] void acceptAtEdge(std::string_view run) {
    while (!run.empty()) {
        if (curCol + pendingCount >= screenColumns && !modeSet(mode::wrapDisabled)) {
            putBuf();
            curCol = 0;
            lineFeed();
        }
        if (curCol + pendingCount >= screenColumns) {
            flushBuf();
            --curCol;  // the character overwrites the last column
        }
        const auto room = static_cast<std::size_t>(std::max(screenColumns - curCol - pendingCount, 1));
        const std::size_t count = std::min(room, run.size());
        (void)subscript(static_cast<std::int64_t>(pendingCount) + static_cast<std::int64_t>(count), 0,
                        pendingCapacity);
        appendPending(run.substr(0, count));
        run.remove_prefix(count);
    }
}

void acceptPrintable(std::string_view run) {
    keepLast(run.back());
    const std::int64_t room = screenColumns - curCol - pendingCount;
    if (curCol >= 0 && static_cast<std::int64_t>(run.size()) <= room) [[likely]] {
        appendPending(run);
    } else {
        acceptAtEdge(run);
    }
}

[[nodiscard]] bool lineEndsAt(std::string_view data, std::size_t at) {
    return data.size() - at >= 2 && data[at] == control::carriageReturn && data[at + 1] == control::lineFeed;
}

/// The short way of a run that CR and LF follow, when it is an ordinary one: acceptPrintable, putBuf and
/// lineFeed without the way through the pending run. Returns false, with nothing done, in every other case.
bool acceptLine(std::string_view run) {
    if (pendingCount != 0 || run.size() > screenColumns) return false;
    const auto count = static_cast<std::int32_t>(run.size());
    ScreenLine* const line = lineOfOrdinaryRun(count);
    if (line == nullptr) return false;
    markOrdinaryRun(*line, count);
    storeOrdinaryRun(*line, run.data(), count);
    curCol = 0;
    keepLast(run.back());
    lineFeed();
    return true;
}

/// Length of the printable run at the beginning of a text that begins with a printable character.
std::size_t runLength(const char* text, std::size_t length) {
    const bool single = length > 1 && !isPrintable(static_cast<unsigned char>(text[1]));
    return single ? 1 : printableRun(text, length);
}

void returnCarriage() {
    putBuf();
    curCol = 0;
}

void horizontalTab() {
    flushBuf();
    if (curCol % 8 == 0) ++curCol;
    curCol = std::min(tabFloor(curCol) + 8, screenColumns);
}

void shift(bool out) {
    flushBuf();
    curAttr =
        static_cast<std::int16_t>(out ? (curAttr | attrFlag::shiftOut) : (curAttr & ~attrFlag::shiftOut));
}

void actOn(Interpretation& input, unsigned char byte, std::int32_t& carryFrom, std::int32_t& carryTo) {
    const auto sequence = [&](auto&& routine) {
        const std::int32_t introducer = input.position;
        const bool carried = routine(input);
        carryFrom = introducer;
        carryTo = carried ? std::min(input.position, input.length()) : introducer - 1;
    };
    switch (byte) {
        case control::bell: display::beep(); break;
        case control::backspace: cursorLeft(); break;
        case control::tab: horizontalTab(); break;
        case control::lineFeed:
            lineFeed();
            yield(input);
            break;
        case control::carriageReturn: returnCarriage(); break;
        case control::shiftOut: shift(true); break;
        case control::shiftIn: shift(false); break;
        case control::escape: sequence([](Interpretation& at) { return doEsc(at); }); break;
        case control::iac:
            sequence([](Interpretation& at) {
                bool carried = false;
                doTelnet(at.data, at.position, at.length(), carried);
                return carried;
            });
            break;
        case control::nul:
        default: break;
    }
}

void interpret(Interpretation& input, std::int32_t& carryFrom, std::int32_t& carryTo) {
    const std::string_view data = input.data;
    std::size_t nextYield = longestStretch;
    for (std::size_t at = 0; at < data.size();) {
        if (at >= nextYield) [[unlikely]] {
            input.position = static_cast<std::int32_t>(at);
            yield(input);
            at = static_cast<std::size_t>(input.position);
            nextYield = at + longestStretch;
            continue;
        }
        const auto byte = static_cast<unsigned char>(data[at]);
        if (isPrintable(byte)) {
            const std::size_t run = runLength(data.data() + at, data.size() - at);
            if (lineEndsAt(data, at + run) && acceptLine({data.data() + at, run})) {
                input.position = static_cast<std::int32_t>(at + run) + 2;  // on the line feed
                yield(input);
                at = static_cast<std::size_t>(input.position);
                nextYield = at + longestStretch;
                continue;
            }
            acceptPrintable({data.data() + at, run});
            at += run;
            continue;
        }
        if (byte == control::carriageReturn) {
            returnCarriage();
            ++at;
            continue;
        }
        if (byte == control::escape && !input.resumed) {
            if (const std::size_t behind = doOrdinarySequence(data, at); behind != at) {
                carryTo = 0;  // nothing is carried
                at = behind;
                continue;
            }
        }
        input.position = static_cast<std::int32_t>(at) + 1;
        actOn(input, byte, carryFrom, carryTo);
        if (input.wentBack) {
            input.wentBack = false;
            yield(input);
        }
        at = static_cast<std::size_t>(input.position);  // counts from 1: the byte behind
        if (byte == control::lineFeed) nextYield = at + longestStretch;
    }
}

/// Keeps carryOver in step with what was carried last, whatever ends the block. Data that begins with the
/// former carryOver lies in that very string, so that a long sequence is not copied for each block that adds
/// to it.
class CarryKeeper {
public:
    CarryKeeper(std::string_view block, std::int32_t& carryFrom, std::int32_t& carryTo)
        : from_{carryFrom}, to_{carryTo} {
        resumed_ = carryOver.size() >= 2 && carryOver[1] == '[';
        if (!carryOver.empty()) {
            buffer_.swap(carryOver);
            buffer_ += block;
            data_ = buffer_;
        } else {
            data_ = block;
        }
    }
    CarryKeeper(const CarryKeeper&) = delete;
    CarryKeeper& operator=(const CarryKeeper&) = delete;
    ~CarryKeeper() { update(); }

    [[nodiscard]] std::string_view data() const { return data_; }
    [[nodiscard]] bool resumed() const { return resumed_; }

private:
    void update() {
        if (to_ < from_ || stream_ != outputStream) return;
        const auto from = static_cast<std::size_t>(from_ - 1);
        const auto count = static_cast<std::size_t>(to_ - from_ + 1);
        if (!buffer_.empty() && from == 0) {
            buffer_.resize(count);
            carryOver.swap(buffer_);
        } else {
            carryOver.assign(data_.substr(from, count));
        }
    }

    std::string buffer_;
    std::string_view data_;
    std::int32_t& from_;
    std::int32_t& to_;
    bool resumed_ = false;
    std::uint32_t stream_ = outputStream;
};

void interpretBlock(std::string_view block) {
    // 1-based places of what is carried so far, none while the last lies before the first.
    std::int32_t carryFrom = 1;
    std::int32_t carryTo = 0;
    const CarryKeeper keeper{block, carryFrom, carryTo};
    Interpretation input{.data = keeper.data(), .resumed = keeper.resumed()};
    interpret(input, carryFrom, carryTo);
}

void processBlock(std::string_view block) {
    ErrorTrap trap{"processInput", Arm::always, [] { inputBusy = 0; }};
    trap.run([&] {
        inputBusy = -1;
        const std::uint32_t stream = outputStream;
        if (vscterm.value() != liveView) vscterm.setValue(liveView);
        toggleCursor(hideCursor);
        interpretBlock(block);
        if (stream != outputStream) {
            // The window is the next session's: its login prompt, or the screen with the cursor.
            picterm.refresh();
            return;
        }
        flushBuf();
        layOutKeyBar();
        toggleCursor(showCursor);
    });
    inputBusy = 0;
}

struct Interpreting {
    Interpreting() { interpreting = true; }
    ~Interpreting() { interpreting = false; }
    Interpreting(const Interpreting&) = delete;
    Interpreting& operator=(const Interpreting&) = delete;
};

}  // namespace

void processInput(std::string_view block) {
    if (interpreting) {
        waitingBlocks.emplace_back(block);
        return;
    }
    const Interpreting guard;
    processBlock(block);
    while (!waitingBlocks.empty()) {
        const std::string next = std::move(waitingBlocks.front());
        waitingBlocks.pop_front();
        processBlock(next);
    }
}

void dropWaitingBlocks() { waitingBlocks.clear(); }

void beginOutput() {
    dropWaitingBlocks();
    flushBuf();
    carryOver.clear();
    lastChar.clear();
    ++outputStream;
}

}  // namespace qxterm
