#include "program.h"

#include "headless-session/session.h"
#include "platform/headless/picture_box.h"

namespace qxterm::bench {

void startProgram() {
    headless::startProgram();
    headless::setDrawing(headless::Drawing::countOnly);
}

void startSession() {
    headless::startSession();
    headless::setDrawing(headless::Drawing::countOnly);
}

}  // namespace qxterm::bench
