#include "faults/ordinary_use.h"

#include <new>

#include "app/dialogs/options_dialog.h"
#include "app/dialogs/profile_dialog.h"
#include "app/dialogs/splash.h"
#include "app/edit_menu.h"
#include "app/menus.h"
#include "config/connect_type.h"
#include "connection/connection_hooks.h"
#include "connection/connection_manager.h"
#include "connection/keyboard.h"
#include "connection/session.h"
#include "connection/ssh_prompt.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "headless-session/session.h"
#include "platform/event_loop.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/clock.h"
#include "platform/headless/failures.h"
#include "platform/headless/message_box.h"
#include "platform/headless/modal.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/recorder.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "platform/headless/user.h"
#include "platform/main_form.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"

namespace qxterm::test {
namespace {

/// An event of the user, the host or the clock; what the system has no memory to bring does not happen.
template <class Event>
void happens(Event&& event) {
    try {
        event();
    } catch (const std::bad_alloc&) {
    }
}

using headless::Point;

/// Of the window that is open now.
Form* openForm = nullptr;
int turns = 0;
std::uint32_t refusedBefore = 0;
constexpr int patience = 60;             // turns until the person gives up waiting and presses Cancel
constexpr int lastTurn = 80;             // the window does not go
constexpr std::int64_t turnTime = 1000;  // milliseconds

bool pressButton(Form& form, const char* name) {
    Control* control = form.find(name);
    return control != nullptr && headless::click(*control);
}

bool overSocket() {
    return sessionStarted() && (g_iConnectType() == connectType::net || g_iConnectType() == connectType::ssh);
}

/// The host answers, or the modem; an attempt that has failed is left alone.
void awaitConnection() {
    const bool refused = headless::failuresOf(Point::socketConnect) != refusedBefore;
    headless::advance(turnTime / 10);
    if (!frmConn.loaded()) return;
    if (comser.portOpen()) {
        headless::setCarrier(comser, true);
    } else if (!refused && overSocket() && !g_bConnectActive) {
        headless::socketConnects(comnet2);
    }
    headless::advance(turnTime);
    if (turns > patience && frmConn.loaded()) pressButton(frmConn, "cmdCancel");
}

void changeOptions() {
    if (turns == 1) {
        pressButton(frmOptions, frmOptions.find("option3DLarge") != nullptr ? "option3DLarge" : "cmdOK");
    } else {
        pressButton(frmOptions, turns == 2 ? "cmdOK" : "cmdCancel");
    }
}

void saveProfile() {
    auto* const name = static_cast<TextBox*>(frmprof.find("txtprof"));
    if (turns == 1 && name != nullptr) (void)headless::enterText(*name, "copy");
    pressButton(frmprof, turns == 1 ? "cmd3Dconn" : "cmd3Dcancel");
}

/// One thing that the person does, or waits for, while a window is open.
bool doNext() {
    Form& form = *headless::modalForms().back();
    if (openForm != &form) {
        openForm = &form;
        turns = 0;
    }
    if (++turns > lastTurn) {
        windowsThatStayed.emplace_back(form.name());
        (void)form.unload();
        turns = 0;
        return true;
    }
    if (&form == &frmConn) awaitConnection();
    if (&form == &frmOptions) changeOptions();
    if (&form == &frmprof) saveProfile();
    if (&form == &frmSplash) pressButton(form, "cmdOK");
    if (!form.loaded()) openForm = nullptr;
    return true;
}

void typeText(std::string_view text) {
    for (const char c : text) Form_KeyPress(static_cast<unsigned char>(c));
}

void drag(std::int32_t toColumn) {
    const std::int32_t cell = picterm.textWidth("M");
    if (!picterm.form().loaded() || cell == 0) return;
    picterm.onMouseDown.raise(1, 0, 0, 0);
    picterm.onMouseMove.raise(1, 0, toColumn * cell, 0);
    picterm.onMouseUp.raise(1, 0, toColumn * cell, 0);
}

void connect(std::string_view type) {
    if (g_bConnectActive || eventLoop::ending()) return;
    refusedBefore = headless::failuresOf(Point::socketConnect);
    openForm = nullptr;
    if (!comser.portOpen()) headless::setCarrier(comser, false);
    (void)headless::chooseMenu(mnuconnitem, connectionItem::connect);
    if (type == "ssh" && localPromptActive()) typeText("bob\rsecret\r");
}

/// To whatever is open: it need not be what the profile says.
void deliver(std::string_view type, std::string_view block) {
    if (comser.portOpen()) {
        headless::serialReceives(comser, block, false);
    } else if (comnet2.connected()) {
        headless::socketReceives(comnet2, block);
    } else if (type == "loop" && g_bConnectActive) {
        sendTyped(block);
    } else {
        processInput(block);
    }
    if (headless::paintsWaiting) headless::deliverPaints();
}

void logIn(std::string_view type) {
    if (type != "ssh" || !g_bConnectActive) return;
    deliver(type, "login: ");
    deliver(type, "Password: ");
}

void readAndType(std::string_view type) {
    deliver(type, "\x1b[1;1Hfirst \x1b[1;31;44mline\x1b[m\r\n\x0elqqk\x0f\a\x1b[5mblinks\x1b[m\r\n");
    deliver(type, "\xff\xfd\x18");
    for (int n = 0; n < 30; ++n) deliver(type, "scrolls away\r\n");
    typeText("ls\r");
    Form_KeyDown(112, 0);  // F1
    deliver(type, "\x1b[7;4;0q  Call    desk  cmd\r\x1b[0p");
    headless::click(CScmdfkey[6]);
    headless::advance(2000);
}

void useTheWindow() {
    (void)headless::moveScrollBar(vscterm, vscterm.value() - 5);
    headless::deactivate(frmterm);
    headless::activate(frmterm);
    picterm.refresh();
    if (headless::paintsWaiting) headless::deliverPaints();
    (void)headless::moveScrollBar(vscterm, vscterm.maximum());
}

void selectCopyPaste() {
    drag(5);
    (void)headless::chooseMenu(mnueditItem, editItem::copy);
    drag(7);
    Form_KeyDown(45, shiftState::control);  // Control+Insert copies, too
    (void)headless::chooseMenu(mnueditItem, editItem::paste);
    headless::putOnClipboard("from elsewhere");
    (void)headless::chooseMenu(mnueditItem, editItem::paste);
    (void)headless::chooseMenu(mnueditItem, editItem::clear);
}

/// Each step; the program may end in any of them.
std::vector<void (*)(std::string_view)> ordinarySteps() {
    return {
        logIn,
        readAndType,
        [](std::string_view) { useTheWindow(); },
        [](std::string_view) { selectCopyPaste(); },
        [](std::string_view) { (void)headless::chooseMenu(mnuconnitem, connectionItem::options); },
        [](std::string_view) { (void)headless::chooseMenu(mnuprofitem, 2); },  // Save
        [](std::string_view) { (void)headless::chooseMenu(mnuprofitem, 3); },  // Save As
        [](std::string_view) { (void)headless::chooseMenu(mnuhelpItem, 0); },  // Contents
        [](std::string_view) { (void)headless::chooseMenu(mnuhelpItem, 3); },  // About
        [](std::string_view type) {
            if (type == "serial") headless::serialReceives(comser, "quiet", true);
            headless::advance(500);
        },
        [](std::string_view) {
            (void)headless::chooseMenu(mnuconnitem, connectionItem::sendBreak);
            headless::advance(1000);
        },
        [](std::string_view) { (void)headless::chooseMenu(mnuconnitem, connectionItem::disconnect); },
        connect,
        logIn,
        [](std::string_view type) { deliver(type, "once more\r\n"); },
        [](std::string_view) { (void)headless::chooseMenu(mnuconnitem, connectionItem::disconnect); },
    };
}

std::string trimmed(std::string text) { return text.erase(text.find_last_not_of(' ') + 1); }

}  // namespace

void Use::prepare() const {
    windowsThatStayed.clear();
    openForm = nullptr;
    turns = 0;
    refusedBefore = 0;
    headless::setNextEvent(doNext);
    headless::putIni("Settings", "Profiles", "lab ");
    headless::putIni("Settings", "Logging", "1");
    headless::putIni("lab", "connect", type);
    headless::putIni("lab", "host", "host1");
}

void Use::work() const {
    happens([&] { headless::runProgram(type == "none" ? "" : "lab"); });
    if (type == "ssh" && !eventLoop::ending() && localPromptActive())
        happens([] { typeText("bob\rsecret\r"); });
    const auto all = [] {
        const headless::OwnMemory own;
        return ordinarySteps();
    }();
    for (const auto& step : all) {
        if (eventLoop::ending()) return;
        happens([&] { step(type); });
    }
}

void Use::hostSays(std::string_view line) const {
    // A profile that could not be read is read now; without a session what arrives is interpreted all the
    // same.
    if (type != "none") connect(type);
    logIn(type);
    const std::string block = "\x1b[1;1H\x1b[2J" + std::string{line} + "\r\n";
    deliver(type, block);
}

void Use::leave() const {
    for (int attempt = 0; attempt < 3 && !eventLoop::ending(); ++attempt) {
        headless::queueAnswer(g_bConnectActive ? Answer::yes : Answer::no);
        headless::queueAnswer(Answer::no);
        (void)frmterm.unload(UnloadReason::formControlMenu);
        headless::resetAnswers();
    }
}

std::string storedRow(std::int32_t row) {
    const ScreenLine& line = lineOnRow(row);
    return trimmed({line.text.begin(), line.text.end()});
}

std::string drawnRow(std::int32_t row) {
    std::string text;
    for (int column = 0; column < pictureColumns; ++column) text += picterm.picture().at(column, row).text();
    return trimmed(text);
}

}  // namespace qxterm::test
