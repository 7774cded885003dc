#include "terminal/view/screen_events.h"

#include "terminal/drawing/cursor.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/view/scrollback_view.h"
#include "terminal/view/selection.h"
#include "terminal/view/selection_drag.h"

namespace qxterm {

void connectScreenEvents() {
    frmterm.onActivateMessage.connect("mbResize", mbResize);
    picterm.onPaint.connect("picterm_Paint", picterm_Paint);
    picterm.onPaintMessage.connect("mbPaint", mbPaint);
    picterm.onMouseDown.connect("picterm_MouseDown", picterm_MouseDown);
    picterm.onMouseMove.connect("picterm_MouseMove", picterm_MouseMove);
    picterm.onMouseUp.connect("picterm_MouseUp", picterm_MouseUp);
    picterm.onWheel.connect("picterm_MouseWheel", wheelView);
    tmrSelect.onTimer.connect("tmrSelect_Timer", tmrSelect_Timer);
    vscterm.onChange.connect("vscterm_Change", vscterm_Change);
    vscterm.onScroll.connect("vscterm_Scroll", vscterm_Scroll);
}

}  // namespace qxterm
