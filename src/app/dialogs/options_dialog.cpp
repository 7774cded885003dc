#include "app/dialogs/options_dialog.h"

#include <string>

#include "app/dialogs/help_topics.h"
#include "app/dialogs/options_controls.h"
#include "app/dialogs/options_fields.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "platform/help.h"

namespace qxterm {
namespace {

using namespace options;

void Form_Load() {
    trapped("Form_Load", [] {
        frmOptions.setCaption(formatMsg("Options for profile: %1", CurrentProfile.name));
        nameTabs();
        fillControls();
        Glb_CentreForm(frmOptions);
    });
}

/// The close box counts as Cancel.
void Form_QueryUnload(bool& /*cancel*/, UnloadReason reason) {
    if (reason == UnloadReason::formControlMenu) setDialogCancelled(true);
}

void optNetwork_Click() {
    trapped("optNetwork_Click", [] {
        showNetworkSettings(true);
        readPortForwardStart();
        txtNetPort.setText(readSetting(CurrentProfile.name, "netport", "23"));
        setWorkingType(connectType::net);
    });
}

void optSSH_Click() {
    trapped("optSSH_Click", [] {
        showNetworkSettings(true);
        readPortForwardStart();
        const std::string port = readSetting(CurrentProfile.name, "SSHnetport", "22");
        txtNetPort.setText(port.empty() ? "22" : port);
        setWorkingType(connectType::ssh);
    });
}

void optSerial_Click() {
    trapped("optSerial_Click", [] {
        showNetworkSettings(false);
        txtNetPort.setText("23");
        setWorkingType(connectType::serial);
    });
}

void optModem_Click() {
    trapped("optModem_Click", [] {
        showNetworkSettings(false);
        setWorkingType(connectType::modem);
    });
}

void option3DSmall_Click() { setSelectedFontSize(9); }
void option3DMedium_Click() { setSelectedFontSize(10); }
void option3DLarge_Click() { setSelectedFontSize(11); }

void cmdOK_Click() { recordChanges(); }

void cmdCancel_Click() {
    trapped("cmdCancel_Click", [] {
        setDialogCancelled(true);
        frmOptions.unload();
    });
}

void cmdHelp_Click() {
    trapped("cmdHelp_Click", [] { help::show(g_sHelpFile, help::helpContext, helpTopic::options); });
}

}  // namespace

void connectOptionsDialog() {
    frmOptions.onLoad.connect("Form_Load", Form_Load);
    frmOptions.onQueryUnload.connect("Form_QueryUnload", Form_QueryUnload);
    fptOptions.onChange.connect("fptOptions_TabActivate", showChosenTab);
    optNetwork.onClick.connect("optNetwork_Click", optNetwork_Click);
    optSSH.onClick.connect("optSSH_Click", optSSH_Click);
    optSerial.onClick.connect("optSerial_Click", optSerial_Click);
    optModem.onClick.connect("optModem_Click", optModem_Click);
    option3DSmall.onClick.connect("option3DSmall_Click", option3DSmall_Click);
    option3DMedium.onClick.connect("option3DMedium_Click", option3DMedium_Click);
    option3DLarge.onClick.connect("option3DLarge_Click", option3DLarge_Click);
    cmdOK.onClick.connect("cmdOK_Click", cmdOK_Click);
    cmdCancel.onClick.connect("cmdCancel_Click", cmdCancel_Click);
    cmdHelp.onClick.connect("cmdHelp_Click", cmdHelp_Click);
}

}  // namespace qxterm
