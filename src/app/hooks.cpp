#include "app/hooks.h"

#include "app/dialogs/caption.h"
#include "app/dialogs/options_dialog.h"
#include "app/dialogs/profile_dialog.h"
#include "app/dialogs/splash.h"
#include "app/edit_menu.h"
#include "app/frmterm.h"
#include "app/menus.h"
#include "config/profile_hooks.h"
#include "config/profile_record.h"
#include "connection/connection_hooks.h"
#include "connection/connection_manager.h"
#include "connection/keyboard.h"
#include "connection/modem.h"
#include "connection/network.h"
#include "connection/serial_line.h"
#include "connection/session.h"
#include "connection/ssh_prompt.h"
#include "connection/status_dialog.h"
#include "connection/transport_controls.h"
#include "diag/report_error.h"
#include "platform/main_form.h"
#include "platform/screen_reading.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/drawing.h"
#include "terminal/drawing/paint.h"
#include "terminal/interpreter/telnet.h"
#include "terminal/model/input_busy.h"
#include "terminal/view/screen_events.h"
#include "terminal/view/screen_text.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_marks.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

void fillErrorHooks() {
    handlerFault = [](const char* handler, std::int16_t number) { (void)reportError(handler, number); };
    errorHooks.dropConnection = disconnectPort;
    errorHooks.currentHost = [] { return CurrentProfile.host; };
    errorHooks.closeMainWindow = [] { frmterm.unload(); };
}

void fillTimerActions() {
    timerActions[timerAction::endBreak] = endBreak;
    timerActions[timerAction::blinkCursor] = [] {
        if (inputBusy == 0 && !localTextUp()) blinkCursorStep();
    };
    timerActions[timerAction::blinkText] = [] {
        if (inputBusy == 0) blinkTextStep();
    };
    timerActions[timerAction::dial] = [] { modemConnect(modemDial); };
    timerActions[timerAction::pollSerial] = pollSerial;
}

void fillProfileHooks() {
    profileHooks.resizeScreen = resizeScreen;
    profileHooks.setCaption = setCaption;
    profileHooks.showRecentProfile = [](std::int16_t index, std::string_view caption) {
        mnuprofitem.setCaption(index, caption);
        mnuprofitem.setVisible(index, true);
        if (g_bConnectActive) mnuprofitem.setEnabled(index, false);
    };
}

void fillTerminalHooks() {
    paintLocalPrompt = paintLocalText;
    localPromptShown = localTextUp;
    lineDrawn = invertRedrawnCells;
    windowScrolled = keepDragInPlace;
    endSelection = removeSelection;
    answerHost = sendTelnetAnswer;
    enableEditItems = [] { enableAllEditItems(true); };
    screenReader.read = readScreen;
    screenReader.place = placeOnScreen;
}

void fillConnectionHooks() {
    connectionHooks.unloadProfileDialog = [] { frmprof.unload(); };
    connectionHooks.showOptions = [] { frmOptions.showModal(); };
    connectionHooks.enableConnectionItem = [](std::int16_t index, bool enabled) {
        mnuconnitem.setEnabled(index, enabled);
    };
    connectionHooks.enableProfileItems = enableProfileItems;
    connectionHooks.copySelection = copySelection;
}

void connectTransportEvents() {
    comnet2.onConnect.connect("comnet2_Connect", comnet2_Connect);
    comnet2.onDataArrival.connect("DataArrival", comnet2_DataArrival);
    comnet2.onClose.connect("comnet2_Close", comnet2_Close);
    comnet2.onError.connect("comnet2_Error", comnet2_Error);
    comser.onComm.connect("comser_OnComm", comser_OnComm);
    tmrGen.onTimer.connect("tmrGen_Timer", tmrGen_Timer);
}

void connectMenuEvents() {
    mnuprofitem.onClick.connect("mnuprofItem_Click", mnuprofItem_Click);
    mnueditItem.onOpen.connect("mnuedit_Click", mnuedit_Click);
    mnueditItem.onClick.connect("mnueditItem_Click", mnueditItem_Click);
    mnuconnitem.onClick.connect("mnuconnitem_Click", mnuconnitem_Click);
    mnuhelpItem.onClick.connect("mnuhelpItem_Click", mnuhelpItem_Click);
}

void connectKeyEvents() {
    frmterm.onKeyDown.connect("Form_KeyDown", Form_KeyDown);
    frmterm.onKeyPress.connect("Form_KeyPress", Form_KeyPress);
    for (Button& key : CScmdfkey) key.onClickIndex.connect("CScmdfkey_Click", CScmdfkey_Click);
}

}  // namespace

void connectModules() {
    fillErrorHooks();
    fillTimerActions();
    fillProfileHooks();
    fillTerminalHooks();
    fillConnectionHooks();
    connectTransportEvents();
    connectMenuEvents();
    connectScreenEvents();
    connectKeyEvents();
    connectMainWindow();
    connectStatusDialog();
    connectProfileDialog();
    connectOptionsDialog();
    connectSplash();
}

}  // namespace qxterm
