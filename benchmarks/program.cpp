#include "program.h"

#include "headless-session/session.h"

namespace qxterm::bench {

void startProgram() { headless::startProgram(); }

void startSession() { headless::startSession(); }

}  // namespace qxterm::bench
