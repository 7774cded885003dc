#include "trace_reader.h"

#include <gmock/gmock.h>

#include <sstream>
#include <vector>

#include "trace_log_samples.h"

namespace qxterm::test::trace_reader_test {
namespace {

using scenario::TraceEntry;
using scenario::TraceReader;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = TraceEntry::Kind;

std::vector<TraceEntry> entriesOf(const std::string& log) {
    std::istringstream stream{log};
    TraceReader reader{stream};
    std::vector<TraceEntry> entries;
    for (TraceEntry entry; reader.next(entry);) entries.push_back(entry);
    return entries;
}

std::vector<std::string> textsOf(const std::string& log, Kind kind) {
    std::vector<std::string> texts;
    for (const TraceEntry& entry : entriesOf(log)) {
        if (entry.kind == kind) texts.push_back(entry.text);
    }
    return texts;
}

std::vector<std::string> remarksOf(const std::string& log) { return textsOf(log, Kind::remark); }

std::string ofLength(std::size_t length) {
    std::string bytes;
    for (std::size_t n = 0; n < length; ++n) bytes += static_cast<char>(n * 7);
    return bytes;
}

class DumpLength : public testing::TestWithParam<std::size_t> {};

TEST_P(DumpLength, IsReadWholeWhereverItsLinesEnd) {
    const std::string bytes = ofLength(GetParam());
    const std::string other = ofLength(64);
    EXPECT_THAT(textsOf(arrivalOf(bytes) + arrivalOf(other), Kind::received), ElementsAre(bytes, other));
    EXPECT_THAT(textsOf(dumpOf("BYTES<<", bytes) + dumpOf("BYTES<<", other), Kind::sent),
                ElementsAre(bytes, other));
    EXPECT_THAT(remarksOf(arrivalOf(bytes) + dumpOf("BYTES<<", bytes)), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(TraceReader, DumpLength,
                         testing::Values(0, 1, 31, 32, 33, 63, 64, 65, 96, 4096, 70000));

TEST(TraceReader, KnowsEachLineOfAConnection) {
    const auto entries = entriesOf(serialLines + "connectPort() - modemConnect - MODEM_RESET\r\n" +
                                   "modemConnect() - Phone Number: ATDT 5,9\r\n" + upLine + networkLines +
                                   "connectPort() - Connection Type: SSH\r\n"
                                   "connectPort() - Missing network address\r\n"
                                   "Comser_OnComm() - MSCOMM_EV_CD\r\n"
                                   "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is TRUE\r\n"
                                   "Comser_OnComm() - MSCOMM_EV_CD - comser.CDHolding is FALSE\r\n"
                                   "Comser_OnComm() - MSCOMM_ER_CDTO\r\n");
    std::vector<Kind> kinds;
    for (const TraceEntry& entry : entries) kinds.push_back(entry.kind);
    EXPECT_THAT(kinds, ElementsAre(Kind::serial, Kind::commPort, Kind::commPort, Kind::flowControl,
                                   Kind::modemReset, Kind::dialled, Kind::sessionUp, Kind::network,
                                   Kind::address, Kind::port, Kind::ssh, Kind::noAddress, Kind::carrierOn,
                                   Kind::carrierOff, Kind::carrierTimeout));
    EXPECT_EQ(entries[2].text, "300,e,7,2");
    EXPECT_EQ(entries[3].number, 3);
    EXPECT_EQ(entries[5].text, "ATDT 5,9");
    EXPECT_EQ(entries[8].text, "host1");
    EXPECT_EQ(entries[8].line, 9U);
}

TEST(TraceReader, TellsHowManyBytesAnArrivalAskedFor) {
    const auto entries = entriesOf("comnet2_DataArrival(): 12 bytes incoming, 11 bytes to process\r\n");
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].number, 12);
    EXPECT_EQ(entries[0].toProcess, 11);
}

TEST(TraceReader, SerialTextKeepsItsLineEnds) {
    for (const std::string text : {"", "a", "a\r\n", "\r\n", "\n", "\r", "a\r\r\n", "a\nb\r\nc", "\r\n\r\n",
                                   "BYTES", "x\nBYTES>> 41 \ny"}) {
        EXPECT_THAT(textsOf(serialTextOf(text) + serialTextOf("next") + upLine, Kind::serialText),
                    ElementsAre(text, "next"))
            << scenario::forComment(text);
    }
    const std::string withNul{"a\0b\x1a", 4};
    EXPECT_THAT(textsOf(serialTextOf(withNul) + upLine, Kind::serialText), ElementsAre(withNul));
}

TEST(TraceReader, AReceivedTextOfTheTraceIsTextUnlessItLooksLikeALineOfItsOwn) {
    const std::string text = "x\r\nComser_OnComm() - MSCOMM_EV_RECEIVE y\r\nz";
    EXPECT_THAT(textsOf(serialTextOf(text) + upLine, Kind::serialText), ElementsAre(text));
}

TEST(TraceReader, LongSerialTextComesInPieces) {
    const std::string text(300000, 'a');
    std::string whole;
    std::size_t longest = 0;
    for (const std::string& piece : textsOf(serialTextOf(text + "\r\n" + text) + upLine, Kind::serialText)) {
        whole += piece;
        longest = std::max(longest, piece.size());
    }
    EXPECT_EQ(whole, text + "\r\n" + text);
    EXPECT_LE(longest, 2 * scenario::TraceLines::longestPiece + 2);
}

TEST(TraceReader, ReadsALogWhoseLineEndsWereChanged) {
    std::string log = networkLines + arrivalOf(ofLength(100)) + serialTextOf("one\r\ntwo\r\n") + upLine;
    std::erase(log, '\r');
    EXPECT_THAT(textsOf(log, Kind::received), ElementsAre(HasSubstr(ofLength(100))));
    EXPECT_THAT(textsOf(log, Kind::serialText), ElementsAre("one\r\ntwo\r\n"));
    EXPECT_THAT(remarksOf(log), ElementsAre(HasSubstr("line ends of this log were changed")));
}

TEST(TraceReader, GoesOnBehindForeignLinesAndSaysWhereTheyStand) {
    const std::string junk = "From: someone\r\n\r\n\x01\x02 binary\r\n";
    const auto entries = entriesOf(upLine + junk + upLine + "more\r\n" + upLine);
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries[1].line, 2U);
    EXPECT_EQ(entries[1].text, "up to line 4 no lines of a trace; the first: From: someone");
    EXPECT_EQ(entries[3].line, 6U);
    EXPECT_EQ(entries[3].text, "no line of a trace: more");
    EXPECT_EQ(entries[4].kind, Kind::sessionUp);
}

TEST(TraceReader, AByteOrderMarkIsNoLineOfItsOwn) {
    EXPECT_THAT(remarksOf("\xEF\xBB\xBF" + upLine), IsEmpty());
}

TEST(TraceReader, SaysWhatADumpLacks) {
    const std::string bytes = ofLength(100);
    const std::string whole = arrivalOf(bytes);
    const std::string cut = whole.substr(0, whole.rfind("\r\n", whole.size() - 3) + 2);
    EXPECT_THAT(textsOf(cut + upLine, Kind::received), ElementsAre(bytes.substr(0, 96)));
    EXPECT_THAT(remarksOf(cut + upLine), ElementsAre("of a block of 100 bytes there are 96"));

    const std::string withoutDump = whole.substr(0, whole.find("BYTES"));
    EXPECT_THAT(remarksOf(withoutDump + upLine), ElementsAre("a block of 100 bytes is missing here"));

    EXPECT_THAT(textsOf("BYTES<< 41 4x 43 \r\n" + upLine, Kind::sent), ElementsAre("A"));
    EXPECT_THAT(remarksOf("BYTES<< 41 4x 43 \r\n" + upLine), ElementsAre(HasSubstr("broken off")));
}

TEST(TraceReader, TakesDumpsThatLostTheBlanksAtTheirEnds) {
    EXPECT_THAT(textsOf("BYTES<< 41 42\r\nBYTES>>\r\n", Kind::sent), ElementsAre("AB"));
    EXPECT_THAT(remarksOf("BYTES<< 41 42\r\nBYTES>>\r\n"), IsEmpty());
}

// What a cut log tells is the beginning of what the whole one tells; only the last entry may be shorter.
TEST(TraceReader, ALogCutAtAnyByteTellsTheBeginning) {
    const std::string log = networkLines + arrivalOf(ofLength(70)) + dumpOf("BYTES<<", "\x1b[A") + upLine +
                            dumpOf("BYTES<<", ofLength(40)) + serialLines + serialTextOf("one\r\ntwo\r\n") +
                            serialTextOf("\x1b[2J") + upLine;
    const auto whole = entriesOf(log);
    ASSERT_GT(whole.size(), 15U);
    for (std::size_t length = 0; length < log.size(); ++length) {
        std::vector<TraceEntry> found;
        bool toldCut = false;
        for (const TraceEntry& entry : entriesOf(log.substr(0, length))) {
            if (entry.kind == Kind::remark) {
                toldCut = toldCut || entry.text == "the log is cut off in this line";
            } else {
                found.push_back(entry);
            }
        }
        const bool insideLine = length > 0 && log[length - 1] != '\n';
        EXPECT_EQ(toldCut, insideLine) << "cut behind byte " << length;
        ASSERT_LE(found.size(), whole.size()) << "cut behind byte " << length;
        for (std::size_t n = 0; n < found.size(); ++n) {
            ASSERT_EQ(found[n].kind, whole[n].kind) << "cut behind byte " << length << ", entry " << n;
            std::string text = found[n].text;
            if (n + 1 == found.size()) {
                // A carriage return may be the first half of a line end.
                if (text.ends_with('\r')) text.pop_back();
                text.resize(std::min(text.size(), whole[n].text.size()));
                EXPECT_EQ(text, whole[n].text.substr(0, text.size())) << "cut behind byte " << length;
            } else {
                ASSERT_EQ(text, whole[n].text) << "cut behind byte " << length << ", entry " << n;
            }
        }
    }
}

}  // namespace
}  // namespace qxterm::test::trace_reader_test
