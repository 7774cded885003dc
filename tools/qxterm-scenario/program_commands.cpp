// Commands that start and close the program, and let time pass.

#include <array>

#include "commands.h"
#include "platform/headless/clock.h"
#include "platform/headless/modal.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/user.h"
#include "platform/main_form.h"
#include "program.h"
#include "terminal/drawing/screen_controls.h"

namespace qxterm::scenario {
namespace {

Action start(Arguments& arguments) {
    const std::string commandLine = arguments.text();
    return [=] { startProgram(commandLine); };
}

/// The main window's close box is out of reach while a modal window is open.
Action close(Arguments& arguments) {
    return [line = arguments.line()] {
        if (programRuns() && headless::modalForms().empty()) {
            frmterm.unload(UnloadReason::formControlMenu);
        } else {
            refuse(line);
        }
    };
}

Action activate(Arguments& /*arguments*/) {
    return [] {
        if (programRuns()) headless::activate(frmterm);
    };
}

Action deactivate(Arguments& /*arguments*/) {
    return [] {
        if (programRuns()) headless::deactivate(frmterm);
    };
}

Action wait(Arguments& arguments) {
    const std::int32_t milliseconds = arguments.number("MS", 0, INT32_MAX);
    return [=] { headless::advance(milliseconds); };
}

Action paint(Arguments& /*arguments*/) {
    return [] { headless::uncover(picterm); };
}

constexpr std::array<Command, 6> programTable{{
    {"start", true, start},
    {"close", false, close},
    {"activate", false, activate},
    {"deactivate", false, deactivate},
    {"wait", false, wait},
    {"paint", false, paint},
}};

}  // namespace

std::span<const Command> programCommands() { return programTable; }

}  // namespace qxterm::scenario
