#include "connection/session_state.h"

namespace qxterm {

std::int16_t g_iConnectType = connectType::ssh;
bool g_bConnectActive = false;
bool sessionStarted = false;
bool g_bSSHMode = false;

}  // namespace qxterm
