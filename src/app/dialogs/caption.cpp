#include "app/dialogs/caption.h"

#include <string>

#include "config/profile_record.h"
#include "diag/error_trap.h"
#include "platform/main_form.h"
#include "platform/program_title.h"

namespace qxterm {

void setCaption() {
    trapped("setCaption", [] {
        frmterm.setCaption(std::string{programTitle} + " - " + CurrentProfile.name);
        setApplicationTitle("QXTERM - " + CurrentProfile.name);
    });
}

}  // namespace qxterm
