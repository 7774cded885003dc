// What the user does with the main window.

#include <array>

#include "commands.h"
#include "platform/display.h"
#include "platform/headless/modal.h"
#include "platform/headless/user.h"
#include "platform/main_form.h"
#include "platform/menu.h"
#include "program.h"
#include "program_menus.h"
#include "script.h"
#include "terminal/drawing/screen_controls.h"

namespace qxterm::scenario {
namespace {

constexpr std::int32_t farthestPixel = 30000;
constexpr std::int16_t leftButton = 1;
bool leftHeld = false;

/// Menus and buttons of the main window answer while no modal window is open.
bool mainWindowAnswers() { return programRuns() && headless::modalForms().empty(); }

Action key(Arguments& arguments) {
    const std::int32_t code = arguments.number("CODE", 0, INT16_MAX);
    constexpr std::int32_t everyModifier = shiftState::shift | shiftState::control | shiftState::alt;
    const std::int32_t shift = arguments.more() ? arguments.number("SHIFT", 0, everyModifier) : 0;
    return [=] {
        if (programRuns())
            frmterm.onKeyDown.raise(static_cast<std::int16_t>(code), static_cast<std::int16_t>(shift));
    };
}

Action type(Arguments& arguments) {
    return [bytes = arguments.bytes()] {
        for (const char c : bytes) {
            if (!programRuns()) return;
            frmterm.onKeyPress.raise(static_cast<unsigned char>(c));
        }
    };
}

Action functionKey(Arguments& arguments) {
    const auto number = static_cast<std::size_t>(arguments.number("N", 1, functionKeyCount));
    return [=, line = arguments.line()] {
        if (!mainWindowAnswers() || !headless::click(CScmdfkey[number - 1])) refuse(line);
    };
}

/// Reads a place in pixels and hands it on in twips.
template <class Raise>
Action mouse(Arguments& arguments, Raise&& raise) {
    const std::int32_t x = arguments.number("X", -farthestPixel, farthestPixel);
    const std::int32_t y = arguments.number("Y", -farthestPixel, farthestPixel);
    return [=] {
        if (programRuns()) raise(x * display::twipsPerPixelX(), y * display::twipsPerPixelY());
    };
}

Action mouseDown(Arguments& arguments) {
    return mouse(arguments, [](std::int32_t x, std::int32_t y) {
        leftHeld = true;
        picterm.onMouseDown.raise(leftButton, 0, x, y);
    });
}

Action mouseMove(Arguments& arguments) {
    return mouse(arguments, [](std::int32_t x, std::int32_t y) {
        picterm.onMouseMove.raise(leftHeld ? leftButton : std::int16_t{0}, 0, x, y);
    });
}

Action mouseUp(Arguments& arguments) {
    return mouse(arguments, [](std::int32_t x, std::int32_t y) {
        leftHeld = false;
        picterm.onMouseUp.raise(leftButton, 0, x, y);
    });
}

Action scroll(Arguments& arguments) {
    const std::int32_t value = arguments.number("VALUE", INT16_MIN, INT16_MAX);
    return [=, line = arguments.line()] {
        if (!programRuns() || !headless::moveScrollBar(vscterm, value)) refuse(line);
    };
}

template <int which>
Action menu(Arguments& arguments) {
    Menu& chosen = *programMenus()[static_cast<std::size_t>(which)].menu;
    const auto index = static_cast<std::int16_t>(arguments.number("N", 0, INT16_MAX));
    bool known = false;
    for (const Menu::Entry& entry : chosen.entries()) known = known || entry.index == index;
    if (!known) throw ScriptFault{"the menu has no entry with index " + std::to_string(index)};
    return [&chosen, index, line = arguments.line()] {
        if (!mainWindowAnswers() || !headless::chooseMenu(chosen, index)) refuse(line);
    };
}

constexpr std::array<Command, 11> windowTable{{
    {"key", false, key},
    {"type", false, type},
    {"fkey", false, functionKey},
    {"mouse down", false, mouseDown},
    {"mouse move", false, mouseMove},
    {"mouse up", false, mouseUp},
    {"scroll", false, scroll},
    {"menu profile", false, menu<0>},
    {"menu edit", false, menu<1>},
    {"menu connection", false, menu<2>},
    {"menu help", false, menu<3>},
}};

}  // namespace

std::span<const Command> windowCommands() { return windowTable; }

}  // namespace qxterm::scenario
