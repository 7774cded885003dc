#include "random-steps/steps.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "bytes.h"
#include "config/connect_type.h"
#include "connection/session.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/headless/failures.h"
#include "platform/headless/modal.h"
#include "platform/headless/socket.h"
#include "program.h"
#include "program_forms.h"
#include "support/target.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"

namespace qxterm::fuzz {
namespace {

using namespace std::string_literals;

/// Those whose traps tell of a failure.
constexpr std::array<const char*, 72> routines{"CN_NetStat",
                                               "CScmdfkey_Click",
                                               "ClearSSHText",
                                               "DataArrival",
                                               "DisplayBanner",
                                               "Form_Activate",
                                               "Form_KeyDown",
                                               "Form_KeyPress",
                                               "Form_Load",
                                               "Form_QueryUnload",
                                               "Form_Unload",
                                               "GetNetworkBytes",
                                               "ProcessSSHKeyStrokes",
                                               "SSH_Login",
                                               "StartSSH",
                                               "calcSize",
                                               "cmd3Dopen_Click",
                                               "cmdOK_Click",
                                               "comnet2_Close",
                                               "comnet2_Connect",
                                               "comser_OnComm",
                                               "connectPort",
                                               "cursorLeft",
                                               "delChars",
                                               "disconnectPort",
                                               "doAttr",
                                               "doEsc",
                                               "doEscBracket",
                                               "doFakePassword",
                                               "doTelnet",
                                               "endSshHelpers",
                                               "flushBuf",
                                               "getSel",
                                               "hideKeyBar",
                                               "insBuf",
                                               "insChars",
                                               "layOutWindow",
                                               "lineDraw",
                                               "lineFeed",
                                               "lineOut",
                                               "localConnect",
                                               "main",
                                               "mbPaint",
                                               "mnuconnitem_Click",
                                               "mnueditItem_Click",
                                               "modemConnect",
                                               "picterm_MouseDown",
                                               "picterm_MouseMove",
                                               "picterm_MouseUp",
                                               "picterm_Paint",
                                               "processInput",
                                               "putBuf",
                                               "readIniFile",
                                               "readUserProf",
                                               "recordChanges",
                                               "reOrderProf",
                                               "resetScreen",
                                               "resetTerminal",
                                               "scrErase",
                                               "scrollDown",
                                               "scrollUp",
                                               "selFunc",
                                               "sendBytes",
                                               "sendSerial",
                                               "sendText",
                                               "setCaption",
                                               "setConnItems",
                                               "showKeyLabels",
                                               "showSel",
                                               "tmrConn_Timer",
                                               "toggleCursor",
                                               "writeUserProf"};

constexpr std::array<const char*, 5> profiles{"telnet", "line", "call", "tunnel", "echo"};
constexpr std::array<const char*, 5> types{"net", "serial", "modem", "ssh", "loop"};

/// A failure of the first of these that is planned ends the program or keeps it from starting: seldom.
bool endsTheProgram(std::string_view routine) { return routine == "main" || routine == "Form_Load"; }

template <class List>
std::string_view oneOf(test::Choices& choices, const List& list) {
    return list[choices.below(static_cast<std::uint32_t>(std::size(list)))];
}

std::string numbered(std::string_view word, std::int32_t first) {
    return std::string{word} + ' ' + std::to_string(first);
}

Tally total;

Sends sendsOf(std::string_view line) {
    const std::string_view word = line.substr(0, line.find(' '));
    constexpr std::array<std::string_view, 20> nothing{
        "mouse",  "scroll",   "paint",     "activate", "deactivate", "dump",  "ini",
        "screen", "language", "clipboard", "answer",   "fault",      "ports", "helper",
        "draw",   "onyield",  "choose",    "set",      "fkeys",      "fail"};
    if (std::ranges::find(nothing, word) != nothing.end()) return Sends::nothing;
    if (word == "host") return Sends::answers;
    return Sends::anything;
}

}  // namespace

Steps::Steps(std::uint64_t seed, std::uint64_t scenario, std::uint32_t length, std::FILE* copy)
    : choices_{seed * 0x9E3779B97F4A7C15U + scenario}, length_{length}, copy_{copy} {
    plan_.faults = choices_.oneIn(2);
    plan_.yields = choices_.oneIn(3);
}

bool Steps::next(std::string& line) {
    if (taken_ >= length_) return false;
    ++taken_;
    line = choose();
    if (copy_ != nullptr) {
        std::fprintf(copy_, "%s\n", line.c_str());
        std::fflush(copy_);
    }
    count(line);
    painted_ = line == "paint";
    leftovers_.told(line);
    allowSends(plan_.yields ? Sends::anything : sendsOf(line));
    return true;
}

const Tally& tally() { return total; }

void Steps::count(std::string_view line) {
    if (!headless::modalForms().empty()) ++total.inDialogs;
    if (line.starts_with("fa")) ++total.faults;
    if (line.starts_with("start")) ++total.starts;
}

void Steps::carriedOut() {
    if (g_bConnectActive) ++total.inSession;
    if (g_bConnectActive && !sessionWasUp_) ++total.sessions[static_cast<std::size_t>(g_iConnectType())];
    sessionWasUp_ = g_bConnectActive;
    checkMemory();
    checkSession(leftovers_);
    if (painted_ && !plan_.faults && scenario::programRuns()) checkPicture();
}

std::string Steps::choose() {
    // Profiles of every type, then whatever else stands there before the start.
    constexpr std::array stage{"ini Settings Profiles telnet line call tunnel echo",
                               "ini telnet connect net",
                               "ini line connect serial",
                               "ini call connect modem",
                               "ini tunnel connect ssh",
                               "ini echo connect loop",
                               "ini telnet host host",
                               "ini tunnel host host"};
    constexpr std::size_t begin = 20;
    if (taken_ <= stage.size() && !choices_.oneIn(16)) return stage[taken_ - 1];
    if (taken_ < begin) return setUp();
    if (taken_ == begin) return start();
    if (!scenario::programRuns()) return choices_.oneIn(4) ? setUp() : start();
    if (plan_.faults && choices_.oneIn(30)) return planned();
    if (localPromptShown() && choices_.oneIn(3)) return "type \"root\\r\"";
    if (choices_.oneIn(60)) return setUp();
    if (!headless::modalForms().empty()) return choices_.oneIn(6) ? fromTheOtherEnd() : inDialog();
    if (!sessionStarted() && choices_.oneIn(3)) return connecting();
    switch (choices_.below(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4: return fromTheOtherEnd();
        case 5:
        case 6: return withTheMouse();
        default: return atTheScreen();
    }
}

std::string Steps::bytes() { return scenario::bytesText(test::hostBytes(choices_)); }

std::string Steps::profile() { return std::string{oneOf(choices_, profiles)}; }

std::string Steps::setUp() {
    const std::size_t which = choices_.below(static_cast<std::uint32_t>(profiles.size()));
    const std::string section = profiles[which];
    switch (choices_.below(22)) {
        case 0: return "ini Settings Profiles telnet line call tunnel echo";
        case 1:
        case 2:
        case 3: return "ini " + section + " connect " + types[which];
        case 4:
        case 5: return "ini " + section + " host " + (choices_.oneIn(8) ? "-x y" : "host");
        case 6: return "ini " + section + " timeout " + std::to_string(choices_.below(5));
        case 7: return "ini " + section + " auto_retry " + std::to_string(choices_.below(2));
        case 8:
            return "ini " + section + " Font " +
                   std::string{oneOf(choices_, std::array{"small", "medium", "large"})};
        case 9: return "ini Settings Logging " + std::to_string(choices_.below(2));
        case 10: return "ini Settings timeout " + std::to_string(choices_.below(4));
        case 11: return "ini Settings PortForwardRangeStart " + std::to_string(choices_.between(2990, 3600));
        case 12: return "clipboard " + bytes();
        case 13: {
            std::string all = "answer";
            for (std::uint32_t left = 1 + choices_.below(5); left > 0; --left)
                all += ' ' + std::string{oneOf(choices_, std::array{"OK", "Cancel", "Yes", "No", "Retry"})};
            return all;
        }
        case 14: return "socket family " + std::string{oneOf(choices_, std::array{"4", "6", "0"})};
        case 15: return choices_.oneIn(4) ? "serial busy on" : "serial busy off";
        case 16: return choices_.oneIn(6) ? "ports tcp 3000-32000" : "ports tcp 3000 3001 3003";
        case 17: return choices_.oneIn(20) ? "helper exit zpt_ssh" : "helper forward 300";
        case 18: return choices_.oneIn(20) ? "helper exit zpt_tnetd" : "helper forward 0";
        case 19: return choices_.oneIn(30) ? "helper fail zpt_tnetd" : "draw off";
        case 20: return choices_.oneIn(4) ? "draw on" : "draw off";
        default:
            return "ini " + section + ' ' +
                   std::string{oneOf(choices_, std::array{"baud", "netport", "parity", "cd_timeout"})} + ' ' +
                   std::to_string(choices_.below(70000));
    }
}

std::string Steps::start() {
    if (inputBusy != 0 || !headless::modalForms().empty()) return "paint";
    return choices_.oneIn(3) ? "start"s : "start " + profile();
}

std::string Steps::connecting() {
    switch (choices_.below(10)) {
        case 0: return start();
        case 1: return "menu profile " + std::to_string(choices_.below(4));
        case 2: return "close";
        case 3: return "menu connection 3";
        default: return "menu connection 0";
    }
}

/// A use of any control of the topmost window; while the status dialog waits, what may end it.
std::string Steps::inDialog() {
    const std::vector<Form*>& forms = visibleForms();
    if (forms.empty()) return "wait 250";
    Form& top = *forms.back();
    if (std::string_view{top.name()} == "frmConn") {
        switch (choices_.below(8)) {
            case 0: return "click cmdCancel";
            case 1:
            case 2: return headless::socketInUse(comnet2) ? "socket connect" : "wait 250";
            case 3: return "serial carrier on";
            case 4: return fromTheOtherEnd();
            default: return numbered("wait", static_cast<std::int32_t>(choices_.below(1500)));
        }
    }
    std::vector<Control*> controls;
    for (Control* control = top.firstControl(); control != nullptr; control = control->next())
        controls.push_back(control);
    for (int tries = 0; tries < 8 && !controls.empty(); ++tries) {
        Control& control = *controls[choices_.below(static_cast<std::uint32_t>(controls.size()))];
        const std::string name = scenario::scriptName(control);
        switch (control.kind()) {
            case ControlKind::button:
            case ControlKind::optionButton:
            case ControlKind::checkBox: return "click " + name;
            case ControlKind::textBox: {
                if (choices_.oneIn(4)) return "press " + name + ' ' + std::to_string(choices_.below(128));
                std::string text = choices_.oneIn(2) ? profile() : std::to_string(choices_.below(1200));
                if (choices_.oneIn(6)) text.clear();
                return "set " + name + ' ' + text;
            }
            case ControlKind::listBox:
            case ControlKind::comboBox: {
                if (choices_.oneIn(6)) return "press " + name + ' ' + std::to_string(choices_.below(128));
                const auto count = static_cast<ItemsControl&>(control).items().size();
                if (count == 0) break;
                return (choices_.oneIn(4) ? "dblclick " : "choose ") + name + ' ' +
                       std::to_string(choices_.below(static_cast<std::uint32_t>(count)));
            }
            default: break;
        }
    }
    return "wait 250";
}

std::string Steps::fromTheOtherEnd() {
    const std::int16_t type = g_iConnectType();
    const bool overSerial = type == connectType::serial || type == connectType::modem;
    switch (choices_.below(24)) {
        // Nobody can accept what was not asked for.
        case 0: return headless::socketInUse(comnet2) ? "socket connect" : "wait 250";
        case 1: return choices_.oneIn(4) ? "socket close" : "paint";
        case 2: return choices_.oneIn(4) ? "socket error 10054 gone" : "host " + bytes();
        case 3: return choices_.oneIn(4) ? "serial carrier off" : "serial carrier on";
        case 4: return "serial event " + std::to_string(choices_.oneIn(6) ? 1007 : choices_.below(8));
        case 5: return "serial quiet " + bytes();
        case 6: return "socket data \"login: \"";
        case 7: return "socket data \"Password: \"";
        case 8: return choices_.oneIn(4) ? "close" : "wait 250";
        case 9:
        case 10:
            return numbered("wait",
                            static_cast<std::int32_t>(choices_.below(choices_.oneIn(20) ? 60000 : 1500)));
        case 11:
            if (!plan_.yields) return "wait 250";
            switch (choices_.below(6)) {
                case 0: return "onyield socket close";
                case 1: return "onyield menu connection 1";
                case 2: return "onyield key 38";
                case 3: return "onyield mouse down 30 40";
                case 4: return "onyield scroll 470";
                default: return "onyield socket data " + bytes();
            }
        case 12:
        case 13:
        case 14: return "host " + bytes();
        default: return (overSerial ? "serial data " : "socket data ") + bytes();
    }
}

std::string Steps::withTheMouse() {
    const std::string place =
        ' ' + std::to_string(choices_.between(-20, 760)) + ' ' + std::to_string(choices_.between(-40, 480));
    switch (choices_.below(6)) {
        case 0: return "mouse down" + place;
        case 1: return "mouse up" + place;
        case 2: return numbered("scroll", choices_.between(scrollbackTop - 2, liveView + 2));
        case 3: return choices_.oneIn(3) ? "activate" : choices_.oneIn(2) ? "deactivate" : "paint";
        default: return "mouse move" + place;
    }
}

std::string Steps::atTheScreen() {
    constexpr std::array keys{8,  9,  13, 27, 33, 34,  35,  36,  37,  38,
                              39, 40, 45, 46, 65, 112, 113, 116, 119, 120};
    constexpr std::array dumps{"screen", "terminal",  "page",      "view",        "scrollback", "window",
                               "keys",   "menus",     "profile",   "lists",       "ini",        "timers",
                               "state",  "selection", "clipboard", "form frmterm"};
    switch (choices_.below(20)) {
        case 0:
        case 1:
        case 2:
            return "key " + std::to_string(keys[choices_.below(keys.size())]) +
                   (choices_.oneIn(2) ? ' ' + std::to_string(choices_.below(8)) : "");
        case 3:
        case 4: return "type \"root\\r\"";
        case 5:
        case 6: return "type " + bytes();
        case 7: return numbered("fkey", choices_.between(1, 8));
        case 8: return "menu edit " + std::to_string(choices_.below(3));
        case 9: return choices_.oneIn(3) ? "menu connection 1" : "menu connection 2";
        case 10: return choices_.oneIn(4) ? "menu connection 3" : "paint";
        case 11: return choices_.oneIn(8) ? "menu help " + std::to_string(choices_.below(2)) : "wait 500";
        case 12: return choices_.oneIn(8) ? "menu profile " + std::to_string(choices_.below(5)) : "wait 250";
        case 13: return choices_.oneIn(4) ? "dump "s + dumps[choices_.below(dumps.size())] : "wait 100";
        case 14: return choices_.oneIn(6) ? start() : "paint";
        default: return "host " + bytes();
    }
}

/// A call of the system that is to fail.
std::string Steps::failing() {
    const auto points = headless::points();
    const headless::PointInfo& point = points[choices_.below(static_cast<std::uint32_t>(points.size()))];
    std::string line = "fail " + std::string{point.name};
    if (choices_.oneIn(6)) return line + " never";
    if (choices_.oneIn(2)) line += " after " + std::to_string(choices_.below(4));
    if (choices_.oneIn(3)) line += " times " + std::to_string(1 + choices_.below(4));
    return line;
}

std::string Steps::planned() {
    if (choices_.oneIn(2)) return failing();
    constexpr std::array numbers{5, 6, 7, 9, 13, 52, 53, 68, 70, 75, 76, 91, 10035, 10048, 10054, 10060};
    std::string_view routine = oneOf(choices_, routines);
    if (endsTheProgram(routine) && !choices_.oneIn(10)) routine = "putBuf";
    // 17 closes the main window behind its report.
    const int number = choices_.oneIn(60) ? 17 : numbers[choices_.below(numbers.size())];
    return "fault " + std::string{routine} + ' ' + std::to_string(number);
}

}  // namespace qxterm::fuzz
