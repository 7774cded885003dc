#include "model/pair.h"

#include "app/menus.h"
#include "bytes.h"
#include "connection/session.h"
#include "headless-session/session.h"
#include "platform/display.h"
#include "platform/headless/clock.h"
#include "platform/headless/modal.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/recorder.h"
#include "platform/headless/user.h"
#include "platform/main_form.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"

namespace qxterm::test {
namespace {

constexpr std::int64_t tickPeriod = 250;  // ms
constexpr std::int16_t leftButton = 1;

std::string clipboardText;

void keepClipboard(const headless::Record& record) {
    if (record.kind != "clipboard") return;
    for (const auto& [name, value] : record.fields) {
        if (name == "text") clipboardText = std::get<std::string>(value);
    }
}

bool waitInDialog() {
    headless::advance(tickPeriod);
    return true;
}

void startProgram() {
    headless::resetAll();
    headless::putIni("Settings", "Profiles", "echo");
    headless::putIni("echo", "connect", "loop");
    headless::setNextEvent(waitInDialog);
    headless::runProgram("echo");
    headless::setNextEvent(nullptr);
    headless::setSink(keepClipboard);
    headless::deliverPaints();
}

/// The middle of a cell, in twips.
std::int32_t middleX(int column) { return (column * charWidth + charWidth / 2) * display::twipsPerPixelX(); }
std::int32_t middleY(int row) { return (row * lineHeight + lineHeight / 2) * display::twipsPerPixelY(); }

std::string mouse(const char* what, int column, int row) {
    return std::string{"mouse "} + what + ' ' + std::to_string(column * charWidth + charWidth / 2) + ' ' +
           std::to_string(row * lineHeight + lineHeight / 2);
}

}  // namespace

Pair::Pair() { startProgram(); }

template <class Program, class Twin>
std::string Pair::both(Program&& program, Twin&& twin) {
    if (lost_) return {};
    program();
    headless::deliverPaints();
    try {
        twin();
    } catch (const model::NotModelled&) {
        lost_ = true;
        return {};
    }
    return difference(twin_, false);
}

std::string Pair::host(std::string_view bytes) {
    happened_ = "host " + scenario::bytesText(bytes);
    return both([&] { processInput(bytes); }, [&] { twin_.block(bytes); });
}

std::string Pair::key(int code) {
    happened_ = "key " + std::to_string(code);
    return both([&] { frmterm.onKeyDown.raise(static_cast<std::int16_t>(code), 0); },
                [&] { twin_.key(code); });
}

std::string Pair::character(char c) {
    happened_ = "type " + scenario::bytesText({&c, 1});
    return both([&] { frmterm.onKeyPress.raise(static_cast<unsigned char>(c)); },
                [&] { twin_.character(c); });
}

std::string Pair::mouseDown(int column, int row) {
    happened_ = mouse("down", column, row);
    return both([&] { picterm.onMouseDown.raise(leftButton, 0, middleX(column), middleY(row)); },
                [&] { twin_.mouseDown(column, row); });
}

std::string Pair::mouseMove(int column, int row) {
    happened_ = mouse("move", column, row);
    return both([&] { picterm.onMouseMove.raise(leftButton, 0, middleX(column), middleY(row)); },
                [&] { twin_.mouseMove(column, row); });
}

std::string Pair::mouseUp(int column, int row) {
    happened_ = mouse("up", column, row);
    return both([&] { picterm.onMouseUp.raise(leftButton, 0, middleX(column), middleY(row)); },
                [&] { twin_.mouseUp(column, row); });
}

std::string Pair::scroll(int value) {
    happened_ = "scroll " + std::to_string(value);
    return both([&] { (void)headless::moveScrollBar(vscterm, value); }, [&] { twin_.scrollTo(value); });
}

std::string Pair::tick() {
    happened_ = "wait 250";
    return both([] { headless::advance(tickPeriod); }, [&] { twin_.tick(); });
}

std::string Pair::uncovered() {
    happened_ = "paint";
    return both([] { headless::uncover(picterm); }, [&] { twin_.uncovered(); });
}

std::string Pair::copy() {
    happened_ = "menu edit 0";
    // Copy can only be chosen with a selection.
    bool chosen = false;
    std::string text;
    const std::string differs = both([&] { chosen = headless::chooseMenu(mnueditItem, 0); },
                                     [&] {
                                         if (chosen) text = twin_.copy();
                                     });
    if (!differs.empty() || !chosen || lost_) return differs;
    return text == clipboardText ? "" : "copied: \"" + clipboardText + "\" for \"" + text + '"';
}

std::string Pair::randomStep(Choices& choices, const HostLimits& limits) {
    constexpr int keys[] = {37, 38, 39, 40, 46, 112, 115, 119};
    switch (choices.below(32)) {
        case 0: return key(keys[choices.below(8)]);
        case 1: return character(static_cast<char>(choices.below(127)));
        case 2: return mouseDown(choices.between(0, 82), choices.between(0, 23));
        case 3:
        case 4: return mouseMove(choices.between(0, 82), choices.between(0, 23));
        case 5: return mouseUp(choices.between(0, 82), choices.between(0, 23));
        case 6: return scroll(choices.between(440, 502));
        case 7: return scroll(choices.between(0, 501));
        case 8:
        case 9:
        case 10: return tick();
        case 11: return uncovered();
        case 12: return choices.oneIn(3) ? copy() : tick();
        default: return host(hostBytes(choices, limits));
    }
}

}  // namespace qxterm::test
