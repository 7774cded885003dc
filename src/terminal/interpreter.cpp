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

/// True while processInput works, also while one of its error boxes is open.
bool interpreting = false;
std::deque<std::string> waitingBlocks;

/// Any output brings the view back to the live screen.
void returnToLiveView() {
    if (vscterm.value() == liveView) return;
    vscterm.setValue(liveView);
    toggleCursor(hideCursor);
}

/// Lets paints, timers, keys and the user's commands in between. What is left of the block is dropped when
/// the program ends meanwhile.
void yield(Interpretation& input) {
    layOutKeyBar();
    eventLoop::doEvents();
    returnToLiveView();
    if (eventLoop::ending()) input.position = input.length();
}

void keepLast(char c) {
    if (lastChar.size() == 1) {
        lastChar[0] = c;
    } else {
        lastChar.assign(1, c);
    }
}

void acceptPrintable(std::string_view run) {
    keepLast(run.back());
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
        const auto waiting = static_cast<std::size_t>(pendingCount);
        const std::size_t count = std::min(room, run.size());
        (void)subscript(static_cast<std::int64_t>(waiting + count), 0, pendingCapacity);
        if (count == 1) {  // frequent, and not worth a call
            pendingText[waiting] = run.front();
        } else {
            std::memcpy(pendingText.data() + waiting, run.data(), count);
        }
        pendingCount = static_cast<std::int16_t>(waiting + count);
        run.remove_prefix(count);
    }
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
        case control::carriageReturn:
            putBuf();
            curCol = 0;
            break;
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
    while (input.position <= input.length()) {
        const auto at = static_cast<std::size_t>(input.position - 1);
        const auto byte = static_cast<unsigned char>(input.data[at]);
        if (isPrintable(byte)) {
            const std::size_t run = printableRun(input.data.data() + at, input.data.size() - at);
            acceptPrintable({input.data.data() + at, run});
            input.position += static_cast<std::int32_t>(run);
            continue;
        }
        actOn(input, byte, carryFrom, carryTo);
        if (input.wentBack) {
            input.wentBack = false;
            yield(input);
        }
        ++input.position;
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
        if (to_ < from_) return;
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
        if (vscterm.value() != liveView) vscterm.setValue(liveView);
        toggleCursor(hideCursor);
        interpretBlock(block);
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

}  // namespace qxterm
