#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "diag/recorded.h"
#include "platform/headless/message_box.h"
#include "platform/headless/picture_box.h"
#include "terminal/commands/erasing.h"
#include "terminal/commands/inserting_deleting.h"
#include "terminal/commands/movement.h"
#include "terminal/commands/pending_run.h"
#include "terminal/commands/scrolling.h"
#include "terminal/drawing/line_out.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/attributes.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"
#include "terminal/terminal_alone.h"

namespace qxterm::test {

/// A test of the terminal alone: started, nothing written on the screen.
class TerminalTest : public RecordedTest {
protected:
    void SetUp() override {
        startTerminalAlone();
        watch();
    }
    void TearDown() override { resetTerminalAlone(); }

    /// One block of host output.
    static void host(std::string_view block) { processInput(block); }
    /// The same bytes in blocks of a length.
    static void hostInBlocks(std::string_view bytes, std::size_t length) {
        for (std::size_t at = 0; at < bytes.size(); at += length) processInput(bytes.substr(at, length));
    }

    /// The stored text of a screen row, all 80 characters.
    static std::string line(std::int32_t row) {
        const ScreenLine& record = lineOnRow(row);
        return {record.text.begin(), record.text.end()};
    }
    /// The stored text without the blanks at its end.
    static std::string text(std::int32_t row) { return trimmedRight(line(row)); }
    /// The attribute word of a cell.
    static std::int16_t word(std::int32_t column, std::int32_t row) {
        return lineOnRow(row).attrs[static_cast<std::size_t>(column + 1)];
    }
    /// True when the words of columns first..last are all this one.
    static bool words(std::int32_t row, std::int32_t first, std::int32_t last, std::int16_t value) {
        for (std::int32_t column = first; column <= last; ++column) {
            if (word(column, row) != value) return false;
        }
        return true;
    }
    /// What stands on a window row, without the blanks at its end.
    static std::string shown(int row) {
        std::string cells;
        for (int column = 0; column < screenColumns; ++column) {
            cells += picterm.picture().at(column, row).text();
        }
        return trimmedRight(cells);
    }
    static PictureCell cell(int column, int row) { return picterm.picture().at(column, row); }
    static std::string trimmedRight(std::string text) {
        text.erase(text.find_last_not_of(' ') + 1);
        return text;
    }
    /// Column and row of the cursor.
    static std::pair<int, int> at() { return {curCol, curRow}; }

    /// Puts characters into the pending run as the interpreter does.
    static void pend(std::string_view characters) {
        std::copy(characters.begin(), characters.end(), pendingText.begin() + pendingCount);
        pendingCount = static_cast<std::int16_t>(pendingCount + static_cast<std::int16_t>(characters.size()));
    }
    static void cursorTo(std::int32_t column, std::int32_t row) {
        curCol = column;
        curRow = row;
    }
    /// The texts of the message boxes so far.
    static std::vector<std::string> boxes() { return recorded("box", "text"); }
    /// The boxes so far are these unexpected errors: number and routine of each.
    static std::string faults() {
        std::string all;
        for (const std::string& text : boxes()) {
            const auto number = text.substr(20, text.find(" has") - 20);
            const auto routine = text.find("routine: ");
            all += number + ' ' +
                   (routine == std::string::npos
                        ? "?"
                        : text.substr(routine + 9, text.find('\r', routine) - routine - 9)) +
                   ';';
        }
        return all;
    }
};

}  // namespace qxterm::test
