#include "connection/ssh_prompt.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "connection/auto_login.h"
#include "connection/session.h"
#include "connection/ssh_connect.h"
#include "diag/error_trap.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"
#include "terminal/model/screen_store.h"

namespace qxterm {
namespace {

constexpr std::array<std::string_view, 5> banner{
    "WARNING:",
    "This system is restricted to authorized users for business purposes.",
    "Unauthorized access is a violation of the law.  This system is monitored",
    "for administration and security reasons.  By proceeding, you are",
    "consenting to this monitoring.",
};
constexpr std::string_view loginPrompt = "ssh login: ";
constexpr std::string_view passwordPrompt = "password: ";

constexpr std::int16_t backspace = 8;
constexpr std::int16_t lineFeed = 10;
constexpr std::int16_t carriageReturn = 13;

/// A line of the local dialogue: a prompt, none at first, and what is echoed behind it.
struct LocalLine {
    std::string_view prompt;
    std::string text;
};
std::array<LocalLine, 21> localLines;
std::size_t currentLine = 0;

/// Banner and dialogue stand on the picture.
bool textUp = false;
/// The dialogue runs: a character typed belongs to it.
bool dialogueRuns = false;
bool loginEntered = false;

bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void clearDialogue() {
    localLines.fill({});
    currentLine = 0;
    loginEntered = false;
    forgetLogin();
    forgetPassword();
}

/// The whole picture in its background, the cursor with it.
void clearPicture() {
    picterm.clear(picterm.clipBox());
    forgetShownCursor();
}

/// As much of it as can be seen, however much was typed.
std::string textOfRow(std::size_t row) {
    if (row < banner.size()) return std::string{banner[row]};
    const std::size_t index = row - banner.size();
    if (index >= localLines.size()) return {};
    const LocalLine& line = localLines[index];
    return std::string{line.prompt} + line.text.substr(0, screenColumns);
}

void drawRow(std::size_t row) {
    if (row >= static_cast<std::size_t>(pageRows)) return;
    const std::string text = textOfRow(row);
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(screenColumns));
    ScreenLine line = blankLine;
    std::copy_n(text.begin(), length, line.text.begin());
    line.usedLength = static_cast<std::int16_t>(static_cast<std::int32_t>(length) - 1);
    paintWholeLine(line, static_cast<std::int32_t>(row));
}

void restoreAttribute() { doAttr(curAttr, curFg, curBg); }

void drawCurrentLine() {
    drawRow(banner.size() + currentLine);
    restoreAttribute();
}

void putUpPrompt(std::string_view prompt) {
    localLines[currentLine].prompt = prompt;
    drawCurrentLine();
}

void eraseCharacter() {
    std::string& echo = localLines[currentLine].text;
    if (!echo.empty()) echo.pop_back();
    loginEntered ? removeLastOfPassword() : removeLastOfLogin();
    drawCurrentLine();
}

void addCharacter(char character) {
    if (loginEntered) {
        addToPassword(character);
        return;
    }
    addToLogin(character);
    localLines[currentLine].text += character;
    drawCurrentLine();
}

void endField() {
    if (currentLine + 1 < localLines.size()) ++currentLine;
    if (loginEntered) {
        dialogueRuns = false;
        localConnect();
    } else {
        loginEntered = true;
        doFakePassword();
    }
}

}  // namespace

void DisplayBanner() {
    trapped("DisplayBanner", [] {
        clearDialogue();
        textUp = true;
        localLines[currentLine].prompt = loginPrompt;
        clearPicture();
        for (std::size_t row = 0; row <= banner.size(); ++row) drawRow(row);
        restoreAttribute();
    });
}

void doFakeLogin() {
    trapped("SSH_Login", [] {
        clearDialogue();
        textUp = true;
        dialogueRuns = true;
        putUpPrompt(loginPrompt);
    });
}

void doFakePassword() {
    trapped("doFakePassword", [] { putUpPrompt(passwordPrompt); });
}

void ProcessSSHKeyStrokes(std::int16_t character) {
    trapped("ProcessSSHKeyStrokes", [&] {
        switch (character) {
            case backspace: eraseCharacter(); break;
            case carriageReturn:
            case lineFeed: endField(); break;
            default: addCharacter(static_cast<char>(character)); break;
        }
        picterm.refresh();
    });
}

void ClearSSHText() {
    trapped("ClearSSHText", [] {
        textUp = false;
        dialogueRuns = false;
        clearPicture();
        picterm.refresh();
    });
}

bool localPromptActive() { return dialogueRuns && !g_bConnectActive; }

bool localTextUp() { return textUp; }

bool paintLocalText() {
    if (!localTextUp()) return false;
    for (std::size_t row = 0; row < static_cast<std::size_t>(pageRows); ++row) drawRow(row);
    picterm.clear({0, statusRow, screenColumns, 1});
    restoreAttribute();
    return true;
}

void endLocalPrompt() {
    dialogueRuns = false;
    forgetPassword();
    if (!textUp) return;
    textUp = false;
    picterm.refresh();
}

void giveWayToHost(std::string_view text) {
    if (textUp && std::any_of(text.begin(), text.end(), isAlphanumeric)) ClearSSHText();
}

void resetLocalPrompt() {
    clearDialogue();
    textUp = false;
    dialogueRuns = false;
}

}  // namespace qxterm
