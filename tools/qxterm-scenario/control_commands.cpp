// What the user does with the controls of the topmost window.

#include <array>

#include "commands.h"
#include "platform/headless/user.h"
#include "program_forms.h"
#include "script.h"

namespace qxterm::scenario {
namespace {

/// A control by the name that the script knows it by, "NAME" or "NAME(INDEX)"; of the topmost window where
/// that has one.
Control& controlNamed(const std::string& name) {
    const std::vector<Form*>& visible = visibleForms();
    Control* found = nullptr;
    for (Form* form : programForms()) {
        for (Control* control = form->firstControl(); control != nullptr; control = control->next()) {
            if (scriptName(*control) != name) continue;
            if (!visible.empty() && visible.back() == form) return *control;
            if (found == nullptr) found = control;
        }
    }
    if (found == nullptr) throw ScriptFault{"there is no control named " + name};
    return *found;
}

/// Only the topmost window answers.
bool onTop(const Control& control) {
    return !visibleForms().empty() && visibleForms().back() == &control.form();
}

template <class Wanted>
Wanted& controlOfKind(const std::string& name, std::initializer_list<ControlKind> kinds, const char* what) {
    Control& control = controlNamed(name);
    for (const ControlKind kind : kinds) {
        if (control.kind() == kind) return static_cast<Wanted&>(control);
    }
    throw ScriptFault{name + " is not " + what};
}

Action click(Arguments& arguments) {
    const std::string name = arguments.word("CONTROL");
    const auto find = [name]() -> Control& {
        return controlOfKind<Control>(name,
                                      {ControlKind::button, ControlKind::optionButton, ControlKind::checkBox},
                                      "a button, an option button or a check box");
    };
    (void)find();
    return [=, line = arguments.line()] {
        Control& control = find();
        if (!onTop(control) || !headless::click(control)) refuse(line);
    };
}

Action set(Arguments& arguments) {
    const std::string name = arguments.word("CONTROL");
    const std::string text = arguments.text();
    const auto find = [name]() -> TextBox& {
        return controlOfKind<TextBox>(name, {ControlKind::textBox}, "a text box");
    };
    (void)find();
    return [=, line = arguments.line()] {
        TextBox& box = find();
        if (!onTop(box) || !headless::enterText(box, text)) refuse(line);
    };
}

Action chooseEntry(Arguments& arguments, bool twice) {
    const std::string name = arguments.word("CONTROL");
    const std::int32_t index = arguments.number("N", 0, INT16_MAX);
    const auto find = [name]() -> ItemsControl& {
        return controlOfKind<ItemsControl>(name, {ControlKind::listBox, ControlKind::comboBox},
                                           "a list or combo box");
    };
    (void)find();
    return [=, line = arguments.line()] {
        ItemsControl& list = find();
        if (!onTop(list) || !headless::usable(list)) return refuse(line);
        if (static_cast<std::size_t>(index) >= list.items().size()) {
            throw ScriptFault{name + " has no entry " + std::to_string(index)};
        }
        (void)headless::choose(list, index, twice);
    };
}

Action choose(Arguments& arguments) { return chooseEntry(arguments, false); }

Action doubleClick(Arguments& arguments) { return chooseEntry(arguments, true); }

Action press(Arguments& arguments) {
    const std::string name = arguments.word("CONTROL");
    const std::int32_t code = arguments.number("CODE", 0, UINT8_MAX);
    const auto find = [name]() -> Control& {
        return controlOfKind<Control>(name,
                                      {ControlKind::textBox, ControlKind::listBox, ControlKind::comboBox},
                                      "a text, list or combo box");
    };
    (void)find();
    return [=, line = arguments.line()] {
        Control& control = find();
        if (!onTop(control) || !headless::press(control, static_cast<std::int16_t>(code))) refuse(line);
    };
}

constexpr std::array<Command, 5> controlTable{{
    {"click", false, click},
    {"set", false, set},
    {"choose", false, choose},
    {"dblclick", false, doubleClick},
    {"press", false, press},
}};

}  // namespace

std::span<const Command> controlCommands() { return controlTable; }

}  // namespace qxterm::scenario
