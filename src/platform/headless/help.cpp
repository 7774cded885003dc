#include "platform/help.h"

#include "platform/headless/help.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {
namespace {

bool helpShown = false;

}  // namespace

void resetHelp() { helpShown = false; }

}  // namespace qxterm::headless

namespace qxterm::help {

void show(const std::string& /*file*/, std::int32_t command, std::int32_t context) {
    if (command == closeAll && !headless::helpShown) return;
    headless::helpShown = command != closeAll;
    headless::record("help", {{"command", command}, {"context", context}});
}

}  // namespace qxterm::help
