#include "app/main.h"

#include "app/dialogs/splash.h"
#include "app/hooks.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/session.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/report_error.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/main_form.h"
#include "platform/program.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/text_look.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

constexpr std::int32_t splashTime = 3000;  // milliseconds

void showSplash() {
    frmSplash.show();
    eventLoop::doEvents();
    eventLoop::sleep(splashTime);
}

void setTerminalStart() {
    setVerboseErrors(true);
    startTerminal();
    setCrLf("\r\n");
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
        setTrapErrors(false);
        findProgramFolder();
        showSplash();
        readLanguage();
        setTerminalStart();
        readIniFile();
        setTwipsPerPixel(display::twipsPerPixelX(), display::twipsPerPixelY());
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
