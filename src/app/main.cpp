#include "app/main.h"

#include <string>

#include "app/dialogs/splash.h"
#include "app/hooks.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/session.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/numbers.h"
#include "diag/report_error.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/main_form.h"
#include "platform/profile_strings.h"
#include "platform/program.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/text_look.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

constexpr std::int32_t splashTime = 3000;  // milliseconds

void findFolder() {
    g_sPathSep = program::separatorBehind(trimmed(program::folder()));
    g_sHelpFile = besideProgram("enu_te.chm");
}

void showSplash() {
    frmSplash.show();
    eventLoop::doEvents();
    eventLoop::sleep(splashTime);
}

void setTerminalStart() {
    g_bVerboseErrors = true;
    startTerminal();
    g_sCrLf = "\r\n";
}

void readTwips() {
    g_iTwipsX = display::twipsPerPixelX();
    g_iTwipsY = display::twipsPerPixelY();
}

void startWithoutProfile() {
    setCurrentProfile(DefaultProfile);
    nameCurrentProfile(untitledName);
    setProfileNew(false);
    forgetSession();
}

}  // namespace

void main() {
    connectModules();
    bool started = false;
    trapped("main", [&] {
        g_bTrapErrors = false;
        findFolder();
        showSplash();
        g_sLanguage = getProfileString("intl", "sLanguage", "enu");
        setTerminalStart();
        readIniFile();
        readTwips();
        initAttributes();
        initFunctionKeys();
        resetScreen();
        initDefaults();
        clearTimers();
        startWithoutProfile();
        readPortForwardStart();
        frmterm.load();
        started = true;
    });
    if (!started) program::end();
}

}  // namespace qxterm
