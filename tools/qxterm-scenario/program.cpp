#include "program.h"

#include <vector>

#include "app/main.h"
#include "app/program_state.h"
#include "diag/error_trap.h"
#include "output.h"
#include "platform/event_loop.h"
#include "platform/headless/modal.h"
#include "platform/headless/program.h"
#include "platform/headless/recorder.h"
#include "platform/headless/reset.h"
#include "script.h"
#include "terminal/model/input_busy.h"

namespace qxterm::scenario {
namespace {

bool started = false;

struct Fault {
    std::string routine;
    std::int16_t number;
};

/// Those for the next run.
std::vector<Fault>& waitingFaults() {
    static std::vector<Fault> faults;
    return faults;
}

void runStartUp(std::string_view commandLine) {
    started = true;
    for (const Fault& fault : waitingFaults()) planFault(fault.routine, fault.number);
    waitingFaults().clear();
    headless::setCommandLine(commandLine);
    qxterm::main();
}

}  // namespace

void prepareProgram() {
    headless::reset();
    resetProgram();
    headless::setSink(printRecord);
}

void startProgram(std::string_view commandLine) {
    if (started) {
        if (inputBusy != 0 || !headless::modalForms().empty()) {
            throw ScriptFault{"start cannot be used in a modal window or a yield"};
        }
        headless::endRun();
        resetProgram();
    }
    runStartUp(commandLine);
}

void planRoutineFault(const std::string& routine, std::int16_t number) {
    if (programRuns()) {
        planFault(routine, number);
    } else {
        waitingFaults().push_back({routine, number});
    }
}

void startUnlessStarted() {
    if (started) return;
    headless::setSink(nullptr);
    runStartUp({});
    headless::setSink(printRecord);
}

bool programRuns() { return started && !eventLoop::ending(); }

}  // namespace qxterm::scenario
