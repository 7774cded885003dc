#include "terminal/drawing/screen_controls.h"

#include "platform/resource_ids.h"

namespace qxterm {
namespace {

Button keyButton(int number) {
    return Button{frmterm,
                  "CScmdfkey",
                  IDC_CSCMDFKEY_1 + number - 1,
                  {.caption = "", .enabled = true, .visible = false},
                  number};
}

}  // namespace

PictureBox picterm{frmterm, "picterm", IDC_PICTERM};
ScrollBar vscterm{frmterm, "vscterm", IDC_VSCTERM};
std::array<Button, functionKeyCount> CScmdfkey{keyButton(1), keyButton(2), keyButton(3), keyButton(4),
                                               keyButton(5), keyButton(6), keyButton(7), keyButton(8)};

}  // namespace qxterm
