#include "dumps.h"
#include "platform/main_form.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/screen_store.h"

namespace qxterm::scenario {
namespace {

/// A blank window, for a program whose main window is not there.
const Picture& picture() {
    static const Picture blank;
    return frmterm.loaded() ? picterm.picture() : blank;
}

/// One value of each cell, row by row.
template <class Value>
Json byCell(Value&& value) {
    Json list = Json::array();
    for (int row = 0; row < pictureRows; ++row) {
        Json values = Json::array();
        for (int column = 0; column < pictureColumns; ++column)
            values.push_back(value(picture().at(column, row)));
        list.push_back(std::move(values));
    }
    return list;
}

Json texts() {
    Json list = Json::array();
    for (int row = 0; row < pictureRows; ++row) {
        std::string text;
        for (int column = 0; column < pictureColumns; ++column) text += picture().at(column, row).text();
        list.push_back(jsonText(text));
    }
    return list;
}

}  // namespace

Json dumpWindow() {
    const std::uint8_t background = frmterm.loaded() ? picterm.background() : std::uint8_t{0};
    const auto cursor = picture().cursor();
    return {{"dump", "window"},
            {"text", texts()},
            {"fg", byCell([](PictureCell cell) { return cell.fg(); })},
            {"bg", byCell([=](PictureCell cell) { return cell.on(background).bg(); })},
            {"style", byCell([](PictureCell cell) { return cell.style(); })},
            {"background", screenBackIndex},
            {"cursor", cursor ? Json::array({cursor->first, cursor->second}) : Json{}}};
}

}  // namespace qxterm::scenario
