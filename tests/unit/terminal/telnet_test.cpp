#include "terminal/interpreter/sequences.h"

#include <string>
#include <vector>

#include "platform/hex_text.h"
#include "terminal/interpreter/telnet.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::test::telnet_test {
namespace {

using Sent = std::vector<std::string>;

struct Outcome {
    std::size_t position;  ///< the place behind what was consumed
    bool carried;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// The answers so far, in hexadecimal.
Sent answers;

class Telnet : public TerminalTest {
protected:
    void SetUp() override {
        TerminalTest::SetUp();
        answers.clear();
        answerHost = [](std::string_view bytes) { answers.push_back(hexText(bytes)); };
    }
    void TearDown() override {
        answerHost = [](std::string_view) {};
        TerminalTest::TearDown();
    }
    /// A command whose IAC stands at a place of the data.
    static Outcome run(std::string_view data, std::size_t place = 0) {
        const Parameters none;
        HostInput input{.data = data, .parameters = none, .position = place + 1, .start = place};
        doTelnet(input);
        return {input.position, input.carried};
    }
    static Sent sent() { return answers; }
};

TEST_F(Telnet, TheTerminalTypeIsOffered) {
    EXPECT_EQ(run("\xFF\xFD\x18"), (Outcome{3, false}));
    EXPECT_EQ(sent(), (Sent{"fffb18"}));
}

TEST_F(Telnet, EveryOtherOptionIsRefused) {
    for (int option = 0; option < 256; ++option) {
        if (option != 24) run(std::string{"\xFF\xFD"} + static_cast<char>(option));
    }
    Sent expected;
    for (int option = 0; option < 256; ++option) {
        if (option != 24) expected.push_back("fffc" + hexText(std::string(1, static_cast<char>(option))));
    }
    EXPECT_EQ(sent(), expected);
}

TEST_F(Telnet, CommandZeroIsAnsweredLikeDo) {
    EXPECT_EQ(run(std::string_view{"\xFF\0\x01", 3}), (Outcome{3, false}));
    EXPECT_EQ(run(std::string_view{"\xFF\0\x18", 3}), (Outcome{3, false}));
    EXPECT_EQ(sent(), (Sent{"fffc01", "fffb18"}));
}

TEST_F(Telnet, TheTerminalTypeIsTold) {
    EXPECT_EQ(run("\xFF\xFA\x18\x01\xFF\xF0"), (Outcome{3, false}));
    EXPECT_EQ(run("\xFF\xFA\x1F"), (Outcome{3, false}));
    EXPECT_EQ(sent(), (Sent{"fffa1800"
                            "51585445524d"
                            "fff0"}));
}

TEST_F(Telnet, OffersAndRefusalsAreNotAnswered) {
    EXPECT_EQ(run("\xFF\xFB\x01"), (Outcome{3, false}));
    EXPECT_EQ(run("\xFF\xFC\x01"), (Outcome{3, false}));
    EXPECT_EQ(run("\xFF\xFE\x01"), (Outcome{3, false}));
    EXPECT_TRUE(sent().empty());
}

TEST_F(Telnet, AnyOtherCommandTakesTheByteBehindItAlong) {
    EXPECT_EQ(run("\xFF\xF0x"), (Outcome{3, false}));
    EXPECT_EQ(run("\xFF\xF0"), (Outcome{2, false}));
    EXPECT_EQ(run("\xFF\xFF\xFF"), (Outcome{3, false}));
    EXPECT_TRUE(sent().empty());
}

TEST_F(Telnet, AnUnfinishedCommandIsCarried) {
    EXPECT_EQ(run("\xFF"), (Outcome{1, true}));
    for (const std::string_view command : {"\xFF\xFD", "\xFF\xFB", "\xFF\xFC", "\xFF\xFE", "\xFF\xFA"}) {
        EXPECT_EQ(run(command), (Outcome{2, true}));
    }
    EXPECT_EQ(run(std::string_view{"\xFF\0", 2}), (Outcome{2, true}));
    EXPECT_TRUE(sent().empty());
}

TEST_F(Telnet, ACommandInTheMiddleOfTheDataIsFound) {
    EXPECT_EQ(run("ab\xFF\xFD\x01zz", 2), (Outcome{5, false}));
    EXPECT_EQ(sent(), (Sent{"fffc01"}));
}

}  // namespace
}  // namespace qxterm::test::telnet_test
