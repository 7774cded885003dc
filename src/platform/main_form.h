#pragma once

#include "platform/form.h"

namespace qxterm {

/// The main window. It stands on the ground floor because controls of every floor stand on it; its event
/// handlers and its menus belong to the application.
extern Form frmterm;

}  // namespace qxterm
