#include "dumps.h"
#include "program_forms.h"

namespace qxterm::scenario {
namespace {

Json textList(const std::vector<std::string>& texts) {
    Json list = Json::array();
    for (const std::string& text : texts) list.push_back(jsonText(text));
    return list;
}

/// What a control shows, by its kind.
Json content(const Control& control) {
    switch (control.kind()) {
        case ControlKind::label:
        case ControlKind::frame:
        case ControlKind::button: return {{"caption", jsonText(control.caption())}};
        case ControlKind::optionButton:
            return {{"caption", jsonText(control.caption())},
                    {"value", static_cast<const OptionButton&>(control).value()}};
        case ControlKind::checkBox:
            return {{"caption", jsonText(control.caption())},
                    {"value", static_cast<const CheckBox&>(control).value()}};
        case ControlKind::textBox: return {{"text", jsonText(static_cast<const TextBox&>(control).text())}};
        case ControlKind::listBox:
        case ControlKind::comboBox: {
            const auto& list = static_cast<const ItemsControl&>(control);
            return {{"items", textList(list.items())}, {"index", list.listIndex()}};
        }
        case ControlKind::scrollBar: return {{"value", static_cast<const ScrollBar&>(control).value()}};
        case ControlKind::tabStrip: {
            const auto& strip = static_cast<const TabStrip&>(control);
            return {{"items", textList(strip.tabs())}, {"index", strip.tab()}};
        }
        case ControlKind::image:
        case ControlKind::pictureBox: break;
    }
    return Json::object();
}

}  // namespace

Json dumpForm(const Form& form) {
    Json controls = Json::object();
    for (const Control* control = form.firstControl(); control != nullptr; control = control->next()) {
        Json entry = content(*control);
        entry["enabled"] = control->enabled();
        entry["visible"] = control->visible();
        controls[scriptName(*control)] = entry;
    }
    return {{"dump", "form"},
            {"name", form.name()},
            {"caption", jsonText(form.caption())},
            {"controls", controls}};
}

}  // namespace qxterm::scenario
