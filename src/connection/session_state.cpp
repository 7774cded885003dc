#include "connection/session_state.h"

#include "config/profile_record.h"

namespace qxterm {

std::int16_t g_iConnectType = connectType::ssh;
bool g_bConnectActive = false;
bool sessionStarted = false;

void followProfileType() {
    if (!sessionHoldsType()) g_iConnectType = CurrentProfile.connectType;
}

}  // namespace qxterm
