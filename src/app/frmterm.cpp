#include "app/frmterm.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "app/dialogs/caption.h"
#include "app/dialogs/profile_dialog.h"
#include "app/dialogs/splash.h"
#include "app/edit_menu.h"
#include "app/menus.h"
#include "config/ini_file.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/connection_manager.h"
#include "connection/network.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "platform/help.h"
#include "platform/main_form.h"
#include "platform/message_box.h"
#include "platform/profile_strings.h"
#include "platform/program.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/paint.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm {
namespace {

constexpr std::int32_t tickPeriod = 250;  // milliseconds

void chooseFont() { picterm.setFontName(g_sLanguage == "jpn" ? "QXTERM" : "Courier New"); }

void setScrollBar() {
    vscterm.setChanges(pageRows, 1);
    vscterm.setMinimum(scrollbackTop);
    vscterm.setMaximum(liveView);
    vscterm.setTag(std::to_string(liveView));
    vscterm.setValue(liveView);
}

void placeWindow() {
    if (g_iWindowLeft < 0) {
        Glb_CentreForm(frmterm);
        return;
    }
    TwipsRect place = frmterm.place();
    place.top = g_iWindowTop;
    place.left = g_iWindowLeft;
    frmterm.move(place);
}

/// The command line is the name of a profile, or nothing that the program knows.
void openProfileOfCommandLine() {
    const std::string wanted = program::commandLine();
    if (wanted.empty()) return;
    // By number: connecting runs events, and those may add names.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t n = 0; n < profileNames.size(); ++n) {
        if (profileNames[n] != wanted) continue;
        readUserProf(wanted);
        connectPort();
    }
}

void frmterm_Load() {
    trappedOnRequest("frmterm_Load", [] {
        clearReceiveState();
        forgetUserDisconnect();
        chooseFont();
        enableAllEditItems(false);
        setConnItems(false);
        calcSize(picterm, vscterm);
        setCaption();
        setScrollBar();
        setFiles();
        picterm_Paint();
        placeWindow();
        frmterm.attachMessageHook(true);
        picterm.attachMessageHook(true);
        frmterm.show();
        picterm.setOpaque(true);
        tmrGen.setInterval(tickPeriod);
        tmrGen.setEnabled(true);
        frmSplash.unload();
        openProfileOfCommandLine();
    });
}

/// Runs one statement of a handler that ignores every error.
template <class Statement>
void ignoringErrors(Statement&& statement) {
    try {
        statement();
    } catch (const RunTimeError&) {
    }
}

void Form_Activate() {
    ignoringErrors([] { frmterm.attachMessageHook(false); });
    ignoringErrors([] { frmterm.attachMessageHook(true); });
    ignoringErrors([] { comnet2.rearmEvents(); });
}

void Form_Deactivate() {
    ignoringErrors([] { frmterm.attachMessageHook(false); });
}

void Form_GotFocus() {
    ignoringErrors([] { picterm.refresh(); });
}

/// The next start reads 16 bits. Far out on a wide desktop the window comes back a little nearer.
std::string savedTwips(std::int32_t pixels, std::int16_t twipsPerPixel) {
    const std::int64_t twips = std::int64_t{pixels} * twipsPerPixel;
    return std::to_string(std::clamp<std::int64_t>(twips, INT16_MIN, INT16_MAX));
}

void saveWindowPlace() {
    const PixelRect place = frmterm.normalPosition();
    writePrivateProfileString(settingsSection, "Window",
                              savedTwips(place.left, g_iTwipsX) + ' ' + savedTwips(place.top, g_iTwipsY));
}

/// False when the user wants the window to stay.
bool offerToSave() {
    const std::string question = formatMsg("Save changes to profile: %1?", CurrentProfile.name);
    const Answer answer = messageBox(question, programTitle, Buttons::yesNoCancel, Icon::question);
    if (answer == Answer::yes) {
        if (g_bProfileNew || CurrentProfile.name == untitledName) {
            showSaveProfileAs();
        } else {
            writeUserProf();
        }
    }
    return answer != Answer::cancel;
}

void QueryUnload(bool& cancel, UnloadReason /*reason*/) {
    trappedOnRequest("QueryUnload", [&] {
        if (g_bConnectActive) {
            if (messageBox("A connection is active, exit anyway?", programTitle, Buttons::yesNo,
                           Icon::question) != Answer::yes) {
                cancel = true;
                return;
            }
            disconnectPort();
        }
        picterm.deleteTerminalFont();
        saveWindowPlace();
        if (g_bProfileChanged && !offerToSave()) cancel = true;
        // Done also when the window stays.
        tmrGen.setEnabled(false);
        help::show(g_sHelpFile, help::closeAll, 0);
    });
}

void Form_Unload() {
    trapped("Form_Unload", [] {
        if (g_bSSHMode && sshHelperRecorded()) disconnectPort();
    });
}

}  // namespace

void connectMainWindow() {
    frmterm.onLoad.connect("frmterm_Load", frmterm_Load);
    frmterm.onActivate.connect("Form_Activate", Form_Activate);
    frmterm.onDeactivate.connect("Form_Deactivate", Form_Deactivate);
    frmterm.onGotFocus.connect("Form_GotFocus", Form_GotFocus);
    frmterm.onQueryUnload.connect("QueryUnload", QueryUnload);
    frmterm.onUnload.connect("Form_Unload", Form_Unload);
}

}  // namespace qxterm
