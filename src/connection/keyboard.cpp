#include "connection/keyboard.h"

#include <string>

#include "connection/send.h"
#include "connection/serial_line.h"
#include "connection/session_state.h"
#include "connection/ssh_prompt.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/commands/function_keys.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm {

namespace {

/// Virtual-key codes.
namespace key {
constexpr std::int16_t left = 37;
constexpr std::int16_t up = 38;
constexpr std::int16_t right = 39;
constexpr std::int16_t down = 40;
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

void sendTyped(std::string_view text) {
    switch (g_iConnectType) {
        case connectType::net:
        case connectType::ssh: sendBytes(text); break;
        case connectType::serial:
        case connectType::modem: sendSerial(text); break;
        case connectType::loop: processInput(text); break;
        default: break;
    }
}

void Form_KeyDown(std::int16_t code, std::int16_t shift) {
    trapped("Form_KeyDown", [&] {
        if (!g_bConnectActive) return;
        if (code == key::f5 && (shift & shiftState::control) != 0) {
            const bool hasLine =
                g_iConnectType == connectType::serial || g_iConnectType == connectType::modem;
            if (hasLine) sendBreak();
            return;
        }
        const std::string text = translated(code);
        if (!text.empty()) sendTyped(text);
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
