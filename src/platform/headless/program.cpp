#include "platform/program.h"

#include "platform/headless/event_loop.h"
#include "platform/headless/failures.h"
#include "platform/headless/program.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {
namespace {

std::string& commandLineText() {
    static std::string text;
    return text;
}

}  // namespace

void setCommandLine(std::string_view text) { commandLineText() = text; }

void resetProgramService() { commandLineText().clear(); }

}  // namespace qxterm::headless

namespace qxterm::program {

std::string folder() { return "C:\\QXTERM"; }

std::string commandLine() { return headless::commandLineText(); }

void end() { headless::endProgram(); }

void appendTrace(std::string_view line) {
    headless::raiseIfPlanned(headless::Point::traceWrite);
    headless::record("trace", [&] { return headless::Fields{{"line", std::string{line}}}; });
}

}  // namespace qxterm::program
