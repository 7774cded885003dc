#include "platform/headless/failures.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/headless/recorder.h"
#include "platform/run_time_error.h"

namespace qxterm::headless {
namespace {

constexpr std::int16_t connectionReset = 10054;
constexpr std::int16_t hostNotFound = 11001;

constexpr std::array<PointInfo, 28> all{{
    {Point::clipboardClear, "clipboard.clear", errors::permissionDenied, "the clipboard is held"},
    {Point::clipboardRead, "clipboard.read", 0, "the clipboard is held: no text"},
    {Point::clipboardSet, "clipboard.set", errors::permissionDenied, "the clipboard is held"},
    {Point::helpShow, "help.show", 0, "the help file is missing: a box tells so"},
    {Point::iniRead, "ini.read", 0, "the value is missing"},
    {Point::iniWrite, "ini.write", 0, "nothing is written"},
    {Point::languageRead, "language.read", 0, "the setting is missing"},
    {Point::boxShow, "box.show", 0, "a message box cannot be made: answered as if it was closed"},
    {Point::pictureLoad, "picture.load", errors::fileNotFound, "the splash picture cannot be read"},
    {Point::pictureMeasure, "picture.measure", 0, "a text cannot be measured: about the size it should have"},
    {Point::portsTcp, "ports.tcp", 0, "the system does not tell the TCP ports in use"},
    {Point::portsUdp, "ports.udp", 0, "the system does not tell the UDP ports in use"},
    {Point::processPipe, "process.pipe", errors::outOfMemory, "no pipe for a helper"},
    {Point::processReady, "process.ready", 0, "the helper's readiness cannot be asked for: not ready"},
    {Point::processStart, "process.start", 0, "a helper cannot be started"},
    {Point::processTerminate, "process.terminate", 0, "a helper cannot be ended"},
    {Point::serialBreak, "serial.break", 0, "the line's break state stays"},
    {Point::serialCarrier, "serial.carrier", 0, "the carrier cannot be asked for: none"},
    {Point::serialOpen, "serial.open", errors::deviceUnavailable, "the port cannot be opened"},
    {Point::serialRead, "serial.read", 0, "nothing is read, and the port is gone"},
    {Point::serialSettings, "serial.settings", errors::invalidProcedureCall, "the port refuses the settings"},
    {Point::serialWrite, "serial.write", 0, "nothing is written, and the port is gone"},
    {Point::socketConnect, "socket.connect", hostNotFound, "the attempt fails, told when time passes"},
    {Point::socketSend, "socket.send", connectionReset, "nothing is sent"},
    {Point::socketText, "socket.text", 0, "the system has no description of a socket error"},
    {Point::timerStart, "timer.start", 0, "the timer does not run until time passes"},
    {Point::traceWrite, "trace.write", errors::pathFileAccess, "the trace log cannot be written"},
    {Point::windowCreate, "window.create", errors::outOfMemory, "a window cannot be made"},
}};

struct State {
    FailurePlan plan{0, 0, 0};
    std::uint32_t calls = 0;
    std::uint32_t failures = 0;
};
std::array<State, all.size()> states;

State& stateOf(Point point) { return states[static_cast<std::size_t>(point)]; }
const PointInfo& infoOf(Point point) { return all[static_cast<std::size_t>(point)]; }

/// One call; true when it is to fail.
bool meet(Point point) {
    State& state = stateOf(point);
    ++state.calls;
    if (state.plan.times == 0) return false;
    if (state.plan.after > 0) {
        --state.plan.after;
        return false;
    }
    if (state.plan.times != FailurePlan::always) --state.plan.times;
    ++state.failures;
    record("failed", [&] { return Fields{{"point", std::string{infoOf(point).name}}}; });
    return true;
}

}  // namespace

std::span<const PointInfo> points() { return all; }

const PointInfo* pointNamed(std::string_view name) {
    const auto at = std::find_if(all.begin(), all.end(), [&](const PointInfo& p) { return p.name == name; });
    return at == all.end() ? nullptr : &*at;
}

void planFailure(Point point, const FailurePlan& plan) { stateOf(point).plan = plan; }

void clearFailures() { states = {}; }

std::uint32_t callsOf(Point point) { return stateOf(point).calls; }

std::uint32_t failuresOf(Point point) { return stateOf(point).failures; }

FailurePlan planOf(Point point) { return stateOf(point).plan; }

std::optional<std::int16_t> failure(Point point) {
    if (!meet(point)) return std::nullopt;
    const std::int16_t planned = stateOf(point).plan.error;
    return planned != 0 ? planned : infoOf(point).error;
}

bool fails(Point point) { return meet(point); }

void raiseIfPlanned(Point point) {
    if (const auto number = failure(point)) throw RunTimeError{*number};
}

}  // namespace qxterm::headless
