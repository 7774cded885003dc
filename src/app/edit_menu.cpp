#include "app/edit_menu.h"

#include <string>

#include "app/menus.h"
#include "connection/session.h"
#include "diag/error_trap.h"
#include "platform/clipboard.h"
#include "terminal/view/selection.h"

namespace qxterm {
void enableAllEditItems(bool enabled) {
    mnueditItem.setEnabled(editItem::copy, enabled);
    mnueditItem.setEnabled(editItem::paste, enabled);
    mnueditItem.setEnabled(editItem::clear, enabled);
}

void mnuedit_Click() {
    trapped("mnuedit_Click", [] {
        mnueditItem.setEnabled(editItem::copy, hasSelection());
        mnueditItem.setEnabled(editItem::paste, g_bConnectActive && clipboard::hasText());
        mnueditItem.setEnabled(editItem::clear, clipboard::hasAnything());
    });
}

void copySelection() {
    if (hasSelection()) mnueditItem_Click(editItem::copy);
}

void mnueditItem_Click(std::int16_t index) {
    trapped("mnueditItem_Click", [&] {
        switch (index) {
            case editItem::copy: {
                const std::string text = getSel();
                clipboard::clear();
                clipboard::setText(text);
                removeSelection();
                break;
            }
            case editItem::paste:
                if (g_bConnectActive) sendTyped(clipboard::text());
                break;
            case editItem::clear: clipboard::clear(); break;
            default: break;
        }
    });
}

}  // namespace qxterm
