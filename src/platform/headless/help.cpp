#include "platform/help.h"

#include "platform/headless/failures.h"
#include "platform/headless/recorder.h"
#include "platform/message_box.h"

namespace qxterm::help {

void show(const std::string& file, std::int32_t command, std::int32_t context) {
    if (command != closeAll && headless::fails(headless::Point::helpShow)) {
        messageBox(missingFile(file), programTitle, Buttons::ok, Icon::information);
        return;
    }
    headless::record("help", [&] { return headless::Fields{{"command", command}, {"context", context}}; });
}

}  // namespace qxterm::help
