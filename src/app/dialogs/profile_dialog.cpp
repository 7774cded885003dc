#include "app/dialogs/profile_dialog.h"

#include <string>

#include "app/dialogs/caption.h"
#include "app/dialogs/help_topics.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/connection_manager.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "platform/controls.h"
#include "platform/help.h"
#include "platform/message_box.h"
#include "platform/resource_ids.h"

namespace qxterm {

constinit Form frmprof{"frmprof", FormKind::dialog, IDD_FRMPROF, "Profile"};

namespace {

constexpr const char* openMode = "Open Profile";
constexpr const char* saveMode = "Save Profile As";

Button cmd3Dconn{frmprof, "cmd3Dconn", IDC_PROF_CONN, {.caption = "Connect", .enabled = false}};
TextBox txtprof{frmprof, "txtprof", IDC_TXTPROF};
ListBox lstprof{frmprof, "lstprof", IDC_LSTPROF};
Button cmd3Dhelp{frmprof, "cmd3Dhelp", IDC_PROF_HELP, {.caption = "&Help"}};
Button cmd3Dcancel{frmprof, "cmd3Dcancel", IDC_PROF_CANCEL, {.caption = "Cancel"}};
Button cmd3Dopen{frmprof, "cmd3Dopen", IDC_PROF_OPEN, {.caption = "Open", .enabled = false}};
Label lblname{frmprof, "lblname", IDC_LBLNAME, {.caption = "Profile &name:"}};
Label lblhint{frmprof, "lblhint", IDC_LBLHINT, {.caption = "Letters and digits only"}};

void enableButtons() {
    cmd3Dconn.setEnabled(true);
    cmd3Dopen.setEnabled(true);
}

void Form_Load() {
    trapped("Form_Load", [] {
        for (const std::string& name : profileNames) lstprof.addItem(name);
        Glb_CentreForm(frmprof);
    });
}

void Form_Activate() {
    trapped("Form_Activate", [] {
        if (txtprof.enabled()) {
            txtprof.setFocus();
        } else {
            lstprof.setFocus();
        }
    });
}

void openAndConnect(const std::string& name) {
    readUserProf(name);
    reOrderProf(name);
    connectPort();  // closes this dialog first
}

bool mayReplace(const std::string& name) {
    const std::string question = formatMsg("The profile %1 exists, do you want to replace it?", name);
    return messageBox(question, programTitle, Buttons::yesNo, Icon::question) == Answer::yes;
}

void saveUnder(const std::string& name) {
    if (knownProfile(name) && !mayReplace(name)) return;
    nameCurrentProfile(name);
    setCaption();
    setProfileNew(false);
    writeUserProf();
    reOrderProf(name);
    frmprof.unload();
}

void cmd3Dconn_Click() {
    trappedOnRequest("cmd3Dconn_Click", [] {
        const std::string name = txtprof.text();
        if (name.empty()) return;
        const std::string mode = frmprof.caption();
        if (mode == openMode) {
            openAndConnect(name);
        } else if (mode == saveMode) {
            saveUnder(name);
        }
    });
}

void cmd3Dopen_Click() {
    trapped("cmd3Dopen_Click", [] {
        const std::string name = txtprof.text();
        if (name.empty()) return;
        readUserProf(name);
        reOrderProf(name);
        frmprof.unload();
    });
}

void cmd3Dcancel_Click() {
    trapped("cmd3Dcancel_Click", [] {
        setDialogCancelled(true);
        frmprof.unload();
    });
}

void cmd3Dhelp_Click() {
    trapped("cmd3Dhelp_Click", [] { help::show(g_sHelpFile, help::helpContext, helpTopic::profiles); });
}

/// The close box counts as Cancel.
void Form_QueryUnload(bool& /*cancel*/, UnloadReason reason) {
    if (reason == UnloadReason::formControlMenu) setDialogCancelled(true);
}

void lstprof_Click() {
    trapped("lstprof_Click", [] {
        enableButtons();
        txtprof.setText(lstprof.chosenText());
    });
}

void lstprof_DblClick() {
    trapped("lstprof_DblClick", [] {
        enableButtons();
        cmd3Dconn_Click();
    });
}

void txtprof_Change() { enableButtons(); }

bool isNameCharacter(std::int16_t key) {
    return (key >= 'A' && key <= 'Z') || (key >= 'a' && key <= 'z') || (key >= '0' && key <= '9');
}

/// Names consist of letters and digits; Enter and Escape press buttons; every other key is discarded.
void lstprof_KeyPress(std::int16_t& key) {
    constexpr std::int16_t backspace = 8;
    constexpr std::int16_t enter = 13;
    constexpr std::int16_t escape = 27;
    const std::int16_t pressed = key;
    if (pressed == backspace || isNameCharacter(pressed)) return;
    key = 0;
    if (pressed == enter && cmd3Dconn.enabled()) cmd3Dconn_Click();
    if (pressed == escape) cmd3Dcancel_Click();
}

/// Without the name box its place is the list's.
void layOutForOpen() {
    txtprof.setEnabled(false);
    txtprof.setVisible(false);
    lblhint.setVisible(false);
    TwipsRect list = lstprof.place();
    list.top = txtprof.place().top;
    list.height += lblname.place().height;
    lstprof.move(list);
    TwipsRect dialog = frmprof.place();
    dialog.height -= cmd3Dconn.place().height / 2;
    frmprof.move(dialog);
}

/// The buttons below close the gap that Open leaves.
void layOutForSave() {
    cmd3Dopen.setVisible(false);
    const TwipsRect cancel = cmd3Dcancel.place();
    cmd3Dcancel.move(cmd3Dopen.place());
    cmd3Dhelp.move(cancel);
}

}  // namespace

void showOpenProfile() {
    trapped("showOpenProfile", [] {
        frmprof.showModal([] {
            frmprof.setCaption(openMode);
            layOutForOpen();
        });
    });
}

void showSaveProfileAs() {
    trapped("showSaveProfileAs", [] {
        frmprof.showModal([] {
            frmprof.setCaption(saveMode);
            cmd3Dconn.setCaption("OK");
            layOutForSave();
        });
    });
}

void connectProfileDialog() {
    frmprof.onLoad.connect("Form_Load", Form_Load);
    frmprof.onActivate.connect("Form_Activate", Form_Activate);
    frmprof.onQueryUnload.connect("Form_QueryUnload", Form_QueryUnload);
    cmd3Dconn.onClick.connect("cmd3Dconn_Click", cmd3Dconn_Click);
    cmd3Dopen.onClick.connect("cmd3Dopen_Click", cmd3Dopen_Click);
    cmd3Dcancel.onClick.connect("cmd3Dcancel_Click", cmd3Dcancel_Click);
    cmd3Dhelp.onClick.connect("cmd3Dhelp_Click", cmd3Dhelp_Click);
    lstprof.onClick.connect("lstprof_Click", lstprof_Click);
    lstprof.onDblClick.connect("lstprof_DblClick", lstprof_DblClick);
    lstprof.onKeyPress.connect("lstprof_KeyPress", lstprof_KeyPress);
    txtprof.onChange.connect("txtprof_Change", txtprof_Change);
    txtprof.onKeyPress.connect("txtprof_KeyPress", lstprof_KeyPress);
}

}  // namespace qxterm
