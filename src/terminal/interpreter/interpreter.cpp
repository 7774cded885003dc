#include "terminal/interpreter/interpreter.h"

#include <algorithm>
#include <deque>
#include <string>

#include "diag/error_trap.h"
#include "platform/event_loop.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/pending_run.h"
#include "terminal/commands/printing.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/printable_scan.h"
#include "terminal/interpreter/sequence_tables.h"
#include "terminal/interpreter/sequences.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"

namespace qxterm {
namespace {

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
void yield(HostInput& input) {
    input.yields = false;
    if (eventLoop::yieldDue()) {
        layOutKeyBar();
        eventLoop::doEvents();
        if (input.stream == outputStream) returnToLiveView();
    }
    if (eventLoop::ending() || input.stream != outputStream) input.position = input.data.size();
}

/// Length of the printable run at the beginning of a text that begins with a printable character.
std::size_t runLength(const char* text, std::size_t length) {
    const bool single = length > 1 && !isPrintable(static_cast<unsigned char>(text[1]));
    return single ? 1 : printableRun(text, length);
}

/// Takes the printable run at the position, and CR and LF behind it where they can go with it.
void takeRun(HostInput& input) {
    const char* const text = input.data.data() + input.position;
    const std::size_t left = input.data.size() - input.position;
    const std::size_t length = runLength(text, left);
    const std::string_view run{text, length};
    if (left - length >= 2 && text[length] == '\r' && text[length + 1] == '\n' && acceptLine(run)) {
        input.position += length + 2;
        input.yields = true;
        return;
    }
    acceptPrintable(run);
    input.position += length;
}

/// What is to be read again in front of the next block: the sequence met last, if it is carried.
struct Carry {
    std::size_t from = 0;
    std::size_t to = 0;  ///< the place behind it; nothing is carried while both are equal
};

/// Carries out the control character, or the sequence, at the position.
void takeControl(HostInput& input, Carry& carry) {
    const unsigned char byte = input.next();
    input.start = input.position++;
    if (byte != control::escape && byte != control::telnet) {
        if (const Verb verb = controlVerb(byte); verb != nullptr) verb(input);
        return;
    }
    input.carried = false;
    byte == control::escape ? doEsc(input) : doTelnet(input);
    if (input.carried || carry.from != carry.to) [[unlikely]]
        carry = {input.start, input.carried ? input.position : input.start};
}

void interpret(HostInput& input, Carry& carry) {
    std::size_t nextYield = longestStretch;
    while (!input.atEnd()) {
        if (isPrintable(input.next())) {
            takeRun(input);
        } else {
            takeControl(input, carry);
        }
        if (!input.yields && input.position < nextYield) [[likely]]
            continue;
        if (input.yields || !input.atEnd()) yield(input);
        nextYield = input.position + longestStretch;
    }
}

/// Keeps carryOver in step with what was carried last, whatever ends the block. Data that begins with the
/// former carryOver lies in that very string, so that a long sequence is not copied for each block that adds
/// to it.
class CarryKeeper {
public:
    explicit CarryKeeper(std::string_view block) {
        resumeSequence(carryOver.size() >= 2 && carryOver[1] == '[');
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
    ~CarryKeeper() {
        if (carry_.from == carry_.to || stream_ != outputStream) return;
        if (!buffer_.empty() && carry_.from == 0) {
            buffer_.resize(carry_.to);
            carryOver.swap(buffer_);
        } else {
            carryOver.assign(data_.substr(carry_.from, carry_.to - carry_.from));
        }
    }

    [[nodiscard]] std::string_view data() const { return data_; }
    [[nodiscard]] Carry& carry() { return carry_; }

private:
    std::string buffer_;
    std::string_view data_;
    Carry carry_;
    std::uint32_t stream_ = outputStream;
};

void interpretBlock(std::string_view block) {
    CarryKeeper keeper{block};
    HostInput input{.data = keeper.data(), .parameters = escParams()};
    interpret(input, keeper.carry());
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
        if (localPromptShown()) {
            picterm.refresh();  // what the block left on the prompt is painted over
        } else {
            toggleCursor(showCursor);
        }
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
