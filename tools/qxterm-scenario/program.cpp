#include "program.h"

#include <vector>

#include "diag/error_trap.h"
#include "headless-session/session.h"
#include "output.h"
#include "platform/event_loop.h"
#include "platform/headless/modal.h"
#include "platform/headless/recorder.h"
#include "script.h"
#include "terminal/model/input_busy.h"

namespace qxterm::scenario {
namespace {

bool started = false;
headless::Sink sink = nullptr;

struct Fault {
    std::string routine;
    std::int16_t number;
};

/// Those for the next run.
std::vector<Fault>& waitingFaults() {
    static std::vector<Fault> faults;
    return faults;
}

/// Prints {"event": kind, ...}. The recorder's sink.
void printRecord(const headless::Record& record) {
    Json object{{"event", record.kind}};
    for (const auto& [name, value] : record.fields) {
        if (const auto* text = std::get_if<std::string>(&value)) {
            object[name] = jsonText(*text);
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            object[name] = *flag;
        } else {
            object[name] = std::get<std::int64_t>(value);
        }
    }
    print(object);
}

void runStartUp(std::string_view commandLine) {
    started = true;
    for (const Fault& fault : waitingFaults()) planFault(fault.routine, fault.number);
    waitingFaults().clear();
    headless::runProgram(commandLine);
}

}  // namespace

void prepareProgram(headless::Sink given) {
    started = false;
    waitingFaults().clear();
    sink = given != nullptr ? given : printRecord;
    headless::resetAll();
    headless::setSink(sink);
}

void startProgram(std::string_view commandLine) {
    if (started) {
        if (inputBusy != 0 || !headless::modalForms().empty()) {
            throw ScriptFault{"start cannot be used in a modal window or a yield"};
        }
        headless::killProgram();
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
    headless::setSink(sink);
}

bool programRuns() { return started && !eventLoop::ending(); }

}  // namespace qxterm::scenario
