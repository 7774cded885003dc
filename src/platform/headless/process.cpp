#include "platform/headless/process.h"

#include <algorithm>
#include <memory>
#include <set>
#include <vector>

#include "platform/event_loop.h"
#include "platform/headless/clock.h"
#include "platform/headless/failures.h"
#include "platform/headless/recorder.h"

namespace qxterm {

struct HelperProcess::Native {
    bool ended = false;
    std::vector<std::pair<std::string, std::string>> environment;
};

}  // namespace qxterm

namespace qxterm::headless {
namespace {

/// What the system answers when a process that has ended is to be ended.
constexpr std::uint32_t errorAccessDenied = 5;
constexpr std::uint32_t exitCodeOfTerminated = 1;
constexpr std::int64_t never = -1;

using Names = std::set<std::string, std::less<>>;

Names& failing() {
    static Names names;
    return names;
}

Names& exiting() {
    static Names names;
    return names;
}

std::vector<HelperProcess*>& recordedHelpers() {
    static std::vector<HelperProcess*> helpers;
    return helpers;
}

std::int64_t forwardDelay = 0;
std::int64_t lastStart = 0;

}  // namespace

void failHelper(std::string_view name) { failing().emplace(name); }

void exitHelper(std::string_view name) {
    bool runs = false;
    for (HelperProcess* helper : recordedHelpers()) {
        if (helper->name() != name || helper->native->ended) continue;
        helper->native->ended = true;
        runs = true;
    }
    if (!runs) exiting().emplace(name);
}

void setForwardDelay(std::int64_t milliseconds) { forwardDelay = milliseconds < 0 ? never : milliseconds; }

bool forwardOpen() { return forwardDelay != never && now() >= lastStart + forwardDelay; }

std::string helperEnvironment(std::string_view helper, std::string_view variable) {
    for (const HelperProcess* one : recordedHelpers()) {
        if (one->name() != helper) continue;
        for (const auto& [known, value] : one->native->environment) {
            if (known == variable) return value;
        }
    }
    return {};
}

void dropHelpers() {
    for (HelperProcess* helper : recordedHelpers()) {
        delete helper->native;
        helper->native = nullptr;
    }
    recordedHelpers().clear();
    lastStart = 0;
}

void resetHelpers() {
    dropHelpers();
    failing().clear();
    exiting().clear();
    forwardDelay = 0;
}

}  // namespace qxterm::headless

namespace qxterm {

bool HelperProcess::start(std::string_view commandLine, StandardHandles handles,
                          std::span<const EnvironmentValue> environment) {
    if (handles == StandardHandles::pipes) headless::raiseIfPlanned(headless::Point::processPipe);
    if (headless::fails(headless::Point::processStart)) return false;
    if (headless::failing().contains(name_)) return false;
    headless::record("process", [&] {
        return headless::Fields{{"op", "start"}, {"name", name()}, {"command", std::string{commandLine}}};
    });
    auto started = std::make_unique<Native>();
    started->ended = headless::exiting().contains(name_);
    for (const EnvironmentValue& one : environment) started->environment.emplace_back(one.name, one.value);
    headless::recordedHelpers().push_back(this);
    native = started.release();
    headless::lastStart = headless::now();
    return true;
}

bool HelperProcess::ended() const { return native == nullptr || native->ended; }

bool HelperProcess::ready() const {
    if (!recorded() || readyVariable_ == nullptr) return false;
    return !headless::fails(headless::Point::processReady) && headless::forwardOpen();
}

void HelperProcess::waitRunningEvents(std::int32_t milliseconds) {
    if (ended()) return;
    eventLoop::doEvents();
    headless::advance(milliseconds);
}

std::uint32_t HelperProcess::terminate() {
    if (ended() || headless::fails(headless::Point::processTerminate)) return headless::errorAccessDenied;
    native->ended = true;
    headless::record("process", [&] { return headless::Fields{{"op", "terminate"}, {"name", name()}}; });
    return 0;
}

bool HelperProcess::wait(std::int32_t /*milliseconds*/) { return ended(); }

std::uint32_t HelperProcess::exitCode() const { return headless::exitCodeOfTerminated; }

void HelperProcess::close() {
    std::erase(headless::recordedHelpers(), this);
    delete native;
    native = nullptr;
}

}  // namespace qxterm
