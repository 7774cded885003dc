#include "platform/headless/reset.h"

#include <vector>

#include "platform/form.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/clock.h"
#include "platform/headless/display.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/failures.h"
#include "platform/headless/forms.h"
#include "platform/headless/message_box.h"
#include "platform/headless/modal.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/port_table.h"
#include "platform/headless/process.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/program.h"
#include "platform/headless/recorder.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"

namespace qxterm::headless {
namespace {

/// Unloads a form without its handlers.
void dropForm(Form& form) {
    const auto queryUnload = form.onQueryUnload;
    const auto unload = form.onUnload;
    form.onQueryUnload.disconnect();
    form.onUnload.disconnect();
    form.unload();
    form.onQueryUnload = queryUnload;
    form.onUnload = unload;
}

}  // namespace

void endRun() {
    const Sink current = sink();
    setSink(nullptr);
    for (Form* form : std::vector<Form*>{loadedForms()}) dropForm(*form);
    setApplicationTitle({});
    setSink(current);
    resetSockets();
    resetSerialPorts();
    dropHelpers();
    resetEventLoop();
    resetClock();
    resetDrawing();
}

void reset() {
    endRun();
    clearFailures();
    setAddressFamily(usualFamily);
    setPortsBusy(false);
    resetModal();
    resetAnswers();
    resetClipboard();
    resetDisplay();
    resetHelpers();
    resetPortTables();
    resetProfileStrings();
    resetProgramService();
    resetRecorder();
}

}  // namespace qxterm::headless
