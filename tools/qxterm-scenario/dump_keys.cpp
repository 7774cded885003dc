#include "dumps.h"
#include "platform/hex_text.h"
#include "terminal/commands/function_keys.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"

namespace qxterm::scenario {

Json dumpKeys() {
    Json labels = Json::array();
    Json strings = Json::array();
    for (std::size_t bank = 0; bank < labelBanks; ++bank) {
        Json bankLabels = Json::array();
        Json bankStrings = Json::array();
        for (const auto& label : fkeyLabels[bank])
            bankLabels.push_back(jsonText({label.data(), label.size()}));
        for (const std::string& text : fkeyStrings[bank]) bankStrings.push_back(hexText(text));
        labels.push_back(bankLabels);
        strings.push_back(bankStrings);
    }
    Json captions = Json::array();
    for (const Button& button : CScmdfkey) captions.push_back(jsonText(button.caption()));
    return {{"dump", "keys"},
            {"bank", fkeyBank},
            {"labels", labels},
            {"strings", strings},
            {"bar", modeSet(mode::keyBarShown)},
            {"captions", captions}};
}

}  // namespace qxterm::scenario
