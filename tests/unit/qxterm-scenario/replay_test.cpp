#include "replay.h"

#include <gmock/gmock.h>

#include <sstream>
#include <vector>

#include "bytes.h"
#include "commands.h"
#include "trace_log_samples.h"

namespace qxterm::test::replay_test {
namespace {

using scenario::Replay;
using scenario::ReplayLine;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Lines = std::vector<std::string>;

Lines linesOf(const std::string& log, ReplayLine::Kind kind) {
    std::istringstream stream{log};
    Replay replay{stream, "output.txt"};
    Lines lines;
    for (ReplayLine line; replay.next(line);) {
        if (line.kind == kind) lines.push_back(line.text);
    }
    return lines;
}

/// Without those that only prepare.
Lines commandsOf(const std::string& log) {
    Lines lines;
    for (const std::string& line : linesOf(log, ReplayLine::Kind::command)) {
        if (!line.starts_with("ini ")) lines.push_back(line);
    }
    return lines;
}

Lines settingsOf(const std::string& log) {
    Lines lines;
    for (const std::string& line : linesOf(log, ReplayLine::Kind::command)) {
        if (line.starts_with("ini ")) lines.push_back(line);
    }
    return lines;
}

Lines remarksOf(const std::string& log) { return linesOf(log, ReplayLine::Kind::remark); }

/// The first arrival of a program asks for one byte less, and gets it with the next.
std::string firstArrivalOf(std::string_view bytes) {
    const std::string count = std::to_string(bytes.size());
    const std::string less = std::to_string(bytes.size() - 1);
    return "comnet2_DataArrival(): " + count + " bytes incoming, " + less + " bytes to process\r\n" +
           "comnet2_DataArrival(): processing " + less +
           " bytes in loop\r\nGetNetworkBytes(): Requested count=" + less + ", actual: " + less +
           " bytes\r\n" + dumpOf("BYTES>>", bytes.substr(0, bytes.size() - 1)) +
           arrivalOf(bytes.substr(bytes.size() - 1));
}

TEST(Replay, ANetworkSession) {
    const std::string log = networkLines + firstArrivalOf("\xff\xfd\x18") +
                            dumpOf("BYTES<<", "\xff\xfb\x18") + upLine + arrivalOf("login: ") +
                            dumpOf("BYTES<<", "b") + dumpOf("BYTES<<", "\x1b[A") +
                            dumpOf("BYTES<<", "\x1b[Z") + dumpOf("BYTES<<", "\x7f");
    EXPECT_THAT(settingsOf(log),
                ElementsAre("ini Settings Profiles replay1 replay2", "ini replay1 connect net",
                            "ini replay1 host host1", "ini replay1 netport 23"));
    EXPECT_THAT(commandsOf(log),
                ElementsAre("start replay1", "socket connect", R"(socket data "\xff\xfd\x18")", "wait 350",
                            R"(socket data "login: ")", R"(type "b")", "key 38", R"(clipboard "\e[Z")",
                            "menu edit 1", "key 46"));
    EXPECT_THAT(remarksOf(log), IsEmpty());
    EXPECT_THAT(linesOf(log, ReplayLine::Kind::comment),
                Contains(R"(# 12: answers the host: "\xff\xfb\x18")"));
}

TEST(Replay, AnAttemptThatNobodyAnswersConnectsNothing) {
    EXPECT_THAT(commandsOf(networkLines), ElementsAre("start replay1"));
}

TEST(Replay, ASerialLine) {
    const std::string log = serialLines + upLine + serialTextOf("a\r\n") + dumpOf("BYTES<<", "x");
    EXPECT_THAT(settingsOf(log),
                ElementsAre("ini Settings Profiles replay1 replay2", "ini replay1 connect serial",
                            "ini replay1 commport 2", "ini replay1 baud 300", "ini replay1 parity e",
                            "ini replay1 databits 7", "ini replay1 stopBits 2", "ini replay1 flowControl 3"));
    EXPECT_THAT(commandsOf(log),
                ElementsAre("start replay1", "wait 350", R"(serial data "a\r\n")", R"(type "x")"));
}

TEST(Replay, SaysWhichSerialArrivalsHaveNoText) {
    const std::string event = "Comser_OnComm() - MSCOMM_EV_RECEIVE\r\n";
    const std::string log = serialLines + upLine + event + serialTextOf("") + serialTextOf("x") + event;
    const Lines remarks = remarksOf(log);
    ASSERT_EQ(remarks.size(), 4U);
    EXPECT_THAT(remarks[0], HasSubstr("found at the port by itself"));
    EXPECT_EQ(remarks[1],
              "# line 6: REMARK: bytes that arrived here were read later, and are not in the log");
    EXPECT_EQ(remarks[2],
              "# line 8: REMARK: bytes that arrived here had been read before, and are not in the log");
    EXPECT_EQ(remarks[3],
              "# line 11: REMARK: bytes that arrived here were read later, and are not in the log");
    EXPECT_THAT(linesOf(log, ReplayLine::Kind::comment),
                Contains("# Serial arrivals whose text is not in the log: 3."));
}

TEST(Replay, AModemDialsWhatItDialled) {
    const std::string log = serialLines + "connectPort() - modemConnect - MODEM_RESET\r\n" +
                            dumpOf("BYTES<<", "ATZ\r") + serialTextOf("OK\r\n") +
                            dumpOf("BYTES<<", "ATDT5\r") +
                            "modemConnect() - Phone Number: ATDT5\r\n"
                            "Comser_OnComm() - MSCOMM_EV_CD\r\n"
                            "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is TRUE\r\n" +
                            upLine + dumpOf("BYTES<<", "ATZ\r");
    EXPECT_THAT(settingsOf(log), Contains("ini replay1 reset ATZ"));
    EXPECT_THAT(settingsOf(log), Contains("ini replay1 prefix ATDT5"));
    EXPECT_THAT(commandsOf(log), ElementsAre("start replay1", R"(serial data "OK\r\n")", "wait 1000",
                                             "serial carrier on", "wait 350"));
}

TEST(Replay, TheLoginOfAnSshSessionIsTypedAtItsBeginning) {
    const std::string log =
        "connectPort() - Connection Type: SSH\r\nconnectPort() - Network Address: host2\r\n"
        "connectPort() - Network Port: 2222\r\n" +
        arrivalOf("login: ") + dumpOf("BYTES<<", "bob\r") + arrivalOf("bob\r\n") + arrivalOf("Password: ") +
        dumpOf("BYTES<<", "word\r") + arrivalOf("Welcome") + dumpOf("BYTES<<", "bob\r");
    EXPECT_THAT(settingsOf(log), Contains("ini replay1 SSHnetport 2222"));
    EXPECT_THAT(
        commandsOf(log),
        ElementsAre("start replay1", R"(type "bob\rword\r")", "socket connect", "wait 350",
                    R"(socket data "login: ")", R"(socket data "bob\r\n")", R"(socket data "Password: ")",
                    R"(socket data "Welcome")", R"(clipboard "bob\r")", "menu edit 1"));
}

TEST(Replay, ALoopIsToldAndItsTextIsMissing) {
    EXPECT_THAT(commandsOf(upLine + upLine), ElementsAre("start replay1", "wait 350"));
    EXPECT_THAT(remarksOf(upLine + upLine), ElementsAre(HasSubstr("typed into a loop")));
}

TEST(Replay, AFurtherSessionOfTheSameProgramIsOpenedInIt) {
    const std::string log =
        networkLines + firstArrivalOf("one") + upLine + networkLines + arrivalOf("two") + upLine;
    EXPECT_THAT(commandsOf(log),
                ElementsAre("start replay1", "socket connect", R"(socket data "one")", "wait 350",
                            "menu connection 1", "menu profile 1", "choose lstprof 1", "click cmd3Dconn",
                            "socket connect", R"(socket data "two")", "wait 350"));
}

TEST(Replay, AnotherProgramIsKnownByItsFirstArrival) {
    const std::string session = networkLines + firstArrivalOf("one") + upLine;
    const Lines commands = commandsOf(session + session);
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "start replay1"), 2);
    EXPECT_THAT(commands, Not(Contains("menu profile 1")));
}

TEST(Replay, TheFirstArrivalMayComeInALaterSessionOfTheProgram) {
    const std::string log = serialLines + upLine + networkLines + firstArrivalOf("one") + upLine;
    const Lines commands = commandsOf(log);
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "start replay1"), 1);
    EXPECT_THAT(commands, Contains("menu profile 1"));
}

