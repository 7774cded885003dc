#include "player.h"

#include <deque>
#include <iostream>

#include "commands.h"
#include "output.h"
#include "platform/form.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/modal.h"
#include "program.h"
#include "script.h"
#include "terminal/model/input_busy.h"

namespace qxterm::scenario {
namespace {

constexpr int wrongLine = 2;
constexpr int outputLost = 2;

LineSource* script = nullptr;
bool linesAreTold = false;

struct Queued {
    ReadCommand command;
    std::string where;
};

std::deque<Queued>& queued() {
    static std::deque<Queued> commands;
    return commands;
}

/// Carries a command out; what is wrong with it is told with the place where it stands.
void carryOutAt(const ReadCommand& command, const std::string& where) {
    try {
        carryOut(command);
    } catch (ScriptFault& fault) {
        if (fault.where.empty()) fault.where = where;
        throw;
    }
}

void runQueued() {
    if (inputBusy == 0 || queued().empty()) return;
    const Queued next = std::move(queued().front());
    queued().pop_front();
    if (queued().empty()) headless::yieldHook = nullptr;
    carryOutAt(next.command, next.where);
}

bool runNextLine() {
    std::string line;
    if (!script->next(line)) return false;
    const std::string where = script->where();
    if (linesAreTold) print({{"file", jsonText(script->file())}, {"line", script->line()}});
    ReadCommand command;
    try {
        command = readCommand(line);
    } catch (ScriptFault& fault) {
        fault.where = where;
        throw;
    }
    carryOutAt(command, where);
    script->carriedOut();
    return true;
}

void tellOpenForms() {
    const auto& open = headless::modalForms();
    Json names = Json::array();
    for (auto form = open.rbegin(); form != open.rend(); ++form) names.push_back((*form)->name());
    print({{"event", "end"}, {"open", names}});
}

/// What a modal window asks for the next event.
bool runNextLineInModal() {
    if (runNextLine()) return true;
    tellOpenForms();
    return false;
}

}  // namespace

void queueForYield(std::string_view line) {
    queued().push_back({readCommand(line), script->where()});
    headless::yieldHook = runQueued;
}

namespace {

int playSource(LineSource& source) {
    queued().clear();
    script = &source;
    int status = 0;
    headless::setNextEvent(runNextLineInModal);
    try {
        while (runNextLine()) {
        }
    } catch (const headless::EndOfScript&) {
        // the open windows have been told
    } catch (const ScriptFault& fault) {
        (void)flushOutput();
        std::cerr << fault.where << ": " << fault.message << '\n';
        status = wrongLine;
    }
    if (!flushOutput() && status == 0) {
        std::cerr << "standard output cannot take what is printed\n";
        status = outputLost;
    }
    script = nullptr;
    return status;
}

}  // namespace

int play(std::vector<std::string> files, Lines lines) {
    Script played{std::move(files)};
    linesAreTold = lines == Lines::told;
    prepareProgram();
    return playSource(played);
}

int playQuietly(LineSource& source, headless::Sink sink) {
    linesAreTold = false;
    setPrinting(false);
    prepareProgram(sink);
    const int status = playSource(source);
    setPrinting(true);
    return status;
}

}  // namespace qxterm::scenario
