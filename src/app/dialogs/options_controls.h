#pragma once

#include "platform/controls.h"

/// The controls of the Options dialog, for its own modules.
namespace qxterm::options {

extern TabStrip fptOptions;
extern Button cmdOK;
extern Button cmdCancel;
extern Button cmdHelp;

extern OptionButton optNetwork;
extern OptionButton optSerial;
extern OptionButton optModem;
extern OptionButton optSSH;

extern Frame frameNet;
extern TextBox txtNetAddress;
extern TextBox txtNetPort;

extern Frame frameSettings;
extern ComboBox cmbPort;
extern ComboBox cmbBaudRate;
extern ComboBox cmbParity;
extern ComboBox cmbData;
extern ComboBox cmbStop;
extern ComboBox cmbFlow;

extern TextBox txtPhoneNumber;
extern TextBox txtDialPrefix;
extern TextBox txtDialSuffix;
extern TextBox txtHangup;
extern TextBox txtReset;

extern TextBox txtConnectTimeout;
extern CheckBox chkAuto;

extern OptionButton option3DSmall;
extern OptionButton option3DMedium;
extern OptionButton option3DLarge;
extern TextBox txtSampleText;

/// Names the tabs. Called when the dialog loads.
void nameTabs();
/// Shows the controls of the chosen tab alone, and there those of frames that are visible.
void showChosenTab();

}  // namespace qxterm::options
