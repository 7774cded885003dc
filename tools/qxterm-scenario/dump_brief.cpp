// Dumps of parts of the screen, short enough to be read in a scenario's expected output.

#include "dump_lines.h"
#include "dumps.h"
#include "platform/main_form.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"

namespace qxterm::scenario {
namespace {

std::string withoutTrailingBlanks(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

/// The rows that are not blank, by number.
template <class Text>
Json rowsThatHoldText(Text&& text) {
    Json rows = Json::object();
    for (std::int32_t row = 0; row < screenRows; ++row) {
        const std::string cells = withoutTrailingBlanks(text(row));
        if (!cells.empty()) rows[std::to_string(row)] = jsonText(cells);
    }
    return rows;
}

/// The words of a line as [word, how many cells in a row] pairs.
Json wordRuns(const ScreenLine& line) {
    Json runs = Json::array();
    for (std::size_t column = 1; column <= static_cast<std::size_t>(screenColumns); ++column) {
        if (column > 1 && line.attrs[column] == line.attrs[column - 1]) {
            runs.back()[1] = runs.back()[1].get<int>() + 1;
        } else {
            runs.push_back(Json::array({line.attrs[column], 1}));
        }
    }
    return runs;
}

}  // namespace

Json dumpTerminal() {
    Json whole = dumpScreen();
    Json brief = {{"dump", "terminal"}};
    for (const char* key : {"cursor", "attr", "mode", "region", "saved", "pending", "carry", "last"}) {
        brief[key] = whole[key];
    }
    return brief;
}

Json dumpPage() {
    return {{"dump", "page"},
            {"cursor", Json::array({curCol, curRow})},
            {"rows", rowsThatHoldText([](std::int32_t row) {
                 const ScreenLine& line = lineOnRow(row);
                 return std::string{line.text.begin(), line.text.end()};
             })}};
}

Json dumpRow(std::int32_t row) {
    const ScreenLine& line = lineOnRow(row);
    return {{"dump", "row"},
            {"row", row},
            {"text", jsonText(withoutTrailingBlanks({line.text.begin(), line.text.end()}))},
            {"words", wordRuns(line)},
            {"used", line.usedLength},
            {"dirty", Json::array({line.dirtyFirst, line.dirtyLast})},
            {"flags", line.lineFlags}};
}

Json dumpView() {
    if (!frmterm.loaded()) return {{"dump", "view"}, {"cursor", nullptr}, {"rows", Json::object()}};
    const Picture& cells = picterm.picture();
    const auto cursor = cells.cursor();
    return {{"dump", "view"},
            {"cursor", cursor ? Json::array({cursor->first, cursor->second}) : Json{}},
            {"rows", rowsThatHoldText([&](std::int32_t row) {
                 std::string text;
                 for (int column = 0; column < pictureColumns; ++column) {
                     text += cells.at(column, row).text();
                 }
                 return text;
             })}};
}

}  // namespace qxterm::scenario
