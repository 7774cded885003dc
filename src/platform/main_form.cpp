#include "platform/main_form.h"

#include "platform/resource_ids.h"

namespace qxterm {

constinit Form frmterm{"frmterm", FormKind::mainWindow, IDD_FRMTERM, "krvterm - (untitled)"};

}  // namespace qxterm
