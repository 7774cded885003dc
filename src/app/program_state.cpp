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
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

void resetDiagnostics() {
    clearPlannedFaults();
    g_bTrapErrors = false;
    g_bVerboseErrors = false;
    g_bWouldBlock = false;
    g_iWouldBlockCount = 0;
    g_sCrLf.clear();
    g_sLogging.clear();
}

void resetConfiguration() {
    g_iWindowLeft = -1;
    g_iWindowTop = -1;
    g_iConnectTimeout = 45;
    g_lPortForwardStart = 3000;
    setProfileChanged(false);
    setProfileNew(false);
    profileNames.clear();
    mruNames.fill({});
    DefaultProfile = ProfileRecord{};
    setCurrentProfile(DefaultProfile);
}

void resetConnections() {
    forgetSession();
    setSshMode(false);
    userDisconnect = false;
    clearReceiveState();
    clearLoginFlags();
    resetLocalPrompt();
}

void resetApplication() {
    g_sPathSep.clear();
    g_sHelpFile.clear();
    g_sLanguage.clear();
    g_bDialogCancelled = false;
    g_iTwipsX = 15;
    g_iTwipsY = 15;
    for (Menu* menu : Menu::all()) menu->resetToDesign();
}

}  // namespace

void resetProgram() {
    connectModules();
    resetSelection();
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
