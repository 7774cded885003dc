#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "connection/keyboard.h"
#include "connection/session.h"
#include "terminal/interpreter/interpreter.h"
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
};

TEST_F(Loop, AnythingMayBeTypedAndPasted) {
    for (const char c : RandomOutput{9}.bytes(20000)) {
        Form_KeyPress(static_cast<std::int16_t>(static_cast<unsigned char>(c)));
        if (c == 'k') Form_KeyDown(112, 0);
    }
    // a key that types itself is interpreted once
    processInput("\x1b[2p\x1b[1;4;0q................\x1b[1p");
    Form_KeyDown(112, 0);
    sendTyped(RandomOutput{10}.bytes(1000000));
}

}  // namespace
}  // namespace qxterm::test::loop_test
