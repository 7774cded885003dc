#include "platform/serial.h"

#include "platform/form.h"
#include "platform/headless/serial.h"
#include "platform/headless_fixture.h"

namespace qxterm::test::serial_test {
namespace {

constinit Form form{"frmSerial", FormKind::dialog, 1, ""};
constinit SerialPort port{form, "port"};

class SerialTest : public HeadlessTest {
protected:
    void SetUp() override {
        HeadlessTest::SetUp();
        port.onComm.connect("comm", [] { lines.push_back("event " + std::to_string(port.commEvent())); });
    }
};

TEST_F(SerialTest, OpensWithItsSettingsAndCloses) {
    port.setCommPort(3);
    port.setSettings("19200,e,7,2");
    port.setHandshaking(2);
    port.setPortOpen(true);
    port.setPortOpen(true);
    port.output("AT\r");
    port.setBreak(true);
    port.setPortOpen(false);
    port.setPortOpen(false);
    EXPECT_EQ(taken(),
              (Lines{"serial op=open port=3 settings=19200,e,7,2 handshaking=2",
                     "send to=serial bytes=41540d", "serial op=break value=true", "serial op=close"}));
}

TEST_F(SerialTest, ABusyPortRaisesError68) {
    headless::setPortsBusy(true);
    try {
        port.setPortOpen(true);
        ADD_FAILURE() << "the port opened";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number, 68);
    }
    EXPECT_FALSE(port.portOpen());
    EXPECT_TRUE(taken().empty());
}

TEST_F(SerialTest, BytesArriveWithAndWithoutAnEvent) {
    port.setPortOpen(true);
    taken();
    headless::serialReceives(port, "ab", true);
    EXPECT_TRUE(taken().empty());
    EXPECT_EQ(port.inBufferCount(), 2);
    headless::serialReceives(port, "c", false);
    EXPECT_EQ(taken(), (Lines{"event 2"}));
    EXPECT_EQ(port.input(), "abc");
    EXPECT_EQ(port.inBufferCount(), 0);
}

TEST_F(SerialTest, TheInputLengthLimitsOneRead) {
    port.setPortOpen(true);
    port.setInputLength(2);
    headless::serialReceives(port, "abc", true);
    EXPECT_EQ(port.input(), "ab");
    EXPECT_EQ(port.input(), "c");
}

TEST_F(SerialTest, AClosedPortLosesBytesAndSendsNothing) {
    headless::serialReceives(port, "lost", false);
    port.output("lost");
    port.setBreak(true);
    EXPECT_EQ(port.inBufferCount(), 0);
    port.setPortOpen(true);
    EXPECT_EQ(port.input(), "");
    EXPECT_EQ(taken(), (Lines{"serial op=open port=1 settings=9600,n,8,1 handshaking=0"}));
}

TEST_F(SerialTest, ACarrierChangeIsEvent5) {
    port.setPortOpen(true);
    taken();
    headless::setCarrier(port, true);
    EXPECT_TRUE(port.carrierHolding());
    headless::setCarrier(port, true);  // no change
    headless::setCarrier(port, false);
    EXPECT_FALSE(port.carrierHolding());
    headless::serialEvent(port, 1007);
    EXPECT_EQ(taken(), (Lines{"event 5", "event 5", "event 1007"}));
}

}  // namespace
}  // namespace qxterm::test::serial_test
