#include "program_forms.h"

#include <array>

#include "app/dialogs/options_dialog.h"
#include "app/dialogs/profile_dialog.h"
#include "app/dialogs/splash.h"
#include "connection/status_dialog.h"
#include "platform/main_form.h"

namespace qxterm::scenario {

std::span<Form* const> programForms() {
    static const std::array<Form*, 5> forms{&frmterm, &frmConn, &frmprof, &frmOptions, &frmSplash};
    return forms;
}

Form* formNamed(std::string_view name) {
    for (Form* form : programForms()) {
        if (name == form->name()) return form;
    }
    return nullptr;
}

std::string scriptName(const Control& control) {
    std::string name = control.name();
    if (control.index() >= 0) name += '(' + std::to_string(control.index()) + ')';
    return name;
}

}  // namespace qxterm::scenario
