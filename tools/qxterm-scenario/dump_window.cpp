#include "dumps.h"
#include "platform/headless/picture_box.h"
#include "platform/main_form.h"
#include "terminal/screen_store.h"
#include "terminal/view/screen_controls.h"

namespace qxterm::scenario {
namespace {

using headless::CellGrid;
using headless::CellLook;

/// A blank window, for a program whose main window is not there.
const CellGrid& grid() {
    static const CellGrid blank;
    return frmterm.loaded() ? headless::cellsOf(picterm) : blank;
}

/// One value of each cell, row by row.
template <class Value>
Json byCell(Value&& value) {
    Json list = Json::array();
    for (int row = 0; row < CellGrid::rows; ++row) {
        Json values = Json::array();
        for (int column = 0; column < CellGrid::columns; ++column)
            values.push_back(value(grid().at(column, row)));
        list.push_back(std::move(values));
    }
    return list;
}

Json texts() {
    Json list = Json::array();
    for (int row = 0; row < CellGrid::rows; ++row) {
        std::string text;
        for (int column = 0; column < CellGrid::columns; ++column) text += grid().at(column, row).text;
        list.push_back(jsonText(text));
    }
    return list;
}

}  // namespace

Json dumpWindow() {
    const std::uint8_t background = frmterm.loaded() ? headless::backgroundOf(picterm) : std::uint8_t{0};
    const auto cursor = grid().cursor();
    return {{"dump", "window"},
            {"text", texts()},
            {"fg", byCell([](const CellLook& cell) { return cell.fg; })},
            {"bg", byCell([=](const CellLook& cell) { return cell.drawn ? cell.bg : background; })},
            {"style", byCell([](const CellLook& cell) { return cell.style; })},
            {"background", screenBackIndex},
            {"cursor", cursor ? Json::array({cursor->first, cursor->second}) : Json{}}};
}

}  // namespace qxterm::scenario
