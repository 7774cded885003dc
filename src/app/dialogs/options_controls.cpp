#include "app/dialogs/options_controls.h"

#include <initializer_list>

#include "app/dialogs/options_dialog.h"
#include "platform/resource_ids.h"

namespace qxterm {

constinit Form frmOptions{"frmOptions", FormKind::dialog, IDD_FRMOPTIONS, "Options"};

namespace options {

TabStrip fptOptions{frmOptions, "fptOptions", IDC_FPTOPTIONS};
Button cmdOK{frmOptions, "cmdOK", IDC_OPT_OK, {.caption = "OK"}};
Button cmdCancel{frmOptions, "cmdCancel", IDC_OPT_CANCEL, {.caption = "Cancel"}};
Button cmdHelp{frmOptions, "cmdHelp", IDC_OPT_HELP, {.caption = "Help"}};

namespace {

Frame frameConnType{frmOptions, "frameConnType", IDC_FRAMECONNTYPE, {.caption = "Connection"}};

}  // namespace

OptionButton optNetwork{frmOptions, "optNetwork", IDC_OPTNETWORK, {.caption = "&Network"}};
OptionButton optSerial{frmOptions, "optSerial", IDC_OPTSERIAL, {.caption = "&Serial"}};
OptionButton optModem{frmOptions, "optModem", IDC_OPTMODEM, {.caption = "&Modem"}};
OptionButton optSSH{frmOptions, "optSSH", IDC_OPTSSH, {.caption = "SS&H"}};

Frame frameNet{frmOptions, "frameNet", IDC_FRAMENET, {.caption = "Network Settings"}};
TextBox txtNetAddress{frmOptions, "txtNetAddress", IDC_TXTNETADDRESS};
TextBox txtNetPort{frmOptions, "txtNetPort", IDC_TXTNETPORT};

Frame frameSettings{frmOptions,
                    "frameSettings",
                    IDC_FRAMESETTINGS,
                    {.caption = "Serial and Modem Settings", .visible = false}};
ComboBox cmbPort{frmOptions, "cmbPort", IDC_CMBPORT};
ComboBox cmbBaudRate{frmOptions, "cmbBaudRate", IDC_CMBBAUDRATE};
ComboBox cmbParity{frmOptions, "cmbParity", IDC_CMBPARITY};
ComboBox cmbData{frmOptions, "cmbData", IDC_CMBDATA};
ComboBox cmbStop{frmOptions, "cmbStop", IDC_CMBSTOP};
ComboBox cmbFlow{frmOptions, "cmbFlow", IDC_CMBFLOW};

TextBox txtPhoneNumber{frmOptions, "txtPhoneNumber", IDC_TXTPHONENUMBER};
TextBox txtDialPrefix{frmOptions, "txtDialPrefix", IDC_TXTDIALPREFIX};
TextBox txtDialSuffix{frmOptions, "txtDialSuffix", IDC_TXTDIALSUFFIX};
TextBox txtHangup{frmOptions, "txtHangup", IDC_TXTHANGUP};
TextBox txtReset{frmOptions, "txtReset", IDC_TXTRESET};

TextBox txtConnectTimeout{frmOptions, "txtConnectTimeout", IDC_TXTCONNECTTIMEOUT};
CheckBox chkAuto{frmOptions, "chkAuto", IDC_CHKAUTO, {.caption = "&Auto Retry"}};

OptionButton option3DSmall{frmOptions, "option3DSmall", IDC_OPTION3DSMALL, {.caption = "&Small"}};
OptionButton option3DMedium{frmOptions, "option3DMedium", IDC_OPTION3DMEDIUM, {.caption = "&Medium"}};
OptionButton option3DLarge{frmOptions, "option3DLarge", IDC_OPTION3DLARGE, {.caption = "&Large"}};
TextBox txtSampleText{frmOptions, "txtSampleText", IDC_TXTSAMPLETEXT};

namespace {

Label lblKRVName{frmOptions, "lblKRVName", IDC_LBLKRVNAME, {.caption = "KRV Network &Address:"}};
Label lblNetPort{frmOptions, "lblNetPort", IDC_LBLNETPORT, {.caption = "N&etwork Port:"}};

Label lblPort{frmOptions, "lblPort", IDC_LBLPORT, {.caption = "&Port:"}};
Label lblBaudRate{frmOptions, "lblBaudRate", IDC_LBLBAUDRATE, {.caption = "&Baud Rate:"}};
Label lblParity{frmOptions, "lblParity", IDC_LBLPARITY, {.caption = "Pa&rity:"}};
Label lblData{frmOptions, "lblData", IDC_LBLDATA, {.caption = "&Data Bits:"}};
Label lblStop{frmOptions, "lblStop", IDC_LBLSTOP, {.caption = "S&top Bits:"}};
Label lblFlow{frmOptions, "lblFlow", IDC_LBLFLOW, {.caption = "&Flow Control:"}};

Frame frameModemComs{frmOptions, "frameModemComs", IDC_FRAMEMODEMCOMS, {.caption = "Modem Commands"}};
Label lblPhoneNumber{frmOptions, "lblPhoneNumber", IDC_LBLPHONENUMBER, {.caption = "&Phone Number:"}};
Label lblDialPrefix{frmOptions, "lblDialPrefix", IDC_LBLDIALPREFIX, {.caption = "&Dial Prefix:"}};
Label lblDialSuffix{frmOptions, "lblDialSuffix", IDC_LBLDIALSUFFIX, {.caption = "Dial &Suffix:"}};
Label lblHangup{frmOptions, "lblHangup", IDC_LBLHANGUP, {.caption = "Han&gup String:"}};
Label lblReset{frmOptions, "lblReset", IDC_LBLRESET, {.caption = "&Reset String:"}};

Frame frameTimeout{frmOptions, "frameTimeout", IDC_FRAMETIMEOUT, {.caption = "Time-out"}};
Label lblConnectTimeout{frmOptions,
                        "lblConnectTimeout",
                        IDC_LBLCONNECTTIMEOUT,
                        {.caption = "Time (seconds) allowed for &connection:"}};

Frame frameFontSizes{frmOptions, "frameFontSizes", IDC_FRAMEFONTSIZES, {.caption = "Font Sizes"}};
Frame frameSampleText{frmOptions, "frameSampleText", IDC_FRAMESAMPLETEXT, {.caption = "Sample text"}};

constexpr int connectionTab = 0;
constexpr int modemTab = 1;
constexpr int timeoutTab = 2;
constexpr int fontTab = 3;

void showOn(int tab, bool frameVisible, std::initializer_list<Control*> controls) {
    const bool shown = frameVisible && tab == fptOptions.tab();
    for (Control* control : controls) control->setContainerShown(shown);
}

}  // namespace

void nameTabs() { fptOptions.setTabs({"Connection", "Modem", "Time-out", "Font Sizes"}); }

void showChosenTab() {
    showOn(connectionTab, true,
           {&frameConnType, &optNetwork, &optSerial, &optModem, &optSSH, &frameNet, &frameSettings});
    showOn(connectionTab, frameNet.visible(), {&lblKRVName, &txtNetAddress, &lblNetPort, &txtNetPort});
    showOn(connectionTab, frameSettings.visible(),
           {&lblPort, &cmbPort, &lblBaudRate, &cmbBaudRate, &lblParity, &cmbParity, &lblData, &cmbData,
            &lblStop, &cmbStop, &lblFlow, &cmbFlow});
    showOn(modemTab, true,
           {&frameModemComs, &lblPhoneNumber, &txtPhoneNumber, &lblDialPrefix, &txtDialPrefix, &lblDialSuffix,
            &txtDialSuffix, &lblHangup, &txtHangup, &lblReset, &txtReset});
    showOn(timeoutTab, true, {&frameTimeout, &lblConnectTimeout, &txtConnectTimeout, &chkAuto});
    showOn(
        fontTab, true,
        {&frameFontSizes, &option3DSmall, &option3DMedium, &option3DLarge, &frameSampleText, &txtSampleText});
}

}  // namespace options
}  // namespace qxterm
