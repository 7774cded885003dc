#include "app/dialogs/options_fields.h"

#include <algorithm>
#include <array>
#include <string>

#include "app/dialogs/options_controls.h"
#include "app/dialogs/options_dialog.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/user_profile.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "diag/numbers.h"
#include "platform/message_box.h"
#include "terminal/drawing/cell_size.h"

namespace qxterm::options {
namespace {

ProfileRecord working;
float selectedFontSize = 10;  // points

constexpr const char* sampleFace = "Courier New";
constexpr const char* sampleText = "This is some sample text to see how this font size looks on your screen.";

constexpr std::array ports{"COM1", "COM2", "COM3", "COM4"};
constexpr std::array speeds{"110", "300", "600", "1200", "2400", "4800", "9600", "19.2K"};
static_assert(speeds.size() == baudRates.size());
constexpr std::array parities{"None", "Odd", "Even", "Mark", "Space"};
constexpr std::array<std::string_view, parities.size()> parityLetters{"n", "o", "e", "m", "s"};
constexpr std::array<std::string_view, 4> dataBits{"5", "6", "7", "8"};
constexpr std::array<std::string_view, 3> stopBits{"1", "1.5", "2"};
constexpr std::array flowControls{"None", "Xon/Xoff", "Rts/Cts", "Both"};
constexpr std::int16_t firstDataBits = 5;

template <class Items>
void fill(ComboBox& box, const Items& items) {
    box.clear();
    for (const auto& item : items) box.addItem(item);
}

/// Chooses an entry; nothing is chosen when the list has none with this index.
void choose(ComboBox& box, std::int64_t index) {
    const bool known = index >= 0 && index < static_cast<std::int64_t>(box.items().size());
    box.setListIndex(known ? static_cast<int>(index) : -1);
}

/// Place of a value in a list, -1 when it is not in it.
template <class List, class Value>
std::int64_t indexIn(const List& list, const Value& value) {
    const auto found = std::find(list.begin(), list.end(), value);
    return found == list.end() ? -1 : found - list.begin();
}

void FillCombos() {
    trapped("FillCombos", [] {
        fill(cmbPort, ports);
        choose(cmbPort, working.commport - 1);
        fill(cmbBaudRate, speeds);
        choose(cmbBaudRate, indexIn(baudRates, working.baud));
        fill(cmbParity, parities);
        choose(cmbParity, indexIn(parityLetters, working.parity));
        fill(cmbData, dataBits);
        choose(cmbData, working.databits - firstDataBits);
        fill(cmbStop, stopBits);
        choose(cmbStop, indexIn(stopBits, working.stopBits));
        fill(cmbFlow, flowControls);
        choose(cmbFlow, working.flowControl);
    });
}

void FillModemStrings() {
    trapped("FillModemStrings", [] {
        txtPhoneNumber.setText(working.phone);
        txtDialPrefix.setText(working.prefix);
        txtDialSuffix.setText(working.suffix);
        txtHangup.setText(working.hangup);
        txtReset.setText(working.reset);
    });
}

void fillType() {
    optNetwork.setValue(working.connectType == connectType::net);
    optSerial.setValue(working.connectType == connectType::serial);
    optModem.setValue(working.connectType == connectType::modem);
    optSSH.setValue(working.connectType == connectType::ssh);
    showNetworkSettings(working.connectType != connectType::serial &&
                        working.connectType != connectType::modem);
}

void fillFontSize() {
    const bool small = working.fontSize < 10;
    const bool large = working.fontSize > 10;
    option3DSmall.setValue(small);
    option3DMedium.setValue(!small && !large);
    option3DLarge.setValue(large);
    txtSampleText.setText(sampleText);
    setSelectedFontSize(working.fontSize);
}

/// What is in no list keeps its value unless the user chose an entry.
void takeLineSettings() {
    const auto chosen = [](const ComboBox& box, auto&& store) {
        if (box.listIndex() >= 0) store(static_cast<std::size_t>(box.listIndex()));
    };
    chosen(cmbPort, [](std::size_t n) { working.commport = static_cast<std::int16_t>(n + 1); });
    chosen(cmbBaudRate, [](std::size_t n) { working.baud = baudRates.at(n); });
    chosen(cmbParity, [](std::size_t n) { working.parity = parityLetters.at(n); });
    chosen(cmbData, [](std::size_t n) { working.databits = static_cast<std::int16_t>(n + firstDataBits); });
    chosen(cmbStop, [](std::size_t n) { working.stopBits = stopBits.at(n); });
    chosen(cmbFlow, [](std::size_t n) { working.flowControl = static_cast<std::int16_t>(n); });
}

void takeTexts() {
    working.host = txtNetAddress.text();
    working.phone = txtPhoneNumber.text();
    working.prefix = txtDialPrefix.text();
    working.suffix = txtDialSuffix.text();
    working.hangup = txtHangup.text();
    working.reset = txtReset.text();
    working.auto_retry = chkAuto.value();
}

void applyFontSize() {
    if (selectedFontSize == CurrentProfile.fontSize) return;
    setFontSize(selectedFontSize);
    working.fontSize = selectedFontSize;
    setProfileChanged(true);
    resizeScreen();
}

void storeTimeout(std::int64_t seconds) {
    working.timeout = toInt16(seconds);
    const bool network = working.connectType == connectType::net || working.connectType == connectType::ssh;
    if (network) storeConnectTimeout(working.timeout);
}

void storeWorkingCopy() {
    if (working == CurrentProfile) return;
    setCurrentProfile(working);
    setProfileChanged(true);
}

}  // namespace

void fillControls() {
    working = CurrentProfile;
    FillCombos();
    FillModemStrings();
    txtNetAddress.setText(working.host);
    txtNetPort.setText(std::to_string(working.port));
    txtConnectTimeout.setText(std::to_string(working.timeout));
    chkAuto.setValue(working.auto_retry);
    fillType();
    fillFontSize();
}

void setWorkingType(std::int16_t type) { working.connectType = type; }

void setSelectedFontSize(float points) {
    selectedFontSize = points;
    txtSampleText.setFont(sampleFace, points);
}

void showNetworkSettings(bool network) {
    frameSettings.setVisible(!network);
    frameNet.setVisible(network);
    showChosenTab();
}

void recordChanges() {
    trapped("recordChanges", [] {
        constexpr std::int64_t portLimit = 65536;
        takeLineSettings();
        takeTexts();
        const std::int64_t timeout = leadingNumber(txtConnectTimeout.text());
        if (timeout <= 0) {
            messageBox("Connection timeout must be betweeen 1-999", programTitle, Buttons::ok,
                       Icon::information);
            return;
        }
        const std::int64_t port = leadingNumber(txtNetPort.text());
        if (port < 0 || port >= portLimit) {
            messageBox("Invalid network port number", "Bad Network Port", Buttons::ok, Icon::information);
            return;
        }
        working.port = static_cast<std::int32_t>(port);
        applyFontSize();
        storeTimeout(timeout);
        storeWorkingCopy();
        frmOptions.unload();
    });
}

}  // namespace qxterm::options
