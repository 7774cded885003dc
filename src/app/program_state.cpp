#include "app/program_state.h"

#include "app/hooks.h"
#include "config/ini_file.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/connection_manager.h"
#include "connection/network.h"
#include "connection/session.h"
#include "connection/ssh_prompt.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/report_error.h"
#include "diag/trace_log.h"
#include "platform/menu.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/text_look.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/view/scrollback_view.h"
#include "terminal/view/selection.h"
#include "terminal/view/view_keys.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

void resetDiagnostics() {
    clearPlannedFaults();
    setTrapErrors(false);
    resetErrorReports();
    setCrLf({});
    setLogging({});
}

void resetConfiguration() {
    resetIniValues();
    setProfileChanged(false);
    setProfileNew(false);
    fillProfileNames({});
    fillMruNames({});
    resetProfiles();
}

void resetConnections() {
    forgetSession();
    setSshMode(false);
    forgetUserDisconnect();
    clearReceiveState();
    clearLoginFlags();
    resetLocalPrompt();
}

void resetApplication() {
    resetProgramValues();
    resetCellSize();
    for (Menu* menu : Menu::all()) menu->resetToDesign();
}

}  // namespace

void resetProgram() {
    connectModules();
    resetSelection();
    resetViewKeys();
    resetDiagnostics();
    clearTimers();
    resetConfiguration();
    resetConnections();
    resetApplication();
    dropWaitingBlocks();
    initAttributes();
    startTerminal();
    resetScreen();
    resetScrollbackView();
}

}  // namespace qxterm
