#include "platform/synch_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qxterm::synch_filter_test {
namespace {

// Streams are written with I for IAC, D for DM, C for the command NOP, and all else for itself; i, d and u
// are an urgent IAC, DM and "u".

bool isUrgent(char letter) { return letter == 'i' || letter == 'd' || letter == 'u'; }

char byteOf(char letter) {
    switch (letter) {
        case 'I':
        case 'i': return '\xff';
        case 'D':
        case 'd': return '\xf2';
        case 'C': return '\xf1';
        default: return letter;
    }
}

std::string bytesOf(std::string_view letters) {
    std::string bytes;
    for (const char letter : letters) bytes += byteOf(letter);
    return bytes;
}

std::string lettersOf(std::string bytes) {
    for (const char letter : {'I', 'D', 'C'})
        std::replace(bytes.begin(), bytes.end(), byteOf(letter), letter);
    return bytes;
}

using Reads = std::vector<std::string>;

/// The reads of a stream that is cut behind the places whose bits are set, and before and behind each urgent
/// byte.
Reads readsOf(std::string_view stream, unsigned cuts) {
    Reads reads;
    bool cut = true;
    for (std::size_t at = 0; at < stream.size(); ++at) {
        const bool urgent = isUrgent(stream[at]);
        if (cut || urgent) reads.emplace_back();
        reads.back() += stream[at];
        cut = urgent || ((cuts >> at) & 1U) != 0;
    }
    return reads;
}

unsigned waysToCut(std::string_view stream) { return 1U << (stream.size() - 1); }

/// What comes out when each urgent byte is told at its place.
std::string toldHere(const Reads& reads, bool urgentWaits = false) {
    SynchFilter filter;
    std::string out;
    for (const std::string& read : reads) {
        if (isUrgent(read.front())) {
            filter.urgentHere(byteOf(read.front()), out);
        } else {
            filter.arrived(bytesOf(read), urgentWaits, out);
        }
    }
    filter.ended(out);
    return lettersOf(out);
}

/// What comes out when each urgent byte is told so many reads before its place.
std::string toldAhead(const Reads& reads, std::size_t before) {
    SynchFilter filter;
    std::string out;
    std::size_t told = 0;
    for (std::size_t now = 0; now < reads.size(); ++now) {
        for (; told < reads.size() && told <= now + before; ++told) {
            const char first = reads[told].front();
            if (isUrgent(first)) filter.urgentAhead(byteOf(first), out);
        }
        if (!isUrgent(reads[now].front())) filter.arrived(bytesOf(reads[now]), false, out);
    }
    filter.ended(out);
    return lettersOf(out);
}

void expectForEachCut(std::string_view stream, std::string_view expected) {
    for (unsigned cuts = 0; cuts < waysToCut(stream); ++cuts)
        EXPECT_EQ(toldHere(readsOf(stream, cuts)), expected) << stream << ", cuts " << cuts;
}

TEST(SynchFilter, RemovesThePairWhicheverByteIsUrgent) {
    expectForEachCut("xyiDz", "xyz");
    expectForEachCut("xyIdz", "xyz");
    expectForEachCut("xyidz", "xyz");
}

TEST(SynchFilter, RemovesItAtTheBeginningAndAtTheEnd) {
    for (const char* const pair : {"iD", "Id", "id"}) {
        expectForEachCut(pair, "");
        expectForEachCut(pair + std::string{"xy"}, "xy");
        expectForEachCut("xy" + std::string{pair}, "xy");
    }
}

TEST(SynchFilter, RemovesSynchsInARow) {
    expectForEachCut("xiDiDiDy", "xy");
    expectForEachCut("xIdIdIdy", "xy");
    expectForEachCut("xiDIdidy", "xy");
    expectForEachCut("iDxIdyiD", "xy");
}

TEST(SynchFilter, RemovesItBetweenCommands) {
    expectForEachCut("ICxiDICy", "ICxICy");
    expectForEachCut("ICIdICy", "ICICy");
}

TEST(SynchFilter, LeavesWhatIsNotUrgent) {
    for (const char* const stream : {"xyz", "IDxy", "xIDyIDz", "xI", "xID", "IIDx", "xIIIDy", "DxD", "ICDx"})
        expectForEachCut(stream, stream);
    expectForEachCut("iDxIDy", "xIDy");
    expectForEachCut("IDxIdy", "IDxy");
}

TEST(SynchFilter, AnIacBehindAnIacBeginsNoSynch) {
    expectForEachCut("xIIiDy", "xIIy");
    expectForEachCut("xIIIdy", "xIIy");
    expectForEachCut("xIIdy", "xIIy");
    expectForEachCut("xIiDy", "xIIDy");
}

TEST(SynchFilter, PutsOtherUrgentBytesBack) {
    expectForEachCut("xuy", "xuy");
    expectForEachCut("u", "u");
    expectForEachCut("uuxu", "uuxu");
    expectForEachCut("IuDx", "IuDx");
    expectForEachCut("xiyDz", "xIyDz");
    expectForEachCut("iCx", "ICx");
    expectForEachCut("xi", "xI");
    expectForEachCut("iuDx", "IuDx");
}

TEST(SynchFilter, RemovesAnUrgentDmAlone) {
    expectForEachCut("xdy", "xy");
    expectForEachCut("ddx", "x");
    expectForEachCut("iDdx", "x");
}

TEST(SynchFilter, ACommandIsAnyByteFrom236On) {
    // While an urgent byte waits somewhere: IAC stays with the command that follows it in the next read, and
    // is the half of a Synch before anything else.
    const auto outOf = [](char second) {
        SynchFilter filter;
        std::string out;
        filter.arrived("\xff", false, out);
        filter.arrived(std::string{second, 'x'}, true, out);
        return out;
    };
    EXPECT_EQ(outOf('\xec'), "\xff\xecx");
    EXPECT_EQ(outOf('\xfe'), "\xff\xfex");
    EXPECT_EQ(outOf('\xeb'), "\xebx");
}

TEST(SynchFilter, GivesOutWhatPrecedesAtOnce) {
    SynchFilter filter;
    std::string out;
    filter.arrived(bytesOf("xyI"), false, out);
    EXPECT_EQ(out, "xy");
    filter.arrived(bytesOf("C"), false, out);
    EXPECT_EQ(lettersOf(out), "xyIC");
}

TEST(SynchFilter, FindsThePlaceOfAByteThatIsToldAhead) {
    for (const std::string_view stream :
         {"xyiDz", "xyIdz", "iDxyz", "Idxyz", "xiDyiDz", "xIdyIdz", "xIdIdyz"}) {
        std::string expected;
        for (const char letter : stream) expected += letter >= 'x' ? std::string{letter} : "";
        for (unsigned cuts = 0; cuts < waysToCut(stream); ++cuts) {
            for (const std::size_t before : {0U, 1U, 2U, 3U}) {
                EXPECT_EQ(toldAhead(readsOf(stream, cuts), before), expected)
                    << stream << ", cuts " << cuts << ", told " << before << " before";
            }
        }
    }
}

TEST(SynchFilter, AByteToldAheadLeavesTheDmOfTheOneBeforeIt) {
    SynchFilter filter;
    std::string out;
    filter.urgentHere(byteOf('i'), out);
    filter.urgentAhead(byteOf('i'), out);
    filter.arrived(bytesOf("D"), false, out);
    filter.arrived(bytesOf("Dx"), false, out);
    EXPECT_EQ(lettersOf(out), "x");
}

TEST(SynchFilter, LosesNoByteThatIsToldAhead) {
    EXPECT_EQ(toldAhead({"x", "u", "y"}, 0), "xuy");
    EXPECT_EQ(toldAhead({"x", "u", "y"}, 1), "uxy");
    EXPECT_EQ(toldAhead({"x", "i", "y"}, 1), "xyI");
}

TEST(SynchFilter, TakesAPairForASynchWhileAnotherWaits) {
    for (const std::string_view stream : {"xIDy", "IDx", "xIDIDy"}) {
        std::string expected;
        for (const char letter : stream) expected += letter >= 'x' ? std::string{letter} : "";
        for (unsigned cuts = 0; cuts < waysToCut(stream); ++cuts)
            EXPECT_EQ(toldHere(readsOf(stream, cuts), true), expected) << stream << ", cuts " << cuts;
    }
    EXPECT_EQ(toldHere({"xIIDy"}, true), "xIIDy");
    EXPECT_EQ(toldHere({"xICDy"}, true), "xICDy");
    EXPECT_EQ(toldHere({"xDy"}, true), "xDy");
}

TEST(SynchFilter, SurvivesTheLossOfOneHalfWhileAnotherWaits) {
    EXPECT_EQ(toldHere({"Dx"}, true), "x");
    EXPECT_EQ(toldHere({"x", "Dy"}, true), "xy");
    EXPECT_EQ(toldHere({"xI", "yz"}, true), "xyz");
    EXPECT_EQ(toldHere({"x", "i", "yz"}, true), "xyz");
    EXPECT_EQ(toldHere({"xI", "I", "d", "y"}, true), "xy");
    EXPECT_EQ(toldHere({"xI", "Cy"}, true), "xICy");
    EXPECT_EQ(toldHere({"Dx"}, false), "Dx");
    EXPECT_EQ(toldHere({"xI", "yz"}, false), "xIyz");
}

TEST(SynchFilter, AnUrgentIacBehindOneThatMayBeUrgentHasLostTheDmBetween) {
    EXPECT_EQ(toldHere({"x", "i", "i", "Dy"}), "xy");
    EXPECT_EQ(toldHere({"xI", "i", "Dy"}, true), "xy");
    EXPECT_EQ(toldHere({"xI", "i", "Dy"}, false), "xIIDy");
}

TEST(SynchFilter, ASynchIsNoLessOneWhenItsHalvesAreReadApart) {
    SynchFilter filter;
    std::string out;
    filter.arrived(bytesOf("xI"), true, out);
    filter.arrived(bytesOf("DyIDz"), false, out);
    EXPECT_EQ(lettersOf(out), "xyIDz");
}

TEST(SynchFilter, AByteToldAheadWaitsUntilItsPlaceIsFound) {
    SynchFilter filter;
    std::string out;
    filter.urgentAhead(byteOf('i'), out);
    filter.arrived(bytesOf("xIDy"), false, out);
    filter.arrived(bytesOf("DzIDz"), false, out);
    EXPECT_EQ(lettersOf(out), "xyzIDz");
}

TEST(SynchFilter, KnowsWhichBlocksMayHoldASynch) {
    SynchFilter filter;
    EXPECT_FALSE(filter.mayHoldSynch(""));
    EXPECT_FALSE(filter.mayHoldSynch(bytesOf("xDy")));
    EXPECT_TRUE(filter.mayHoldSynch(bytesOf("xIDy")));
    EXPECT_TRUE(filter.mayHoldSynch(bytesOf("Dy")));
    std::string out;
    filter.arrived(bytesOf("I"), false, out);
    EXPECT_TRUE(filter.mayHoldSynch("x"));
}

}  // namespace
}  // namespace qxterm::synch_filter_test
