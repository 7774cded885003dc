// The terminal on the headless platform, without connections and application: what a host sends stands in its
// records.

#include <cstdio>
#include <string_view>

#include "platform/headless/reset.h"
#include "platform/main_form.h"
#include "terminal/commands/function_keys.h"
#include "terminal/commands/reset.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"

int main() {
    qxterm::headless::reset();
    qxterm::startTerminal();
    qxterm::initAttributes();
    qxterm::initFunctionKeys();
    qxterm::resetScreen();
    qxterm::frmterm.load();
    qxterm::vscterm.setMinimum(qxterm::scrollbackTop);
    qxterm::vscterm.setMaximum(qxterm::liveView);
    qxterm::processInput("first\r\n\x1b[1msecond\x1b[3;2Hthird");
    constexpr std::string_view expected[] = {"first ", "second ", " third "};
    for (int row = 0; row < 3; ++row) {
        const auto& text = qxterm::lineOnRow(row).text;
        if (std::string_view{text.data(), text.size()}.starts_with(expected[row])) continue;
        std::fprintf(stderr, "row %d does not hold \"%s\"\n", row, expected[row].data());
        return 1;
    }
    return 0;
}
