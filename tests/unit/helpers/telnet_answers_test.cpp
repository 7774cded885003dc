#include "zpt_ssh/telnet_answers.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace zpt::telnet_answers_test {
namespace {

using namespace std::string_literals;

/// What a host's bytes come to: the text that the terminal gets, and what the host gets.
struct Outcome {
    std::string text;
    std::string replies;
    bool over = false;
};

/// The bytes in pieces of so many.
Outcome inPieces(std::string bytes, std::size_t piece) {
    Outcome outcome;
    TelnetAnswers answers;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        const std::span<char> block{bytes.data() + at, std::min(piece, bytes.size() - at)};
        outcome.text.append(block.data(), answers.take(block, outcome.replies));
    }
    outcome.over = answers.over();
    return outcome;
}

Outcome whole(const std::string& bytes) { return inPieces(bytes, bytes.size() + 1); }

constexpr std::string_view typeIs{"\xFF\xFA\x18\0QXTERM\xFF\xF0", 12};

TEST(TelnetAnswers, TextPassesAsItIs) {
    const Outcome outcome = whole("Welcome\r\n\0to vm\xFE\r\n"s);
    EXPECT_EQ(outcome.text, "Welcome\r\n\0to vm\xFE\r\n"s);
    EXPECT_EQ(outcome.replies, "");
    EXPECT_FALSE(outcome.over);
}

TEST(TelnetAnswers, TheTerminalTypeIsOfferedAndTold) {
    EXPECT_EQ(whole("\xFF\xFD\x18").replies, "\xFF\xFB\x18");
    const Outcome asked = whole("\xFF\xFA\x18\x01\xFF\xF0");
    EXPECT_EQ(asked.replies, typeIs);
    EXPECT_EQ(asked.text, "");
}

TEST(TelnetAnswers, EveryOtherOptionIsRefused) {
    // ECHO, NEW-ENVIRON, and the number that is IAC's own
    EXPECT_EQ(whole("\xFF\xFD\x01\xFF\xFD\x27\xFF\xFD\xFF").replies, "\xFF\xFC\x01\xFF\xFC\x27\xFF\xFC\xFF");
}

TEST(TelnetAnswers, WhatTheHostSaysOfItselfIsNotAnswered) {
    const Outcome outcome = whole(
        "a\xFF\xFB\x01"
        "b\xFF\xFC\x03"
        "c\xFF\xFE\x18"
        "d\xFF\xF1"
        "e\xFF\xFF"
        "f");
    EXPECT_EQ(outcome.text, "abcdef");
    EXPECT_EQ(outcome.replies, "");
}

TEST(TelnetAnswers, OtherSubnegotiationsAreTakenOut) {
    const Outcome outcome = whole("x\xFF\xFA\x20\x01\xFF\xFFlogin:\xFF\xF0y");
    EXPECT_EQ(outcome.text, "xy");
    EXPECT_EQ(outcome.replies, "");
    EXPECT_FALSE(outcome.over) << "a prompt inside a subnegotiation is none";
}

TEST(TelnetAnswers, PiecesOfAnyLengthComeToTheSame) {
    const std::string bytes =
        "\xFF\xFD\x18\xFF\xFB\x01Hello\r\n\xFF\xFA\x18\x01\xFF\xF0\xFF\xFD\x1Fvm login"s;
    const Outcome once = whole(bytes);
    EXPECT_EQ(once.text, "Hello\r\nvm login");
    EXPECT_EQ(once.replies, "\xFF\xFB\x18" + std::string{typeIs} + "\xFF\xFC\x1F");
    for (std::size_t piece = 1; piece < bytes.size(); ++piece) {
        const Outcome cut = inPieces(bytes, piece);
        EXPECT_EQ(cut.text, once.text) << piece;
        EXPECT_EQ(cut.replies, once.replies) << piece;
    }
}

TEST(TelnetAnswers, BehindTheLoginPromptNothingIsTouched) {
    for (const char* prompt : {"login:", "Login:", "oogin:", "ologin:"}) {
        TelnetAnswers answers;
        std::string replies;
        std::string block = prompt;
        EXPECT_EQ(answers.take(block, replies), block.size());
        EXPECT_TRUE(answers.over()) << prompt;
        std::string later = "\xFF\xFD\x18 x";
        EXPECT_EQ(answers.take(later, replies), later.size());
        EXPECT_EQ(later, "\xFF\xFD\x18 x");
        EXPECT_EQ(replies, "") << "the terminal's to answer";
    }
}

TEST(TelnetAnswers, FromThePromptOnNothingIsTouchedInItsOwnBlockEither) {
    const std::string bytes = "\xFF\xFD\x01vm login:\xFF\xFD\x18 \xFF\xFD\x1F";
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        const Outcome outcome = inPieces(bytes, piece);
        EXPECT_EQ(outcome.text, "vm login:\xFF\xFD\x18 \xFF\xFD\x1F") << piece;
        EXPECT_EQ(outcome.replies, "\xFF\xFC\x01") << piece;
        EXPECT_TRUE(outcome.over) << piece;
    }
}

TEST(TelnetAnswers, SomethingLikeThePromptIsNotIt) {
    EXPECT_FALSE(whole("logon: ogin ogi:n: o:").over);
    EXPECT_TRUE(whole("\xFF\xFD\x01ogin\xFF\xFD\x01:").over)
        << "commands do not stand between the characters";
}

TEST(TelnetAnswers, ASubnegotiationWithoutAnEndGivesNothing) {
    const Outcome outcome = inPieces("\xFF\xFA\x18" + std::string(100000, 'x'), 4096);
    EXPECT_EQ(outcome.text, "");
    EXPECT_EQ(outcome.replies, "");
}

TEST(TelnetAnswers, RepliesStayWithinTheirBound) {
    std::string shortest;
    for (int n = 0; n < 800; ++n) shortest += "\xFF\xFA\x18\xFF\xF0";
    EXPECT_EQ(whole(shortest).replies.size(), 800U * 12);
    // One byte that completes a subnegotiation of a block before.
    TelnetAnswers answers;
    std::string replies;
    std::string first = "\xFF\xFA\x18\xFF";
    std::string last = "\xF0";
    EXPECT_EQ(answers.take(first, replies), 0U);
    EXPECT_EQ(replies, "");
    EXPECT_EQ(answers.take(last, replies), 0U);
    EXPECT_EQ(replies, typeIs);
}

}  // namespace
}  // namespace zpt::telnet_answers_test
