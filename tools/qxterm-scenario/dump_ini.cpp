#include "dumps.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/profile_strings.h"

namespace qxterm::scenario {

Json dumpIni() {
    Json sections = Json::object();
    for (const headless::IniSection& section : headless::ini()) {
        Json values = Json::object();
        for (const auto& [key, value] : section.values) values[jsonText(key)] = jsonText(value);
        sections[jsonText(section.name)] = values;
    }
    return {{"dump", "ini"}, {"sections", sections}};
}

Json dumpClipboard() { return {{"dump", "clipboard"}, {"text", jsonText(headless::clipboardText())}}; }

}  // namespace qxterm::scenario
