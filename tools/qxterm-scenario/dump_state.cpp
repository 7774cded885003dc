#include "config/ini_file.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/auto_login.h"
#include "connection/network.h"
#include "connection/session.h"
#include "diag/report_error.h"
#include "diag/trace_log.h"
#include "dumps.h"
#include "terminal/drawing/cell_size.h"

namespace qxterm::scenario {

Json dumpState() {
    return {{"dump", "state"},
            {"g_bConnectActive", g_bConnectActive},
            {"g_bSSHMode", g_bSSHMode},
            {"g_iConnectType", g_iConnectType()},
            {"g_bProfileChanged", g_bProfileChanged},
            {"g_bProfileNew", g_bProfileNew},
            {"g_bDialogCancelled", g_bDialogCancelled},
            {"g_sHelpFile", jsonText(g_sHelpFile)},
            {"g_sLanguage", jsonText(g_sLanguage)},
            {"g_iTwipsX", g_iTwipsX},
            {"g_iTwipsY", g_iTwipsY},
            {"g_lPortForwardStart", g_lPortForwardStart},
            {"g_iWindowLeft", g_iWindowLeft},
            {"g_iWindowTop", g_iWindowTop},
            {"g_sLogging", jsonText(g_sLogging)},
            {"g_bWouldBlock", g_bWouldBlock},
            {"g_iWouldBlockCount", g_iWouldBlockCount},
            {"g_bLoginPromptSeen", g_bLoginPromptSeen},
            {"g_bLoginSent", g_bLoginSent},
            {"g_bLoginDone", g_bLoginDone},
            {"pendingBytes", pendingBytes},
            {"packetCount", packetCount},
            {"firstDataSeen", firstDataSeen}};
}

}  // namespace qxterm::scenario
