#include <string>
#include <string_view>

#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "connection/keyboard.h"
#include "connection/session.h"
#include "terminal/commands/function_keys.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/screen_store.h"
#include "terminal/random_output.h"

namespace qxterm::test::loop_test {
namespace {

/// Whatever is typed or pasted on a loop connection is interpreted.
class Loop : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        g_bConnectActive = true;
        CurrentProfile.connectType = connectType::loop;
        records.clear();
    }
    /// Without the last column, whose character an erase leaves in the store.
    static std::string firstRow() {
        std::string text{lineOnRow(0).text.begin(), lineOnRow(0).text.begin() + 79};
        return text.erase(text.find_last_not_of(' ') + 1);
    }
    /// Whatever was typed before: the session is there, nothing has left the program, and text is shown.
    static void expectOrdinaryTyping() {
        EXPECT_TRUE(g_bConnectActive);
        EXPECT_EQ(inputBusy, 0);
        for (const headless::Record& record : records)
            EXPECT_TRUE(record.kind == "box" || record.kind == "beep") << record.kind;
        sendTyped(std::string(32800, '.'));  // label and string of a key that was announced
        // Twice, as the first one may end what was left unfinished.
        sendTyped(
            "\x1b"
            "c\x1b"
            "c\x1b[?7h\x1b[?11l");
        records.clear();
        for (const char c : std::string_view{"\x1b[Hall is "}) Form_KeyPress(static_cast<unsigned char>(c));
        sendTyped("well");
        EXPECT_EQ(firstRow(), "all is well");
        EXPECT_TRUE(records.empty());
    }
};

TEST_F(Loop, AnythingMayBeTypedAndPasted) {
    for (const char c : RandomOutput{9}.bytes(20000)) {
        Form_KeyPress(static_cast<std::int16_t>(static_cast<unsigned char>(c)));
        if (c == 'k') Form_KeyDown(112, 0);
    }
    expectOrdinaryTyping();
    sendTyped(RandomOutput{10}.bytes(1000000));
    expectOrdinaryTyping();
}

// F1 types the sequence that changes the bank of keys, and a letter.
TEST_F(Loop, WhatAKeyTypesIsInterpretedOnce) {
    sendTyped("\x1b[1;5;0q................\x1b[1pA\x1b[0p");
    ASSERT_EQ(fkeyBank, 0);
    Form_KeyDown(112, 0);
    EXPECT_EQ(fkeyBank, 1);
    EXPECT_EQ(firstRow(), "A");
}

}  // namespace
}  // namespace qxterm::test::loop_test
