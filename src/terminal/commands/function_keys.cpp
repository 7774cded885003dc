#include "terminal/commands/function_keys.h"

#include <algorithm>

#include "diag/checked.h"
#include "diag/error_trap.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/model/screen_store.h"

namespace qxterm {

std::array<KeyLabels, labelBanks> fkeyLabels;
std::array<KeyStrings, labelBanks> fkeyStrings;
std::int16_t fkeyBank = 0;

namespace {

/// Whether the window is laid out with the bar.
bool barLaidOut = false;

void setDefaultLabels(KeyLabels& labels) {
    for (std::size_t key = 0; key < functionKeyCount; ++key) {
        labels[key].fill(' ');
        labels[key][3] = 'F';
        labels[key][4] = static_cast<char>('1' + key);
    }
}

void setDefaultStrings(KeyStrings& strings) {
    for (std::size_t key = 0; key < functionKeyCount; ++key) {
        strings[key] = {'\x1b', 'O', static_cast<char>('c' + key)};
    }
}

/// Stores what the host programs: label and string of a key 1 to 8; another bank than 0 and 1 stores nothing.
void programKey(std::int16_t key, std::int16_t bank, std::string_view label, std::string_view string) {
    if (bank != 0 && bank != 1) return;
    const auto at = static_cast<std::size_t>(bank);
    const std::size_t number = subscript(key, 1, functionKeyCount) - 1;
    std::copy_n(label.begin(), labelLength, fkeyLabels[at][number].begin());
    showKeyLabels(bank);
    if (!string.empty()) fkeyStrings[at][number] = string;
}

}  // namespace

void initFunctionKeys() {
    for (KeyLabels& labels : fkeyLabels) setDefaultLabels(labels);
    for (KeyStrings& strings : fkeyStrings) setDefaultStrings(strings);
    fkeyBank = 0;
    barLaidOut = false;
}

void resetFunctionKeys() {
    setDefaultLabels(fkeyLabels[0]);
    showKeyLabels(1);
    for (KeyStrings& strings : fkeyStrings) setDefaultStrings(strings);
}

void showKeyLabels(std::int16_t bank) {
    trapped("showKeyLabels", [&] {
        const KeyLabels& labels = fkeyLabels[subscript(bank, 0, labelBanks - 1)];
        for (std::size_t key = 0; key < functionKeyCount; ++key) {
            constexpr std::size_t half = labelLength / 2;
            std::string caption{labels[key].data(), half};
            caption += "\r\n";
            caption.append(labels[key].data() + half, half);
            CScmdfkey[key].setCaption(caption);
        }
        showKeyBar();
    });
}

void showKeyBar() {
    trapped("showKeyBar", [] { setMode(mode::keyBarShown, true); });
}

void hideKeyBar() {
    trapped("hideKeyBar", [] { setMode(mode::keyBarShown, false); });
}

void layOutKeyBar() {
    if (barLaidOut == modeSet(mode::keyBarShown)) return;
    barLaidOut = modeSet(mode::keyBarShown);
    layOutWindow();
}

void selectLabelBank(const Parameters& parameters) {
    const std::int16_t bank = parameters.valueOr(1, 0);
    if (bank == 0 || bank == 1) {
        showKeyLabels(bank);
        fkeyBank = bank;
    } else if (bank == 2) {
        hideKeyBar();
    }
}

/// Function-key programming: label and string stand behind the final character.
void programFunctionKey(HostInput& input) {
    const Parameters& parameters = input.parameters;
    const std::int16_t key = parameters.valueOr(1, 0);
    if (key < 1 || key > static_cast<std::int16_t>(functionKeyCount)) return;
    const auto announced = static_cast<std::size_t>(parameters.valueOr(2, 0));
    if (input.data.size() - input.position < labelLength + announced) {
        input.waitForMore();
        return;
    }
    const std::string_view behind = input.data.substr(input.position, labelLength + announced);
    input.position += behind.size();
    programKey(key, parameters.valueOr(3, 0), behind.substr(0, labelLength), behind.substr(labelLength));
}

}  // namespace qxterm
