#include "diag/report_error.h"

#include <array>
#include <new>
#include <utility>

#include "diag/format_msg.h"
#include "platform/message_box.h"
#include "platform/run_time_error.h"
#include "platform/system_text.h"

namespace qxterm {

bool g_bVerboseErrors = false;
bool g_bWouldBlock = false;
std::int16_t g_iWouldBlockCount = 0;
ErrorHooks errorHooks;

namespace {

constexpr std::int16_t wouldBlock = 10035;
constexpr std::int16_t socketLibraryMissing = 10044;
constexpr std::int16_t addressInUse = 10048;
constexpr std::int16_t connectionReset = 10054;
constexpr std::int16_t hostNotFound = 11004;
constexpr std::int16_t firstSocketError = 10000;

constexpr std::array<std::pair<std::int16_t, const char*>, 13> descriptions{{
    {errors::invalidProcedureCall, "Invalid procedure call or argument"},
    {errors::overflow, "Overflow"},
    {errors::outOfMemory, "Out of memory"},
    {errors::subscriptOutOfRange, "Subscript out of range"},
    {errors::typeMismatch, "Type mismatch"},
    {errors::cannotPerformOperation, "Can't perform requested operation"},
    {errors::badFileName, "Bad file name or number"},
    {errors::fileNotFound, "File not found"},
    {errors::deviceUnavailable, "Device unavailable"},
    {errors::permissionDenied, "Permission denied"},
    {errors::pathFileAccess, "Path/File access error"},
    {errors::pathNotFound, "Path not found"},
    {errors::objectNotSet, "Object variable or With block variable not set"},
}};

void tell(const char* text, Icon icon) { messageBox(text, programTitle, Buttons::ok, icon); }

std::int16_t tellOutOfMemory() {
    return messageBox("Out of memory.  Please close other applications and try again", programTitle,
                      Buttons::retryCancel, Icon::none) == Answer::retry
               ? actionRetry
               : actionLeave;
}

std::int16_t tellUnexpected(const char* routine, std::int16_t number) {
    std::string text = formatMsg("An unexpected error %1 has occurred", std::to_string(number));
    if (g_bVerboseErrors) {
        text = formatMsg("%1%2routine: ", text, g_sCrLf);
        text = formatMsg("%1%2%3message: %4", text, routine, g_sCrLf, errorDescription(number));
    }
    const Answer answer = messageBox(text, programTitle, Buttons::ok, Icon::information);
    if (number == errors::cannotPerformOperation) errorHooks.closeMainWindow();
    return static_cast<std::int16_t>(answer);
}

}  // namespace

void setVerboseErrors(bool verbose) { g_bVerboseErrors = verbose; }

void resetErrorReports() {
    g_bVerboseErrors = false;
    g_bWouldBlock = false;
    g_iWouldBlockCount = 0;
}

std::string errorDescription(std::int16_t number) {
    for (const auto& [known, text] : descriptions) {
        if (known == number) return text;
    }
    return number >= firstSocketError ? socketErrorText(number)
                                      : "Application-defined or object-defined error";
}

namespace {

/// Composing the words may need memory.
std::int16_t reportInWords(const char* routine, std::int16_t number) {
    switch (number) {
        case errors::outOfMemory: return tellOutOfMemory();
        case errors::deviceUnavailable:
            tell(
                "Another application is using the serial port.  You must choose another port or exit the "
                "other application",
                Icon::information);
            return actionLeave;
        case wouldBlock:
            g_bWouldBlock = true;
            if (g_iWouldBlockCount < INT16_MAX) ++g_iWouldBlockCount;
            return actionLeave;
        case socketLibraryMissing:
            tell(
                "The file WINSOCK.DLL could not be found.  Please ensure that this file is on your "
                "workstation's path.",
                Icon::critical);
            return actionLeave;
        case addressInUse: return actionAddressInUse;
        case connectionReset:
            tell("The connection has been dropped", Icon::information);
            errorHooks.dropConnection();
            return actionLeave;
        case hostNotFound:
            messageBox(formatMsg("The hostname %1 was not found.  Please choose another host.",
                                 errorHooks.currentHost()),
                       programTitle, Buttons::ok, Icon::information);
            return actionLeave;
        default: return tellUnexpected(routine, number);
    }
}

}  // namespace

std::int16_t reportError(const char* routine, std::int16_t number) {
    try {
        return reportInWords(routine, number);
    } catch (const std::bad_alloc&) {
        return tellOutOfMemory();
    }
}

}  // namespace qxterm
