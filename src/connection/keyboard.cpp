#include "connection/keyboard.h"

#include <string>

#include "connection/connection_hooks.h"
#include "connection/session.h"
#include "connection/ssh_prompt.h"
#include "connection/transport.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/commands/function_keys.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/view_keys.h"

namespace qxterm {

namespace {

/// Virtual-key codes.
namespace key {
constexpr std::int16_t left = 37;
constexpr std::int16_t up = 38;
constexpr std::int16_t right = 39;
constexpr std::int16_t down = 40;
constexpr std::int16_t insert = 45;
constexpr std::int16_t del = 46;
constexpr std::int16_t f1 = 112;
constexpr std::int16_t f5 = 116;
constexpr std::int16_t f8 = 119;
}  // namespace key

/// What a key sends; empty for a key that sends nothing here.
std::string translated(std::int16_t code) {
    switch (code) {
        case key::left: return "\x1b[D";
        case key::up: return "\x1b[A";
        case key::right: return "\x1b[C";
        case key::down: return "\x1b[B";
        case key::del: return "\x7f";
        default: break;
    }
    if (code < key::f1 || code > key::f8) return {};
    return fkeyStrings[subscript(fkeyBank, 0, labelBanks - 1)][static_cast<std::size_t>(code - key::f1)];
}

}  // namespace

void Form_KeyDown(std::int16_t code, std::int16_t shift) {
    trapped("Form_KeyDown", [&] {
        if (!g_bConnectActive) return;
        if (code == key::f5 && (shift & shiftState::control) != 0) {
            sessionTransport().sendBreak();
            return;
        }
        const std::string text = translated(code);
        if (!text.empty()) {
            sendTyped(text);
        } else if (code == key::insert && shift == shiftState::control) {
            connectionHooks.copySelection();
        } else {
            viewKey(code, shift);
        }
    });
}

void Form_KeyPress(std::int16_t character) {
    trapped("Form_KeyPress", [&] {
        if (localPromptActive()) {
            ProcessSSHKeyStrokes(character);
            return;
        }
        if (!g_bConnectActive) return;
        if (vscterm.value() != liveView) vscterm.setValue(liveView);
        const char byte = static_cast<char>(character);
        sendTyped({&byte, 1});
    });
}

void CScmdfkey_Click(std::int16_t index) {
    trapped("CScmdfkey_Click", [&] {
        Form_KeyDown(toInt16(key::f1 - 1 + index), 0);
        frmterm.setFocus();
    });
}

}  // namespace qxterm