TEST(Replay, WithoutAHostTheUserGetsTheOptions) {
    const std::string missing =
        "connectPort() - Connection Type: Network\r\nconnectPort() - Missing network address\r\n";
    EXPECT_THAT(commandsOf(missing), ElementsAre("start replay1", "click cmdCancel"));
    EXPECT_THAT(settingsOf(missing), Contains("ini replay1 host "));
}

TEST(Replay, ALogThatBeginsInTheMiddleSaysSo) {
    EXPECT_THAT(commandsOf(arrivalOf("text")),
                ElementsAre("start replay1", "socket connect", "wait 350", R"(socket data "text")"));
    EXPECT_THAT(remarksOf(arrivalOf("text")),
                ElementsAre(HasSubstr("beginning of this session is not in the log")));
    EXPECT_THAT(commandsOf(serialTextOf("text")),
                ElementsAre("start replay1", "wait 350", R"(serial data "text")"));
}

TEST(Replay, NothingOfTheLogCanBecomeACommand) {
    const std::string log =
        "x\nclose\nconnectPort() - Connection Type: Network\r\n"
        "connectPort() - Network Address: a\rclose\r\n" +
        arrivalOf("\nclose\n\"\\");
    EXPECT_THAT(commandsOf(log), Not(Contains("close")));
    EXPECT_THAT(settingsOf(log), Contains("ini replay1 host aclose"));
    for (const std::string& line : linesOf(log, ReplayLine::Kind::remark)) {
        EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos);
    }
}

// Of a log that is cut anywhere every line can still be carried out.
TEST(Replay, ALogCutAtAnyByteGivesCommandsThatCanBeRead) {
    const std::string log = networkLines + firstArrivalOf("one\r\n") + upLine + dumpOf("BYTES<<", "\x1b[A") +
                            serialLines + "connectPort() - modemConnect - MODEM_RESET\r\n" +
                            dumpOf("BYTES<<", "ATZ\r") + dumpOf("BYTES<<", "ATDT5\r") +
                            "modemConnect() - Phone Number: ATDT5\r\n" + serialTextOf("two") + networkLines +
                            firstArrivalOf("three") + upLine;
    for (std::size_t length = 0; length <= log.size(); ++length) {
        for (const std::string& line : linesOf(log.substr(0, length), ReplayLine::Kind::command)) {
            EXPECT_NO_THROW((void)scenario::readCommand(line)) << line;
        }
    }
}

TEST(Bytes, AreWrittenAsTheyAreRead) {
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_EQ(scenario::parseBytes(scenario::bytesText(all)), all);
    EXPECT_EQ(scenario::bytesText("a \"\\\x1b\r\n\t\b\x7f\xe9"), R"("a \"\\\e\r\n\t\b\x7f\xe9")");
    EXPECT_EQ(scenario::bytesText(std::string_view{"\0", 1}), R"("\x00")");
}

}  // namespace
}  // namespace qxterm::test::replay_test
