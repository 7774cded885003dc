#include "dump_lines.h"
#include "dumps.h"
#include "platform/hex_text.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"

namespace qxterm::scenario {

std::string lineText(const ScreenLine& line) { return jsonText({line.text.data(), line.text.size()}); }

Json lineAttrs(const ScreenLine& line) {
    Json words = Json::array();
    for (std::size_t column = 0; column < static_cast<std::size_t>(screenColumns); ++column) {
        words.push_back(line.attrs[column + 1]);
    }
    return words;
}

namespace {

/// One value of each screen row's record.
template <class Value>
Json byRow(Value&& value) {
    Json list = Json::array();
    for (std::int32_t row = 0; row < screenRows; ++row) list.push_back(value(lineOnRow(row)));
    return list;
}

}  // namespace

Json dumpScreen() {
    const std::string_view pending{pendingText.data(), static_cast<std::size_t>(pendingCount)};
    return {
        {"dump", "screen"},
        {"cursor", Json::array({curCol, curRow})},
        {"attr", Json::array({curAttr, curFg, curBg})},
        {"mode", screenMode},
        {"region", Json::array({regionTop, regionBottom})},
        {"saved", Json::array({savedCol, savedRow, savedAttr.flags, savedAttr.fg, savedAttr.bg, savedMode})},
        {"pending", jsonText(pending)},
        {"carry", hexText(carryOver)},
        {"last", jsonText(lastChar)},
        {"rowMap", rowMap},
        {"rows", byRow(lineText)},
        {"attrs", byRow(lineAttrs)},
        {"used", byRow([](const ScreenLine& line) { return line.usedLength; })},
        {"dirty", byRow([](const ScreenLine& line) {
             return Json::array({line.dirtyFirst, line.dirtyLast});
         })},
        {"flags", byRow([](const ScreenLine& line) { return line.lineFlags; })},
        {"sel", byRow([](const ScreenLine& line) {
             return Json::array({line.selFirst, line.selLast});
         })}};
}

}  // namespace qxterm::scenario
