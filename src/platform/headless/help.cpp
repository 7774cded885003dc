#include "platform/help.h"

#include "platform/headless/recorder.h"

namespace qxterm::help {

void show(const std::string& /*file*/, std::int32_t command, std::int32_t context) {
    headless::record("help", {{"command", command}, {"context", context}});
}

}  // namespace qxterm::help
