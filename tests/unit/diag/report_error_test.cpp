#include "diag/report_error.h"

#include "diag/format_msg.h"
#include "diag/recorded.h"
#include "platform/headless/message_box.h"

namespace qxterm::report_error_test {
namespace {

using test::countOf;
using test::recorded;
using test::records;

int dropped = 0;
int closed = 0;
std::size_t boxesBeforeHook = 0;

class ReportError : public test::RecordedTest {
protected:
    void SetUp() override {
        RecordedTest::SetUp();
        dropped = 0;
        closed = 0;
        boxesBeforeHook = 0;
        g_sCrLf = "\r\n";
        g_bVerboseErrors = true;
        g_bWouldBlock = false;
        g_iWouldBlockCount = 0;
        saved_ = errorHooks;
        errorHooks = {.dropConnection =
                          [] {
                              ++dropped;
                              boxesBeforeHook = countOf("box");
                          },
                      .currentHost = [] { return std::string{"tower.example"}; },
                      .closeMainWindow =
                          [] {
                              ++closed;
                              boxesBeforeHook = countOf("box");
                          }};
    }
    void TearDown() override {
        errorHooks = saved_;
        g_bVerboseErrors = false;
        RecordedTest::TearDown();
    }

    /// The one box that was shown must be this one.
    static void expectBox(std::string_view text, std::string_view buttons, std::string_view icon) {
        ASSERT_EQ(countOf("box"), 1U);
        EXPECT_EQ(recorded("box", "title")[0], "Zentora Terminal Emulator");
        EXPECT_EQ(recorded("box", "text")[0], text);
        EXPECT_EQ(recorded("box", "buttons")[0], buttons);
        EXPECT_EQ(recorded("box", "icon")[0], icon);
    }

private:
    ErrorHooks saved_;
};

TEST_F(ReportError, OutOfMemoryAsksForARetry) {
    headless::queueAnswer(Answer::retry);
    EXPECT_EQ(reportError("main", 7), 2);
    expectBox("Out of memory.  Please close other applications and try again", "RetryCancel", "none");
}

TEST_F(ReportError, OutOfMemoryAnsweredCancelLeaves) {
    headless::queueAnswer(Answer::cancel);
    EXPECT_EQ(reportError("main", 7), 1);
}

TEST_F(ReportError, SerialPortBusy) {
    EXPECT_EQ(reportError("connectPort", 68), 1);
    expectBox(
        "Another application is using the serial port.  You must choose another port or exit the other "
        "application",
        "OK", "information");
}

TEST_F(ReportError, WouldBlockShowsNothingAndCounts) {
    EXPECT_EQ(reportError("sendBytes", 10035), 1);
    EXPECT_EQ(reportError("sendBytes", 10035), 1);
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(g_bWouldBlock);
    EXPECT_EQ(g_iWouldBlockCount, 2);
}

TEST_F(ReportError, SocketLibraryMissing) {
    EXPECT_EQ(reportError("connectPort", 10044), 1);
    expectBox(
        "The file WINSOCK.DLL could not be found.  Please ensure that this file is on your workstation's "
        "path.",
        "OK", "critical");
}

TEST_F(ReportError, AddressInUseIsSilentAndLeftToTheCaller) {
    EXPECT_EQ(reportError("connectPort", 10048), 3);
    EXPECT_TRUE(records.empty());
    EXPECT_FALSE(g_bWouldBlock);
}

TEST_F(ReportError, ConnectionDroppedEndsTheSessionBehindTheBox) {
    EXPECT_EQ(reportError("DataArrival", 10054), 1);
    expectBox("The connection has been dropped", "OK", "information");
    EXPECT_EQ(dropped, 1);
    EXPECT_EQ(boxesBeforeHook, 1U);
}

TEST_F(ReportError, HostNotFoundNamesTheHost) {
    EXPECT_EQ(reportError("connectPort", 11004), 1);
    expectBox("The hostname tower.example was not found.  Please choose another host.", "OK", "information");
}

TEST_F(ReportError, HostNameIsNotSearchedForPlaceholders) {
    errorHooks.currentHost = [] { return std::string{"%1%%n"}; };
    EXPECT_EQ(reportError("connectPort", 11004), 1);
    expectBox("The hostname %1%%n was not found.  Please choose another host.", "OK", "information");
}

TEST_F(ReportError, UnexpectedErrorNamesRoutineAndDescription) {
    EXPECT_EQ(reportError("setFiles", 91), 1);
    expectBox(
        "An unexpected error 91 has occurred\r\n"
        "routine: setFiles\r\n"
        "message: Object variable or With block variable not set",
        "OK", "information");
    EXPECT_EQ(closed, 0);
    EXPECT_EQ(dropped, 0);
}

TEST_F(ReportError, UnexpectedErrorIsShortWhenNotVerbose) {
    g_bVerboseErrors = false;
    EXPECT_EQ(reportError("setFiles", 91), 1);
    expectBox("An unexpected error 91 has occurred", "OK", "information");
}

TEST_F(ReportError, Error17ClosesTheMainWindowBehindTheBox) {
    EXPECT_EQ(reportError("main", 17), 1);
    expectBox(
        "An unexpected error 17 has occurred\r\nroutine: main\r\nmessage: Can't perform requested operation",
        "OK", "information");
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(boxesBeforeHook, 1U);
}

TEST_F(ReportError, WithoutHooksNothingElseHappens) {
    errorHooks = {};
    EXPECT_EQ(reportError("main", 17), 1);
    EXPECT_EQ(reportError("main", 10054), 1);
    EXPECT_EQ(reportError("main", 11004), 1);
    EXPECT_EQ(recorded("box", "text")[2], "The hostname  was not found.  Please choose another host.");
}

TEST_F(ReportError, EveryRunTimeErrorHasItsDescription) {
    const std::pair<std::int16_t, const char*> all[] = {
        {5, "Invalid procedure call or argument"},
        {6, "Overflow"},
        {7, "Out of memory"},
        {9, "Subscript out of range"},
        {13, "Type mismatch"},
        {17, "Can't perform requested operation"},
        {52, "Bad file name or number"},
        {53, "File not found"},
        {68, "Device unavailable"},
        {70, "Permission denied"},
        {75, "Path/File access error"},
        {76, "Path not found"},
        {91, "Object variable or With block variable not set"},
        {1, "Application-defined or object-defined error"},
        {0, "Application-defined or object-defined error"},
        {-5, "Application-defined or object-defined error"},
        {9999, "Application-defined or object-defined error"},
    };
    for (const auto& [number, text] : all) EXPECT_EQ(errorDescription(number), text) << number;
}

TEST_F(ReportError, SocketErrorsHaveTheSystemsWords) {
    EXPECT_EQ(reportError("connectPort", 10061), 1);
    expectBox(
        "An unexpected error 10061 has occurred\r\nroutine: connectPort\r\nmessage: No connection could be "
        "made "
        "because the target machine actively refused it.",
        "OK", "information");
}

TEST_F(ReportError, WouldBlockCountNeverWraps) {
    g_iWouldBlockCount = 32766;
    for (int n = 0; n < 3; ++n) (void)reportError("sendBytes", 10035);
    EXPECT_EQ(g_iWouldBlockCount, 32767);
}

}  // namespace
}  // namespace qxterm::report_error_test
